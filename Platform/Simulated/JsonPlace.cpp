#include "Platform/Simulated/JsonPlace.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace Simulated {

std::string JsonPlace::Way() const {
    if (!m_parent) return {};
    const std::string before = m_parent->Way();
    if (m_parent->m_value.is_array()) return before + "[" + std::to_string(m_index) + "]";
    return before.empty() ? std::string(m_key) : before + "." + std::string(m_key);
}

void JsonPlace::Fail(const std::string& problem) const {
    const std::string way = Way();
    throw DesktopFileError((way.empty() ? "desktop" : way) + ": " + problem);
}

void JsonPlace::ExpectKeys(std::initializer_list<std::string_view> known) const {
    if (!m_value.is_object()) Fail("an object is expected");
    for (const auto& item : m_value.items()) {
        if (std::find(known.begin(), known.end(), item.key()) != known.end()) continue;
        std::string list;
        for (const std::string_view key : known) list += (list.empty() ? "" : ", ") + std::string(key);
        Fail("unknown key \"" + item.key() + "\"; known are " + list);
    }
}

void JsonPlace::ExpectLength(std::size_t length) const {
    if (!m_value.is_array() || m_value.size() != length) Fail("a list of " + std::to_string(length) + " is expected");
}

std::int64_t JsonPlace::Integer(std::int64_t low, std::int64_t high) const {
    const bool tooLarge = m_value.is_number_unsigned() && m_value.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (!m_value.is_number_integer()) Fail("a whole number is expected");
    const std::int64_t number = tooLarge ? std::numeric_limits<std::int64_t>::max() : m_value.get<std::int64_t>();
    if (tooLarge || number < low || number > high)
        Fail("the number must lie between " + std::to_string(low) + " and " + std::to_string(high));
    return number;
}

std::uint32_t JsonPlace::Bits() const {
    if (!m_value.is_string()) return static_cast<std::uint32_t>(Integer(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::uint32_t>::max()));
    const std::string& text = m_value.get_ref<const std::string&>();
    std::uint32_t bits = 0;
    const char* const end = text.data() + text.size();
    if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) Fail("a number, or a text such as \"0x80004005\", is expected");
    const auto [stop, error] = std::from_chars(text.data() + 2, end, bits, 16);
    if (error != std::errc() || stop != end) Fail("a number of 32 bits, such as \"0x80004005\", is expected");
    return bits;
}

bool JsonPlace::Flag() const {
    if (!m_value.is_boolean()) Fail("true or false is expected");
    return m_value.get<bool>();
}

std::string JsonPlace::Bytes() const {
    if (!m_value.is_string()) Fail("a text is expected");
    return m_value.get<std::string>();
}

std::wstring JsonPlace::Text() const {
    if (!m_value.is_string()) Fail("a text is expected");
    return Widen(m_value.get_ref<const std::string&>());
}

std::wstring Widen(std::string_view text) {
    // The JSON library lets only valid UTF-8 through, so the decoding can be short.
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        std::uint32_t point = more == 0 ? lead : lead & (0x3F >> more);
        for (int k = 1; k <= more && i + static_cast<std::size_t>(k) < text.size(); ++k)
            point = (point << 6) | (static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]) & 0x3F);
        i += static_cast<std::size_t>(more) + 1;
        if (point < 0x10000) {
            wide += static_cast<wchar_t>(point);
        } else {
            wide += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
            wide += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        }
    }
    return wide;
}

std::string Narrow(std::wstring_view text) {
    std::string narrow;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint32_t point = static_cast<std::uint32_t>(text[i]) & 0xFFFF;
        const bool high = point >= 0xD800 && point < 0xDC00;
        if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000)
            point = 0x10000 + ((point - 0xD800) << 10) + (static_cast<std::uint32_t>(text[++i]) - 0xDC00);
        else if (point >= 0xD800 && point < 0xE000)
            point = 0xFFFD;  // half a pair has no UTF-8
        if (point < 0x80) {
            narrow += static_cast<char>(point);
        } else if (point < 0x800) {
            narrow += static_cast<char>(0xC0 | (point >> 6));
            narrow += static_cast<char>(0x80 | (point & 0x3F));
        } else if (point < 0x10000) {
            narrow += static_cast<char>(0xE0 | (point >> 12));
            narrow += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
            narrow += static_cast<char>(0x80 | (point & 0x3F));
        } else {
            narrow += static_cast<char>(0xF0 | (point >> 18));
            narrow += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
            narrow += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
            narrow += static_cast<char>(0x80 | (point & 0x3F));
        }
    }
    return narrow;
}

std::string HexText(std::uint32_t bits) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(bits));
    return text;
}

std::optional<LONG> NumberOf(std::span<const NamedNumber> table, std::string_view name) {
    for (const NamedNumber& entry : table)
        if (entry.name == name) return entry.number;
    return std::nullopt;
}

std::string_view NameIn(std::span<const NamedNumber> table, LONG number) {
    for (const NamedNumber& entry : table)
        if (entry.number == number) return entry.name;
    return {};
}

namespace {
constexpr NamedNumber Objects[] = {
    {"window", OBJID_WINDOW}, {"systemMenu", OBJID_SYSMENU}, {"titleBar", OBJID_TITLEBAR}, {"menu", OBJID_MENU},
    {"client", OBJID_CLIENT}, {"verticalScrollBar", OBJID_VSCROLL}, {"horizontalScrollBar", OBJID_HSCROLL},
    {"sizeGrip", OBJID_SIZEGRIP}, {"caret", OBJID_CARET}};
}

std::string_view ObjectName(LONG objectId) { return NameIn(Objects, objectId); }

bool ObjectFromName(std::string_view name, LONG& objectId) {
    const std::optional<LONG> number = NumberOf(Objects, name);
    if (number) objectId = *number;
    return number.has_value();
}

}  // namespace Simulated
