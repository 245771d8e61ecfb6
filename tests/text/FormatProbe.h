#pragma once

/// \file
/// What the tests of all formats share: a look at the open spans, and tables of what operations write.

#include <kelvobase/TextFormatter.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace KelvoBase::test
{

/// A format whose open spans can be counted.
template <typename Format>
class Probe : public Format
{
public:
    std::size_t openSpans() const { return this->mCloseTexts.size(); }
};

/// What an operation writes on an empty formatter, and what the closing step writes behind it. Without a closing text
/// it opens no span.
struct Row
{
    const char* name;
    void (*operation)(TextFormatter&);
    std::string opens;
    std::optional<std::string> closes = std::nullopt;
};

template <typename Format>
void expectRow(const Row& row)
{
    SCOPED_TRACE(row.name);
    Probe<Format> out;
    row.operation(out);
    EXPECT_EQ(out.str(), row.opens);
    ASSERT_EQ(out.openSpans(), row.closes ? 1u : 0u);
    if (row.closes) {
        out.end();
        EXPECT_EQ(out.str(), row.opens + *row.closes);
        EXPECT_EQ(out.openSpans(), 0u);
    }
}

} // namespace KelvoBase::test
