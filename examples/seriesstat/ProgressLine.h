#pragma once

/// \file
/// How far long work has come, for somebody who waits at a terminal.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace seriesstat
{

/// One line on standard error, which renews itself and leaves no trace behind:
///
///     reading 12 of 3000: data/x.txt
///     reading 13 of 3000 (47 MB): data/large.txt
///
/// It appears once the work has taken half a second and is renewed ten times a second at most. Where standard error is
/// no terminal, nothing is written at all.
class ProgressLine
{
public:
    using Clock = std::function<std::chrono::milliseconds()>; ///< the time since any fixed moment

    /// REQUIRES: nobody else writes to standard error while the object lives, or it is `clear`ed before.
    explicit ProgressLine(std::size_t steps);
    /// For an output of `width` columns. 0 means that it is no terminal. `out` has to live longer than the object.
    ProgressLine(std::size_t steps, std::ostream& out, std::size_t width, Clock clock);
    ~ProgressLine(); ///< takes the line away, also on the way of an exception
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// A step begins, the first one being 1. `what` is the file; it may come from anywhere.
    void begin(std::size_t step, const std::string& what);
    /// So many bytes of the file are read. Fewer than a million are not told.
    void read(std::uintmax_t bytes);
    /// Takes the line away, if there is one, until the next step.
    void clear();

private:
    void showIfDue(const std::string& amount);
    void show(const std::string& line);

    std::size_t mSteps;
    std::ostream& mOut;
    std::size_t mWidth;
    Clock mClock;
    std::chrono::milliseconds mNext; ///< nothing is shown before this time
    std::string mStep{};
    std::string mWhat{};
    std::size_t mShown = 0; ///< columns that are written on
};

} // namespace seriesstat
