#include "Common/include/FormatText.h"

#include <algorithm>
#include <cstdio>

#include "Common/include/UtfConversion.h"

namespace Zorvex {
namespace {

// Wider fields are cut to this; a format is written by the programmer, a width by '*' may come from anywhere.
constexpr int c_maximumField = 1 << 16;

template <class Character>
std::basic_string<Character> TextOf(const FormatArgument& argument);
template <>
std::string TextOf<char>(const FormatArgument& argument) {
    return argument.kind == FormatArgument::Kind::Wide ? NarrowText(argument.wide) : std::string(argument.narrow);
}
template <>
std::wstring TextOf<wchar_t>(const FormatArgument& argument) {
    return argument.kind == FormatArgument::Kind::Wide ? std::wstring(argument.wide) : WideText(argument.narrow);
}

struct Conversion {
    std::string flags;
    int width = -1;
    int precision = -1;
    char letter = 0;
};

// The bits of the argument in its own width.
std::uint64_t UnsignedBits(const FormatArgument& argument) {
    const auto bits = static_cast<std::uint64_t>(argument.integer);
    return argument.width >= sizeof bits ? bits : bits & ((std::uint64_t{1} << (8 * argument.width)) - 1);
}

std::string FormatNumber(const Conversion& conversion, const char* lengthAndLetter, auto value) {
    std::string format = "%" + conversion.flags + "*";
    if (conversion.precision >= 0) format += ".*";
    format += lengthAndLetter;
    const int width = std::max(conversion.width, 0);
    const auto print = [&](char* target, std::size_t capacity) {
        return conversion.precision >= 0 ? std::snprintf(target, capacity, format.c_str(), width, conversion.precision, value)
                                         : std::snprintf(target, capacity, format.c_str(), width, value);
    };
    const int length = print(nullptr, 0);
    if (length < 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    print(text.data(), text.size());
    text.pop_back();
    return text;
}

std::string FormatInteger(const Conversion& conversion, const FormatArgument& argument) {
    const bool isReal = argument.kind == FormatArgument::Kind::Double;
    FormatArgument integer = argument;
    // A number of the wrong kind is still shown, by its value.
    if (isReal) integer = FormatArgument(argument.real > -9.2e18 && argument.real < 9.2e18 ? static_cast<std::int64_t>(argument.real) : std::int64_t{0});
    const std::string length = std::string("ll") + conversion.letter;
    const bool isSigned = conversion.letter == 'd' || conversion.letter == 'i';
    if (!isSigned) return FormatNumber(conversion, length.c_str(), static_cast<unsigned long long>(UnsignedBits(integer)));
    // A 32-bit number without a sign shows its bits as a signed one, as printf does with it; smaller ones fit anyway.
    const bool reinterpret = integer.kind == FormatArgument::Kind::Unsigned && integer.width == sizeof(std::int32_t);
    const std::int64_t value = reinterpret ? static_cast<std::int32_t>(integer.integer) : integer.integer;
    return FormatNumber(conversion, length.c_str(), static_cast<long long>(value));
}

std::string FormatReal(const Conversion& conversion, const FormatArgument& argument) {
    const double value = argument.kind == FormatArgument::Kind::Double ? argument.real : static_cast<double>(argument.integer);
    return FormatNumber(conversion, std::string(1, conversion.letter).c_str(), value);
}

// Digits enough for the pointer's size, upper case.
std::string PointerText(const FormatArgument& argument) {
    char text[32];
    std::snprintf(text, sizeof text, "%0*llX", static_cast<int>(sizeof(void*) * 2), static_cast<unsigned long long>(argument.integer));
    return text;
}

bool IsText(const FormatArgument& argument) {
    return argument.kind == FormatArgument::Kind::Narrow || argument.kind == FormatArgument::Kind::Wide;
}

// An integer as one code unit.
template <class Character>
std::basic_string<Character> CharacterText(const FormatArgument& argument) {
    const wchar_t unit = static_cast<wchar_t>(UnsignedBits(argument) & 0xFFFF);
    if constexpr (std::is_same_v<Character, char>) return argument.width == 1 ? std::string(1, static_cast<char>(unit)) : NarrowText(std::wstring_view(&unit, 1));
    else return std::wstring(1, unit);
}

template <class Character>
std::basic_string<Character> Convert(const Conversion& conversion, const FormatArgument& argument) {
    using Text = std::basic_string<Character>;
    const auto plain = [](const std::string& ascii) { return Text(ascii.begin(), ascii.end()); };
    Text text;
    switch (conversion.letter) {
        case 'd': case 'i': case 'u': case 'x': case 'X': case 'o':
            if (!IsText(argument)) return plain(FormatInteger(conversion, argument));
            text = TextOf<Character>(argument);
            break;
        case 'e': case 'E': case 'f': case 'F': case 'g': case 'G':
            if (!IsText(argument)) return plain(FormatReal(conversion, argument));
            text = TextOf<Character>(argument);
            break;
        case 'p':
            text = IsText(argument) ? TextOf<Character>(argument) : plain(PointerText(argument));
            break;
        case 'c': case 'C':
            text = IsText(argument) ? TextOf<Character>(argument) : CharacterText<Character>(argument);
            break;
        default:  // s S
            if (IsText(argument)) {
                // A precision counts in units of the argument, so that the length that goes with it may be given.
                FormatArgument cut = argument;
                if (conversion.precision >= 0) {
                    cut.narrow = cut.narrow.substr(0, static_cast<std::size_t>(conversion.precision));
                    cut.wide = cut.wide.substr(0, static_cast<std::size_t>(conversion.precision));
                }
                text = TextOf<Character>(cut);
            } else if (argument.kind == FormatArgument::Kind::Double) {
                text = plain(FormatReal({"", -1, -1, 'g'}, argument));
            } else if (argument.kind == FormatArgument::Kind::Pointer) {
                text = plain(PointerText(argument));
            } else {
                text = plain(FormatInteger({"", -1, -1, argument.kind == FormatArgument::Kind::Signed ? 'd' : 'u'}, argument));
            }
            break;
    }
    if (conversion.width > 0 && text.size() < static_cast<std::size_t>(conversion.width)) {
        const std::size_t missing = static_cast<std::size_t>(conversion.width) - text.size();
        text.insert(conversion.flags.find('-') != std::string::npos ? text.size() : 0, missing, Character(' '));
    }
    return text;
}

template <class Character>
class Formatter {
public:
    Formatter(std::basic_string_view<Character> format, std::span<const FormatArgument> arguments)
        : m_format(format), m_arguments(arguments) {}

    std::basic_string<Character> Run() {
        while (m_at < m_format.size()) {
            const std::size_t percent = std::min(m_format.find(Character('%'), m_at), m_format.size());
            m_text.append(m_format.substr(m_at, percent - m_at));
            m_at = percent;
            if (m_at < m_format.size()) TakeConversion();
        }
        return std::move(m_text);
    }

private:
    char Peek() const {
        const Character next = m_at < m_format.size() ? m_format[m_at] : Character(0);
        return next > 0 && next < 0x7F ? static_cast<char>(next) : '\0';
    }
    bool TakeOneOf(std::string_view letters) {
        if (Peek() == '\0' || letters.find(Peek()) == std::string_view::npos) return false;
        ++m_at;
        return true;
    }
    const FormatArgument* TakeArgument() { return m_next < m_arguments.size() ? &m_arguments[m_next++] : nullptr; }

    // A width or precision: digits or '*'. -1 for none.
    int TakeField() {
        if (TakeOneOf("*")) {
            const FormatArgument* argument = TakeArgument();
            return argument && !IsText(*argument) ? static_cast<int>(std::clamp<std::int64_t>(argument->integer, -c_maximumField, c_maximumField)) : -1;
        }
        int value = -1;
        while (Peek() >= '0' && Peek() <= '9') {
            value = std::min(std::max(value, 0) * 10 + (Peek() - '0'), c_maximumField);
            ++m_at;
        }
        return value;
    }
    void TakeLengthPrefix() {
        if (Peek() == 'I') {
            const auto rest = m_format.substr(m_at);
            const bool sized = rest.size() > 3 && ((rest[1] == '6' && rest[2] == '4') || (rest[1] == '3' && rest[2] == '2'));
            m_at += sized ? 3 : 1;
            return;
        }
        while (TakeOneOf("hlzjtw")) {
        }
    }

    void TakeConversion() {
        const std::size_t start = m_at++;
        if (TakeOneOf("%")) {
            m_text += Character('%');
            return;
        }
        const std::size_t firstArgument = m_next;
        Conversion conversion;
        while (Peek() != '\0' && std::string_view("-+ #0").find(Peek()) != std::string_view::npos) conversion.flags += static_cast<char>(m_format[m_at++]);
        conversion.width = TakeField();
        if (conversion.width < -1) {
            // A negative width by '*' means: to the left.
            conversion.flags += '-';
            conversion.width = -conversion.width;
        }
        if (TakeOneOf(".")) {
            // A point alone is precision 0, a negative precision by '*' is none.
            const bool isGiven = Peek() == '*';
            const int field = TakeField();
            conversion.precision = field >= 0 ? field : isGiven ? -1 : 0;
        }
        TakeLengthPrefix();
        conversion.letter = Peek();
        const bool known = conversion.letter != '\0' && std::string_view("diuxXopsScCeEfFgG").find(conversion.letter) != std::string_view::npos;
        if (known) ++m_at;
        const FormatArgument* argument = known ? TakeArgument() : nullptr;
        if (argument) {
            m_text += Convert<Character>(conversion, *argument);
            return;
        }
        // Unknown, or nothing left for it: the format's own text stands.
        m_next = firstArgument;
        m_text.append(m_format.substr(start, m_at - start));
    }

    std::basic_string_view<Character> m_format;
    std::span<const FormatArgument> m_arguments;
    std::basic_string<Character> m_text;
    std::size_t m_at = 0;
    std::size_t m_next = 0;
};

}  // namespace

std::string FormatTextV(std::string_view format, std::span<const FormatArgument> arguments) { return Formatter<char>(format, arguments).Run(); }
std::wstring FormatTextV(std::wstring_view format, std::span<const FormatArgument> arguments) {
    return Formatter<wchar_t>(format, arguments).Run();
}

}  // namespace Zorvex
