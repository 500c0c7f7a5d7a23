#include "RuntimeCore/ListViewItems.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

constexpr const char* Desktop = R"({"windows": [
    {"id": "list", "class": "SysListView32", "listView": {
        "columns": [{"text": "Name", "width": 100, "order": 2}, {"text": "Hidden", "width": 0, "order": 0}, {"text": "Size", "width": 50, "order": 1}],
        "items": [["a", "h", "1"], ["b", "", "2"], ["", "", "3"]]},
     "objects": {"client": {"id": "client", "role": "list", "children": [
        {"id": "row1", "role": "list item", "name": "a", "simple": true},
        {"id": "row2", "role": "list item", "name": "b", "simple": true},
        {"id": "row3", "role": "list item", "name": "", "simple": true}]}}},
    {"id": "other", "class": "Button", "objects": {"client": {"id": "button", "role": "push button"}}}]})";

class ListViewItemsTest : public ::testing::Test {
protected:
    DesktopFixture desktop{Desktop};
    LogCapture log;

    std::wstring VirtualName(const char* id) {
        CComVariant name(L"none");
        const bool found = GetListViewItemVirtualName(desktop.Element(id), desktop.Child(id), name);
        EXPECT_EQ(name.vt, VT_BSTR);
        EXPECT_EQ(found, std::wstring(name.bstrVal) != L"none");
        return name.bstrVal;
    }
};

TEST_F(ListViewItemsTest, TheRowIsTheChildIdLessOne) {
    const ListViewItemIndex item = GetListViewItemIndex(desktop.Element("row2"), desktop.Child("row2"));
    EXPECT_TRUE(item.IsValid());
    EXPECT_EQ(item.hWnd, desktop.Window("list"));
    EXPECT_EQ(item.index, 1);
    EXPECT_EQ(log.Count("GetListViewItemIndex: Start"), 1u);
}

TEST_F(ListViewItemsTest, InvalidInputIsLogged) {
    EXPECT_EQ(GetListViewItemIndex(nullptr, CComVariant(1)).index, -1);
    EXPECT_EQ(GetListViewItemIndex(desktop.Element("client"), CComVariant(L"1")).index, -1);
    EXPECT_EQ(log.Count("GetListViewItemIndex: Invalid input param"), 2u);
    EXPECT_EQ(log.Count("not a list view control"), 0u);
}

TEST_F(ListViewItemsTest, AnotherKindOfWindowIsLogged) {
    EXPECT_EQ(GetListViewItemIndex(desktop.Element("button"), CComVariant(1)).index, -1);
    EXPECT_EQ(log.Count("GetListViewItemIndex: Invalid input param: not a list view control"), 1u);
}

TEST_F(ListViewItemsTest, ARowBeyondTheCountIsLogged) {
    for (LONG child : {0, -1, 4, 0x7FFFFFFF, static_cast<int>(0x80000000)}) {
        log.Clear();
        EXPECT_EQ(GetListViewItemIndex(desktop.Element("client"), CComVariant(child)).index, -1) << child;
        EXPECT_EQ(log.Count("GetListViewItemIndex: Invalid item index"), 1u) << child;
    }
}

TEST_F(ListViewItemsTest, TheVirtualNameJoinsAllColumnsByBlanks) {
    EXPECT_EQ(VirtualName("row1"), L"a h 1");
    EXPECT_EQ(log.Count("GetListViewItemVirtualName: Start"), 1u);
    EXPECT_EQ(log.Count("GetListViewItemVirtualName: End"), 1u);
}

TEST_F(ListViewItemsTest, AnEmptyCellInTheMiddleLeavesItsBlankAndOneAtTheStartNone) {
    EXPECT_EQ(VirtualName("row2"), L"b  2");
    EXPECT_EQ(VirtualName("row3"), L"3");
}

TEST_F(ListViewItemsTest, AnElementOfAnotherWindowHasNoVirtualName) {
    EXPECT_EQ(VirtualName("button"), L"none");
    EXPECT_EQ(log.Count("GetListViewItemVirtualName: Invalid item index"), 1u);
    EXPECT_FALSE(log.Contains("GetListViewItemVirtualName: End"));
}

TEST_F(ListViewItemsTest, ARowsLineHasTheShapeOfTheHeaderLine) {
    const auto info = GetSysListViewColumnInfo(desktop.Window("list"));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->hWnd, desktop.Window("list"));
    EXPECT_EQ(info->headerText, L"Size\tName");
    EXPECT_EQ(GetListViewItemVisibleColumnsVirtualName(*info, desktop.Element("row1"), desktop.Child("row1")), L"1\ta");
    EXPECT_EQ(GetListViewItemVisibleColumnsVirtualName(*info, desktop.Element("row3"), desktop.Child("row3")), L"3\t");
    EXPECT_FALSE(log.Contains("Invalid"));
}

TEST_F(ListViewItemsTest, WithoutAnItemThereIsNoLine) {
    const SysListViewColumnInfo info;
    EXPECT_EQ(GetListViewItemVisibleColumnsVirtualName(info, desktop.Element("button"), CComVariant(1)), std::nullopt);
    EXPECT_EQ(log.Count("GetListViewItemVisibleColumnsVirtualName: Invalid item index"), 1u);
    EXPECT_EQ(log.Lines().back().substr(0, 1), "E");
}

TEST_F(ListViewItemsTest, AWindowWithoutAHeaderHasNoColumns) {
    EXPECT_EQ(GetSysListViewColumnInfo(desktop.Window("other")), nullptr);
    EXPECT_EQ(GetSysListViewColumnInfo(nullptr), nullptr);
}

}  // namespace
}  // namespace Zorvex
