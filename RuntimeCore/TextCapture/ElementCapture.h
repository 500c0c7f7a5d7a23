// The text that an element shows, with what stands below it.
#pragma once

#include <span>
#include <vector>

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"
#include "Common/UTILITY/WindowKinds.h"

namespace Zorvex {

// The whole text of one element; `hWnd` is its window. `dwFlags` are CaptureFlags, of which the rectangles mean
// nothing here. True unless the capture failed: an element without text is a success. Positions come out under
// CaptureHighlightInfo.
bool AAGetFullTextFromElement(HWND hWnd, IAccessible* acc, const VARIANT& child, DWORD dwFlags, std::vector<HighlightInfo>& outPositions,
                              CString& outText);

// The same with a context of the caller's, by the way of the window's kind. Windows that are read as a whole (edit
// fields, documents) give all their text for any of their elements.
HRESULT CaptureFullTextInAA(CaptureContext& context, HWND hWnd, IAccessible* acc, const VARIANT& child, DWORD dwFlags, CString& outText);

// The line of the element and those of the elements below it with one of the roles. E_INVALIDARG for a null element or
// a child id that is no VT_I4; the code of a role that can't be read; S_FALSE if the children can't be read.
HRESULT CaptureElementText(CaptureContext& context, std::span<const LONG> roles, HWND hWnd, IAccessible* acc, const VARIANT& child,
                           CString& outText, enAAType type);

}  // namespace Zorvex
