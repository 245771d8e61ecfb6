/// \file
/// Exhausted memory while something is appended: every allocation of an append fails once, and neither changes the text
/// nor loses a block.

#include "support/Memory.h"

#include <kelvobase/TextFormatter.h>
#include <kelvobase/TextRep.h>

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace KelvoBase::test
{

namespace
{

std::string html(const TextRep& rep)
{
    HtmlTextFormatter out;
    rep.flush(&out);
    return out.str();
}

/// Fails the first, second, ... allocation of `append` until it succeeds; returns how many there are.
template <typename Append>
long failEachAllocation(const Append& append)
{
    TextRep rep;
    rep << "before";
    const std::string expected = html(rep);
    for (long allowed = 0;; ++allowed) {
        const long alive = Memory::living;
        Memory::left = allowed;
        try {
            append(rep);
            Memory::left = Memory::unlimited;
            return allowed;
        } catch (const std::bad_alloc&) {
            Memory::left = Memory::unlimited;
        }
        EXPECT_EQ(Memory::living, alive) << "lost in attempt " << allowed;
        EXPECT_EQ(html(rep), expected);
    }
}

TEST(TextRepMemory, FailedAppendChangesAndLosesNothing)
{
    const std::string text(100, 'x');
    // At least the token and its place in the list; a long text has a block of its own.
    EXPECT_GE(failEachAllocation([&](TextRep& rep) { rep << text; }), 3);
    EXPECT_GE(failEachAllocation([&](TextRep& rep) { rep << text.c_str(); }), 3);
    EXPECT_GE(failEachAllocation([](TextRep& rep) { rep << 17u; }), 2);
    EXPECT_GE(failEachAllocation([](TextRep& rep) { rep << TextTag::b(); }), 2);
    EXPECT_GE(failEachAllocation([](TextRep& rep) { rep << TextTag::em(); }), 2);
    EXPECT_GE(failEachAllocation([](TextRep& rep) { rep << TextTag::end(); }), 2);
}

TEST(TextRepMemory, DestructionReleasesAllTokens)
{
    const long before = Memory::living;
    {
        TextRep rep;
        rep << std::string(100, 'x') << 1u << TextTag::b() << TextTag::em() << TextTag::end() << TextTag::end();
        EXPECT_GT(Memory::living, before);
    }
    EXPECT_EQ(Memory::living, before);
}

} // namespace

} // namespace KelvoBase::test
