#include "RuntimeCore/TextCapture/ListCaptures.h"

#include <gtest/gtest.h>

#include "RuntimeCore/Requests/RequestFlags.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

using Capture = HRESULT (*)(CaptureContext&, HWND, const RECT*, CString&, bool);

class ListCapturesTest : public ::testing::Test {
protected:
    std::wstring Text(DesktopFixture& desktop, Capture capture, const RECT* filter = nullptr, bool identify = false) {
        CString text;
        result = capture(context, desktop.Window("w"), filter, text, identify);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        return text;
    }

    CaptureContext context{CaptureHighlightInfo};
    HRESULT result = E_UNEXPECTED;
};

constexpr char ListBoxDesktop[] = R"({"windows": [{"id": "w", "class": "ListBox", "objects": {"client": {"role": "list", "name": "box", "children": [
    {"id": "one", "role": "list item", "name": "one", "simple": true, "rectangle": [10, 10, 100, 20]},
    {"id": "two", "role": "list item", "name": "two", "simple": true, "rectangle": [10, 30, 100, 20]},
    {"id": "button", "role": "push button", "name": "button", "rectangle": [10, 50, 100, 20]}]}}}]})";

TEST_F(ListCapturesTest, ListBoxGivesItsItemsAlone) {
    DesktopFixture desktop(ListBoxDesktop);
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListBox), L"one\r\ntwo\r\n");
    EXPECT_EQ(result, S_OK);
    ASSERT_EQ(context.highlights.size(), 2u);
    EXPECT_EQ(context.highlights[1].text, L"two");
    EXPECT_EQ(context.highlights[1].rectangle.top, 30);
}

TEST_F(ListCapturesTest, RectangleOfAnItemGivesThatItemAlone) {
    DesktopFixture desktop(ListBoxDesktop);
    const RECT two{10, 30, 110, 50};
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListBox, &two, true), L"two\r\n");
    EXPECT_EQ(result, S_OK);
}

TEST_F(ListCapturesTest, RectangleOfAnObjectGivesItsLineAndThoseBelowIt) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "ListBox", "objects": {"client": {"role": "list", "children": [
        {"role": "list item", "name": "outer", "rectangle": [10, 10, 100, 20], "children": [
            {"role": "list item", "name": "inner", "rectangle": [500, 500, 100, 20]}]},
        {"role": "list item", "name": "other"}]}}}]})");
    const RECT outer{10, 10, 110, 30};
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListBox, &outer, true), L"outer\r\ninner\r\n") << "the rectangle clips nothing any more";
}

TEST_F(ListCapturesTest, RectangleOfNoElementStaysInForceAsAClip) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "ListBox", "rectangle": [0, 0, 200, 200], "objects": {"client": {"role": "list", "children": [
        {"role": "list item", "name": "one", "simple": true, "rectangle": [10, 10, 100, 20]},
        {"role": "list item", "name": "two", "simple": true, "rectangle": [10, 30, 100, 20]},
        {"role": "list item", "name": "left", "simple": true, "rectangle": [-10, 30, 100, 20]}]}}}]})");
    const RECT near{5, 31, 111, 51};
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListBox, &near, true), L"two\r\n");
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListBox, &near), L"two\r\n");
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListBox), L"one\r\ntwo\r\nleft\r\n") << "a negative edge matters to a filter alone";
}

TEST_F(ListCapturesTest, UnreadableRoleOfTheNamedElementIsTheAnswer) {
    DesktopFixture desktop(ListBoxDesktop);
    Simulated::Fault fault;
    fault.call = Simulated::Call::AccRole;
    fault.result = E_ACCESSDENIED;
    desktop.AddFault("two", fault);
    const RECT two{10, 30, 110, 50};
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListBox, &two, true), L"");
    EXPECT_EQ(result, E_ACCESSDENIED);
}

TEST_F(ListCapturesTest, WindowWithoutAnObjectGivesNothing) {
    DesktopFixture desktop(ListBoxDesktop);
    Simulated::Fault fault;
    fault.call = Simulated::Call::AccessibleObjectFromWindow;
    fault.result = E_FAIL;
    desktop.AddFault("w", fault);
    for (const Capture capture : {CaptureTextAA_ListBox, CaptureTextAA_ListView, CaptureTextAA_ComboBox, CaptureTextAA_TreeView}) {
        EXPECT_EQ(Text(desktop, capture), L"");
        EXPECT_EQ(result, S_FALSE);
    }
}

TEST_F(ListCapturesTest, NullAndForeignWindowObjectsGiveNothing) {
    DesktopFixture desktop(ListBoxDesktop);
    Simulated::Fault fault;
    fault.call = Simulated::Call::AccessibleObjectFromWindow;
    fault.null = true;
    desktop.AddFault("w", fault);
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListBox), L"");
    EXPECT_EQ(result, S_FALSE);
}

TEST_F(ListCapturesTest, ComboBoxGivesItsFieldAndItsItems) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "ComboBox", "objects": {"client": {"role": "combo box", "name": "box", "children": [
        {"role": "editable text", "name": "field", "value": "typed"}, {"role": "push button", "name": "Open"},
        {"role": "list", "children": [{"role": "list item", "name": "item"}]}]}}}]})");
    EXPECT_EQ(Text(desktop, CaptureTextAA_ComboBox), L"typed\r\nitem\r\n");
}

constexpr char TreeDesktop[] = R"({"windows": [{"id": "w", "class": "SysTreeView32", "rectangle": [0, 0, 300, 300],
    "objects": {"client": {"role": "outline", "rectangle": [0, 0, 300, 300], "children": [
    {"role": "outline item", "name": "root", "value": "0", "simple": true, "rectangle": [10, 10, 100, 20]},
    {"role": "outline item", "name": "leaf", "value": "2", "simple": true, "rectangle": [10, 30, 100, 20]},
    {"role": "check box", "name": "checked", "value": "1", "simple": true, "rectangle": [10, 50, 100, 20]}]}}}]})";

TEST_F(ListCapturesTest, TreeIsIndentedByItsLevels) {
    DesktopFixture desktop(TreeDesktop);
    EXPECT_EQ(Text(desktop, CaptureTextAA_TreeView), L"root\r\n\t\tleaf\r\n\tchecked\r\n");
    EXPECT_FALSE(context.m_bNoIndent);
}

TEST_F(ListCapturesTest, TreeWithAFilterHasNoIndentation) {
    DesktopFixture desktop(TreeDesktop);
    const RECT filter{1, 1, 200, 60};
    EXPECT_EQ(Text(desktop, CaptureTextAA_TreeView, &filter), L"root\r\nleaf\r\nchecked\r\n");
    EXPECT_TRUE(context.m_bNoIndent);
}

TEST_F(ListCapturesTest, NamedTreeItemIsIndented) {
    DesktopFixture desktop(TreeDesktop);
    const RECT leaf{10, 30, 110, 50};
    EXPECT_EQ(Text(desktop, CaptureTextAA_TreeView, &leaf, true), L"\t\tleaf\r\n");
}

std::string ListView(const std::string& settings, const std::string& style) {
    return R"({"windows": [{"id": "w", "class": "SysListView32", "style": )" + style + R"(, "listView": {
        "columns": [{"text": "Name", "order": 1}, {"text": "Hidden", "width": 0, "order": 2}, {"text": "Size", "order": 0}],
        "items": [["a", "secret", "1"], ["b", "secret", "2"]])" + settings + R"(},
        "objects": {"client": {"id": "list", "role": "list", "name": "files", "children": [
            {"role": "list item", "name": "a", "value": "5", "simple": true}, {"role": "check box", "name": "b", "value": "5", "simple": true}]}}}]})";
}

TEST_F(ListCapturesTest, ReportViewGivesItsHeaderAndRowsOfTheSameShapeWithoutHiddenColumns) {
    DesktopFixture desktop(ListView("", "1"));
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListView), L"Size\tName\r\n1\ta\r\n2\tb\r\n") << "check boxes are rows too, and not indented";
    ASSERT_EQ(context.highlights.size(), 2u) << "the header has no element";
    EXPECT_EQ(context.highlights[0].text, L"1\ta");
}

TEST_F(ListCapturesTest, VisibleHeaderCountsInAnyView) {
    DesktopFixture desktop(ListView("", "0"));
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListView), L"Size\tName\r\n1\ta\r\n2\tb\r\n");
}

TEST_F(ListCapturesTest, ReportViewWithAHiddenHeaderStillHasColumns) {
    DesktopFixture desktop(ListView(R"(, "headerVisible": false)", "1"));
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListView), L"Size\tName\r\n1\ta\r\n2\tb\r\n");
}

TEST_F(ListCapturesTest, IconViewWithoutAHeaderGivesTheNamesOfItsItems) {
    DesktopFixture desktop(ListView(R"(, "headerVisible": false)", "0"));
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListView), L"a\r\n\t\t\t\t\tb\r\n") << "a check box is indented by its value as ever";
}

TEST_F(ListCapturesTest, ReportViewWithoutAnyHeaderWindowGivesNames) {
    DesktopFixture desktop(ListView(R"(, "header": false)", "1"));
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListView), L"a\r\n\t\t\t\t\tb\r\n");
}

TEST_F(ListCapturesTest, HeaderIsGivenOncePerWindow) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "My.SysListView32.1", "style": 1, "listView": {
        "columns": [{"text": "Name"}], "items": [["a"]]}, "objects": {"client": {"role": "list", "children": [
            {"role": "list item", "name": "a", "simple": true},
            {"role": "list", "children": [{"role": "list item", "name": "group"}]}]}}}]})");
    EXPECT_EQ(Text(desktop, CaptureTextAA_ListView), L"Name\r\na\r\ngroup\r\n")
        << "an inner list of the same window has the same columns, and an item with no row of its own keeps its name";
}

TEST_F(ListCapturesTest, EveryCallFailingOnceLeavesNoReference) {
    for (unsigned at = 1; at <= 60; ++at)
        for (const bool raise : {false, true}) {
            DesktopFixture desktop(ListView("", "1"));
            Simulated::Fault fault;
            fault.at = at;
            fault.times = 1;
            if (raise) fault.raise = true;
            else fault.result = E_FAIL;
            desktop.AddFault(fault);
            const RECT filter{0, 0, 100, 100};
            CString text;
            try {
                CaptureTextAA_ListView(context, desktop.Window("w"), &filter, text, true);
            } catch (const Simulated::ServerFailure&) {
            }
            EXPECT_EQ(desktop.OutstandingReferences(), 0) << at;
        }
}

}  // namespace
}  // namespace Zorvex
