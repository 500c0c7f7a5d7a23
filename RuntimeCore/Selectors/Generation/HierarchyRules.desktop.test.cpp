#include "RuntimeCore/Selectors/Generation/HierarchyRules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Common/include/CComVariant.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

using namespace Zorvex::Generation;

// Elements that begin with "guest" say that another window owns them than the one in whose tree they are.
constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Frame", "handle": 4096, "thread": 1, "objects": {"window": {"id": "root", "role": "window", "children": [
    {"id": "pane", "role": "pane", "name": "Pane", "children": [
      {"id": "ok", "role": "push button", "name": "OK", "rectangle": [1, 1, 9, 9]},
      {"id": "item", "role": "list item", "name": "Item", "simple": true},
      {"id": "guest", "role": "push button", "name": "Guest", "window": "inner"},
      {"id": "guestOfAnother", "role": "pane", "name": "Other", "window": "alien", "children": [
        {"id": "local", "role": "push button", "name": "Local", "window": "main"}]}]},
    {"id": "guestBelowRoot", "role": "push button", "name": "Lost", "window": "inner"},
    {"id": "top", "role": "push button", "name": "Top"},
    {"id": "dialog", "role": "dialog", "name": "Dialog", "children": [
      {"id": "inDialog", "role": "push button", "name": "Yes"},
      {"id": "guestInDialog", "role": "push button", "name": "No", "window": "inner"}]}]}},
   "children": [
    {"id": "inner", "class": "Inner", "handle": 8192, "objects": {"window": {"id": "innerRoot", "role": "window", "children": [
      {"id": "innerPane", "role": "pane", "name": "Inner", "children": [{"id": "innerButton", "role": "push button", "name": "In"}]},
      {"id": "innerDialog", "role": "dialog", "name": "Inner", "children": [{"id": "inInnerDialog", "role": "push button", "name": "In"}]}]}}},
    {"id": "alien", "class": "Alien", "handle": 12288, "thread": 2}]},
  {"id": "other", "class": "Frame", "handle": 16384, "thread": 1},
  {"id": "chrome", "class": "Chrome_WidgetWin_1", "handle": 20480, "objects": {"window": {"id": "chromeRoot", "role": "window", "children": [
    {"id": "chromePane", "role": "pane", "name": "Page", "children": [
      {"id": "rootDialog", "role": "dialog", "name": "Ask", "ia2": {"attributes": "class:RootView;"}, "children": [
        {"id": "inRootDialog", "role": "push button", "name": "Allow"}, {"id": "simpleInRootDialog", "simple": true, "role": "dialog"}]},
      {"id": "otherDialog", "role": "dialog", "name": "Ask", "ia2": {"attributes": "class:RootView2;"}},
      {"id": "plainDialog", "role": "dialog", "name": "Ask"},
      {"id": "alert", "role": "alert", "name": "Ask", "ia2": {"attributes": "class:RootView;"}}]},
    {"id": "inChromeRoot", "role": "push button", "name": "Back"}]}}},
  {"id": "ie", "class": "Internet Explorer_Server", "handle": 24576, "objects": {"window": {"id": "ieRoot", "role": "pane", "children": [
    {"id": "html", "role": "pane", "html": true, "children": [{"id": "link", "role": "link", "name": "Link"}]},
    {"id": "noHtml", "role": "pane", "children": [{"id": "linkOutside", "role": "link", "name": "Link"}]}]}}},
  {"id": "frame", "class": "Frame", "handle": 28672, "objects": {"window": {"id": "frameRoot", "role": "pane", "children": [
    {"id": "htmlInFrame", "role": "pane", "html": true, "children": [{"id": "linkInFrame", "role": "link", "name": "Link"}]}]}}}]})";

enum Mode { Mixed, AaOnly };
enum Owner { Strict, Fallback };

Simulated::Fault Failing(const char* call) {
    Simulated::Fault fault{.call = call};
    fault.result = E_FAIL;
    return fault;
}
Simulated::Fault Null(const char* call) {
    Simulated::Fault fault{.call = call};
    fault.null = true;
    return fault;
}

class HierarchyRulesTest : public testing::Test {
protected:
    NextParent Next(const char* element, const char* window = "main", Mode mode = Mixed, Owner owner = Strict) {
        return GetNextParentForAAHierarchy(desktop.Window(window), desktop.Element(element), desktop.Child(element), mode == AaOnly,
                                           owner == Fallback);
    }
    // The whole record as "parent window, parent, owner window, way".
    std::string Way(const NextParent& next) {
        std::string way = WindowName(next.hParentWnd) + ", " + ElementName(next.spParentAcc) + ", " + WindowName(next.hAAWnd);
        return way + (next.bUseWnd ? ", windows" : ", tree");
    }
    std::string Way(const char* element, const char* window = "main", Mode mode = Mixed, Owner owner = Strict) {
        return Way(Next(element, window, mode, owner));
    }
    bool IsInteresting(const char* element, const char* window = "main", const char* top = "main", const char* aaWindow = "main",
                       Mode mode = Mixed, bool wpf = false) {
        return IsInterestingForAASelector(desktop.Window(window), desktop.Element(element), desktop.Window(top), desktop.Window(aaWindow),
                                          mode == AaOnly, wpf);
    }
    // The line with its severity and its function.
    void ExpectLine(const std::string& line) {
        for (const std::string& found : log.Lines())
            if (found.starts_with(line.substr(0, 2)) && found.ends_with("] " + line.substr(2))) return;
        ADD_FAILURE() << "no line \"" << line << "\" in\n" << log.Text();
    }
    void TearDown() override {
        // Whichever step writes it, a line carries the name of the function that was called.
        for (const std::string& line : log.Lines()) {
            const bool isOfTheSearch = line.find("] GetNextParentForAAHierarchy") != std::string::npos;
            EXPECT_TRUE(!isOfTheSearch || line.substr(1).starts_with(" [GetNextParentForAAHierarchy] ")) << line;
        }
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};

private:
    std::string WindowName(HWND hWnd) {
        if (!hWnd) return "none";
        for (const char* id : {"main", "inner", "alien", "other", "chrome", "ie", "frame"})
            if (desktop.Window(id) == hWnd) return id;
        return "?";
    }
    std::string ElementName(IAccessible* acc) {
        if (!acc) return "none";
        for (const char* id : {"root", "pane", "item", "dialog", "innerRoot", "innerPane", "innerDialog", "guestOfAnother", "chromeRoot",
                               "chromePane", "rootDialog", "ieRoot", "html", "noHtml", "htmlInFrame", "frameRoot"})
            if (desktop.Element(id).p == acc) return id;
        return "?";
    }
};

constexpr char kNoAnswer[] = "none, none, none, tree";

// ---- The next parent: what is asked

TEST_F(HierarchyRulesTest, NullElementHasNoAnswer) {
    EXPECT_EQ(Way(GetNextParentForAAHierarchy(desktop.Window("main"), nullptr, CComVariant(0), false, false)), kNoAnswer);
    ExpectLine("E GetNextParentForAAHierarchy: pTargetAcc is NULL in GetNextParentForAAHierarchy");
}

TEST_F(HierarchyRulesTest, ChildIdThatIsNoNumberHasNoAnswer) {
    EXPECT_EQ(Way(GetNextParentForAAHierarchy(desktop.Window("main"), desktop.Element("ok"), CComVariant(), false, false)), kNoAnswer);
    ExpectLine("E GetNextParentForAAHierarchy: vTargetChildId.vt != VT_I4 in GetNextParentForAAHierarchy");
}

TEST_F(HierarchyRulesTest, ElementInItsWindowHasItsParentInTheTree) {
    for (const Mode mode : {Mixed, AaOnly}) EXPECT_EQ(Way("ok", "main", mode), "main, pane, main, tree");
    ExpectLine("V GetNextParentForAAHierarchy: hTargetAccWnd = 0x0000000000001000");
    ExpectLine("V GetNextParentForAAHierarchy: hAAWnd = 0x0000000000001000");
    EXPECT_FALSE(log.Contains("IsDescendantOfWnd"));
    EXPECT_FALSE(log.Contains("E ["));
}

TEST_F(HierarchyRulesTest, SimpleChildHasItsContainerAsParentAndNoParentIsAsked) {
    EXPECT_EQ(Way("item"), "main, pane, main, tree");
    EXPECT_EQ(desktop.Calls("item", "get_accParent") + desktop.Calls("pane", "get_accParent"), 0);
}

// ---- The dialog in Chromium's main window

TEST_F(HierarchyRulesTest, RootViewDialogOfChromeGoesOnAtItsWindowWithItsAccessibleParent) {
    EXPECT_EQ(Way("rootDialog", "chrome"), "chrome, chromePane, chrome, windows");
    EXPECT_EQ(Way("rootDialog", "chrome", AaOnly), "chrome, chromePane, chrome, windows");
    ExpectLine(
        "V GetNextParentForAAHierarchy called for element with Dialog role and RootView class that reuses the Chrome main window. Its "
        "parent should be the main window. hTargetAccWnd: 0000000000005000");
    EXPECT_FALSE(log.Contains("hTargetAccWnd = "));
    desktop.AddFault("rootDialog", Failing("get_accParent"));
    EXPECT_EQ(Way("rootDialog", "chrome"), "chrome, none, chrome, windows");
}

TEST_F(HierarchyRulesTest, DialogOfChromeWithAnotherClassFollowsTheOrdinaryPath) {
    EXPECT_EQ(Way("otherDialog", "chrome"), "chrome, chromePane, chrome, tree");
    EXPECT_EQ(Way("alert", "chrome"), "chrome, chromePane, chrome, tree");
    EXPECT_FALSE(log.Contains("RootView class"));
}

TEST_F(HierarchyRulesTest, DialogWhoseClassCannotBeReadIsARegularOne) {
    bool isRootDialog = true;
    EXPECT_EQ(IsRootDialogUnderChromiumMainWindow(desktop.Window("chrome"), desktop.Element("plainDialog"), CComVariant(0), isRootDialog), S_OK);
    EXPECT_FALSE(isRootDialog);
    ExpectLine(
        "E IA2Tools::GetAttribute(accElem, IA2Tools::IA2_ATTRIBUTE_CLASS, strClass) | HRESULT 80004002 | "
        "IsRootDialogUnderChromiumMainWindow - IA2Tools::GetAttribute failed. Returning S_OK because the IA2 check is optional.");
    EXPECT_EQ(Way("plainDialog", "chrome"), "chrome, chromePane, chrome, tree");
}

TEST_F(HierarchyRulesTest, OnlyAWholeElementOfAChromeWindowIsTestedForTheRootDialog) {
    bool isRootDialog = true;
    const CComPtr<IAccessible> dialog = desktop.Element("rootDialog");
    EXPECT_EQ(IsRootDialogUnderChromiumMainWindow(desktop.Window("chrome"), dialog, CComVariant(1), isRootDialog), S_OK);
    EXPECT_FALSE(isRootDialog);
    EXPECT_EQ(IsRootDialogUnderChromiumMainWindow(desktop.Window("chrome"), dialog, CComVariant(), isRootDialog), S_OK);
    EXPECT_FALSE(isRootDialog);
    EXPECT_EQ(IsRootDialogUnderChromiumMainWindow(desktop.Window("main"), dialog, CComVariant(0), isRootDialog), S_OK);
    EXPECT_FALSE(isRootDialog);
    EXPECT_EQ(desktop.Calls("rootDialog", "get_accRole"), 0);
    EXPECT_EQ(IsRootDialogUnderChromiumMainWindow(desktop.Window("chrome"), dialog, CComVariant(0), isRootDialog), S_OK);
    EXPECT_TRUE(isRootDialog);
    EXPECT_EQ(Way("simpleInRootDialog", "chrome"), "chrome, rootDialog, chrome, tree");
}

TEST_F(HierarchyRulesTest, ElementOfAChromeWindowWithoutARoleHasNoAnswer) {
    desktop.AddFault("alert", Failing("get_accRole"));
    EXPECT_EQ(Way("alert", "chrome"), kNoAnswer);
    ExpectLine("E accElem->get_accRole(childId, &vRole) | HRESULT 80004005 | IsRootDialogUnderChromiumMainWindow - could not get element role.");
    ExpectLine(
        "E AAUtil::IsRootDialogUnderChromiumMainWindow(hTargetAccWnd, pTargetAcc, vTargetChildId, isRootDialog) | HRESULT 80004005 | "
        "GetNextParentForAAHierarchy - IsRootDialogUnderChromiumMainWindow test failed.");
    bool isRootDialog = true;
    EXPECT_EQ(IsRootDialogUnderChromiumMainWindow(desktop.Window("chrome"), nullptr, CComVariant(0), isRootDialog), E_POINTER);
    EXPECT_FALSE(isRootDialog);
}

// ---- Which window the element goes by

TEST_F(HierarchyRulesTest, ElementBelowTheGivenWindowKeepsItAlthoughAnotherOwnsIt) {
    EXPECT_EQ(Way("guest"), "main, pane, inner, tree");
    ExpectLine("V GetNextParentForAAHierarchy: hAAWnd = 0x0000000000002000");
}

TEST_F(HierarchyRulesTest, ElementBelowItsOwnerWindowGoesByThat) {
    EXPECT_EQ(Way("innerButton", "other"), "inner, innerPane, inner, tree");
}

TEST_F(HierarchyRulesTest, ElementBelowNeitherWindowIsWalkedAsInAaOnlyMode) {
    // The dialog's owner is another window than the given one. Only the mode keeps that from being the reason.
    EXPECT_EQ(Way("guestInDialog", "other"), "main, dialog, inner, windows");
    EXPECT_FALSE(log.Contains("NOT in AA mode")) << log.Text();
    ExpectLine("V GetNextParentForAAHierarchy: switching to WND because 'bUseWnd' and 'hParentWnd is NOT top level");
}

TEST_F(HierarchyRulesTest, ElementWhoseOwnerCannotBeReadGoesByTheGivenWindow) {
    desktop.AddFault("ok", Failing("WindowFromAccessibleObject"));
    EXPECT_EQ(Way("ok"), "main, pane, main, tree");
    EXPECT_FALSE(log.Contains("hAAWnd = "));
}

TEST_F(HierarchyRulesTest, FallbackTakesTheGivenWindowForItsChildren) {
    EXPECT_EQ(Way("guest", "main", Mixed, Fallback), "main, pane, main, tree");
    EXPECT_TRUE(log.Contains("bAllowFallbackToInitialOwner: 1"));
    EXPECT_EQ(Way("guest", "main", Mixed, Strict), "main, pane, inner, tree");
    EXPECT_TRUE(log.Contains("bAllowFallbackToInitialOwner: 0"));
    // For the parent too: without it the way would go to another thread.
    desktop.AddFault("local", Failing("WindowFromAccessibleObject"));
    EXPECT_EQ(Way("local", "main", Mixed, Strict), "alien, none, main, windows");
    EXPECT_EQ(Way("local", "main", Mixed, Fallback), "main, guestOfAnother, main, tree");
}

// ---- The parent

TEST_F(HierarchyRulesTest, ElementThatDoesNotTellItsParentHasNoAnswer) {
    desktop.AddFault("ok", Failing("get_accParent"));
    EXPECT_EQ(Way("ok"), kNoAnswer);
    ExpectLine("E GetNextParentForAAHierarchy: m_accHandle->get_accParent failed in GetNextParentForAAHierarchy");
}

TEST_F(HierarchyRulesTest, WithoutAParentTheWayGoesOnWithWindows) {
    desktop.AddFault("ok", Null("get_accParent"));
    for (const Mode mode : {Mixed, AaOnly}) EXPECT_EQ(Way("ok", "main", mode), "main, none, main, windows");
    ExpectLine("V GetNextParentForAAHierarchy: switching to WND because 'spParentAcc is NULL'");
    log.Clear();
    desktop.ClearFaults();
    for (const bool null : {false, true}) {
        Simulated::Fault noAccessible = null ? Null("QueryInterface") : Failing("QueryInterface");
        noAccessible.iid = "IAccessible";
        desktop.ClearFaults();
        desktop.AddFault("pane", noAccessible);
        EXPECT_EQ(Way("ok"), "main, none, main, windows");
    }
    EXPECT_EQ(log.Count("spParentAcc is NULL"), 2u);
}

TEST_F(HierarchyRulesTest, ParentWithoutAWindowIsDropped) {
    for (const bool null : {false, true}) {
        log.Clear();
        desktop.ClearFaults();
        desktop.AddFault("pane", null ? Null("WindowFromAccessibleObject") : Failing("WindowFromAccessibleObject"));
        EXPECT_EQ(Way("ok"), "main, none, main, windows");
        ExpectLine("V GetNextParentForAAHierarchy: switching to WND because GetIAccOwnerWindow(spParentAcc) failed");
    }
}

TEST_F(HierarchyRulesTest, ParentInAnotherThreadsWindowIsDroppedAndItsWindowIsTheNext) {
    for (const Mode mode : {Mixed, AaOnly}) {
        log.Clear();
        EXPECT_EQ(Way("local", "main", mode), "alien, none, main, windows");
        ExpectLine("V GetNextParentForAAHierarchy: hParentAccWnd = 0x0000000000003000");
        ExpectLine("V GetNextParentForAAHierarchy: switching to WND because hParentAccWnd: 0000000000003000 is from another thread");
    }
}

TEST_F(HierarchyRulesTest, ChangeOfWindowSwitchesToWindowsOutsideAaOnlyMode) {
    EXPECT_EQ(Way("guest", "inner"), "main, pane, inner, windows");
    ExpectLine("V GetNextParentForAAHierarchy: switching to WND because 'hParentAccWnd != hTargetAccWnd' and 'NOT in AA mode'");
    ExpectLine("V GetNextParentForAAHierarchy: hParentWnd: 0x0000000000002000 -> hParentAccWnd: 0x0000000000001000");
    log.Clear();
    EXPECT_EQ(Way("guest", "inner", AaOnly), "main, pane, inner, tree");
    EXPECT_FALSE(log.Contains("switching to WND"));
    ExpectLine("V GetNextParentForAAHierarchy: hParentWnd: 0x0000000000002000 -> hParentAccWnd: 0x0000000000001000");
}

TEST_F(HierarchyRulesTest, ParentThatIsNotBelowItsWindowIsWalkedAsInAaOnlyMode) {
    // A window's own object isn't below it.
    EXPECT_EQ(Way("guestBelowRoot", "inner"), "main, root, inner, windows");
    EXPECT_FALSE(log.Contains("NOT in AA mode"));
    ExpectLine("V GetNextParentForAAHierarchy: switching to WND because 'bUseWnd' and 'hParentWnd is NOT top level");
    log.Clear();
    desktop.AddFault("main", Failing("AccessibleObjectFromWindow"));
    EXPECT_EQ(Way("guest", "inner"), "main, pane, inner, tree");
    EXPECT_TRUE(log.Contains("IsDescendantOfWnd: AccessibleObjectFromWindow failed"));
}

TEST_F(HierarchyRulesTest, HtmlInAnInternetExplorerWindowSwitchesToWindows) {
    for (const Mode mode : {Mixed, AaOnly}) EXPECT_EQ(Way("link", "ie", mode), "ie, html, ie, windows");
    EXPECT_EQ(desktop.Calls("html", "get_accRole"), 0);
    EXPECT_FALSE(log.Contains("switching to WND"));
    EXPECT_EQ(Way("linkOutside", "ie"), "ie, noHtml, ie, tree");
    EXPECT_EQ(Way("linkInFrame", "frame"), "frame, htmlInFrame, frame, tree");
    for (const char* call : {"QueryService", "QueryInterface"}) {
        Simulated::Fault noService = Null(call);
        noService.iid = call == std::string("QueryService") ? "IHTMLElement" : "IServiceProvider";
        desktop.ClearFaults();
        desktop.AddFault("html", noService);
        EXPECT_EQ(Way("link", "ie"), "ie, html, ie, tree");
    }
}

TEST_F(HierarchyRulesTest, ParentOfTheRoleWindowSwitchesToWindowsOutsideAaOnlyMode) {
    EXPECT_EQ(Way("top"), "main, root, main, windows");
    ExpectLine(
        "V GetNextParentForAAHierarchy: 'bUseWnd = TRUE' because 'spParentAcc->get_accRole failed' OR role='window' is 'window' OR 'dialog' "
        "AND 'NOT a Chrome window'");
    ExpectLine("V GetNextParentForAAHierarchy: switching to WND because 'bUseWnd' and 'NOT in AA mode'");
    EXPECT_EQ(Way("inChromeRoot", "chrome"), "chrome, chromeRoot, chrome, windows");
}

TEST_F(HierarchyRulesTest, DialogSwitchesToWindowsButNotInsideChrome) {
    EXPECT_EQ(Way("inDialog"), "main, dialog, main, windows");
    EXPECT_TRUE(log.Contains("role='dialog' is"));
    log.Clear();
    EXPECT_EQ(Way("inRootDialog", "chrome"), "chrome, rootDialog, chrome, tree");
    EXPECT_FALSE(log.Contains("bUseWnd = TRUE"));
}

TEST_F(HierarchyRulesTest, InAaOnlyModeADialogSwitchesInATopLevelWindowAlone) {
    EXPECT_EQ(Way("inDialog", "main", AaOnly), "main, dialog, main, windows");
    // The line says the opposite, and its last quotation mark is missing.
    ExpectLine("V GetNextParentForAAHierarchy: switching to WND because 'bUseWnd' and 'hParentWnd is NOT top level");
    log.Clear();
    EXPECT_EQ(Way("inInnerDialog", "inner", AaOnly), "inner, innerDialog, inner, tree");
    EXPECT_TRUE(log.Contains("role='dialog' is"));
    EXPECT_FALSE(log.Contains("switching to WND"));
    EXPECT_EQ(Way("inInnerDialog", "inner"), "inner, innerDialog, inner, windows");
}

TEST_F(HierarchyRulesTest, ParentWithoutAReadableRoleCountsAsAWindow) {
    desktop.AddFault("pane", Failing("get_accRole"));
    EXPECT_EQ(Way("ok"), "main, pane, main, windows");
    EXPECT_TRUE(log.Contains("role='' is"));
    EXPECT_EQ(Way("ok", "main", AaOnly), "main, pane, main, windows");
    desktop.AddFault("innerPane", Failing("get_accRole"));
    EXPECT_EQ(Way("innerButton", "inner", AaOnly), "inner, innerPane, inner, tree");
}

TEST_F(HierarchyRulesTest, ParentWhoseRoleIsNoNumberStaysInTheTree) {
    for (const VARTYPE type : {VT_EMPTY, VT_BSTR, VT_I2, VT_DISPATCH}) {
        desktop.ClearFaults();
        Simulated::Fault odd{.call = "get_accRole"};
        odd.type = type;
        desktop.AddFault("dialog", odd);
        EXPECT_EQ(Way("inDialog"), "main, dialog, main, tree") << type;
    }
}

// ---- What is worth a tag

TEST_F(HierarchyRulesTest, NullElementIsNotInteresting) {
    EXPECT_FALSE(IsInterestingForAASelector(desktop.Window("main"), nullptr, desktop.Window("main"), desktop.Window("main"), false, false));
    EXPECT_TRUE(log.Lines().empty());
}

TEST_F(HierarchyRulesTest, NamedElementIsInteresting) {
    EXPECT_TRUE(IsInteresting("ok"));
    EXPECT_TRUE(IsInteresting("ok", "main", "main", "main", AaOnly));
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST_F(HierarchyRulesTest, NothingAboveAWpfMenuItemIsInterestingOutsideAaOnlyMode) {
    EXPECT_FALSE(IsInteresting("ok", "main", "main", "main", Mixed, true));
    ExpectLine("V IsInterestingForAASelector: 'Default' mode, initial target is a WPF menu item, not interesting for selector");
    EXPECT_TRUE(IsInteresting("ok", "main", "main", "main", AaOnly, true));
}

TEST_F(HierarchyRulesTest, ElementInAnotherWindowIsNotInterestingOutsideAaOnlyMode) {
    EXPECT_FALSE(IsInteresting("ok", "main", "main", "inner"));
    ExpectLine("V IsInterestingForAASelector: 'Default' mode, AA window has changed, not interesting for selector");
    EXPECT_TRUE(IsInteresting("innerButton", "inner", "main", "main", AaOnly));
    EXPECT_TRUE(IsInteresting("innerButton", "inner", "other", "inner"));
}

TEST_F(HierarchyRulesTest, ElementUnderAnotherTopLevelWindowIsNotInterestingInAaOnlyMode) {
    EXPECT_FALSE(IsInteresting("ok", "inner", "inner", "inner", AaOnly));
    EXPECT_FALSE(IsInteresting("ok", "main", "other", "main", AaOnly));
    EXPECT_EQ(log.Count("V [IsInterestingForAASelector] IsInterestingForAASelector: 'AA Only' mode, top level wnd has changed, not "
                        "interesting for selector"),
              2u);
}

TEST_F(HierarchyRulesTest, ElementWithoutAReadableRoleIsNotInteresting) {
    desktop.AddFault("ok", Failing("get_accRole"));
    EXPECT_FALSE(IsInteresting("ok"));
    ExpectLine("E IsInterestingForAASelector: cannot get role of acc element, hRes=0x80004005");
}

TEST_F(HierarchyRulesTest, RowWithoutANameIsInterestingButAButtonWithoutOneIsNot) {
    for (const char* call : {"role", "name"}) {
        desktop.ClearFaults();
        desktop.AddFault("ok", call == std::string("name") ? Failing("get_accName") : Null("get_accName"));
        EXPECT_FALSE(IsInteresting("ok"));
        Simulated::Fault row{.call = "get_accRole"};
        row.count = ROLE_SYSTEM_ROW;
        desktop.AddFault("ok", row);
        const int names = desktop.Calls("ok", "get_accName");
        EXPECT_TRUE(IsInteresting("ok"));
        EXPECT_EQ(desktop.Calls("ok", "get_accName"), names) << "its name isn't read";
    }
}

TEST_F(HierarchyRulesTest, WindowAndClientAreNotInteresting) {
    for (const LONG role : {ROLE_SYSTEM_WINDOW, ROLE_SYSTEM_CLIENT}) {
        log.Clear();
        desktop.ClearFaults();
        Simulated::Fault other{.call = "get_accRole"};
        other.count = role;
        desktop.AddFault("ok", other);
        EXPECT_FALSE(IsInteresting("ok"));
        ExpectLine("V IsInterestingForAASelector: WINDOW/CLIENT role not interesting for selector");
    }
}

TEST_F(HierarchyRulesTest, OnlyTheRootDialogOfChromeIsAnInterestingDialog) {
    EXPECT_TRUE(IsInteresting("rootDialog", "chrome", "chrome", "chrome"));
    EXPECT_FALSE(IsInteresting("otherDialog", "chrome", "chrome", "chrome"));
    ExpectLine("V IsInterestingForAASelector: Regular DIALOG role not interesting for selector");
    EXPECT_FALSE(IsInteresting("plainDialog", "chrome", "chrome", "chrome"));
    EXPECT_FALSE(IsInteresting("dialog"));
    EXPECT_EQ(log.Count("Regular DIALOG role"), 3u);
}

TEST_F(HierarchyRulesTest, RootDialogOfChromeWithoutANameIsNotInteresting) {
    desktop.AddFault("rootDialog", Null("get_accName"));
    EXPECT_FALSE(IsInteresting("rootDialog", "chrome", "chrome", "chrome"));
}

TEST_F(HierarchyRulesTest, DialogWhoseRoleCannotBeReadAgainIsNotInteresting) {
    Simulated::Fault second = Failing("get_accRole");
    second.at = 2;
    desktop.AddFault("rootDialog", second);
    EXPECT_FALSE(IsInteresting("rootDialog", "chrome", "chrome", "chrome"));
    ExpectLine(
        "E IsRootDialogUnderChromiumMainWindow(hAccWnd, spAccObj, vChildID, isRootDialog) | HRESULT 80004005 | IsInterestingForAASelector - "
        "IsRootDialogUnderChromiumMainWindow failed. Returning false.");
}

TEST_F(HierarchyRulesTest, RoleGivenAsATextIsInterestingWithANameAndAnyOtherTypeIsNot) {
    Simulated::Fault text{.call = "get_accRole"};
    text.type = VT_BSTR;
    desktop.AddFault("ok", text);
    EXPECT_TRUE(IsInteresting("ok"));
    desktop.ClearFaults();
    Simulated::Fault odd{.call = "get_accRole"};
    odd.type = VT_I2;
    desktop.AddFault("ok", odd);
    EXPECT_FALSE(IsInteresting("ok"));
    ExpectLine("V IsInterestingForAASelector: role 2 not interesting for selector");
}

// ---- Hostile servers

TEST(HierarchyRulesOnHostileServers, FaultAtAnyCallLeavesNoReference) {
    struct Question {
        const char* element;
        const char* window;
    };
    for (const Question& question : {Question{"guest", "other"}, {"guest", "inner"}, {"rootDialog", "chrome"}, {"link", "ie"}, {"item", "main"}})
        for (int kind = 0; kind < 3; ++kind)
            for (unsigned nth = 1;; ++nth) {
                DesktopFixture desktop(kDesktop);
                const CComPtr<IAccessible> element = desktop.Element(question.element);
                const long before = desktop.OutstandingReferences();
                Simulated::Fault fault{.at = nth, .times = 1};
                if (kind == 0) fault.result = E_FAIL;
                if (kind == 1) fault.null = true;
                if (kind == 2) fault.raise = true;
                desktop.AddFault(fault);
                try {
                    for (const bool mode : {false, true}) {
                        GetNextParentForAAHierarchy(desktop.Window(question.window), element, desktop.Child(question.element), mode, mode);
                        IsInterestingForAASelector(desktop.Window(question.window), element, desktop.Window("main"),
                                                   desktop.Window(question.window), mode, false);
                    }
                } catch (const Simulated::ServerFailure&) {
                    EXPECT_EQ(kind, 2);
                }
                ASSERT_EQ(desktop.OutstandingReferences(), before) << question.element << " kind " << kind << " call " << nth;
                if (desktop.TotalCalls() < static_cast<int>(nth)) break;
            }
}

TEST(HierarchyRulesOnHostileServers, RingOfParentsIsOneStepAtATime) {
    DesktopFixture desktop(R"({"windows": [{"id": "main", "class": "Frame", "objects": {"window": {"id": "root", "role": "pane", "children": [
        {"id": "ring", "role": "pane", "name": "Ring", "children": [{"element": "ring"}]}]}}}]})");
    const NextParent next = GetNextParentForAAHierarchy(desktop.Window("main"), desktop.Element("ring"), CComVariant(0), false, false);
    EXPECT_TRUE(next.spParentAcc);
    EXPECT_FALSE(next.bUseWnd);
}

}  // namespace
}  // namespace Zorvex::Testing
