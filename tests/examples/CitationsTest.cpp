#include "Citations.h"

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

TEST(CitationsTest, ArticlesAreThese)
{
    struct Row
    {
        const char* key;
        const char* text;
    };
    const Row rows[] = {
        {"Anderson 1942", "R. L. Anderson, _Distribution of the Serial Correlation Coefficient_, "
                          "_Ann. Math. Stat._ *1942*, _13_, 1-13.\n"},
        {"Dekker 1971", "T. J. Dekker, _A Floating-Point Technique for Extending the Available Precision_, "
                        "_Numer. Math._ *1971*, _18_, 224-242.\n"},
        {"Freedman, Diaconis 1981", "D. Freedman, P. Diaconis, _On the Histogram as a Density Estimator: L2 Theory_, "
                                    "_Z. Wahrscheinlichkeitstheorie verw. Gebiete_ *1981*, _57_, 453-476.\n"},
        {"Hyndman, Fan 1996", "R. J. Hyndman, Y. Fan, _Sample Quantiles in Statistical Packages_, "
                              "_Am. Stat._ *1996*, _50_, 361-365.\n"},
        {"Sturges 1926", "H. A. Sturges, _The Choice of a Class Interval_, "
                         "_J. Am. Stat. Assoc._ *1926*, _21_, 65-66.\n"},
    };
    EXPECT_EQ(std::size(rows), allArticles().size());
    for (const Row& row : rows) {
        const Article* article = findArticle(row.key);
        ASSERT_NE(nullptr, article) << row.key;
        EXPECT_EQ(row.text, article->citation().print());
    }
}

TEST(CitationsTest, UnknownKeyIsNoArticle)
{
    EXPECT_EQ(nullptr, findArticle(""));
    EXPECT_EQ(nullptr, findArticle("Dekker"));
}

} // namespace

} // namespace seriesstat
