#include "RuntimeCore/AAUtilitiesText.h"

#include <vector>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "RuntimeCore/AAUtilitiesSelection.h"
#include "RuntimeCore/CheckState.h"
#include "RuntimeCore/IA2ToolsText.h"

namespace Zorvex::AAUtil {

namespace {

CString NameOf(IAccessible* acc, const VARIANT& child) {
    CComBSTR name;
    return SUCCEEDED(acc->get_accName(child, &name)) ? name.ToString() : CString();
}

CString TextOfSelectedItem(IAccessible* container, const VARIANT& item) {
    if (item.vt == VT_I4) return container ? NameOf(container, item) : CString();
    if (item.vt != VT_DISPATCH || !item.pdispVal) return {};
    CComPtr<IAccessible> object;
    if (FAILED(CComPtr<IDispatch>(item.pdispVal).QueryInterface(object)) || !object) return {};
    return NameOf(object, CComVariant(CHILDID_SELF));
}

CString TextOfFirstSelectedItem(IAccessible* acc) {
    CComPtr<IAccessible> container;
    std::vector<CComVariant> items;
    if (GetSelectedChildren(acc, container, items, SelectionExtent::FirstOnly) != SelectionResult::Success || items.empty()) return {};
    return TextOfSelectedItem(container, items.front());
}

}  // namespace

CComPtr<IAccessible> GetParent(IAccessible* spAcc) {
    if (!spAcc) {
        LogError("Invalid element");
        return {};
    }
    CComPtr<IDispatch> dispatch;
    const HRESULT result = spAcc->get_accParent(&dispatch);
    CComPtr<IAccessible> parent;
    if (FAILED(result) || !dispatch || FAILED(dispatch.QueryInterface(parent)) || !parent) {
        LogError("Failed to get the parent: 0x%X", result);
        return {};
    }
    return parent;
}

CString GetAAHelpText(IAccessible* spAcc, const VARIANT& vChild) {
    if (!spAcc) {
        ExpectationNotMet("spAcc", "spAcc is empty");
        return {};
    }
    CComBSTR bstrResult;
    if (const HRESULT result = spAcc->get_accHelp(vChild, &bstrResult); FAILED(result)) {
        CallFailed("spAcc->get_accHelp(vChild, &bstrResult)", result, "get_accHelp failed");
        return {};
    }
    return bstrResult.ToString();
}

CString GetAccessibleText(HWND, IAccessible* acc, const VARIANT& child) {
    if (!acc) return {};
    CComVariant varRole;
    if (FAILED(acc->get_accRole(child, &varRole)) || varRole.vt != VT_I4) return {};
    const LONG role = varRole.lVal;

    if (role == ROLE_SYSTEM_CHECKBUTTON || role == ROLE_SYSTEM_RADIOBUTTON) {
        bool checked = false;
        if (SUCCEEDED(GetIsChecked(acc, child, checked))) return checked ? L"checked" : L"unchecked";
    }
    // The value of an outline item is its level, which nobody sees.
    if (role != ROLE_SYSTEM_OUTLINEITEM) {
        CComBSTR value;
        if (SUCCEEDED(acc->get_accValue(child, &value)) && !value.IsEmpty()) return value.ToString();
    }
    // Without a selected item these show nothing: their name is a caption.
    if (role == ROLE_SYSTEM_COMBOBOX || role == ROLE_SYSTEM_LIST) return TextOfFirstSelectedItem(acc);
    return NameOf(acc, child);
}

CString GetAAOrIA2Text(bool useIA2, HWND hWnd, IAccessible* acc, const VARIANT& child) {
    if (useIA2) {
        CComBSTR text;
        const HRESULT hResult = IA2Tools::GetText(acc, text);
        if (FAILED(hResult)) LogWarning("Failed to get text using IAccessibleText, hResult=0x%x", hResult);
        else if (!text.IsEmpty()) return text.ToString();
    }
    return GetAccessibleText(hWnd, acc, child);
}

}  // namespace Zorvex::AAUtil
