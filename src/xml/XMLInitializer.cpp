#include <kelvobase/XMLParser.h>

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace KelvoBase
{

constinit int XMLInitializer::msCount = 0;

XMLInitializer::XMLInitializer()
{
    if (msCount == 0) {
        xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale);
    }
    ++msCount;
}

XMLInitializer::XMLInitializer(const XMLInitializer& /*other*/) : XMLInitializer() {}

XMLInitializer& XMLInitializer::operator=(const XMLInitializer& /*other*/) = default;

XMLInitializer::~XMLInitializer()
{
    if (--msCount == 0) {
        xercesc::XMLPlatformUtils::Terminate();
    }
}

} // namespace KelvoBase
