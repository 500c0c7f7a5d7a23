#include "RuntimeCore/IA2ToolsHtml.h"

#include "Common/include/CComVariant.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "RuntimeCore/IA2ToolsAttributes.h"

namespace Zorvex::IA2Tools {

HRESULT IsAccElemHtml(IAccessible* pAccElem, bool& out_bIsHtml) {
    out_bIsHtml = false;
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::IsAccElemHtml IAccessible pointer is null");
    CComVariant varRole;
    HRESULT result = pAccElem->get_accRole(CComVariant(CHILDID_SELF), &varRole);
    if (FAILED(result))
        return CallFailed("pAccElem->get_accRole(CComVariant(CHILDID_SELF), &varRole)", result,
                          "IA2Tools::IsAccElemHtml pAccElem->get_accRole(...) failed");
    if (varRole.vt != VT_I4 || varRole.lVal != ROLE_SYSTEM_STATICTEXT) {
        out_bIsHtml = true;
        return S_OK;
    }
    CString strTag;
    result = GetAttribute(pAccElem, IA2_ATTRIBUTE_TAG, strTag);
    if (FAILED(result))
        return CallFailed("IA2Tools::GetAttribute(pAccElem, IA2_ATTRIBUTE_TAG, strTag)", result,
                          "IA2Tools::IsAccElemHtml GetAttribute(\"tag\") failed");
    out_bIsHtml = !strTag.empty();
    return S_OK;
}

HRESULT GetAccElemHtml(IAccessible* pAccElem, CComPtr<IAccessible>& out_spAccHtml) {
    out_spAccHtml.Release();
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetAccElemHtml IAccessible pointer is null");
    bool bIsHtml = false;
    HRESULT result = IsAccElemHtml(pAccElem, bIsHtml);
    if (FAILED(result))
        return CallFailed("IA2Tools::IsAccElemHtml(pAccElem, bIsHtml)", result, "IA2Tools::GetAccElemHtml IsAccElemHtml() failed");
    if (bIsHtml) return S_OK;

    CComPtr<IDispatch> spDispParent;
    result = pAccElem->get_accParent(&spDispParent);
    if (FAILED(result) || !spDispParent) {
        CallFailed("pAccElem->get_accParent(&spDispParent)", result, "IA2Tools::GetAccElemHtml pAccElem->get_accParent(...) failed");
        return FailureOrEFail(result);
    }
    result = spDispParent.QueryInterface(out_spAccHtml);
    if (FAILED(result) || !out_spAccHtml) {
        CallFailed("spDispParent->QueryInterface(&out_spAccHtml)", result, "IA2Tools::GetAccElemHtml Cannot get parent IAccessible");
        return FailureOrEFail(result);
    }
    result = IsAccElemHtml(out_spAccHtml, bIsHtml);
    if (FAILED(result))
        return CallFailed("IA2Tools::IsAccElemHtml(out_spAccHtml, bIsHtml)", result,
                          "IA2Tools::GetAccElemHtml IsAccElemHtml(parent IAccessible) failed");
    if (!bIsHtml) return E_FAIL;
    LogVerbose("IA2Tools::GetAccElemHtml End, found AA element corresponding to the HTML element");
    return S_OK;
}

}  // namespace Zorvex::IA2Tools
