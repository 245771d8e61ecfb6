#include "support/Scratch.h"
#include "xml/Documents.h"

#include <kelvobase/XMLCreator.h>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLException.hpp>

namespace KelvoBase
{

namespace
{

using test::contentOf;
using test::narrow;
using test::ScopedWorkingDirectory;
using test::ScratchDirectory;

/// Lets no file of this process grow beyond some bytes: a disk that is full.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes) : mHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &mBefore);
        const rlimit limit{bytes, mBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &mBefore);
        std::signal(SIGXFSZ, mHandler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit mBefore{};
    void (*mHandler)(int);
};

std::string failureOf(XMLCreator& creator, const std::string& location)
{
    try {
        creator.writeToFile(location);
    } catch (const xercesc::XMLException& e) {
        return narrow(e.getMessage());
    }
    return "written";
}

TEST(XMLCreatorPosix, FullDiskIsNoticedForSmallAndLargeDocuments)
{
    const ScratchDirectory scratch;
    XMLCreator creator;
    xercesc::DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    for (const unsigned int more : {1u, 20000u}) {
        for (unsigned int i = 0; i < more; ++i) {
            XMLCreator::createElement(root, "e");
        }
        const FullDisk disk(50);
        EXPECT_EQ(failureOf(creator, scratch.location("out.xml")), "unable to write data to file");
    }
    EXPECT_EQ(failureOf(creator, scratch.location("out.xml")), "written");
}

TEST(XMLCreatorPosix, DeviceMayBeWrittenTo)
{
    XMLCreator creator;
    XMLCreator::createElement(creator.getDocument(), "root");
    EXPECT_EQ(failureOf(creator, "/dev/null"), "written");
}

TEST(XMLCreatorPosix, RelativeLocationIsBelowTheWorkingDirectory)
{
    const ScratchDirectory scratch;
    scratch.write("sub/other", "");
    const ScopedWorkingDirectory here(scratch.path());
    XMLCreator creator;
    XMLCreator::createElement(creator.getDocument(), "root");
    creator.writeToFile("sub/out.xml");
    EXPECT_NE(contentOf(scratch / "sub/out.xml").find("<root/>"), std::string::npos);
}

// A network path or another drive is no local file of the same spelling.
TEST(XMLCreatorPosix, PathThatNamesNothingHereIsNotWritten)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory here(scratch.path());
    XMLCreator creator;
    XMLCreator::createElement(creator.getDocument(), "root");
    const std::string place = scratch.path().string().substr(1);
    for (const std::string& path : {"//" + place + "/out.xml", "smb:" + place + "/out.xml", std::string("D:out.xml"),
                                    "D:/" + place + "/out.xml", "c:/" + place + "/out.xml", std::string("C:out.xml")}) {
        EXPECT_EQ(failureOf(creator, path), "unable to open file ''") << path;
    }
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(XMLCreatorPosix, NameThatXercesCannotHoldIsNotWrittenUnderAnother)
{
    const ScratchDirectory scratch;
    XMLCreator creator;
    XMLCreator::createElement(creator.getDocument(), "root");
    EXPECT_EQ(failureOf(creator, scratch.location("m\xfc.xml")), "unable to open file ''");
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(XMLCreatorPosix, NameWithOtherLettersAndMarksIsWrittenAsItIs)
{
    const ScratchDirectory scratch;
    XMLCreator creator;
    XMLCreator::createElement(creator.getDocument(), "root");
    for (const char* name : {"a b.xml", "a%20b.xml", "a#b?.xml", "ab:c.xml"}) {
        creator.writeToFile(scratch.location(name));
        EXPECT_NE(contentOf(scratch / name).find("<root/>"), std::string::npos) << name;
    }
}

} // namespace

} // namespace KelvoBase
