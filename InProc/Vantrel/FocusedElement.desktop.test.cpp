#include "InProc/Vantrel/FocusedElement.h"

#include <gtest/gtest.h>

#include "InProc/Vantrel/AAContainerCache.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

std::string Desktop(const std::string& windowClass, const std::string& process, const std::string& rootFocus) {
    return R"({"processes": [{"id": 1000, "path": "C:\\)" + process + R"(", "current": true}],
      "windows": [{"id": "main", "class": ")" + windowClass + R"(", "rectangle": [0, 0, 400, 300], "objects": {"window": {
        "id": "root", "role": "window", "focus": ")" + rootFocus + R"(", "rectangle": [0, 0, 400, 300], "children": [
          {"id": "pane", "role": "pane", "focus": "edit", "children": [{"id": "edit", "role": "editable text", "focus": "self"}]},
          {"id": "document", "role": "document", "focus": "link", "children": [
            {"id": "link", "role": "link", "simple": true}]}]}}}]})";
}

AAObjectIdentifier Focused(DesktopFixture& desktop, const char* window = "main") {
    GetFocusedElemRequest request;
    request.clientPid = kClientPid;
    request.window = window ? desktop.Window(window) : reinterpret_cast<HWND>(0x99);
    return Call(request).element;
}

bool Names(DesktopFixture& desktop, const AAObjectIdentifier& identifier, const char* id) {
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(identifier);
    CComPtr<IUnknown> actual, expected;
    if (!element.spAcc) return false;
    element.spAcc.QueryInterface(actual);
    desktop.Element(id).QueryInterface(expected);
    return actual.p == expected.p && element.child.lVal == desktop.Child(id).lVal;
}

TEST(FocusedElement, FocusIsFollowedDownThroughNestedObjects) {
    DesktopFixture desktop(Desktop("Main", "app.exe", "pane"));
    CacheCleaner cleaner;
    const auto identifier = Focused(desktop);
    EXPECT_TRUE(Names(desktop, identifier, "edit"));
    EXPECT_EQ(identifier.originalWnd, desktop.Window("main"));
    EXPECT_EQ(identifier.clientPid, kClientPid);
}

TEST(FocusedElement, EmptyFocusGivesZero) {
    DesktopFixture desktop(Desktop("Main", "app.exe", "pane"));
    LogCapture log;
    desktop.AddFault("pane", {.call = "get_accFocus", .type = VT_EMPTY});
    EXPECT_EQ(Focused(desktop), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("Unexpected variant type 0"));
}

TEST(FocusedElement, FailedFocusGivesZero) {
    DesktopFixture desktop(Desktop("Main", "app.exe", "pane"));
    LogCapture log;
    desktop.AddFault("root", {.call = "get_accFocus", .result = E_NOTIMPL});
    EXPECT_EQ(Focused(desktop), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("get_accFocus failed with 80004001"));
}

TEST(FocusedElement, FocusThatIsNoAccessibleGivesZero) {
    DesktopFixture desktop(Desktop("Main", "app.exe", "pane"));
    LogCapture log;
    desktop.AddFault("pane", {.call = "QueryInterface", .result = E_NOINTERFACE});
    EXPECT_EQ(Focused(desktop), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("Not an AA object"));
}

TEST(FocusedElement, FocusThatLeadsBackToItselfEnds) {
    DesktopFixture desktop(R"({"windows": [{"id": "main", "class": "Main", "objects": {"window": {"id": "root", "role": "window",
        "focus": "a", "children": [{"id": "a", "role": "pane", "focus": "b"}, {"id": "b", "role": "pane", "focus": "a"}]}}}]})");
    LogCapture log;
    EXPECT_EQ(Focused(desktop), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("The focus was not reached in 10000 steps"));
}

TEST(FocusedElement, WindowThatIsNoneGivesZero) {
    DesktopFixture desktop(Desktop("Main", "app.exe", "pane"));
    LogCapture log;
    EXPECT_EQ(Focused(desktop, nullptr), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("GetFocusedElementImpl: invalid arguments"));
}

TEST(FocusedElement, OwnerWindowThatIsNoneGivesZeroDespiteWhatTheLogPromises) {
    DesktopFixture desktop(Desktop("Main", "app.exe", "pane"));
    LogCapture log;
    desktop.AddFault("edit", {.call = "WindowFromAccessibleObject", .result = E_FAIL});
    EXPECT_EQ(Focused(desktop), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("Failed to get focused AA element HWND. Using caller provided HWND."));
}

TEST(FocusedElement, EmbeddedPageIsAskedThroughItsDocument) {
    DesktopFixture desktop(Desktop("Chrome_WidgetWin_1", "mail.exe", "pane"));
    CacheCleaner cleaner;
    EXPECT_TRUE(Names(desktop, Focused(desktop), "link"));
}

TEST(FocusedElement, ChildWindowOfABrowserIsAskedThroughItsDocument) {
    DesktopFixture desktop(R"({"processes": [{"id": 1000, "path": "C:\\chrome.exe", "current": true}],
      "windows": [{"id": "host", "class": "Host", "children": [{"id": "main", "class": "Chrome_WidgetWin_1", "objects": {"window": {
        "role": "window", "focus": "button", "children": [
          {"id": "button", "role": "push button", "focus": "self"},
          {"id": "document", "role": "document", "focus": "self"}]}}}]}]})");
    CacheCleaner cleaner;
    EXPECT_TRUE(Names(desktop, Focused(desktop), "document"));
}

TEST(FocusedElement, DocumentIsLookedForThreeLevelsDeep) {
    for (const bool tooDeep : {false, true}) {
        const std::string document = R"({"id": "document", "role": "document", "focus": "self"})";
        DesktopFixture desktop(R"({"processes": [{"id": 1000, "path": "C:\\mail.exe", "current": true}],
          "windows": [{"id": "main", "class": "Chrome_WidgetWin_1", "objects": {"window": {"role": "window", "focus": "button",
            "children": [{"id": "button", "role": "push button", "focus": "self"}, {"role": "pane", "children": [
              {"role": "pane", "children": [)" + (tooDeep ? R"({"role": "pane", "children": [)" + document + "]}" : document) + "]}]}]}}}]}");
        CacheCleaner cleaner;
        EXPECT_TRUE(Names(desktop, Focused(desktop), tooDeep ? "button" : "document")) << tooDeep;
    }
}

TEST(FocusedElement, WindowWithoutAnObjectGivesZero) {
    DesktopFixture desktop(Desktop("Main", "app.exe", "pane"));
    LogCapture log;
    for (const bool isNull : {false, true}) {
        log.Clear();
        if (isNull) desktop.AddFault("main", {.call = "AccessibleObjectFromWindow", .at = 2, .null = true});
        else desktop.AddFault("main", {.call = "AccessibleObjectFromWindow", .times = 1, .result = E_FAIL});
        EXPECT_EQ(Focused(desktop), AAObjectIdentifier{});
        EXPECT_TRUE(log.Contains("GetFocusedElementImpl: cannot get AA from hwnd "));
    }
}

TEST(FocusedElement, BrowserItselfIsAskedThroughItsWindow) {
    for (const char* process : {"chrome.exe", "Brave.exe", "MSEDGE.EXE", "vivaldi.exe"}) {
        DesktopFixture desktop(Desktop("Chrome_WidgetWin_1", process, "pane"));
        CacheCleaner cleaner;
        EXPECT_TRUE(Names(desktop, Focused(desktop), "edit")) << process;
    }
}

}  // namespace
}  // namespace Zorvex::Testing
