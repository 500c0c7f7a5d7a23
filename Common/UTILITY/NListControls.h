// The messages of list boxes, list views and their headers. The control answers for itself and may answer
// anything: lengths and counts are bounded here before they size something.
#pragma once

#include <vector>

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::NWindows {

// The longest item text that is read, in UTF-16 units. A control that claims more is broken, and a cell that
// still fills a buffer of this size is cut there.
inline constexpr int LongestItemText = 1 << 20;
// A header that claims more columns is broken.
inline constexpr int MostListViewColumns = 10000;

// The text of a list box item. False, with an error in the log and `out_text` empty, if the box doesn't give it.
bool GetListBoxItem(HWND hWnd, int index, CString& out_text);

// The header window of a list view; null if there is none.
HWND GetListViewHeader(HWND hWnd);
bool HasVisibleListViewHeader(HWND hWnd);
// Columns of the header; -1 without a header or for a count that can't be.
int GetListViewColumnCount(HWND hWnd);

// The visible columns (those with a width) by display order: their indexes, and their texts joined by tabs. False,
// with both outputs empty, without a header.
bool GetListViewColumnOrder(HWND hWnd, std::vector<int>& out_columns, CString& out_headerText);

// The whole text of a cell; an empty cell is a success. False, with `out_text` empty, for an invalid window or a
// refusal.
bool GetListViewSubItemText(HWND hWnd, int item, int subItem, CString& out_text);

}  // namespace Zorvex::NWindows
