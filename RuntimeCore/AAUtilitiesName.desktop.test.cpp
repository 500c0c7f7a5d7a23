#include <gtest/gtest.h>

#include "Common/include/CComBSTR.h"
#include "RuntimeCore/AAUtilitiesName.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

// Rectangles are left, top, width, height. The window begins at 100; so do "first" and "last".
constexpr char ThreeChildren[] = R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame",
  "objects": { "window": { "id": "frame", "role": "window", "name": "frame", "rectangle": [100, 100, 400, 300], "children": [
    { "id": "first", "role": "push button", "name": "First", "rectangle": [100, 110, 50, 20] },
    { "id": "last", "role": "editable text", "name": "", "value": "To\r\ntal", "state": ["read only"], "rectangle": [100, 150, 50, 20] },
    { "id": "elsewhere", "role": "push button", "name": "Elsewhere", "rectangle": [101, 200, 50, 20] } ] } } } ] })";

CString NameOfChild(DesktopFixture& desktop) {
    CComPtr<IAccessible> acc;
    CComVariant child;
    if (!GetAALastChildWithSameXLeft(desktop.Window("main"), acc, child)) return L"(none)";
    CComBSTR name;
    acc->get_accValue(child, &name);
    if (name.IsEmpty()) acc->get_accName(child, &name);
    return name.ToString();
}

TEST(LastChildWithSameLeft, IsTheLastOneThatBeginsAtTheWindowsLeft) {
    DesktopFixture desktop(ThreeChildren);
    EXPECT_EQ(NameOfChild(desktop), L"To\r\ntal");
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(LastChildWithSameLeft, LeavesOutAChildWithoutALocation) {
    DesktopFixture desktop(ThreeChildren);
    Simulated::Fault fault;
    fault.call = "accLocation";
    fault.result = E_FAIL;
    desktop.AddFault("last", fault);
    EXPECT_EQ(NameOfChild(desktop), L"First");
    desktop.AddFault("first", fault);
    EXPECT_EQ(NameOfChild(desktop), L"(none)");
}

TEST(LastChildWithSameLeft, NeedsTheWindowsOwnLocation) {
    DesktopFixture desktop(ThreeChildren);
    Simulated::Fault fault;
    fault.call = "accLocation";
    fault.result = E_FAIL;
    desktop.AddFault("frame", fault);
    EXPECT_EQ(NameOfChild(desktop), L"(none)");
}

TEST(LastChildWithSameLeft, OfAWindowWithoutChildrenIsTheWindowItself) {
    DesktopFixture desktop(R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame",
      "objects": { "window": { "id": "frame", "role": "window", "name": "Alone", "children": [] } } } ] })");
    CComPtr<IAccessible> acc;
    CComVariant child;
    EXPECT_TRUE(GetAALastChildWithSameXLeft(desktop.Window("main"), acc, child));
    EXPECT_EQ(child.vt, VT_I4);
    EXPECT_EQ(child.lVal, CHILDID_SELF);
    EXPECT_EQ(GetWindowTextFromAA(desktop.Window("main")), L"Alone");
}

TEST(LastChildWithSameLeft, LogsChildrenThatCanNotBeReadWithACodeOfZero) {
    LogCapture log;
    DesktopFixture desktop(ThreeChildren);
    Simulated::Fault fault;
    fault.call = "get_accChildCount";
    fault.result = E_ACCESSDENIED;
    desktop.AddFault("frame", fault);
    EXPECT_EQ(NameOfChild(desktop), L"(none)");
    EXPECT_TRUE(log.Contains("GetAAChildWithSameRectangle: spParent->get_accChildCount failed with hRes=0x0")) << log.Text();
}

TEST(LastChildWithSameLeft, OfNoWindowIsNone) {
    DesktopFixture desktop(ThreeChildren);
    CComPtr<IAccessible> acc;
    CComVariant child;
    EXPECT_FALSE(GetAALastChildWithSameXLeft(nullptr, acc, child));
    Simulated::Fault fault;
    fault.call = "AccessibleObjectFromWindow";
    fault.null = true;
    desktop.AddFault("main", fault);
    EXPECT_FALSE(GetAALastChildWithSameXLeft(desktop.Window("main"), acc, child));
    EXPECT_EQ(GetWindowTextFromAA(desktop.Window("main")), L"");
}

TEST(WindowText, IsTheNameRuleOnThatChild) {
    DesktopFixture desktop(ThreeChildren);
    EXPECT_EQ(GetWindowTextFromAA(desktop.Window("main")), L"To  tal");
    EXPECT_EQ(AaNameFromWindow(desktop.Window("main")), L"To  tal");
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(WindowText, WithAnUnreadableNameStillTakesTheValueButTheWindowsNameDoesNot) {
    DesktopFixture desktop(ThreeChildren);
    Simulated::Fault fault;
    fault.call = "get_accName";
    fault.result = E_FAIL;
    desktop.AddFault("last", fault);
    EXPECT_EQ(GetWindowTextFromAA(desktop.Window("main")), L"To  tal");
    EXPECT_EQ(AaNameFromWindow(desktop.Window("main")), L"");
}

}  // namespace
}  // namespace Zorvex::AAUtil
