#include "Common/UTILITY/NListControls.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

const HWND NoWindow = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x7777));

std::string MessageAnswer(UINT message, long long answer) { return "\"" + std::to_string(message) + "\": " + std::to_string(answer); }

TEST(ListBox, ItemsAreReadByIndex) {
    DesktopFixture desktop(R"({"windows": [{"id": "box", "class": "ListBox", "listBox": ["one", "", "three"]}]})");
    const HWND box = desktop.Window("box");
    LogCapture log;
    CString text;
    EXPECT_TRUE(NWindows::GetListBoxItem(box, 0, text));
    EXPECT_EQ(text, L"one");
    EXPECT_TRUE(NWindows::GetListBoxItem(box, 1, text));
    EXPECT_EQ(text, L"");
    EXPECT_TRUE(NWindows::GetListBoxItem(box, 2, text));
    EXPECT_EQ(text, L"three");
    EXPECT_TRUE(log.Lines().empty());
}

TEST(ListBox, AnIndexThatIsNotThereIsLogged) {
    DesktopFixture desktop(R"({"windows": [{"id": "box", "class": "ListBox", "listBox": ["one"]}]})");
    LogCapture log;
    for (int index : {1, -1, 5}) {
        CString text = L"before";
        EXPECT_FALSE(NWindows::GetListBoxItem(desktop.Window("box"), index, text)) << index;
        EXPECT_EQ(text, L"");
        EXPECT_EQ(log.Count("GetListBoxItem: Could not find retrieve text length for item index: " + std::to_string(index)), 1u) << log.Text();
    }
    EXPECT_EQ(log.Lines().at(0).substr(0, 1), "E");
}

TEST(ListBox, ALengthThatCantBeIsAFailure) {
    for (long long length : {0x7FFFFFFFLL, (1LL << 20) + 1, -7LL}) {
        DesktopFixture desktop(R"({"windows": [{"id": "box", "class": "ListBox", "listBox": ["one"], "messages": {)" + MessageAnswer(LB_GETTEXTLEN, length) + "}}]}");
        LogCapture log;
        CString text;
        EXPECT_FALSE(NWindows::GetListBoxItem(desktop.Window("box"), 0, text)) << length;
        EXPECT_TRUE(log.Contains("GetListBoxItem: Could not find retrieve text length for item index: 0"));
    }
}

TEST(ListBox, ATextThatCantBeReadIsLogged) {
    DesktopFixture desktop(R"({"windows": [{"id": "box", "class": "ListBox", "listBox": ["one"], "messages": {)" + MessageAnswer(LB_GETTEXT, -1) + "}}]}");
    LogCapture log;
    CString text = L"before";
    EXPECT_FALSE(NWindows::GetListBoxItem(desktop.Window("box"), 0, text));
    EXPECT_EQ(text, L"");
    EXPECT_EQ(log.Count("GetListBoxItem: Could not find retrieve text for item index: 0"), 1u);
}

TEST(ListBox, ACopiedLengthBeyondThePromisedOneIsCut) {
    DesktopFixture desktop(R"({"windows": [{"id": "box", "class": "ListBox", "listBox": ["one"], "messages": {)" + MessageAnswer(LB_GETTEXT, 99999) + "}}]}");
    CString text;
    EXPECT_TRUE(NWindows::GetListBoxItem(desktop.Window("box"), 0, text));
    EXPECT_EQ(text.size(), 3u);
}

constexpr const char* ListView = R"({"windows": [
    {"id": "list", "class": "SysListView32", "listView": {
        "columns": [{"text": "Name", "width": 100, "order": 2}, {"text": "Hidden", "width": 0, "order": 1}, {"text": "Size", "width": 50, "order": 0}],
        "items": [["a", "h", "1"], ["b", "", "2"]], "headerVisible": true}},
    {"id": "plain", "class": "SysListView32", "listView": {"columns": [{"text": "Name", "width": 100, "order": 0}], "items": [], "headerVisible": false}},
    {"id": "button", "class": "Button"}]})";

TEST(ListView, ColumnsComeInDisplayOrderWithoutThoseOfNoWidth) {
    DesktopFixture desktop(ListView);
    std::vector<int> columns{9};
    CString header = L"before";
    EXPECT_TRUE(NWindows::GetListViewColumnOrder(desktop.Window("list"), columns, header));
    EXPECT_EQ(columns, (std::vector<int>{2, 0}));
    EXPECT_EQ(header, L"Size\tName");
    EXPECT_EQ(NWindows::GetListViewColumnCount(desktop.Window("list")), 3);
}

TEST(ListView, AColumnWithoutTextLeavesNoTabAtTheStart) {
    DesktopFixture desktop(R"({"windows": [{"id": "list", "class": "SysListView32", "listView": {"columns": [
        {"text": "", "width": 10, "order": 0}, {"text": "B", "width": 10, "order": 1}, {"text": "", "width": 10, "order": 2}, {"text": "D", "width": 10, "order": 3}],
        "items": []}}]})");
    std::vector<int> columns;
    CString header;
    EXPECT_TRUE(NWindows::GetListViewColumnOrder(desktop.Window("list"), columns, header));
    EXPECT_EQ(columns, (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(header, L"B\t\tD");
}

TEST(ListView, AColumnTextIsCutAt127Units) {
    DesktopFixture desktop(R"({"windows": [{"id": "list", "class": "SysListView32", "listView": {"columns": [{"text": ")" + std::string(300, 'c') +
                           R"(", "width": 10, "order": 0}], "items": []}}]})");
    std::vector<int> columns;
    CString header;
    EXPECT_TRUE(NWindows::GetListViewColumnOrder(desktop.Window("list"), columns, header));
    EXPECT_EQ(header, std::wstring(127, L'c'));
}

TEST(ListView, WithoutAHeaderThereAreNoColumns) {
    DesktopFixture desktop(ListView);
    for (HWND window : {desktop.Window("button"), NoWindow, static_cast<HWND>(nullptr)}) {
        std::vector<int> columns{9};
        CString header = L"before";
        EXPECT_FALSE(NWindows::GetListViewColumnOrder(window, columns, header));
        EXPECT_TRUE(columns.empty());
        EXPECT_EQ(header, L"");
        EXPECT_EQ(NWindows::GetListViewColumnCount(window), -1);
        EXPECT_FALSE(NWindows::HasVisibleListViewHeader(window));
    }
}

TEST(ListView, AHeaderMayBeInvisible) {
    DesktopFixture desktop(ListView);
    EXPECT_TRUE(NWindows::HasVisibleListViewHeader(desktop.Window("list")));
    EXPECT_FALSE(NWindows::HasVisibleListViewHeader(desktop.Window("plain")));
    std::vector<int> columns;
    CString header;
    EXPECT_TRUE(NWindows::GetListViewColumnOrder(desktop.Window("plain"), columns, header));
    EXPECT_EQ(header, L"Name");
}

TEST(ListView, AColumnCountThatCantBeIsAFailure) {
    for (long long count : {-1LL, 10001LL, 0x7FFFFFFFLL}) {
        DesktopFixture desktop(R"({"windows": [{"id": "header", "handle": 4660, "class": "SysHeader32", "messages": {)" + MessageAnswer(HDM_GETITEMCOUNT, count) +
                               R"(}}, {"id": "list", "class": "SysListView32", "messages": {)" + MessageAnswer(LVM_GETHEADER, 4660) + "}}]}");
        std::vector<int> columns;
        CString header;
        EXPECT_FALSE(NWindows::GetListViewColumnOrder(desktop.Window("list"), columns, header)) << count;
        EXPECT_EQ(NWindows::GetListViewColumnCount(desktop.Window("list")), -1) << count;
    }
}

TEST(ListView, AHeaderThatDoesntKnowItsColumnsShowsNone) {
    DesktopFixture desktop(R"({"windows": [{"id": "header", "handle": 4660, "class": "SysHeader32", "messages": {)" + MessageAnswer(HDM_GETITEMCOUNT, 3) +
                           R"(}}, {"id": "list", "class": "SysListView32", "messages": {)" + MessageAnswer(LVM_GETHEADER, 4660) + "}}]}");
    std::vector<int> columns;
    CString header;
    EXPECT_TRUE(NWindows::GetListViewColumnOrder(desktop.Window("list"), columns, header));
    EXPECT_TRUE(columns.empty());
    EXPECT_EQ(header, L"");
}

// One cell with a text of the length.
std::string ListViewWithCell(std::size_t length) {
    return R"({"windows": [{"id": "list", "class": "SysListView32", "listView": {"columns": [{"text": "A", "width": 10, "order": 0}], "items": [[")" +
           std::string(length, 'x') + R"("]]}}]})";
}

TEST(ListView, ACellIsReadWholeWhateverItsLength) {
    for (std::size_t length : {0u, 1u, 62u, 63u, 64u, 126u, 127u, 128u, 1000u, 40000u}) {
        DesktopFixture desktop(ListViewWithCell(length));
        CString text = L"before";
        EXPECT_TRUE(NWindows::GetListViewSubItemText(desktop.Window("list"), 0, 0, text));
        EXPECT_EQ(text, std::wstring(length, L'x')) << length;
    }
}

TEST(ListView, ACellOfAnotherRowOrColumnIsItsOwn) {
    DesktopFixture desktop(ListView);
    CString text;
    EXPECT_TRUE(NWindows::GetListViewSubItemText(desktop.Window("list"), 1, 2, text));
    EXPECT_EQ(text, L"2");
    EXPECT_TRUE(NWindows::GetListViewSubItemText(desktop.Window("list"), 1, 1, text));
    EXPECT_EQ(text, L"");
}

TEST(ListView, AnEndlessCellIsCutAtTheLongestText) {
    DesktopFixture desktop(ListViewWithCell((1u << 20) + 5000));
    CString text;
    EXPECT_TRUE(NWindows::GetListViewSubItemText(desktop.Window("list"), 0, 0, text));
    EXPECT_EQ(text.size(), static_cast<std::size_t>(NWindows::LongestItemText) - 1);
}

TEST(ListView, ALengthBeyondTheBufferIsCutToIt) {
    DesktopFixture desktop(R"({"windows": [{"id": "list", "class": "SysListView32", "messages": {)" + MessageAnswer(LVM_GETITEMTEXTW, 5000) + "}}]}");
    CString text;
    EXPECT_TRUE(NWindows::GetListViewSubItemText(desktop.Window("list"), 0, 0, text));
    EXPECT_EQ(text.size(), 63u);
}

TEST(ListView, ARefusedCellIsAFailure) {
    DesktopFixture desktop(R"({"windows": [{"id": "list", "class": "SysListView32", "messages": {)" + MessageAnswer(LVM_GETITEMTEXTW, -1) + "}}]}");
    CString text = L"before";
    EXPECT_FALSE(NWindows::GetListViewSubItemText(desktop.Window("list"), 0, 0, text));
    EXPECT_EQ(text, L"");
    EXPECT_FALSE(NWindows::GetListViewSubItemText(NoWindow, 0, 0, text));
}

}  // namespace
}  // namespace Zorvex
