#include "system/Demangle.h"

#include <kelvobase/System.h>
#include <kelvobase/Time.h>

#include <gtest/gtest.h>

#include <map>

namespace
{

namespace outer
{
struct Nested
{
    struct Inner
    {
    };
};
template <typename T>
struct Box
{
};
} // namespace outer

using KelvoBase::System;

TEST(DemangleTest, StatusesHaveTheirTexts)
{
    const std::map<int, std::string> texts = {
        {0, "(error code = 0: success)"}, {-1, "(memory allocation failure)"},
        {-2, "(invalid mangled name)"},   {-3, "(invalid arguments)"},
        {-4, "(unknown error)"},          {1, "(unknown error)"},
        {2147483647, "(unknown error)"},
    };
    for (const auto& [status, text] : texts) {
        EXPECT_EQ(text, KelvoBase::demangleStatusText(status)) << status;
    }
}

TEST(DemangleTest, NameThatIsNotMangledGivesTheTextOfItsStatus)
{
    EXPECT_EQ("(invalid mangled name)", KelvoBase::demangleName("no name of a type"));
    EXPECT_EQ("(invalid mangled name)", KelvoBase::demangleName(""));
}

TEST(DemangleTest, MissingNameGivesTheTextOfItsStatus)
{
    EXPECT_EQ("(invalid arguments)", KelvoBase::demangleName(nullptr));
}

TEST(DemangleTest, BuiltInTypesReadAsInCode)
{
    EXPECT_EQ("int", System::demangle(typeid(int)));
    EXPECT_EQ("bool", System::demangle(typeid(bool)));
    EXPECT_EQ("unsigned long long", System::demangle(typeid(unsigned long long)));
    EXPECT_EQ("char const*", System::demangle(typeid(const char*)));
    EXPECT_EQ("int (double)", System::demangle(typeid(int(double))));
}

TEST(DemangleTest, ClassesAreFullyQualified)
{
    EXPECT_EQ("KelvoBase::Time", System::demangle(typeid(KelvoBase::Time)));
    EXPECT_EQ("KelvoBase::Time::Mtime_t", System::demangle(typeid(KelvoBase::Time::Mtime_t)));
    EXPECT_EQ("(anonymous namespace)::outer::Nested::Inner", System::demangle(typeid(outer::Nested::Inner)));
    EXPECT_EQ("(anonymous namespace)::outer::Box<int>", System::demangle(typeid(outer::Box<int>)));
}

TEST(DemangleTest, ConstDoesNotBelongToTheName)
{
    EXPECT_EQ("int", System::demangle(typeid(const int)));
}

TEST(DemangleTest, LongNamesAreComplete)
{
    using Long = std::map<outer::Box<outer::Box<outer::Box<outer::Nested>>>, std::map<int, outer::Box<long double>>>;
    const std::string name = System::demangle(typeid(Long));
    EXPECT_EQ(0u, name.find("std::map<(anonymous namespace)::outer::Box<(anonymous namespace)::outer::Box<")) << name;
    EXPECT_NE(std::string::npos, name.find("outer::Box<long double>")) << name;
    EXPECT_EQ('>', name.back()) << name;
}

} // namespace
