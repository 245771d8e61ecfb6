#pragma once

/// \file
/// The trace's record in memory, caught where it is allocated: a program with this source replaces `operator new[]`.

#include <string>

namespace KelvoBase::test
{

constexpr std::size_t recordSize = 32768;
constexpr std::size_t recordHead = 9;
/// What the allocator delivers in every byte of the record.
constexpr char untouched = '\xA5';

/// All bytes of the record as they stand; makes the trace's buffer if there is none.
std::string recordBytes();
/// How many records there are.
long recordBlocks();

/// The record as whoever wrote the marks on paper would keep it: one character at a time, marks and all.
class RecordModel
{
public:
    /// A fresh record.
    RecordModel() : mBytes(recordSize, untouched)
    {
        mBytes.replace(0, 4, "\n<BE");
        mBytes.replace(5, 4, "IN> ");
    }
    /// The record as it stands: the tail mark says where it goes on.
    explicit RecordModel(const std::string& bytes) : mBytes(bytes)
    {
        const auto tail = bytes.find("\n<T>\n");
        mPosition = tail == std::string::npos ? 0 : tail - recordHead;
    }

    void store(char c)
    {
        if (mPosition + 1 >= 32752) {
            mBytes.replace(recordHead + mPosition, 7, "\n<end>\n");
            mPosition = 0;
        }
        mBytes[recordHead + mPosition] = c;
        ++mPosition;
        mBytes.replace(recordHead + mPosition, 5, "\n<T>\n");
    }
    void store(const std::string& text)
    {
        for (const char c : text) {
            store(c);
        }
    }

    std::size_t position() const { return mPosition; }
    const std::string& bytes() const { return mBytes; }

private:
    std::string mBytes;
    std::size_t mPosition = 0;
};

} // namespace KelvoBase::test
