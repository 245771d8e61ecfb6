// The binary interface of the exception tree.

#include "support/posix/VirtualTable.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>

using namespace KelvoBase;

namespace
{

using test::slotCount;
using test::tableOf;

struct Watched : RuntimeException
{
    explicit Watched(int& count) : RuntimeException("watched"), mCount(count) {}
    ~Watched() override { ++mCount; }
    int& mCount;
};

} // namespace

TEST(ExceptionsLayout, DestructorsComeFirst)
{
    int destroyed = 0;
    alignas(Watched) unsigned char storage[sizeof(Watched)];
    auto* inPlace = new (storage) Watched(destroyed);
    reinterpret_cast<void (*)(void*)>(tableOf(*inPlace)[0])(inPlace);
    EXPECT_EQ(1, destroyed);
    auto* onHeap = new Watched(destroyed);
    reinterpret_cast<void (*)(void*)>(tableOf(*onHeap)[1])(onHeap);
    EXPECT_EQ(2, destroyed);
}

TEST(ExceptionsLayout, WhatFollowsTheDestructors)
{
    const OutOfBoundException e(5, 7, "x");
    using What = const char* (*)(const void*);
    EXPECT_STREQ("x Limit is 5, but it was 7.", reinterpret_cast<What>(tableOf(e)[2])(&e));
}

TEST(ExceptionsLayout, WhatIsDefinedOnceForTheWholeTree)
{
    const ResourceLocation file("C:\\a");
    const test::Slot what = tableOf(ExceptionBase("x"))[2];
    EXPECT_EQ(what, tableOf(RuntimeException("x"))[2]);
    EXPECT_EQ(what, tableOf(ObjectNotExistentException("x"))[2]);
    EXPECT_EQ(what, tableOf(FileNotFoundException("x"))[2]);
    EXPECT_EQ(what, tableOf(WrongTypeException(typeid(int), "x"))[2]);
    EXPECT_EQ(what, tableOf(IOFailedException("x", "", file))[2]);
    EXPECT_EQ(what, tableOf(NotAFileException(file))[2]);
    EXPECT_EQ(what, tableOf(NotAvailableException("x"))[2]);
}

TEST(ExceptionsLayout, NoClassAddsAVirtualOperation)
{
    const ResourceLocation file("C:\\a");
    EXPECT_EQ(3U, slotCount(ExceptionBase("x")));
    EXPECT_EQ(3U, slotCount(RuntimeException("x")));
    EXPECT_EQ(3U, slotCount(FailedException("x")));
    EXPECT_EQ(3U, slotCount(OperationFailedException("x")));
    EXPECT_EQ(3U, slotCount(ObjectNotExistentException("x")));
    EXPECT_EQ(3U, slotCount(IOException("x")));
    EXPECT_EQ(3U, slotCount(FileNotFoundException("x")));
    EXPECT_EQ(3U, slotCount(FileNotReadableException(file, "")));
    EXPECT_EQ(3U, slotCount(InvalidFileNameException("x", "")));
    EXPECT_EQ(3U, slotCount(IOFailedException("x", "", file)));
    EXPECT_EQ(3U, slotCount(NotAFileException(file)));
    EXPECT_EQ(3U, slotCount(OutOfBoundException(1, 2, "x")));
    EXPECT_EQ(3U, slotCount(WrongNumberException(1, 2, "x")));
    EXPECT_EQ(3U, slotCount(WrongTypeException(typeid(int), "x")));
    EXPECT_EQ(3U, slotCount(NotAvailableException("x")));
    EXPECT_EQ(3U, slotCount(NotImplementedException("x")));
    EXPECT_EQ(3U, slotCount(UnknownException("x")));
}

TEST(ExceptionsSystemError, ConstructorsNeitherReadNorChangeIt)
{
    const ResourceLocation file("C:\\a");
    errno = ENOENT;
    const FileNotReadableException readable(file, "");
    const IOFailedException failed("op", "", file, file);
    const IOException plain("x");
    EXPECT_EQ(ENOENT, errno);
    EXPECT_STREQ("Cannot read from file \"file://localhost/C:\\a\"", readable.what());
    EXPECT_STREQ("op \"C:\\a\" to \"C:\\a\" failed", failed.what());
}
