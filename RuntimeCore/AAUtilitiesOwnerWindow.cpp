#include "RuntimeCore/AAUtilitiesOwnerWindow.h"

#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"

namespace Zorvex::AAUtil {

namespace {

bool IsBetterServedByInitialOwner(HWND hInitialOwner, HWND found) {
    return !found || ::IsChild(hInitialOwner, found) || NWindows::HasInvisibleTopLevel(found);
}

// The window before it is checked, and the platform's result.
HRESULT AskForWindow(HWND hInitialOwner, IAccessible* acc, bool allowFallback, HWND& found) {
    if (!acc) return E_INVALIDARG;
    const HRESULT result = ::WindowFromAccessibleObject(acc, &found);
    LogVerbose(LocatedFormat<char>("hInitialOwnerWnd: %p, out_hRes: %x out_hwndOwner: %p bAllowFallbackToInitialOwner: %d", __builtin_FILE(),
                                   "GetIAccOwnerWindow"),
               hInitialOwner, result, found, allowFallback);
    if (SUCCEEDED(result) && allowFallback && IsBetterServedByInitialOwner(hInitialOwner, found)) found = hInitialOwner;
    return result;
}

}  // namespace

HRESULT GetIAccOwnerWindow(HWND hInitialOwner, IAccessible* acc, bool allowFallback, HWND& owner) {
    owner = nullptr;
    HWND found = nullptr;
    const HRESULT result = AskForWindow(hInitialOwner, acc, allowFallback, found);
    if (FAILED(result)) return result;
    // Another success than S_OK counts as no answer.
    if (result != S_OK || !::IsWindow(found)) return E_FAIL;
    owner = found;
    return S_OK;
}

HWND GetIAccOwnerWindow(HWND hInitialOwner, IAccessible* acc, bool allowFallback) {
    HWND found = nullptr;
    if (AskForWindow(hInitialOwner, acc, allowFallback, found) != S_OK) return hInitialOwner;
    // The initial owner is the answer either way; a walk asks this for every element.
    return found == hInitialOwner || !::IsWindow(found) ? hInitialOwner : found;
}

}  // namespace Zorvex::AAUtil
