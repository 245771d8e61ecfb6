/// \file
/// What `split` makes of exhausted memory.

#include "support/Memory.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string>
#include <vector>

namespace KelvoBase::test
{

namespace
{

TEST(Split, ReportsExhaustedMemoryAsFailedOperation)
{
    const std::string text = "a," + std::string(100000, 'x');
    std::vector<std::string> out;
    out.reserve(10);
    const std::string expected = std::bad_alloc().what();
    Memory::refused = 50000;
    const std::string actual = textOf<OperationFailedException>([&] { split(text, out, ",", "", ""); });
    Memory::refused = std::numeric_limits<std::size_t>::max();
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(out, std::vector<std::string>({"a"}));
}

} // namespace

} // namespace KelvoBase::test
