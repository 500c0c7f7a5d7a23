// Conversion between UTF-16 wide text and UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace Zorvex {

// Never fails and never logs: what isn't valid becomes U+FFFD. For log lines and messages.
std::string NarrowText(std::wstring_view text);
std::wstring WideText(std::string_view text);

// Strict: an unpaired surrogate, or a byte sequence that isn't UTF-8, fails. A failure is logged as an error, leaves
// `out` empty and answers false. Empty text is no failure.
bool Utf16ToUtf8(std::wstring_view text, std::string& out);
bool Utf8ToUtf16(std::string_view text, std::wstring& out);
// Null is a failure.
bool Utf16ToUtf8(const wchar_t* text, std::string& out);
bool Utf8ToUtf16(const char* text, std::wstring& out);
inline bool Utf16ToUtf8(const std::wstring& text, std::string& out) { return Utf16ToUtf8(std::wstring_view(text), out); }
inline bool Utf8ToUtf16(const std::string& text, std::wstring& out) { return Utf8ToUtf16(std::string_view(text), out); }

}  // namespace Zorvex
