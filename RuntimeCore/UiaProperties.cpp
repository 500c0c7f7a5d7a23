#include "RuntimeCore/UiaProperties.h"

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"

namespace Zorvex {

namespace {

HRESULT FailureOr(HRESULT result, HRESULT otherwise) { return FAILED(result) ? result : otherwise; }

HRESULT GetProvider(IAccessible* accessible, LONG childId, CComPtr<IRawElementProviderSimple>& provider) {
    CComPtr<IServiceProvider> services;
    HRESULT result = CComPtr<IAccessible>(accessible).QueryInterface(services);
    if (FAILED(result) || !services) return FailureOr(result, E_NOINTERFACE);
    CComPtr<IAccessibleEx> extension;
    result = services->QueryService(IidOf<IAccessibleEx>(), IidOf<IAccessibleEx>(), reinterpret_cast<void**>(&extension));
    if (FAILED(result) || !extension) return FailureOr(result, E_NOINTERFACE);
    if (childId != CHILDID_SELF) {
        CComPtr<IAccessibleEx> ofChild;
        result = extension->GetObjectForChild(childId, &ofChild);
        if (FAILED(result) || !ofChild) return FailureOr(result, E_NOINTERFACE);
        extension = std::move(ofChild);
    }
    result = extension.QueryInterface(provider);
    return FAILED(result) || !provider ? FailureOr(result, E_NOINTERFACE) : S_OK;
}

}  // namespace

HRESULT GetUiaProperty(PROPERTYID propertyId, IAccessible* accessible, LONG childId, CString& text) {
    text.clear();
    if (!accessible) return E_INVALIDARG;
    CComPtr<IRawElementProviderSimple> provider;
    HRESULT result = GetProvider(accessible, childId, provider);
    if (FAILED(result)) return result;
    CComVariant value;
    result = provider->GetPropertyValue(propertyId, &value);
    if (FAILED(result)) return result;
    if (value.vt != VT_BSTR || !value.bstrVal) return E_UNEXPECTED;
    text.assign(value.bstrVal, ::SysStringLen(value.bstrVal));
    return S_OK;
}

}  // namespace Zorvex
