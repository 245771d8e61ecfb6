#pragma once

/// \file
/// Destinations that a test sees through and can break.

#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <string>

namespace KelvoBase::test
{

/// What a destination throws that fails with an exception.
struct Broken
{
};

/// How a destination behaves.
struct DestinationPlan
{
    std::size_t area = 0;    ///< size of the put area; 0: every character is asked for
    long failAt = 0;         ///< which call of `overflow` fails, 1 for the first; 0: none
    bool permanently = true; ///< all later calls fail, too
    bool throws = false;     ///< with an exception, not with end-of-file
};

class Destination : public std::streambuf
{
public:
    explicit Destination(const DestinationPlan& plan = {}) : mPlan(plan), mArea(plan.area, '\0') {}

    /// Everything that was accepted.
    std::string text() const { return mDone + std::string(pbase(), pptr()); }
    /// What was accepted and flushed, or pushed out of the put area.
    const std::string& written() const { return mDone; }
    int flushes() const { return mFlushes; }

protected:
    int_type overflow(int_type c) override
    {
        ++mCalls;
        if (mPlan.failAt != 0 && (mPlan.permanently ? mCalls >= mPlan.failAt : mCalls == mPlan.failAt)) {
            if (mPlan.throws) {
                throw Broken();
            }
            return traits_type::eof();
        }
        drain();
        if (mArea.empty()) {
            mDone += traits_type::to_char_type(c);
        } else {
            setp(mArea.data(), mArea.data() + mArea.size());
            *pptr() = traits_type::to_char_type(c);
            pbump(1);
        }
        return c;
    }

    int sync() override
    {
        ++mFlushes;
        drain();
        return 0;
    }

private:
    void drain()
    {
        mDone.append(pbase(), pptr());
        setp(nullptr, nullptr);
    }

    DestinationPlan mPlan;
    std::string mArea;
    std::string mDone;
    long mCalls = 0;
    int mFlushes = 0;
};

/// Puts a buffer behind a stream for the life of the object, and the stream into its first state behind it.
class ScopedBuffer
{
public:
    ScopedBuffer(std::ostream& stream, std::streambuf& buffer)
        : mStream(stream), mBefore(stream.rdbuf(&buffer)), mTied(stream.tie())
    {
    }
    ~ScopedBuffer()
    {
        mStream.exceptions(std::ios_base::goodbit);
        mStream.rdbuf(mBefore);
        mStream.tie(mTied);
    }
    ScopedBuffer(const ScopedBuffer&) = delete;
    ScopedBuffer& operator=(const ScopedBuffer&) = delete;

private:
    std::ostream& mStream;
    std::streambuf* mBefore;
    std::ostream* mTied;
};

} // namespace KelvoBase::test
