#include "RuntimeCore/CheckState.h"

#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"

namespace Zorvex::AAUtil {

bool IsCheckableElement(IAccessible* spAcc, const VARIANT& varChild) {
    CComVariant role;
    if (!spAcc || FAILED(spAcc->get_accRole(varChild, &role)) || role.vt != VT_I4) {
        LogError("spAcc->get_accRole failed");
        return false;
    }
    return role.lVal == ROLE_SYSTEM_CHECKBUTTON || role.lVal == ROLE_SYSTEM_RADIOBUTTON;
}

HRESULT GetIsChecked(IAccessible* spAcc, const VARIANT& varChild, bool& checked) {
    checked = false;
    if (!spAcc || varChild.vt != VT_I4) {
        LogError("AAUtil::GetIsChecked: Invalid arguments in CWin32BaseElement::GetIsCheckedUsingAA");
        return E_INVALIDARG;
    }
    if (!IsCheckableElement(spAcc, varChild)) {
        LogVerbose("Element is not checkable");
        return NotCheckable;
    }
    CComVariant state;
    if (const HRESULT result = spAcc->get_accState(varChild, &state); FAILED(result)) {
        LogError("AAUtil::GetIsChecked: spAcc->get_accState in CWin32BaseElement::GetIsCheckedUsingAA");
        return result;
    }
    if (state.vt != VT_I4) {
        LogError("AAUtil::GetIsChecked: Invalid variant type in CWin32BaseElement::GetIsCheckedUsingAA");
        return E_UNEXPECTED;
    }
    checked = (state.lVal & STATE_SYSTEM_CHECKED) != 0;
    return S_OK;
}

HRESULT SetIsChecked(IAccessible* spAcc, const VARIANT& varChild, bool wanted) {
    if (!spAcc) {
        LogError("spAcc is NULL");
        return E_FAIL;
    }
    CComVariant role;
    if (FAILED(spAcc->get_accRole(varChild, &role)) || role.vt != VT_I4) {
        LogError("spAcc->get_accRole failed");
        return E_FAIL;
    }
    // A radio button that isn't set is refused as well: the question is wrong, whatever the answer would be.
    if (role.lVal == ROLE_SYSTEM_RADIOBUTTON && !wanted) {
        LogError("Cannot un-check a radio; check another radio in the same group instead;");
        return NotCheckable;
    }
    if (role.lVal != ROLE_SYSTEM_CHECKBUTTON && role.lVal != ROLE_SYSTEM_RADIOBUTTON) {
        LogError("Not a checkable element");
        return NotCheckable;
    }
    CComVariant state;
    if (const HRESULT result = spAcc->get_accState(varChild, &state); FAILED(result)) {
        LogError("spAcc->get_accState");
        return result;
    }
    if (state.vt != VT_I4) {
        LogError("Invalid variant type");
        return E_FAIL;
    }
    if (wanted == ((state.lVal & STATE_SYSTEM_CHECKED) != 0)) return S_OK;
    if (const HRESULT result = spAcc->accDoDefaultAction(varChild); FAILED(result)) {
        LogError("spAcc->accDoDefaultAction failed");
        return result;
    }
    return S_OK;
}

}  // namespace Zorvex::AAUtil
