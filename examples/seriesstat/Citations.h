#pragma once

/// \file
/// The articles that the methods rest on.

#include <kelvobase/Literature.h>

#include <span>
#include <string_view>

namespace seriesstat
{

/// An article. It lives as long as the program.
struct Article
{
    std::string_view key; ///< names of the authors, and the year
    KelvoBase::Literature (*citation)();
};

std::span<const Article> allArticles();

/// The article of that key, null if there is none.
const Article* findArticle(std::string_view key);

} // namespace seriesstat
