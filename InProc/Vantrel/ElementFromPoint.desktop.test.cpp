#include "InProc/Vantrel/ElementFromPoint.h"

#include <gtest/gtest.h>

#include <string>

#include "InProc/Vantrel/AAContainerCache.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

// A window with an edit that holds a button of its size, a hidden branch, a simple child and a combo box.
constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Main", "rectangle": [0, 0, 400, 300], "objects": {"window": {
    "id": "root", "role": "window", "name": "Main", "rectangle": [0, 0, 400, 300], "children": [
      {"id": "panel", "role": "pane", "rectangle": [0, 0, 200, 100], "children": [
        {"id": "outer", "role": "grouping", "rectangle": [10, 10, 50, 30], "children": [
          {"id": "inner", "role": "push button", "rectangle": [10, 10, 50, 30]}]}]},
      {"id": "hidden", "role": "pane", "state": ["invisible"], "rectangle": [0, 0, 5, 5], "children": [
        {"id": "inHidden", "role": "push button", "rectangle": [0, 0, 2, 2]}]},
      {"id": "offscreen", "role": "pane", "state": ["offscreen"], "rectangle": [0, 0, 5, 5]},
      {"id": "simple", "role": "list item", "simple": true, "rectangle": [300, 200, 20, 20]},
      {"id": "placeless", "role": "pane", "faults": [{"call": "accLocation", "result": "0x80004001"}], "children": [
        {"id": "inPlaceless", "role": "push button", "rectangle": [100, 200, 20, 20]}]},
      {"id": "combo", "role": "combo box", "rectangle": [200, 0, 100, 20], "children": [
        {"id": "dropButton", "role": "push button", "rectangle": [280, 0, 20, 20]}]},
      {"id": "foreign", "role": "push button", "window": "otherThread", "rectangle": [150, 250, 10, 10]}]}}},
  {"id": "otherThread", "class": "Other", "thread": 99}]})";

class ElementFromPointTest : public testing::Test {
protected:
    FindElemFromPointResponse At(LONG x, LONG y, std::uint32_t flags,
                                 RelatedElementKind related = RelatedElementKind::None, const char* window = "main") {
        FindElemFromPointRequest request;
        request.clientPid = kClientPid;
        request.window = desktop.Window(window);
        request.point = {x, y};
        request.flags = flags;
        request.relatedElement = related;
        return Call(request);
    }
    // The id of the element that the response names, by its object.
    bool Names(const FindElemFromPointResponse& response, const char* id) {
        const CComPtr<IAccessible> expected = desktop.Element(id);
        CComPtr<IUnknown> wanted;
        expected.QueryInterface(wanted);
        return ObjectBehind(response.element) == wanted.p && response.element.childId == desktop.Child(id).lVal;
    }
    static IUnknown* ObjectBehind(const AAObjectIdentifier& identifier) {
        CComPtr<IUnknown> identity;
        const AAElement element = AAContainerCache::Instance().LookupIdentifier(identifier);
        if (element.spAcc) element.spAcc.QueryInterface(identity);
        return identity;
    }
    static bool IsEmpty(const FindElemFromPointResponse& response) {
        return response.element == AAObjectIdentifier{} && response.role.vt == VT_EMPTY && !response.relatedElementUsed &&
               !response.ownerWindow && response.rectangle.right == 0;
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    CacheCleaner cleaner;
};

TEST_F(ElementFromPointTest, PointOutsideTheWindowIsEmptyEvenWithoutFlags) {
    EXPECT_TRUE(IsEmpty(At(400, 10, 0)));
    EXPECT_TRUE(IsEmpty(At(-1, 10, 3)));
    EXPECT_EQ(log.Count("ptScreen not inside hWnd"), 2u);
}

TEST_F(ElementFromPointTest, NoFlagsRunNoMethod) {
    EXPECT_TRUE(IsEmpty(At(20, 20, 0)));
    EXPECT_EQ(log.Count("hWnd: "), 0u);
}

TEST_F(ElementFromPointTest, DomModeAloneRunsNoMethod) { EXPECT_TRUE(IsEmpty(At(20, 20, FromPointDomMode))); }

TEST_F(ElementFromPointTest, WindowThatIsNoneIsEmpty) {
    FindElemFromPointRequest request;
    request.window = reinterpret_cast<HWND>(0x123);
    EXPECT_TRUE(IsEmpty(Call(request)));
    EXPECT_TRUE(log.Contains("invalid input param"));
}

TEST_F(ElementFromPointTest, HierarchyPrefersTheDeeperOfTwoEqualAreas) {
    const auto response = At(20, 20, FromPointBrowseHierarchy);
    EXPECT_TRUE(Names(response, "inner"));
    EXPECT_EQ(response.role.lVal, ROLE_SYSTEM_PUSHBUTTON);
    EXPECT_EQ(response.rectangle.right, 60);
    EXPECT_EQ(response.ownerWindow, desktop.Window("main"));
    EXPECT_EQ(response.element.clientPid, kClientPid);
    EXPECT_EQ(response.element.originalWnd, desktop.Window("main"));
    EXPECT_TRUE(log.Contains("End; iteratedChildrenCount: "));
}

TEST_F(ElementFromPointTest, InvisibleChildIsNeitherPlacedNorEntered) {
    EXPECT_TRUE(Names(At(1, 1, FromPointBrowseHierarchy), "panel"));
    EXPECT_EQ(desktop.Calls("hidden", "accLocation"), 0);
    EXPECT_EQ(desktop.Calls("hidden", "get_accChildCount"), 0);
    EXPECT_EQ(desktop.Calls("offscreen", "accLocation"), 0);
}

TEST_F(ElementFromPointTest, ContainerWithoutALocationStillYieldsItsChildren) {
    EXPECT_TRUE(Names(At(110, 210, FromPointBrowseHierarchy), "inPlaceless"));
    EXPECT_TRUE(log.Contains("-th child location; skip it"));
}

TEST_F(ElementFromPointTest, SimpleChildIsFoundByItsChildId) {
    const auto response = At(310, 210, FromPointBrowseHierarchy);
    EXPECT_TRUE(Names(response, "simple"));
    EXPECT_NE(response.element.childId, 0);
}

TEST_F(ElementFromPointTest, ChildInAWindowOfAnotherThreadIsSkippedThoughItHoldsThePoint) {
    EXPECT_TRUE(Names(At(155, 255, FromPointBrowseHierarchy), "root"));
    EXPECT_TRUE(log.Contains("Skip child from another window thread, hChildWnd: "));
    EXPECT_TRUE(log.Contains(", childWndThreadId: 99"));
}

TEST_F(ElementFromPointTest, ChildWhoseStateCannotBeReadIsSkippedWithItsSubtree) {
    desktop.AddFault("outer", {.call = "get_accState", .result = E_FAIL});
    EXPECT_TRUE(Names(At(20, 20, FromPointBrowseHierarchy), "panel"));
}

TEST_F(ElementFromPointTest, RootWithoutALocationGivesNothing) {
    desktop.AddFault("root", {.call = "accLocation", .result = E_FAIL});
    EXPECT_TRUE(IsEmpty(At(20, 20, FromPointBrowseHierarchy)));
    EXPECT_TRUE(log.Contains("spCrtAcc->accLocation failed"));
}

TEST_F(ElementFromPointTest, ChildWhoseWindowCannotBeHadIsNotSkipped) {
    desktop.AddFault("panel", {.call = "WindowFromAccessibleObject", .result = E_FAIL});
    desktop.AddFault("outer", {.call = "WindowFromAccessibleObject", .null = true});
    EXPECT_TRUE(Names(At(20, 20, FromPointBrowseHierarchy), "inner"));
}

TEST_F(ElementFromPointTest, ChildrenThatCannotBeReadLeaveTheirParent) {
    desktop.AddFault("outer", {.call = "get_accChildCount", .result = E_FAIL});
    EXPECT_TRUE(Names(At(20, 20, FromPointBrowseHierarchy), "outer"));
    EXPECT_TRUE(log.Contains("AccessibleChildren failed; hres: "));
}

TEST_F(ElementFromPointTest, ChildThatIsNoElementIsSkipped) {
    desktop.AddFault("inner", {.call = "QueryInterface", .iid = "IAccessible", .result = E_NOINTERFACE});
    EXPECT_TRUE(Names(At(20, 20, FromPointBrowseHierarchy), "outer"));
    EXPECT_TRUE(log.Contains("Cannot get 0-th child; skip it"));
}

TEST_F(ElementFromPointTest, WindowWithoutAnObjectGivesNothingByEitherMethod) {
    desktop.AddFault("main", {.call = "AccessibleObjectFromWindow", .times = 1, .result = E_FAIL});
    EXPECT_TRUE(IsEmpty(At(20, 20, FromPointBrowseHierarchy)));
    EXPECT_TRUE(log.Contains("[ElemFromPointBrowseHierarchy] AccessibleObjectFromWindow failed"));
    desktop.AddFault("main", {.call = "AccessibleObjectFromWindow", .null = true});
    EXPECT_TRUE(IsEmpty(At(20, 20, FromPointHitTest | FromPointDomMode)));
    EXPECT_TRUE(log.Contains("GetAAFromPointWithHitTest: AccessibleObjectFromWindow failed"));
}

TEST_F(ElementFromPointTest, WindowWithoutARectangleIsEmpty) {
    desktop.AddFault("main", {.call = "GetWindowRect", .result = E_FAIL});
    EXPECT_TRUE(IsEmpty(At(20, 20, FromPointBrowseHierarchy)));
    EXPECT_TRUE(log.Contains("GetWindowRect failed"));
}

TEST_F(ElementFromPointTest, OwnerWindowThatCannotBeHadIsZero) {
    desktop.AddFault("inner", {.call = "WindowFromAccessibleObject", .result = E_FAIL});
    const auto response = At(20, 20, FromPointHitTest);
    EXPECT_EQ(response.ownerWindow, nullptr);
    EXPECT_TRUE(Names(response, "inner"));
    EXPECT_TRUE(log.Contains("GetIAccOwnerWindow failed, hr: 80004005"));
}

TEST_F(ElementFromPointTest, HitThatIsNoAccessibleStaysWithTheElementReached) {
    desktop.AddFault("panel", {.call = "QueryInterface", .iid = "IAccessible", .result = E_NOINTERFACE});
    EXPECT_TRUE(Names(At(20, 20, FromPointHitTest), "root"));
    EXPECT_TRUE(log.Contains("Query for IAccessible failed"));
}

TEST_F(ElementFromPointTest, HitTestGoesDownToTheDeepestElement) {
    EXPECT_TRUE(Names(At(20, 20, FromPointHitTest), "inner"));
    EXPECT_TRUE(log.Contains("Hit-test nCount: "));
}

TEST_F(ElementFromPointTest, HitTestOfASimpleChildAnswersItsId) {
    EXPECT_TRUE(Names(At(310, 210, FromPointHitTest), "simple"));
    EXPECT_TRUE(log.Contains("Hit test exit loop; VT_I4 child found"));
}

TEST_F(ElementFromPointTest, FailedHitTestStaysWithTheElementReached) {
    desktop.AddFault("panel", {.call = "accHitTest", .result = E_NOTIMPL});
    EXPECT_TRUE(Names(At(20, 20, FromPointHitTest), "panel"));
    EXPECT_TRUE(log.Contains("Exit loop; spCrtAcc->accHitTest failed with code: "));
}

TEST_F(ElementFromPointTest, HitTestThatAnswersEmptyStopsThere) {
    desktop.AddFault("panel", {.call = "accHitTest", .type = VT_EMPTY});
    EXPECT_TRUE(Names(At(20, 20, FromPointHitTest), "panel"));
    EXPECT_TRUE(log.Contains("Hit-test exit loop"));
}

TEST_F(ElementFromPointTest, HitTestResultWithoutALocationGivesNothing) {
    desktop.AddFault("inner", {.call = "accLocation", .result = E_FAIL});
    EXPECT_TRUE(IsEmpty(At(20, 20, FromPointHitTest)));
    EXPECT_TRUE(log.Contains("GetAAFromPointWithHitTest: cannot get location"));
}

TEST_F(ElementFromPointTest, RelatedComboBoxReplacesTheElement) {
    const auto response = At(290, 10, FromPointBrowseHierarchy, RelatedElementKind::ClosestComboBox);
    EXPECT_TRUE(response.relatedElementUsed);
    EXPECT_TRUE(Names(response, "combo"));
    EXPECT_EQ(response.rectangle.left, 200);
    EXPECT_TRUE(log.Contains("Found ancestor with role 0x2e at height 1"));
}

TEST_F(ElementFromPointTest, ComboBoxItselfIsAtHeightZero) {
    const auto response = At(210, 10, FromPointBrowseHierarchy, RelatedElementKind::ClosestComboBox);
    EXPECT_TRUE(response.relatedElementUsed);
    EXPECT_TRUE(Names(response, "combo"));
    EXPECT_TRUE(log.Contains("Found ancestor with role 0x2e at height 0"));
}

TEST_F(ElementFromPointTest, ElementWithoutARelatedAncestorStays) {
    const auto response = At(20, 20, FromPointBrowseHierarchy, RelatedElementKind::ClosestComboBox);
    EXPECT_FALSE(response.relatedElementUsed);
    EXPECT_TRUE(Names(response, "inner"));
    EXPECT_TRUE(log.Contains("Found NO ancestors with requested roles up to height "));
}

TEST_F(ElementFromPointTest, RelatedComboBoxWithoutALocationIsNotUsed) {
    desktop.AddFault("combo", {.call = "accLocation", .result = E_FAIL});
    const auto response = At(290, 10, FromPointBrowseHierarchy, RelatedElementKind::ClosestComboBox);
    EXPECT_FALSE(response.relatedElementUsed);
    EXPECT_TRUE(Names(response, "dropButton"));
}

TEST_F(ElementFromPointTest, RoleThatCannotBeReadStaysEmpty) {
    desktop.AddFault("inner", {.call = "get_accRole", .result = E_FAIL});
    const auto response = At(20, 20, FromPointBrowseHierarchy);
    EXPECT_EQ(response.role.vt, VT_EMPTY);
    EXPECT_TRUE(Names(response, "inner"));
}

// The window's object says that it belongs to another thread: so do its children.
TEST(ElementFromPointThreads, SimpleChildIsNotTestedForItsThread) {
    DesktopFixture desktop(R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100], "objects": {"window": {
        "id": "root", "role": "window", "window": "other", "rectangle": [0, 0, 100, 100], "children": [
          {"role": "list item", "simple": true, "rectangle": [0, 0, 10, 10]},
          {"role": "list item", "rectangle": [20, 0, 10, 10]}]}}},
      {"id": "other", "class": "Other", "thread": 99}]})");
    CacheCleaner cleaner;
    FindElemFromPointRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("main");
    request.flags = FromPointBrowseHierarchy;
    request.point = {5, 5};
    EXPECT_EQ(Call(request).rectangle.right, 10);
    request.point = {25, 5};
    EXPECT_EQ(Call(request).rectangle.right, 100);
}

TEST(ElementFromPointThreads, HitTestStartsAtTheTopLevelWindowOnWishAndOnlyOfTheSameThread) {
    for (const bool otherThread : {false, true}) {
        DesktopFixture desktop(std::string(R"({"windows": [{"id": "top", "class": "Top", "rectangle": [0, 0, 400, 300],
            "objects": {"window": {"id": "topRoot", "role": "window", "rectangle": [0, 0, 400, 300], "hitTest": "self", "children": []}},
            "children": [{"id": "inner", "class": "Inner", "rectangle": [0, 0, 100, 100], "thread": )") + (otherThread ? "2" : "1") +
                               R"(, "objects": {"window": {"id": "innerRoot", "role": "pane", "rectangle": [0, 0, 100, 100],
                 "hitTest": "self", "children": []}}}]}]})");
        CacheCleaner cleaner;
        FindElemFromPointRequest request;
        request.clientPid = kClientPid;
        request.window = desktop.Window("inner");
        request.point = {5, 5};
        request.flags = FromPointHitTest;
        EXPECT_EQ(Call(request).rectangle.right, 100);
        request.flags |= FromPointHitTestFromTopLevel;
        EXPECT_EQ(Call(request).rectangle.right, otherThread ? 100 : 400);
        // The window alone is asked for nothing: it takes a method.
        request.flags = FromPointHitTestFromTopLevel;
        EXPECT_EQ(Call(request).element, AAObjectIdentifier{});
    }
}

// The hit test and the hierarchy disagree where a server's hit test answers something else.
std::string Disagreement(const char* hitRectangle) {
    return std::string(R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100], "objects": {"window": {
        "id": "root", "role": "window", "rectangle": [0, 0, 100, 100], "children": [
          {"id": "tree", "role": "push button", "rectangle": [10, 10, 10, 10]},
          {"id": "hit", "role": "push button", "state": ["invisible"], "rectangle": )") +
           hitRectangle + R"(}], "hitTest": "hit"}}}]})";
}

FindElemFromPointResponse AskBoth(DesktopFixture& desktop) {
    FindElemFromPointRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("main");
    request.point = {12, 12};
    request.flags = FromPointBrowseHierarchy | FromPointHitTest;
    return Call(request);
}

TEST(ElementFromPointChoice, StrictlySmallerHitReplacesTheHierarchysAnswer) {
    DesktopFixture desktop(Disagreement("[10, 10, 5, 5]"));
    CacheCleaner cleaner;
    EXPECT_EQ(AskBoth(desktop).rectangle.right, 15);
}

TEST(ElementFromPointChoice, HitOfTheSameAreaLoses) {
    DesktopFixture desktop(Disagreement("[11, 11, 10, 10]"));
    CacheCleaner cleaner;
    EXPECT_EQ(AskBoth(desktop).rectangle.right, 20);
}

TEST(ElementFromPointChoice, HitOfNoAreaNeverReplacesTheHierarchysAnswer) {
    DesktopFixture desktop(Disagreement("[10, 10, 0, 0]"));
    CacheCleaner cleaner;
    EXPECT_EQ(AskBoth(desktop).rectangle.right, 20);
}

// A chain of boxes one inside the other, all of the window's size.
std::string Chain(int depth) {
    std::string text = R"({"id": "last", "role": "pane", "name": "0", "rectangle": [0, 0, 100, 100]})";
    for (int i = 1; i < depth; ++i)
        text = R"({"role": "pane", "name": ")" + std::to_string(i) + R"(", "rectangle": [0, 0, 100, 100], "children": [)" + text + "]}";
    return R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100], "objects": {"window": {
        "id": "root", "role": "window", "rectangle": [0, 0, 100, 100], "children": [)" + text + "]}}}]}";
}

TEST(ElementFromPointLimits, HitTestStopsAtTheFiftiethLevel) {
    DesktopFixture desktop(Chain(60));
    CacheCleaner cleaner;
    FindElemFromPointRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("main");
    request.point = {12, 12};
    request.flags = FromPointHitTest;
    GetElemAttrRequest name;
    static_cast<AttributeRequest&>(name) = {Call(request).element, L"name"};
    // The first level is the 60th from below, "59"; the fiftieth is "10".
    EXPECT_STREQ(Call(name).value.bstrVal, L"10");
}

std::string ManyChildren(int count) {
    std::string children;
    for (int i = 0; i < count; ++i)
        children += std::string(i ? "," : "") + R"({"role": "push button", "rectangle": [0, 0, 5, 5]})";
    return R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 100, 100], "objects": {"window": {
        "id": "root", "role": "window", "rectangle": [0, 0, 100, 100], "children": [
          {"id": "first", "role": "pane", "rectangle": [0, 0, 50, 50], "children": [)" + children + "]}]}}}]}";
}

TEST(ElementFromPointLimits, The1501stChildStopsTheWalkBeforeItsBatchIsLookedAt) {
    for (const bool over : {false, true}) {
        DesktopFixture desktop(ManyChildren(over ? 1500 : 1499));
        CacheCleaner cleaner;
        LogCapture log;
        FindElemFromPointRequest request;
        request.clientPid = kClientPid;
        request.window = desktop.Window("main");
        request.point = {2, 2};
        request.flags = FromPointBrowseHierarchy;
        EXPECT_EQ(Call(request).rectangle.right, over ? 50 : 5);
        EXPECT_EQ(log.Contains("Too many AA objects; exit and choose between current result and hit-test"), over);
    }
}

constexpr char kBrowser[] = R"({"windows": [{"id": "main", "class": "Chrome_WidgetWin_1", "rectangle": [0, 0, 400, 300],
  "objects": {"window": {"id": "root", "role": "window", "rectangle": [0, 0, 400, 300], "ia2": {}, "children": [
    {"id": "paragraph", "role": "grouping", "rectangle": [0, 0, 100, 20], "ia2": {"attributes": "tag:p;"}, "children": [
      {"id": "run", "role": "text", "state": ["readonly"], "rectangle": [0, 0, 50, 20], "ia2": {"attributes": "display:inline;"}},
      {"id": "static", "role": 41, "rectangle": [50, 0, 50, 20], "ia2": {"attributes": "display:inline;"}}]}]}}}]})";

TEST(ElementFromPointDomMode, TextRunGivesWayToItsHtmlElement) {
    DesktopFixture desktop(kBrowser);
    CacheCleaner cleaner;
    LogCapture log;
    FindElemFromPointRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("main");
    request.point = {60, 10};
    request.flags = FromPointBrowseHierarchy;
    EXPECT_EQ(Call(request).rectangle.left, 50);
    EXPECT_EQ(Call(request).element.isDomAria, 0u);
    request.flags |= FromPointDomMode;
    const auto response = Call(request);
    EXPECT_EQ(response.rectangle.left, 0);
    EXPECT_EQ(response.rectangle.right, 100);
    EXPECT_EQ(response.element.isDomAria, 1u);
    EXPECT_TRUE(log.Contains("Found the AA Element corresponding to the selected HTML Element"));
}

TEST(ElementFromPointDomMode, HtmlElementWithoutAPlaceIsNotPreferred) {
    DesktopFixture desktop(kBrowser);
    CacheCleaner cleaner;
    desktop.AddFault("paragraph", {.call = "accLocation", .at = 2, .result = E_FAIL});
    FindElemFromPointRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("main");
    request.point = {60, 10};
    request.flags = FromPointBrowseHierarchy | FromPointDomMode;
    EXPECT_EQ(Call(request).rectangle.left, 50);
}

// A page drawn in a child window of the browser's: from outside it belongs to the browser's window.
TEST(ElementFromPointDomMode, BrowserStandsInForItsChildWindowAsOwner) {
    for (const char* windowClass : {"Chrome_WidgetWin_1", "MozillaWindowClass", "Main"}) {
        const bool isBrowser = std::string_view(windowClass) != "Main";
        DesktopFixture desktop(std::string(R"({"windows": [{"id": "main", "class": ")") + windowClass + R"(", "rectangle": [0, 0, 400, 300],
          "objects": {"window": {"id": "root", "role": "window", "rectangle": [0, 0, 400, 300], "children": [
            {"id": "page", "role": "document", "rectangle": [0, 0, 100, 20], "window": "inner"}]}},
          "children": [{"id": "inner", "class": "Inner"}]}]})");
        CacheCleaner cleaner;
        FindElemFromPointRequest request;
        request.clientPid = kClientPid;
        request.window = desktop.Window("main");
        request.point = {10, 10};
        request.flags = FromPointBrowseHierarchy;
        EXPECT_EQ(Call(request).ownerWindow, desktop.Window("inner")) << windowClass;
        request.flags |= FromPointDomMode;
        const auto response = Call(request);
        EXPECT_EQ(response.ownerWindow, desktop.Window(isBrowser ? "main" : "inner")) << windowClass;
        EXPECT_EQ(response.element.isDomAria, isBrowser ? 1u : 0u) << windowClass;
    }
}

}  // namespace
}  // namespace Zorvex::Testing
