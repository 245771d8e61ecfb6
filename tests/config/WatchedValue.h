#pragma once

/// \file
/// A value of a test's own that counts its living instances and fails when it is told to.

#include <kelvobase/Any.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

class WatchedValue : public Any
{
public:
    /// Instances that live now, of all the values of the program.
    static inline int living = 0;
    /// What was asked of the values and which were deleted, in order: "text a/,", "compare a with b", "delete a".
    static inline std::vector<std::string> log;
    static inline bool logging = true;

    explicit WatchedValue(std::string text) : mText(std::move(text)) { ++living; }
    WatchedValue(const WatchedValue& other)
        : Any(other), failText(other.failText), failClone(other.failClone), failEquals(other.failEquals),
          mText(other.mText)
    {
        ++living;
    }
    WatchedValue& operator=(const WatchedValue&) = delete;
    ~WatchedValue() override
    {
        --living;
        if (logging) {
            log.push_back("delete " + mText);
        }
    }

    bool failText = false;
    bool failClone = false;
    bool failEquals = false;

    void copyFrom(const Any&) override {}
    bool isCopyable(const Any&) const override { return false; }
    bool isSameType(const Any&) const override { return false; }
    Any* create() const override { return new WatchedValue(""); }
    Any* clone() const override { return fail(failClone, "clone"), new WatchedValue(*this); }
    void noOperation() override {}
    std::string toString(const std::string& separator) const override
    {
        if (logging) {
            log.push_back("text " + mText + "/" + separator);
        }
        return fail(failText, "toString"), mText;
    }
    void fromString(const std::string&, const std::string&) override {}
    unsigned int size() const override { return 1; }
    bool equals(const Any& other) const override
    {
        const auto* watched = dynamic_cast<const WatchedValue*>(&other);
        if (logging) {
            log.push_back("compare " + mText + " with " + (watched == nullptr ? "another" : watched->mText));
        }
        return fail(failEquals, "equals"), watched != nullptr && watched->mText == mText;
    }

private:
    void fail(bool wanted, const char* operation) const
    {
        if (wanted) {
            throw std::runtime_error(mText + " fails in " + operation);
        }
    }

    std::string mText;
};

} // namespace KelvoBase::test
