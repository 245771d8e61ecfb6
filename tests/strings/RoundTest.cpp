#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace KelvoBase::test
{

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double tiniest = std::numeric_limits<double>::denorm_min();

std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

struct Row
{
    double value;
    unsigned int digits;
    double expected;
};

void expectBits(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        const double actual = KelvoBase::round(row.value, row.digits);
        EXPECT_EQ(bits(actual), bits(row.expected))
            << "round(" << testing::PrintToString(row.value) << ", " << row.digits << ") gave "
            << testing::PrintToString(actual) << ", not " << testing::PrintToString(row.expected);
    }
}

TEST(Round, RoundsHalvesAwayFromZero)
{
    expectBits({{2.5, 0, 3.0},
                {-2.5, 0, -3.0},
                {0.5, 0, 1.0},
                {1.5, 0, 2.0},
                {-0.6, 0, -1.0},
                {9.5, 0, 10.0},
                {999.9, 0, 1000.0},
                {2147483648.5, 0, 2147483649.0},
                {4294967296.5, 0, 4294967297.0},
                {4503599627370497.5, 0, 4503599627370498.0},
                {9007199254740992.0, 0, 9007199254740992.0},
                {1.7e19, 3, 1.7e19},
                {1e22, 0, 1e22}});
}

TEST(Round, TakesDigitsOffOneByOne)
{
    // Required, Q-420
    expectBits({{1.1, 1, 0x1.199999999999ap+0},
                {0.3, 1, 0x1.3333333333334p-2}, // two units of the sum 0.1 * 3, not the double nearest to 0.3
                {0.7, 2, 0x1.6666666666667p-1},
                {1.005, 2, 0x1.0p+0},
                {1.115, 2, 0x1.1c28f5c28f5c3p+0},
                {2.345, 2, 0x1.2ccccccccccccp+1},
                {2.675, 2, 0x1.55c28f5c28f5cp+1},
                {0.285, 2, 0x1.1eb851eb851ecp-2},
                {4.35, 2, 0x1.1666666666666p+2},
                {99.995, 2, 0x1.9000000000001p+6},
                {123.456, 1, 123.5},
                {-123.456, 2, -0x1.edd70a3d70a3ep+6},
                {1.2345678, 3, 0x1.3c28f5c28f5c2p+0},
                {3.14159265358979, 4, 0x1.921ff2e48e8a8p+1},
                {123456789.987654321, 5, 0x1.d6f3457f35a85p+26},
                {1e-7, 7, 0x1.ad7f29abcaf48p-24},
                {5e-8, 7, 0x1.ad7f29abcaf48p-24},
                {0.25, 1, 0.2}, // what is left behind the 2 is a little less than half a tenth
                {0.1, 20, 0.1}});
}

TEST(Round, BelowOneUnitIsZeroWithoutSign)
{
    // Required, Q-421
    expectBits({{0.4, 0, 0.0},
                {-0.4, 0, 0.0},
                {0.49999999999999994, 0, 0.0},
                {0.0, 2, 0.0},
                {-0.0, 0, 0.0},
                {-0.0, 5, 0.0},
                {-0.04, 1, 0.0},
                {4e-8, 7, 0.0},
                {-tiniest, 300, 0.0},
                {tiniest, 0, 0.0}});
}

TEST(Round, OfNoFiniteNumberIsZero)
{
    // Required, Q-421
    expectBits({{infinity, 0, 0.0},
                {-infinity, 0, 0.0},
                {nan, 0, 0.0},
                {infinity, 7, 0.0},
                {-infinity, 323, 0.0},
                {nan, 323, 0.0},
                {nan, 400, 0.0},
                {infinity, 400, 0.0}});
}

TEST(Round, WithoutAUnitKeepsTheSign)
{
    expectBits({{-infinity, 324, -0.0}, {-tiniest, 400, -0.0}, {-0.0, 400, 0.0}});
}

TEST(Round, From1e308OnIsNoNumber)
{
    // Required, Q-420
    for (const double value : {1e308, -1e308, std::numeric_limits<double>::max()}) {
        EXPECT_TRUE(std::isnan(KelvoBase::round(value, 0))) << value;
        EXPECT_TRUE(std::isnan(KelvoBase::round(value, 4294967295U))) << value;
    }
    EXPECT_FALSE(std::isnan(KelvoBase::round(9.9e307, 0)));
}

TEST(Round, TakesEveryCountOfDigits)
{
    for (const unsigned int digits : {323U, 324U, 2147483647U, 2147483648U, 4294967294U, 4294967295U}) {
        EXPECT_EQ(bits(KelvoBase::round(2.5, digits)), bits(2.5)) << digits;
        EXPECT_EQ(bits(KelvoBase::round(0.0, digits)), bits(0.0)) << digits;
        EXPECT_NEAR(KelvoBase::round(-123.456, digits), -123.456, 1e-12) << digits;
    }
}

/// The low 32 bits of a truncation to 64 bits, by arithmetic on the floating-point side.
std::int32_t modelTruncate(double value)
{
    if (std::isnan(value) || std::fabs(value) >= std::ldexp(1.0, 63)) {
        return 0;
    }
    double low = std::fmod(std::trunc(value), std::ldexp(1.0, 32));
    if (low >= std::ldexp(1.0, 31)) {
        low -= std::ldexp(1.0, 32);
    } else if (low < -std::ldexp(1.0, 31)) {
        low += std::ldexp(1.0, 32);
    }
    return static_cast<std::int32_t>(low);
}

/// The steps to the letter, without an early end.
double modelRound(double value, int digits)
{
    const int sign = value < 0 ? -1 : 1;
    double x = value * sign;
    double acc = 0;
    for (int i = modelTruncate(std::log10(x) + 1.0); i >= -digits; --i) {
        const double p = std::pow(10.0, i);
        const int d = modelTruncate(x / p);
        acc = acc + d * p;
        x = x - d * p;
    }
    const auto next = static_cast<unsigned int>(modelTruncate(std::pow(10.0, digits + 1) * x));
    if (next > 4) {
        acc = acc + std::pow(10.0, -digits);
    }
    return std::pow(10.0, -digits) > acc ? 0.0 : sign * acc;
}

void expectModel(double value, unsigned int digits)
{
    const double expected = modelRound(value, static_cast<int>(digits));
    if (std::isnan(expected)) {
        ASSERT_TRUE(std::isnan(KelvoBase::round(value, digits))) << testing::PrintToString(value) << ", " << digits;
    } else {
        ASSERT_EQ(bits(KelvoBase::round(value, digits)), bits(expected))
            << testing::PrintToString(value) << ", " << digits;
    }
}

TEST(Round, AgreesWithModelForOrdinaryNumbers)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 100000; ++i) {
        const auto thousandths = static_cast<double>(random() % 20000001) - 10000000.0;
        expectModel(thousandths / 1000.0, static_cast<unsigned int>(random() % 8));
        expectModel(static_cast<double>(random()) / 3e7, static_cast<unsigned int>(random() % 20));
    }
}

TEST(Round, AgreesWithModelForEveryKindOfNumber)
{
    std::mt19937_64 random(11);
    for (int i = 0; i < 20000; ++i) {
        expectModel(std::bit_cast<double>(random()), static_cast<unsigned int>(random() % 400));
    }
    for (const double value : {0.0, -0.0, infinity, -infinity, nan, tiniest, -tiniest, 1e308, 9.9999999999993455e307}) {
        for (const unsigned int digits : {0U, 1U, 22U, 23U, 308U, 322U, 323U, 324U, 5000U}) {
            expectModel(value, digits);
        }
    }
}

} // namespace

} // namespace KelvoBase::test
