// The writer. It keeps its own stack, as the reader does.
#include <charconv>
#include <climits>
#include <cmath>

#include "Common/include/FormatText.h"
#include "Common/include/JsonSerializer/JsonText.h"

namespace Zorvex {
namespace {

constexpr std::size_t c_indent = 3;
constexpr std::string_view c_lineEnd = "\r\n";

class Writer {
public:
    Writer(JsonLayout layout, std::string& text) : m_isPretty(layout == JsonLayout::Pretty), m_text(text) {}

    bool Write(const Value& root) {
        if (!WriteOrOpen(root)) return false;
        while (!m_open.empty()) {
            Open& top = m_open.back();
            if (top.left == 0) {
                Close();
                continue;
            }
            if (!top.isFirst) m_text += ',';
            top.isFirst = false;
            --top.left;
            BreakLine();
            const Value* child = nullptr;
            if (top.list) {
                child = top.list++;
            } else {
                if (!WriteString(top.entry->first)) return false;
                m_text += m_isPretty ? ": " : ":";
                child = &top.entry++->second;
            }
            if (!WriteOrOpen(*child)) return false;
        }
        if (m_isPretty) m_text += c_lineEnd;
        return true;
    }

private:
    struct Open {
        const Value* list;  // null for a dictionary
        Value::DictionaryData::const_iterator entry;
        std::size_t left;
        bool isFirst;
    };

    void BreakLine() {
        if (!m_isPretty) return;
        m_text += c_lineEnd;
        m_text.append(m_open.size() * c_indent, ' ');
    }

    void Close() {
        const bool isList = m_open.back().list != nullptr;
        m_open.pop_back();
        BreakLine();
        m_text += isList ? ']' : '}';
    }

    bool WriteOrOpen(const Value& value) {
        switch (value.GetType()) {
            case Value::Type::None: m_text += "null"; return true;
            case Value::Type::Boolean: m_text += *value.AsBoolean() ? "true" : "false"; return true;
            case Value::Type::Integer: m_text += std::to_string(*value.AsInteger()); return true;
            case Value::Type::Double: return WriteDouble(*value.AsDouble());
            case Value::Type::String: return WriteString(*value.AsString());
            case Value::Type::Binary: return false;
            case Value::Type::Dictionary: return OpenContainer("{}", nullptr, value.AsDictionary()->begin(), value.AsDictionary()->size());
            case Value::Type::List: return OpenContainer("[]", value.AsList()->data(), {}, value.AsList()->size());
        }
        return false;
    }

    bool OpenContainer(std::string_view brackets, const Value* list, Value::DictionaryData::const_iterator entry, std::size_t count) {
        if (static_cast<int>(m_open.size()) + 1 >= c_jsonNestingLimit) return false;
        if (count == 0) {
            m_text += brackets;
            return true;
        }
        m_text += brackets[0];
        m_open.push_back({list, entry, count, true});
        return true;
    }

    bool WriteDouble(double value) {
        if (!std::isfinite(value)) return false;
        char digits[64];
        const auto result = std::to_chars(digits, digits + sizeof digits, value);
        const std::string_view text(digits, static_cast<std::size_t>(result.ptr - digits));
        m_text += text;
        // So that it is read as a double again.
        if (text.find_first_of(".e") == std::string_view::npos) m_text += ".0";
        return true;
    }

    bool WriteString(std::string_view text) {
        if (text.size() > INT_MAX) return false;
        if (!text.empty() && ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), static_cast<int>(text.size()), nullptr, 0) <= 0) return false;
        m_text += '"';
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char letter = text[i];
            constexpr std::string_view c_escaped = "\b\t\n\f\r\"\\", c_letters = "btnfr\"\\";
            const std::size_t known = c_escaped.find(letter);
            if (known != std::string_view::npos) {
                m_text += '\\';
                m_text += c_letters[known];
            } else if (letter == '<') {
                // So that no text can end a script that it is embedded in.
                m_text += "\\u003C";
            } else if (text.substr(i, 3) == "\xE2\x80\xA8" || text.substr(i, 3) == "\xE2\x80\xA9") {
                m_text += text[i + 2] == '\xA8' ? "\\u2028" : "\\u2029";
                i += 2;
            } else if (static_cast<unsigned char>(letter) < 0x20) {
                m_text += FormatText("\\u%04X", static_cast<unsigned char>(letter));
            } else {
                m_text += letter;
            }
        }
        m_text += '"';
        return true;
    }

    bool m_isPretty;
    std::string& m_text;
    std::vector<Open> m_open;
};

}  // namespace

bool WriteJson(const Value& value, JsonLayout layout, std::string& text) {
    text.clear();
    if (Writer(layout, text).Write(value)) return true;
    text.clear();
    return false;
}

}  // namespace Zorvex
