#include "RuntimeCore/Selectors/Search/AaAttributeAccessPolicy.h"

#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"
#include "RuntimeCore/AttributeRules.h"
#include "RuntimeCore/Selectors/Values/AttributeNames.h"

namespace Zorvex::Search {

using namespace AttributeRules;

CString AaAttributeAccessPolicy::GetValueImpl(std::wstring_view name) {
    IAccessible* accessible = m_element.accessible.p;
    const VARIANT& child = m_element.child;
    CString text;
    if (!accessible) {
        LogError("AaAttributeAccessor::GetValue: Invalid element state. m_accessible is null");
        return text;
    }
    // What a rule fails with says nothing that a search could use: an empty text compares like any other.
    if (name == AttributeNames::Role.Text()) {
        ReadRole(accessible, child, text);
    } else if (name == AttributeNames::Name.Text()) {
        ReadName(accessible, child, text);
    } else if (name == AttributeNames::Automationid.Text()) {
        ReadAutomationId(accessible, child, text);
    } else if (name == AttributeNames::Labeledby.Text()) {
        ReadLabeledBy(accessible, child, text);
    } else if (name == AttributeNames::Virtualname.Text()) {
        ReadVirtualName(accessible, child, text);
    } else if (name == AttributeNames::Text.Text()) {
        ResolveOwnerWindow();
        ReadText(m_ownerWindow, accessible, child, m_isBrowserWindow ? IA2Use::Read : IA2Use::Ignore, text);
    } else if (name == AttributeNames::HelpText.Text()) {
        ReadHelpText(accessible, child, text);
    } else if (name == AttributeNames::Aastate.Text()) {
        ReadAaState(accessible, child, IA2Use::Read, StateFailure::Warn, text);
    } else if (name == AttributeNames::RowName.Text()) {
        ResolveOwnerWindow();
        ReadRowName(m_ownerWindow, accessible, child, text);
    } else {
        LogError("AaAttributeAccessor::GetValue: Invalid attribute name '%ls'", name);
    }
    return text;
}

std::int64_t AaAttributeAccessPolicy::GetNumberValueImpl(std::wstring_view name) {
    LogError("AaAttributeAccessor::GetValue: Invalid attribute name '%ls'", name);
    return -1;
}

void AaAttributeAccessPolicy::ResolveOwnerWindow() {
    if (m_ownerWindow) return;
    m_ownerWindow = m_element.ownerWindow;
    m_ownerWindow.Renew(m_element.accessible.p);
    m_isBrowserWindow = NWindows::IsChromiumWindow(m_ownerWindow) || NWindows::IsFirefoxWindow(m_ownerWindow);
}

}  // namespace Zorvex::Search
