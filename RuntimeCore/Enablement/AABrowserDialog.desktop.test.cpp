#include "RuntimeCore/Enablement/AABrowserDialog.h"

#include <gtest/gtest.h>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

class BrowserDialog : public ::testing::Test {
protected:
    void Open(const std::string& children) {
        desktop.reset();
        desktop = std::make_unique<DesktopFixture>(
            R"({ "windows": [ { "id": "main", "class": "Frame", "objects": { "window": { "id": "root", "role": "window", "children": [)" + children + "] } } } ] }");
    }
    void TearDown() override {
        found = {};
        EXPECT_EQ(desktop->OutstandingReferences(), 0);
    }
    bool FindsChromium(const char* id = nullptr) { return Is(FindChromiumBrowserDialog(desktop->Window("main")), id); }
    bool FindsFirefox(const char* id = nullptr) { return Is(FindFirefoxBrowserDialog(desktop->Window("main")), id); }
    // Whether that element was found; with null, none.
    bool Is(AANode node, const char* id) {
        found = std::move(node);
        return id ? found.IsValid() && found.container.p == desktop->Element(id).p : !found.container;
    }
    void Refuse(const char* id, const char* call, HRESULT result = E_ACCESSDENIED) {
        Simulated::Fault fault;
        fault.call = call;
        fault.result = result;
        desktop->AddFault(id, fault);
    }

    LogCapture log;
    std::unique_ptr<DesktopFixture> desktop;
    AANode found;
};

TEST_F(BrowserDialog, OfChromiumIsFoundAtDepthThree) {
    Open(R"({ "role": "client", "children": [ { "role": "pane", "children": [ { "id": "dialog", "role": "dialog" } ] } ] })");
    EXPECT_TRUE(FindsChromium("dialog"));
    for (const char* text : {"V [FindChromiumBrowserDialog] FindChromeBrowserDialog for window 0",
                             "V [FindChromiumBrowserChildDialog] FindChromiumBrowserChildDialog for window 0",
                             "V [FindElemWithRole] [FindElemWithRole] under window 0", ", role to find: 'dialog'",
                             "V [FindElemWithRole] [FindElemWithRole] role to find: 'dialog'", "V [LogRole] window", "V [LogRole]   client",
                             "V [LogRole]     pane", "V [LogRole]       dialog", "V [FindChromiumBrowserDialog] found dialog in the AA tree"})
        EXPECT_TRUE(log.Contains(text)) << text << "\n" << log.Text();
}

TEST_F(BrowserDialog, OfChromiumAtDepthFourIsNotFound) {
    Open(R"({ "role": "client", "children": [ { "role": "pane", "children": [ { "role": "grouping", "children": [ { "id": "dialog", "role": "dialog" } ] } ] } ] })");
    EXPECT_TRUE(FindsChromium());
    EXPECT_EQ(desktop->Calls("dialog", "get_accRole"), 0);
    EXPECT_FALSE(log.Contains("found dialog in the AA tree"));
}

TEST_F(BrowserDialog, OfChromiumIsTheFirstInPreOrder) {
    Open(R"({ "role": "pane", "children": [ { "role": "pane", "children": [ { "id": "deep", "role": "dialog" } ] } ] }, { "id": "shallow", "role": "dialog" })");
    EXPECT_TRUE(FindsChromium("deep"));
}

TEST_F(BrowserDialog, RootItselfMayHaveTheRoleAndCaseDoesNotCount) {
    Open(R"({ "id": "own", "role": "pane" })");
    EXPECT_TRUE(Is(FindElemWithRole(desktop->Window("main"), L"WINDOW"), "root"));
    Simulated::Fault fault;
    fault.call = "get_accRole";
    fault.type = VT_BSTR;
    desktop->AddFault("own", fault);
    // A role of the server's own, given as a text.
    EXPECT_TRUE(Is(FindElemWithRole(desktop->Window("main"), L"Wrong"), "own")) << log.Text();
}

TEST_F(BrowserDialog, InvalidRootIsLoggedAndHasNothing) {
    Open("");
    EXPECT_FALSE(FindElemWithRole(AANode{}, L"dialog").container);
    EXPECT_EQ(log.Count("W [Attach] Invalid root specified!"), 1u) << log.Text();
    EXPECT_FALSE(FindElemWithRole(AANode{desktop->Element("root"), CComVariant(L"1")}, L"dialog").container);
    EXPECT_EQ(log.Count("Invalid root specified!"), 2u);
}

TEST_F(BrowserDialog, WindowWithoutAnObjectHasNone) {
    Open(R"({ "role": "dialog" })");
    Refuse("main", "AccessibleObjectFromWindow");
    EXPECT_TRUE(FindsChromium());
    EXPECT_TRUE(FindsFirefox());
    EXPECT_EQ(log.Count("Accessible from window failed, hRes=0x80070005"), 2u) << log.Text();
    EXPECT_TRUE(log.Contains("E [FindElemWithRole] Accessible from window failed"));
    EXPECT_TRUE(log.Contains("E [FindFirefoxBrowserDialog] Accessible from window failed"));
    desktop->ClearFaults();
    Simulated::Fault fault;
    fault.call = "AccessibleObjectFromWindow";
    fault.null = true;
    desktop->AddFault("main", fault);
    EXPECT_TRUE(FindsChromium());
    EXPECT_TRUE(FindsFirefox());
}

constexpr char kDeepFirefoxDialog[] = R"({ "role": "client", "children": [ { "role": "pane", "children": [ { "role": "grouping", "children": [
    { "role": "grouping", "children": [ { "id": "dialog", "role": "dialog", "ia2": { "attributes": "tag:vbox;" } } ] } ] } ] } ] })";

TEST_F(BrowserDialog, OfFirefoxIsFoundAtAnyDepth) {
    Open(kDeepFirefoxDialog);
    EXPECT_TRUE(FindsFirefox("dialog"));
    EXPECT_TRUE(log.Contains("V [FindFirefoxBrowserDialog] FindFirefoxBrowserDialog for window 0")) << log.Text();
    EXPECT_TRUE(log.Contains("V [JudgeFirefoxDialog] found a dialog"));
    EXPECT_TRUE(log.Contains("V [LogRole]           dialog"));
}

TEST_F(BrowserDialog, OfFirefoxIsTheFirstLevelByLevel) {
    Open(R"({ "role": "pane", "children": [ { "role": "pane", "children": [ { "role": "dialog", "ia2": { "attributes": "tag:vbox;" } } ] } ] },
      { "id": "shallow", "role": "dialog", "ia2": { "attributes": "tag:vbox;" } })");
    EXPECT_TRUE(FindsFirefox("shallow"));
}

TEST_F(BrowserDialog, OfAPageIsSkippedAndALaterOneOfTheBrowserIsFound) {
    Open(R"({ "role": "pane", "children": [ { "id": "page", "role": "dialog", "ia2": { "attributes": "tag:window;" }, "children": [
        { "id": "inner", "role": "dialog", "ia2": { "attributes": "tag:vbox;" } } ] } ] },
      { "role": "pane", "children": [ { "role": "pane", "children": [ { "id": "later", "role": "dialog", "ia2": { "attributes": "tag:vbox;" } } ] } ] })");
    EXPECT_TRUE(FindsFirefox("later"));
    EXPECT_TRUE(log.Contains("V [JudgeFirefoxDialog] FindFirefoxBrowserDialog: dialog found, but it is inside the page web page. So, we skip it."))
        << log.Text();
    EXPECT_EQ(desktop->Calls("inner", "get_accRole"), 0);
}

TEST_F(BrowserDialog, PagesAreNotWalked) {
    Open(R"({ "id": "page", "role": "document", "children": [ { "id": "inside", "role": "dialog", "ia2": { "attributes": "tag:div;" } } ] })");
    EXPECT_TRUE(FindsFirefox());
    EXPECT_EQ(desktop->Calls("inside", "get_accRole"), 0);
    EXPECT_TRUE(log.Contains("V [FindFirefoxBrowserDialog] FindFirefoxBrowserDialog: document element reached, skip browsing children")) << log.Text();
}

TEST_F(BrowserDialog, ThatCannotBeSeenIsPassedButWalked) {
    for (const char* state : {"invisible", "offscreen"}) {
        Open(std::string(R"({ "role": "dialog", "state": [")") + state + R"("], "children": [ { "id": "inner", "role": "dialog", "ia2": { "attributes": "tag:vbox;" } } ] })");
        log.Clear();
        EXPECT_TRUE(FindsFirefox("inner")) << state;
        EXPECT_TRUE(log.Contains("V [IsFirefoxDialogVisible] [IsFirefoxDialogVisible] Offscreen or invisible dialog")) << log.Text();
        found = {};
    }
}

TEST_F(BrowserDialog, WhoseStateCannotBeReadIsNotVisible) {
    Open(kDeepFirefoxDialog);
    Refuse("dialog", "get_accState");
    EXPECT_TRUE(FindsFirefox());
    EXPECT_TRUE(log.Contains("E [IsFirefoxDialogVisible] [IsFirefoxDialogVisible] Failed to get the accState of the dialog hRes=0x80070005")) << log.Text();
}

TEST_F(BrowserDialog, WhoseTagCannotBeReadCountsAsTheBrowsers) {
    Open(R"({ "id": "dialog", "role": "dialog" })");
    EXPECT_TRUE(FindsFirefox("dialog"));
    EXPECT_TRUE(log.Contains("E [JudgeFirefoxDialog] IA2Tools::GetAttribute(node.GetContainer(), IA2Tools::IA2_ATTRIBUTE_TAG, tag) | HRESULT ")) << log.Text();
    EXPECT_TRUE(log.Contains(" | FindFirefoxBrowserDialog: dialog found, but IA2Tools::GetAttribute failed, so assuming the dialog is not inside the page."));
}

TEST_F(BrowserDialog, UnreadableRoleIsNoMatchAndTheWalkGoesOn) {
    Open(R"({ "id": "mute", "role": "pane", "children": [ { "id": "dialog", "role": "dialog" } ] })");
    Refuse("mute", "get_accRole");
    EXPECT_TRUE(FindsChromium("dialog"));
    EXPECT_TRUE(FindsFirefox("dialog"));
}

TEST_F(BrowserDialog, FailureOfAnyCallLeavesNoReference) {
    Open(kDeepFirefoxDialog);
    for (unsigned at = 1; at < 60; ++at) {
        for (const bool null : {false, true}) {
            Simulated::Fault fault;
            fault.at = at;
            fault.times = 1;
            if (null) fault.null = true;
            else fault.result = E_FAIL;
            desktop->AddFault(fault);
            FindFirefoxBrowserDialog(desktop->Window("main"));
            FindChromiumBrowserDialog(desktop->Window("main"));
            desktop->ClearFaults();
            ASSERT_EQ(desktop->OutstandingReferences(), 0) << at;
        }
    }
}

TEST_F(BrowserDialog, CountsThatLieEndTheWalk) {
    Open(kDeepFirefoxDialog);
    for (const LONG count : {-1, 1'000'000, 0x7FFFFFFF}) {
        Simulated::Fault fault;
        fault.call = "get_accChildCount";
        fault.count = count;
        desktop->AddFault("root", fault);
        FindFirefoxBrowserDialog(desktop->Window("main"));
        FindChromiumBrowserDialog(desktop->Window("main"));
        desktop->ClearFaults();
        EXPECT_EQ(desktop->OutstandingReferences(), 0) << count;
    }
}

}  // namespace
}  // namespace Zorvex
