/// \file
/// The configuration that an application hands out and saves at its end.

#include "Probe.h"
#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"
#include "support/UserData.h"

#include <kelvobase/Any.h>
#include <kelvobase/Application.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace KelvoBase
{

namespace
{

using test::Capture;
using test::Probe;
using test::textOf;
using Text = ScalarAny<std::string>;

/// Where the applications of this process search, from its beginning on.
struct Places
{
    test::ScratchDirectory scratch;
    test::ScopedWorkingDirectory here{(scratch.write("work/present", ""), scratch / "work")};
    test::ScopedEnvironment base{"DRAVO2_BASEDIR", (scratch.write("base/present", ""), scratch.location("base"))};
    test::ScopedEnvironment installation{"DRAVO2_INSTDIR", std::nullopt};
    test::ScopedUserData user{scratch / "config"};
};

Places& places()
{
    static Places all;
    return all;
}

void change(Probe& tool)
{
    tool.getConfigFile()->setEntry("a", "new", "1");
}

class Configuration : public testing::Test
{
protected:
    Configuration() { clean(); }
    ~Configuration() override
    {
        clean();
        haveCerr = true;
    }
    static void write(const std::string& path, const std::string& content) { places().scratch.write(path, content); }
    static std::filesystem::path userFile(const std::string& name = "Probe.ini")
    {
        return places().user.folder() / "dravo2" / "etc" / name;
    }
    static std::string entry(Probe& tool, const std::string& key)
    {
        return tool.getConfigFile()->getEntry("a", key)->toString(",");
    }
    /// The text of the fault that the configuration of this command line ends with.
    static std::string missing(Probe& tool, const std::vector<std::string>& words)
    {
        EXPECT_EQ(tool.faultOf(words), "");
        return textOf<FileNotReadableException>([&] { tool.getConfigFile(); });
    }

private:
    static void clean()
    {
        for (const char* directory : {"base/etc", "work/etc"}) {
            std::filesystem::remove_all(places().scratch / directory);
        }
        std::filesystem::remove_all(places().user.folder() / "dravo2");
        // The directory of the user is asked for once in a process, and made then.
        std::filesystem::create_directories(userFile().parent_path());
    }
};

// Which file

TEST_F(Configuration, IsNamedAsTheApplication)
{
    write("base/etc/Probe.ini", "[a]\nk=base\n");
    if (!std::filesystem::exists(places().scratch / "base/etc/probe.ini")) { // the same file where case does not count
        write("base/etc/probe.ini", "[a]\nk=program\n");
    }
    Probe tool;
    tool.prepare({});
    EXPECT_EQ(entry(tool, "k"), "base");
}

TEST_F(Configuration, AddsUpOverTheDirectories)
{
    write("base/etc/Probe.ini", "[a]\nbase=1\nwork=1\nuser=1\n");
    write("work/etc/Probe.ini", "[a]\nwork=2\nuser=2\n");
    test::writeFile(userFile(), "[a]\nuser=3\n");
    Probe tool;
    EXPECT_EQ(entry(tool, "base") + entry(tool, "work") + entry(tool, "user"), "123");
}

TEST_F(Configuration, IsNamedByItsOptionIfThatIsGiven)
{
    write("base/etc/Probe.ini", "[a]\nk=default\n");
    write("base/etc/own.ini", "[a]\nk=own\n");
    write("base/etc/a,b", "[a]\nk=list\n");
    struct Row
    {
        std::vector<std::string> words;
        std::function<Any*()> value;
        const char* text;
    };
    const auto text = [] { return new Text("own.ini"); };
    const auto list = [] { return new VectorAny<Text>; };
    const Row rows[] = {
        {{}, text, "default"}, // a default is not given
        {{"--config-file=own.ini"}, [] { return new Text; }, "own"},
        {{"-cown.ini"}, text, "own"},
        {{"--config-file", "Probe.ini"}, text, "default"},
        {{"--config-file=own.ini"}, list, "own"},
        {{"--config-file=a,b"}, list, "list"},
    };
    for (const Row& row : rows) {
        Probe tool;
        tool.defineOption("config-file", 'c', false).setArg("name", row.value());
        tool.prepare(row.words);
        EXPECT_EQ(entry(tool, "k"), row.text) << (row.words.empty() ? "" : row.words[0]);
    }
}

TEST_F(Configuration, IsNamedByItsOptionAmongManyOthers)
{
    write("base/etc/own.ini", "[a]\nk=own\n");
    Probe tool;
    for (int i = 0; i < 40; ++i) {
        tool.defineOption("option" + std::to_string(i), 0, false);
    }
    tool.defineOption("config-file", 0, false).setArg("name", new Text);
    tool.prepare({"--config-file=own.ini"});
    EXPECT_EQ(entry(tool, "k"), "own");
}

TEST_F(Configuration, IsNotNamedByAFlagOrAnotherOption)
{
    write("base/etc/Probe.ini", "[a]\nk=default\n");
    Probe tool;
    tool.defineOption("config-file", 'c', false);
    tool.defineOption("Config-File", 0, false).setArg("x", new Text);
    tool.defineOption("config", 0, false).setArg("x", new Text);
    tool.prepare({"-c", "--Config-File=own.ini", "--config=own.ini"});
    EXPECT_EQ(entry(tool, "k"), "default");
}

TEST_F(Configuration, IsNotNamedByItsOptionBeforeTheLineIsParsed)
{
    write("base/etc/Probe.ini", "[a]\nk=default\n");
    Probe tool;
    tool.defineOption("config-file", 0, false).setArg("x", new Text("own.ini"));
    EXPECT_EQ(entry(tool, "k"), "default");
    tool.prepare({"--config-file=own.ini"});
    EXPECT_EQ(entry(tool, "k"), "default") << "one object for the whole run";
}

TEST_F(Configuration, OptionNamesWhatIsSearchedForAndNoPath)
{
    // Required, Q-120
    write("work/own.ini", "[a]\nk=here\n");
    write("base/own.ini", "[a]\nk=base\n");
    {
        Probe tool;
        tool.defineOption("config-file", 0, false).setArg("x", new Text);
        EXPECT_EQ(missing(tool, {"--config-file=own.ini"}), "Cannot read from file \"own.ini\"");
    }
    write("base/etc/own.ini", "[a]\nk=etc\n");
    {
        Probe tool;
        tool.defineOption("config-file", 0, false).setArg("x", new Text);
        tool.prepare({"--config-file=own.ini"});
        EXPECT_EQ(entry(tool, "k"), "etc");
        change(tool);
    }
    EXPECT_EQ(test::textIn(userFile("own.ini")), "[a]\nk=etc\nnew=1\n\n");
    EXPECT_EQ(test::textIn(places().scratch / "work" / "own.ini"), "[a]\nk=here\n");
}

// Faults

TEST_F(Configuration, MissingFileThrowsAndIsSearchedAgainAtTheNextCall)
{
    Probe tool;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(missing(tool, {}), "Cannot read from file \"Probe.ini\"");
    }
    write("base/etc/Probe.ini", "[a]\nk=found\n");
    EXPECT_EQ(entry(tool, "k"), "found");
}

TEST_F(Configuration, SyntaxErrorThrowsAndLeavesNothing)
{
    write("base/etc/Probe.ini", "[a]\nk=1\ngone=1\n");
    write("work/etc/Probe.ini", "[a\n");
    {
        Probe tool;
        const std::string text = textOf<OperationFailedException>([&] { tool.getConfigFile(); });
        const std::string file = "file://localhost/" + places().scratch.location("work/etc/Probe.ini");
        EXPECT_EQ(text, "Parsing config file \"" + file + "\"");
        write("base/etc/Probe.ini", "[a]\nk=2\n");
        write("work/etc/Probe.ini", "");
        EXPECT_EQ(entry(tool, "k"), "2");
        EXPECT_FALSE(tool.getConfigFile()->entryIsExistent("a", "gone"));
    }
    EXPECT_FALSE(std::filesystem::exists(userFile()));
}

TEST_F(Configuration, FaultOfAFirstCallIsReportedAsAnyOther)
{
    struct Asking : public Probe
    {
        void error(const std::string& text, const std::string& hint) const override { log += text + "|" + hint; }
        int runMain() override { return getConfigFile() == nullptr ? 2 : 3; }
        mutable std::string log;
    };
    Asking tool;
    char name[] = "probe";
    char* argv[] = {name, nullptr};
    EXPECT_EQ(tool.mainImpl(1, argv), 1);
    EXPECT_EQ(tool.log, "Cannot read from file \"Probe.ini\"|std");
}

TEST_F(Configuration, IsOneObject)
{
    write("base/etc/Probe.ini", "[a]\nk=1\n");
    Probe tool;
    ConfigFile* const first = tool.getConfigFile();
    ASSERT_NE(first, nullptr);
    write("base/etc/Probe.ini", "[a]\nk=2\n");
    EXPECT_EQ(tool.getConfigFile(), first);
    EXPECT_EQ(entry(tool, "k"), "1");
}

TEST_F(Configuration, EachApplicationHasItsOwn)
{
    write("base/etc/Probe.ini", "[a]\nk=1\n");
    Probe first;
    Probe second;
    EXPECT_NE(first.getConfigFile(), second.getConfigFile());
}

TEST_F(Configuration, IsNotReadUnlessSomebodyAsks)
{
    write("base/etc/Probe.ini", "[broken\n");
    {
        Probe tool;
        tool.prepare({});
    }
    EXPECT_TRUE(std::filesystem::is_empty(userFile().parent_path()));
}

// The end of the application

TEST_F(Configuration, IsSavedWholeIntoTheUsersFile)
{
    write("base/etc/Probe.ini", "# by the installation\n[b]\nk = 1, 2\n[a]\nk=base\n");
    {
        Probe tool;
        change(tool);
    }
    EXPECT_EQ(test::textIn(userFile()), "[a]\nk=base\nnew=1\n\n[b]\nk=1,2\n\n");
}

TEST_F(Configuration, IsSavedOnlyIfItWasChanged)
{
    write("base/etc/Probe.ini", "[a]\nk=1\n");
    {
        Probe tool;
        tool.getConfigFile()->setEntry("a", "k", "1");
        tool.getConfigFile()->createSection("more");
    }
    EXPECT_FALSE(std::filesystem::exists(userFile()));
    test::writeFile(userFile(), "# mine\n[a]\nk = 1\n");
    {
        Probe tool;
        tool.getConfigFile();
    }
    EXPECT_EQ(test::textIn(userFile()), "# mine\n[a]\nk = 1\n");
}

TEST_F(Configuration, IsSavedAlsoIfAConstructorFailsBehindIt)
{
    struct Failing : public Probe
    {
        Failing()
        {
            getConfigFile()->setEntry("a", "new", "1");
            throw std::runtime_error("derived");
        }
    };
    write("base/etc/Probe.ini", "[a]\n");
    EXPECT_THROW(Failing(), std::runtime_error);
    EXPECT_EQ(test::textIn(userFile()), "[a]\nnew=1\n\n");
    EXPECT_TRUE(Application::isNotCreated());
}

/// A value that does `action` whenever it is asked for its text.
class Acting : public Text
{
public:
    explicit Acting(std::function<void()> action, std::function<void()> end = {})
        : mAction(std::move(action)), mEnd(std::move(end))
    {
    }
    Acting(const Acting&) = delete;
    Acting& operator=(const Acting&) = delete;
    ~Acting() override
    {
        if (mEnd) {
            mEnd();
        }
    }
    std::string toString(const std::string& separator) const override
    {
        mAction();
        return Text::toString(separator);
    }

private:
    std::function<void()> mAction;
    std::function<void()> mEnd;
};

TEST_F(Configuration, IsSavedWhileEverythingStandsAndDeletedWhenNothingDoes)
{
    write("base/etc/Probe.ini", "[a]\nk=1\n");
    std::string seen;
    const auto note = [&](const std::string& what) {
        seen += what + (Application::instance() != nullptr ? " instance" : "") +
                (TraceAreaMgr::instance() != nullptr ? " areas" : "") + ",";
    };
    {
        Probe tool;
        tool.defineOption("x", 0, false).setArg("x", new Acting([] {}, [&] { note("option deleted:"); }));
        tool.getConfigFile()->setEntry("a", "k", new Acting([&] { note("saved:"); }, [&] { note("value deleted:"); }));
        seen.clear(); // setEntry asked for the text, too
    }
    EXPECT_EQ(seen, "saved: instance areas,option deleted: instance areas,value deleted:,");
}

/// What the end of an application leaves on standard error where the text of an entry cannot be made.
std::string endWith(const std::function<void()>& fault)
{
    const Capture err(std::cerr);
    const Capture out(std::cout);
    bool ending = false;
    {
        Probe tool;
        tool.getConfigFile()->setEntry("a", "k", new Acting([&] { ending ? fault() : void(); }));
        change(tool);
        ending = true;
    }
    EXPECT_TRUE(Application::isNotCreated());
    EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
    EXPECT_EQ(out.text(), "");
    return err.text();
}

TEST_F(Configuration, FaultOfAValueIsToldAtTheEnd)
{
    write("base/etc/Probe.ini", "[a]\nk=1\n");
    EXPECT_EQ(endWith([] { throw OperationFailedException("no text"); }), "no text\n");
    EXPECT_EQ(endWith([] { throw std::runtime_error("not of the library"); }), "not of the library\n");
    EXPECT_EQ(endWith([] { throw 42; }), "Unknown critical program error.\n");
    haveCerr = false;
    EXPECT_EQ(endWith([] { throw OperationFailedException("no text"); }), "");
    EXPECT_EQ(endWith([] { throw 42; }), "");
}

TEST_F(Configuration, FileThatCannotBeWrittenIsToldAtTheEnd)
{
    write("base/etc/Probe.ini", "[a]\nk=1\n");
    for (const bool streams : {true, false}) {
        haveCerr = streams;
        const Capture err(std::cerr);
        {
            Probe tool;
            change(tool);
            std::filesystem::create_directories(userFile());
        }
        const std::string file = "file://localhost/" + test::locationOf(userFile());
        EXPECT_EQ(err.text(), streams ? "ConfigFile: Unable to open file '" + file + "'\n" : "");
        EXPECT_TRUE(Application::isNotCreated());
        EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
        std::filesystem::remove_all(userFile());
    }
}

} // namespace

} // namespace KelvoBase
