#include "RuntimeCore/TextCapture/WindowObject.h"

namespace Zorvex {

CComPtr<IAccessible> GetAccessibleWindowObject(HWND hWnd) {
    CComPtr<IDispatch> object;
    const HRESULT result =
        ::AccessibleObjectFromWindow(hWnd, static_cast<DWORD>(OBJID_WINDOW), IidOf<IDispatch>(), reinterpret_cast<void**>(&object));
    CComPtr<IAccessible> acc;
    if (FAILED(result) || !object || FAILED(object.QueryInterface(acc))) return nullptr;
    return acc;
}

}  // namespace Zorvex
