// The command line: order of the options, parser, and the checks behind it.
//
// The parser works through the elements once. An element is, in this order of tests: the end mark "--", something of
// at most one character (skipped), a positional argument, a long option, or a cluster of short options. An option that
// takes an argument may use up the next element, whatever that looks like.

#include "application/OptionIndex.h"

#include <kelvobase/Application.h>
#include <kelvobase/Exceptions.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string_view>

namespace KelvoBase
{

namespace
{

class Name
{
public:
    explicit Name(std::string_view name) : mName(name) {}
    bool operator()(const CLOption& option) const { return option.getLong() == mName; }

private:
    std::string_view mName;
};

class Short
{
public:
    explicit Short(char letter) : mLetter(letter) {}
    bool operator()(const CLOption& option) const { return option.getShort() == mLetter; }

private:
    char mLetter;
};

// Required: as a signed character on every platform, so that a letter above 0x7F stands in front even of the
// options without one; as unsigned characters these would move to the end of the help text.
signed char sortLetter(const CLOption& option)
{
    return static_cast<signed char>(std::tolower(static_cast<unsigned char>(option.getShort())));
}

bool standsBefore(const CLOption* a, const CLOption* b)
{
    if (a->getShort() != b->getShort()) {
        const signed char letterOfA = sortLetter(*a);
        const signed char letterOfB = sortLetter(*b);
        if (letterOfA != letterOfB) {
            return letterOfA < letterOfB;
        }
    }
    return a->getLong() < b->getLong();
}

} // namespace

void Application::sortOptions()
{
    mIndex.reset();
    // Equal options keep their order, so that the one found first is the same on every platform.
    std::stable_sort(mOptions.begin(), mOptions.end(), standsBefore);
}

CLOption* Application::findLong(std::string_view name) const
{
    if (mOptions.size() < OptionIndex::worthwhile) {
        return findOptionBy(Name(name));
    }
    if (mIndex == nullptr) {
        mIndex = std::make_unique<OptionIndex>();
    }
    return mIndex->find(mOptions, name);
}

CLOption* Application::findOption(const std::string& name) const
{
    CLOption* option = findLong(name);
    if (option == nullptr) {
        throw UnknownException("Unknown option '" + name + "'");
    }
    return option;
}

void Application::reallyParse(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--") {
            mPositionals.insert(mPositionals.end(), argv + i + 1, argv + argc);
            return;
        }
        // Required: to take "a" or "-" as positional would change what a tool gets in front of "--".
        if (argument.size() <= 1) {
            continue;
        }
        if (argument[0] != '-') {
            mPositionals.emplace_back(argument);
        } else if (argument[1] == '-') {
            i = parseLong(i, argc, argv);
        } else {
            i = parseCluster(i, argc, argv);
        }
    }
}

// Both return the index of the last element that was used.

int Application::parseLong(int i, int argc, char** argv)
{
    const std::string_view argument = std::string_view(argv[i]).substr(2);
    const std::size_t sign = argument.find('=');
    const std::string name(argument.substr(0, sign));
    CLOption* option = findLong(name);
    if (option == nullptr) {
        // Required: without dashes, unlike all other texts; scripts look for this form.
        refuse("Unknown option " + name + "!");
    }
    if (option->mIsSet) {
        refuse("Option --" + name + " given more than once.");
    }
    option->mIsSet = true;
    if (option->mValue == nullptr) {
        // Required: to refuse the text behind "=" would break command lines that work.
        return i;
    }
    if (sign != std::string_view::npos) {
        option->setValue(std::string(argument.substr(sign + 1)));
        return i;
    }
    return takeNextElement(*option, "--" + option->getLong(), i, argc, argv);
}

int Application::parseCluster(int i, int argc, char** argv)
{
    const std::string_view cluster = argv[i];
    for (std::size_t p = 1; p < cluster.size(); ++p) {
        CLOption* option = findOptionBy(Short(cluster[p]));
        if (option == nullptr) {
            refuse(std::string("Unknown option -") + cluster[p] + "!");
        }
        if (option->mIsSet) {
            refuse(std::string("Option -") + cluster[p] + " given more than once.");
        }
        option->mIsSet = true;
        if (option->mValue == nullptr) {
            continue;
        }
        if (p + 1 < cluster.size()) {
            // Required: the "=" of "-o=file" belongs to the value; values may begin with one.
            option->setValue(std::string(cluster.substr(p + 1)));
            return i;
        }
        return takeNextElement(*option, std::string("-") + option->getShort(), i, argc, argv);
    }
    return i;
}

int Application::takeNextElement(CLOption& option, const std::string& form, int i, int argc, char** argv)
{
    if (i + 1 >= argc) {
        refuse("Option " + form + " needs an argument!");
    }
    option.setValue(argv[i + 1]);
    return i + 1;
}

void Application::checkExclusions() const
{
    for (const auto& [a, b] : mExclusions) {
        if (a->isSet() && b->isSet()) {
            // Required: the blank in front of "!" is part of the text.
            refuse("One cannot specify \"--" + a->getLong() + "\" together with \"--" + b->getLong() + "\" !");
        }
    }
}

void Application::checkMandatoryOptions() const
{
    for (const CLOption* option : mOptions) {
        if (option->mMandatory && !option->mIsSet) {
            refuse("Option --" + option->getLong() + " has to be given.");
        }
    }
}

} // namespace KelvoBase
