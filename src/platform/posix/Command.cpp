#include "platform/posix/PosixCommand.h"

namespace KelvoBase::platform
{

namespace
{

constexpr std::string_view blanks = " \t\n";
constexpr std::string_view protectable = "$`\"\\"; // what a backslash protects between double quotation marks

class WordReader
{
public:
    explicit WordReader(std::string_view command) : mRest(command) {}

    /// False where a quotation mark is not closed.
    bool read()
    {
        while (!mRest.empty()) {
            if (!readPiece(take())) {
                return false;
            }
        }
        endWord();
        return true;
    }
    std::vector<std::string>& words() { return mWords; }

private:
    char take()
    {
        const char c = mRest.front();
        mRest.remove_prefix(1);
        return c;
    }

    void add(char c)
    {
        mWord += c;
        mInWord = true;
    }

    void endWord()
    {
        if (mInWord) {
            mWords.push_back(std::move(mWord));
        }
        mWord.clear();
        mInWord = false;
    }

    bool readPiece(char c)
    {
        if (blanks.find(c) != std::string_view::npos) {
            endWord();
            return true;
        }
        switch (c) {
        case '\'':
            return readSingleQuoted();
        case '"':
            return readDoubleQuoted();
        case '\\':
            readProtected();
            return true;
        default:
            add(c);
            return true;
        }
    }

    bool readSingleQuoted()
    {
        const std::string_view::size_type end = mRest.find('\'');
        if (end == std::string_view::npos) {
            return false;
        }
        mWord += mRest.substr(0, end);
        mInWord = true; // quotation marks make a word, also around nothing
        mRest.remove_prefix(end + 1);
        return true;
    }

    bool readDoubleQuoted()
    {
        mInWord = true;
        while (!mRest.empty()) {
            const char c = take();
            if (c == '"') {
                return true;
            }
            const bool isProtecting = c == '\\' && !mRest.empty();
            if (isProtecting && mRest.front() == '\n') {
                take();
            } else if (isProtecting && protectable.find(mRest.front()) != std::string_view::npos) {
                add(take());
            } else {
                add(c);
            }
        }
        return false;
    }

    void readProtected()
    {
        const char c = mRest.empty() ? '\\' : take();
        if (c != '\n') {
            add(c);
        }
    }

    std::string_view mRest;
    std::string mWord;
    bool mInWord = false;
    std::vector<std::string> mWords;
};

} // namespace

std::optional<std::vector<std::string>> posix::wordsOf(std::string_view command)
{
    WordReader reader(command);
    if (command.find('\0') != std::string_view::npos || !reader.read() || reader.words().empty()) {
        return std::nullopt;
    }
    return std::move(reader.words());
}

} // namespace KelvoBase::platform
