// Owner of one BSTR.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "Common/include/ComException.h"
#include "Platform/Windows.h"

// Null and empty are the same text. Lengths are UTF-16 code units; an embedded NUL counts as one.
class CComBSTR {
public:
    CComBSTR() noexcept = default;
    CComBSTR(const wchar_t* text) : CComBSTR(text ? std::wstring_view(text) : std::wstring_view()) {}
    CComBSTR(std::wstring_view text) : m_str(Allocate(text)) {}
    CComBSTR(const std::wstring& text) : CComBSTR(std::wstring_view(text)) {}
    CComBSTR(const CComBSTR& other) : m_str(other.m_str ? Allocate(other.View()) : nullptr) {}
    CComBSTR(CComBSTR&& other) noexcept : m_str(other.Detach()) {}
    ~CComBSTR() { Empty(); }

    CComBSTR& operator=(const CComBSTR& other) {
        CComBSTR(other).Swap(*this);
        return *this;
    }
    CComBSTR& operator=(CComBSTR&& other) noexcept {
        CComBSTR(std::move(other)).Swap(*this);
        return *this;
    }

    operator BSTR() const noexcept { return m_str; }
    // For out parameters; what was held is freed first.
    BSTR* operator&() noexcept {
        Empty();
        return &m_str;
    }

    UINT Length() const noexcept { return SysStringLen(m_str); }
    bool IsEmpty() const noexcept { return Length() == 0; }
    std::wstring_view View() const noexcept { return m_str ? std::wstring_view(m_str, Length()) : std::wstring_view(); }
    std::wstring ToString() const { return std::wstring(View()); }
    void Empty() noexcept { SysFreeString(std::exchange(m_str, nullptr)); }
    void Attach(BSTR text) noexcept {
        Empty();
        m_str = text;
    }
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(m_str, nullptr); }
    void Swap(CComBSTR& other) noexcept { std::swap(m_str, other.m_str); }

    BSTR m_str = nullptr;

private:
    static BSTR Allocate(std::wstring_view text) {
        BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (!result) throw Zorvex::ComException(E_OUTOFMEMORY);
        return result;
    }
};
