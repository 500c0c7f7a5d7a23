#include "RuntimeCore/NativeAttributes.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "RuntimeCore/AccChildReaders.h"
#include "RuntimeCore/IA2Tools.h"
#include "RuntimeCore/IA2ToolsAttributes.h"

namespace Zorvex {

namespace {

using Reader = HRESULT (*)(IAccessible& accessible, const VARIANT& child, CComVariant& value);

template <HRESULT (STDMETHODCALLTYPE IAccessible::*Getter)(VARIANT, BSTR*)>
HRESULT ReadText(IAccessible& accessible, const VARIANT& child, CComVariant& value) {
    CComBSTR text;
    const HRESULT result = (accessible.*Getter)(child, &text);
    if (FAILED(result)) return result;
    value = CComVariant(text.View());
    return S_OK;
}

template <HRESULT (STDMETHODCALLTYPE IAccessible::*Getter)(VARIANT, VARIANT*)>
HRESULT ReadNumber(IAccessible& accessible, const VARIANT& child, CComVariant& value) {
    CComVariant number;
    const HRESULT result = (accessible.*Getter)(child, &number);
    if (FAILED(result)) return result;
    if (number.vt != VT_I4) return E_UNEXPECTED;
    value = std::move(number);
    return S_OK;
}

// The platform counts the children of a container only: a simple element has none.
HRESULT ReadChildCount(IAccessible& accessible, const VARIANT& child, CComVariant& value) {
    LONG count = 0;
    if (child.lVal == CHILDID_SELF) {
        if (const HRESULT result = accessible.get_accChildCount(&count); FAILED(result)) return result;
    }
    value = CComVariant(count);
    return S_OK;
}

HRESULT ReadLocation(IAccessible& accessible, const VARIANT& child, CComVariant& value) {
    value = GetAccRectangleAsVariant(&accessible, child);
    return value.vt == VT_EMPTY ? E_FAIL : S_OK;
}

// IAccessible2 speaks for a container alone, so a simple element doesn't have it.
HRESULT IA2Of(IAccessible& accessible, const VARIANT& child, CComPtr<IAccessible2>& ia2) {
    if (child.lVal != CHILDID_SELF) return E_NOINTERFACE;
    const HRESULT result = IA2Tools::GetIA2FromAccElem(&accessible, ia2);
    if (FAILED(result)) return result;
    return ia2 ? S_OK : E_NOINTERFACE;
}

template <HRESULT (STDMETHODCALLTYPE IAccessible2::*Getter)(LONG*)>
HRESULT ReadIA2Number(IAccessible& accessible, const VARIANT& child, CComVariant& value) {
    CComPtr<IAccessible2> ia2;
    HRESULT result = IA2Of(accessible, child, ia2);
    if (FAILED(result)) return result;
    LONG number = 0;
    result = (ia2->*Getter)(&number);
    if (FAILED(result)) return result;
    value = CComVariant(number);
    return S_OK;
}

HRESULT ReadAttributeString(IAccessible& accessible, const VARIANT& child, CComBSTR& text) {
    CComPtr<IAccessible2> ia2;
    const HRESULT result = IA2Of(accessible, child, ia2);
    return FAILED(result) ? result : ia2->get_attributes(&text);
}

HRESULT ReadAttributes(IAccessible& accessible, const VARIANT& child, CComVariant& value) {
    CComBSTR text;
    const HRESULT result = ReadAttributeString(accessible, child, text);
    if (FAILED(result)) return result;
    value = CComVariant(text.View());
    return S_OK;
}

HRESULT ReadOneAttribute(IAccessible& accessible, const VARIANT& child, std::wstring_view name, CComVariant& value) {
    if (child.lVal != CHILDID_SELF) return E_NOINTERFACE;
    CString text;
    const HRESULT result = IA2Tools::GetAttribute(&accessible, name, text);
    if (FAILED(result)) return result;
    value = CComVariant(text);
    return S_OK;
}

constexpr const wchar_t* Names[] = {
    L"accName", L"accRole", L"accState", L"accValue", L"accDescription", L"accHelp", L"accKeyboardShortcut",
    L"accDefaultAction", L"accChildCount", L"accLocation", L"role", L"states", L"uniqueID", L"attributes"};

// In the order of the names.
constexpr Reader Readers[] = {
    ReadText<&IAccessible::get_accName>,
    ReadNumber<&IAccessible::get_accRole>,
    ReadNumber<&IAccessible::get_accState>,
    ReadText<&IAccessible::get_accValue>,
    ReadText<&IAccessible::get_accDescription>,
    ReadText<&IAccessible::get_accHelp>,
    ReadText<&IAccessible::get_accKeyboardShortcut>,
    ReadText<&IAccessible::get_accDefaultAction>,
    ReadChildCount,
    ReadLocation,
    ReadIA2Number<&IAccessible2::role>,
    ReadIA2Number<&IAccessible2::get_states>,
    ReadIA2Number<&IAccessible2::get_uniqueID>,
    ReadAttributes};
static_assert(std::size(Names) == std::size(Readers));

constexpr std::wstring_view OneAttributePrefix = L"attributes.";

}  // namespace

HRESULT GetNativeAttribute(IAccessible* accessible, const VARIANT& child, const CString& name, CComVariant& value) {
    value.Clear();
    if (!accessible || child.vt != VT_I4) return E_INVALIDARG;
    const auto found = std::ranges::find(Names, std::wstring_view(name));
    if (found != std::end(Names)) return Readers[found - std::begin(Names)](*accessible, child, value);
    if (name.starts_with(OneAttributePrefix) && name.size() > OneAttributePrefix.size())
        return ReadOneAttribute(*accessible, child, std::wstring_view(name).substr(OneAttributePrefix.size()), value);
    return E_INVALIDARG;
}

std::span<const wchar_t* const> NativeAttributeNames() { return Names; }

}  // namespace Zorvex
