// The text that a window shows.
#pragma once

#include <vector>

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"
#include "Common/UTILITY/WindowKinds.h"

namespace Zorvex {

// Captures the text of a window by the way of its kind. `rcFilter` counts only under CaptureByExactRectangle and
// CaptureClipped; `dwFlags` are CaptureFlags. True if and only if the capture answered S_OK; text and positions (under
// CaptureHighlightInfo) come out in either case.
bool DoCaptureAA(HWND hWnd, enAAType type, const RECT& rcFilter, DWORD dwFlags, std::vector<HighlightInfo>& outPositions, CString& outText);

// The same with a context of the caller's. S_FALSE for a window that gives nothing, and for the kinds that have no
// capture of their own (AA_TYPE_CHROME, AA_TYPE_UWP, unknown numbers).
HRESULT CaptureTextFullTextInWindowAA(CaptureContext& context, HWND hWnd, enAAType type, const RECT& rcFilter, DWORD dwFlags, CString& outText);

// The text of any window through the roles of its elements. `prcFilter` may be null.
HRESULT CaptureTextAA_Generic(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification);

}  // namespace Zorvex
