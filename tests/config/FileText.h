#pragma once

/// \file
/// What is in a file, with the line ends that streams see.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace KelvoBase::test
{

/// The content of a text file; fails the test if it cannot be read.
inline std::string fileText(const std::filesystem::path& path)
{
    std::ifstream in(path);
    EXPECT_TRUE(in.is_open()) << path;
    return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace KelvoBase::test
