// Conversion between the plain types.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include "Platform/Simulated/Sdk/Number.h"

using Simulated::Number;
using Simulated::NumberOf;

namespace {

constexpr USHORT AlphabeticBoolean = 2;
constexpr double CurrencyUnits = 10000.0;

bool IsBlank(wchar_t unit) { return unit == L' ' || unit == L'\t'; }

// A decimal number, blanks around it allowed. None for anything else.
Number ParseNumber(const wchar_t* text, UINT length) {
    while (length > 0 && IsBlank(*text)) ++text, --length;
    while (length > 0 && IsBlank(text[length - 1])) --length;
    if (length > 0 && *text == L'+') ++text, --length;
    std::string narrow;
    for (UINT i = 0; i < length; ++i) {
        if (text[i] > 0x7E) return {};
        narrow += static_cast<char>(text[i]);
    }
    const char* end = narrow.data() + narrow.size();
    const auto whole = [&](std::from_chars_result result) { return result.ec == std::errc() && result.ptr == end && !narrow.empty(); };
    LONGLONG integer = 0;
    if (whole(std::from_chars(narrow.data(), end, integer))) return Number::FromSigned(integer);
    ULONGLONG natural = 0;
    if (whole(std::from_chars(narrow.data(), end, natural))) return Number::FromUnsigned(natural);
    double real = 0;
    if (whole(std::from_chars(narrow.data(), end, real)) && std::isfinite(real)) return Number::FromReal(real);
    return {};
}

// Halves go to the even neighbour.
bool ToInteger(const Number& number, LONGLONG lowest, ULONGLONG highest, Number& out) {
    Number exact = number;
    if (number.kind == Number::Kind::Real) {
        const double rounded = std::nearbyint(number.real);
        if (!(rounded >= -0x1p63 && rounded < 0x1p64)) return false;
        exact = rounded < 0 ? Number::FromSigned(static_cast<LONGLONG>(rounded)) : Number::FromUnsigned(static_cast<ULONGLONG>(rounded));
    }
    if (exact.kind == Number::Kind::Signed && exact.integer < 0) {
        if (exact.integer < lowest) return false;
        out = exact;
        return true;
    }
    const ULONGLONG value = exact.kind == Number::Kind::Signed ? static_cast<ULONGLONG>(exact.integer) : exact.natural;
    if (value > highest) return false;
    out = Number::FromUnsigned(value);
    return true;
}

template <class T>
HRESULT StoreInteger(const Number& number, T& field) {
    Number exact;
    if (!ToInteger(number, static_cast<LONGLONG>(std::numeric_limits<T>::min()), static_cast<ULONGLONG>(std::numeric_limits<T>::max()), exact))
        return DISP_E_OVERFLOW;
    field = exact.kind == Number::Kind::Signed ? static_cast<T>(exact.integer) : static_cast<T>(exact.natural);
    return S_OK;
}

HRESULT StoreNumber(const Number& number, VARTYPE type, VARIANT& out) {
    signed char small = 0;
    HRESULT result = S_OK;
    switch (type) {
        case VT_I1:
            result = StoreInteger(number, small);
            out.cVal = static_cast<CHAR>(small);
            return result;
        case VT_I2: return StoreInteger(number, out.iVal);
        case VT_I4:
        case VT_INT: return StoreInteger(number, out.lVal);
        case VT_I8: return StoreInteger(number, out.llVal);
        case VT_UI1: return StoreInteger(number, out.bVal);
        case VT_UI2: return StoreInteger(number, out.uiVal);
        case VT_UI4:
        case VT_UINT: return StoreInteger(number, out.ulVal);
        case VT_UI8: return StoreInteger(number, out.ullVal);
        case VT_BOOL:
            out.boolVal = number.AsReal() != 0 ? VARIANT_TRUE : VARIANT_FALSE;
            return S_OK;
        case VT_R4:
            if (std::abs(number.AsReal()) > std::numeric_limits<float>::max()) return DISP_E_OVERFLOW;
            out.fltVal = static_cast<float>(number.AsReal());
            return S_OK;
        case VT_R8:
        case VT_DATE:
            out.dblVal = number.AsReal();
            return S_OK;
        case VT_CY: return StoreInteger(Number::FromReal(number.AsReal() * CurrencyUnits), out.cyVal.int64);
        default: return DISP_E_TYPEMISMATCH;
    }
}

std::string NumberText(const Number& number) {
    if (number.kind == Number::Kind::Signed) return std::to_string(number.integer);
    if (number.kind == Number::Kind::Unsigned) return std::to_string(number.natural);
    // Fifteen digits, as on Windows, so that 0.1 reads as 0.1.
    char text[64];
    std::snprintf(text, sizeof text, "%.15G", number.real);
    return text;
}

HRESULT StoreText(const std::string& text, VARIANT& out) {
    const std::wstring wide(text.begin(), text.end());
    out.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    return out.bstrVal ? S_OK : E_OUTOFMEMORY;
}

bool TextEquals(std::wstring text, std::wstring_view word) {
    for (wchar_t& unit : text)
        if (unit >= L'A' && unit <= L'Z') unit += L'a' - L'A';
    return text == word;
}

HRESULT Change(const VARIANT& source, USHORT flags, VARTYPE type, VARIANT& out) {
    if ((source.vt | type) & (VT_ARRAY | VT_BYREF)) return DISP_E_TYPEMISMATCH;
    if (source.vt == VT_BSTR) {
        const std::wstring text(source.bstrVal ? source.bstrVal : L"", SysStringLen(source.bstrVal));
        if (type == VT_BOOL && (TextEquals(text, L"true") || TextEquals(text, L"false"))) {
            out.boolVal = TextEquals(text, L"true") ? VARIANT_TRUE : VARIANT_FALSE;
            return S_OK;
        }
        const Number number = ParseNumber(text.data(), static_cast<UINT>(text.size()));
        return number.kind == Number::Kind::None ? DISP_E_TYPEMISMATCH : StoreNumber(number, type, out);
    }
    if (type == VT_BSTR && source.vt == VT_EMPTY) return StoreText("", out);
    if (type == VT_BSTR && source.vt == VT_BOOL && (flags & AlphabeticBoolean)) return StoreText(source.boolVal ? "True" : "False", out);
    const Number number = NumberOf(source);
    if (number.kind == Number::Kind::None) return DISP_E_TYPEMISMATCH;
    return type == VT_BSTR ? StoreText(NumberText(number), out) : StoreNumber(number, type, out);
}

}  // namespace

HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, USHORT flags, VARTYPE type) {
    VARIANT converted{};
    // The same type, whatever it is, is a copy.
    const HRESULT result = source->vt == type ? VariantCopy(&converted, source) : Change(*source, flags, type, converted);
    if (FAILED(result)) return result;
    converted.vt = type;
    const HRESULT cleared = VariantClear(target);
    if (FAILED(cleared)) {
        VariantClear(&converted);
        return cleared;
    }
    *target = converted;
    return S_OK;
}
