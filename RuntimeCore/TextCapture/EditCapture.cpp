#include "RuntimeCore/TextCapture/EditCapture.h"

#include <algorithm>

#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

HRESULT CaptureTextAA_Edit(HWND hWnd, CString& out_text) {
    const LRESULT length = ::SendMessageW(hWnd, WM_GETTEXTLENGTH, 0, 0);
    if (length < 1) return S_FALSE;
    const std::size_t units = static_cast<std::size_t>(std::min<LRESULT>(length, static_cast<LRESULT>(LongestCapturedText)));
    CString text(units + 1, L'\0');
    const LRESULT copied = ::SendMessageW(hWnd, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    if (copied > 0) {
        text.resize(static_cast<std::size_t>(std::min<LRESULT>(copied, static_cast<LRESULT>(units))));
        out_text = std::move(text);
    }
    return S_OK;
}

}  // namespace Zorvex
