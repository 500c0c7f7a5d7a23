#include "RuntimeCore/Interaction/DomAriaCombo.h"

#include <vector>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "Common/include/VariantEquals.h"
#include "RuntimeCore/AAUtilitiesStates.h"
#include "RuntimeCore/AccChildReaders.h"
#include "RuntimeCore/Interaction/DomAriaUtilities.h"

namespace Zorvex {

namespace {

const VARIANT& Self() {
    static const CComVariant self(CHILDID_SELF);
    return self;
}

bool IsClosedComboBox(IAccessible* accessible) {
    if (GetAccRole(accessible, Self()) != ROLE_SYSTEM_COMBOBOX) return false;
    CComBSTR action;
    return SUCCEEDED(accessible->get_accDefaultAction(Self(), &action)) && BstrEquals(action, CComBSTR(L"open"));
}

}  // namespace

DomAriaComboBox::DomAriaComboBox(HWND window, IAccessible* accessible) : m_window(window), m_combobox(accessible) {}

std::optional<DomAriaComboBox> DomAriaComboBox::CreateFromAccessible(HWND window, IAccessible* accessible, bool isDomAria) {
    if (!accessible) {
        LogError("Provided IAccessible is null.");
        return std::nullopt;
    }
    if (isDomAria && IsClosedComboBox(accessible)) return DomAriaComboBox(window, accessible);
    LogVerbose("Provided element could not be identified as a known ComboBox.");
    return std::nullopt;
}

HRESULT DomAriaComboBox::HasOptionsList(bool& hasOptionsList) {
    hasOptionsList = false;
    const std::vector<AAObjectWrapper> children = GetAccChildren(m_combobox, ROLE_SYSTEM_LIST);
    if (!children.empty()) {
        // Asked of the container on purpose, which is the combo box itself where the list is a simple element.
        LONG n = 0;
        if (const HRESULT result = children[0].container->get_accChildCount(&n); FAILED(result))
            return CallFailed("children[0].GetContainer()->get_accChildCount(&n)", result,
                              "%s: Child list found. Could not get its children count.", "Zorvex::DomAriaComboBox::HasOptionsList");
        if (n > 0) {
            LogVerbose("Non-empty child list found. ComboBox has options list.");
            hasOptionsList = true;
            return S_OK;
        }
    }
    LogVerbose("ComboBox options list is missing.");
    return S_OK;
}

HRESULT DomAriaComboBox::TriggerOptionsListLoad() {
    bool hasOptionsList = false;
    if (const HRESULT result = HasOptionsList(hasOptionsList); FAILED(result))
        return CallFailed("HasOptionsList(hasOptionsList)", result, "%s: Testing for already loaded options list failed.",
                          "Zorvex::DomAriaComboBox::TriggerOptionsListLoad");
    if (hasOptionsList) {
        LogVerbose("Chromium ComboBox with options already loaded detected. Will do nothing.");
        return S_OK;
    }
    return ExpandItems();
}

HRESULT DomAriaComboBox::ExpandItems() {
    constexpr const char* name = "Zorvex::DomAriaComboBox::ExpandItems";
    LogVerbose("start.");
    bool isCollapsed = false;
    if (const HRESULT result = AAUtil::HasAAState(m_combobox, Self(), STATE_SYSTEM_COLLAPSED, STATE_SYSTEM_EXPANDED, isCollapsed);
        FAILED(result))
        return CallFailed("AAUtil::HasAAState(m_combobox, varSelf, STATE_SYSTEM_COLLAPSED, STATE_SYSTEM_EXPANDED, isCollapsed)", result,
                          "%s: could not get initial ComboBox state", name);
    if (!isCollapsed) {
        LogVerbose("ComboBox already expanded - early exit.");
        return S_OK;
    }
    if (const HRESULT result = DomAriaUtilities::ScrollIntoView(m_combobox, Self()); FAILED(result))
        return CallFailed("DomAriaUtilities::ScrollIntoView(m_combobox, varSelf)", result, "%s: ScrollIntoView ComboBox failed.", name);
    if (const HRESULT result = m_combobox->accDoDefaultAction(Self()); FAILED(result))
        return CallFailed("m_combobox->accDoDefaultAction(varSelf)", result, "%s: could not trigger the ComboBox expand.", name);
    bool isExpanded = false;
    if (const HRESULT result = AAUtil::WaitForState(m_combobox, Self(), STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED, isExpanded);
        FAILED(result))
        return CallFailed("AAUtil::WaitForState(m_combobox, varSelf, STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED, isExpanded)", result,
                          "%s: waiting for the expanded Chromium ComboBox failed.", name);
    if (!isExpanded) return ExpectationNotMet("isExpanded", "%s: ComboBox state is still collapsed. Function failed.", name);
    LogVerbose("end. ComboBox was expanded!");
    return S_OK;
}

HRESULT DomAriaComboBox::CollapseItems() {
    constexpr const char* name = "Zorvex::DomAriaComboBox::CollapseItems";
    bool isExpanded = false;
    if (const HRESULT result = AAUtil::HasAAState(m_combobox, Self(), STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED, isExpanded);
        FAILED(result))
        return CallFailed("AAUtil::HasAAState(m_combobox, varSelf, STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED, isExpanded)", result,
                          "%s: could not get initial ComboBox state", name);
    if (!isExpanded) {
        LogVerbose("Chromium ComboBox already collapsed itself. Nothing to do.");
        return S_OK;
    }
    LogVerbose("Chromium ComboBox still open. Will trigger the collapse.");
    if (const HRESULT result = m_combobox->accDoDefaultAction(Self()); FAILED(result))
        return CallFailed("m_combobox->accDoDefaultAction(varSelf)", result,
                          "%s: could not collapse previously expanded ComboBox.", name);
    return S_OK;
}

}  // namespace Zorvex
