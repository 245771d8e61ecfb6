#include "Shown.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace seriesstat
{

namespace
{

TEST(ShownTest, TextIsQuotedShortenedAndHarmless)
{
    const std::string forty(40, 'x');
    const std::vector<std::pair<std::string, std::string>> rows{
        {"", "\"\""},
        {"a b", "\"a b\""},
        {"a\tb\x7f\x1b[", "\"a?b??[\""},
        {forty, "\"" + forty + "\""},
        {forty + "y", "\"" + forty + "...\""},
        {"\xC3\xA9", "\"\xC3\xA9\""},
        {std::string(39, 'x') + "\xC3\xA9", "\"" + std::string(39, 'x') + "...\""},
        {std::string(38, 'x') + "\xC3\xA9y", "\"" + std::string(38, 'x') + "\xC3\xA9...\""},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(expected, shown(text));
    }
}

} // namespace

} // namespace seriesstat
