/// \file
/// Runs of characters against the same characters one by one, and both against the steps written down once more.

#include "trace/Destination.h"
#include "trace/RecordBlock.h"

#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <optional>
#include <random>

namespace KelvoBase::test
{

namespace
{

using Set = std::bitset<64>;

/// What the trace is to do with each character, by means of the destination's own operations.
class TraceModel
{
public:
    void write(const std::string& text, std::streamsize& accepted)
    {
        for (accepted = 0; accepted < static_cast<std::streamsize>(text.size()); ++accepted) {
            if (!take(text[static_cast<std::size_t>(accepted)])) {
                return;
            }
        }
    }

    bool take(char c)
    {
        if (out == nullptr) {
            return true;
        }
        if (atLineStart && isVisible()) {
            if (nextLevel != 0) {
                *out << "|" << std::string(std::size_t{2} * nextLevel, '-') << " ";
            }
            atLineStart = false;
        }
        record.store(c);
        if (isVisible()) {
            if (!out->good()) {
                return false;
            }
            out->put(c);
        }
        if (c == '\n') {
            atLineStart = true;
        }
        return true;
    }

    void sync() const
    {
        if (out != nullptr) {
            out->flush();
        }
    }

    bool isVisible() const
    {
        if (nextLevel == 0) {
            return true;
        }
        return level < nextLevel ? false : (mask & nextMask).any();
    }

    std::ostream* out = nullptr;
    bool atLineStart = true;
    unsigned int nextLevel = 3;
    unsigned int level = 1;
    Set nextMask = Set().set();
    Set mask = Set().set();
    RecordModel record;
};

std::mt19937& random()
{
    static std::mt19937 engine(20050717);
    return engine;
}

int below(int limit)
{
    return std::uniform_int_distribution<int>(0, limit - 1)(random());
}

bool once(int in)
{
    return below(in) == 0;
}

template <typename T>
T anyOf(std::initializer_list<T> values)
{
    return values.begin()[below(static_cast<int>(values.size()))];
}

std::string randomText()
{
    const int length = once(200) ? below(70000) : once(10) ? below(600) : below(25);
    std::string text;
    for (int i = 0; i < length; ++i) {
        text += once(15) ? '\n' : static_cast<char>(once(20) ? below(256) : 'a' + below(26));
    }
    return text;
}

/// How an action ended.
enum class End
{
    normal,
    failure,
    broken,
};

End endOf(const std::function<void()>& action)
{
    try {
        action();
        return End::normal;
    } catch (const std::ios_base::failure&) {
        return End::failure;
    } catch (const Broken&) {
        return End::broken;
    }
}

/// A destination of the trace and its twin below the model, each with a tied stream.
class Pair
{
public:
    Pair(std::ostream& stream, const DestinationPlan& plan, bool tied, bool throwing)
        : mStream(stream), mReal(plan), mTwin(plan), mScope(stream, mReal), mTwinStream(&mTwin)
    {
        mStream.tie(tied ? &mRealTied : nullptr);
        mTwinStream.tie(tied ? &mTwinTied : nullptr);
        if (throwing) {
            mStream.exceptions(std::ios_base::badbit);
            mTwinStream.exceptions(std::ios_base::badbit);
        }
    }

    std::ostream& twin() { return mTwinStream; }

    /// Text on the tied streams that waits for the next output.
    void prepare()
    {
        mRealTied << 't';
        mTwinTied << 't';
    }

    void spoil()
    {
        EXPECT_EQ(endOf([&] { mStream.setstate(std::ios_base::badbit); }),
                  endOf([&] { mTwinStream.setstate(std::ios_base::badbit); }));
    }

    void repair()
    {
        mStream.clear();
        mTwinStream.clear();
    }

    void compare() const
    {
        EXPECT_EQ(mReal.text(), mTwin.text());
        EXPECT_EQ(mStream.good(), mTwinStream.good());
        EXPECT_EQ(mStream.bad(), mTwinStream.bad());
        EXPECT_EQ(mRealTiedTo.written(), mTwinTiedTo.written());
    }

private:
    std::ostream& mStream;
    Destination mReal;
    Destination mTwin;
    ScopedBuffer mScope;
    std::ostream mTwinStream;
    Destination mRealTiedTo{DestinationPlan{10}};
    Destination mTwinTiedTo{DestinationPlan{10}};
    std::ostream mRealTied{&mRealTiedTo};
    std::ostream mTwinTied{&mTwinTiedTo};
};

/// The trace and the model side by side, fed by chance.
class TraceBulkTest : public testing::Test
{
protected:
    ~TraceBulkTest() override { haveCerr = true; }

    static TraceStream& trace() { return TraceStream::instance(); }

    void session()
    {
        const DestinationPlan plan{anyOf<std::size_t>({0, 1, 2, 7, 50, 300, 8000}), once(2) ? 1 + below(40) : 0L,
                                   once(2), once(4)};
        const bool toCout = once(2);
        Pair pair(toCout ? std::cout : std::cerr, plan, once(3), once(4));
        haveCerr = !once(20);
        select(toCout ? "cout" : "cerr", pair);
        for (int i = 0; i < 60 && !HasFailure(); ++i) {
            step(pair);
            pair.compare();
            ASSERT_TRUE(recordBytes() == model.record.bytes());
        }
        pair.repair();
        trace().flush();
        model.out = nullptr;
    }

private:
    void select(const char* dest, Pair& pair)
    {
        model.level = anyOf({0u, 1u, 2u, 3u, 99u});
        model.mask = randomSet();
        trace().traceto(model.level, dest, model.mask);
        model.out = haveCerr ? &pair.twin() : nullptr;
    }

    void step(Pair& pair)
    {
        switch (below(8)) {
        case 0:
            conditions();
            break;
        case 1:
            EXPECT_EQ(endOf([] { TraceStream::buf().pubsync(); }), endOf([&] { model.sync(); }));
            break;
        case 2:
            if (once(2)) {
                pair.repair();
            } else if (once(4)) {
                pair.spoil();
            }
            break;
        case 3:
            pair.prepare();
            character(once(4) ? '\n' : static_cast<char>(below(256)));
            break;
        default:
            pair.prepare();
            run(randomText());
        }
    }

    void conditions()
    {
        (void)endOf([&] { model.sync(); });
        model.nextLevel = anyOf({0u, 1u, 1u, 2u, 3u, 4u, 20u, 99u});
        model.nextMask = randomSet();
        trace().setNextTraceConditions(model.nextLevel, model.nextMask);
        trace().clear();
    }

    void character(char c)
    {
        int result = 0;
        bool accepted = false;
        const End end = endOf([&] { result = TraceStream::buf().sputc(c); });
        ASSERT_EQ(end, endOf([&] { accepted = model.take(c); }));
        if (end == End::normal) {
            EXPECT_EQ(result, accepted ? static_cast<unsigned char>(c) : EOF);
        }
    }

    void run(const std::string& text)
    {
        std::streamsize result = 0;
        std::streamsize accepted = 0;
        const End end =
            endOf([&] { result = TraceStream::buf().sputn(text.data(), static_cast<std::streamsize>(text.size())); });
        ASSERT_EQ(end, endOf([&] { model.write(text, accepted); }));
        if (end == End::normal) {
            EXPECT_EQ(result, accepted);
        }
    }

    static Set randomSet() { return anyOf({Set(), Set(1), Set(2), Set(3), Set().set()}); }

    TraceModel model;
};

} // namespace

TEST_F(TraceBulkTest, RunsDoWhatTheirCharactersDo)
{
    TraceStream::buf();
    for (int i = 0; i < 400 && !HasFailure(); ++i) {
        SCOPED_TRACE("session " + std::to_string(i));
        session();
    }
}

} // namespace KelvoBase::test
