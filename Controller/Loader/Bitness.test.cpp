#include "Controller/Loader/Bitness.h"

#include <gtest/gtest.h>

using namespace Zorvex::Loader;

TEST(Bitness, AnEmulatedProcessHasTheWordSizeOfTheMachineItIsMadeFor) {
    EXPECT_EQ(BitnessFromMachines(0x014C, 0x8664), Bitness::Bits32);
    EXPECT_EQ(BitnessFromMachines(0x8664, 0xAA64), Bitness::Bits64);
    EXPECT_EQ(BitnessFromMachines(0x014C, 0xAA64), Bitness::Bits32);
}

TEST(Bitness, AProcessThatIsNotEmulatedHasThatOfTheSystem) {
    EXPECT_EQ(BitnessFromMachines(0, 0x8664), Bitness::Bits64);
    EXPECT_EQ(BitnessFromMachines(0, 0x014C), Bitness::Bits32);
}

TEST(Bitness, AMachineThatNoLibraryIsMadeForIsUnknown) {
    EXPECT_EQ(BitnessFromMachines(0, 0xAA64), Bitness::Unknown);
    EXPECT_EQ(BitnessFromMachines(0x01C4, 0xAA64), Bitness::Unknown);
}

TEST(Bitness, WithoutTheNewerCallEmulationMeansThirtyTwoBits) {
    EXPECT_EQ(BitnessFromWow64(true, true), Bitness::Bits32);
    EXPECT_EQ(BitnessFromWow64(false, true), Bitness::Bits64);
    EXPECT_EQ(BitnessFromWow64(false, false), Bitness::Bits32);
}

TEST(Bitness, TheSameWordSizeIsLetThroughAndAnUnknownOneIsTried) {
    EXPECT_FALSE(CheckBitness(Bitness::Bits64, Bitness::Bits64));
    EXPECT_FALSE(CheckBitness(Bitness::Bits32, Bitness::Bits32));
    EXPECT_FALSE(CheckBitness(Bitness::Bits64, Bitness::Unknown));
}

TEST(Bitness, AnotherWordSizeIsRefusedNamingTheLibrariesToUse) {
    const auto into32 = CheckBitness(Bitness::Bits64, Bitness::Bits32);
    ASSERT_TRUE(into32);
    EXPECT_EQ(into32->problem, LoadProblem::WrongBitness);
    EXPECT_EQ(into32->detail,
              "the target is a 32-bit process and this controller is 64-bit; use the 32-bit vantrel-ctl.exe, which "
              "loads vantrel_host.dll and vantrel.dll");
    const auto into64 = CheckBitness(Bitness::Bits32, Bitness::Bits64);
    ASSERT_TRUE(into64);
    EXPECT_NE(into64->detail.find("vantrel_host_x64.dll and vantrel_x64.dll"), std::string::npos);
}

TEST(Bitness, EachWordSizeHasItsOwnFileNames) {
    EXPECT_STREQ(HostLibraryName(Bitness::Bits64), L"vantrel_host_x64.dll");
    EXPECT_STREQ(HostLibraryName(Bitness::Bits32), L"vantrel_host.dll");
    EXPECT_STREQ(ServerLibraryName(Bitness::Bits64), L"vantrel_x64.dll");
    EXPECT_STREQ(ServerLibraryName(Bitness::Bits32), L"vantrel.dll");
}
