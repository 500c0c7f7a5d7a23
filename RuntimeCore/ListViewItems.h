// Texts of list view items. A list view hides its columns from IAccessible: they are asked from the window.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// The columns of a list view.
struct SysListViewColumnInfo {
    std::vector<int> columns;  // indexes of the visible columns in display order
    CString headerText;        // their texts, joined by tabs
    HWND hWnd = nullptr;       // the list view
};

// Null if the window has no header to ask.
std::shared_ptr<SysListViewColumnInfo> GetSysListViewColumnInfo(HWND hWnd);

// The row of an item in its list view; index -1 for none.
struct ListViewItemIndex {
    HWND hWnd = nullptr;
    int index = -1;

    bool IsValid() const noexcept { return index >= 0; }
};

// The element's window must be a list view, and its child id the row plus 1. Logs at error severity what is wrong.
ListViewItemIndex GetListViewItemIndex(IAccessible* acc, const VARIANT& child);

// The texts of all columns of the item's row, in the order of their indexes, joined by blanks, as VT_BSTR. False
// (`out_variant` unchanged) if the element is no item of a list view.
bool GetListViewItemVirtualName(IAccessible* acc, const VARIANT& child, CComVariant& out_variant);

// The texts of the visible columns in display order, joined by tabs, so that a row's line has the shape of the
// header's. Nothing if the element is no item of a list view.
std::optional<CString> GetListViewItemVisibleColumnsVirtualName(const SysListViewColumnInfo& info, IAccessible* acc, const VARIANT& child);

}  // namespace Zorvex
