#include "RuntimeCore/Interaction/DomAriaUtilities.h"

#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComPtr.h"
#include "Common/include/Log.h"
#include "RuntimeCore/AAUtilitiesStates.h"
#include "RuntimeCore/IA2Tools.h"

namespace Zorvex {

namespace DomAriaUtilities {

HRESULT ScrollIntoView(IAccessible* accessible, const VARIANT& child) {
    // A call into the page may let go of the element.
    const CComPtr<IAccessible> pAA(accessible);
    bool bIsVisible = false;
    if (const HRESULT result = AAUtil::HasAAState(pAA, child, 0, STATE_SYSTEM_OFFSCREEN, bIsVisible); FAILED(result))
        return CallFailed("AAUtil::HasAAState(pAA, varChild, 0, STATE_SYSTEM_OFFSCREEN, bIsVisible)", result,
                          "Error getting AA State STATE_SYSTEM_OFFSCREEN");
    if (bIsVisible) return S_OK;
    if (const HRESULT result = IA2Tools::ScrollTo(pAA); FAILED(result)) {
        LogWarning("IAccessible2::scrollTo() failed, hResult=0x%x", result);
        return result;
    }
    const HRESULT result = AAUtil::WaitForState(pAA, child, 0, STATE_SYSTEM_OFFSCREEN, bIsVisible);
    LogVerbose("WaitForState(STATE_SYSTEM_OFFSCREEN=off) hResult=0x%x, bIsVisible=%d", result, static_cast<int>(bIsVisible));
    return result;
}

}  // namespace DomAriaUtilities

namespace {

bool DomAriaContainerSetFocus(HWND window) {
    const HWND hWnd = ::GetParent(window);
    if (!NWindows::IsCefBrowserWindow(hWnd)) return true;
    LogVerbose("JCef, do ::SetFocus() on CefBrowserWindow hWnd=0x%p to get focus from Java FocusManager", hWnd);
    return ::SetFocus(hWnd) != nullptr;
}

}  // namespace

bool DomAriaSetFocus(HWND window, IAccessible* container, const VARIANT& accChildId) {
    const CComPtr<IAccessible> accContainer(container);
    if (!accContainer) return false;
    if (!DomAriaContainerSetFocus(window)) return false;
    if (const HRESULT result = accContainer->accSelect(SELFLAG_TAKEFOCUS, accChildId); FAILED(result)) {
        CallFailed("accContainer->accSelect(SELFLAG_TAKEFOCUS, accChildId)", result, "DOM-ARIA accSelect(SELFLAG_TAKEFOCUS) failed");
        return false;
    }
    bool out_isFocused = false;
    const HRESULT result = AAUtil::WaitForState(accContainer, accChildId, STATE_SYSTEM_FOCUSED, STATE_SYSTEM_OFFSCREEN, out_isFocused);
    if (FAILED(result)) {
        // The blanks before the commas belong to the text.
        CallFailed("AAUtil::WaitForState(accContainer, accChildId, STATE_SYSTEM_FOCUSED , STATE_SYSTEM_OFFSCREEN , out_isFocused)",
                   result, "Wait for AA state FOCUSED & !OFFSCREEN failed");
        return false;
    }
    return out_isFocused;
}

}  // namespace Zorvex
