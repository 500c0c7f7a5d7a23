#include "RuntimeCore/ListViewItems.h"

#include "Common/UTILITY/NListControls.h"
#include "Common/include/Log.h"
#include "Common/UTILITY/WindowKinds.h"

namespace Zorvex {

namespace {

// Collects the cells of a row. Nothing stands before the first text: a row that starts with empty cells starts
// with its first text, as the header line does.
class RowText {
public:
    RowText(const ListViewItemIndex& item, wchar_t separator) : m_item(item), m_separator(separator) {}

    void AppendCell(int column) {
        if (!NWindows::GetListViewSubItemText(m_item.hWnd, m_item.index, column, m_cell)) return;
        if (!m_text.empty()) m_text += m_separator;
        m_text += m_cell;
    }
    CString& Text() { return m_text; }

private:
    ListViewItemIndex m_item;
    wchar_t m_separator;
    CString m_cell;
    CString m_text;
};

}  // namespace

std::shared_ptr<SysListViewColumnInfo> GetSysListViewColumnInfo(HWND hWnd) {
    auto info = std::make_shared<SysListViewColumnInfo>();
    if (!NWindows::GetListViewColumnOrder(hWnd, info->columns, info->headerText)) return nullptr;
    info->hWnd = hWnd;
    return info;
}

ListViewItemIndex GetListViewItemIndex(IAccessible* acc, const VARIANT& child) {
    LogVerbose("GetListViewItemIndex: Start");
    if (!acc || child.vt != VT_I4) {
        LogError("GetListViewItemIndex: Invalid input param");
        return {};
    }
    HWND hWnd = nullptr;
    if (FAILED(::WindowFromAccessibleObject(acc, &hWnd)) || !hWnd || GetAASpecialType(hWnd) != AA_TYPE_LISTVIEW) {
        LogError("GetListViewItemIndex: Invalid input param: not a list view control");
        return {};
    }
    // The child id is the row plus 1.
    if (child.lVal < 1 || child.lVal - 1 >= ::SendMessageW(hWnd, LVM_GETITEMCOUNT, 0, 0)) {
        LogError("GetListViewItemIndex: Invalid item index");
        return {};
    }
    return {hWnd, static_cast<int>(child.lVal - 1)};
}

bool GetListViewItemVirtualName(IAccessible* acc, const VARIANT& child, CComVariant& out_variant) {
    LogVerbose("GetListViewItemVirtualName: Start");
    const ListViewItemIndex item = GetListViewItemIndex(acc, child);
    if (!item.IsValid()) {
        LogError("GetListViewItemVirtualName: Invalid item index");
        return false;
    }
    RowText row(item, L' ');
    const int columns = NWindows::GetListViewColumnCount(item.hWnd);
    for (int column = 0; column < columns; ++column) row.AppendCell(column);
    out_variant = CComVariant(row.Text());
    LogVerbose("GetListViewItemVirtualName: End");
    return true;
}

std::optional<CString> GetListViewItemVisibleColumnsVirtualName(const SysListViewColumnInfo& info, IAccessible* acc, const VARIANT& child) {
    const ListViewItemIndex item = GetListViewItemIndex(acc, child);
    if (!item.IsValid()) {
        LogError("GetListViewItemVisibleColumnsVirtualName: Invalid item index");
        return std::nullopt;
    }
    RowText row(item, L'\t');
    for (const int column : info.columns) row.AppendCell(column);
    return std::move(row.Text());
}

}  // namespace Zorvex
