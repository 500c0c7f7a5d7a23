#include "RuntimeCore/AAUtilitiesSelection.h"

#include <algorithm>

#include "Common/include/Log.h"

namespace Zorvex::AAUtil {

namespace {

LONG RoleOf(IAccessible* acc, const VARIANT& child) {
    CComVariant role;
    return SUCCEEDED(acc->get_accRole(child, &role)) && role.vt == VT_I4 ? role.lVal : 0;
}

// The object that a table answers stands for the list of its selected children.
SelectionResult TakeSelectedObjectChildren(IAccessible* list, std::vector<CComVariant>& outChildren, SelectionExtent extent) {
    LONG count = 0;
    if (FAILED(list->get_accChildCount(&count))) return SelectionResult::Failure;
    if (count < 0 || static_cast<ULONG>(count) >= MaximumSelectedChildren) return SelectionResult::Failure;
    if (extent == SelectionExtent::FirstOnly) count = std::min<LONG>(count, 1);
    if (count == 0) return SelectionResult::Success;

    std::vector<CComVariant> children(static_cast<std::size_t>(count));
    LONG obtained = 0;
    const HRESULT result = ::AccessibleChildren(list, 0, count, children.data(), &obtained);
    if (FAILED(result)) return SelectionResult::Failure;
    obtained = std::max<LONG>(obtained, 0);
    // A full answer that claims more than was asked for makes the list as long as it claims, with empty entries
    // behind what came. A claim beyond all bounds is worth nothing.
    const bool mayGrow = result == S_OK && static_cast<ULONG>(obtained) < MaximumSelectedChildren;
    if (obtained < count || mayGrow) children.resize(static_cast<std::size_t>(obtained));
    outChildren.insert(outChildren.end(), std::make_move_iterator(children.begin()), std::make_move_iterator(children.end()));
    return SelectionResult::Success;
}

void TakeEnumeratedChildren(IEnumVARIANT* items, std::vector<CComVariant>& outChildren, SelectionExtent extent) {
    for (ULONG round = 0; round < MaximumSelectedChildren; ++round) {
        CComVariant item;
        ULONG fetched = 0;
        if (items->Next(1, &item, &fetched) != S_OK) return;
        if (item.vt == VT_I4) {
            outChildren.push_back(std::move(item));
        } else if (item.vt == VT_DISPATCH && item.pdispVal) {
            CComPtr<IAccessible> object;
            if (SUCCEEDED(CComPtr<IDispatch>(item.pdispVal).QueryInterface(object)) && object) outChildren.push_back(std::move(item));
        }
        // The first round ends it, whether or not it brought anything.
        if (extent == SelectionExtent::FirstOnly) return;
    }
}

}  // namespace

SelectionResult GetSelectedChildren(IAccessible* pAccElem, CComPtr<IAccessible>& outContainer,
                                    std::vector<CComVariant>& outChildren, SelectionExtent extent) {
    outContainer.Release();
    if (!pAccElem) return SelectionResult::Failure;
    CComVariant vSel;
    const HRESULT hRes = pAccElem->get_accSelection(&vSel);
    if (hRes == DISP_E_MEMBERNOTFOUND) {
        LogError("GetSelectedChildren: pAccElem has no selection support");
        return SelectionResult::NotSupported;
    }
    if (hRes != S_OK) {
        LogError("GetSelectedChildren: get_accSelection returns hRes: %u", static_cast<ULONG>(hRes));
        return SelectionResult::Failure;
    }
    switch (vSel.vt) {
        case VT_EMPTY:
            return SelectionResult::Success;
        case VT_I4:
            outContainer = pAccElem;
            outChildren.push_back(std::move(vSel));
            return SelectionResult::Success;
        case VT_DISPATCH: {
            CComPtr<IAccessible> object;
            if (FAILED(CComPtr<IDispatch>(vSel.pdispVal).QueryInterface(object)) || !object) return SelectionResult::Success;
            if (RoleOf(pAccElem, CComVariant(CHILDID_SELF)) == ROLE_SYSTEM_TABLE) {
                outContainer = object;
                return TakeSelectedObjectChildren(object, outChildren, extent);
            }
            outContainer = pAccElem;
            outChildren.push_back(std::move(vSel));
            return SelectionResult::Success;
        }
        case VT_UNKNOWN: {
            CComPtr<IEnumVARIANT> items;
            if (FAILED(CComPtr<IUnknown>(vSel.punkVal).QueryInterface(items)) || !items) return SelectionResult::Success;
            outContainer = pAccElem;
            TakeEnumeratedChildren(items, outChildren, extent);
            return SelectionResult::Success;
        }
        default:
            LogError("GetSelectedChildren: Invalid vSel.vt in GetSelectedChildren");
            return SelectionResult::Success;
    }
}

bool HasSelectSupport(IAccessible* spAcc, const VARIANT& varChild, CString& outExpectedItemRole) {
    outExpectedItemRole = L"list item";
    const LONG role = spAcc ? RoleOf(spAcc, varChild) : 0;
    LogVerbose("HasSelectSupport, element with role 0x%x", role);
    bool supported = true;
    switch (role) {
        case ROLE_SYSTEM_LIST:
        case ROLE_SYSTEM_COMBOBOX:
            break;
        case ROLE_SYSTEM_OUTLINE:
            outExpectedItemRole = L"outline item";
            break;
        case ROLE_SYSTEM_TABLE:
            outExpectedItemRole = L"cell";
            break;
        case ROLE_SYSTEM_PAGETABLIST:
            outExpectedItemRole = L"page tab";
            break;
        default:
            supported = false;
    }
    LogVerbose("HasSelectSupport: %d, expectedItemRole %s", supported, outExpectedItemRole);
    return supported;
}

}  // namespace Zorvex::AAUtil
