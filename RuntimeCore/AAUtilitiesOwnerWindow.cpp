#include "RuntimeCore/AAUtilitiesOwnerWindow.h"

#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"

namespace Zorvex::AAUtil {

namespace {

bool IsBetterServedByInitialOwner(HWND hInitialOwner, HWND found) {
    return !found || ::IsChild(hInitialOwner, found) || NWindows::HasInvisibleTopLevel(found);
}

}  // namespace

HRESULT GetIAccOwnerWindow(HWND hInitialOwner, IAccessible* acc, bool allowFallback, HWND& owner) {
    owner = nullptr;
    if (!acc) return E_INVALIDARG;
    HWND found = nullptr;
    const HRESULT result = ::WindowFromAccessibleObject(acc, &found);
    LogVerbose("hInitialOwnerWnd: %p, out_hRes: %x out_hwndOwner: %p bAllowFallbackToInitialOwner: %d", hInitialOwner, result, found,
               allowFallback);
    if (FAILED(result)) return result;
    if (allowFallback && IsBetterServedByInitialOwner(hInitialOwner, found)) found = hInitialOwner;
    // Another success than S_OK counts as no answer.
    if (result != S_OK || !::IsWindow(found)) return E_FAIL;
    owner = found;
    return S_OK;
}

HWND GetIAccOwnerWindow(HWND hInitialOwner, IAccessible* acc, bool allowFallback) {
    HWND owner = nullptr;
    return SUCCEEDED(GetIAccOwnerWindow(hInitialOwner, acc, allowFallback, owner)) ? owner : hInitialOwner;
}

}  // namespace Zorvex::AAUtil
