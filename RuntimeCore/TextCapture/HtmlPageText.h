// The visible text of a prepared page.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/HtmlPage.h"

namespace Zorvex {

// Reads the text of the page's body with what its fields show in their places, and the text of each frame on lines of
// its own in the frame's place. Under a filter, in screen pixels, only the words and fields that meet it; it may be null.
// Lines end with "\r\n". A page that can't be read, and one without an end, is a failure without text; a frame that
// can't be read is left out.
HRESULT ReadPageText(const HtmlPage& page, const RECT* prcFilter, CString& out_text);

// All line ends as "\r\n".
CString WithWindowsLineEnds(const CString& text);

}  // namespace Zorvex
