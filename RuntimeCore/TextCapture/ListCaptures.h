// Window captures of list boxes, list views, combo boxes and tree views.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

// `prcFilter` may be null. With `bUseRectangleForIdentification` it names an element, whose text alone is taken; if it
// names none, it stays in force as a clip. S_FALSE if the window has no accessible object.
HRESULT CaptureTextAA_ListBox(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification);
HRESULT CaptureTextAA_ListView(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification);
HRESULT CaptureTextAA_ComboBox(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification);
// Items are indented by tabs to their level, unless a filter is in force.
HRESULT CaptureTextAA_TreeView(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification);

}  // namespace Zorvex
