// The window that an element belongs to.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

// Asks for the element's window. With `allowFallback` the initial window stands in for a window that is missing,
// is a child of the initial one, or has an invisible top-level owner: that is how browsers look from inside.
// Fails, with a null `owner`, for a null element (E_INVALIDARG), when the platform fails (its code), and when
// what came isn't a window (E_FAIL).
HRESULT GetIAccOwnerWindow(HWND hInitialOwner, IAccessible* acc, bool allowFallback, HWND& owner);

// The same, with the initial window as the answer on every failure.
HWND GetIAccOwnerWindow(HWND hInitialOwner, IAccessible* acc, bool allowFallback);

}  // namespace Zorvex::AAUtil
