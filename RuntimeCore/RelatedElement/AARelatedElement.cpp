#include "RuntimeCore/RelatedElement/AARelatedElement.h"

#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "RuntimeCore/AAUtilitiesText.h"

namespace Zorvex {

namespace {

constexpr int MaximumHeight = 128;

bool HasRole(IAccessible* object, LONG role) {
    CComVariant actual;
    return SUCCEEDED(object->get_accRole(CComVariant(CHILDID_SELF), &actual)) && actual.vt == VT_I4 && actual.lVal == role;
}

// Whether the walk may go on to the parent. An unknown process is only complained about.
bool IsInThisProcess(IAccessible* parent, int height) {
    HWND window = nullptr;
    DWORD pid = 0;
    if (FAILED(::WindowFromAccessibleObject(parent, &window)) || !window || !::GetWindowThreadProcessId(window, &pid)) {
        LogWarning(
            "Failed to get the PID of the parent IAccessible at height %d. Can't ensure that process boundaries aren't crossed.",
            height);
        return true;
    }
    if (pid == ::GetCurrentProcessId()) return true;
    LogWarning("Ancestor at height %d crosses the process boundary. Current PID: %d, Ancestor PID: %d", height,
               ::GetCurrentProcessId(), pid);
    return false;
}

}  // namespace

CComPtr<IAccessible> FindAncestorWithRole(IAccessible* object, LONG role) {
    LogVerbose("Searching for ancestor");
    if (!object) {
        LogError("Null element");
        return nullptr;
    }
    CComPtr<IAccessible> current = object;
    int height = 0;
    for (; current && height < MaximumHeight; ++height) {
        if (HasRole(current, role)) {
            LogVerbose("Found ancestor with role 0x%x at height %d", role, height);
            return current;
        }
        CComPtr<IAccessible> parent = AAUtil::GetParent(current);
        if (parent && parent.p == current.p) {
            LogWarning("The parent at height %d is the same as the child. Stopping the ancestor search.", height);
            break;
        }
        if (parent && !IsInThisProcess(parent, height)) break;
        current = std::move(parent);
    }
    LogVerbose("Found NO ancestors with requested roles up to height %d", height);
    return nullptr;
}

}  // namespace Zorvex
