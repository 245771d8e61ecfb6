#pragma once

/// \file
/// A global locale that spoils every number that goes through it.

#include <locale>
#include <string>

namespace KelvoBase::test
{

/// Makes a locale global that groups every two digits by a point and has a decimal comma, for the life of the object.
class GroupedLocale
{
public:
    GroupedLocale() : mBefore(std::locale::global(std::locale(std::locale::classic(), new Punctuation))) {}
    ~GroupedLocale() { std::locale::global(mBefore); }
    GroupedLocale(const GroupedLocale&) = delete;
    GroupedLocale& operator=(const GroupedLocale&) = delete;

private:
    class Punctuation : public std::numpunct<char>
    {
    protected:
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\2"; }
    };

    std::locale mBefore;
};

} // namespace KelvoBase::test
