#include "RuntimeCore/Interaction/ItemsContainer.h"

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "RuntimeCore/AAUtilitiesStates.h"
#include "RuntimeCore/Interaction/WindowFrame.h"

namespace Zorvex {

namespace {

const CComVariant& Self() {
    static const CComVariant self(CHILDID_SELF);
    return self;
}

LONG RoleOf(IAccessible* accessible) {
    CComVariant role;
    return accessible && SUCCEEDED(accessible->get_accRole(Self(), &role)) && role.vt == VT_I4 ? role.lVal : 0;
}

}  // namespace

bool IsMultiSelectable(IAccessible* accessible, const VARIANT& child) {
    bool is = false;
    return SUCCEEDED(AAUtil::HasAAState(accessible, child, STATE_SYSTEM_MULTISELECTABLE, 0, is)) && is;
}

ItemsContainer::ItemsContainer(HWND window, IAccessible* accessible)
    : m_window(window), m_accessible(accessible), m_role(RoleOf(accessible)) {}

bool ItemsContainer::IsChromiumList() const { return m_role == ROLE_SYSTEM_LIST && NWindows::IsChromeWidgetClass(m_window); }

bool ItemsContainer::IsMultiSelectable() const { return Zorvex::IsMultiSelectable(m_accessible, Self()); }

bool GetSelectableAccElementFromWindow(HWND& window, CComPtr<IAccessible>& container) {
    if (!::IsWindow(window)) {
        LogError("GetSelectableAccElementFromWindow: Invalid input param");
        return false;
    }
    bool renewsWindow = false;
    if (!container) {
        if (FAILED(ObjectFromWindow(window, OBJID_WINDOW, container))) {
            LogError("GetSelectableAccElementFromWindow: AccessibleObjectFromWindow failed");
            return false;
        }
        renewsWindow = true;
    }
    if (EnterFrame(container)) renewsWindow = true;
    if (!container) {
        LogError("GetSelectableAccElementFromWindow: output pAccElem is null");
        return false;
    }
    if (!renewsWindow) return true;
    HWND owner = nullptr;
    if (FAILED(::WindowFromAccessibleObject(container, &owner))) owner = nullptr;
    window = owner;
    return ::IsWindow(window) != FALSE;
}

bool HasMultipleSelectionSupport(const ItemsContainer& container) {
    if (!container.Accessible()) {
        LogError("HasMultipleSelectionSupport: NULL arg");
        return false;
    }
    CComVariant raw;
    if (FAILED(AAObjectWrapper::GetChildAtIndex(container.Accessible(), 0, &raw))) return false;
    const AAObjectWrapper child = AAObjectWrapper::FromChild(container.Accessible(), std::move(raw));
    return (child.IsValid() && IsMultiSelectable(child.container, child.childId)) || container.IsMultiSelectable();
}

}  // namespace Zorvex
