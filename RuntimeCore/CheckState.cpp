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

}  // namespace Zorvex::AAUtil
