#include "support/FakePlatform.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>

#include <boost/tokenizer.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

// The library's parser beside a second one that takes every step as slowly as it is told, with Boost's tokeniser for
// all paths. The drive is C, the working directory C:\lab\dir.

namespace KelvoBase
{

namespace
{

class Model
{
public:
    void parse(const std::string& s);
    void parsePath(const std::string& s);
    void toAbsolute();
    std::string path(char separator, bool withHost) const;
    std::string str() const;
    std::string print() const;

private:
    bool local() const { return mProtocol == "" || mProtocol == "file" || mProtocol == "smb"; }
    void parseHost(const std::string& a);
    static void tokenise(const std::string& text, std::vector<std::string>& out);

    std::string mProtocol, mHost, mPort, mUser, mPassword;
    std::vector<std::string> mComponents;
    bool mAbsolute = false;
};

std::string replaced(std::string text, char from, char to)
{
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

void Model::tokenise(const std::string& text, std::vector<std::string>& out)
{
    using Separator = boost::escaped_list_separator<char>;
    boost::tokenizer<Separator> tokens(text, Separator('\\', '/', '"'));
    for (auto token = tokens.begin(); token != tokens.end(); ++token) {
        out.push_back(*token);
    }
}

void Model::parse(const std::string& s)
{
    if (s.empty()) {
        return;
    }
    const auto c = s.find(':');
    const bool doubled = s.rfind("//", 0) == 0 || s.rfind("\\\\", 0) == 0;
    if ((c == std::string::npos && !doubled) || c == 1) {
        parsePath(s);
        return;
    }
    std::size_t rest = 0;
    if (c != std::string::npos) {
        mProtocol = std::string(s, 0, c);
        rest = c + 1;
    }
    const std::string tail(s, rest);
    if (tail.rfind("//", 0) == 0 || tail.rfind("\\\\", 0) == 0) {
        mProtocol = mProtocol.empty() ? "smb" : mProtocol;
        const std::size_t hostStart = c == std::string::npos ? 2 : c + 3;
        rest = s.find('/', hostStart);
        if (rest == std::string::npos) {
            rest = s.find('\\', hostStart);
        }
        parseHost(s.substr(hostStart, rest == std::string::npos ? rest : rest - hostStart));
    }
    if (rest == std::string::npos) {
        throw std::out_of_range("basic_string::substr");
    }
    parsePath(s.substr(rest));
}

void Model::parseHost(const std::string& a)
{
    std::size_t start = 0;
    const auto at = a.find('@');
    if (at != std::string::npos) {
        const std::string user = a.substr(0, at);
        const auto percent = user.find('%');
        mUser = user.substr(0, percent);
        mPassword = percent == std::string::npos ? mPassword : user.substr(percent + 1);
        start = at + 1;
    }
    const std::string host = a.substr(start);
    const auto colon = host.find(':');
    mHost = host.substr(0, colon);
    mPort = colon == std::string::npos ? mPort : host.substr(colon + 1);
}

void Model::parsePath(const std::string& s)
{
    std::string p = local() ? replaced(s, '\\', '/') : s;
    if (!p.empty() && p[0] == '/') {
        mAbsolute = true;
        if (mProtocol == "" || mProtocol == "file") {
            p = p.size() >= 3 && p[2] == ':' ? p.substr(1) : "C:" + p;
        }
    }
    if (local() && p.size() >= 2 && p[1] == ':') {
        mAbsolute = true;
    }
    try {
        tokenise(p, mComponents);
    } catch (const std::exception& e) {
        throw InvalidFileNameException(s, e.what());
    }
    if (mAbsolute) {
        toAbsolute();
    }
}

void Model::toAbsolute()
{
    if (mComponents.empty()) {
        return;
    }
    std::vector<std::string> list;
    if (!mAbsolute) {
        tokenise("C:/lab/dir", list);
    }
    list.insert(list.end(), mComponents.begin(), mComponents.end());
    mComponents.clear();
    for (const std::string& component : list) {
        if (component == "." || component == "") {
            continue;
        }
        if (component == ".." && !mComponents.empty()) {
            mComponents.pop_back();
        } else {
            mComponents.push_back(component);
        }
    }
    mAbsolute = true;
}

std::string Model::path(char separator, bool withHost) const
{
    const std::string sep(1, local() ? separator : '/');
    std::string text;
    if (mComponents.empty()) {
        return text;
    }
    const bool share = withHost && mProtocol == "smb";
    if (share) {
        text = std::string(2, separator) + mHost;
    }
    if ((mAbsolute && !local()) || share) {
        text += sep;
    }
    for (std::size_t i = 0; i < mComponents.size(); ++i) {
        text += (i == 0 ? "" : sep) + mComponents[i];
    }
    return text;
}

std::string Model::str() const
{
    if (!mAbsolute) {
        return path('\\', true);
    }
    std::string text = (mProtocol == "" ? "file" : mProtocol) + "://";
    if (mUser != "") {
        text += mUser + (mPassword == "" ? "" : "%" + mPassword) + "@";
    }
    text += mHost == "" ? "localhost" : mHost;
    text += mPort == "" ? "" : ":" + mPort;
    return text + (local() ? "/" : "") + path('\\', false);
}

std::string Model::print() const
{
    std::string text = "Protocol: " + mProtocol + "\nHostname: " + mHost + "\nPort:     " + mPort +
                       "\nUserName: " + mUser + "\nPassword: " + mPassword + "\n";
    for (std::size_t i = 0; i < mComponents.size(); ++i) {
        text += "Path[" + std::to_string(i) + "]:    " + mComponents[i] + "\n";
    }
    return text + "isAbsolute:" + (mAbsolute ? "1" : "0") + "\nfullPath:  " + path('\\', true);
}

/// Texts of the pieces that the syntax is made of.
std::string randomText(std::mt19937& random)
{
    static const std::vector<std::string> pieces = {
        "/",   "/",   "/",    "\\",   "\\",  "//",  "\\\\", ":",   "\"",  "\"",       ".",    "..",   "/..",
        "/./", "C:",  "a",    "b",    "n",   "dir", "x.y",  "@",   "%",   "file:",    "smb:", "ftp:", " ",
        "\n",  "://", "host", "80/x", "\\n", "\\/", "/C:",  "../", "/..", "\xC3\xA4", "\\\"", "//h/",
    };
    std::string text;
    for (auto left = random() % 9; left > 0; --left) {
        text += pieces[random() % pieces.size()];
    }
    return text;
}

/// Runs a step and tells how it ended: the text of what it threw, nothing if it threw nothing.
template <typename Step>
std::optional<std::string> failure(Step&& step)
{
    try {
        step();
    } catch (const InvalidFileNameException& e) {
        return std::string("name: ") + e.what();
    } catch (const std::out_of_range& e) {
        return std::string("range: ") + e.what();
    }
    return std::nullopt;
}

void expectAlike(const Model& model, const ResourceLocation& location)
{
    EXPECT_EQ(model.print(), location.print());
    EXPECT_EQ(model.str(), location.str());
    EXPECT_EQ(model.path('\\', true), location.getPath('\\', true));
    EXPECT_EQ(model.path('|', false), location.getPath('|', false));
}

class RandomTexts : public testing::Test
{
protected:
    void SetUp() override { mRandom.seed(20260728); }

    std::string next() { return randomText(mRandom); }

private:
    std::mt19937 mRandom;
};

constexpr int rounds = 40000;

} // namespace

TEST_F(RandomTexts, AreParsedAndRenderedAsTheModelDoes)
{
    int parsed = 0;
    for (int i = 0; i < rounds && !HasFailure(); ++i) {
        const std::string text = next();
        SCOPED_TRACE(text);
        Model model;
        ResourceLocation location;
        const auto expected = failure([&] { model.parse(text); });
        EXPECT_EQ(expected, failure([&] { location = ResourceLocation(text); }));
        if (!expected) {
            ++parsed;
            expectAlike(model, location);
        }
    }
    EXPECT_GT(parsed, rounds / 2);
}

TEST_F(RandomTexts, AreAppendedAsTheModelDoes)
{
    for (int i = 0; i < rounds / 4 && !HasFailure(); ++i) {
        const std::string first = next();
        Model model;
        if (failure([&] { model.parse(first); })) {
            continue;
        }
        ResourceLocation location(first);
        for (int more = 0; more < 3; ++more) {
            const std::string text = next();
            SCOPED_TRACE(first + " + " + text);
            EXPECT_EQ(failure([&] { model.parsePath(text); }), failure([&] { location.append(text); }));
            expectAlike(model, location); // behind a fault, too
        }
        model.toAbsolute();
        location.toAbsolute();
        expectAlike(model, location);
    }
}

TEST_F(RandomTexts, CompareAsTheirFieldsAndPathsDo)
{
    std::vector<ResourceLocation> locations;
    while (locations.size() < 300) {
        const std::string text = next();
        failure([&] { locations.emplace_back(text); });
    }
    for (const ResourceLocation& a : locations) {
        for (const ResourceLocation& b : locations) {
            const std::string pathA = a.getPath('\\', true);
            const std::string pathB = b.getPath('\\', true);
            EXPECT_EQ(a.getProtocol() == b.getProtocol() && a.getHostName() == b.getHostName() &&
                          a.getUserName() == b.getUserName() && a.getPort() == b.getPort() && pathA == pathB,
                      a == b);
            EXPECT_EQ(std::lexicographical_compare(
                          pathA.begin(), pathA.end(), pathB.begin(), pathB.end(),
                          [](char x, char y) { return static_cast<unsigned char>(x) < static_cast<unsigned char>(y); }),
                      a < b);
        }
    }
}

} // namespace KelvoBase
