#include "RuntimeCore/TextCapture/ElementCapture.h"

#include <gtest/gtest.h>

#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/TextCapture/CaptureRoles.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

// A window of that class whose client object has these children.
std::string Desktop(const std::string& className, const std::string& children, const std::string& more = "") {
    return R"({"windows": [{"id": "w", "class": ")" + className + R"(", "title": "Title")" + more + R"(, "objects": {"client": {"id": "client", "children": [)" +
           children + "]}}}]}";
}

class ElementCaptureTest : public ::testing::Test {
protected:
    std::wstring Text(DesktopFixture& desktop, const char* id, DWORD flags = 0) {
        CString text = L"replaced";
        success = AAGetFullTextFromElement(desktop.Window("w"), desktop.Element(id), desktop.Child(id), flags, lines, text);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        return text;
    }

    LogCapture log;
    std::vector<HighlightInfo> lines;
    bool success = false;
};

constexpr char Table[] = R"({"id": "row", "role": "row", "name": "row", "children": [
    {"role": "row header", "name": "head"}, {"role": "column header", "name": "column", "value": "column value"},
    {"id": "cell", "role": "cell", "name": "cell", "value": "7"}, {"id": "simple", "role": "cell", "name": "simple", "simple": true},
    {"role": "grouping", "name": "group"}]})";

TEST_F(ElementCaptureTest, ElementGivesItsOwnLineAndThoseBelowWithHeadersAndWithoutGroupings) {
    DesktopFixture desktop(Desktop("C", Table));
    EXPECT_EQ(Text(desktop, "row"), L"row\r\nhead\r\ncolumn value\r\n7\r\nsimple\r\n");
    EXPECT_TRUE(success);
    EXPECT_TRUE(log.Contains("V [CaptureFullTextInAA] CaptureFullTextInAA: enAAType=0"));
}

TEST_F(ElementCaptureTest, SimpleElementAndLeafGiveTheirOwnLineAlone) {
    DesktopFixture desktop(Desktop("C", Table));
    EXPECT_EQ(Text(desktop, "simple"), L"simple\r\n");
    EXPECT_EQ(Text(desktop, "cell", CaptureHighlightInfo), L"7\r\n");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, L"7");
}

TEST_F(ElementCaptureTest, RectanglesOfTheFlagsMeanNothing) {
    DesktopFixture desktop(Desktop("C", Table));
    EXPECT_EQ(Text(desktop, "cell", CaptureByExactRectangle | CaptureClipped), L"7\r\n");
}

TEST_F(ElementCaptureTest, LeafWithoutTextIsASuccessAndOneThatCannotBeReadIsNot) {
    DesktopFixture desktop(Desktop("C", R"({"id": "bare", "role": "push button"})"));
    EXPECT_EQ(Text(desktop, "bare"), L"");
    EXPECT_TRUE(success);
    Simulated::Fault fault;
    fault.call = Simulated::Call::AccRole;
    fault.result = E_ACCESSDENIED;
    desktop.AddFault("bare", fault);
    EXPECT_EQ(Text(desktop, "bare"), L"");
    EXPECT_FALSE(success);
}

TEST_F(ElementCaptureTest, UnreadableNameFailsALeafAndNoContainer) {
    for (const char* id : {"cell", "row"}) {
        DesktopFixture desktop(Desktop("C", Table));
        Simulated::Fault fault;
        fault.call = Simulated::Call::AccName;
        fault.result = E_ACCESSDENIED;
        desktop.AddFault(id, fault);
        EXPECT_EQ(Text(desktop, id), id == std::string("row") ? L"head\r\ncolumn value\r\n7\r\nsimple\r\n" : L"");
        EXPECT_EQ(success, id == std::string("row"));
    }
}

TEST_F(ElementCaptureTest, NoElementIsAnInvalidArgument) {
    DesktopFixture desktop(Desktop("C", ""));
    CaptureContext context;
    CString text;
    EXPECT_EQ(CaptureFullTextInAA(context, desktop.Window("w"), nullptr, CComVariant(0), 0, text), E_INVALIDARG);
    EXPECT_EQ(CaptureFullTextInAA(context, desktop.Window("w"), desktop.Element("client"), CComVariant(), 0, text), E_INVALIDARG);
    EXPECT_FALSE(AAGetFullTextFromElement(nullptr, nullptr, CComVariant(0), 0, lines, text));
}

TEST_F(ElementCaptureTest, UnreadableChildrenLeaveTheOwnLine) {
    DesktopFixture desktop(Desktop("C", Table));
    Simulated::Fault fault;
    fault.call = Simulated::Call::AccessibleChildren;
    fault.result = E_FAIL;
    desktop.AddFault("row", fault);
    CaptureContext context;
    CString text;
    EXPECT_EQ(CaptureElementText(context, CaptureRoles::Element, desktop.Window("w"), desktop.Element("row"), CComVariant(0), text, AA_TYPE_GENERIC), S_FALSE);
    EXPECT_EQ(text, L"row\r\n");
}

TEST_F(ElementCaptureTest, KindsWithoutAWindowCaptureHaveOneOfElements) {
    for (const char* className : {"Chrome_RenderWidgetHostHWND", "Windows.UI.Core.CoreWindow", "Windows.UI.Core.AppWindow"}) {
        DesktopFixture desktop(Desktop(className, R"({"id": "link", "role": "link", "name": "link"})"));
        EXPECT_EQ(Text(desktop, "link"), L"link\r\n") << className;
        EXPECT_TRUE(success);
    }
}

TEST_F(ElementCaptureTest, ElementOfAChromiumWidgetGivesTheTextOfItsPage) {
    DesktopFixture desktop(
        Desktop("Chrome_WidgetWin_1",
                R"({"id": "div", "role": "grouping", "name": "not read", "ia2": {"text": "own"}, "children": [
        {"role": "grouping", "state": ["invisible"], "ia2": {"text": "hidden"}}, {"role": "grouping", "state": ["offscreen"], "ia2": {"text": "off"}}]})"));
    EXPECT_EQ(Text(desktop, "div", CaptureHighlightInfo), L"own hidden off");
    EXPECT_TRUE(success);
    EXPECT_TRUE(lines.empty()) << "pages have no records";
    EXPECT_EQ(Text(desktop, "div", CaptureIgnoreHidden), L"own off");
    EXPECT_EQ(Text(desktop, "div", CaptureIgnoreOffscreen), L"own hidden");
    EXPECT_EQ(Text(desktop, "div", CaptureClipped), L"own hidden off");
}

TEST_F(ElementCaptureTest, ChromeElementsGoByTheChromeRule) {
    DesktopFixture desktop(Desktop("Chrome_RenderWidgetHostHWND", R"({"id": "text", "role": "text", "name": "name", "value": "value", "state": ["read only"]})"));
    EXPECT_EQ(Text(desktop, "text"), L"name\r\n");
    EXPECT_TRUE(log.Contains("ROLE_SYSTEM_TEXT and ROLE_SYSTEM_CELL case"));
}

TEST_F(ElementCaptureTest, RowsOfAWpfWindowGiveTheirCells) {
    DesktopFixture desktop(Desktop("HwndWrapper[App;;1]", R"({"id": "list", "role": "list", "children": [{"role": "list item", "name": "row", "children": [
        {"role": "text", "name": "cell"}, {"role": "push button", "name": "button"}]}]}, {"id": "button", "role": "push button", "name": "outside"})"));
    EXPECT_EQ(Text(desktop, "list"), L"cell\r\n");
    EXPECT_EQ(Text(desktop, "client"), L"cell\r\noutside\r\n");
}

TEST_F(ElementCaptureTest, ListBoxAndComboBoxHaveRolesOfTheirOwn) {
    const std::string children = R"({"id": "list", "role": "list", "children": [
        {"role": "list item", "name": "item"}, {"role": "editable text", "name": "", "value": "field"}, {"role": "link", "name": "link"}]})";
    DesktopFixture listBox(Desktop("ListBox", children));
    EXPECT_EQ(Text(listBox, "list"), L"item\r\n");
    DesktopFixture comboBox(Desktop("ComboBox", children));
    EXPECT_EQ(Text(comboBox, "list"), L"item\r\nfield\r\n");
}

TEST_F(ElementCaptureTest, ListViewGivesItsHeaderForTheListAndNoneForAnItem) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "SysListView32", "style": 1, "listView": {
        "columns": [{"text": "Name"}, {"text": "Size"}], "items": [["a", "1"]]}, "objects": {"client": {"id": "list", "role": "list", "children": [
            {"id": "item", "role": "list item", "name": "a", "simple": true}]}}}]})");
    EXPECT_EQ(Text(desktop, "list"), L"Name\tSize\r\na\t1\r\n") << "the walk gives no second header";
    EXPECT_EQ(Text(desktop, "item"), L"a\t1\r\n");
}

TEST_F(ElementCaptureTest, WindowThatIsNoListViewHasNoColumns) {
    DesktopFixture desktop(
        R"({"windows": [{"id": "w", "class": "Grid", "style": 1, "listView": {"columns": [{"text": "Name"}], "items": [["a"]]},
        "objects": {"client": {"id": "list", "role": "list", "children": [{"id": "item", "role": "list item", "name": "name", "simple": true}]}}}]})");
    EXPECT_EQ(Text(desktop, "list"), L"name\r\n");
    EXPECT_EQ(Text(desktop, "item"), L"name\r\n");
}

TEST_F(ElementCaptureTest, OutlineItemOfAnyWindowGivesTheItemsUnderIt) {
    DesktopFixture desktop(Desktop("C", R"({"role": "outline", "children": [
        {"id": "item", "role": "outline item", "name": "item", "value": "1", "simple": true},
        {"role": "outline item", "name": "one", "value": "2", "simple": true}, {"role": "outline item", "name": "two", "value": "3", "simple": true}]})"));
    EXPECT_EQ(Text(desktop, "item"), L"item\r\n\tone\r\n\t\ttwo");
}

TEST_F(ElementCaptureTest, OutlineItemWithoutALevelIsAnElementLikeAnyOther) {
    DesktopFixture desktop(Desktop("C", R"({"id": "item", "role": "outline item", "name": "item", "children": [{"role": "text", "name": "below"}]})"));
    EXPECT_EQ(Text(desktop, "item"), L"item\r\nbelow\r\n") << "the failed attempt leaves nothing behind";
}

TEST_F(ElementCaptureTest, TreeViewItemWithoutALevelFails) {
    DesktopFixture desktop(Desktop("SysTreeView32", R"({"id": "item", "role": "outline item", "name": "item"})"));
    EXPECT_EQ(Text(desktop, "item"), L"");
    EXPECT_FALSE(success);
}

TEST_F(ElementCaptureTest, EditFieldGivesItsWholeTextForAnyElement) {
    for (const char* className : {"Edit", "RICHEDIT50W"}) {
        DesktopFixture desktop(Desktop(className, R"({"id": "part", "role": "link", "name": "part"})"));
        EXPECT_EQ(Text(desktop, "part"), L"Title") << className;
    }
}

TEST_F(ElementCaptureTest, OfficeWindowsGiveTheirWholeText) {
    const std::string model = R"(, "nativeObject": {"Document": {"Content": {"Text": "words"}}})";
    DesktopFixture desktop(Desktop("_WwG", R"({"id": "part", "role": "text", "name": "part"})", model));
    EXPECT_EQ(Text(desktop, "part"), L"words");
    EXPECT_TRUE(success);
    for (const char* className : {"_WwG", "EXCEL7", "paneClassDC"}) {
        DesktopFixture without(Desktop(className, R"({"id": "part", "role": "text", "name": "part"})"));
        EXPECT_EQ(Text(without, "part"), L"") << className;
        EXPECT_TRUE(success) << "there is just nothing";
    }
}

TEST_F(ElementCaptureTest, EveryCallFailingOrThrowingOnceLeavesNoReference) {
    for (unsigned at = 1; at <= 40; ++at)
        for (const bool raise : {false, true}) {
            DesktopFixture desktop(Desktop("C", Table));
            const CComPtr<IAccessible> row = desktop.Element("row");
            Simulated::Fault fault;
            fault.at = at;
            fault.times = 1;
            if (raise) fault.raise = true;
            else fault.result = E_FAIL;
            desktop.AddFault(fault);
            CString text;
            try {
                AAGetFullTextFromElement(desktop.Window("w"), row, CComVariant(0), CaptureHighlightInfo, lines, text);
            } catch (const Simulated::ServerFailure&) {
            }
            EXPECT_EQ(desktop.OutstandingReferences(), 1) << at;
        }
}

}  // namespace
}  // namespace Zorvex
