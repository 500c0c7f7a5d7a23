// What tells elements apart, and automation's view of them; on Windows also the window that the platform asks for.
#include <cstring>

#include "Platform/Simulated/AccessibleElement.h"

namespace Simulated {

HRESULT AccessibleElement::GetObjectForChild(LONG child, IAccessibleEx** object) {
    if (!object) return E_INVALIDARG;
    *object = nullptr;
    CallScope scope(*this, Call::ObjectForChild);
    if (scope.early) return *scope.early;
    const ElementPtr found = child > 0 ? m_desktop->ChildAt(*m_element, static_cast<std::size_t>(child) - 1) : nullptr;
    if (!found) return E_INVALIDARG;
    // As published: null with success is a child of which automation knows nothing more.
    if (!found->Details().uia) return S_OK;
    *object = m_desktop->ObjectOf(found);
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::GetIAccessiblePair(IAccessible** accessible, LONG* child) {
    if (!accessible || !child) return E_INVALIDARG;
    *accessible = nullptr;
    *child = CHILDID_SELF;
    CallScope scope(*this, Call::AccessiblePair);
    if (scope.early) return *scope.early;
    if (!m_element->simple) {
        *accessible = m_desktop->ObjectOf(m_element);
    } else if (const ElementPtr container = m_desktop->ContainerOf(*m_element)) {
        *accessible = m_desktop->ObjectOf(container);
        *child = static_cast<LONG>(m_desktop->PlaceOf(*container, *m_element) + 1);
    }
    return *accessible ? scope.Finish(S_OK) : E_FAIL;
}

HRESULT AccessibleElement::GetRuntimeId(SAFEARRAY** id) {
    if (!id) return E_INVALIDARG;
    *id = nullptr;
    CallScope scope(*this, Call::RuntimeId);
    if (scope.early) return *scope.early;
    const auto& uia = m_element->Details().uia;
    if (!uia || !uia->runtimeId) return E_NOTIMPL;
    SAFEARRAY* const array = ::SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(uia->runtimeId->size()));
    if (!array) return E_OUTOFMEMORY;
    for (LONG i = 0; i < static_cast<LONG>(uia->runtimeId->size()); ++i) {
        LONG part = (*uia->runtimeId)[static_cast<std::size_t>(i)];
        ::SafeArrayPutElement(array, &i, &part);
    }
    *id = array;
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::ConvertReturnedElement(IRawElementProviderSimple*, IAccessibleEx** object) {
    if (object) *object = nullptr;
    CallScope scope(*this, Call::ConvertReturnedElement);
    return scope.early.value_or(E_NOTIMPL);
}

HRESULT AccessibleElement::get_ProviderOptions(ProviderOptions* options) {
    if (!options) return E_INVALIDARG;
    *options = ProviderOptions_ServerSideProvider;
    CallScope scope(*this, Call::ProviderOptions);
    return scope.early.value_or(S_OK);
}

HRESULT AccessibleElement::GetPatternProvider(PATTERNID, IUnknown** provider) {
    if (!provider) return E_INVALIDARG;
    *provider = nullptr;
    CallScope scope(*this, Call::PatternProvider);
    return scope.early.value_or(S_OK);
}

HRESULT AccessibleElement::GetPropertyValue(PROPERTYID property, VARIANT* value) {
    if (!value) return E_INVALIDARG;
    ::VariantInit(value);
    CallScope scope(*this, Call::PropertyValue);
    if (scope.early) return *scope.early;
    if (scope.fault && scope.fault->type) {
        PutWrongType(value, *scope.fault->type);
        return scope.Finish(S_OK);
    }
    if (scope.fault && scope.fault->text) {
        PutText(value, *scope.fault->text);
        return scope.Finish(S_OK);
    }
    const auto& uia = m_element->Details().uia;
    if (!uia) return S_OK;
    for (const auto& [id, data] : uia->properties) {
        if (id != property) continue;
        if (const auto* text = std::get_if<std::wstring>(&data)) {
            PutText(value, *text);
        } else if (const auto* number = std::get_if<LONG>(&data)) {
            PutNumber(value, *number);
        } else if (const auto* flag = std::get_if<bool>(&data)) {
            value->vt = VT_BOOL;
            value->boolVal = *flag ? VARIANT_TRUE : VARIANT_FALSE;
        } else {
            value->vt = VT_R8;
            value->dblVal = std::get<double>(data);
        }
        break;
    }
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::get_HostRawElementProvider(IRawElementProviderSimple** provider) {
    if (!provider) return E_INVALIDARG;
    *provider = nullptr;
    CallScope scope(*this, Call::HostProvider);
    return scope.early.value_or(S_OK);
}

HRESULT AccessibleElement::GetIdentityString(DWORD child, BYTE** text, DWORD* length) {
    if (!text || !length) return E_INVALIDARG;
    *text = nullptr;
    *length = 0;
    VARIANT place;
    ::VariantInit(&place);
    PutNumber(&place, static_cast<LONG>(child));
    CallScope scope(*this, Call::IdentityString, &place);
    if (scope.early) return *scope.early;
    const auto& identity = scope.target->Details().identity;
    if (!identity) return E_FAIL;
    // At least one byte, so that an empty identity isn't a null one.
    auto* const bytes = static_cast<BYTE*>(::CoTaskMemAlloc(identity->size() + 1));
    if (!bytes) return E_OUTOFMEMORY;
    std::memcpy(bytes, identity->data(), identity->size());
    bytes[identity->size()] = 0;
    *text = bytes;
    *length = static_cast<DWORD>(identity->size());
    return scope.Finish(S_OK);
}

#ifdef _WIN32
HRESULT AccessibleElement::GetWindow(HWND* window) {
    if (!window) return E_INVALIDARG;
    const std::lock_guard guard(m_desktop->Lock());
    const WindowPtr found = m_desktop->WindowOf(*m_element);
    *window = found ? found->hwnd : nullptr;
    return *window ? S_OK : E_FAIL;
}
HRESULT AccessibleElement::ContextSensitiveHelp(BOOL) { return E_NOTIMPL; }
#endif

}  // namespace Simulated
