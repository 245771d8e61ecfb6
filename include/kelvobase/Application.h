#pragma once

/// \file
/// The base class of every tool.
///
///     class Tool : public KelvoBase::Application
///     {
///     public:
///         Tool() : Application("tool", 1.0, "A. Author", "Counts things.")
///         {
///             defineOption("limit", 'l', false).setHelp("stop there").setArg("number", new ScalarAny<int>(10));
///             definePositional("FILE");
///         }
///         void postParseInit() override { check(nPositional() == 1, "One file, please."); }
///         int runMain() override { return count(getPositional(0), findOption("limit")->getValue()->toInt()); }
///     };
///
///     int main(int argc, char** argv) { return Tool().mainImpl(argc, argv); }

#include <kelvobase/Any.h>
#include <kelvobase/Export.h>
#include <kelvobase/ResourceLocation.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KelvoBase
{

class ConfigFile;
class OptionIndex;

/// One option of the command line. Made by `Application::defineOption`.
class KELVOBASE_API CLOption
{
public:
    /// `longName` stands without dashes; a `shortName` of 0 means that there is no short form.
    CLOption(const std::string& longName, char shortName, bool mandatory);
    CLOption(const CLOption&) = delete;
    CLOption& operator=(const CLOption&) = delete;
    /// Deletes the value.
    ~CLOption();

    /// Sets the help text; returns this option, so that one expression defines it.
    CLOption& setHelp(const std::string& help);
    /// Lets the option take an argument. Takes over `value`, whose content is the default. Returns this option.
    /// Required: a value that was set before is replaced and not deleted; it is the caller's again.
    CLOption& setArg(const std::string& argName, Any* value);
    /// Fills the value from a text, with the list separator ",". A text that does not fit ends the process through
    /// `Application::check`: "Could not convert \"TEXT\" to the needed type \"TYPE\"", TYPE being the plain type of a
    /// number ("int") or of a list's element. Without an `Application::instance()` the `WrongTypeException` passes
    /// through, as all other exceptions always do.
    /// REQUIRES: the option has a value.
    void setValue(const std::string& text);

    /// Whether the option was given on the command line.
    bool isSet() const;
    char getShort() const;
    const std::string& getLong() const;
    /// The value, as given or the default; null for a flag. Library keeps it; valid as long as the option.
    Any* getValue() const;

private:
    friend class Application; // parser and texts read and set the fields

    std::string mLong;
    char mShort;
    std::string mHelp;
    std::string mArgName;
    bool mMandatory;
    bool mIsSet = false;
    Any* mValue = nullptr; // owned; null for a flag
};

/// The road of a tool from its command line to its exit status.
///
/// A tool's `main` makes one object and returns `mainImpl(argc, argv)`. That calls the virtual operations `startup`,
/// `preRunInit` (and from it `preParse`, `executeOptions`, `postParseInit`) and `runMain`, whose result is the exit
/// status. Every failure ends with a text on standard error and status 1, through `exit`: no destructor runs then.
/// `--help` and `--version` end with status 0.
///
/// Options and positional arguments alternate freely; everything behind `--` is positional. An option is given once at
/// most. What a command line means, `v` being a flag named "verbose" and `o` an option with argument named "out":
///
///     --verbose            => the flag
///     --verbose=no         => the flag; Required: what stands behind "=" is dropped
///     --out=x  --out x     => "x"; the next element is taken as it stands, also if it begins with a dash
///     --out=               => the empty text
///     -ox  -o x  -vox      => "x"
///     -o=x                 => "=x"; Required: nothing is stripped
///     ab                   => positional
///     a  -  (empty)        => nothing; Required: an element of one character is skipped
///     -- a                 => positional
///     -5                   => the option `5`, not a number
///
/// Required: the text for an unknown long option has no dashes, "Unknown option name!"; all others have them.
/// Required: the text for an excluded pair ends in " !", with the blank.
///
/// The application owns its options. One process makes one application, as a rule. Required: a second one
/// becomes the `instance()` without a word. Required: when any of them is destroyed, `instance()` is null and
/// the registry of trace areas has ended.
class KELVOBASE_API Application
{
public:
    /// Makes this object the `instance()`, starts the registry of trace areas (which reads "TraceAreas.ini" and makes
    /// the user's directory of configuration files), and defines the options `--help`, `--version`, `--trace-level`
    /// (`-t`), `--trace-area` and `--trace-to`, which so stand first.
    ///
    /// Throws `std::out_of_range("bitset::set")` if the file of areas has more of them than there are bits. `mainImpl`
    /// reports only what happens in a run: an exception that leaves the constructor of a tool leaves its `main`, unless
    /// that catches it. It leaves no `instance()`.
    Application(const std::string& appName, double version, const std::string& authors, const std::string& description);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Saves the configuration (`ConfigFile::sync`) if `getConfigFile` made one, deletes the options, clears
    /// `instance()`, ends the registry of trace areas and deletes the configuration. Required: `exit` runs no
    /// destructor, so a run that ends with an error, or in `--help` and `--version`, saves nothing. A configuration
    /// that cannot be saved leaves its text on standard error, if `haveCerr` is set, and changes no status; a tool to
    /// which that is a failure calls `sync` itself in `runMain`.
    virtual ~Application();
    /// Writes `text` and a line end to standard output, without flush.
    /// Required: it writes nothing if `haveCerr` is false; the flag stands for both standard streams.
    virtual void message(const std::string& text) const;
    /// Writes `text` and a second line to standard error, unless `haveCerr` is false, and calls `exit(1)`. The second
    /// line is `Try "PROGRAM --help" for more information.` if `hint` is "std", else `hint` itself. A derived version
    /// may return: then faults of the command line still end with `exit(1)`, and exceptions are handled as `mainImpl`
    /// tells.
    virtual void error(const std::string& text, const std::string& hint) const;
    /// First step of a run: takes the program's name from `argv[0]` (empty if that is null) and parts the standard
    /// streams from C stdio. A derived version calls this one.
    virtual void startup(int argc, char** argv);
    /// Second step: sorts the options, calls `preParse`, parses the command line, checks exclusions, calls
    /// `executeOptions`, checks mandatory options, writes the command line and the time of start to the trace
    /// (`Trace::verbose`, `TraceArea::App()`), and calls `postParseInit`.
    ///
    /// Required: `executeOptions` stands between the checks. So `--help` works where a mandatory option is
    /// missing, and a fault of the line wins over `--help`.
    /// Required: the options are sorted by the lower-case letter as a signed character, then by long name byte
    /// by byte: first letters above 0x7F, then options without a letter, then the others.
    virtual void preRunInit(int argc, char** argv);
    /// Acts on the options once they are parsed, before it is checked that mandatory ones were given. A derived version
    /// calls this one, or the built-in options lose their effect.
    virtual void executeOptions();
    /// Called in front of the parser, which sees the changed `argc`. Does nothing.
    virtual void preParse(int& argc, char** argv);
    /// The tool's set-up, once all options are known and checked.
    virtual void postParseInit() = 0;
    /// The tool's work. Returns the exit status.
    virtual int runMain() = 0;

    /// The application constructed last; null if none lives. Creates nothing.
    static Application* instance();
    static bool isNotCreated();

    /// Runs the tool: `startup`, `preRunInit`, `runMain`. Returns the result of `runMain`.
    ///
    ///     out of `startup`    ExceptionBase    error(what(), "std"); goes on if `error` returns
    ///                         std::exception   error("Unrecoverable error during startup.\n", "std"); goes on likewise
    ///                         else             leaves this function
    ///     out of the others   std::exception   error(what(), "std"); 1 if `error` returns
    ///                         else             error("Unknown critical program error.", "std"); 1 likewise
    ///
    /// Required: the two halves of the table differ. Required: the line end inside the text.
    int mainImpl(int argc, char** argv);

    /// \name The command line; to be defined before `mainImpl`, at the latest in `startup`
    /// @{

    /// Adds an option. Library keeps it. Nothing is checked: of two options with the same name or letter, the first in
    /// sorted order is found.
    CLOption& defineOption(const std::string& longName, char shortName, bool mandatory);
    /// Adds the name of a positional argument to the usage text; it does not limit what is accepted.
    void definePositional(const std::string& name);
    /// Two options that may not be given together. Both belong to this application.
    void defineExclusion(const CLOption& a, const CLOption& b);
    /// @}

    /// \name The command line, once it is parsed
    /// @{
    unsigned int nPositional() const;
    /// REQUIRES: `index < nPositional()`.
    const std::string& getPositional(unsigned int index) const;
    /// The option of that long name. Library keeps it.
    /// Throws `UnknownException("Unknown option '" + name + "'")`.
    CLOption* findOption(const std::string& name) const;
    /// The first option, in the order at that moment, for which `predicate(const CLOption&)` is true; null if there is
    /// none. Library keeps it.
    template <typename Predicate>
    CLOption* findOptionBy(const Predicate& predicate) const
    {
        for (CLOption* option : mOptions) {
            const CLOption& candidate = *option;
            if (predicate(candidate)) {
                return option;
            }
        }
        return nullptr;
    }
    /// The command line as text: program, revision, the options that were given, "--" and the positional arguments,
    /// with a line end: "tool (Rev. 7) --limit=3 --verbose -- one two\n". Required: a blank stands behind each
    /// option, the last one too: "tool (Rev. 7) --verbose \n".
    std::string printCMDline() const;
    /// @}

    /// The tool's configuration, read at the first call by `ConfigFile::parseConfigFiles`, whose faults it throws; the
    /// next call tries again then. The application keeps it. What was changed is saved when the application ends.
    ///
    /// The name of the files is `getAppName()` + ".ini", or the value of the option "config-file" (a list is joined by
    /// ","), if the tool defines that with an argument and it is given; so call this from `postParseInit` or `runMain`.
    /// Required: the value is a name to search for, not the path of a file. A mere flag of that name changes
    /// nothing.
    ConfigFile* getConfigFile();

    /// Reports `text` as an error of the user and ends with status 1, unless `condition` is true.
    void check(bool condition, const std::string& text) const;

    /// Writes the help text through `message`: synopsis, description, table of options, additional text, in rows of
    /// less than `System::linelength()` columns. No defaults, no exclusions.
    ///
    /// Required: a row of the running texts that ends because of the width keeps a blank in front of its line
    /// end. Required: help texts begin in column 25; they begin on the next row where name, blank and argument
    /// name have more than 17 characters, the blank also where there is no argument. Required: an empty
    /// description leaves one empty line. Required: the text ends in a line end, and `message` adds its own.
    void usage() const;
    /// What `executeOptions` does: help, version, trace level, areas and destination.
    void executeKelvoOptions();

    const std::string& getAppName() const;
    /// `argv[0]`; empty before `startup`.
    const std::string& getProgramName() const;
    /// Where the running program lies. Valid until the next call.
    const ResourceLocation& getProgramLocation() const;
    double getVersion() const;
    void setVersion(double version);
    const std::string& getRevision() const;
    void setRevision(const std::string& revision);
    const std::string& getYear() const;
    /// Sets the year of the version text. An empty text means the current year. Required: a tool that never
    /// calls it shows "NOW".
    void setYear(const std::string& year);
    const std::string& getAuthors() const;
    /// A text behind the table of options in the help text.
    void setAdditionalHelpText(const std::string& text);

private:
    void defineKelvoOptions();
    void release() noexcept;
    void saveConfiguration() const noexcept;
    void sortOptions();
    CLOption* findLong(std::string_view name) const;
    void reallyParse(int argc, char** argv);
    int parseLong(int i, int argc, char** argv);
    int parseCluster(int i, int argc, char** argv);
    int takeNextElement(CLOption& option, const std::string& form, int i, int argc, char** argv);
    void checkExclusions() const;
    void checkMandatoryOptions() const;
    void writeRunLines() const;
    std::string versionText() const;
    [[noreturn]] void refuse(const std::string& text) const;

    std::string mAppName;
    std::string mProgramName;
    double mVersion;
    std::string mRevision;
    std::string mAuthors;
    std::string mDescription;
    std::string mAdditionalHelpText;
    std::string mYear;
    std::vector<CLOption*> mOptions;                                      // owned
    std::vector<std::pair<const CLOption*, const CLOption*>> mExclusions; // raw: both belong to mOptions
    std::vector<std::string> mPositionalNames;
    std::vector<std::string> mPositionals;
    std::unique_ptr<ConfigFile> mConfigFile;     // null: nobody asked for it yet
    mutable std::unique_ptr<OptionIndex> mIndex; // of mOptions by long name; null for a few options

    static Application* mInstance; // raw: the tool's main owns it
};

} // namespace KelvoBase
