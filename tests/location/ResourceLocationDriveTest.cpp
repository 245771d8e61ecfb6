#include "support/FakePlatform.h"

#include <kelvobase/ResourceLocation.h>

#include <gtest/gtest.h>

// A program of its own: the drive is asked for once in the life of a process.

namespace KelvoBase
{

TEST(ResourceLocationDriveTest, RootIsTheDriveOfTheFirstCall)
{
    test::FakeSystem system;
    system->currentDrive = 5;
    EXPECT_EQ("E:", ResourceLocation::getRootDir());
    EXPECT_EQ(R"(file://localhost/E:\x)", ResourceLocation("/x").str());
    system->currentDrive = 1;
    EXPECT_EQ("E:", ResourceLocation::getRootDir());
    EXPECT_EQ(R"(file://localhost/E:\x)", ResourceLocation("/x").str());
    EXPECT_EQ(R"(file://localhost/C:\x)", ResourceLocation("C:/x").str());
}

} // namespace KelvoBase
