/// \file
/// A tool with an option for every kind of value, which prints what it was given and returns 10 plus the number of
/// positional arguments. VARIANT changes it:
///
///     mandatory       two options have to be given
///     exclusions      pairs of flags exclude each other
///     returning       `error` writes text and hint to standard output and returns; the work fails a `check`
///     reporting       the work calls `error` with the positional arguments, text and hint
///     checking        the work fails a `check`
///     silent          the process has no standard streams
///     replaced        `executeOptions` does nothing
///     extended        `executeOptions` goes on behind the library's
///     shortened       `preParse` takes the last element away
///     second          a second application is made behind this one
///     orphan          a second application was made and destroyed

#include <kelvobase/Application.h>
#include <kelvobase/Globals.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

namespace
{

using KelvoBase::Bit64;
using KelvoBase::CLOption;
using KelvoBase::ScalarAny;
using KelvoBase::VectorAny;

std::string variant()
{
    const char* value = std::getenv("VARIANT");
    return value == nullptr ? "" : value;
}

class OptionTool : public KelvoBase::Application
{
public:
    OptionTool() : Application("optiontool", 1.0, "A. Author", "Prints its options.")
    {
        defineOption("verbose", 'v', false);
        defineOption("out", 'o', false).setArg("file", new ScalarAny<std::string>("-"));
        defineOption("int", 'i', false).setArg("n", new ScalarAny<int>(1));
        defineOption("unsigned", 'u', false).setArg("n", new ScalarAny<unsigned int>(2));
        defineOption("long", 'l', false).setArg("n", new ScalarAny<long>(3));
        defineOption("ulong", 'L', false).setArg("n", new ScalarAny<unsigned long>(4));
        defineOption("double", 'd', false).setArg("x", new ScalarAny<double>(0.5));
        defineOption("bool", 'b', false).setArg("yes", new ScalarAny<bool>(true));
        defineOption("bit64", 'B', false).setArg("hex", new ScalarAny<Bit64>(255));
        defineOption("names", 'n', false).setArg("list", new VectorAny<ScalarAny<std::string>>());
        defineOption("ints", 'I', false).setArg("list", new VectorAny<ScalarAny<int>>());
        defineOption("doubles", 'D', false).setArg("list", new VectorAny<ScalarAny<double>>());
        defineVariant();
    }
    void error(const std::string& text, const std::string& hint) const override
    {
        if (variant() != "returning") {
            Application::error(text, hint);
        }
        std::cout << "error(" << text << "|" << hint << ")\n";
    }
    void executeOptions() override
    {
        if (variant() != "replaced") {
            Application::executeOptions();
        }
        if (variant() == "extended") {
            std::cout << "extended\n";
        }
    }
    void preParse(int& argc, char** /*argv*/) override { argc -= variant() == "shortened" ? 1 : 0; }
    void postParseInit() override {}
    int runMain() override
    {
        if (variant() == "reporting") {
            error(getPositional(0), getPositional(1));
        }
        check(variant() != "checking" && variant() != "returning", "checked");
        std::cout << printCMDline();
        for (const char* name :
             {"out", "int", "unsigned", "long", "ulong", "double", "bool", "bit64", "names", "ints", "doubles"}) {
            std::cout << name << "=" << findOption(name)->getValue()->toString(",") << '\n';
        }
        for (unsigned int i = 0; i < nPositional(); ++i) {
            std::cout << "positional " << getPositional(i) << '\n';
        }
        return 10 + static_cast<int>(nPositional());
    }

private:
    void defineVariant()
    {
        if (variant() == "mandatory") {
            defineOption("zeta", 'z', true).setArg("x", new ScalarAny<int>());
            defineOption("must", 0, true);
        }
        if (variant() == "exclusions") {
            CLOption& red = defineOption("red", 'r', false);
            CLOption& green = defineOption("green", 'g', false);
            CLOption& yellow = defineOption("yellow", 'y', false);
            defineExclusion(yellow, red);
            defineExclusion(red, green);
        }
    }
};

class Other : public KelvoBase::Application
{
public:
    Other() : Application("other", 1.0, "A. Author", "Is in the way.") {}
    void postParseInit() override {}
    int runMain() override { return 0; }
};

} // namespace

int main(int argc, char** argv)
{
    KelvoBase::haveCerr = variant() != "silent";
    OptionTool tool;
    std::unique_ptr<Other> other;
    if (variant() == "second" || variant() == "orphan") {
        other = std::make_unique<Other>();
    }
    if (variant() == "orphan") {
        other.reset();
    }
    return tool.mainImpl(argc, argv);
}
