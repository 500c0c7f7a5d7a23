#include "RuntimeCore/LateBinding.h"

#include <algorithm>
#include <memory>

namespace Zorvex::LateBinding {

namespace {

constexpr std::size_t MostArguments = 4;

HRESULT Invoke(IDispatch* object, const wchar_t* name, WORD flags, DISPPARAMS& parameters, VARIANT* result) {
    if (!object) return E_POINTER;
    // The interface has names changeable; nobody changes them.
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    DISPID id = 0;
    if (const HRESULT known = object->GetIDsOfNames(GUID{}, names, 1, LOCALE_USER_DEFAULT, &id); FAILED(known)) return known;
    return object->Invoke(id, GUID{}, LOCALE_USER_DEFAULT, flags, &parameters, result, nullptr, nullptr);
}

HRESULT InvokeWith(IDispatch* object, const wchar_t* name, WORD flags, std::initializer_list<CComVariant> arguments, CComVariant& out_result) {
    out_result.Clear();
    if (arguments.size() > MostArguments) return E_INVALIDARG;
    // Arguments stand in reverse order.
    VARIANT reversed[MostArguments];  // borrowed
    std::copy(std::rbegin(arguments), std::rend(arguments), reversed);
    DISPPARAMS parameters{};
    parameters.rgvarg = reversed;
    parameters.cArgs = static_cast<UINT>(arguments.size());
    const HRESULT result = Invoke(object, name, flags, parameters, &out_result);
    if (FAILED(result)) out_result.Clear();
    return result;
}

HRESULT ObjectIn(const CComVariant& value, CComPtr<IDispatch>& out_object) {
    if (value.vt == VT_DISPATCH) {
        out_object = value.pdispVal;
    } else if (value.vt == VT_UNKNOWN && value.punkVal) {
        if (const HRESULT result = CComPtr<IUnknown>(value.punkVal).QueryInterface(out_object); FAILED(result)) return result;
    }
    return out_object ? S_OK : E_FAIL;
}

HRESULT NumberIn(CComVariant& value, LONG& out_number) {
    CComVariant number;
    if (value.vt == VT_EMPTY || FAILED(::VariantChangeType(&number, static_cast<VARIANT*>(std::addressof(value)), 0, VT_I4))) return E_FAIL;
    out_number = number.lVal;
    return S_OK;
}

}  // namespace

HRESULT Get(IDispatch* object, const wchar_t* name, CComVariant& out_value) {
    return InvokeWith(object, name, DISPATCH_PROPERTYGET, {}, out_value);
}

HRESULT Put(IDispatch* object, const wchar_t* name, const CComVariant& value) {
    VARIANT argument = value;  // borrowed
    DISPID namedPut = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{};
    parameters.rgvarg = &argument;
    parameters.rgdispidNamedArgs = &namedPut;
    parameters.cArgs = 1;
    parameters.cNamedArgs = 1;
    return Invoke(object, name, DISPATCH_PROPERTYPUT, parameters, nullptr);
}

HRESULT Call(IDispatch* object, const wchar_t* name, std::initializer_list<CComVariant> arguments, CComVariant& out_result) {
    return InvokeWith(object, name, DISPATCH_METHOD, arguments, out_result);
}

HRESULT GetNumber(IDispatch* object, const wchar_t* name, LONG& out_number) {
    out_number = 0;
    CComVariant value;
    const HRESULT result = Get(object, name, value);
    return FAILED(result) ? result : NumberIn(value, out_number);
}

HRESULT GetText(IDispatch* object, const wchar_t* name, CString& out_text) {
    out_text.clear();
    CComVariant value;
    if (const HRESULT result = Get(object, name, value); FAILED(result)) return result;
    if (value.vt != VT_BSTR) return E_FAIL;
    if (value.bstrVal) out_text.assign(value.bstrVal, ::SysStringLen(value.bstrVal));
    return S_OK;
}

HRESULT GetDispatch(IDispatch* object, const wchar_t* name, CComPtr<IDispatch>& out_object) {
    out_object.Release();
    CComVariant value;
    const HRESULT result = Get(object, name, value);
    return FAILED(result) ? result : ObjectIn(value, out_object);
}

HRESULT CallForDispatch(IDispatch* object, const wchar_t* name, std::initializer_list<CComVariant> arguments, CComPtr<IDispatch>& out_object) {
    out_object.Release();
    CComVariant value;
    const HRESULT result = Call(object, name, arguments, value);
    return FAILED(result) ? result : ObjectIn(value, out_object);
}

HRESULT GetItem(IDispatch* collection, std::initializer_list<CComVariant> indexes, CComPtr<IDispatch>& out_object) {
    out_object.Release();
    CComVariant value;
    const HRESULT result = InvokeWith(collection, L"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, indexes, value);
    return FAILED(result) ? result : ObjectIn(value, out_object);
}

HRESULT CallForNumber(IDispatch* object, const wchar_t* name, std::initializer_list<CComVariant> arguments, LONG& out_number) {
    out_number = 0;
    CComVariant value;
    const HRESULT result = Call(object, name, arguments, value);
    return FAILED(result) ? result : NumberIn(value, out_number);
}

}  // namespace Zorvex::LateBinding
