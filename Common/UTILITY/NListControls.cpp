#include "Common/UTILITY/NListControls.h"

#include <algorithm>

#include "Common/include/Log.h"

namespace Zorvex::NWindows {

namespace {

constexpr int FirstCellBuffer = 64;
constexpr int HeaderTextBuffer = 128;

template <class Record>
LPARAM AddressOf(Record& record) {
    return reinterpret_cast<LPARAM>(&record);
}

}  // namespace

bool GetListBoxItem(HWND hWnd, int index, CString& out_text) {
    out_text.clear();
    const WPARAM item = static_cast<WPARAM>(index);
    const LRESULT length = ::SendMessageW(hWnd, LB_GETTEXTLEN, item, 0);
    if (length < 0 || length > LongestItemText) {
        LogError("GetListBoxItem: Could not find retrieve text length for item index: %d", index);
        return false;
    }
    // The box writes what it has, however long its buffer is; the slack is for an item that grows in between.
    constexpr std::size_t slack = 64;
    CString text(static_cast<std::size_t>(length) + 1 + slack, L'\0');
    const LRESULT copied = ::SendMessageW(hWnd, LB_GETTEXT, item, reinterpret_cast<LPARAM>(text.data()));
    if (copied < 0) {
        LogError("GetListBoxItem: Could not find retrieve text for item index: %d", index);
        return false;
    }
    text.resize(static_cast<std::size_t>(std::min(copied, length)));
    out_text = std::move(text);
    return true;
}

HWND GetListViewHeader(HWND hWnd) { return reinterpret_cast<HWND>(::SendMessageW(hWnd, LVM_GETHEADER, 0, 0)); }

bool HasVisibleListViewHeader(HWND hWnd) {
    const HWND header = GetListViewHeader(hWnd);
    return header && ::IsWindowVisible(header);
}

int GetListViewColumnCount(HWND hWnd) {
    const HWND header = GetListViewHeader(hWnd);
    if (!header) return -1;
    const LRESULT count = ::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
    return count < 0 || count > MostListViewColumns ? -1 : static_cast<int>(count);
}

bool GetListViewColumnOrder(HWND hWnd, std::vector<int>& out_columns, CString& out_headerText) {
    out_columns.clear();
    out_headerText.clear();
    const HWND header = GetListViewHeader(hWnd);
    if (!header) return false;
    const LRESULT count = ::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
    if (count < 0 || count > MostListViewColumns) return false;
    for (LRESULT position = 0; position < count; ++position) {
        const int column = static_cast<int>(::SendMessageW(header, HDM_ORDERTOINDEX, static_cast<WPARAM>(position), 0));
        wchar_t text[HeaderTextBuffer] = {};
        HDITEMW item = {};
        item.mask = HDI_WIDTH | HDI_TEXT | HDI_ORDER;
        item.pszText = text;
        item.cchTextMax = HeaderTextBuffer;
        // A header that doesn't know the column leaves the width at 0, and the column out.
        ::SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(column), AddressOf(item));
        if (item.cxy <= 0) continue;
        out_columns.push_back(column);
        // Only a text in our own buffer is read; a header may point elsewhere.
        text[HeaderTextBuffer - 1] = L'\0';
        if (!out_headerText.empty()) out_headerText += L'\t';
        out_headerText += text;
    }
    return true;
}

bool GetListViewSubItemText(HWND hWnd, int item, int subItem, CString& out_text) {
    out_text.clear();
    if (!::IsWindow(hWnd)) return false;
    CString text;
    for (int capacity = FirstCellBuffer;; capacity *= 2) {
        text.assign(static_cast<std::size_t>(capacity), L'\0');
        LVITEMW request = {};
        request.mask = LVIF_TEXT;
        request.iItem = item;
        request.iSubItem = subItem;
        request.pszText = text.data();
        request.cchTextMax = capacity;
        const LRESULT length = ::SendMessageW(hWnd, LVM_GETITEMTEXTW, static_cast<WPARAM>(item), AddressOf(request));
        if (length < 0) return false;
        // A control that fills every buffer is left at the longest one.
        if (length == capacity - 1 && capacity < LongestItemText) continue;
        text.resize(static_cast<std::size_t>(std::min<LRESULT>(length, capacity - 1)));
        out_text = std::move(text);
        return true;
    }
}

}  // namespace Zorvex::NWindows
