// Text of Internet Explorer documents through their document objects.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

// The visible text of the document in the window, or of the innermost document in the rectangle. `prcFilter` null or
// empty: the document of the window. A failure is negative, and leaves the capture to CaptureTextAA_IE.
HRESULT CaptureDocumentTextIE(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText);

// The fallback: the text of the document's body. S_FALSE or a failure if there is none to be had.
HRESULT CaptureTextAA_IE(HWND hWnd, CString& out_text);

}  // namespace Zorvex
