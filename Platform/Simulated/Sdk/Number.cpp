#include "Platform/Simulated/Sdk/Number.h"

namespace Simulated {

Number NumberOf(const VARIANT& variant) {
    constexpr double CurrencyUnits = 10000.0;
    switch (variant.vt) {
        case VT_EMPTY: return Number::FromSigned(0);
        case VT_I1: return Number::FromSigned(static_cast<signed char>(variant.cVal));
        case VT_I2: return Number::FromSigned(variant.iVal);
        case VT_BOOL: return Number::FromSigned(variant.boolVal);
        case VT_I4:
        case VT_INT: return Number::FromSigned(variant.lVal);
        case VT_I8: return Number::FromSigned(variant.llVal);
        case VT_UI1: return Number::FromUnsigned(variant.bVal);
        case VT_UI2: return Number::FromUnsigned(variant.uiVal);
        case VT_UI4:
        case VT_UINT: return Number::FromUnsigned(variant.ulVal);
        case VT_UI8: return Number::FromUnsigned(variant.ullVal);
        case VT_R4: return Number::FromReal(variant.fltVal);
        case VT_R8:
        case VT_DATE: return Number::FromReal(variant.dblVal);
        case VT_CY: return Number::FromReal(static_cast<double>(variant.cyVal.int64) / CurrencyUnits);
        default: return {};
    }
}

}  // namespace Simulated
