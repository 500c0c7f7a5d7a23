// Owner of one COM reference.
#pragma once

#include <utility>

#include "Platform/Windows.h"

template <class Interface>
class CComPtr {
public:
    CComPtr() noexcept = default;
    CComPtr(std::nullptr_t) noexcept {}
    // Takes a reference of its own.
    CComPtr(Interface* pointer) noexcept : p(pointer) {
        if (p) p->AddRef();
    }
    CComPtr(const CComPtr& other) noexcept : CComPtr(other.p) {}
    CComPtr(CComPtr&& other) noexcept : p(std::exchange(other.p, nullptr)) {}
    ~CComPtr() { Release(); }

    CComPtr& operator=(const CComPtr& other) noexcept {
        CComPtr(other).Swap(*this);
        return *this;
    }
    CComPtr& operator=(CComPtr&& other) noexcept {
        CComPtr(std::move(other)).Swap(*this);
        return *this;
    }
    CComPtr& operator=(Interface* pointer) noexcept {
        CComPtr(pointer).Swap(*this);
        return *this;
    }

    operator Interface*() const noexcept { return p; }
    Interface& operator*() const noexcept { return *p; }
    Interface* operator->() const noexcept { return p; }
    // For out parameters. What was held is released first, so that a second use leaks nothing.
    Interface** operator&() noexcept {
        Release();
        return &p;
    }

    void Release() noexcept {
        if (Interface* old = std::exchange(p, nullptr)) old->Release();
    }
    // Takes over the caller's reference.
    void Attach(Interface* pointer) noexcept {
        Interface* old = std::exchange(p, pointer);
        if (old) old->Release();
    }
    // Hands the reference to the caller.
    [[nodiscard]] Interface* Detach() noexcept { return std::exchange(p, nullptr); }
    void Swap(CComPtr& other) noexcept { std::swap(p, other.p); }

    // Asks the object for another interface. A null object answers E_POINTER; success with a null pointer is
    // possible on a bad server, so the caller looks at both.
    template <class Other>
    HRESULT QueryInterface(CComPtr<Other>& other) const {
        Other** target = &other;
        if (!p) return E_POINTER;
        return p->QueryInterface(IidOf<Other>(), reinterpret_cast<void**>(target));
    }

    Interface* p = nullptr;
};
