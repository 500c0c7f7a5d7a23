// Windows, messages and the functions of Active Accessibility over a desktop.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/DesktopFixture.h"

using Zorvex::Testing::DesktopFixture;

namespace {

const CComVariant Self(CHILDID_SELF);

std::wstring ClassOf(HWND window) {
    wchar_t text[64] = {};
    GetClassNameW(window, text, 64);
    return text;
}

BOOL CALLBACK Collect(HWND window, LPARAM into) {
    reinterpret_cast<std::vector<HWND>*>(into)->push_back(window);
    return TRUE;
}
BOOL CALLBACK CollectOne(HWND window, LPARAM into) {
    Collect(window, into);
    return FALSE;
}

std::vector<HWND> Below(HWND parent) {
    std::vector<HWND> found;
    EnumChildWindows(parent, Collect, reinterpret_cast<LPARAM>(&found));
    return found;
}

CComPtr<IAccessible> ObjectOf(HWND window, LONG objectId) {
    CComPtr<IAccessible> object;
    IAccessible** target = &object;
    AccessibleObjectFromWindow(window, static_cast<DWORD>(objectId), IidOf<IAccessible>(), reinterpret_cast<void**>(target));
    return object;
}

constexpr std::string_view Nested = R"({"processes":[{"id":1000,"path":"C:\\a.exe","current":true},{"id":7,"path":"C:\\b.exe"}],"windows":[
    {"id":"top","class":"Top","title":"T","rectangle":[0,0,100,100],"children":[
        {"id":"a","class":"A","rectangle":[0,0,50,50],"children":[{"id":"a1","class":"A1","rectangle":[0,0,9,9]}]},
        {"id":"b","class":"B","rectangle":[0,0,50,50],"enabled":false,"process":7,"thread":3}]},
    {"id":"popup","class":"P","owner":"top","visible":false,"rectangle":[0,0,9,9],"children":[{"id":"p1","class":"P1"}]},
    {"id":"far","class":"F","handle":4294901760,"rectangle":[500,500,9,9]}]})";

TEST(SimulatedWindows, WithoutADesktopThereAreNoWindows) {
    EXPECT_FALSE(IsWindow(reinterpret_cast<HWND>(8)));
    EXPECT_EQ(GetForegroundWindow(), nullptr);
    HWND window = nullptr;
    EXPECT_TRUE(FAILED(WindowFromAccessibleObject(nullptr, &window)));
    EXPECT_FALSE(ObjectOf(reinterpret_cast<HWND>(8), OBJID_WINDOW));
}

TEST(SimulatedWindows, AncestryIsAsPublished) {
    DesktopFixture desktop(Nested);
    const HWND top = desktop.Window("top"), a = desktop.Window("a"), a1 = desktop.Window("a1"), popup = desktop.Window("popup");
    EXPECT_EQ(GetParent(a1), a);
    EXPECT_EQ(GetParent(top), nullptr);
    EXPECT_EQ(GetParent(popup), top) << "the owner of a top-level window";
    EXPECT_EQ(GetAncestor(popup, GA_PARENT), GetDesktopWindow());
    EXPECT_EQ(GetAncestor(a1, GA_ROOT), top);
    EXPECT_EQ(GetAncestor(desktop.Window("p1"), GA_ROOT), popup);
    EXPECT_EQ(GetAncestor(desktop.Window("p1"), GA_ROOTOWNER), top);
    EXPECT_TRUE(IsChild(top, a1));
    EXPECT_FALSE(IsChild(a1, top));
    EXPECT_FALSE(IsChild(top, popup));
    EXPECT_FALSE(IsChild(top, top));
    EXPECT_EQ(GetWindow(top, GW_CHILD), a);
    EXPECT_EQ(GetWindow(a, GW_HWNDNEXT), desktop.Window("b"));
    EXPECT_EQ(GetWindow(a, GW_HWNDPREV), nullptr);
    EXPECT_EQ(GetWindow(popup, GW_OWNER), top);
}

TEST(SimulatedWindows, EnumerationGivesAllDescendantsEachBeforeItsChildren) {
    DesktopFixture desktop(Nested);
    EXPECT_THAT(Below(desktop.Window("top")), testing::ElementsAre(desktop.Window("a"), desktop.Window("a1"), desktop.Window("b")));
    std::vector<HWND> found;
    EXPECT_FALSE(EnumChildWindows(desktop.Window("top"), CollectOne, reinterpret_cast<LPARAM>(&found)));
    EXPECT_EQ(found.size(), 1u);
    found.clear();
    EXPECT_TRUE(EnumWindows(Collect, reinterpret_cast<LPARAM>(&found)));
    EXPECT_THAT(found, testing::ElementsAre(desktop.Window("top"), desktop.Window("popup"), desktop.Window("far")));
    EXPECT_EQ(FindWindowExW(nullptr, nullptr, L"p", nullptr), desktop.Window("popup")) << "class names don't mind case";
    EXPECT_EQ(FindWindowExW(desktop.Window("top"), desktop.Window("a"), nullptr, nullptr), desktop.Window("b"));
}

TEST(SimulatedWindows, VisibilityGoesThroughTheParentsAndEnablementDoesNot) {
    DesktopFixture desktop(Nested);
    EXPECT_TRUE(IsWindowVisible(desktop.Window("a1")));
    EXPECT_FALSE(IsWindowVisible(desktop.Window("p1")));
    EXPECT_FALSE(IsWindowEnabled(desktop.Window("b")));
    EXPECT_EQ(GetWindowLongPtrW(desktop.Window("b"), GWL_STYLE), WS_VISIBLE | WS_DISABLED | WS_CHILD);
    EXPECT_EQ(WindowFromPoint({5, 5}), desktop.Window("a1"));
    EXPECT_EQ(WindowFromPoint({1000, 5}), GetDesktopWindow());
}

TEST(SimulatedWindows, HandleWithTheHighestBitIsWidenedWithItsSign) {
    DesktopFixture desktop(Nested);
    EXPECT_EQ(desktop.Window("far"), reinterpret_cast<HWND>(static_cast<std::intptr_t>(-65536)));
    EXPECT_TRUE(IsWindow(desktop.Window("far")));
}

TEST(SimulatedWindows, ProcessesAndThreadsAreThoseOfTheFile) {
    DesktopFixture desktop(Nested);
    DWORD process = 0;
    EXPECT_EQ(GetWindowThreadProcessId(desktop.Window("b"), &process), 3u);
    EXPECT_EQ(process, 7u);
    EXPECT_EQ(GetWindowThreadProcessId(desktop.Window("a"), &process), 1u);
    EXPECT_EQ(process, GetCurrentProcessId());
}

TEST(SimulatedWindows, TextsAreCutToTheBuffer) {
    DesktopFixture desktop(Nested);
    wchar_t text[3] = {};
    EXPECT_EQ(GetClassNameW(desktop.Window("top"), text, 3), 2);
    EXPECT_STREQ(text, L"To");
    EXPECT_EQ(RealGetWindowClassW(desktop.Window("top"), text, 3), 2u);
    EXPECT_EQ(GetWindowTextW(desktop.Window("top"), text, 3), 1);
    EXPECT_EQ(SendMessageW(desktop.Window("top"), WM_GETTEXTLENGTH, 0, 0), 1);
    EXPECT_EQ(SendMessageW(desktop.Window("top"), WM_GETTEXT, 3, reinterpret_cast<LPARAM>(text)), 1);
    EXPECT_STREQ(text, L"T");
}

TEST(SimulatedWindows, DestroyedWindowIsGoneWithItsChildrenAndThoseItOwns) {
    DesktopFixture desktop(Nested);
    const CComPtr<IAccessible> client = desktop.ClientObject("a1");
    desktop.DestroyWindow("top");
    for (const char* id : {"top", "a", "a1", "b", "popup", "p1"}) EXPECT_FALSE(IsWindow(desktop.Window(id))) << id;
    EXPECT_TRUE(IsWindow(desktop.Window("far")));
    LONG count = 0;
    EXPECT_EQ(client->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
    RECT rectangle;
    EXPECT_FALSE(GetWindowRect(desktop.Window("top"), &rectangle));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST(SimulatedWindows, WindowCanGoInTheMiddleOfACall) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"id":"r","name":"N",
        "faults":[{"call":"get_accName","at":2,"do":[{"destroyWindow":"w"}]}]}}}]})");
    const CComPtr<IAccessible> root = desktop.Element("r");
    CComBSTR name;
    EXPECT_EQ(root->get_accName(Self, &name), S_OK);
    EXPECT_EQ(root->get_accName(Self, &name), CO_E_OBJNOTCONNECTED);
    EXPECT_FALSE(IsWindow(desktop.Window("w")));
}

TEST(SimulatedWindows, HungWindowTimesOutOnTheClock) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","hung":true}]})");
    const ULONGLONG before = Simulated::ClockMilliseconds();
    EXPECT_EQ(SendMessageTimeoutW(desktop.Window("w"), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, nullptr), 0);
    EXPECT_EQ(GetLastError(), ERROR_TIMEOUT);
    EXPECT_EQ(Simulated::ClockMilliseconds() - before, 5000u);
    EXPECT_EQ(desktop.Calls("w", "SendMessage"), 1);
}

TEST(SimulatedWindows, AnswersToMessagesComeFromTheFile) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","messages":{"4100":-3},"faults":[{"call":"SendMessage","at":3,"count":9}]}]})");
    EXPECT_EQ(SendMessageW(desktop.Window("w"), 4100, 0, 0), -3);
    DWORD_PTR answer = 0;
    EXPECT_EQ(SendMessageTimeoutW(desktop.Window("w"), 4100, 0, 0, SMTO_NORMAL, 10, &answer), 1);
    EXPECT_EQ(static_cast<LRESULT>(answer), -3);
    EXPECT_EQ(SendMessageW(desktop.Window("w"), 4100, 0, 0), 9);
    EXPECT_EQ(SendMessageW(reinterpret_cast<HWND>(4), 4100, 0, 0), 0);
}

TEST(SimulatedWindows, FocusOnAWindowGoesToItsClientAndSaysWhereItWas) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"children":[{"id":"e","state":["focused"]}]}}},
        {"id":"v","class":"C","objects":{"client":{"id":"client"}}}]})");
    const auto hasFocus = [&](const char* id) {
        CComVariant state;
        return desktop.Element(id)->get_accState(CComVariant(CHILDID_SELF), &state) == S_OK && (state.lVal & STATE_SYSTEM_FOCUSED) != 0;
    };
    EXPECT_EQ(SetFocus(desktop.Window("w")), desktop.Window("w"));
    EXPECT_TRUE(hasFocus("e")) << "an element of the window keeps it";
    EXPECT_EQ(SetFocus(desktop.Window("v")), desktop.Window("w"));
    EXPECT_TRUE(hasFocus("client"));
    EXPECT_FALSE(hasFocus("e"));
    desktop.AddFault("w", {.call = "SetFocus", .at = 2, .times = 1, .null = true});  // it was called once already
    EXPECT_EQ(SetFocus(desktop.Window("w")), nullptr);
    EXPECT_EQ(SetFocus(reinterpret_cast<HWND>(4)), nullptr);
    EXPECT_TRUE(hasFocus("client"));
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("SetFocus w", "SetFocus v"));
}

TEST(SimulatedWindows, ListBoxAnswersItsMessages) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"ListBox","listBox":["one","three"]},{"id":"m","class":"ListBox","listBox":{"items":["a","b"],"multiple":true}}]})");
    const HWND box = desktop.Window("w");
    EXPECT_EQ(SendMessageW(box, LB_GETCOUNT, 0, 0), 2);
    EXPECT_EQ(SendMessageW(box, LB_GETTEXTLEN, 1, 0), 5);
    EXPECT_EQ(SendMessageW(box, LB_GETTEXTLEN, 2, 0), -1);
    wchar_t text[8] = {};
    EXPECT_EQ(SendMessageW(box, LB_GETTEXT, 1, reinterpret_cast<LPARAM>(text)), 5);
    EXPECT_STREQ(text, L"three");
    EXPECT_EQ(SendMessageW(box, 0x0190, 0, 0), -1) << "the selection count of a single-selection box";
    EXPECT_EQ(SendMessageW(box, 0x0186, 1, 0), 1);
    EXPECT_EQ(SendMessageW(box, 0x0188, 0, 0), 1);
    EXPECT_EQ(SendMessageW(desktop.Window("m"), 0x0185, TRUE, 1), 0);
    EXPECT_EQ(SendMessageW(desktop.Window("m"), 0x0190, 0, 0), 1);
}

TEST(SimulatedWindows, ListViewAndItsHeaderAnswerTheirMessages) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"SysListView32","listView":{"columns":[{"text":"Name","width":50,"order":1},{"text":"Type","order":0}],
        "items":[["a","b"]],"headerVisible":false}}]})");
    const HWND view = desktop.Window("w");
    const HWND header = reinterpret_cast<HWND>(SendMessageW(view, LVM_GETHEADER, 0, 0));
    ASSERT_TRUE(IsWindow(header));
    EXPECT_FALSE(IsWindowVisible(header));
    EXPECT_EQ(ClassOf(header), L"SysHeader32");
    EXPECT_EQ(GetParent(header), view);
    EXPECT_EQ(SendMessageW(view, LVM_GETITEMCOUNT, 0, 0), 1);
    EXPECT_EQ(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0), 2);
    EXPECT_EQ(SendMessageW(header, HDM_ORDERTOINDEX, 0, 0), 1);
    wchar_t text[4] = {};
    HDITEMW column = {};
    column.mask = HDI_TEXT | HDI_WIDTH | HDI_ORDER;
    column.pszText = text;
    column.cchTextMax = 4;
    EXPECT_EQ(SendMessageW(header, HDM_GETITEMW, 0, reinterpret_cast<LPARAM>(&column)), 1);
    EXPECT_STREQ(text, L"Nam");
    EXPECT_EQ(column.cxy, 50);
    EXPECT_EQ(column.iOrder, 1);
    LVITEMW item = {};
    item.iSubItem = 1;
    item.pszText = text;
    item.cchTextMax = 4;
    EXPECT_EQ(SendMessageW(view, LVM_GETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&item)), 1);
    EXPECT_STREQ(text, L"b");
    EXPECT_EQ(SendMessageW(view, LVM_GETITEMTEXTW, 5, reinterpret_cast<LPARAM>(&item)), 0);
    LONG count = -1;
    EXPECT_EQ(desktop.ClientObject("w")->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 0) << "the made-up header is no accessible child";
}

TEST(SimulatedWindows, ChangesHappenWhileMessagesArePumped) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"id":"r","name":"before"}}}],
        "schedule":[{"after":100,"window":"w","do":[{"change":"r","name":"after"}]},{"after":50,"message":18},{"after":200,"posted":false,"do":[{"change":"r","name":"late"}]}]})");
    const auto name = [&] {
        CComBSTR text;
        desktop.Element("r")->get_accName(Self, &text);
        return text.ToString();
    };
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    desktop.Advance(120);
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, WM_QUIT);
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.hwnd, desktop.Window("w"));
    EXPECT_EQ(name(), L"before");
    DispatchMessageW(&message);
    EXPECT_EQ(name(), L"after");
    DispatchMessageW(&message);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    desktop.Advance(80);
    EXPECT_EQ(name(), L"late") << "what needs no message happens by itself";
}

TEST(SimulatedWindows, MadeUpWindowObjectHasTheTitleAndTheClientAsChild) {
    DesktopFixture desktop(Nested);
    const CComPtr<IAccessible> window = ObjectOf(desktop.Window("top"), OBJID_WINDOW);
    ASSERT_TRUE(window);
    CComVariant role;
    EXPECT_EQ(window->get_accRole(Self, &role), S_OK);
    EXPECT_EQ(role.lVal, ROLE_SYSTEM_WINDOW);
    CComBSTR name;
    EXPECT_EQ(window->get_accName(Self, &name), S_OK);
    EXPECT_EQ(name.ToString(), L"T");
    LONG count = 0;
    EXPECT_EQ(window->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 1);
    CComVariant first;
    EXPECT_EQ(window->accNavigate(NAVDIR_FIRSTCHILD, Self, &first), S_OK);
    EXPECT_EQ(first.pdispVal, ObjectOf(desktop.Window("top"), OBJID_CLIENT).p);
    CComPtr<IDispatch> parent;
    EXPECT_EQ(window->get_accParent(&parent), S_FALSE);
    EXPECT_EQ(ObjectOf(desktop.Window("a"), OBJID_WINDOW)->get_accParent(&parent), S_OK);
    EXPECT_EQ(parent.p, ObjectOf(desktop.Window("top"), OBJID_CLIENT).p);
    EXPECT_FALSE(ObjectOf(desktop.Window("top"), OBJID_MENU)) << "what isn't described isn't there";
}

TEST(SimulatedWindows, StandInTakesTheWindowObjectOutOfTheClientsOwnList) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"id":"r","children":[{"id":"g","children":[{"windowObject":"k"}]}]}},
        "children":[{"id":"k","class":"K"},{"id":"l","class":"L"}]}]})");
    LONG count = 0;
    EXPECT_EQ(desktop.Element("r")->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 2) << "the group, and the window that nothing stands for";
    CComPtr<IDispatch> parent;
    EXPECT_EQ(desktop.WindowObject("k")->get_accParent(&parent), S_OK);
    EXPECT_EQ(parent.p, desktop.Element("g").p);
}

TEST(SimulatedWindows, WindowInsideItselfIsARingThatEndsForThoseWhoAskForTheFocus) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"children":[{"windowObject":"w"},{"id":"f","state":["focused"]}]}}},
        {"id":"x","class":"X","objects":{"client":{"id":"other"}}}]})");
    CComVariant focus;
    EXPECT_EQ(desktop.Element("other")->get_accFocus(&focus), S_FALSE);
    EXPECT_EQ(desktop.ClientObject("w")->get_accFocus(&focus), S_OK);
}

TEST(SimulatedWindows, WindowOfAnElementIsInheritedFromAbove) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"children":[{"id":"a","children":[{"id":"b"}]},{"id":"c","window":"x","children":[{"id":"d"}]}]}}},
        {"id":"x","class":"X"}]})");
    HWND window = nullptr;
    EXPECT_EQ(WindowFromAccessibleObject(desktop.Element("b"), &window), S_OK);
    EXPECT_EQ(window, desktop.Window("w"));
    EXPECT_EQ(WindowFromAccessibleObject(desktop.Element("d"), &window), S_OK);
    EXPECT_EQ(window, desktop.Window("x"));
    EXPECT_EQ(desktop.Calls("d", "WindowFromAccessibleObject"), 1);
    desktop.AddFault("d", {.call = "WindowFromAccessibleObject", .null = true});
    EXPECT_EQ(WindowFromAccessibleObject(desktop.Element("d"), &window), S_OK);
    EXPECT_EQ(window, nullptr);
    desktop.DestroyWindow("x");
    EXPECT_EQ(WindowFromAccessibleObject(desktop.Element("c"), &window), E_FAIL);
}

TEST(SimulatedWindows, ObjectFromEventIsTheChildOrItsContainer) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"id":"r","children":[{"id":"a"},{"simple":true}]}}}]})");
    CComPtr<IAccessible> object;
    CComVariant child;
    EXPECT_EQ(AccessibleObjectFromEvent(desktop.Window("w"), static_cast<DWORD>(OBJID_CLIENT), 1, &object, &child), S_OK);
    EXPECT_EQ(object.p, desktop.Element("a").p);
    EXPECT_EQ(child.lVal, CHILDID_SELF);
    EXPECT_EQ(AccessibleObjectFromEvent(desktop.Window("w"), static_cast<DWORD>(OBJID_CLIENT), 2, &object, &child), S_OK);
    EXPECT_EQ(object.p, desktop.Element("r").p);
    EXPECT_EQ(child.lVal, 2);
    desktop.AddFault("w", {.call = "AccessibleObjectFromEvent", .null = true});
    EXPECT_EQ(AccessibleObjectFromEvent(desktop.Window("w"), static_cast<DWORD>(OBJID_CLIENT), 1, &object, &child), S_OK);
    EXPECT_EQ(object, nullptr);
}

TEST(SimulatedWindows, ChildrenAreObjectsOrChildIds) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"id":"r","children":[{"id":"a"},{"simple":true},{"id":"c"}]}}}]})");
    const CComPtr<IAccessible> root = desktop.Element("r");
    CComVariant children[4];
    LONG obtained = 0;
    EXPECT_EQ(AccessibleChildren(root, 0, 4, children, &obtained), S_FALSE);
    EXPECT_EQ(obtained, 3);
    EXPECT_EQ(children[0].vt, VT_DISPATCH);
    EXPECT_EQ(children[1].vt, VT_I4);
    EXPECT_EQ(children[1].lVal, 2);
    EXPECT_EQ(children[3].vt, VT_EMPTY);
    for (CComVariant& child : children) child.Clear();
    EXPECT_EQ(AccessibleChildren(root, 2, 1, children, &obtained), S_OK);
    EXPECT_EQ(children[0].pdispVal, desktop.Element("c").p);
    children[0].Clear();  // what is in the array is overwritten, as published
    EXPECT_EQ(AccessibleChildren(root, 4, 1, children, &obtained), E_INVALIDARG);
    EXPECT_EQ(AccessibleChildren(root, -1, 1, children, &obtained), E_INVALIDARG);
}

TEST(SimulatedWindows, ChildrenMayBeFewerOrMoreThanAskedFor) {
    DesktopFixture desktop(R"({"windows":[{"id":"w","class":"C","objects":{"client":{"id":"r","children":[{},{},{}]}}}]})");
    for (const LONG lie : {-1, 1, 1000}) {
        desktop.ClearFaults();
        desktop.AddFault("r", {.call = "AccessibleChildren", .count = lie});
        CComVariant children[3];
        LONG obtained = 0;
        EXPECT_EQ(AccessibleChildren(desktop.Element("r"), 0, 3, children, &obtained), S_OK);
        EXPECT_EQ(obtained, lie);
    }
    desktop.ClearFaults();
    desktop.AddFault("r", {.call = "AccessibleChildren", .null = true});
    CComVariant children[3];
    LONG obtained = 0;
    EXPECT_EQ(AccessibleChildren(desktop.Element("r"), 0, 3, children, &obtained), S_OK);
    EXPECT_EQ(children[0].vt, VT_DISPATCH);
    EXPECT_EQ(children[0].pdispVal, nullptr);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(SimulatedWindows, RoleAndStateTextsAreTheEnglishOnes) {
    wchar_t text[32] = {};
    EXPECT_EQ(GetRoleTextW(43, nullptr, 0), 11u);
    EXPECT_EQ(GetRoleTextW(43, text, 32), 11u);
    EXPECT_STREQ(text, L"push button");
    EXPECT_EQ(GetRoleTextW(43, text, 5), 4u);
    EXPECT_STREQ(text, L"push");
    EXPECT_EQ(GetRoleTextW(1000, text, 32), 0u);
    EXPECT_EQ(GetStateTextW(0x40, text, 32), 9u);
    EXPECT_STREQ(text, L"read only");
    EXPECT_EQ(GetStateTextW(0, text, 32), 6u);
    EXPECT_STREQ(text, L"normal");
}

TEST(SimulatedWindows, RectanglesAreAsPublished) {
    RECT a = {0, 0, 10, 10}, b = {5, 5, 20, 20}, c = {10, 0, 20, 10}, out;
    EXPECT_TRUE(IntersectRect(&out, &a, &b));
    EXPECT_EQ(out.left, 5);
    EXPECT_EQ(out.right, 10);
    EXPECT_FALSE(IntersectRect(&out, &a, &c));
    EXPECT_TRUE(IsRectEmpty(&out));
    EXPECT_TRUE(PtInRect(&a, {0, 9}));
    EXPECT_FALSE(PtInRect(&a, {0, 10}));
    EXPECT_FALSE(EqualRect(&a, &b));
}

TEST(SimulatedWindows, FixturesNestAndTheOneBeforeComesBack) {
    DesktopFixture outer(Nested);
    {
        DesktopFixture inner(R"({"system":{"environment":{"INNER":"1"}},"processes":[{"id":5,"path":"C:\\x.exe","current":true}],"windows":[{"id":"w","class":"C"}]})");
        EXPECT_TRUE(IsWindow(inner.Window("w")));
        EXPECT_EQ(GetCurrentProcessId(), 5u);
    }
    EXPECT_EQ(GetCurrentProcessId(), 1000u);
    EXPECT_EQ(ClassOf(outer.Window("top")), L"Top");
}

TEST(SimulatedWindows, UnknownIdsAndCallsFailLoudly) {
    DesktopFixture desktop(Nested);
    EXPECT_THROW(desktop.Window("nobody"), std::invalid_argument);
    EXPECT_THROW(desktop.Element("nobody"), std::invalid_argument);
    EXPECT_THROW(desktop.Calls("top", "get_accNmae"), std::invalid_argument);
    EXPECT_THROW(desktop.AddFault("top", {.call = "get_accNmae"}), std::invalid_argument);
}

}  // namespace
