#include "RuntimeCore/AccChildReaders.h"

#include <cstdint>
#include <memory>

#include "Common/include/ComException.h"
#include "Common/include/Log.h"
#include "Common/include/TreeWalker/AANode.h"

namespace Zorvex {

std::vector<AAObjectWrapper> GetAccChildren(IAccessible* acc, LONG role) {
    std::vector<AAObjectWrapper> children;
    if (!acc) return children;
    if (!AAObjectWrapper::GetChildren(acc, children)) {
        LogError("GetAccChildrenWithRole: AAObjectWrapper::GetChildren failed");
        return children;
    }
    if (role != 0)
        std::erase_if(children, [role](const AAObjectWrapper& child) { return !child.IsValid() || GetAccRole(child.container, child.childId) != role; });
    return children;
}

LONG GetAccRole(IAccessible* acc, const VARIANT& child) {
    CComVariant role;
    const HRESULT result = acc ? acc->get_accRole(child, &role) : E_POINTER;
    if (SUCCEEDED(result) && role.vt == VT_I4) return role.lVal;
    LogError("GetAccRole: Cannot get role %x", result);
    return 0;
}

CComPtr<IAccessible> GetAccParent(IAccessible* acc, const VARIANT& child) {
    if (!acc) return nullptr;
    if (child.vt == VT_I4 && child.lVal != CHILDID_SELF) return acc;
    CComPtr<IDispatch> parent;
    CComPtr<IAccessible> parentAcc;
    if (SUCCEEDED(acc->get_accParent(&parent))) parent.QueryInterface(parentAcc);
    return parentAcc;
}

CComVariant GetAccRectangleAsVariant(IAccessible* acc, const VARIANT& child) {
    CComVariant variant;
    LONG left = 0, top = 0, width = 0, height = 0;
    const HRESULT result = acc ? acc->accLocation(&left, &top, &width, &height, child) : E_POINTER;
    if (FAILED(result)) {
        LogError("accLocation() failed with hResult=0x%x", result);
        return variant;
    }
    // A server may answer any numbers; a sum wraps as the platform's own does.
    const auto sum = [](LONG a, LONG b) { return static_cast<LONG>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b)); };
    const LONG sides[] = {left, top, sum(left, width), sum(top, height)};
    variant.parray = ::SafeArrayCreateVector(VT_I4, 0, 4);
    if (!variant.parray) throw ComException(E_OUTOFMEMORY);
    variant.vt = VT_ARRAY | VT_I4;
    for (LONG index = 0; index < 4; ++index) {
        LONG side = sides[index];
        ThrowIfFailed(::SafeArrayPutElement(variant.parray, &index, &side));
    }
    return variant;
}

}  // namespace Zorvex
