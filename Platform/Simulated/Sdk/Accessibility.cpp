// The functions of Active Accessibility, answered from the current desktop.
#include <algorithm>
#include <memory>
#include <mutex>

#include "Platform/Simulated/AccessibleElement.h"
#include "Platform/Simulated/InstalledDesktop.h"
#include "Platform/Simulated/PublishedNames.h"
#include "Platform/Simulated/Sdk/Accessibility.h"

using namespace Simulated;

namespace {

struct Releaser {
    void operator()(IUnknown* held) const { held->Release(); }
};
using Owner = std::unique_ptr<IDispatch, Releaser>;

// The object of a window's part, with a reference for the caller. The call is counted on the window. A variant type
// that the fault plan wants in the answer goes to `type`, an object model to `native`.
HRESULT RootObject(HWND handle, DWORD objectId, Call call, AccessibleElement** object, std::optional<VARTYPE>* type = nullptr,
                   Owner* native = nullptr) {
    *object = nullptr;
    const auto desktop = CurrentDesktop();
    if (!desktop) return E_FAIL;
    const std::lock_guard guard(desktop->Lock());
    desktop->BringAboutDueChanges();
    const WindowPtr window = desktop->WindowByHandle(handle);
    if (!window) return E_FAIL;
    const std::optional<Fault> fault = desktop->Count(nullptr, window.get(), call);
    if (fault && fault->raise) throw ServerFailure();
    if (fault && fault->null) return fault->result.value_or(S_OK);
    if (fault && fault->result) return *fault->result;
    if (fault && type) *type = fault->type;
    if (window->destroyed) return E_FAIL;
    if (native && static_cast<LONG>(objectId) == OBJID_NATIVEOM && window->nativeObject) {
        native->reset(new AutomationObject(desktop, window->nativeObject));
        return S_OK;
    }
    *object = desktop->ObjectOf(desktop->RootOf(*window, static_cast<LONG>(objectId)));
    return *object ? S_OK : E_FAIL;
}

UINT CopyName(std::wstring_view name, LPWSTR text, UINT capacity) {
    // As published: without a buffer the length is answered.
    if (!text) return static_cast<UINT>(name.size());
    if (capacity == 0) return 0;
    const std::size_t length = std::min<std::size_t>(name.size(), capacity - 1);
    std::copy_n(name.data(), length, text);
    text[length] = 0;
    return static_cast<UINT>(length);
}

}  // namespace

HRESULT AccessibleObjectFromWindow(HWND window, DWORD objectId, REFIID riid, void** object) {
    if (!object) return E_INVALIDARG;
    *object = nullptr;
    AccessibleElement* root = nullptr;
    Owner owner;
    const HRESULT result = RootObject(window, objectId, Call::AccessibleObjectFromWindow, &root, nullptr, &owner);
    // A spoilt query may throw; the platform keeps nothing then.
    if (root) owner.reset(static_cast<IAccessible*>(root));
    return owner ? owner->QueryInterface(riid, object) : result;
}

HRESULT AccessibleObjectFromEvent(HWND window, DWORD objectId, DWORD childId, IAccessible** object, VARIANT* child) {
    if (!object || !child) return E_INVALIDARG;
    *object = nullptr;
    VariantInit(child);
    AccessibleElement* root = nullptr;
    std::optional<VARTYPE> wrongType;
    const HRESULT result = RootObject(window, objectId, Call::AccessibleObjectFromEvent, &root, &wrongType);
    if (!root) return result;
    if (wrongType) {
        *object = root;
        PutWrongType(child, *wrongType);
        return S_OK;
    }
    VARIANT place;
    VariantInit(&place);
    PutNumber(&place, static_cast<LONG>(childId));
    // Both calls may throw by the fault plan.
    Owner container(static_cast<IAccessible*>(root));
    IDispatch* answer = nullptr;
    if (childId != 0) root->get_accChild(place, &answer);
    if (const Owner found{answer}) {
        PutNumber(child, CHILDID_SELF);
        return found->QueryInterface(IidOf<IAccessible>(), reinterpret_cast<void**>(object));
    }
    container.release();
    *object = root;
    *child = place;
    return S_OK;
}

HRESULT WindowFromAccessibleObject(IAccessible* object, HWND* window) {
    if (!window) return E_INVALIDARG;
    *window = nullptr;
    if (!object) return E_INVALIDARG;
    // An object of a test's own may stand somewhere below one of a desktop: its parents are asked.
    AccessibleElement* own = AccessibleElement::From(object);
    IDispatch* parent = nullptr;
    if (!own && SUCCEEDED(object->get_accParent(&parent)) && parent) {
        own = AccessibleElement::From(parent);
        parent->Release();
    }
    if (!own) return E_FAIL;
    HRESULT result = E_FAIL;
    {
        const std::lock_guard guard(own->Owner().Lock());
        const std::optional<Fault> fault = own->Owner().Count(own->Data().get(), nullptr, Call::WindowFromAccessibleObject);
        if (fault && fault->raise) {
            own->Release();
            throw ServerFailure();
        }
        const WindowPtr found = own->Owner().WindowOf(*own->Data());
        if (fault && fault->null) {
            result = S_OK;
        } else if (fault && fault->result) {
            result = *fault->result;
        } else if (found) {
            *window = found->hwnd;
            result = S_OK;
        }
    }
    own->Release();
    return result;
}

HRESULT AccessibleChildren(IAccessible* container, LONG start, LONG count, VARIANT* children, LONG* obtained) {
    if (!container || !children || !obtained || start < 0 || count < 0) return E_INVALIDARG;
    *obtained = 0;
    for (LONG i = 0; i < count; ++i) VariantInit(&children[i]);
    std::optional<Fault> fault;
    if (AccessibleElement* const own = AccessibleElement::From(container)) {
        {
            const std::lock_guard guard(own->Owner().Lock());
            fault = own->Owner().Count(own->Data().get(), nullptr, Call::AccessibleChildren);
        }
        own->Release();
    } else {
        // As published: an object that can enumerate its children is asked to. Those of the desktop are read one by
        // one, so that each read can be counted and spoilt.
        IEnumVARIANT* found = nullptr;
        const HRESULT asked = container->QueryInterface(IidOf<IEnumVARIANT>(), reinterpret_cast<void**>(&found));
        if (SUCCEEDED(asked) && found) {
            const auto release = [](IEnumVARIANT* object) { object->Release(); };
            const std::unique_ptr<IEnumVARIANT, decltype(release)> enumerator(found, release);
            HRESULT result = enumerator->Reset();
            if (SUCCEEDED(result)) result = enumerator->Skip(static_cast<ULONG>(start));
            ULONG fetched = 0;
            if (SUCCEEDED(result)) result = enumerator->Next(static_cast<ULONG>(count), children, &fetched);
            *obtained = static_cast<LONG>(fetched);
            return result;
        }
    }
    if (fault && fault->raise) throw ServerFailure();
    if (fault && fault->result && !fault->count && !fault->type) return *fault->result;

    LONG total = 0;
    const HRESULT counted = container->get_accChildCount(&total);
    if (FAILED(counted)) return counted;
    if (start > total) return E_INVALIDARG;
    LONG given = 0;
    for (; given < count && given < total - start; ++given) {
        VARIANT& child = children[given];
        if (fault && fault->type) {
            PutWrongType(&child, *fault->type);
            continue;
        }
        PutNumber(&child, start + given + 1);
        if (fault && fault->null) {
            PutObject(&child, nullptr);
            continue;
        }
        IDispatch* object = nullptr;
        const HRESULT asked = container->get_accChild(child, &object);
        // As published: what has no object of its own is given by its child id.
        if (SUCCEEDED(asked) && object) PutObject(&child, object);
    }
    *obtained = given;
    if (fault && fault->count) {
        // Fewer: the rest is taken back. More than asked for is a lie about the number only.
        for (LONG i = std::max<LONG>(*fault->count, 0); i < given; ++i) VariantClear(&children[i]);
        *obtained = *fault->count;
        if (fault->result) return *fault->result;
    }
    return given == count ? S_OK : S_FALSE;
}

UINT GetRoleTextW(DWORD role, LPWSTR text, UINT capacity) { return CopyName(RoleName(static_cast<LONG>(role)), text, capacity); }

UINT GetStateTextW(DWORD bit, LPWSTR text, UINT capacity) { return CopyName(StateName(static_cast<LONG>(bit)), text, capacity); }
