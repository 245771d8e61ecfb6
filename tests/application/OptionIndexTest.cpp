#include "application/OptionIndex.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace KelvoBase
{

namespace
{

/// A growing list of options, with the plain walk beside the index.
class Growing
{
public:
    void append(const std::string& name)
    {
        mOwned.push_back(std::make_unique<CLOption>(name, 0, false));
        mOptions.push_back(mOwned.back().get());
    }
    CLOption* walk(std::string_view name) const
    {
        for (CLOption* option : mOptions) {
            if (option->getLong() == name) {
                return option;
            }
        }
        return nullptr;
    }
    CLOption* find(std::string_view name) { return mIndex.find(mOptions, name); }

private:
    std::vector<std::unique_ptr<CLOption>> mOwned;
    std::vector<CLOption*> mOptions;
    OptionIndex mIndex;
};

TEST(OptionIndex, FindsTheFirstOfTwins)
{
    Growing options;
    options.append("a");
    options.append("b");
    options.append("a");
    EXPECT_EQ(options.find("a"), options.walk("a"));
    EXPECT_EQ(options.find("c"), nullptr);
    EXPECT_EQ(options.find(""), nullptr);
}

TEST(OptionIndex, KeepsTheFirstWhenATwinIsAppendedLater)
{
    Growing options;
    options.append("a");
    CLOption* first = options.find("a");
    options.append("a");
    EXPECT_EQ(options.find("a"), first);
}

TEST(OptionIndex, SeesWhatIsAppendedAfterALookUp)
{
    Growing options;
    options.append("a");
    EXPECT_EQ(options.find("b"), nullptr);
    options.append("b");
    EXPECT_EQ(options.find("b"), options.walk("b"));
}

TEST(OptionIndex, TellsNamesWithZeroBytesApart)
{
    using namespace std::string_literals;
    Growing options;
    options.append("a\0b"s);
    options.append("a");
    EXPECT_EQ(options.find("a\0b"s), options.walk("a\0b"s));
    EXPECT_EQ(options.find("a"), options.walk("a"));
    EXPECT_NE(options.find("a"), options.find("a\0b"s));
}

TEST(OptionIndex, AgreesWithAWalkThroughTheList)
{
    std::mt19937 dice(20050305);
    for (int round = 0; round < 50; ++round) {
        Growing options;
        const auto names = 1 + dice() % 400;
        options.append("first");
        for (int step = 0; step < 600; ++step) {
            const std::string name = "name" + std::to_string(dice() % names);
            if (dice() % 3 != 0) {
                options.append(name);
            } else {
                ASSERT_EQ(options.find(name), options.walk(name)) << name << " in round " << round;
            }
        }
    }
}

} // namespace

} // namespace KelvoBase
