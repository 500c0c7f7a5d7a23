#include "RuntimeCore/Enablement/AABrowserMarkerTab.h"

#include <gtest/gtest.h>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

std::int32_t IdIn(const std::string& name) {
    DesktopFixture desktop(R"({ "windows": [ { "class": "Frame", "objects": { "client": { "children": [ { "id": "tab", "role": "page tab", "name": ")" + name + R"(" } ] } } } ] })");
    return ExtractWindowIdFromName(AANode{desktop.Element("tab"), CComVariant(CHILDID_SELF)});
}

TEST(BrowserMarkerTab, NumberBehindTheMarkerIsTheId) {
    EXPECT_EQ(IdIn("Zorvex WindowId=123 - Some title"), 123);
    EXPECT_EQ(IdIn("Zorvex WindowId=0"), 0);
    EXPECT_EQ(IdIn("Zorvex WindowId= \\t42x"), 42);
    EXPECT_EQ(IdIn("Zorvex Browser Automation Id: 77 Page"), 77);
    EXPECT_EQ(IdIn("Zorvex WindowId=2147483647"), 2147483647);
}

TEST(BrowserMarkerTab, TextWithoutANumberInRangeHasNoId) {
    for (const char* name : {"Zorvex WindowId=", "Zorvex WindowId=abc", "Zorvex WindowId=-5", "Zorvex WindowId=2147483648",
                             "Zorvex WindowId=99999999999999999999999999", "Zorvex Browser Automation Id: x1", ""})
        EXPECT_EQ(IdIn(name), NoWindowId) << name;
}

TEST(BrowserMarkerTab, MarkerBehindOtherTextDoesNotCount) {
    for (const char* name : {"My Zorvex WindowId=5", " Zorvex WindowId=5", "zorvex windowid=5", "0123456789012345 6 Zorvex WindowId=5", "Tab Zorvex Browser Automation Id: 5"})
        EXPECT_EQ(IdIn(name), NoWindowId) << name;
}

class MarkerTab : public ::testing::Test {
protected:
    void Open(const std::string& children) {
        desktop = std::make_unique<DesktopFixture>(
            R"({ "windows": [ { "id": "main", "class": "Frame", "objects": { "window": { "role": "window", "children": [)" + children + "] } } } ] }");
    }
    std::int32_t Find() { return FindBrowserMarkerTab(desktop->Window("main"), L"page tab"); }
    void TearDown() override { EXPECT_EQ(desktop->OutstandingReferences(), 0); }

    LogCapture log;
    std::unique_ptr<DesktopFixture> desktop;
};

TEST_F(MarkerTab, IsFoundAndItsPlaceIsLogged) {
    Open(R"({ "role": "client", "children": [ { "role": "page tab list", "children": [ { "role": "page tab", "name": "News" },
        { "role": "page tab", "name": "Zorvex WindowId=123 - Start" }, { "id": "later", "role": "page tab", "name": "Zorvex WindowId=124" } ] } ] })");
    EXPECT_EQ(Find(), 123);
    EXPECT_TRUE(log.Contains("I [FindBrowserMarkerTab] Extracted window id: 123 from browser wnd: 0x")) << log.Text();
    EXPECT_TRUE(log.Contains(", level: 3"));
    EXPECT_EQ(desktop->Calls("later", "get_accName"), 0);
}

TEST_F(MarkerTab, WithoutANumberIsPassed) {
    Open(R"({ "role": "page tab list", "children": [ { "role": "page tab", "name": "Zorvex WindowId=abc" }, { "role": "page tab", "name": "Zorvex WindowId=9" } ] })");
    EXPECT_EQ(Find(), 9);
}

TEST_F(MarkerTab, OfAPageIsNotLookedAt) {
    Open(R"({ "role": "document", "children": [ { "id": "tab", "role": "page tab", "name": "Zorvex WindowId=5" } ] }, { "role": "pane", "name": "Zorvex WindowId=6" })");
    EXPECT_EQ(Find(), NoWindowId);
    EXPECT_EQ(desktop->Calls("tab", "get_accRole"), 0);
    EXPECT_FALSE(log.Contains("Extracted window id"));
}

TEST_F(MarkerTab, WindowWithoutAnObjectHasNone) {
    Open("");
    Simulated::Fault fault;
    fault.call = "AccessibleObjectFromWindow";
    fault.result = E_ACCESSDENIED;
    desktop->AddFault("main", fault);
    EXPECT_EQ(Find(), NoWindowId);
    EXPECT_TRUE(log.Contains("E [FindBrowserMarkerTab] AccessibleObjectFromWindow failed, browserWnd: 0x")) << log.Text();
    EXPECT_TRUE(log.Contains(", hRes: 80070005"));
}

TEST_F(MarkerTab, FailureOfAnyCallLeavesNoReference) {
    Open(R"({ "role": "client", "children": [ { "role": "page tab list", "children": [ { "role": "page tab", "name": "Zorvex WindowId=123" } ] } ] })");
    for (unsigned at = 1; at < 40; ++at) {
        for (const bool null : {false, true}) {
            Simulated::Fault fault;
            fault.at = at;
            fault.times = 1;
            if (null) fault.null = true;
            else fault.result = E_FAIL;
            desktop->AddFault(fault);
            Find();
            desktop->ClearFaults();
            ASSERT_EQ(desktop->OutstandingReferences(), 0) << at;
        }
    }
}

}  // namespace
}  // namespace Zorvex
