/// \file
/// The record in memory, byte for byte.

#include "support/Scratch.h"
#include "trace/Destination.h"
#include "trace/RecordBlock.h"

#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <iostream>

namespace KelvoBase::test
{

namespace
{

constexpr std::size_t lastPosition = 32751; // from which the record goes on at its beginning

/// The record before anything was traced, and behind text that had no destination.
struct FirstBytes
{
    std::string fresh = recordBytes();
    std::string behindLostText;

    FirstBytes()
    {
        TraceStream::instance().setNextTraceConditions(Trace::crit, TraceArea::All());
        TraceStream::instance() << "lost" << std::endl << 'x' << 12;
        behindLostText = recordBytes();
    }
};

const FirstBytes& firstBytes()
{
    static const FirstBytes bytes;
    return bytes;
}

class TraceRecordTest : public testing::Test
{
protected:
    TraceRecordTest()
    {
        trace().clear();
        show();
        trace() << "\n";
    }
    ~TraceRecordTest() override
    {
        haveCerr = true;
        trace().clear();
    }

    static TraceStream& trace() { return TraceStream::instance(); }
    static std::size_t position() { return RecordModel(recordBytes()).position(); }
    static std::string at(std::size_t position, std::size_t count)
    {
        return recordBytes().substr(recordHead + position, count);
    }

    /// All text goes to the destination, which is thrown away.
    void show() { select(Trace::verbose); }
    /// No text goes there.
    void suppress() { select(Trace::crit); }

    /// Fills the record up to a position, by way of its beginning if need be.
    void fillTo(std::size_t wanted)
    {
        if (position() > wanted) {
            trace() << std::string(lastPosition - position() + 1, 'f');
        }
        trace() << std::string(wanted - position(), 'f');
        ASSERT_EQ(position(), wanted);
    }

    // Making the trace's buffer puts the standard streams' own buffers back, so it comes first.
    const FirstBytes& mFirst = firstBytes();

private:
    void select(unsigned int level)
    {
        trace().traceto(level, "cerr", TraceArea::All());
        trace().setNextTraceConditions(Trace::fail, TraceArea::All());
    }

    Destination mDestination{DestinationPlan{100}};
    ScopedBuffer mScope{std::cerr, mDestination};
};

} // namespace

TEST_F(TraceRecordTest, FreshRecordHoldsItsHeadMarkAndNothingElse)
{
    EXPECT_EQ(mFirst.fresh, "\n<BE\xA5IN> " + std::string(recordSize - recordHead, untouched));
}

TEST_F(TraceRecordTest, OneBlockServesAllStreams)
{
    TraceStream first;
    TraceStream second;
    first << "a";
    second << "b";
    EXPECT_EQ(recordBlocks(), 1);
}

TEST_F(TraceRecordTest, TextWithoutADestinationIsNotRecorded)
{
    // Required, Q-707
    EXPECT_EQ(mFirst.behindLostText, mFirst.fresh);
    haveCerr = false;
    trace().traceto(Trace::verbose, "cerr", TraceArea::All());
    const std::string before = recordBytes();
    trace() << "lost" << std::endl;
    EXPECT_EQ(recordBytes(), before);
    EXPECT_TRUE(trace().good());
}

TEST_F(TraceRecordTest, FifthByteStaysAsTheAllocatorDeliveredIt)
{
    // Required, Q-705
    for (int i = 0; i < 3; ++i) {
        trace() << std::string(20000, 'a') << std::endl;
        EXPECT_EQ(recordBytes().substr(0, recordHead), "\n<BE\xA5IN> ");
    }
}

TEST_F(TraceRecordTest, TailMarkStandsBehindEachCharacter)
{
    fillTo(100);
    const std::string text = "one\ntwo";
    for (std::size_t i = 0; i < text.size(); ++i) {
        trace() << text[i];
        EXPECT_EQ(at(100, i + 1 + 5), text.substr(0, i + 1) + "\n<T>\n") << i;
        EXPECT_EQ(position(), 101 + i);
    }
}

TEST_F(TraceRecordTest, TailMarkStandsBehindARun)
{
    fillTo(100);
    trace() << "several at once";
    EXPECT_EQ(at(100, 20), "several at once\n<T>\n");
}

TEST_F(TraceRecordTest, SuppressedTextIsRecorded)
{
    fillTo(200);
    suppress();
    trace() << "hidden" << '!' << std::endl;
    EXPECT_EQ(at(200, 13), "hidden!\n\n<T>\n");
}

TEST_F(TraceRecordTest, PrefixIsNotRecorded)
{
    fillTo(200);
    trace() << "\nline\nline\n";
    EXPECT_EQ(at(200, 16), "\nline\nline\n\n<T>\n");
}

TEST_F(TraceRecordTest, EveryByteValueIsRecordedAsItIs)
{
    fillTo(300);
    std::string text;
    for (int i = 0; i < 256; ++i) {
        text += static_cast<char>(i);
    }
    trace() << text << '\xFF' << '\0';
    EXPECT_EQ(at(300, 256 + 2), text + '\xFF' + '\0');
}

TEST_F(TraceRecordTest, EndOfFileIsNoCharacter)
{
    struct Access : std::streambuf
    {
        static int_type give(std::streambuf& buf, int_type c) { return (buf.*&Access::overflow)(c); }
    };
    const std::string before = recordBytes();
    EXPECT_EQ(Access::give(TraceStream::buf(), EOF), EOF);
    EXPECT_EQ(recordBytes(), before);
}

TEST_F(TraceRecordTest, RecordGoesOnAtItsBeginningBehind32751Characters)
{
    // Required, Q-706
    fillTo(1);
    trace() << std::string(lastPosition - 1 - 1, 'a');
    trace() << 'z';
    EXPECT_EQ(at(lastPosition - 1, 6), "z\n<T>\n");
    const std::string before = at(0, lastPosition);
    trace() << 'n';
    EXPECT_EQ(at(0, 6), "n\n<T>\n");
    EXPECT_EQ(at(6, lastPosition - 6), before.substr(6)) << "what follows is older";
    EXPECT_EQ(at(lastPosition, 7), "\n<end>\n");
}

TEST_F(TraceRecordTest, RunAcrossTheEndIsCutThere)
{
    fillTo(lastPosition - 3);
    trace() << "abcdefg";
    EXPECT_EQ(at(lastPosition - 3, 3 + 7), "abc\n<end>\n");
    EXPECT_EQ(at(0, 4 + 5), "defg\n<T>\n");
}

TEST_F(TraceRecordTest, RunThatJustFitsDoesNotGoOnAtTheBeginning)
{
    fillTo(lastPosition - 3);
    trace() << "abc";
    EXPECT_EQ(at(lastPosition - 3, 3 + 5), "abc\n<T>\n");
}

TEST_F(TraceRecordTest, SecondRoundMarksTheSamePlace)
{
    for (const char c : {'1', '2', '3'}) {
        fillTo(lastPosition);
        trace() << c;
        EXPECT_EQ(at(lastPosition, 7), "\n<end>\n");
        EXPECT_EQ(at(0, 6), std::string(1, c) + "\n<T>\n");
    }
}

TEST_F(TraceRecordTest, MarksReachUpToTheLastByteButOne)
{
    fillTo(lastPosition);
    trace() << 'x';
    const std::string bytes = recordBytes();
    EXPECT_EQ(bytes.substr(recordSize - 8), std::string("\n<end>\n") + untouched);
}

TEST_F(TraceRecordTest, MessageLargerThanTheRecordGoesOverItself)
{
    std::string text;
    for (int i = 0; i < 30000; ++i) {
        text += std::to_string(i) + (i % 7 == 0 ? "\n" : " ");
    }
    for (const bool seen : {true, false}) {
        RecordModel model(recordBytes());
        if (!seen) {
            suppress();
        }
        trace() << text;
        model.store(text);
        EXPECT_EQ(recordBytes(), model.bytes()) << seen;
    }
}

TEST_F(TraceRecordTest, RefusedCharacterIsRecorded)
{
    // Required, Q-708
    fillTo(10);
    Destination broken({0, 4});
    const ScopedBuffer scope(std::cerr, broken);
    EXPECT_EQ(TraceStream::buf().sputn("abcdefg", 7), 4);
    EXPECT_EQ(broken.text(), "abc") << "the fourth character failed";
    EXPECT_EQ(at(10, 5 + 5), "abcde\n<T>\n") << "the fifth was refused";
}

} // namespace KelvoBase::test
