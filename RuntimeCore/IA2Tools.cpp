#include "RuntimeCore/IA2Tools.h"

#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"

namespace Zorvex::IA2Tools {

namespace {

// Gets the interface for one call; `failureText` says for whom it couldn't be had.
HRESULT RequireIA2(IAccessible* pAccElem, CComPtr<IAccessible2>& spIA2, LocatedFormat<char> call, const char* failureText) {
    const HRESULT result = GetIA2FromAccElem(pAccElem, spIA2);
    if (SUCCEEDED(result) && spIA2) return S_OK;
    CallFailed(call, result, failureText);
    return FailureOrEFail(result);
}

}  // namespace

HRESULT GetIA2FromAccElem(IAccessible* pAccElem, CComPtr<IAccessible2>& out_spIA2) {
    out_spIA2.Release();
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "GetIA2FromAccElem: IAccessible pointer is null");
    CComPtr<IServiceProvider> spServiceProvider;
    const HRESULT result = CComPtr<IAccessible>(pAccElem).QueryInterface(spServiceProvider);
    if (SUCCEEDED(result) && spServiceProvider)
        return spServiceProvider->QueryService(IidOf<IAccessible>(), IidOf<IAccessible2>(), reinterpret_cast<void**>(&out_spIA2));
    CallFailed("pAccElem->QueryInterface(&spServiceProvider)", result,
               "GetIA2FromAccElem: Cannot obtain IServiceProvider from IAccessible");
    return FailureOrEFail(result);
}

HRESULT GetAccChildList(IAccessible* pAccElem, std::list<CComPtr<IAccessible>>& lstChildren) {
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetAccChildList IAccessible pointer is null");
    std::vector<CComVariant> accChildren;
    const HRESULT result = AAObjectWrapper::GetVariantChildren(*pAccElem, accChildren);
    if (FAILED(result))
        return CallFailed("AAObjectWrapper::GetVariantChildren(*pAccElem, accChildren)", result,
                          "IA2Tools::GetAccChildList: AAObjectWrapper::GetVariantChildren() failed");
    if (accChildren.empty()) return S_OK;
    LogVerbose("IA2Tools::GetAccChildList ::AccessibleChildren succeeded, child count=%zu", accChildren.size());
    for (const CComVariant& child : accChildren) {
        if (child.vt != VT_DISPATCH) continue;
        CComPtr<IAccessible> object;
        if (SUCCEEDED(CComPtr<IDispatch>(child.pdispVal).QueryInterface(object)) && object) lstChildren.push_back(std::move(object));
    }
    LogVerbose("IA2Tools::GetAccChildList succeeded, container count=%zu", lstChildren.size());
    return S_OK;
}

HRESULT ScrollTo(IAccessible* pAccElem) {
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "GetIA2FromAccElem: IAccessible pointer is null");
    CComPtr<IAccessible2> spIA2;
    // The text names another operation on purpose.
    const HRESULT result = RequireIA2(pAccElem, spIA2, "GetIA2FromAccElem(pAccElem, spIA2)", "IA2Tools::GetText Cannot get IAccessible2");
    return FAILED(result) ? result : spIA2->scrollTo(IA2_SCROLL_TYPE_ANYWHERE);
}

HRESULT GetRole(IAccessible* pAccElem, LONG& out_lRole) {
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetRole IAccessible pointer is null");
    CComPtr<IAccessible2> spIA2;
    const HRESULT result = RequireIA2(pAccElem, spIA2, "GetIA2FromAccElem(pAccElem, spIA2)", "IA2Tools::GetRole Cannot get IAccessible2");
    return FAILED(result) ? result : spIA2->role(&out_lRole);
}

HRESULT GetState(IAccessible* pAccElem, LONG& out_lStates) {
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetState IAccessible pointer is null");
    CComPtr<IAccessible2> spIA2;
    const HRESULT result = RequireIA2(pAccElem, spIA2, "GetIA2FromAccElem(pAccElem, spIA2)", "IA2Tools::GetState Cannot get IAccessible2");
    return FAILED(result) ? result : spIA2->get_states(&out_lStates);
}

HRESULT GetUniqueID(IAccessible* pAccElem, LONG& out_lId) {
    if (!pAccElem) return ParameterConditionNotMet("pAccElem", "IA2Tools::GetUniqueID IAccessible pointer is null");
    CComPtr<IAccessible2> spIA2;
    const HRESULT result = RequireIA2(pAccElem, spIA2, "GetIA2FromAccElem(pAccElem, spIA2)", "IA2Tools::GetUniqueID Cannot get IAccessible2");
    return FAILED(result) ? result : spIA2->get_uniqueID(&out_lId);
}

}  // namespace Zorvex::IA2Tools
