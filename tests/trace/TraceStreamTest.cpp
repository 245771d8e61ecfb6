/// \file
/// The trace stream: what becomes visible, in which form, and where.

#include "support/Capture.h"
#include "support/ChildProcess.h"
#include "support/Scratch.h"
#include "support/Text.h"
#include "trace/Destination.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>

namespace KelvoBase::test
{

namespace
{

using Set = std::bitset<64>;

const Set none;
const Set one(1);
const Set two(2);
const Set both(3);
const Set all = Set().set();

class TraceStreamTest : public testing::Test
{
protected:
    TraceStreamTest()
    {
        // A suppressed line end: the next visible character begins a line.
        to(Trace::crit, none);
        trace().clear();
        trace().setNextTraceConditions(Trace::verbose, none);
        trace() << '\n';
    }
    ~TraceStreamTest() override
    {
        haveCerr = true;
        trace().traceto(Trace::fail, "cerr", all);
        trace().clear();
    }

    static TraceStream& trace() { return TraceStream::instance(); }

    std::string file(const std::string& name = "trace") const { return (mDirectory / name).string(); }
    /// Selects, with an empty file as the destination.
    void to(unsigned int level, const Set& mask) { trace().traceto(level, file(), mask); }
    void write(unsigned int level, const Set& mask, const std::string& text)
    {
        trace().setNextTraceConditions(level, mask);
        trace() << text;
    }
    /// What stands in the file.
    std::string text() const
    {
        trace().flush();
        return textIn(file());
    }

private:
    ScratchDirectory mDirectory;
};

ChildResult run(const std::string& scenario, const std::string& file = "")
{
    return runChild({TRACE_TOOL, scenario, file});
}

std::string cannotOpen(const std::string& dest)
{
    return "Non-fatal Error: Couldn't open \"" + dest + "\" as trace file!";
}

} // namespace

TEST(Trace, InterpretKnowsFourWordsToTheLetter)
{
    const std::pair<std::string, unsigned int> rows[] = {
        {"crit", 0},  {"fail", 1}, {"warn", 2},    {"verbose", 3},   {"Verbose", 99},
        {"CRIT", 99}, {"", 99},    {"undef", 99},  {"crit ", 99},    {" crit", 99},
        {"0", 99},    {"3", 99},   {"verbos", 99}, {"verbosee", 99}, {std::string("crit\0", 5), 99},
    };
    for (const auto& [word, level] : rows) {
        EXPECT_EQ(Trace::interpret(word), level) << word;
    }
}

// Visibility

TEST_F(TraceStreamTest, LevelAndAreasDecideWhatIsVisible)
{
    struct Row
    {
        unsigned int selectedLevel;
        Set selected;
        unsigned int level;
        Set areas;
        bool visible;
    };
    const Row rows[] = {
        {0, none, 0, none, true},
        {0, all, 0, none, true},
        {3, none, 0, all, true},
        {99, all, 0, all, true},
        {0, all, 1, all, false},
        {1, all, 1, all, true},
        {1, all, 2, all, false},
        {2, all, 2, all, true},
        {3, all, 2, all, true},
        {2, all, 3, all, false},
        {3, all, 3, all, true},
        {3, all, 4, all, false},
        {99, all, 99, all, true},
        {98, all, 99, all, false},
        {3, none, 1, all, false},
        {3, all, 1, none, false},
        {3, one, 1, two, false},
        {3, one, 1, one, true},
        {3, one, 1, both, true},
        {3, both, 1, two, true},
        {3, one, 1, all, true},
        {3, none, 1, none, false},
        {3, Set(1ULL << 63), 1, TraceArea::Undef(), true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.selectedLevel << ' ' << row.selected << ", " << row.level << ' '
                                        << row.areas);
        to(row.selectedLevel, row.selected);
        write(row.level, row.areas, "x\n");
        EXPECT_EQ(!text().empty(), row.visible);
    }
}

TEST_F(TraceStreamTest, CriticalTextPassesAnEmptySelectionWithoutAPrefix)
{
    to(Trace::verbose, none);
    write(Trace::crit, none, "critical\n");
    write(Trace::fail, all, "failure\n");
    EXPECT_EQ(text(), "critical\n");
}

TEST_F(TraceStreamTest, PrefixHasTwoHyphensForEachStepOfTheLevel)
{
    const std::pair<unsigned int, std::string> rows[] = {
        {0, ""},
        {1, "|-- "},
        {2, "|---- "},
        {3, "|------ "},
        {16, "|" + std::string(32, '-') + " "},
        {17, "|" + std::string(34, '-') + " "},
        {99, "|" + std::string(198, '-') + " "},
        {40000, "|" + std::string(80000, '-') + " "},
    };
    for (const auto& [level, prefix] : rows) {
        to(50000, all);
        write(level, all, "text\n");
        EXPECT_EQ(text(), prefix + "text\n") << level;
    }
}

TEST_F(TraceStreamTest, EveryLineOfATextHasThePrefix)
{
    to(Trace::verbose, all);
    write(Trace::warn, all, "first\nsecond\n\nlast");
    EXPECT_EQ(text(), "|---- first\n|---- second\n|---- \n|---- last");
}

TEST_F(TraceStreamTest, TextIsTheSameInWholeAndInPieces)
{
    to(Trace::verbose, all);
    trace().setNextTraceConditions(Trace::fail, all);
    trace() << "n " << 12 << ' ' << 1.5 << std::setw(4) << 'c' << std::setw(5) << "text" << true << std::endl;
    trace().put('p').write("qr\nst", 5) << std::endl;
    EXPECT_EQ(text(), "|-- n 12 1.5   c text1\n|-- pqr\n|-- st\n");
}

TEST_F(TraceStreamTest, BytesPassAsTheyAre)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        if (i != '\n' && i != '\r' && i != 26) {
            bytes += static_cast<char>(i);
        }
    }
    to(Trace::verbose, all);
    write(Trace::crit, all, bytes);
    trace() << '\xFF';
    EXPECT_EQ(text(), bytes + '\xFF');
}

TEST_F(TraceStreamTest, LongTextPasses)
{
    const std::string longText(100000, 'x');
    to(Trace::verbose, all);
    write(Trace::fail, all, longText + "\n");
    EXPECT_EQ(text(), "|-- " + longText + "\n");
}

TEST_F(TraceStreamTest, RunsToAFilePassWhereverItsBufferEnds)
{
    to(Trace::fail, all);
    std::string expected;
    for (std::size_t length = 0; length < 400; ++length) {
        trace().setNextTraceConditions(Trace::crit, all);
        for (int i = 0; i < 40; ++i) {
            const std::string part(length, static_cast<char>('a' + i % 26));
            trace() << part;
            expected += part;
        }
    }
    EXPECT_TRUE(text() == expected);
}

TEST_F(TraceStreamTest, ConditionsHoldUntilTheyAreSetAgain)
{
    to(Trace::verbose, all);
    write(Trace::warn, all, "first\n");
    trace() << "second\n";
    write(Trace::verbose, none, "hidden\n");
    trace() << "hidden, too\n";
    EXPECT_EQ(text(), "|---- first\n|---- second\n");
}

TEST_F(TraceStreamTest, SuppressedTextLeavesTheLineStart)
{
    to(Trace::warn, all);
    write(Trace::verbose, all, "hidden");
    write(Trace::warn, all, "seen");
    EXPECT_EQ(text(), "|---- seen");
}

TEST_F(TraceStreamTest, ConditionsCanChangeWithinALine)
{
    to(Trace::warn, all);
    write(Trace::fail, all, "a");
    write(Trace::warn, all, "b");
    write(Trace::verbose, all, "hidden");
    write(Trace::crit, all, "c\n");
    write(Trace::crit, all, "d");
    write(Trace::warn, all, "e\n");
    EXPECT_EQ(text(), "|-- abc\nde\n");
}

TEST_F(TraceStreamTest, SuppressedLineEndBeginsALine)
{
    // Required, Q-709
    to(Trace::warn, all);
    write(Trace::warn, all, "seen");
    write(Trace::verbose, all, "hidden\n");
    write(Trace::fail, all, "again\n");
    write(Trace::warn, all, "seen");
    write(Trace::verbose, all, "x");
    trace() << '\n';
    write(Trace::fail, all, "again\n");
    EXPECT_EQ(text(), "|---- seen|-- again\n|---- seen|-- again\n");
}

TEST_F(TraceStreamTest, LevelAloneStandsForAllAreasAndOpensAChain)
{
    to(Trace::warn, one);
    write(Trace::verbose, none, "");
    TraceStream& chain = trace().setNextTraceConditions(Trace::warn);
    EXPECT_EQ(&chain, &trace());
    trace().setNextTraceConditions(Trace::fail) << "chained" << std::endl;
    EXPECT_EQ(text(), "|-- chained\n");
}

// Destinations

TEST_F(TraceStreamTest, SettingConditionsFlushes)
{
    to(Trace::verbose, all);
    write(Trace::fail, all, "pending");
    EXPECT_EQ(textIn(file()), "");
    trace().setNextTraceConditions(Trace::fail, all);
    EXPECT_EQ(textIn(file()), "|-- pending");
}

TEST_F(TraceStreamTest, MaskIsWhatWasSelectedLast)
{
    to(Trace::verbose, both);
    EXPECT_EQ(trace().getMask(), both);
    const Set& mask = trace().getMask();
    to(Trace::verbose, two);
    EXPECT_EQ(mask, two);
}

TEST_F(TraceStreamTest, AllStreamsShareOneBuffer)
{
    TraceStream other;
    EXPECT_EQ(other.rdbuf(), trace().rdbuf());
    EXPECT_EQ(&TraceStream::buf(), trace().rdbuf());
    EXPECT_EQ(&TraceStream::instance(), &trace());
    to(Trace::verbose, all);
    other.setNextTraceConditions(Trace::fail, all);
    trace() << "seen" << std::endl;
    EXPECT_EQ(other.getMask(), all);
    EXPECT_EQ(text(), "|-- seen\n");
}

TEST_F(TraceStreamTest, EndOfAStreamFlushes)
{
    to(Trace::verbose, all);
    trace().setNextTraceConditions(Trace::crit, all);
    {
        TraceStream other;
        other << "pending";
    }
    EXPECT_EQ(textIn(file()), "pending");
}

TEST_F(TraceStreamTest, FileIsEmptiedAndTheEarlierOneComplete)
{
    trace().traceto(Trace::verbose, file("first"), all);
    write(Trace::crit, all, "one");
    trace().traceto(Trace::verbose, file("second"), all);
    EXPECT_EQ(textIn(file("first")), "one");
    trace() << "two";
    trace().traceto(Trace::verbose, file("first"), all);
    EXPECT_EQ(textIn(file("second")), "two");
    EXPECT_EQ(textIn(file("first")), "");
}

TEST_F(TraceStreamTest, NewDestinationDoesNotBeginALine)
{
    // Required, Q-713
    trace().traceto(Trace::verbose, file("first"), all);
    write(Trace::warn, all, "be");
    trace().traceto(Trace::verbose, file("second"), all);
    trace() << "gun\nnext\n";
    trace().flush();
    EXPECT_EQ(textIn(file("first")), "|---- be");
    EXPECT_EQ(textIn(file("second")), "gun\n|---- next\n");
}

TEST_F(TraceStreamTest, OnlyTheExactWordsNameStandardStreams)
{
    const ScratchDirectory directory;
    const ScopedWorkingDirectory here(directory.path());
    for (const char* name : {"Cout", "cerr ", "clog", "stderr"}) {
        trace().traceto(Trace::verbose, name, all);
        write(Trace::crit, all, name);
        trace().flush();
        EXPECT_EQ(textIn(directory / name), name);
    }
    trace().traceto(Trace::verbose, "cerr", all);
}

TEST_F(TraceStreamTest, StandardStreamsAreDestinations)
{
    const Capture cout(std::cout);
    const Capture cerr(std::cerr);
    trace().traceto(Trace::verbose, "cout", all);
    write(Trace::fail, all, "out\n");
    trace().traceto(Trace::verbose, "cerr", all);
    write(Trace::fail, all, "err\n");
    EXPECT_EQ(cout.text(), "|-- out\n");
    EXPECT_EQ(cerr.text(), "|-- err\n");
}

TEST_F(TraceStreamTest, WithoutStandardStreamsBothWordsMeanNoOutput)
{
    // Required, Q-712
    haveCerr = false;
    const Capture cout(std::cout);
    const Capture cerr(std::cerr);
    for (const char* dest : {"cout", "cerr"}) {
        trace().traceto(Trace::verbose, dest, all);
        write(Trace::crit, all, "lost\n");
        EXPECT_TRUE(trace().good());
    }
    EXPECT_EQ(cout.text() + cerr.text(), "");
    to(Trace::verbose, all);
    trace() << "a file works\n";
    EXPECT_EQ(text(), "a file works\n");
}

TEST_F(TraceStreamTest, HaveCerrIsAskedWhenTheDestinationIsSet)
{
    const Capture cerr(std::cerr);
    trace().traceto(Trace::verbose, "cerr", all);
    haveCerr = false;
    write(Trace::crit, all, "still there\n");
    EXPECT_EQ(cerr.text(), "still there\n");
}

TEST_F(TraceStreamTest, FileThatCannotBeOpenedThrows)
{
    // Required, Q-710
    for (const std::string& dest : {file("missing/trace"), std::string(), std::string("no\"such/\n")}) {
        EXPECT_EQ(textOf<OperationFailedException>([&] { trace().traceto(Trace::fail, dest, all); }), cannotOpen(dest));
    }
}

TEST_F(TraceStreamTest, FailedDestinationLeavesAnEarlierStandardStreamWithTheNewSelection)
{
    // Required, Q-711
    const Capture cerr(std::cerr);
    trace().traceto(Trace::fail, "cerr", one);
    EXPECT_THROW(trace().traceto(Trace::warn, file("missing/trace"), two), OperationFailedException);
    EXPECT_EQ(trace().getMask(), two);
    write(Trace::warn, two, "seen\n");
    write(Trace::warn, one, "not seen\n");
    write(Trace::verbose, two, "not seen\n");
    EXPECT_EQ(cerr.text(), "|---- seen\n");
    to(Trace::fail, all);
    write(Trace::fail, all, "and on\n");
    EXPECT_EQ(text(), "|-- and on\n");
}

TEST_F(TraceStreamTest, FailedDestinationLeavesNoneInThePlaceOfAFile)
{
    to(Trace::verbose, all);
    write(Trace::crit, all, "pending");
    for (int i = 0; i < 2; ++i) {
        EXPECT_THROW(trace().traceto(Trace::warn, file("missing/trace"), all), OperationFailedException);
        trace() << "lost" << std::endl;
        EXPECT_TRUE(trace().good());
    }
    EXPECT_EQ(textIn(file()), "pending");
}

// Destinations that fail

TEST_F(TraceStreamTest, FailureIsNoticedOneCharacterLate)
{
    for (const bool throws : {false, true}) {
        trace().clear();
        Destination broken({0, 3, true, throws});
        const ScopedBuffer scope(std::cerr, broken);
        trace().traceto(Trace::verbose, "cerr", all);
        trace().setNextTraceConditions(Trace::crit, all);
        EXPECT_EQ(TraceStream::buf().sputc('a'), 'a');
        EXPECT_EQ(TraceStream::buf().sputc('b'), 'b');
        EXPECT_EQ(TraceStream::buf().sputc('c'), 'c') << "this one failed";
        EXPECT_TRUE(std::cerr.bad());
        EXPECT_EQ(TraceStream::buf().sputc('d'), EOF);
        EXPECT_EQ(broken.text(), "ab");
    }
}

TEST_F(TraceStreamTest, StreamFailsBehindItsDestinationAndDropsWhatFollows)
{
    Destination broken({0, 3});
    const ScopedBuffer scope(std::cerr, broken);
    trace().traceto(Trace::verbose, "cerr", all);
    trace().setNextTraceConditions(Trace::crit, all);
    trace() << "abc";
    EXPECT_TRUE(trace().good());
    trace() << 'd';
    EXPECT_TRUE(trace().bad());
    trace() << "dropped";
    EXPECT_EQ(broken.text(), "ab");
}

TEST_F(TraceStreamTest, SuppressedTextDoesNotNoticeABadDestination)
{
    Destination healthy;
    const ScopedBuffer scope(std::cerr, healthy);
    trace().traceto(Trace::warn, "cerr", all);
    trace().setNextTraceConditions(Trace::verbose, all);
    std::cerr.setstate(std::ios_base::badbit);
    trace() << "hidden" << '\n';
    EXPECT_TRUE(trace().good());
}

TEST_F(TraceStreamTest, PrefixThatFailsRefusesTheCharacterBehindIt)
{
    Destination broken({0, 3});
    const ScopedBuffer scope(std::cerr, broken);
    trace().traceto(Trace::verbose, "cerr", all);
    trace().setNextTraceConditions(Trace::warn, all);
    EXPECT_EQ(TraceStream::buf().sputn("text", 4), 0);
    EXPECT_EQ(broken.text(), "|-");
    std::cerr.clear();
}

TEST_F(TraceStreamTest, ExceptionsOfTheDestinationReachTheStreamIfTheyAreWanted)
{
    Destination broken({0, 2, false, true});
    const ScopedBuffer scope(std::cerr, broken);
    std::cerr.exceptions(std::ios_base::badbit);
    trace().traceto(Trace::verbose, "cerr", all);
    trace().setNextTraceConditions(Trace::crit, all);
    EXPECT_THROW(TraceStream::buf().sputn("abc", 3), Broken);
    EXPECT_TRUE(std::cerr.bad());
    std::cerr.clear();
    trace() << "de";
    EXPECT_EQ(broken.text(), "ade");
}

// When the destination is flushed

TEST_F(TraceStreamTest, UnitBufferedStreamIsFlushedWithTheTraceOnly)
{
    Destination destination({100});
    const ScopedBuffer scope(std::cerr, destination);
    trace().traceto(Trace::verbose, "cerr", all);
    trace().setNextTraceConditions(Trace::fail, all);
    trace() << "a line of " << 3 << " parts\n" << 'c';
    EXPECT_EQ(destination.written(), "");
    trace() << std::endl;
    EXPECT_EQ(destination.written(), "|-- a line of 3 parts\n|-- c\n");
}

TEST_F(TraceStreamTest, VisibleTextFlushesTheStreamTiedToItsDestination)
{
    Destination destination({100});
    Destination tied({100});
    std::ostream tiedStream(&tied);
    const ScopedBuffer scope(std::cerr, destination);
    std::cerr.tie(&tiedStream);
    trace().traceto(Trace::fail, "cerr", all);
    trace().setNextTraceConditions(Trace::warn, all);
    tiedStream << "before";
    trace() << "hidden";
    EXPECT_EQ(tied.written(), "");
    trace().setNextTraceConditions(Trace::fail, all);
    tiedStream << ", ";
    trace() << "seen";
    EXPECT_EQ(tied.written(), "before, ");
    tiedStream << "and more";
    trace() << '.';
    EXPECT_EQ(tied.written(), "before, and more");
}

TEST_F(TraceStreamTest, EveryFlushReachesTheFile)
{
    to(Trace::verbose, all);
    trace().setNextTraceConditions(Trace::fail, all);
    std::string expected = "|-- ";
    for (const char* part : {"a", "b", "several", "c", "d"}) {
        trace() << part << std::flush;
        expected += part;
        EXPECT_EQ(textIn(file()), expected);
        trace() << std::flush;
        EXPECT_EQ(textIn(file()), expected);
    }
}

TEST_F(TraceStreamTest, EarlierDestinationIsFlushed)
{
    Destination destination({100});
    const ScopedBuffer scope(std::cout, destination);
    trace().traceto(Trace::fail, "cout", all);
    write(Trace::crit, all, "pending");
    EXPECT_EQ(destination.written(), "");
    to(Trace::fail, all);
    EXPECT_EQ(destination.written(), "pending");
}

TEST_F(TraceStreamTest, SelectionChangesEvenIfTheEarlierDestinationCannotBeFlushed)
{
    Destination healthy;
    const ScopedBuffer scope(std::cerr, healthy);
    trace().traceto(Trace::fail, "cerr", one);
    std::cerr.setstate(std::ios_base::badbit);
    EXPECT_THROW(std::cerr.exceptions(std::ios_base::badbit), std::ios_base::failure);
    EXPECT_THROW(to(Trace::warn, two), std::ios_base::failure);
    EXPECT_EQ(trace().getMask(), two);
    std::cerr.clear();
    write(Trace::warn, two, "seen\n");
    EXPECT_EQ(healthy.text(), "|---- seen\n");
}

TEST_F(TraceStreamTest, FlushReachesAStandardStreamWithTextOfOthers)
{
    Destination destination({100});
    const ScopedBuffer scope(std::cout, destination);
    trace().traceto(Trace::fail, "cout", all);
    std::cout << "another's";
    trace().flush();
    EXPECT_EQ(destination.written(), "another's");
}

// Fresh processes

TEST(TraceStreamProcess, EverythingIsSelectedAndLostBeforeADestinationIsSet)
{
    const ChildResult result = run("defaults");
    EXPECT_EQ(result.out, std::string(64, '1') + "\n1\n");
    EXPECT_EQ(result.err, "");
}

TEST(TraceStreamProcess, FirstConditionsAreVerboseForAllAreas)
{
    const ChildResult result = run("firstConditions");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "|------ level 3\n");
}

TEST(TraceStreamProcess, StandardStreamsShowWhatIsSelected)
{
    EXPECT_EQ(run("toCout").out, "|---- seen\n");
    EXPECT_EQ(run("toCout").err, "");
    EXPECT_EQ(run("toCerr").out, "");
    EXPECT_EQ(run("toCerr").err, "|---- seen\n");
}

TEST(TraceStreamProcess, NothingIsShownWithoutStandardStreams)
{
    const ChildResult result = run("withoutStandardStreams");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
}

TEST(TraceStreamProcess, UnfinishedTextIsFlushedAtTheEnd)
{
    const ScratchDirectory directory;
    EXPECT_EQ(run("unfinished").out, "|-- no line end");
    EXPECT_EQ(run("unfinishedAtExit").out, "|-- no line end");
    for (const char* scenario : {"unfinished", "unfinishedAtExit"}) {
        EXPECT_EQ(run(scenario, (directory / scenario).string()).status, scenario[10] == '\0' ? 0 : 3);
        EXPECT_EQ(textIn(directory / scenario), "|-- no line end") << scenario;
    }
}

TEST(TraceStreamProcess, StreamOfTheProgramMayOutliveTheProcessWideOne)
{
    EXPECT_EQ(run("lateStream").out, "|-- late");
}

TEST(TraceStreamProcess, FirstUsePutsTheStandardStreamsOutOfStepWithStdio)
{
    EXPECT_EQ(run("stdioGoesItsOwnWay").out, "a\nb\nout of step\n");
}

TEST(TraceStreamProcess, LevelsShowTheirPrefixes)
{
    EXPECT_EQ(run("lines").err, "level 0 of the trace\n"
                                "|-- level 1 of the trace\n"
                                "|---- level 2 of the trace\n"
                                "|------ level 3 of the trace\n"
                                "|------ two\n"
                                "|------ lines\n");
}

} // namespace KelvoBase::test
