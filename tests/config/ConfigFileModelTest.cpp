/// \file
/// Long rows of random operations on the object and on a second one that knows nothing of values and pointers.

#include "config/ConfigView.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>

namespace KelvoBase::test
{

namespace
{

/// A configuration whose values are their type and text.
struct Model
{
    std::map<std::string, std::map<std::string, std::pair<std::string, std::string>>> sections;
    std::string ident = "=";
    bool modified = false;

    void set(const std::string& section, const std::string& key, const std::string& type, const std::string& text)
    {
        const auto old = sections[section].find(key);
        modified = modified || old == sections[section].end() || old->second.second != text;
        sections[section][key] = {type, text};
    }
    bool copySection(const std::string& source, const Model& from, const std::string& target)
    {
        if (from.sections.count(source) == 0) {
            return false;
        }
        const auto entries = from.sections.at(source);
        sections[target] = {};
        for (const auto& [key, value] : entries) {
            set(target, key, value.first, value.second);
        }
        return true;
    }
    void clear()
    {
        sections.clear();
        modified = false;
    }
    void copy(const Model& from)
    {
        clear();
        for (const auto& [name, entries] : from.sections) {
            copySection(name, from, name);
        }
    }
    void completeCopy(const Model& from)
    {
        copy(from);
        ident = from.ident;
        modified = from.modified;
    }
    bool has(const std::string& section, const std::string& key) const
    {
        return sections.count(section) != 0 && sections.at(section).count(key) != 0;
    }
    std::string listing() const
    {
        std::string text;
        for (const auto& [name, entries] : sections) {
            text += "[" + name + "]\n";
            for (const auto& [key, value] : entries) {
                text += key + " (" + value.first + ") " + value.second + "\n";
            }
        }
        return text;
    }
};

struct Pair
{
    ConfigFile config{};
    Model model{};
};

class Play
{
public:
    explicit Play(unsigned int seed) : mRandom(seed) {}

    /// One operation on one of the pairs, perhaps with another one.
    void step();
    void check(const std::string& trail) const;
    const std::string& trail() const { return mTrail; }

private:
    std::size_t below(std::size_t limit) { return mRandom() % limit; }
    std::string name() { return std::array{"", "a", "b", "B", "aa", "c"}[below(6)]; }
    void set(Pair& pair);
    void copySection(Pair& pair, const Pair& other);
    void copyWhole(Pair& pair, const Pair& other);
    void setUp(Pair& pair);

    std::mt19937 mRandom;
    std::array<Pair, 3> mPairs;
    std::string mTrail;
};

void Play::set(Pair& pair)
{
    const std::string section = name();
    const std::string key = name();
    const std::string text = std::array{"0", "1", "10", ""}[below(4)];
    mTrail += "set [" + section + "] " + key + "=" + text;
    switch (below(3)) {
    case 0:
        pair.config.setEntry(section, key, text);
        return pair.model.set(section, key, "StringAny", text);
    case 1:
        pair.config.setEntry(section, key, new ScalarAny<bool>(text == "1"));
        return pair.model.set(section, key, "BoolAny", text == "1" ? "1" : "0");
    default:
        pair.config.setEntry(section, key, new ScalarAny<int>(static_cast<int>(text.size())));
        return pair.model.set(section, key, "IntAny", std::to_string(text.size()));
    }
}

void Play::copySection(Pair& pair, const Pair& other)
{
    const std::string source = name();
    const std::string target = name();
    mTrail += "copy section [" + source + "] to [" + target + "]";
    bool copied = true;
    bool expected = true;
    try {
        if (&pair == &other) {
            pair.config.copySection(source, target);
        } else {
            pair.config.copySection(source, other.config, target);
        }
    } catch (const UnknownException&) {
        copied = false;
    }
    if (&pair != &other || source != target) {
        expected = pair.model.copySection(source, other.model, target);
    }
    EXPECT_EQ(expected, copied);
}

void Play::copyWhole(Pair& pair, const Pair& other)
{
    switch (below(4)) {
    case 0:
        mTrail += "copy";
        pair.config.copy(other.config);
        return &pair == &other ? pair.model.clear() : pair.model.copy(other.model);
    case 1:
        mTrail += "complete copy";
        pair.config.completeCopy(other.config);
        return &pair == &other ? pair.model.clear() : pair.model.completeCopy(other.model);
    case 2:
        mTrail += "assign";
        pair.config = other.config;
        pair.model = other.model;
        return;
    default:
        mTrail += "construct";
        pair.config = ConfigFile(other.config);
        pair.model = Model(other.model);
    }
}

void Play::setUp(Pair& pair)
{
    const std::string section = name();
    switch (below(6)) {
    case 0:
        mTrail += "clear";
        pair.config.clear();
        return pair.model.clear();
    case 1:
        mTrail += "init";
        pair.config.init();
        pair.model.ident = "=";
        pair.model.modified = false;
        return;
    case 2:
        mTrail += "ident";
        pair.config.setSeperator(section);
        pair.model.ident = section;
        return;
    default:
        mTrail += "create [" + section + "]";
        pair.config.createSection(section);
        pair.model.sections[section];
    }
}

void Play::step()
{
    const std::size_t first = below(mPairs.size());
    const std::size_t second = below(mPairs.size());
    mTrail += std::to_string(first) + " with " + std::to_string(second) + ": ";
    const std::size_t choice = below(20);
    if (choice < 13) {
        set(mPairs[first]);
    } else if (choice < 16) {
        copySection(mPairs[first], mPairs[second]);
    } else if (choice < 17) {
        copyWhole(mPairs[first], mPairs[second]);
    } else {
        setUp(mPairs[first]);
    }
    mTrail += "\n";
}

void Play::check(const std::string& trail) const
{
    SCOPED_TRACE(trail);
    const std::string section = std::array{"", "a", "b"}[trail.size() % 3];
    for (const Pair& pair : mPairs) {
        ASSERT_EQ(pair.model.listing(), listing(pair.config));
        ASSERT_EQ(pair.model.modified, isModified(pair.config));
        ASSERT_EQ(pair.model.ident, pair.config.getSeperator());
        ASSERT_EQ(pair.model.has(section, "a"), pair.config.entryIsExistent(section, "a"));
        for (const Pair& other : mPairs) {
            ASSERT_EQ(pair.model.sections == other.model.sections, pair.config.equals(other.config));
        }
    }
}

TEST(ConfigFileModel, RandomOperationsGiveWhatTheModelGives)
{
    for (unsigned int seed = 1; seed <= 30 && !testing::Test::HasFailure(); ++seed) {
        Play play(seed);
        for (int step = 0; step < 60 && !testing::Test::HasFailure(); ++step) {
            play.step();
            play.check(play.trail());
        }
    }
}

} // namespace

} // namespace KelvoBase::test
