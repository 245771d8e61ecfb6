#pragma once

/// \file
/// Catches what is written to a standard stream object, or to the trace, inside this process.

#include <iostream>
#include <sstream>
#include <string>

namespace KelvoBase::test
{

/// Redirects a stream object into memory for the life of the capture.
///
/// The first trace or start-up of an application in a process parts the standard streams from C stdio, which gives them
/// new buffers and ends a capture: where that may happen, call `std::ios_base::sync_with_stdio(false)` first.
class Capture
{
public:
    explicit Capture(std::ostream& stream) : mStream(stream), mBefore(stream.rdbuf(mText.rdbuf())) {}
    ~Capture() { mStream.rdbuf(mBefore); }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    std::string text() const { return mText.str(); }

private:
    std::ostringstream mText;
    std::ostream& mStream;
    std::streambuf* mBefore;
};

/// Collects the trace of `level` and more important ones, all areas, through a file. The lines come as they are
/// written, with their prefix. Standard error becomes the destination afterwards, at level `Trace::fail`.
class TraceCapture
{
public:
    explicit TraceCapture(unsigned int level);
    ~TraceCapture();
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;

    /// What has been traced so far.
    std::string text() const;

private:
    std::string mPath;
};

} // namespace KelvoBase::test
