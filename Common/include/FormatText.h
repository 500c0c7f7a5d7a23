// printf-like formatting that is safe by type: the arguments know what they are, the format only says how they
// look. It understands d i u x X p s S c f e g and lu-, z-, ll-, I64-, h- and l-prefixed forms, flags, width and
// precision with '*'. "%s" and "%ls" take narrow and wide texts alike. "%p" gives all digits of a pointer in upper
// case without "0x". Lengths come from the arguments, not from prefixes.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "Platform/Windows.h"

namespace Zorvex {

// One argument, borrowed for the length of the call.
struct FormatArgument {
    enum class Kind { Signed, Unsigned, Double, Pointer, Narrow, Wide };

    Kind kind = Kind::Signed;
    std::size_t width = 0;  // bytes of the integer, so that a negative 32-bit number prints 8 hexadecimal digits
    std::int64_t integer = 0;
    double real = 0;
    std::string_view narrow;
    std::wstring_view wide;

    template <std::integral T>
    FormatArgument(T value)
        : kind(std::is_signed_v<T> ? Kind::Signed : Kind::Unsigned), width(sizeof(T)), integer(static_cast<std::int64_t>(value)) {}
    template <class T>
        requires std::is_enum_v<T>
    FormatArgument(T value) : FormatArgument(static_cast<std::underlying_type_t<T>>(value)) {}
    FormatArgument(double value) : kind(Kind::Double), real(value) {}
    FormatArgument(const char* text) : kind(Kind::Narrow), narrow(text ? text : "(null)") {}
    FormatArgument(const std::string& text) : kind(Kind::Narrow), narrow(text) {}
    FormatArgument(std::string_view text) : kind(Kind::Narrow), narrow(text) {}
    FormatArgument(const wchar_t* text) : kind(Kind::Wide), wide(text ? text : L"(null)") {}
    FormatArgument(const std::wstring& text) : kind(Kind::Wide), wide(text) {}
    FormatArgument(std::wstring_view text) : kind(Kind::Wide), wide(text) {}
    FormatArgument(std::nullptr_t) : FormatArgument(static_cast<const void*>(nullptr)) {}
    FormatArgument(const void* pointer)
        : kind(Kind::Pointer), width(sizeof pointer), integer(static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(pointer))) {}
};

// Never throws for a bad format: a conversion without an argument, or an unknown one, stands in the text as it is.
std::string FormatTextV(std::string_view format, std::span<const FormatArgument> arguments);
std::wstring FormatTextV(std::wstring_view format, std::span<const FormatArgument> arguments);

template <class... Arguments>
std::string FormatText(std::string_view format, const Arguments&... arguments) {
    const FormatArgument list[] = {FormatArgument(0), FormatArgument(arguments)...};
    return FormatTextV(format, std::span(list).subspan(1));
}
template <class... Arguments>
std::wstring FormatText(std::wstring_view format, const Arguments&... arguments) {
    const FormatArgument list[] = {FormatArgument(0), FormatArgument(arguments)...};
    return FormatTextV(format, std::span(list).subspan(1));
}

}  // namespace Zorvex
