// The text of a cell, and the name of a row by it.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// The captured text of the element; empty where there is none. A single line loses its line end; a text of several
// lines keeps all of them. `bFlatten` makes one line of it, with blanks in the place of line ends and no white space
// around.
void GetCellText(CString& out_text, HWND hWnd, IAccessible* acc, const VARIANT& child, bool bFlatten);

}  // namespace Zorvex
