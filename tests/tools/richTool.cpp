/// \file
/// A tool that uses everything the help text can show. It is called "richtool", whatever its file is.

#include <kelvobase/Application.h>

#include <string>
#include <vector>

namespace
{

using KelvoBase::ScalarAny;
using KelvoBase::VectorAny;

class RichTool : public KelvoBase::Application
{
public:
    RichTool()
        : Application("Rich Tool", 2.5, "A. Author, B. Author",
                      "Reads one or more tables of measured series, removes what lies outside the given limits, and "
                      "writes the remaining values in the order in which they were found. A table that cannot be read "
                      "is reported and left out.\nSecond paragraph.")
    {
        setRevision("1.42");
        setYear("2009");
        defineOptions();
        definePositional("TABLE");
        definePositional("[TABLE...]");
        setAdditionalHelpText("A table is a text file with one value a row. Lines that begin with a hash sign are "
                              "comments; so are empty lines.");
    }
    void postParseInit() override {}
    int runMain() override { return 0; }

private:
    void defineOptions()
    {
        defineOption("verbose", 'v', false).setHelp("Says what is done.");
        defineOption("Version-of-table", 'V', false)
            .setHelp("The version of the table format, where a table does not tell it itself; the latest one is taken "
                     "if neither does.")
            .setArg("n", new ScalarAny<int>(3));
        defineOption("limits", 'l', true)
            .setHelp("exactly fifty-four characters of help, not one more...")
            .setArg("low,high", new VectorAny<ScalarAny<double>>());
        defineOption("limits-of-errors", 0, false)
            .setHelp("exactly fifty-five characters of help, they need two ro")
            .setArg("x", new VectorAny<ScalarAny<double>>());
        defineOption("seventeen-chars-1", 0, false).setHelp("A flag whose name and blank need eighteen.");
        defineOption("sixteen-chars-12", 0, false).setHelp("A flag whose name and blank need seventeen.");
        defineOption("output", 'o', true).setHelp("output file").setArg("file", new ScalarAny<std::string>("out.txt"));
        defineOption("quiet", 'q', false);
        defineOption("a-name-that-leaves-no-room", 'a', false)
            .setHelp("first line\nsecond line")
            .setArg("argument", new ScalarAny<bool>());
    }
};

} // namespace

int main(int argc, char** argv)
{
    std::string name = "richtool";
    std::vector<char*> arguments(argv, argv + argc + 1);
    arguments[0] = name.data();
    return RichTool().mainImpl(argc, arguments.data());
}
