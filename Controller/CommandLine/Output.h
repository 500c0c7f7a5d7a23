// Where a command's answer goes: text for a person, JSON for a program. Both UTF-8.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "Platform/Windows.h"

namespace Zorvex::Controller {

struct Output {
    std::ostream& out;
    std::ostream& err;
    bool json = false;
};

// Writes JSON value by value, indented by one blank a level. The caller keeps to the order: a key before each value in
// an object.
class JsonWriter {
public:
    explicit JsonWriter(std::ostream& out) : m_out(out) {}

    JsonWriter& BeginObject() { return Begin('{'); }
    JsonWriter& EndObject() { return End('}'); }
    JsonWriter& BeginArray() { return Begin('['); }
    JsonWriter& EndArray() { return End(']'); }
    JsonWriter& Key(std::string_view name);
    JsonWriter& Text(std::wstring_view text);
    JsonWriter& Text(std::string_view utf8);
    JsonWriter& Number(std::int64_t number);
    JsonWriter& Fraction(double number);
    JsonWriter& Flag(bool flag);
    JsonWriter& Null();
    // {"left": 0, "top": 0, "right": 0, "bottom": 0}, on one line.
    JsonWriter& Rectangle(const RECT& rectangle);
    // Ends the line after the outermost value.
    void Finish();

private:
    JsonWriter& Begin(char bracket);
    JsonWriter& End(char bracket);
    void Separate();

    std::ostream& m_out;
    int m_depth = 0;
    bool m_empty = true;
    bool m_afterKey = false;
};

// "0x10102": a handle as every command prints it.
std::string HandleText(HWND window);
// "108,151 624x421": left, top, width, height.
std::string RectangleText(const RECT& rectangle);
// In double quotes, with \" \\ \n \r \t and \uXXXX escaped as in selectors, so that a name stays on its line.
std::string QuotedText(std::wstring_view text);
// Two digits behind the point.
std::string ScoreText(double score);

}  // namespace Zorvex::Controller
