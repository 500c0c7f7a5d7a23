#include "RuntimeCore/TextCapture/SafeName.h"

#include <gtest/gtest.h>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

std::optional<DWORD> OldSystem() { return 5; }

TEST(SafeNameOnADesktop, InvisibleButtonOfAToolBarIsLeftAloneAndOneElsewhereIsNot) {
    DesktopFixture desktop(R"({"windows": [
        {"id": "bar", "class": "ToolbarWindow32", "objects": {"client": {"children": [
            {"id": "crashes", "role": "push button", "name": "x", "state": ["invisible"], "simple": true}]}}},
        {"id": "other", "class": "ToolbarWindow32X", "objects": {"client": {"children": [
            {"id": "fine", "role": "push button", "name": "x", "state": ["invisible"]}]}}}]})");
    LogCapture log;
    CaptureContext context;
    context.m_bIsIETopFrame = true;
    EXPECT_TRUE(FilterOutIE8XPCrashes(context, desktop.Element("crashes"), desktop.Child("crashes"), OldSystem));
    EXPECT_FALSE(log.Contains("Parent window is not a toolbar"));
    EXPECT_FALSE(FilterOutIE8XPCrashes(context, desktop.Element("fine"), desktop.Child("fine"), OldSystem));
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Parent window is not a toolbar"));
    EXPECT_EQ(desktop.Calls("get_accName"), 0);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(SafeNameOnADesktop, NewSystemIsNamedOnceAndFoundNewEachTime) {
    DesktopFixture desktop(R"({"windows": [{"id": "bar", "class": "C", "objects": {"client": {"id": "client"}}}]})");
    CaptureContext context;
    context.m_bIsIETopFrame = true;
    LogCapture first;
    EXPECT_FALSE(FilterOutIE8XPCrashes(context, desktop.Element("client"), CComVariant(0)));
    if (!first.Contains("] Vista or later")) GTEST_SKIP() << "a test before found an old system, which is remembered";
    LogCapture second;
    EXPECT_FALSE(FilterOutIE8XPCrashes(context, desktop.Element("client"), CComVariant(0)));
    EXPECT_TRUE(second.Contains("V [FilterOutIE8XPCrashes] Vista or later")) << second.Text();
    EXPECT_FALSE(second.Contains("Windows Vista or later"));
}

TEST(SafeNameOnADesktop, SystemIsAskedForItsVersion) {
    {
        DesktopFixture desktop(R"({"system": {"osVersion": [5, 1, 2600]}, "windows": []})");
        EXPECT_EQ(GetOsMajorVersion(), 5u);
    }
    DesktopFixture desktop(R"({"system": {"osVersion": [0, 0, 0]}, "windows": []})");
    EXPECT_EQ(GetOsMajorVersion(), std::nullopt);
}

}  // namespace
}  // namespace Zorvex
