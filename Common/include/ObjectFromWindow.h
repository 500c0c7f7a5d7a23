// An object of a window, asked for through Active Accessibility.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Gives the object with the published id (OBJID_WINDOW, OBJID_CLIENT, OBJID_NATIVEOM, ...) as the interface asked for.
// The result is the platform's own: the object may be null after a success, as a careless server makes it.
template <class Interface>
HRESULT ObjectFromWindow(HWND hWnd, LONG objectId, CComPtr<Interface>& out_object) {
    out_object.Release();
    return ::AccessibleObjectFromWindow(hWnd, static_cast<DWORD>(objectId), IidOf<Interface>(), reinterpret_cast<void**>(&out_object));
}

}  // namespace Zorvex
