// Order of strings and variants.
#include <algorithm>
#include <string_view>

#include "Platform/Simulated/Sdk/Number.h"

using Simulated::Number;
using Simulated::NumberOf;

namespace {

template <class T>
HRESULT Order(const T& left, const T& right) {
    return left < right ? VARCMP_LT : right < left ? VARCMP_GT : VARCMP_EQ;
}

HRESULT CompareNumbers(const Number& left, const Number& right) {
    if (left.kind == Number::Kind::Real || right.kind == Number::Kind::Real) return Order(left.AsReal(), right.AsReal());
    if (left.kind == right.kind)
        return left.kind == Number::Kind::Signed ? Order(left.integer, right.integer) : Order(left.natural, right.natural);
    // One side has a sign and the other a range above it.
    if (left.kind == Number::Kind::Signed) return left.integer < 0 ? VARCMP_LT : Order(static_cast<ULONGLONG>(left.integer), right.natural);
    return right.integer < 0 ? VARCMP_GT : Order(left.natural, static_cast<ULONGLONG>(right.integer));
}

// The published function leaves out the smallest signed and the larger unsigned integers, objects and arrays.
bool CanBeCompared(VARTYPE type) {
    switch (type) {
        case VT_EMPTY: case VT_NULL: case VT_I2: case VT_I4: case VT_R4: case VT_R8: case VT_CY: case VT_DATE: case VT_BSTR:
        case VT_ERROR: case VT_BOOL: case VT_UI1: case VT_I8: case VT_INT: case VT_UINT:
            return true;
        default:
            return false;
    }
}

}  // namespace

HRESULT VarBstrCmp(BSTR left, BSTR right, LCID, ULONG) {
    const std::wstring_view a(left ? left : L"", SysStringLen(left)), b(right ? right : L"", SysStringLen(right));
    return Order(a, b);
}

HRESULT VarCmp(VARIANT* left, VARIANT* right, LCID locale, ULONG flags) {
    if (!CanBeCompared(left->vt) || !CanBeCompared(right->vt)) return DISP_E_BADVARTYPE;
    if (left->vt == VT_NULL || right->vt == VT_NULL) return VARCMP_NULL;
    if (left->vt == VT_ERROR || right->vt == VT_ERROR)
        return left->vt == right->vt ? Order(left->scode, right->scode) : DISP_E_TYPEMISMATCH;
    if (left->vt == VT_BSTR || right->vt == VT_BSTR) {
        // Nothing compares as the empty string; a number comes before any string.
        if (left->vt != VT_BSTR && left->vt != VT_EMPTY) return VARCMP_LT;
        if (right->vt != VT_BSTR && right->vt != VT_EMPTY) return VARCMP_GT;
        return VarBstrCmp(left->vt == VT_BSTR ? left->bstrVal : nullptr, right->vt == VT_BSTR ? right->bstrVal : nullptr, locale, flags);
    }
    return CompareNumbers(NumberOf(*left), NumberOf(*right));
}
