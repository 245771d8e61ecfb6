#include "ResultFile.h"

#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>

namespace seriesstat
{

namespace
{

using KelvoBase::FileNotFoundException;
using KelvoBase::RuntimeException;
using KelvoBase::test::contentOf;
using KelvoBase::test::ScopedWorkingDirectory;
using KelvoBase::test::ScratchDirectory;
using KelvoBase::test::textOf;
using KelvoBase::test::TraceCapture;
using Limits = std::numeric_limits<double>;

constexpr const char* digest = "da39a3ee5e6b4b0d3255bfef95601890afd80709";

Summary summaryOf(double value)
{
    return {.count = 3,
            .mean = value,
            .deviation = value * 0.3,
            .autocorrelation = -value / 7,
            .minimum = value,
            .lowerQuartile = value,
            .median = value,
            .upperQuartile = value,
            .maximum = value};
}

StoredResults storedResults()
{
    StoredResults stored{.origin = {1.2, "1", "2026-11-21 15:40:12"}};
    stored.results = {.quantity = "x", .series = {{.name = "a.txt", .digest = digest, .summary = summaryOf(0.1)}}};
    stored.results.seconds = 0.25;
    return stored;
}

class ResultFileTest : public ::testing::Test
{
protected:
    static StoredResults throughFile(const StoredResults& stored)
    {
        write(stored);
        return readResults("r.xml");
    }
    static void write(const StoredResults& stored)
    {
        OutputFile file("r.xml");
        writeResults(file, stored);
        file.finish();
    }
    /// The text of a file with one part replaced.
    static std::string changed(const std::string& part, const std::string& replacement)
    {
        write(storedResults());
        std::string text = contentOf("r.xml");
        const std::size_t position = text.find(part);
        EXPECT_NE(std::string::npos, position) << part;
        return position == std::string::npos ? text : text.replace(position, part.size(), replacement);
    }
    /// What reading a file of that text says behind its name.
    std::string faultOf(const std::string& text) const
    {
        mScratch.write("r.xml", text);
        const std::string fault = textOf<RuntimeException>([] { readResults("r.xml"); });
        EXPECT_TRUE(fault.starts_with("r.xml: ")) << fault;
        return fault.substr(7);
    }

    const ScratchDirectory mScratch;
    const ScopedWorkingDirectory mInside{mScratch.path()};
};

std::vector<std::uint64_t> bitsOf(const Summary& summary)
{
    std::vector<std::uint64_t> bits{summary.count, summary.deviation.has_value(), summary.autocorrelation.has_value()};
    for (const double value :
         {summary.mean, summary.deviation.value_or(0), summary.autocorrelation.value_or(0), summary.minimum,
          summary.lowerQuartile, summary.median, summary.upperQuartile, summary.maximum}) {
        bits.push_back(std::bit_cast<std::uint64_t>(value));
    }
    return bits;
}

TEST_F(ResultFileTest, EverythingComesBack)
{
    const StoredResults stored = storedResults();
    const StoredResults back = throughFile(stored);
    EXPECT_EQ(1.2, back.origin.version);
    EXPECT_EQ("1", back.origin.revision);
    EXPECT_EQ("2026-11-21 15:40:12", back.origin.when);
    EXPECT_EQ("x", back.results.quantity);
    EXPECT_EQ(0.25, back.results.seconds);
    ASSERT_EQ(1U, back.results.series.size());
    EXPECT_EQ("a.txt", back.results.series[0].name);
    EXPECT_EQ(digest, back.results.series[0].digest);
    EXPECT_EQ(bitsOf(stored.results.series[0].summary), bitsOf(back.results.series[0].summary));
    EXPECT_TRUE(back.results.series[0].values.empty());
}

TEST_F(ResultFileTest, NumbersComeBackToTheLastBit)
{
    StoredResults stored = storedResults();
    const Summary mixed{.count = 4294967295,
                        .mean = 0.1 + 0.2,
                        .deviation = Limits::denorm_min(),
                        .autocorrelation = -0.0,
                        .minimum = Limits::lowest(),
                        .lowerQuartile = -Limits::min(),
                        .median = -0.0,
                        .upperQuartile = 1e23,
                        .maximum = Limits::max()};
    stored.results.series[0].summary = mixed;
    EXPECT_EQ(bitsOf(mixed), bitsOf(throughFile(stored).results.series[0].summary));
}

TEST_F(ResultFileTest, WhatIsNotDefinedComesBackAsThat)
{
    StoredResults stored = storedResults();
    stored.results.series[0].summary.deviation.reset();
    stored.results.series[0].summary.autocorrelation.reset();
    const Summary back = throughFile(stored).results.series[0].summary;
    EXPECT_FALSE(back.deviation);
    EXPECT_FALSE(back.autocorrelation);
    EXPECT_EQ(0.1, back.mean);
}

TEST_F(ResultFileTest, SeriesComeBackInTheirOrderAlsoWithTheSameName)
{
    StoredResults stored = storedResults();
    for (const char* name : {"z.txt", "a.txt", "m.txt"}) {
        stored.results.series.push_back({.name = name, .digest = digest, .summary = summaryOf(5)});
    }
    std::vector<std::string> names;
    for (const SeriesResult& series : throughFile(stored).results.series) {
        names.push_back(series.name);
    }
    EXPECT_EQ((std::vector<std::string>{"a.txt", "z.txt", "a.txt", "m.txt"}), names);
}

TEST_F(ResultFileTest, TextsComeBackAsTheyAre)
{
    const std::vector<std::string> texts{"\xC2\xB5 / m",
                                         " a  b ",
                                         " ",
                                         "a<b>&c;\"'",
                                         "]]>",
                                         "<!-- -->",
                                         "\xF0\x9F\x98\x80/\xE6\xB8\xAC\xE5\xAE\x9A.txt",
                                         "\xEF\xBF\xBD",
                                         "\xC2\x85\xE2\x80\xA8",
                                         "n/a",
                                         std::string(8192, '&')};
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        ASSERT_NO_THROW(checkStorable({text}));
        StoredResults stored = storedResults();
        stored.results.quantity = text;
        stored.results.series[0].name = text;
        const StoredResults back = throughFile(stored);
        EXPECT_EQ(text, back.results.quantity);
        EXPECT_EQ(text, back.results.series[0].name);
    }
}

TEST_F(ResultFileTest, TextThatWouldNotComeBackIsRefused)
{
    const std::vector<std::string> texts{"",
                                         "a\tb",
                                         "a\nb",
                                         "a\rb",
                                         std::string("a\0b", 3),
                                         "\x1B[2J",
                                         "\x7F",
                                         "\xB5 / m",
                                         "\xC3",
                                         "\xC0\xAF",
                                         "\xED\xA0\x80",
                                         "\xEF\xBF\xBE",
                                         "\xEF\xBF\xBF",
                                         "\xF4\x90\x80\x80",
                                         std::string(8193, 'x')};
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        EXPECT_THROW(checkStorable({"fine", text}), RuntimeException);
    }
    EXPECT_EQ("\"a?b\" cannot stand in a file of results: there it has to be a text in UTF-8, of 8 kB at most and "
              "without control characters.",
              textOf<RuntimeException>([] {
                  checkStorable({"fine", "a\tb"});
              }));
}

TEST_F(ResultFileTest, MissingFileIsTold)
{
    EXPECT_EQ("Cannot find file \"none.xml\".", textOf<FileNotFoundException>([] { readResults("none.xml"); }));
    EXPECT_EQ(".: This is no ordinary file.", textOf<RuntimeException>([] { readResults("."); }));
}

TEST_F(ResultFileTest, OtherFilesAreNoResults)
{
    const std::string none = "This is no result of seriesstat.";
    const std::string utf8 = R"(<?xml version="1.0" encoding="UTF-8"?>)";
    for (const std::string& text : std::vector<std::string>{
             "",
             "hello\n",
             "1\n2\n",
             utf8,
             "<seriesResults></seriesResults>",
             utf8 + "<html><p>hello</p></html>",
             "<?xml version=\"1.0\" encoding=\"UTF-7\"?><seriesResults>+ADwAIQ-DOCTYPE</seriesResults>",
             std::string("\xFF\xFE<\0?\0x\0m\0l\0", 12),
             changed("\">seriesstat<", "\">otherstat<"),
         }) {
        SCOPED_TRACE(text);
        EXPECT_EQ(none, faultOf(text));
    }
}

TEST_F(ResultFileTest, FileThatIsCutOffIsToldWhereverThatIs)
{
    write(storedResults());
    const std::string text = contentOf("r.xml");
    const std::size_t begin = text.find("<seriesResults>") + 15;
    const std::size_t end = text.find("</seriesResults>") + 16;
    for (std::size_t size = end - 1; size > 6; size -= 7) {
        ASSERT_EQ(size < begin ? "This is no result of seriesstat." : "The end of the result is missing.",
                  faultOf(text.substr(0, size)))
            << size;
    }
    mScratch.write("r.xml", text.substr(0, end));
    EXPECT_NO_THROW(readResults("r.xml"));
}

TEST_F(ResultFileTest, WhatCouldHarmIsRefusedBeforeItIsParsed)
{
    const std::string declares = "There is a document type, a comment or a CDATA section (<!), and no result has one.";
    const std::string overlong = "There is a text or a tag of more than 64 kB, and no result has one.";
    std::string attributes;
    for (int i = 0; i < 20000; ++i) {
        attributes += " a" + std::to_string(i) + "=\"\"";
    }
    const std::vector<std::pair<std::string, std::string>> rows{
        {changed("<seriesResults>", "<!DOCTYPE seriesResults [<!ENTITY x \"1\">]><seriesResults>"), declares},
        {changed("<seriesResults>", "<!DOCTYPE seriesResults SYSTEM \"/etc/passwd\"><seriesResults>"), declares},
        {changed("<structure", "<!-- --><structure"), declares},
        {changed(">0.1<", "><![CDATA[0.1]]><"), declares},
        {changed("<series>", "<series" + attributes + ">"), overlong},
        {changed(">x<", ">" + std::string(65536, 'x') + "<"), overlong},
    };
    for (const auto& [text, fault] : rows) {
        SCOPED_TRACE(text.substr(0, 200));
        const TraceCapture trace(1);
        EXPECT_EQ(fault, faultOf(text));
        EXPECT_EQ("", trace.text());
    }
}

TEST_F(ResultFileTest, HugeFileIsNotRead)
{
    mScratch.write("r.xml", "");
    std::filesystem::resize_file("r.xml", (32U << 20U) + 1);
    EXPECT_EQ("r.xml: This is larger than 32 MiB, and no result is.",
              textOf<RuntimeException>([] { readResults("r.xml"); }));
    std::filesystem::resize_file("r.xml", 32U << 20U);
    EXPECT_EQ("r.xml: This is no result of seriesstat.", textOf<RuntimeException>([] { readResults("r.xml"); }));
}

TEST_F(ResultFileTest, OtherStructureIsRefusedWhateverElseItHas)
{
    const std::string head = R"(<?xml version="1.0" encoding="UTF-8"?><seriesResults>)";
    const std::string structure = R"(<structure DataType="UnsignedLongAny">2</structure>)";
    EXPECT_EQ("The result has a structure that this version of seriesstat does not know: 2.",
              faultOf(head + structure + "<new>1</new></seriesResults>"));
    EXPECT_EQ("There is no entry \"structure\".", faultOf(head + "<new>1</new></seriesResults>"));
}

TEST_F(ResultFileTest, DamageIsToldWithItsPlace)
{
    const std::string lag1 = "<lag1 DataType=\"DoubleAny\">-0.014285714285714287</lag1>";
    const std::string when = "<when DataType=\"StringAny\">2026-11-21 15:40:12</when>";
    const std::vector<std::tuple<std::string, std::string, std::string>> rows{
        {when, "", "There is no entry \"when\"."},
        {when, when + when, "There is more than one entry \"when\"."},
        {when, when + "<where/>", "There is an unknown entry \"where\"."},
        {when, "<when>now</when>", "\"when\" has another data type than StringAny."},
        {when, "<when DataType=\"StringAny\"/>", "\"when\" has no value that fits: \"\"."},
        {when, "<when DataType=\"StringAny\">a&#10;b</when>", "\"when\" has no value that fits: \"a?b\"."},
        {when, "<when DataType=\"StringAny\">a<b/></when>", "\"when\" has no value that fits: more than a text."},
        {">1.2<", ">one<", "\"version\" has no value that fits: \"one\"."},
        {">0.25<", ">-nan<", "\"seconds\" has no value that fits: \"-nan\"."},
        {lag1, "", "series 1: There is no entry \"lag1\"."},
        {lag1, lag1 + lag1, "series 1: There is more than one entry \"lag1\"."},
        {lag1, lag1 + "<mode>1</mode>", "series 1: There is an unknown entry \"mode\"."},
        {">0.1<", "> 0.1<", "series 1: \"mean\" has no value that fits: \" 0.1\"."},
        {">0.1<", ">0.1x<", "series 1: \"mean\" has no value that fits: \"0.1x\"."},
        {">0.1<", "><", "series 1: \"mean\" has no value that fits: \"\"."},
        {">0.1<", ">1e999<", "series 1: \"mean\" has no value that fits: \"1e999\"."},
        {">3<", ">-3<", "series 1: \"count\" has no value that fits: \"-3\"."},
        {"<mean DataType=\"DoubleAny\">0.1<", "<mean DataType=\"StringAny\">n/a<",
         "series 1: \"mean\" has another data type than DoubleAny."},
        {lag1, "<lag1 DataType=\"StringAny\">none</lag1>", "series 1: \"lag1\" has no value that fits: \"none\"."},
        {lag1, "<lag1 DataType=\"DoubleAny\">n/a</lag1>", "series 1: \"lag1\" has no value that fits: \"n/a\"."},
        {">1</seriesCount>", ">2</seriesCount>", "Series are missing, or too many: there should be 2."},
        {">1</seriesCount>", ">0</seriesCount>", "Series are missing, or too many: there should be 0."},
    };
    for (const auto& [part, replacement, fault] : rows) {
        SCOPED_TRACE(replacement);
        EXPECT_EQ(fault, faultOf(changed(part, replacement)));
    }
}

TEST_F(ResultFileTest, XmlFaultLosesNoSeriesUnseen)
{
    StoredResults two = storedResults();
    two.results.series.push_back(two.results.series[0]);
    write(two);
    std::string text = contentOf("r.xml");
    const std::size_t gap = text.find("</series>") + 9;
    for (const char* junk : {"&", "&none;", "</a>", "<a>", "\x01", "<?"}) {
        SCOPED_TRACE(junk);
        const TraceCapture trace(1);
        EXPECT_NE("", faultOf(text.substr(0, gap) + junk + text.substr(gap)));
        EXPECT_NE(std::string::npos, trace.text().find("There occured 1errors while parsing Parsing r.xml"));
    }
}

TEST_F(ResultFileTest, TextThatIsNoUtf8IsNoXml)
{
    const TraceCapture trace(1);
    EXPECT_EQ("This is no well-formed XML.", faultOf(changed(">x<", ">\xB5<")));
}

TEST_F(ResultFileTest, ProgramsThatWriteXmlMayFormatIt)
{
    std::string text = changed(" standalone=\"no\" ?>", "?>");
    std::erase(text, '\n');
    mScratch.write("r.xml", text);
    EXPECT_EQ("x", readResults("r.xml").results.quantity);
}

} // namespace

} // namespace seriesstat
