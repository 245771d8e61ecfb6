#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>

namespace KelvoBase::test
{

namespace
{

void assign(const std::string& name, const std::optional<std::string>& value)
{
#ifdef _WIN32
    _putenv((name + "=" + value.value_or("")).c_str());
#else
    if (value) {
        setenv(name.c_str(), value->c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
#endif
}

} // namespace

ScratchDirectory::ScratchDirectory()
{
    std::random_device seed;
    do {
        mPath = std::filesystem::canonical(std::filesystem::temp_directory_path()) /
                ("kelvobase-test-" + std::to_string(seed()));
    } while (!std::filesystem::create_directory(mPath));
}

ScratchDirectory::~ScratchDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}

std::string ScratchDirectory::location(const std::string& name) const
{
    return locationOf(name.empty() ? mPath : mPath / name);
}

std::filesystem::path ScratchDirectory::write(const std::string& name, const std::string& content) const
{
    const std::filesystem::path path = *this / name;
    writeFile(path, content);
    return path;
}

std::string locationOf(const std::filesystem::path& path)
{
    std::string text = path.string();
    for (char& c : text) {
        c = c == '/' ? '\\' : c;
    }
    return text[0] == '\\' ? "C:" + text : text;
}

void writeFile(const std::filesystem::path& path, const std::string& content)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in.is_open()) << path;
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string textIn(const std::filesystem::path& path)
{
    std::ifstream in(path);
    EXPECT_TRUE(in.is_open()) << path;
    return {std::istreambuf_iterator<char>(in), {}};
}

ScopedWorkingDirectory::ScopedWorkingDirectory(const std::filesystem::path& path)
    : mBefore(std::filesystem::current_path())
{
    std::filesystem::current_path(path);
}

ScopedWorkingDirectory::~ScopedWorkingDirectory()
{
    std::error_code ignored;
    std::filesystem::current_path(mBefore, ignored);
}

ScopedEnvironment::ScopedEnvironment(const std::string& name, const std::optional<std::string>& value) : mName(name)
{
    if (const char* before = std::getenv(name.c_str())) {
        mBefore = before;
    }
    assign(name, value);
}

ScopedEnvironment::~ScopedEnvironment()
{
    assign(mName, mBefore);
}

} // namespace KelvoBase::test
