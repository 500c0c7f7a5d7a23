// Text of Office windows through the object model that they offer.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// S_FALSE, with nothing captured, if the window doesn't offer its object model or one of the objects on the way is
// missing.

// The text of the document, with the line ends that it has there.
HRESULT CaptureTextAA_Word(HWND hWnd, CString& out_text);
// Each cell of the used range of the active sheet that has a text, row by row, on a line of its own. Each text has its
// line end before it, the first one too. At most MostCapturedElements cells are read.
HRESULT CaptureTextAA_Excel(HWND hWnd, CString& out_text);
// Each text of a shape, slide by slide, in the same way. At most MostCapturedElements shapes are read.
HRESULT CaptureTextAA_PowerPoint(HWND hWnd, CString& out_text);

}  // namespace Zorvex
