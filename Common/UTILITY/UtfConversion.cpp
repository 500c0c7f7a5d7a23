#include "Common/include/UtfConversion.h"

#include <climits>
#include <new>
#include <stdexcept>

#include "Common/include/Log.h"

namespace Zorvex {
namespace {

// Sizes are ints at the platform; longer text is refused there as a bad parameter.
constexpr std::size_t c_maximumText = INT_MAX;

int Length(std::size_t size) { return static_cast<int>(size); }

}  // namespace

std::string NarrowText(std::wstring_view text) {
    if (text.empty() || text.size() > c_maximumText) return {};
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), Length(text.size()), nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size > 0 ? size : 0), '\0');
    if (size > 0) ::WideCharToMultiByte(CP_UTF8, 0, text.data(), Length(text.size()), result.data(), size, nullptr, nullptr);
    return result;
}

std::wstring WideText(std::string_view text) {
    if (text.empty() || text.size() > c_maximumText) return {};
    const int size = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), Length(text.size()), nullptr, 0);
    std::wstring result(static_cast<std::size_t>(size > 0 ? size : 0), L'\0');
    if (size > 0) ::MultiByteToWideChar(CP_UTF8, 0, text.data(), Length(text.size()), result.data(), size);
    return result;
}

bool Utf16ToUtf8(std::wstring_view text, std::string& out) {
    out.clear();
    if (text.empty()) return true;
    const int length = Length(text.size() > c_maximumText ? c_maximumText : text.size());
    const int size = text.size() > c_maximumText
                         ? (::SetLastError(ERROR_INVALID_PARAMETER), 0)
                         : ::WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (size <= 0) {
        LogError("UTF16_UTF8Size(%.*ls) failed with last err %u", length, text, ::GetLastError());
        return false;
    }
    out.resize(static_cast<std::size_t>(size));
    if (::WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), length, out.data(), size, nullptr, nullptr) != size) {
        LogError("UTF16_UTF8Convert(%.*ls) failed with last err %u", length, text, ::GetLastError());
        out.clear();
        return false;
    }
    return true;
}

bool Utf8ToUtf16(std::string_view text, std::wstring& out) {
    out.clear();
    if (text.empty()) return true;
    const int length = Length(text.size() > c_maximumText ? c_maximumText : text.size());
    const int size = text.size() > c_maximumText ? (::SetLastError(ERROR_INVALID_PARAMETER), 0)
                                                 : ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
    if (size <= 0) {
        LogError("UTF8_UTF16Size(%.*s) failed with last err %u", length, text, ::GetLastError());
        return false;
    }
    try {
        out.resize(static_cast<std::size_t>(size));
    } catch (const std::bad_alloc&) {
        LogError("Out of memory in fromstdstring(CStringW)");
        return false;
    }
    if (::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, out.data(), size) != size) {
        LogError("UTF8_UTF16Convert(%.*s) failed with last err %u", length, text, ::GetLastError());
        out.clear();
        return false;
    }
    return true;
}

bool Utf16ToUtf8(const wchar_t* text, std::string& out) {
    if (!text) {
        out.clear();
        // The two texts name the other direction's type, and are spelt, on purpose.
        LogError("Atempt to convert nullptr char*");
        return false;
    }
    return Utf16ToUtf8(std::wstring_view(text), out);
}

bool Utf8ToUtf16(const char* text, std::wstring& out) {
    if (!text) {
        out.clear();
        LogError("Atempt to convert nullptr wchar_t*");
        return false;
    }
    return Utf8ToUtf16(std::string_view(text), out);
}

}  // namespace Zorvex
