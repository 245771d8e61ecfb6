#include "Citations.h"

#include <algorithm>
#include <array>

namespace seriesstat
{

namespace
{

using KelvoBase::Literature;

constexpr std::array<Article, 5> articles{{
    {"Anderson 1942",
     [] {
         return Literature("Distribution of the Serial Correlation Coefficient", {{"Anderson", "Richard", "L.", ""}},
                           "Ann. Math. Stat.", 13, 1942, "", 1, 13);
     }},
    {"Dekker 1971",
     [] {
         return Literature("A Floating-Point Technique for Extending the Available Precision",
                           {{"Dekker", "T.", "J.", ""}}, "Numer. Math.", 18, 1971, "", 224, 242);
     }},
    {"Freedman, Diaconis 1981",
     [] {
         return Literature("On the Histogram as a Density Estimator: L2 Theory",
                           {{"Freedman", "David", "", ""}, {"Diaconis", "Persi", "", ""}},
                           "Z. Wahrscheinlichkeitstheorie verw. Gebiete", 57, 1981, "", 453, 476);
     }},
    {"Hyndman, Fan 1996",
     [] {
         return Literature("Sample Quantiles in Statistical Packages",
                           {{"Hyndman", "Rob", "J.", ""}, {"Fan", "Yanan", "", ""}}, "Am. Stat.", 50, 1996, "", 361,
                           365);
     }},
    {"Sturges 1926",
     [] {
         return Literature("The Choice of a Class Interval", {{"Sturges", "Herbert", "A.", ""}}, "J. Am. Stat. Assoc.",
                           21, 1926, "", 65, 66);
     }},
}};

} // namespace

std::span<const Article> allArticles()
{
    return articles;
}

const Article* findArticle(std::string_view key)
{
    const auto* const found =
        std::find_if(articles.begin(), articles.end(), [key](const Article& article) { return article.key == key; });
    return found == articles.end() ? nullptr : found;
}

} // namespace seriesstat
