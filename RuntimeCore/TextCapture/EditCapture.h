// The text of an edit field, as the field answers it to a window message.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// S_FALSE, with `out_text` as it was, for an empty field. A field that claims more than LongestCapturedText is cut
// there.
HRESULT CaptureTextAA_Edit(HWND hWnd, CString& out_text);

}  // namespace Zorvex
