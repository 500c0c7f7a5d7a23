#include "RuntimeCore/AttributeRules.h"

#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "Common/UTILITY/StateToolsAA.h"
#include "RuntimeCore/AAUtilitiesName.h"
#include "RuntimeCore/AAUtilitiesStates.h"
#include "RuntimeCore/AAUtilitiesText.h"
#include "RuntimeCore/IA2Tools.h"
#include "RuntimeCore/ListViewItems.h"
#include "RuntimeCore/RoleTexts.h"
#include "RuntimeCore/RowName.h"
#include "RuntimeCore/UiaProperties.h"

namespace Zorvex::AttributeRules {

namespace {

HRESULT StatusOf(const CString& text) { return text.empty() ? AttributeEmpty : AttributeProduced; }

CString TextIn(const VARIANT& value) { return value.bstrVal ? CString(value.bstrVal, ::SysStringLen(value.bstrVal)) : CString(); }

// What the list-view and row readers answer is a text only if the platform can make it one.
HRESULT TakeText(bool hasResult, CComVariant& value, CString& text) {
    text.clear();
    if (!hasResult || value.vt != VT_BSTR) return AttributeEmpty;
    if (const HRESULT result = ::VariantChangeType(&static_cast<VARIANT&>(value), &static_cast<VARIANT&>(value), 0, VT_BSTR); FAILED(result))
        return result;
    text = TextIn(value);
    return StatusOf(text);
}

HRESULT ReadUiaText(PROPERTYID property, IAccessible* accessible, const VARIANT& child, CString& text) {
    text.clear();
    if (child.vt != VT_I4) return E_INVALIDARG;
    return GetUiaProperty(property, accessible, child.lVal, text);
}

// A text field that can't be edited is a static text.
bool IsStaticText(IAccessible* accessible, LONG role) {
    return role == ROLE_SYSTEM_TEXT && AAUtil::IsReadOnlyContainer(accessible) == true;
}

}  // namespace

HRESULT ReadName(IAccessible* accessible, const VARIANT& child, CString& text) {
    text = AAUtil::GetAAElementName(accessible, child);
    return StatusOf(text);
}

HRESULT ReadRole(IAccessible* accessible, const VARIANT& child, CString& text) {
    text.clear();
    if (!accessible) return AttributeEmpty;
    CComVariant role;
    if (const HRESULT result = accessible->get_accRole(child, &role); FAILED(result)) return result;
    if (role.vt == VT_I4)
        text = AAUtil::GetRoleAsText(IsStaticText(accessible, role.lVal) ? ROLE_SYSTEM_STATICTEXT : role.lVal);
    else if (role.vt == VT_BSTR)
        text = TextIn(role);
    return StatusOf(text);
}

HRESULT ReadAutomationId(IAccessible* accessible, const VARIANT& child, CString& text) {
    return ReadUiaText(UiaAutomationIdProperty, accessible, child, text);
}

HRESULT ReadLabeledBy(IAccessible* accessible, const VARIANT& child, CString& text) {
    return ReadUiaText(UiaLabeledByProperty, accessible, child, text);
}

HRESULT ReadVirtualName(IAccessible* accessible, const VARIANT& child, CString& text) {
    CComVariant value;
    const bool hasResult = GetListViewItemVirtualName(accessible, child, value);
    return TakeText(hasResult, value, text);
}

HRESULT ReadText(HWND window, IAccessible* accessible, const VARIANT& child, IA2Use ia2, CString& text) {
    text = AAUtil::GetAAOrIA2Text(ia2 == IA2Use::Read, window, accessible, child);
    return StatusOf(text);
}

HRESULT ReadHelpText(IAccessible* accessible, const VARIANT& child, CString& text) {
    text = AAUtil::GetAAHelpText(accessible, child);
    return StatusOf(text);
}

HRESULT ReadAaState(IAccessible* accessible, const VARIANT& child, IA2Use ia2, StateFailure onFailure, CString& text) {
    text.clear();
    LONG ia2States = 0;
    if (accessible && ia2 == IA2Use::Read && FAILED(IA2Tools::GetState(accessible, ia2States))) ia2States = 0;
    const HRESULT result = StateTools::GetAAState(text, accessible, child, ia2States);
    if (SUCCEEDED(result)) return StatusOf(text);
    if (onFailure == StateFailure::Warn) LogWarning("GetAAState failed.");
    return result;
}

HRESULT ReadRowName(HWND window, IAccessible* accessible, const VARIANT& child, CString& text) {
    CComVariant value;
    const bool hasResult = GetRowName(window, accessible, child, value);
    return TakeText(hasResult, value, text);
}

}  // namespace Zorvex::AttributeRules
