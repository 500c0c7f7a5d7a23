#include "InProc/Vantrel/ElementLookup.h"

#include <gtest/gtest.h>

#include "InProc/Vantrel/AAContainerCache.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Main", "title": "Main", "rectangle": [0, 0, 400, 300], "objects": {"window": {
    "id": "root", "role": "window", "name": "Main", "rectangle": [0, 0, 400, 300], "children": [
      {"id": "a", "role": "push button", "name": "A", "rectangle": [0, 0, 10, 10]},
      {"id": "list", "role": "list", "name": "List", "rectangle": [0, 20, 100, 60], "children": [
        {"id": "one", "role": "list item", "name": "One", "simple": true, "rectangle": [0, 20, 100, 10]},
        {"id": "two", "role": "list item", "name": "Two", "simple": true, "rectangle": [0, 30, 100, 10]}]},
      {"id": "c", "role": "push button", "name": "C", "rectangle": [0, 90, 10, 9]}]}}},
  {"id": "view", "class": "SysListView32", "rectangle": [0, 0, 10, 10], "objects": {"window": {
    "id": "viewList", "role": "list", "children": [
      {"id": "row", "role": "list item", "simple": true}, {"id": "check", "role": "check box", "simple": true},
      {"id": "button", "role": "push button", "simple": true}]}}}]})";

class ElementLookupTest : public testing::Test {
protected:
    AAObjectIdentifier Identify(const char* id, const char* window = "main") {
        return AAContainerCache::Instance().RegisterObject({kClientPid, desktop.Window(window)},
                                                           AAElement{desktop.Window(window), desktop.Element(id), desktop.Child(id)});
    }
    AAObjectIdentifier Sibling(const char* id, std::int32_t offset) {
        GetSiblingRequest request;
        request.element = Identify(id);
        request.offset = offset;
        return Call(request).element;
    }
    bool AreEqual(const AAObjectIdentifier& first, const AAObjectIdentifier& second) {
        AreEqualRequest request;
        request.first = first;
        request.second = second;
        return Call(request).answer;
    }
    template <class Request>
    auto Ask(const AAObjectIdentifier& element) {
        Request request;
        request.element = element;
        return Call(request);
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    CacheCleaner cleaner;
};

TEST_F(ElementLookupTest, SiblingByOffsetInBothDirections) {
    EXPECT_TRUE(AreEqual(Sibling("a", 2), Identify("c")));
    EXPECT_TRUE(AreEqual(Sibling("c", -2), Identify("a")));
    EXPECT_EQ(Sibling("a", 1).clientPid, kClientPid);
    EXPECT_EQ(Sibling("a", 1).originalWnd, desktop.Window("main"));
}

TEST_F(ElementLookupTest, SiblingOfASimpleChildHasTheContainerAsParent) {
    EXPECT_EQ(Sibling("one", 1), Identify("two"));
    EXPECT_EQ(desktop.Calls("list", "get_accParent"), 0);
}

TEST_F(ElementLookupTest, SiblingAtOffsetZeroIsAnInvalidArgument) {
    EXPECT_EQ(Sibling("a", 0), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("Invalid arguments"));
    EXPECT_TRUE(log.Contains("Vantrel::GetSiblingImpl failed"));
}

TEST_F(ElementLookupTest, SiblingBeyondEitherEndIsOutOfBounds) {
    EXPECT_EQ(Sibling("a", -1), AAObjectIdentifier{});
    EXPECT_EQ(Sibling("a", 3), AAObjectIdentifier{});
    EXPECT_EQ(Sibling("a", 0x7FFFFFFF), AAObjectIdentifier{});
    EXPECT_EQ(Sibling("a", static_cast<std::int32_t>(0x80000000)), AAObjectIdentifier{});
    EXPECT_EQ(log.Count("Index out of bounds"), 4u);
}

TEST_F(ElementLookupTest, SiblingWithoutAParentFails) {
    desktop.AddFault("a", {.call = "get_accParent", .result = E_FAIL});
    EXPECT_EQ(Sibling("a", 1), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("get_accParent failed with code 80004005"));
}

TEST_F(ElementLookupTest, SiblingOfAnElementThatItsParentDoesNotListFails) {
    const auto identifier = Identify("c");
    desktop.AddFault("root", {.call = "get_accChildCount", .count = 1});
    GetSiblingRequest request;
    request.element = identifier;
    request.offset = -1;
    EXPECT_EQ(Call(request).element, AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("Object not found"));
}

TEST_F(ElementLookupTest, SiblingWhoseParentCannotListChildrenFails) {
    desktop.AddFault("root", {.call = "get_accChildCount", .result = E_FAIL});
    EXPECT_EQ(Sibling("a", 1), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("cannot get children"));
}

TEST_F(ElementLookupTest, SiblingOfAnUnknownElementFails) {
    GetSiblingRequest request;
    request.offset = 1;
    EXPECT_EQ(Call(request).element, AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("LookupIdentifier failed"));
}

TEST_F(ElementLookupTest, EqualElementsAreEqualAndOthersAreNot) {
    EXPECT_TRUE(AreEqual(Identify("a"), Identify("a")));
    EXPECT_FALSE(AreEqual(Identify("a"), Identify("c")));
    EXPECT_FALSE(AreEqual(Identify("one"), Identify("two")));
}

TEST_F(ElementLookupTest, DeadWindowOrWindowIdentifierIsEqualToNothing) {
    AAObjectIdentifier windowAlone;
    windowAlone.hWnd = desktop.Window("main");
    EXPECT_FALSE(AreEqual(Identify("a"), windowAlone));
    EXPECT_FALSE(AreEqual(AAObjectIdentifier{}, AAObjectIdentifier{}));
    EXPECT_EQ(log.Count("Invalid params in AreEqualImpl"), 2u);
    AAObjectIdentifier unknown = Identify("a");
    unknown.containerId += 1000;
    EXPECT_FALSE(AreEqual(Identify("a"), unknown));
    EXPECT_TRUE(log.Contains("Invalid cached objects in AreEqualImpl"));

    const AAObjectIdentifier row = Identify("row", "view");
    EXPECT_TRUE(AreEqual(row, row));
    desktop.DestroyWindow("view");
    log.Clear();
    EXPECT_FALSE(AreEqual(row, Identify("a")));
    EXPECT_FALSE(AreEqual(Identify("a"), row));
    EXPECT_EQ(log.Count("Invalid params in AreEqualImpl"), 2u);
}

TEST_F(ElementLookupTest, ObjectIdFromWindowNamesItsObject) {
    GetObjectIdFromWindowRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("main");
    const auto identifier = Call(request).element;
    EXPECT_EQ(identifier, Identify("root"));
    EXPECT_EQ(identifier.originalWnd, desktop.Window("main"));
}

TEST_F(ElementLookupTest, ObjectIdFromAWindowThatIsNoneIsZero) {
    GetObjectIdFromWindowRequest request;
    request.window = reinterpret_cast<HWND>(0x999);
    EXPECT_EQ(Call(request).element, AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("AccessibleObjectFromWindow failed, hRes = 0x"));
}

TEST_F(ElementLookupTest, ObjectIdFromEventRegistersTheChildThatCameBack) {
    GetObjectIdFromEventRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("view");
    request.objectId = OBJID_WINDOW;
    request.childId = 2;
    const auto identifier = Call(request).element;
    EXPECT_EQ(identifier, Identify("check", "view"));
    EXPECT_TRUE(log.Contains("Calling RegisterObject"));
}

TEST_F(ElementLookupTest, ObjectIdFromEventOfAWindowThatIsNoneIsZero) {
    GetObjectIdFromEventRequest request;
    request.window = reinterpret_cast<HWND>(0x999);
    EXPECT_EQ(Call(request).element, AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("AccessibleObjectFromEvent failed, hRes = 0x"));
}

TEST_F(ElementLookupTest, ObjectIdFromEventWhoseChildIsAnObjectIsZero) {
    desktop.AddFault("view", {.call = "AccessibleObjectFromEvent", .type = VT_DISPATCH});
    GetObjectIdFromEventRequest request;
    request.clientPid = kClientPid;
    request.window = desktop.Window("view");
    EXPECT_EQ(Call(request).element, AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("AccessibleObjectFromEvent succeeded, but the returned AA child ID has a variant type 9, expected 3"));
}

TEST_F(ElementLookupTest, NullObjectOfAWindowOrEventIsZero) {
    desktop.AddFault("main", {.call = "AccessibleObjectFromWindow", .null = true});
    desktop.AddFault("main", {.call = "AccessibleObjectFromEvent", .null = true});
    GetObjectIdFromWindowRequest ofWindow;
    ofWindow.clientPid = kClientPid;
    ofWindow.window = desktop.Window("main");
    EXPECT_EQ(Call(ofWindow).element, AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("AccessibleObjectFromWindow succeeded, but the returned AA object is NULL"));
    GetObjectIdFromEventRequest ofEvent;
    ofEvent.clientPid = kClientPid;
    ofEvent.window = desktop.Window("main");
    EXPECT_EQ(Call(ofEvent).element, AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("AccessibleObjectFromEvent succeeded, but the returned AA object is NULL"));
}

TEST_F(ElementLookupTest, SiblingThatIsNoElementFails) {
    desktop.AddFault("list", {.call = "QueryInterface", .iid = "IAccessible", .result = E_NOINTERFACE});
    EXPECT_EQ(Sibling("a", 1), AAObjectIdentifier{});
    EXPECT_TRUE(log.Contains("Invalid child at index 1"));
}

TEST_F(ElementLookupTest, ElementOfAStrangeWindowIsAListViewItemOnlyWhereTheIdentifierAllowsTheFallback) {
    desktop.AddFault("viewList", {.call = "WindowFromAccessibleObject", .null = true});
    AAObjectIdentifier identifier = Identify("row", "view");
    EXPECT_FALSE(Ask<IsListViewItemRequest>(identifier).answer);
    identifier.isDomAria = 1;
    EXPECT_TRUE(Ask<IsListViewItemRequest>(identifier).answer);
}

TEST_F(ElementLookupTest, NameFromWindowIsAlwaysFoundAndMayBeEmpty) {
    AaNameFromWindowRequest request;
    request.window = desktop.Window("main");
    // The last child at the window's left edge is C.
    EXPECT_EQ(Call(request).name, L"C");
    request.window = reinterpret_cast<HWND>(0x999);
    const auto response = Call(request);
    EXPECT_TRUE(response.found);
    EXPECT_EQ(response.name, L"");
}

TEST_F(ElementLookupTest, ElementWithRoleGivesItsName) {
    FindElementWithRoleRequest request;
    request.window = desktop.Window("main");
    request.role = ROLE_SYSTEM_LISTITEM;
    request.maximumDepth = 2;
    EXPECT_EQ(Call(request).name, L"One");
    request.maximumDepth = 1;
    EXPECT_FALSE(Call(request).found);
    request.maximumDepth = -1;
    EXPECT_TRUE(Call(request).found);
    desktop.AddFault("one", {.call = "get_accName", .result = E_FAIL});
    EXPECT_TRUE(Call(request).found);
    EXPECT_EQ(Call(request).name, L"");
}

TEST_F(ElementLookupTest, IdentifierIsValidUnlessTheStateSaysThatTheArgumentIsBad) {
    const auto identifier = Identify("a");
    EXPECT_TRUE(Ask<IsValidIdentifierRequest>(identifier).answer);
    desktop.AddFault("a", {.call = "get_accState", .at = 2, .times = 1, .result = RPC_E_DISCONNECTED});
    EXPECT_TRUE(Ask<IsValidIdentifierRequest>(identifier).answer) << "a disconnected container still counts as valid";
    desktop.AddFault("a", {.call = "get_accState", .result = E_INVALIDARG});
    EXPECT_FALSE(Ask<IsValidIdentifierRequest>(identifier).answer);
    log.Clear();
    EXPECT_FALSE(Ask<IsValidIdentifierRequest>(AAObjectIdentifier{}).answer);
    EXPECT_TRUE(log.Contains("calling LookupIdentifier"));
    EXPECT_TRUE(log.Contains("Invalid AA object"));
}

TEST_F(ElementLookupTest, ListViewItemsAreItemsAndCheckBoxesOfAListView) {
    EXPECT_TRUE(Ask<IsListViewItemRequest>(Identify("row", "view")).answer);
    EXPECT_TRUE(Ask<IsListViewItemRequest>(Identify("check", "view")).answer);
    EXPECT_FALSE(Ask<IsListViewItemRequest>(Identify("button", "view")).answer);
    EXPECT_FALSE(Ask<IsListViewItemRequest>(Identify("one")).answer) << "a list item of another window";
    EXPECT_FALSE(Ask<IsListViewItemRequest>(AAObjectIdentifier{}).answer);
}

}  // namespace
}  // namespace Zorvex::Testing
