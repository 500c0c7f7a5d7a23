// UTF-8 and UTF-16. What isn't valid becomes U+FFFD, once for each byte sequence that begins well and breaks off, and
// once for each byte that begins nothing; or it fails, when the caller asks for that.
#include <climits>
#include <string_view>

#include "Platform/Simulated/Sdk/System.h"

namespace {

constexpr char32_t Replacement = 0xFFFD;
constexpr char32_t FirstSupplementary = 0x10000;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

struct CodePoint {
    char32_t value;
    bool valid;
};

// Takes one code point from the front. `text` is not empty.
CodePoint TakeUtf8(std::string_view& text) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byteAt(0);
    unsigned length = 1, lowest = 0x80, highest = 0xBF;
    char32_t value = first;
    if (first < 0x80) {
        text.remove_prefix(1);
        return {value, true};
    }
    if (first >= 0xC2 && first <= 0xDF) length = 2, value = first & 0x1F;
    else if (first >= 0xE0 && first <= 0xEF) length = 3, value = first & 0x0F;
    else if (first >= 0xF0 && first <= 0xF4) length = 4, value = first & 0x07;
    // The second byte's range keeps out overlong forms, surrogates, and what lies beyond U+10FFFF.
    if (first == 0xE0) lowest = 0xA0;
    if (first == 0xED) highest = 0x9F;
    if (first == 0xF0) lowest = 0x90;
    if (first == 0xF4) highest = 0x8F;

    std::size_t taken = 1;
    while (taken < length && taken < text.size()) {
        const unsigned next = byteAt(taken);
        if (next < lowest || next > highest) break;
        value = value << 6 | (next & 0x3F);
        lowest = 0x80;
        highest = 0xBF;
        ++taken;
    }
    text.remove_prefix(taken);
    if (length == 1 || taken < length) return {Replacement, false};
    return {value, true};
}

CodePoint TakeUtf16(std::wstring_view& text) {
    const auto first = static_cast<char32_t>(text[0]);
    text.remove_prefix(1);
    if (IsHighSurrogate(first) && !text.empty() && IsLowSurrogate(static_cast<char32_t>(text[0]))) {
        const auto second = static_cast<char32_t>(text[0]);
        text.remove_prefix(1);
        return {FirstSupplementary + ((first - 0xD800) << 10) + (second - 0xDC00), true};
    }
    // A box that holds more than a code unit is a mistake of whoever filled it.
    if (IsHighSurrogate(first) || IsLowSurrogate(first) || first > 0xFFFF) return {Replacement, false};
    return {first, true};
}

// Units of the target that a code point needs, written into `units`.
int Encode(char32_t point, wchar_t* units) {
    if (point < FirstSupplementary) {
        units[0] = static_cast<wchar_t>(point);
        return 1;
    }
    units[0] = static_cast<wchar_t>(0xD800 + ((point - FirstSupplementary) >> 10));
    units[1] = static_cast<wchar_t>(0xDC00 + ((point - FirstSupplementary) & 0x3FF));
    return 2;
}
int Encode(char32_t point, char* bytes) {
    if (point < 0x80) {
        bytes[0] = static_cast<char>(point);
        return 1;
    }
    const int length = point < 0x800 ? 2 : point < FirstSupplementary ? 3 : 4;
    for (int i = length - 1; i > 0; --i, point >>= 6) bytes[i] = static_cast<char>(0x80 | (point & 0x3F));
    constexpr unsigned lead[] = {0, 0, 0xC0, 0xE0, 0xF0};
    bytes[0] = static_cast<char>(lead[length] | point);
    return length;
}

int Fail(DWORD error) {
    SetLastError(error);
    return 0;
}

template <class Source, class Target, class Take>
int Convert(const Source* text, int length, Target* target, int capacity, bool strict, Take take) {
    if (!text || length == 0 || length < -1 || capacity < 0 || (capacity > 0 && !target)) return Fail(ERROR_INVALID_PARAMETER);
    // Length -1: up to the NUL, which is converted as well.
    std::size_t units = length == -1 ? std::basic_string_view<Source>(text).size() + 1 : static_cast<std::size_t>(length);
    std::basic_string_view<Source> rest(text, units);
    long long written = 0;
    while (!rest.empty()) {
        const CodePoint point = take(rest);
        if (!point.valid && strict) return Fail(ERROR_NO_UNICODE_TRANSLATION);
        Target encoded[4];
        const int count = Encode(point.value, encoded);
        if (capacity > 0) {
            if (written + count > capacity) return Fail(ERROR_INSUFFICIENT_BUFFER);
            for (int i = 0; i < count; ++i) target[written + i] = encoded[i];
        }
        written += count;
    }
    if (written > INT_MAX) return Fail(ERROR_INVALID_PARAMETER);
    return static_cast<int>(written);
}

}  // namespace

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR target, int capacity) {
    if (codePage != CP_UTF8) return Fail(ERROR_INVALID_PARAMETER);
    return Convert(text, length, target, capacity, (flags & MB_ERR_INVALID_CHARS) != 0, TakeUtf8);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, LPSTR target, int capacity, LPCSTR fallback,
                        BOOL* usedFallback) {
    // UTF-8 knows no fallback character.
    if (codePage != CP_UTF8 || fallback || usedFallback) return Fail(ERROR_INVALID_PARAMETER);
    return Convert(text, length, target, capacity, (flags & WC_ERR_INVALID_CHARS) != 0, TakeUtf16);
}
