// The kinds of window that text capture and list views treat apart.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

// The numbers travel in requests. 11 is unused.
enum enAAType : int {
    AA_TYPE_GENERIC = 0,
    AA_TYPE_IE = 1,
    AA_TYPE_WORD = 2,
    AA_TYPE_EDIT = 3,
    AA_TYPE_RICHEDIT = 4,
    AA_TYPE_LISTBOX = 5,
    AA_TYPE_LISTVIEW = 6,
    AA_TYPE_COMBOBOX = 7,
    AA_TYPE_TREEVIEW = 8,
    AA_TYPE_EXCEL = 9,
    AA_TYPE_POWERPOINT = 10,
    AA_TYPE_CHROME = 12,
    AA_TYPE_UWP = 13,
    AA_TYPE_CHROME_WIDGET = 14,
};

// By the window's real class, case-sensitively. Anything unknown, and an invalid window, is generic.
enAAType GetAASpecialType(HWND hWnd);

}  // namespace Zorvex
