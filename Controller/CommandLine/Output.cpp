#include "Controller/CommandLine/Output.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ostream>

#include "Common/include/UtfConversion.h"

namespace Zorvex::Controller {

namespace {

// Bytes of UTF-8 stand as they are.
std::string Escaped(std::string_view utf8) {
    std::string result = "\"";
    for (const char byte : utf8) {
        switch (byte) {
            case '"': result += "\\\""; break;
            case '\\': result += "\\\\"; break;
            case '\n': result += "\\n"; break;
            case '\r': result += "\\r"; break;
            case '\t': result += "\\t"; break;
            default:
                if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) {
                    char code[8];
                    std::snprintf(code, sizeof(code), "\\u%04x", static_cast<unsigned char>(byte));
                    result += code;
                } else {
                    result += byte;
                }
        }
    }
    return result + '"';
}

}  // namespace

JsonWriter& JsonWriter::Begin(char bracket) {
    Separate();
    m_out << bracket;
    ++m_depth;
    m_empty = true;
    return *this;
}

JsonWriter& JsonWriter::End(char bracket) {
    --m_depth;
    if (!m_empty) m_out << '\n' << std::string(static_cast<std::size_t>(m_depth), ' ');
    m_out << bracket;
    m_empty = false;
    return *this;
}

void JsonWriter::Separate() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_depth == 0) return;
    m_out << (m_empty ? "\n" : ",\n") << std::string(static_cast<std::size_t>(m_depth), ' ');
    m_empty = false;
}

JsonWriter& JsonWriter::Key(std::string_view name) {
    Separate();
    m_out << Escaped(name) << ": ";
    m_afterKey = true;
    return *this;
}

JsonWriter& JsonWriter::Text(std::wstring_view text) { return Text(std::string_view(NarrowText(text))); }

JsonWriter& JsonWriter::Text(std::string_view utf8) {
    Separate();
    m_out << Escaped(utf8);
    return *this;
}

JsonWriter& JsonWriter::Number(std::int64_t number) {
    Separate();
    m_out << number;
    return *this;
}

JsonWriter& JsonWriter::Fraction(double number) {
    if (!std::isfinite(number)) return Null();
    Separate();
    std::array<char, 40> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    m_out << std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
    return *this;
}

JsonWriter& JsonWriter::Flag(bool flag) {
    Separate();
    m_out << (flag ? "true" : "false");
    return *this;
}

JsonWriter& JsonWriter::Null() {
    Separate();
    m_out << "null";
    return *this;
}

JsonWriter& JsonWriter::Rectangle(const RECT& rectangle) {
    Separate();
    m_out << "{\"left\": " << rectangle.left << ", \"top\": " << rectangle.top << ", \"right\": " << rectangle.right
          << ", \"bottom\": " << rectangle.bottom << '}';
    return *this;
}

void JsonWriter::Finish() { m_out << '\n'; }

std::string HandleText(HWND window) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%x", static_cast<unsigned>(reinterpret_cast<UINT_PTR>(window)));
    return text;
}

std::string RectangleText(const RECT& rectangle) {
    return std::to_string(rectangle.left) + "," + std::to_string(rectangle.top) + " " +
           std::to_string(static_cast<std::int64_t>(rectangle.right) - rectangle.left) + "x" +
           std::to_string(static_cast<std::int64_t>(rectangle.bottom) - rectangle.top);
}

std::string QuotedText(std::wstring_view text) { return Escaped(NarrowText(text)); }

std::string ScoreText(double score) {
    char text[64];
    std::snprintf(text, sizeof(text), "%.2f", score);
    return text;
}

}  // namespace Zorvex::Controller
