// The triple that stands for an element between lookups: the window it was found in, the accessible object that
// answers for it, and the child id under which that object knows it.
#pragma once

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Owns its reference and its variant. Copying takes a reference of its own; see CComVariant for the one failure.
struct AAElement {
    HWND hWnd = nullptr;
    CComPtr<IAccessible> spAcc;
    CComVariant child{CHILDID_SELF};

    // Says nothing about the window or the object still being alive.
    bool IsValid() const noexcept { return hWnd != nullptr && spAcc.p != nullptr && child.vt == VT_I4; }
    // A window without an element in it.
    bool NamesWindow() const noexcept {
        return hWnd != nullptr && spAcc.p == nullptr && child.vt == VT_I4 && child.lVal == CHILDID_SELF;
    }
};

}  // namespace Zorvex
