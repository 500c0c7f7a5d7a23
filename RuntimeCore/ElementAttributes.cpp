#include "RuntimeCore/ElementAttributes.h"

#include "Common/include/CComBSTR.h"
#include "RuntimeCore/AaAttrHandler.h"
#include "RuntimeCore/AccChildReaders.h"

namespace Zorvex {

namespace {

constexpr wchar_t ValueName[] = L"value";
constexpr wchar_t ScreenRectName[] = L"screenRect";

HRESULT ReadHandledAttribute(const AaAttrHandler::Handler& handler, HWND window, IAccessible& accessible, const VARIANT& child,
                             bool useIA2, CComVariant& value) {
    CComBSTR text;
    const HRESULT result = handler(window, accessible, CComVariant(child), useIA2 ? 1 : 0, text);
    if (FAILED(result)) return result;
    value = CComVariant(text.View());
    return S_OK;
}

HRESULT ReadValue(IAccessible& accessible, const VARIANT& child, CComVariant& value) {
    CComBSTR text;
    if (const HRESULT result = accessible.get_accValue(child, &text); FAILED(result)) return result;
    value = CComVariant(text.View());
    return S_OK;
}

HRESULT ReadScreenRect(IAccessible& accessible, const VARIANT& child, CComVariant& value) {
    value = GetAccRectangleAsVariant(&accessible, child);
    return value.vt == VT_EMPTY ? E_FAIL : S_OK;
}

}  // namespace

HRESULT GetElementAttribute(HWND window, IAccessible* accessible, const VARIANT& child, bool useIA2, const CString& name,
                            CComVariant& value) {
    value.Clear();
    if (!accessible) return E_INVALIDARG;
    if (const AaAttrHandler::Handler* handler = AaAttrHandler::Instance().Find(name))
        return ReadHandledAttribute(*handler, window, *accessible, child, useIA2, value);
    if (name == ValueName) return ReadValue(*accessible, child, value);
    if (name == ScreenRectName) return ReadScreenRect(*accessible, child, value);
    return E_INVALIDARG;
}

std::vector<CString> ElementAttributeNames() {
    std::vector<CString> names;
    for (const auto& [name, handler] : AaAttrHandler::Instance().Handlers()) names.push_back(name);
    names.push_back(ValueName);
    names.push_back(ScreenRectName);
    return names;
}

}  // namespace Zorvex
