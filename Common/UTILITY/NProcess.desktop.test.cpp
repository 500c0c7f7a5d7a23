#include "Common/UTILITY/NProcess.h"

#include <gtest/gtest.h>

#include <string>

#include "Platform/Simulated/System.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::LogCapture;

class NProcessTest : public ::testing::Test {
protected:
    NProcessTest() { Simulated::ResetSystem(); }
    ~NProcessTest() override {
        EXPECT_EQ(Simulated::OpenHandles(), 0);
        Simulated::ResetSystem();
    }
    LogCapture log;
};

TEST_F(NProcessTest, TheNameIsWhatFollowsTheLastBackslashInLowerCase) {
    Simulated::SetProcess({.id = 7, .path = L"C:\\Program Files\\App\\MyApp.EXE"});
    EXPECT_EQ(NProcess::GetProcessPath(7), L"C:\\Program Files\\App\\MyApp.EXE");
    EXPECT_EQ(NProcess::GetProcessName(7), L"myapp.exe");
    EXPECT_TRUE(log.Lines().empty());
}

TEST_F(NProcessTest, APathWithoutBackslashIsTheName) {
    Simulated::SetProcess({.id = 7, .path = L"App"});
    EXPECT_EQ(NProcess::GetProcessName(7), L"app");
}

TEST_F(NProcessTest, ALongPathIsReadWhole) {
    const std::wstring path = L"C:\\" + std::wstring(3000, L'd') + L"\\a.exe";
    Simulated::SetProcess({.id = 7, .path = path});
    EXPECT_EQ(NProcess::GetProcessPath(7), path);
    EXPECT_EQ(NProcess::GetProcessName(7), L"a.exe");
}

TEST_F(NProcessTest, AProcessThatCantBeOpenedIsLogged) {
    Simulated::SetProcess({.id = 7, .path = L"C:\\a.exe", .accessDenied = true});
    EXPECT_EQ(NProcess::GetProcessName(7), L"");
    EXPECT_EQ(log.Count("OpenProcess failed for dwPid:7; GetLastError:5"), 1u) << log.Text();
    EXPECT_EQ(NProcess::GetProcessPath(8), L"");
    EXPECT_TRUE(log.Contains("OpenProcess failed for dwPid:8; GetLastError:87")) << log.Text();
}

TEST_F(NProcessTest, APathThatCantBeReadIsLogged) {
    Simulated::SetProcess({.id = 7, .path = L"C:\\a.exe", .pathFails = true});
    EXPECT_EQ(NProcess::GetProcessPath(7), L"");
    EXPECT_EQ(log.Count("QueryFullProcessImageName failed for dwPid:7; GetLastError:31"), 1u) << log.Text();
}

TEST_F(NProcessTest, TheTrueVersionIsTold) {
    Simulated::SetOsVersion(6, 1, 7601);
    RTL_OSVERSIONINFOW info;
    ASSERT_TRUE(NProcess::GetOsVersion(info));
    EXPECT_EQ(info.dwMajorVersion, 6u);
    EXPECT_EQ(info.dwMinorVersion, 1u);
    EXPECT_EQ(info.dwBuildNumber, 7601u);
}

}  // namespace
}  // namespace Zorvex
