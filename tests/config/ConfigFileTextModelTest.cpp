#include "config/ConfigView.h"
#include "config/FileText.h"
#include "strings/RandomText.h"
#include "support/Capture.h"
#include "support/Scratch.h"

#include <kelvobase/Strings.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

// The library beside a second reader and writer that go a byte at a time, on files of hostile bytes with any idents.

namespace KelvoBase::test
{

namespace
{

using namespace std::string_literals;

constexpr std::size_t npos = std::string::npos;

struct Idents
{
    std::string begin, end, separator, listSeparator;
    char comment;
};

/// A flag, or the tokens of a text.
struct Value
{
    bool flag = false;
    std::vector<std::string> tokens{};
};

struct ModelError
{
    std::string what, line;
    int number;
};

bool blank(char c)
{
    return std::string(" \t\n\v\f\r").find(c) != npos;
}

std::string withoutBlanks(std::string text)
{
    while (text != "" && blank(text[0])) {
        text = text.substr(1);
    }
    while (text != "" && blank(text[text.size() - 1])) {
        text = text.substr(0, text.size() - 1);
    }
    return text;
}

/// Where `part` begins for the first time.
std::size_t position(const std::string& text, const std::string& part)
{
    for (std::size_t i = 0; i + part.size() <= text.size(); ++i) {
        if (text.compare(i, part.size(), part) == 0) {
            return i;
        }
    }
    return npos;
}

std::vector<std::string> tokensOf(const std::string& text, const std::string& separators)
{
    if (text == "") {
        return {};
    }
    std::vector<std::string> tokens(1);
    bool quoted = false;
    for (const char c : text) {
        const bool separates = separators.find(c) != npos;
        if (separates && !quoted) {
            tokens.push_back("");
        } else if (c == '"' && !separates) {
            quoted = !quoted;
        } else {
            tokens.back() += c;
        }
    }
    return tokens;
}

class Model
{
public:
    /// Merges a file. Throws what a reader is told to throw.
    void read(const std::string& content, const Idents& idents);
    std::string written(const Idents& idents) const;
    std::string listing() const;

private:
    void take(const std::string& line, int number, const Idents& idents);
    bool isHeading(const std::string& line, const std::string& raw, int number, const Idents& idents);

    std::map<std::string, std::map<std::string, Value>> mSections;
    std::string mCurrent;
};

/// What stands in front of each line end and, if it is anything, behind the last one.
std::vector<std::string> linesOf(const std::string& content)
{
    std::vector<std::string> lines(1);
    for (const char c : content) {
        if (c == '\n') {
            lines.push_back("");
        } else {
            lines.back() += c;
        }
    }
    return lines;
}

void Model::read(const std::string& content, const Idents& idents)
{
    mCurrent = "";
    int number = 0;
    for (const std::string& line : linesOf(content)) {
        ++number;
        if (line == "" || line[0] == idents.comment) {
            continue;
        }
        std::string rest;
        for (std::size_t i = 0; i < line.size() && line[i] != idents.comment; ++i) {
            rest += line[i];
        }
        take(rest, number, idents);
    }
}

bool Model::isHeading(const std::string& line, const std::string& raw, int number, const Idents& idents)
{
    if (line == "" || idents.begin == "" || line[0] != idents.begin[0] || position(line, idents.begin) == npos) {
        return false;
    }
    const std::size_t end = position(line, idents.end);
    if (end == npos) {
        throw ModelError{"Section", raw, number};
    }
    mCurrent = "";
    // A name whose end stands in front of it never meets that end.
    for (std::size_t i = position(line, idents.begin) + idents.begin.size(); i < line.size() && i != end; ++i) {
        mCurrent += line[i];
    }
    mSections[mCurrent];
    return true;
}

void Model::take(const std::string& raw, int number, const Idents& idents)
{
    const std::string line = withoutBlanks(raw);
    if (isHeading(line, raw, number, idents)) {
        return;
    }
    std::size_t cut = 0;
    while (cut < line.size() && idents.separator.find(line[cut]) == npos) {
        ++cut;
    }
    if (cut == line.size()) {
        mSections[mCurrent][line] = Value{true};
        return;
    }
    if (cut + idents.separator.size() > line.size()) {
        throw std::out_of_range("basic_string::substr");
    }
    if (cut == 0) {
        throw ModelError{"Entry", raw, number};
    }
    const std::string text = withoutBlanks(line.substr(cut + idents.separator.size()));
    Value value{false, tokensOf(text, idents.listSeparator)};
    for (std::string& token : value.tokens) {
        token = withoutBlanks(token);
    }
    mSections[mCurrent][withoutBlanks(line.substr(0, cut))] = value;
}

std::string doubled(const std::string& text, const std::string& token)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, token.size(), token) == 0) {
            result += token;
        }
        result += text[i];
    }
    return result;
}

/// A value's text form.
std::string textOf(const Value& value, const std::string& separator)
{
    if (value.flag) {
        return "1";
    }
    std::string text;
    for (std::size_t i = 0; i < value.tokens.size(); ++i) {
        text += (i == 0 ? "" : separator);
        text += value.tokens.size() == 1 ? value.tokens[i] : doubled(value.tokens[i], separator);
    }
    return text;
}

std::string Model::written(const Idents& idents) const
{
    std::string text;
    for (const auto& [name, entries] : mSections) {
        text += idents.begin + name + idents.end + "\n";
        for (const auto& [key, value] : entries) {
            text += key + idents.separator + textOf(value, idents.listSeparator) + "\n";
        }
        text += "\n";
    }
    return text;
}

/// In the form of `test::listing`.
std::string Model::listing() const
{
    std::string text;
    for (const auto& [name, entries] : mSections) {
        text += "[" + name + "]\n";
        for (const auto& [key, value] : entries) {
            const char* type = value.flag                 ? " (BoolAny) "
                               : value.tokens.size() >= 2 ? " (StringVectorAny) "
                                                          : " (StringAny) ";
            text += key + type + textOf(value, "|") + "\n";
        }
    }
    return text;
}

/// The idents of nearly all files, or texts that are empty, long, overlap or mean two things.
Idents randomIdents(RandomText& random)
{
    Idents idents{"[", "]", "=", ",", '#'};
    const auto maybe = [&](std::string& ident, const std::string& alphabet) {
        if (random.below(4) == 0) {
            ident = random.text(alphabet, 3);
        }
    };
    maybe(idents.begin, "[[<= a");
    maybe(idents.end, "]][= b");
    maybe(idents.separator, "=:=, ]");
    maybe(idents.listSeparator, ",;\" =");
    if (random.below(6) == 0) {
        idents.comment = random.one(";=[\" \n\0,"s);
    }
    return idents;
}

void apply(const Idents& idents, ConfigFile& config)
{
    config.setSectionBeginIdent(idents.begin);
    config.setSectionEndIdent(idents.end);
    config.setSeperator(idents.separator);
    config.setListSeperator(idents.listSeparator);
    config.setCommentSign(idents.comment);
}

/// Lines that mostly are what a line should be, made of few bytes so that names and keys repeat.
std::string randomFile(RandomText& random, const Idents& idents)
{
    const std::string wild = " \t\r\0\xFF\xC3\\\"#=[],;:ab"s;
    const std::string tame = " \"ab,\\";
    const std::string name = "abc ";
    std::string content;
    for (std::size_t left = random.below(30); left > 0; --left) {
        switch (random.below(8)) {
        case 0:
            content += random.text(wild, 12);
            break;
        case 1:
            content += idents.begin + random.text(name, 2) + idents.end + random.text(tame, 2);
            break;
        case 2:
            content += idents.comment + random.text(wild, 5);
            break;
        case 3:
            content += random.text(" \t\r", 2);
            break;
        case 4:
            content += random.text(name, 2) + "x";
            break;
        default:
            content += "k" + random.text(name, 2) + idents.separator + random.text(tame + idents.listSeparator, 10);
        }
        content += random.below(10) == 0 ? "\r\n" : left > 1 || random.below(2) == 0 ? "\n" : "";
    }
    return content;
}

/// How reading ended: "" for the end of the file, the words of the trace or of the exception.
std::string outcomeOf(Model& model, const std::string& content, const Idents& idents)
{
    try {
        model.read(content, idents);
        return "";
    } catch (const ModelError& e) {
        return "ConfigFile::parse(): error in line " + std::to_string(e.number) + "\n'" + e.line + "'\nwhile parsing " +
               e.what + "\n";
    } catch (const std::out_of_range& e) {
        return e.what();
    }
}

/// The trace's text without what stands in front of its lines.
std::string withoutPrefixes(const std::string& trace)
{
    std::string text;
    std::istringstream in(trace);
    for (std::string line; std::getline(in, line);) {
        text += line.substr(std::string("|-- ").size()) + "\n";
    }
    return text;
}

std::string outcomeOf(ConfigFile& config, const ResourceLocation& file)
{
    const TraceCapture trace(Trace::fail);
    try {
        config.parseFile(file);
        return trace.text();
    } catch (const OperationFailedException& e) {
        EXPECT_EQ(e.what(), "Parsing config file \"" + file.str() + "\"");
        return withoutPrefixes(trace.text());
    } catch (const std::out_of_range& e) {
        EXPECT_EQ(trace.text(), "");
        return e.what();
    }
}

/// A place that was not written to before: putting a new text into an old file makes some file systems wait for the
/// disk.
class FreshFiles
{
public:
    /// A new file of this content.
    ResourceLocation write(const std::string& content)
    {
        mScratch.write(std::to_string(++mCount), content);
        return location();
    }
    /// What the library writes, into another new file.
    std::string written(const ConfigFile& config)
    {
        ++mCount;
        config.writeToFile(location());
        return text();
    }
    /// The content of the last file. Streams may see other line ends than were written.
    std::string text() const { return fileText(mScratch / std::to_string(mCount)); }

private:
    ResourceLocation location() const { return mScratch.location(std::to_string(mCount)); }

    ScratchDirectory mScratch;
    int mCount = 0;
};

/// How often the ways to end were met: a comparison that only ever sees errors would prove little.
struct Tally
{
    int complete = 0, refused = 0, cut = 0;

    void count(const std::string& outcome)
    {
        ++(outcome == "" ? complete : outcome == "basic_string::substr" ? cut : refused);
    }
};

} // namespace

TEST(ConfigFileTextModelTest, ReadsAndWritesAsTheModel)
{
    FreshFiles files;
    RandomText random;
    Tally tally;
    for (int object = 0; object < 2500; ++object) {
        ConfigFile config;
        Model model;
        for (std::size_t left = 1 + random.below(3); left > 0; --left) {
            const Idents idents = randomIdents(random);
            const std::string content = randomFile(random, idents);
            SCOPED_TRACE("object " + std::to_string(object) + ", idents '" + idents.begin + "' '" + idents.end + "' '" +
                         idents.separator + "' '" + idents.listSeparator + "' '" + idents.comment + "', file:\n" +
                         content);
            apply(idents, config);
            const ResourceLocation file = files.write(content);
            const std::string expected = outcomeOf(model, files.text(), idents);
            tally.count(expected);
            ASSERT_EQ(outcomeOf(config, file), expected);
            ASSERT_EQ(listing(config), model.listing());
            ASSERT_EQ(files.written(config), model.written(idents));
        }
    }
    EXPECT_GT(tally.complete, 1000);
    EXPECT_GT(tally.refused, 500);
    EXPECT_GT(tally.cut, 30);
}

TEST(ConfigFileTextModelTest, SavedFilesAreReadAsTheModelReadsThem)
{
    FreshFiles files;
    const Idents idents{"[", "]", "=", ",", '#'};
    RandomText random;
    Tally tally;
    for (int i = 0; i < 1000; ++i) {
        Model model;
        files.write(randomFile(random, idents));
        outcomeOf(model, files.text(), idents);
        const std::string content = model.written(idents);
        SCOPED_TRACE(content);
        Model again;
        ConfigFile config;
        const ResourceLocation file = files.write(content);
        const std::string expected = outcomeOf(again, files.text(), idents);
        tally.count(expected);
        ASSERT_EQ(outcomeOf(config, file), expected);
        ASSERT_EQ(listing(config), again.listing());
    }
    EXPECT_GT(tally.complete, 100);
    EXPECT_GT(tally.refused, 100);
}

/// Values that are taken as they are, and values that are split, must not be told apart.
TEST(ConfigFileTextModelTest, ValuesAreWhatSplitAndTrimMakeOfThem)
{
    FreshFiles files;
    RandomText random;
    for (int i = 0; i < 200; ++i) {
        const std::string separators = i % 2 == 0 ? "," : random.text(",;\"x ", 3);
        std::string content;
        std::vector<std::string> texts;
        for (int line = 0; line < 100; ++line) {
            texts.push_back(random.text(" \t\r,;\"\"\\nxy\x01\x80\0"s, 9));
            content += "k" + std::to_string(line) + "=" + texts.back() + "\n";
        }
        ConfigFile config;
        config.setListSeperator(separators);
        config.parseFile(files.write(content));
        for (std::size_t line = 0; line < texts.size(); ++line) {
            std::vector<std::string> tokens;
            trim(texts[line]);
            split(texts[line], tokens, separators, "", "\"");
            VectorAny<ScalarAny<std::string>> list;
            for (std::string& token : tokens) {
                trim(token);
                list.add(token);
            }
            const Any& value = *config.getEntry("", "k" + std::to_string(line));
            ASSERT_EQ(value.toString("|"), tokens.size() < 2 ? tokens.empty() ? "" : tokens[0] : list.toString("|"))
                << "'" << texts[line] << "' with '" << separators << "'";
            ASSERT_EQ(value.getTypeString(), tokens.size() < 2 ? "StringAny" : "StringVectorAny");
        }
    }
}

/// Keys that differ late, in length only, or not at all, entering an empty table and a full one.
TEST(ConfigFileTextModelTest, EntriesOfASectionComeInAnyOrder)
{
    FreshFiles files;
    RandomText random;
    for (int i = 0; i < 100; ++i) {
        ConfigFile config;
        std::map<std::string, std::string> expected;
        for (int file = 0; file < 3; ++file) {
            std::string content = "[s]\n";
            for (std::size_t left = random.below(200); left > 0; --left) {
                const std::string key = "k" + random.text("\0\xFFkk"s, left % 2 == 0 ? 3 : 12);
                const std::string value = std::to_string(left);
                content += key + "=" + value + "\n";
                expected[key] = value;
            }
            config.parseFile(files.write(content));
        }
        std::string text = "[s]\n";
        for (const auto& [key, value] : expected) {
            text += key + " (StringAny) " + value + "\n";
        }
        ASSERT_EQ(listing(config), text);
    }
}

/// Reading a file is reading its lines one by one with the public operation.
TEST(ConfigFileTextModelTest, NextLineGivesEveryLineOfTheModel)
{
    RandomText random;
    for (int i = 0; i < 5000; ++i) {
        ConfigFile config;
        config.setCommentSign(random.one("#; \0"s));
        const std::string content = random.text("#; \r\n\n\0ab"s, 40);
        std::string expected;
        int number = 0;
        for (const std::string& line : linesOf(content)) {
            ++number;
            if (line != "" && line[0] != config.getCommentSign()) {
                expected += std::to_string(number) + ":" + line.substr(0, line.find(config.getCommentSign())) + "\n";
            }
        }
        std::istringstream in(content);
        std::string found;
        int count = 0;
        while (in.good()) {
            std::string line;
            count += config.getNextLine(in, line);
            if (!line.empty()) {
                found += std::to_string(count) + ":" + line + "\n";
            }
        }
        ASSERT_EQ(found, expected) << "'" << content << "' with " << config.getCommentSign();
    }
}

} // namespace KelvoBase::test
