#include "RuntimeCore/TextCapture/WindowObject.h"

#include "Common/include/ObjectFromWindow.h"

namespace Zorvex {

CComPtr<IAccessible> GetAccessibleWindowObject(HWND hWnd) {
    CComPtr<IDispatch> object;
    CComPtr<IAccessible> acc;
    if (FAILED(ObjectFromWindow(hWnd, OBJID_WINDOW, object)) || FAILED(object.QueryInterface(acc))) return nullptr;
    return acc;
}

}  // namespace Zorvex
