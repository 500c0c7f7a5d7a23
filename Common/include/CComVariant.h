// Owner of one VARIANT.
#pragma once

#include <memory>
#include <string_view>
#include <type_traits>

#include "Common/include/ComException.h"
#include "Platform/Windows.h"

class CComVariant : public VARIANT {
public:
    CComVariant() noexcept { ::VariantInit(this); }
    // VT_I4: a child id, a role, a state.
    explicit CComVariant(LONG value) noexcept : CComVariant() {
        vt = VT_I4;
        lVal = value;
    }
    // A plain int is a LONG on some platforms and a type of its own on others.
    template <class Int>
        requires(std::is_same_v<Int, int> && !std::is_same_v<Int, LONG>)
    explicit CComVariant(Int value) noexcept : CComVariant(static_cast<LONG>(value)) {}
    explicit CComVariant(bool value) noexcept : CComVariant() {
        vt = VT_BOOL;
        boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    explicit CComVariant(std::wstring_view text) : CComVariant() {
        bstrVal = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (!bstrVal) throw Zorvex::ComException(E_OUTOFMEMORY);
        vt = VT_BSTR;
    }
    explicit CComVariant(const wchar_t* text) : CComVariant(text ? std::wstring_view(text) : std::wstring_view()) {}
    // Takes a reference of its own.
    explicit CComVariant(IDispatch* object) noexcept : CComVariant() {
        vt = VT_DISPATCH;
        pdispVal = object;
        if (object) object->AddRef();
    }
    // A copy that can't be made throws ComException with the result of VariantCopy.
    CComVariant(const VARIANT& other) : CComVariant() { Copy(other); }
    CComVariant(const CComVariant& other) : CComVariant() { Copy(other); }
    CComVariant(CComVariant&& other) noexcept : VARIANT(other) { other.vt = VT_EMPTY; }
    ~CComVariant() { ::VariantClear(this); }

    CComVariant& operator=(const CComVariant& other) {
        if (this != &other) Copy(other);
        return *this;
    }
    CComVariant& operator=(const VARIANT& other) {
        if (this != &other) Copy(other);
        return *this;
    }
    CComVariant& operator=(CComVariant&& other) noexcept {
        // The class's own address operator would clear what is to be moved.
        if (this != std::addressof(other)) {
            ::VariantClear(this);
            static_cast<VARIANT&>(*this) = other;
            other.vt = VT_EMPTY;
        }
        return *this;
    }

    // For out parameters; what was held is cleared first.
    VARIANT* operator&() noexcept {
        ::VariantClear(this);
        return this;
    }
    HRESULT Clear() noexcept { return ::VariantClear(this); }
    // Hands the contents to `target`, which must be empty.
    void DetachTo(VARIANT& target) noexcept {
        target = *this;
        vt = VT_EMPTY;
    }

private:
    void Copy(const VARIANT& other) { Zorvex::ThrowIfFailed(::VariantCopy(this, const_cast<VARIANT*>(&other))); }
};
