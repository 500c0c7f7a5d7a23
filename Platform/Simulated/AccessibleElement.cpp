// The object itself: identity, references, interfaces, and how a call meets the plan.
#include "Platform/Simulated/AccessibleElement.h"

#include <array>

namespace Simulated {
namespace {

struct NamedInterface {
    std::string_view name;
    IID iid;
};
const std::array Interfaces = {
    NamedInterface{"IUnknown", IidOf<IUnknown>()}, NamedInterface{"IDispatch", IidOf<IDispatch>()},
    NamedInterface{"IAccessible", IidOf<IAccessible>()}, NamedInterface{"IAccessible2", IidOf<IAccessible2>()},
    NamedInterface{"IAccessibleText", IidOf<IAccessibleText>()}, NamedInterface{"IServiceProvider", IidOf<IServiceProvider>()},
    NamedInterface{"IAccessibleEx", IidOf<IAccessibleEx>()},
    NamedInterface{"IRawElementProviderSimple", IidOf<IRawElementProviderSimple>()},
    NamedInterface{"IAccIdentity", IidOf<IAccIdentity>()}, NamedInterface{"IEnumVARIANT", IidOf<IEnumVARIANT>()},
    NamedInterface{"IHTMLElement", IidOf<IHTMLElement>()}};

std::string_view NameOf(const IID& iid) {
    for (const NamedInterface& known : Interfaces)
        if (IsEqualGUID(known.iid, iid)) return known.name;
    return "other";
}

// Whether the element, or a child that it answers for, has something.
template <class Has>
bool AnswersFor(const Element& element, const Has& has) {
    if (has(element.Details())) return true;
    for (const ElementPtr& child : element.children)
        if (child->simple && has(child->Details())) return true;
    return false;
}
bool HasUia(const ElementDetails& details) { return details.uia.has_value(); }
bool HasIdentity(const ElementDetails& details) { return details.identity.has_value(); }

// The id by which the objects know each other; no other server can have it.
constexpr IID OwnClass = {0x5D3C6B1E, 0x90A4, 0x4E0B, {0x9F, 0x27, 0x51, 0xD8, 0x0C, 0x7A, 0x46, 0xE3}};

}  // namespace

AccessibleElement::AccessibleElement(std::shared_ptr<Desktop> desktop, ElementPtr element)
    : m_desktop(std::move(desktop)), m_element(std::move(element)) {
    if (!m_element->proxies) m_element->object = this;
    m_desktop->CountReference(m_element.get(), 1);
}

AccessibleElement::~AccessibleElement() = default;

AccessibleElement* AccessibleElement::From(IUnknown* object) {
    void* own = nullptr;
    if (!object || FAILED(object->QueryInterface(OwnClass, &own)) || !own) return nullptr;
    return static_cast<AccessibleElement*>(own);
}

HRESULT AccessibleElement::QueryInterface(REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (IsEqualGUID(riid, OwnClass)) {
        *object = this;
        AddRef();
        return S_OK;
    }
    CallScope scope(*this, Call::QueryInterface, nullptr, NameOf(riid));
    if (scope.early) return *scope.early;
    IUnknown* const face = Face(riid);
    if (!face) return E_NOINTERFACE;
    *object = face;
    AddRef();
    return scope.Finish(S_OK);
}

ULONG AccessibleElement::AddRef() {
    m_desktop->CountReference(m_element.get(), 1);
    return ++m_references;
}

ULONG AccessibleElement::Release() {
    m_desktop->CountReference(m_element.get(), -1);
    ULONG count = m_references.load();
    while (count > 1)
        if (m_references.compare_exchange_weak(count, count - 1)) return count - 1;
    // The last reference goes under the lock, as the desktop may be handing out the object just now.
    {
        const std::lock_guard guard(m_desktop->Lock());
        count = --m_references;
        if (count == 0 && m_element->object == this) m_element->object = nullptr;
    }
    if (count == 0) delete this;
    return count;
}

bool AccessibleElement::Offers(const IID& iid) const {
    const Element& element = *m_element;
    const ElementDetails& details = element.Details();
    const std::string_view name = NameOf(iid);
    // A simple element is no accessible object; automation's view of it is one.
    if (name == "IUnknown") return true;
    if (name == "IAccessibleEx" || name == "IRawElementProviderSimple") return AnswersFor(element, HasUia);
    if (element.simple) return false;
    if (name == "IDispatch" || name == "IAccessible") return true;
    if (name == "IAccessible2") return details.ia2.has_value();
    if (name == "IAccessibleText") return details.ia2 && details.ia2->text;
    if (name == "IAccIdentity") return AnswersFor(element, HasIdentity);
    if (name == "IServiceProvider") return details.serviceProvider.value_or(details.ia2 || details.html || details.services || AnswersFor(element, HasUia));
    return false;
}

IUnknown* AccessibleElement::Face(const IID& iid) {
#ifdef _WIN32
    if (IsEqualGUID(iid, IID_IOleWindow)) return static_cast<IOleWindow*>(this);
#endif
    if (!Offers(iid)) return nullptr;
    const std::string_view name = NameOf(iid);
    if (name == "IServiceProvider") return static_cast<IServiceProvider*>(this);
    if (name == "IAccessibleEx") return static_cast<IAccessibleEx*>(this);
    if (name == "IRawElementProviderSimple") return static_cast<IRawElementProviderSimple*>(this);
    if (name == "IAccIdentity") return static_cast<IAccIdentity*>(this);
    if (name == "IAccessibleText") return static_cast<IAccessibleText*>(this);
    return static_cast<IAccessible2*>(this);
}

HRESULT AccessibleElement::QueryService(REFGUID, REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    CallScope scope(*this, Call::QueryService, nullptr, NameOf(riid));
    if (scope.early) return *scope.early;
    // That there is an HTML element is all that is known of it: nothing may be called on it but its references.
    const bool asksForHtml = m_element->Details().html && IsEqualGUID(riid, IidOf<IHTMLElement>());
    IUnknown* const face = asksForHtml ? static_cast<IAccessible2*>(this) : Face(riid);
    if (!face) return m_element->Details().services ? m_element->Details().services->QueryInterface(riid, object) : E_NOINTERFACE;
    *object = face;
    AddRef();
    return scope.Finish(S_OK);
}

HRESULT AccessibleElement::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}
HRESULT AccessibleElement::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info) *info = nullptr;
    return E_NOTIMPL;
}
HRESULT AccessibleElement::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) { return E_NOTIMPL; }
HRESULT AccessibleElement::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) {
    return DISP_E_MEMBERNOTFOUND;
}

CallScope::CallScope(AccessibleElement& object, Call call, const VARIANT* child, std::string_view iid)
    : target(object.m_element), m_lock(object.m_desktop->Lock()) {
    Desktop& desktop = *object.m_desktop;
    bool badChild = false;
    if (child && child->vt != VT_I4) {
        badChild = true;
    } else if (child && child->lVal != CHILDID_SELF) {
        const ElementPtr found = child->lVal > 0 ? desktop.ChildAt(*target, static_cast<std::size_t>(child->lVal) - 1) : nullptr;
        // A child with an object of its own is asked through that.
        badChild = !found || !found->simple;
        if (!badChild) target = found;
    }
    fault = desktop.Count(target.get(), nullptr, call, iid);
    if (fault) {
        if (fault->raise) throw ServerFailure();
        const bool answersInstead = fault->type || fault->count || fault->text;
        if (fault->null) early = fault->result.value_or(S_OK);
        else if (fault->result && !answersInstead) early = *fault->result;
    }
    if (early) return;
    if (target->removed) early = target->Details().removedResult.value_or(desktop.Model().removedResult);
    else if (badChild) early = E_INVALIDARG;
}

BSTR NewText(std::wstring_view text) { return ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size())); }

void PutNumber(VARIANT* variant, LONG value) {
    variant->vt = VT_I4;
    variant->lVal = value;
}
void PutText(VARIANT* variant, std::wstring_view text) {
    variant->vt = VT_BSTR;
    variant->bstrVal = NewText(text);
}
void PutObject(VARIANT* variant, IDispatch* object) {
    variant->vt = VT_DISPATCH;
    variant->pdispVal = object;
}
void PutWrongType(VARIANT* variant, VARTYPE type) {
    ::VariantInit(variant);
    if (type == VT_BSTR) return PutText(variant, L"wrong");
    variant->vt = type;
    if (type == VT_I2) variant->iVal = 1;
    if (type == VT_R8) variant->dblVal = 1;
}

}  // namespace Simulated
