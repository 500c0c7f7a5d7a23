// Text of web pages through IAccessible2: the page of a Chromium widget in document order, joined to lines by the
// place of its pieces.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

namespace IA2Tools {

// `prcFilter` may be null. `out_text` is empty on every failure: a partial page isn't returned.
HRESULT GetHtmlTextContent(IAccessible* pAccElem, bool bIgnoreHidden, bool bIgnoreOffscreen, const RECT* prcFilter, CString& out_text);

}  // namespace IA2Tools

// The text of a Chromium widget's client area.
HRESULT CaptureTextAA_IA2Html(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& out_text, bool bUseRectangleForIdentification);

}  // namespace Zorvex
