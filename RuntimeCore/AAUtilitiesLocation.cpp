#include "RuntimeCore/AAUtilitiesLocation.h"

#include "Common/include/Log.h"

namespace Zorvex::AAUtil {

namespace {

// A server may answer any numbers; their sum stays within the type.
LONG Sum(LONG start, LONG extent) { return static_cast<LONG>(static_cast<ULONG>(start) + static_cast<ULONG>(extent)); }

}  // namespace

HRESULT GetAALocation(IAccessible* pAA, const VARIANT& varChild, RECT& rcOut) {
    if (!pAA) return ParameterConditionNotMet("pAA", "IAccessible pointer is invalid");
    LONG x = 0, y = 0, cx = 0, cy = 0;
    const HRESULT result = pAA->accLocation(&x, &y, &cx, &cy, varChild);
    if (FAILED(result))
        return CallFailed("pAA->accLocation(&x, &y, &cx, &cy, varChild)", result, "AA Object accLocation failed");
    rcOut = {x, y, Sum(x, cx), Sum(y, cy)};
    return result;
}

}  // namespace Zorvex::AAUtil
