#include "ProgressLine.h"

#include "SafeText.h"
#include "Terminal.h"

#include <kelvobase/Globals.h>

#include <iostream>
#include <utility>

namespace seriesstat
{

namespace
{

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds patience = 500ms; // who waits less needs no line
constexpr std::chrono::milliseconds renewal = 100ms;
constexpr std::uintmax_t megabyte = 1000000;

std::chrono::milliseconds steadyTime()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

/// How many columns a character may take. Which ones are wide differs between terminals; too many do no harm.
std::size_t columnsOf(const std::string& character)
{
    return character.size() < 3 ? 1 : 2;
}

} // namespace

ProgressLine::ProgressLine(std::size_t steps)
    : ProgressLine(steps, std::cerr, KelvoBase::haveCerr ? columnsOfStandardError() : 0, steadyTime)
{
}

ProgressLine::ProgressLine(std::size_t steps, std::ostream& out, std::size_t width, Clock clock)
    : mSteps(steps), mOut(out), mWidth(width), mClock(std::move(clock)), mNext(mClock() + patience)
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::begin(std::size_t step, const std::string& what)
{
    mStep = "reading " + std::to_string(step) + " of " + std::to_string(mSteps);
    mWhat = what;
    showIfDue("");
}

void ProgressLine::read(std::uintmax_t bytes)
{
    if (bytes >= megabyte) {
        showIfDue(" (" + std::to_string(bytes / megabyte) + " MB)");
    }
}

void ProgressLine::showIfDue(const std::string& amount)
{
    if (mWidth == 0 || mClock() < mNext) {
        return;
    }
    show(mStep + amount + ": " + mWhat);
    mNext = mClock() + renewal;
}

void ProgressLine::show(const std::string& line)
{
    clear();
    for (const std::string& character : charactersOf(line)) {
        if (mShown + columnsOf(character) >= mWidth) { // in the last column the terminal would begin a new line
            break;
        }
        mOut << character;
        mShown += columnsOf(character);
    }
    mOut << std::flush;
}

void ProgressLine::clear()
{
    if (mShown > 0) {
        mOut << '\r' << std::string(mShown, ' ') << '\r' << std::flush;
        mShown = 0;
    }
}

} // namespace seriesstat
