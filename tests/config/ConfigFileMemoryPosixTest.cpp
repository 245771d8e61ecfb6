/// \file
/// Exhausted memory at each single allocation of an operation.

#include "config/WatchedValue.h"
#include "support/Memory.h"

#include <kelvobase/ConfigFile.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <string>

namespace KelvoBase::test
{

namespace
{

const std::string longText(100, 'x'); // on the heap

/// Whether `action` gets by with this number of allocations.
bool succeeds(long number, const std::function<void()>& action)
{
    Memory::left = number;
    try {
        action();
    } catch (const std::bad_alloc&) {
        Memory::left = Memory::unlimited;
        return false;
    }
    Memory::left = Memory::unlimited;
    return true;
}

/// Lets `step` fail at each of its allocations in turn and says how many it needs. `step` gets the number, begins anew
/// each time, and says whether it succeeded. No step may leave anything behind.
long allocationsOf(const std::function<bool(long)>& step)
{
    for (long number = 0; number < 1000; ++number) {
        const long before = Memory::living;
        const bool done = step(number);
        EXPECT_EQ(before, Memory::living) << "with " << number << " allocations";
        if (done) {
            return number;
        }
    }
    ADD_FAILURE() << "never succeeded";
    return 1000;
}

/// Sections with entries; no name and no text fits into a string object itself.
void fill(ConfigFile& config)
{
    for (const std::string section : {"one", "two"}) {
        config.setEntry(section + longText, "a" + longText, longText);
        config.setEntry(section + longText, "b" + longText, new ScalarAny<bool>(true));
    }
}

class ConfigFileMemory : public testing::Test
{
protected:
    void SetUp() override { WatchedValue::logging = false; }
    void TearDown() override { EXPECT_EQ(0, WatchedValue::living); }
};

TEST_F(ConfigFileMemory, ValueThatCouldNotBeStoredStaysWithTheCaller)
{
    EXPECT_LT(2, allocationsOf([](long number) {
                  ConfigFile config;
                  auto value = std::make_unique<WatchedValue>("v");
                  const std::string section = "s" + longText;
                  const std::string key = "k" + longText;
                  const bool stored = succeeds(number, [&] { config.setEntry(section, key, value.get()); });
                  EXPECT_EQ(stored, config.entryIsExistent(section, key)) << number;
                  if (stored) {
                      value.release();
                  }
                  return stored;
              }));
}

TEST_F(ConfigFileMemory, ReplacementThatFailsKeepsTheOldValue)
{
    EXPECT_LT(1, allocationsOf([](long number) {
                  ConfigFile config;
                  auto value = std::make_unique<WatchedValue>("new" + longText);
                  Any* const old = new WatchedValue("old" + longText);
                  config.setEntry("s", "k", old);
                  const bool stored = succeeds(number, [&] { config.setEntry("s", "k", value.get()); });
                  EXPECT_EQ(stored ? value.get() : old, config.getEntry("s", "k")) << number;
                  if (stored) {
                      value.release();
                  }
                  return stored;
              }));
}

TEST_F(ConfigFileMemory, TextThatCouldNotBeStoredIsReleased)
{
    EXPECT_LT(4, allocationsOf([](long number) {
                  ConfigFile config;
                  const std::string key = "k" + longText;
                  const bool stored = succeeds(number, [&] { config.setEntry(key, key, longText); });
                  EXPECT_EQ(stored, config.entryIsExistent(key, key)) << number;
                  return stored;
              }));
}

TEST_F(ConfigFileMemory, FailedCopiesAreReleased)
{
    ConfigFile from;
    fill(from);
    EXPECT_LT(10, allocationsOf([&](long number) {
                  return succeeds(number, [&] { EXPECT_TRUE(ConfigFile(from).equals(from)); });
              }));
    EXPECT_LT(10, allocationsOf([&](long number) {
                  ConfigFile config;
                  config.setEntry("old", "k", new WatchedValue("v"));
                  return succeeds(number, [&] { config = from; });
              }));
}

TEST_F(ConfigFileMemory, FailedCopyOfASectionKeepsTheCopiesInFront)
{
    ConfigFile from;
    fill(from);
    const std::string source = "one" + longText;
    EXPECT_LT(5, allocationsOf([&](long number) {
                  ConfigFile config;
                  const bool copied = succeeds(number, [&] { config.copySection(source, from, source); });
                  const bool first = config.entryIsExistent(source, "a" + longText);
                  EXPECT_TRUE(first || !config.entryIsExistent(source, "b" + longText)) << number;
                  EXPECT_TRUE(first || !copied);
                  return copied;
              }));
}

TEST_F(ConfigFileMemory, NewObjectNeedsNone)
{
    EXPECT_EQ(0, allocationsOf([](long number) { return succeeds(number, [] { ConfigFile(); }); }));
}

} // namespace

} // namespace KelvoBase::test
