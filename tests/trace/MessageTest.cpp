/// \file
/// How the library's own sources open a message.

#include "trace/Message.h"

#include "support/Capture.h"

#include <gtest/gtest.h>

namespace KelvoBase::test
{

TEST(Message, GivesTheStreamUnderItsConditions)
{
    const TraceCapture capture(Trace::warn);
    std::ostream& stream = traceMessage(Trace::warn, TraceArea::All());
    stream << "seen" << std::endl;
    traceMessage(Trace::verbose, TraceArea::All()) << "not seen" << std::endl;
    traceMessage(Trace::crit, std::bitset<64>()) << "critical" << std::endl;
    traceMessage(Trace::warn, std::bitset<64>()) << "of no area" << std::endl;
    EXPECT_EQ(&stream, &TraceStream::instance());
    EXPECT_EQ(capture.text(), "|---- seen\ncritical\n");
}

} // namespace KelvoBase::test
