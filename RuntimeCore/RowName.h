// The name of a table row: the text of its row header, or of its first cell.
#pragma once

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Reads the text of a cell on one line into `out_text`. False if there is none to give.
using CellTextReader = bool (*)(HWND hWnd, const AAObjectWrapper& cell, CString& out_text);

// The cell text reader is supplied by text capture, which stands above this file. Null takes it away. Answers the
// one that was there before.
CellTextReader SetCellTextReader(CellTextReader reader) noexcept;

// `out_variant` becomes the name as VT_BSTR. False, with `out_variant` as it was: invalid arguments, an element
// that is no row, a row without row header and cell, or a text that can't be read, also for want of a reader.
bool GetRowName(HWND hWnd, IAccessible* acc, const VARIANT& child, CComVariant& out_variant);

}  // namespace Zorvex
