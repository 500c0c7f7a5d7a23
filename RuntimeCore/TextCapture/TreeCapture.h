// The text of a tree item with the items under it, or of a whole tree.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

// An outline item gives its name and, on lines of their own, those of the items that follow at a deeper level, indented
// by tabs; an outline gives all its window's items. `out_text` is replaced. E_INVALIDARG for a null element or a child
// id that is no VT_I4; the code of a role that can't be read; E_FAIL for an item without name or level; S_FALSE for any
// other role and for a window without accessible object.
HRESULT CaptureTreeElementText(CaptureContext& context, HWND hWnd, IAccessible* acc, const VARIANT& child, CString& out_text);

}  // namespace Zorvex
