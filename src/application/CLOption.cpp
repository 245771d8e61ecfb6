#include "application/ListSeparator.h"

#include <kelvobase/Application.h>
#include <kelvobase/Exceptions.h>

namespace KelvoBase
{

CLOption::CLOption(const std::string& longName, char shortName, bool mandatory)
    : mLong(longName), mShort(shortName), mMandatory(mandatory)
{
}

CLOption::~CLOption()
{
    delete mValue;
}

CLOption& CLOption::setHelp(const std::string& help)
{
    mHelp = help;
    return *this;
}

CLOption& CLOption::setArg(const std::string& argName, Any* value)
{
    // Required: deleting the earlier value here would pull it from under a tool that kept it.
    mValue = value;
    mArgName = argName; // behind the value, which is owned by now should memory run out
    return *this;
}

void CLOption::setValue(const std::string& text)
{
    try {
        mValue->fromString(text, listSeparator);
    } catch (const WrongTypeException& e) {
        const Application* application = Application::instance();
        // Without one there is nobody to report to; what calls a parser without an instance has its own handlers.
        if (application == nullptr) {
            throw;
        }
        application->check(false, "Could not convert \"" + text + "\" to the needed type \"" +
                                      WrongTypeException::demangle(*e.actualType) + "\"");
    }
}

bool CLOption::isSet() const
{
    return mIsSet;
}

char CLOption::getShort() const
{
    return mShort;
}

const std::string& CLOption::getLong() const
{
    return mLong;
}

Any* CLOption::getValue() const
{
    return mValue;
}

} // namespace KelvoBase
