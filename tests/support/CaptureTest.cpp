#include "support/Capture.h"

#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace KelvoBase::test
{

namespace
{

TEST(Capture, HoldsWhatIsWrittenWhileItLives)
{
    std::ostringstream stream;
    stream << "before ";
    {
        const Capture capture(stream);
        EXPECT_EQ(capture.text(), "");
        stream << "inside " << 7;
        EXPECT_EQ(capture.text(), "inside 7");
    }
    stream << "behind";
    EXPECT_EQ(stream.str(), "before behind");
}

TEST(Capture, Nests)
{
    const Capture outer(std::cerr);
    std::cerr << "a";
    {
        const Capture inner(std::cerr);
        std::cerr << "b";
        EXPECT_EQ(inner.text(), "b");
    }
    std::cerr << "c";
    EXPECT_EQ(outer.text(), "ac");
}

void trace(unsigned int level, const char* text)
{
    TraceStream& stream = TraceStream::instance();
    stream.setNextTraceConditions(level, TraceArea::All());
    stream << text << std::endl;
}

TEST(TraceCapture, HoldsLinesOfItsLevelAndMoreImportantOnes)
{
    const TraceCapture capture(Trace::warn);
    trace(Trace::fail, "a failure");
    trace(Trace::verbose, "a detail");
    trace(Trace::warn, "a warning");
    EXPECT_EQ(capture.text(), "|-- a failure\n|---- a warning\n");
}

TEST(TraceCapture, StartsEmpty)
{
    {
        const TraceCapture first(Trace::fail);
        trace(Trace::fail, "old");
    }
    const TraceCapture second(Trace::fail);
    EXPECT_EQ(second.text(), "");
    trace(Trace::fail, "new");
    EXPECT_EQ(second.text(), "|-- new\n");
}

TEST(TraceCapture, LeavesStandardErrorAsDestination)
{
    {
        const TraceCapture capture(Trace::verbose);
    }
    const Capture errors(std::cerr);
    trace(Trace::fail, "a failure");
    trace(Trace::warn, "a warning");
    TraceStream::instance().flush();
    EXPECT_EQ(errors.text(), "|-- a failure\n");
}

} // namespace

} // namespace KelvoBase::test
