#include "Document.h"
#include "SeriesSamples.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace seriesstat
{

namespace
{

using test::hostile;
using test::michelson;
using test::seriesOf;

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

std::string html(const Results& results, const Settings& settings = {})
{
    return documentOf(results, settings, DocumentFormat::html);
}

std::string latex(const Results& results, const Settings& settings = {})
{
    return documentOf(results, settings, DocumentFormat::latex);
}

Settings withStatistics(const std::vector<const char*>& names)
{
    Settings settings;
    settings.statistics.clear();
    for (const char* name : names) {
        settings.statistics.push_back(findStatistic(name));
    }
    return settings;
}

/// The texts between two marks.
std::vector<std::string> allBetween(const std::string& text, const std::string& before, const std::string& behind)
{
    std::vector<std::string> found;
    for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before, at)) {
        at += before.size();
        found.push_back(text.substr(at, text.find(behind, at) - at));
    }
    return found;
}

TEST(SeriesDocumentTest, MichelsonsDocumentsAreTheExpectedOnes)
{
    const std::string imprint = "seriesstat 1.1, 2026-11-21 15:04";
    EXPECT_EQ(KelvoBase::test::contentOf(GOLDEN_DIRECTORY "/seriesstat-michelson.html"),
              documentOf(michelson(), {}, DocumentFormat::html, imprint));
    EXPECT_EQ(KelvoBase::test::contentOf(GOLDEN_DIRECTORY "/seriesstat-michelson.tex"),
              documentOf(michelson(), {}, DocumentFormat::latex, imprint));
}

// These are given to the programs that documents are for as well.
TEST(SeriesDocumentTest, HostileDocumentsAreTheExpectedOnes)
{
    Settings settings;
    settings.digits = 6;
    settings.format.column = 2;
    EXPECT_EQ(KelvoBase::test::contentOf(GOLDEN_DIRECTORY "/seriesstat-hostile.html"), html(hostile(), settings));
    EXPECT_EQ(KelvoBase::test::contentOf(GOLDEN_DIRECTORY "/seriesstat-hostile.tex"), latex(hostile(), settings));
}

TEST(SeriesDocumentTest, TextsFromOutsideDoNotAct)
{
    const std::string page = html(hostile());
    EXPECT_EQ(8U, allBetween(page, "<svg", "</svg>").size());
    EXPECT_EQ(8U, allBetween(page, "</svg>", "</figure>").size());
    EXPECT_FALSE(contains(page, "<script"));
    EXPECT_FALSE(contains(page, "\x1B"));
    EXPECT_EQ(1U, allBetween(latex(hostile()), "\\end{document}", "x").size());
}

TEST(SeriesDocumentTest, EveryReferenceHasItsPlaceAndEveryPlaceIsOne)
{
    const std::string page = html(hostile());
    const std::vector<std::string> ids = allBetween(page, " id=\"", "\"");
    const std::set<std::string> places(ids.begin(), ids.end());
    EXPECT_EQ(ids.size(), places.size());
    const std::vector<std::string> references = allBetween(page, "HREF=\"#", "\"");
    EXPECT_EQ(8U + 5U, references.size());
    for (const std::string& reference : references) {
        EXPECT_EQ(1U, places.count(reference)) << reference;
    }
}

TEST(SeriesDocumentTest, FewSeriesStandSideBySide)
{
    Results results{.quantity = "x", .series = {seriesOf("a", {1, 2}), seriesOf("b", {1}), seriesOf("c", {3})}};
    const Settings settings = withStatistics({"sd", "count"});
    const std::string few = html(results, settings);
    EXPECT_TRUE(contains(few, "<th scope=\"row\">standard deviation</th>"));
    EXPECT_TRUE(contains(few, "<th scope=\"col\"><A HREF=\"#series-3\">c</A></th>"));
    EXPECT_TRUE(contains(few, "<tr><th scope=\"row\">count</th><td>2<span style=\"width:16ch\"></span></td>"
                              "<td>1</td><td>1</td></tr>"));
    results.series.push_back(seriesOf("d", {4}));
    const std::string more = html(results, settings);
    EXPECT_TRUE(contains(more, "<th scope=\"col\">standard deviation</th><th scope=\"col\">count</th></tr>"));
    EXPECT_TRUE(contains(
        more, "<tr><th scope=\"row\"><A HREF=\"#series-4\">d</A></th><td class=\"word\">n/a</td><td>1</td></tr>"));
}

TEST(SeriesDocumentTest, NumbersHaveTheDigitsAskedFor)
{
    Settings settings = withStatistics({"mean"});
    settings.digits = 5;
    EXPECT_TRUE(contains(latex(michelson(), settings), "mean & 299 & .85 \\\\"));
    EXPECT_TRUE(contains(html(michelson(), settings), "Numbers have 5 significant digits"));
    settings.digits = 1;
    EXPECT_TRUE(contains(html(michelson(), settings), "Numbers have 1 significant digit "));
}

TEST(SeriesDocumentTest, HeadCountsAndNamesItsOrigin)
{
    const Results results{.quantity = "x", .series = {seriesOf("a", {1, 2}), seriesOf("b", {1})}};
    EXPECT_TRUE(contains(html(results), ">Descriptive statistics of 2 series with 3 values</p>"));
    EXPECT_TRUE(contains(html({.quantity = "x", .series = {seriesOf("b", {1})}}),
                         ">Descriptive statistics of 1 series with 1 value</p>"));
    EXPECT_TRUE(contains(documentOf(results, {}, DocumentFormat::html, "<me>"), "with 3 values · &lt;me&gt;</p>"));
}

TEST(SeriesDocumentTest, OnlyMethodsThatWereUsedAreTold)
{
    const std::string all = html(michelson());
    EXPECT_TRUE(contains(all, "The standard deviation is that of a sample"));
    EXPECT_TRUE(contains(all, "Anderson"));
    EXPECT_EQ(5U, allBetween(all, " id=\"article-", "\"").size());
    const std::string some = html(michelson(), withStatistics({"max"}));
    EXPECT_FALSE(contains(some, "The standard deviation is that of a sample"));
    EXPECT_FALSE(contains(some, "Anderson"));
    EXPECT_EQ(4U, allBetween(some, " id=\"article-", "\"").size());
}

TEST(SeriesDocumentTest, CitationsAreNumberedAsTheyAreListed)
{
    const std::string page = html(michelson(), withStatistics({"max"}));
    const std::vector<std::string> items = allBetween(page, "<LI> <a id=\"article-", "\n");
    ASSERT_EQ(4U, items.size());
    const char* authors[] = {"Dekker", "Hyndman", "Freedman", "Sturges"};
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        EXPECT_TRUE(items[i].starts_with(number + "\"></a>")) << items[i];
        EXPECT_TRUE(contains(items[i], authors[i])) << items[i];
        EXPECT_TRUE(contains(page, "<A HREF=\"#article-" + number + "\">[" + number + "]</A>"));
    }
}

TEST(SeriesDocumentTest, SourceOfTheValuesIsTold)
{
    Settings settings;
    EXPECT_TRUE(contains(html(michelson(), settings), "<LI> Each file holds one value a line.\n"));
    settings.format.column = 3;
    EXPECT_TRUE(contains(html(michelson(), settings), "<LI> Values are those of column 3 of each file.\n"));
}

TEST(SeriesDocumentTest, DigestIsShownIfThereIsOne)
{
    Results results = michelson();
    const std::string shown = "SHA-1 of the file: <code>" + results.series[0].digest + "</code>";
    EXPECT_TRUE(contains(html(results), shown));
    results.series[0].digest.clear();
    EXPECT_FALSE(contains(html(results), "SHA-1"));
}

TEST(SeriesDocumentTest, LongSeriesMakeNoLongDocument)
{
    std::mt19937 random(5); // NOLINT(cert-msc51-cpp): the same series every time
    std::normal_distribution<double> normal(20, 3);
    std::vector<double> values(1000000);
    for (double& value : values) {
        value = normal(random);
    }
    const Results results{.quantity = "x", .series = {seriesOf("long", values)}};
    EXPECT_LT(html(results).size(), 20000U);
    EXPECT_LT(latex(results).size(), 20000U);
}

TEST(SeriesDocumentTest, ManySeriesTakeLittleEach)
{
    std::mt19937 random(6); // NOLINT(cert-msc51-cpp): the same series every time
    Results results{.quantity = "x"};
    for (int i = 0; i < 500; ++i) {
        std::vector<double> values(200);
        for (double& value : values) {
            value = static_cast<double>(random() % 1000) / 7;
        }
        results.series.push_back(seriesOf("runs/series-" + std::to_string(i), values));
    }
    EXPECT_LT(html(results).size(), 500U * 4000U);
    EXPECT_LT(latex(results).size(), 500U * 4000U);
}

} // namespace

} // namespace seriesstat
