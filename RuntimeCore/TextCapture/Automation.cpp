#include "RuntimeCore/TextCapture/Automation.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "Common/include/CComVariant.h"

namespace Zorvex::Automation {

namespace {

constexpr std::size_t MostIndexes = 2;

// False if the object doesn't know the name or doesn't give it.
bool Get(IDispatch* object, const wchar_t* name, WORD flags, std::initializer_list<LONG> indexes, CComVariant& out_value) {
    out_value.Clear();
    if (!object || indexes.size() > MostIndexes) return false;
    // The interface has names changeable; nobody changes them.
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    DISPID id = 0;
    if (FAILED(object->GetIDsOfNames(GUID{}, names, 1, LOCALE_USER_DEFAULT, &id))) return false;
    // Arguments stand in reverse order.
    CComVariant arguments[MostIndexes];
    std::transform(std::rbegin(indexes), std::rend(indexes), arguments, [](LONG index) { return CComVariant(index); });
    DISPPARAMS parameters{};
    parameters.rgvarg = indexes.size() ? static_cast<VARIANT*>(arguments) : nullptr;
    parameters.cArgs = static_cast<UINT>(indexes.size());
    return SUCCEEDED(object->Invoke(id, GUID{}, LOCALE_USER_DEFAULT, flags, &parameters, &out_value, nullptr, nullptr));
}

CComPtr<IDispatch> ObjectIn(const CComVariant& value) {
    CComPtr<IDispatch> object;
    if (value.vt == VT_DISPATCH) object = value.pdispVal;
    else if (value.vt == VT_UNKNOWN && value.punkVal) value.punkVal->QueryInterface(IidOf<IDispatch>(), reinterpret_cast<void**>(&object));
    return object;
}

}  // namespace

CComPtr<IDispatch> GetNativeObject(HWND hWnd) {
    CComPtr<IDispatch> object;
    const HRESULT result =
        ::AccessibleObjectFromWindow(hWnd, static_cast<DWORD>(OBJID_NATIVEOM), IidOf<IDispatch>(), reinterpret_cast<void**>(&object));
    if (FAILED(result) || !object) return nullptr;
    // What came may be a stand-in for the object; the object itself is asked.
    CComPtr<IDispatch> window;
    if (FAILED(object.QueryInterface(window))) return nullptr;
    return window;
}

CComPtr<IDispatch> ReadObject(IDispatch* object, const wchar_t* name) {
    CComVariant value;
    return Get(object, name, DISPATCH_PROPERTYGET, {}, value) ? ObjectIn(value) : nullptr;
}

std::optional<LONG> ReadNumber(IDispatch* object, const wchar_t* name) {
    CComVariant value, number;
    if (!Get(object, name, DISPATCH_PROPERTYGET, {}, value)) return std::nullopt;
    if (FAILED(::VariantChangeType(&number, static_cast<VARIANT*>(std::addressof(value)), 0, VT_I4))) return std::nullopt;
    return number.lVal;
}

bool ReadText(IDispatch* object, const wchar_t* name, CString& out_text) {
    out_text.clear();
    CComVariant value;
    if (!Get(object, name, DISPATCH_PROPERTYGET, {}, value) || value.vt != VT_BSTR) return false;
    if (value.bstrVal) out_text.assign(value.bstrVal, ::SysStringLen(value.bstrVal));
    return true;
}

CComPtr<IDispatch> ReadItem(IDispatch* object, std::initializer_list<LONG> indexes) {
    CComVariant value;
    // In some collections the item is a method, in others a property with arguments.
    return Get(object, L"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, indexes, value) ? ObjectIn(value) : nullptr;
}

}  // namespace Zorvex::Automation
