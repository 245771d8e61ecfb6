#include "ProgressLine.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace seriesstat
{

namespace
{

using namespace std::chrono_literals;

/// A clock that a test moves, and the terminal's input.
class ProgressLineTest : public ::testing::Test
{
protected:
    ProgressLine::Clock clock()
    {
        return [this] { return now; };
    }

    /// What has been written since the last call.
    std::string written()
    {
        const std::string text = out.str();
        out.str("");
        return text;
    }

    std::chrono::milliseconds now = 7000ms;
    std::ostringstream out;
};

TEST_F(ProgressLineTest, ShortWorkShowsNothing)
{
    {
        ProgressLine line(3, out, 80, clock());
        for (std::size_t step = 1; step <= 3; ++step) {
            line.begin(step, "a.txt");
            now += 166ms;
        }
    }
    EXPECT_EQ("", out.str());
}

TEST_F(ProgressLineTest, LineAppearsAfterHalfASecond)
{
    ProgressLine line(3000, out, 80, clock());
    now += 499ms;
    line.begin(11, "data/w.txt");
    EXPECT_EQ("", written());
    now += 1ms;
    line.begin(12, "data/x.txt");
    EXPECT_EQ("reading 12 of 3000: data/x.txt", written());
}

TEST_F(ProgressLineTest, LineIsRenewedTenTimesASecond)
{
    ProgressLine line(9, out, 80, clock());
    now += 500ms;
    line.begin(1, "long");
    now += 99ms;
    line.begin(2, "b");
    EXPECT_EQ("reading 1 of 9: long", written());
    now += 1ms;
    line.begin(3, "c");
    EXPECT_EQ("\r" + std::string(20, ' ') + "\rreading 3 of 9: c", written());
    now += 100ms;
    line.begin(4, "d");
    EXPECT_EQ("\r" + std::string(17, ' ') + "\rreading 4 of 9: d", written());
}

TEST_F(ProgressLineTest, LargeFileTellsHowMuchOfItIsRead)
{
    ProgressLine line(2, out, 80, clock());
    now += 500ms;
    line.begin(1, "large.txt");
    EXPECT_EQ("reading 1 of 2: large.txt", written());
    now += 100ms;
    line.read(999999);
    EXPECT_EQ("", written());
    line.read(1000000);
    EXPECT_EQ("\r" + std::string(25, ' ') + "\rreading 1 of 2 (1 MB): large.txt", written());
    now += 99ms;
    line.read(2999999);
    EXPECT_EQ("", written());
    now += 1ms;
    line.read(2999999);
    EXPECT_EQ("\r" + std::string(32, ' ') + "\rreading 1 of 2 (2 MB): large.txt", written());
}

TEST_F(ProgressLineTest, LineIsTakenAwayAtTheEnd)
{
    {
        ProgressLine line(2, out, 80, clock());
        now += 500ms;
        line.begin(1, "a");
        written();
    }
    EXPECT_EQ("\r" + std::string(17, ' ') + "\r", written());
}

TEST_F(ProgressLineTest, ExceptionTakesTheLineAway)
{
    try {
        ProgressLine line(2, out, 80, clock());
        now += 500ms;
        line.begin(1, "a");
        written();
        throw std::runtime_error("unreadable");
    } catch (const std::runtime_error&) {
        out << "message";
    }
    EXPECT_EQ("\r" + std::string(17, ' ') + "\rmessage", written());
}

TEST_F(ProgressLineTest, ClearedLineComesBackWithTheNextStep)
{
    ProgressLine line(2, out, 80, clock());
    now += 500ms;
    line.begin(1, "a");
    line.clear();
    written();
    line.clear();
    EXPECT_EQ("", written());
    now += 100ms;
    line.begin(2, "b");
    EXPECT_EQ("reading 2 of 2: b", written());
}

TEST_F(ProgressLineTest, NothingIsWrittenWhereNoTerminalIs)
{
    {
        ProgressLine line(2, out, 0, clock());
        now += 10s;
        line.begin(1, "a");
        line.clear();
    }
    EXPECT_EQ("", out.str());
}

TEST_F(ProgressLineTest, LineIsShorterThanTheTerminal)
{
    ProgressLine line(2, out, 20, clock());
    now += 500ms;
    line.begin(1, "abcdefgh");
    EXPECT_EQ("reading 1 of 2: abc", written());
    now += 100ms;
    line.begin(2, "中文"); // two columns each
    EXPECT_EQ("\r" + std::string(19, ' ') + "\rreading 2 of 2: 中", written());
    line.clear();
    EXPECT_EQ("\r" + std::string(18, ' ') + "\r", written());
}

TEST_F(ProgressLineTest, TerminalOfOneColumnHasNoRoom)
{
    ProgressLine line(2, out, 1, clock());
    now += 500ms;
    line.begin(1, "a");
    EXPECT_EQ("", written());
}

TEST_F(ProgressLineTest, NamesDoNotAct)
{
    ProgressLine line(1, out, 80, clock());
    now += 500ms;
    line.begin(1, "\x1B[31m\r\n\xFF.txt");
    EXPECT_EQ("reading 1 of 1: ?[31m???.txt", written());
}

} // namespace

} // namespace seriesstat
