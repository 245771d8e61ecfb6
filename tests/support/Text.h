#pragma once

/// \file
/// Exact texts of failures.

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <typeinfo>

namespace KelvoBase::test
{

/// Runs `action` and returns the `what()` of the exception it throws. Fails the test when nothing is thrown or when
/// the exception's class is not exactly `Expected`; a descendant does not count.
template <typename Expected, typename Action>
std::string textOf(Action&& action)
{
    try {
        action();
    } catch (const std::exception& e) {
        EXPECT_EQ(std::string(typeid(Expected).name()), typeid(e).name()) << "text: " << e.what();
        return e.what();
    } catch (...) {
        ADD_FAILURE() << "something was thrown that is no std::exception";
        return {};
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

} // namespace KelvoBase::test
