#include "RuntimeCore/TextCapture/ElementReads.h"

#include "Common/include/CComVariant.h"

namespace Zorvex {

RoleRead ReadAccRole(IAccessible& acc, const VARIANT& child) {
    CComVariant role;
    const HRESULT result = acc.get_accRole(child, &role);
    return {result, SUCCEEDED(result) && role.vt == VT_I4 ? role.lVal : 0};
}

std::optional<LONG> ReadAccState(IAccessible& acc, const VARIANT& child) {
    CComVariant state;
    if (FAILED(acc.get_accState(child, &state)) || state.vt != VT_I4) return std::nullopt;
    return state.lVal;
}

}  // namespace Zorvex
