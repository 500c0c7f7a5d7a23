// The accessible object of a window as a whole.
#pragma once

#include "Common/include/CComPtr.h"
#include "Common/include/ObjectFromWindow.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Success always comes with an object: E_FAIL when the window gives none under a success.
inline HRESULT GetWindowAccessible(HWND hWnd, CComPtr<IAccessible>& out_object) {
    out_object.Release();
    const HRESULT result = ObjectFromWindow(hWnd, OBJID_WINDOW, out_object);
    if (FAILED(result)) return result;
    return out_object ? S_OK : E_FAIL;
}

}  // namespace Zorvex
