#include "RuntimeCore/TextCapture/HtmlFormFields.h"

#include <algorithm>
#include <array>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "RuntimeCore/LateBinding.h"

namespace Zorvex {

namespace {

using LateBinding::GetDispatch;
using LateBinding::GetNumber;
using LateBinding::GetText;

constexpr LONG MostOptions = 10'000;
constexpr wchar_t PasswordDot = L'\x25CF';

// Types are ASCII, and most documents write them in lower case.
CString TypeOf(IDispatch* input) {
    CString type;
    GetText(input, L"type", type);
    std::transform(type.begin(), type.end(), type.begin(), [](wchar_t unit) { return unit >= L'A' && unit <= L'Z' ? unit + (L'a' - L'A') : unit; });
    return type;
}

template <std::size_t Count>
bool IsOneOf(const CString& type, const std::array<std::wstring_view, Count>& types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

CString OptionText(IDispatch* options, LONG index) {
    CComPtr<IDispatch> option;
    CString text;
    if (SUCCEEDED(LateBinding::CallForDispatch(options, L"item", {CComVariant(index)}, option))) GetText(option, L"text", text);
    return text;
}

CString ShownOptions(IDispatch* select) {
    CComPtr<IDispatch> options;
    LONG size = 0, count = 0, selected = -1;
    CComVariant multiple;
    if (FAILED(GetDispatch(select, L"options", options)) || FAILED(GetNumber(options, L"length", count))) return {};
    GetNumber(select, L"size", size);
    LateBinding::Get(select, L"multiple", multiple);
    const bool isOpen = size > 1 || (multiple.vt == VT_BOOL && multiple.boolVal != VARIANT_FALSE);
    if (!isOpen) {
        const bool isKnown = SUCCEEDED(GetNumber(select, L"selectedIndex", selected)) && selected >= 0 && selected < count;
        return isKnown ? OptionText(options, selected) : CString();
    }
    CString text;
    for (LONG index = 0; index < std::min(count, MostOptions); ++index) {
        if (index) text += L"\r\n";
        text += OptionText(options, index);
    }
    return text;
}

}  // namespace

bool ShowsText(IDispatch* input) {
    static constexpr std::array<std::wstring_view, 4> without{L"hidden", L"checkbox", L"radio", L"image"};
    return !IsOneOf(TypeOf(input), without);
}

CString GetShownText(IDispatch* field, std::wstring_view tag) {
    if (!IsDisplayed(field)) return {};
    if (tag == L"select") return ShownOptions(field);
    const CString type = tag == L"input" ? TypeOf(field) : CString();
    // Their values are numbers behind a picture.
    static constexpr std::array<std::wstring_view, 2> pictures{L"range", L"color"};
    if (IsOneOf(type, pictures)) return {};
    CString value;
    GetText(field, L"value", value);
    if (value.empty()) GetText(field, L"placeholder", value);
    else if (type == L"password") std::fill(value.begin(), value.end(), PasswordDot);
    return value;
}

bool IsDisplayed(IDispatch* element) {
    LONG width = 0, height = 0;
    if (SUCCEEDED(GetNumber(element, L"offsetWidth", width)) && SUCCEEDED(GetNumber(element, L"offsetHeight", height)) && !width && !height)
        return false;
    CComPtr<IDispatch> style;
    CString visibility;
    if (FAILED(GetDispatch(element, L"currentStyle", style)) || FAILED(GetText(style, L"visibility", visibility))) return true;
    return visibility != L"hidden" && visibility != L"collapse";
}

}  // namespace Zorvex
