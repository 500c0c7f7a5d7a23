// The reader. It keeps its own stack of open containers, so that the nesting of the text is never a depth of calls.
#include <algorithm>
#include <charconv>
#include <climits>
#include <utility>

#include "Common/include/FormatText.h"
#include "Common/include/JsonSerializer/JsonText.h"

namespace Zorvex {
namespace {

constexpr std::string_view c_byteOrderMark = "\xEF\xBB\xBF";

bool IsUtf8(std::string_view text) {
    if (text.empty()) return true;
    if (text.size() > INT_MAX) return false;
    return ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), static_cast<int>(text.size()), nullptr, 0) > 0;
}

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

void AppendUtf8(std::string& text, unsigned point) {
    const auto tail = [](unsigned bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
    if (point < 0x80) {
        text += static_cast<char>(point);
    } else if (point < 0x800) {
        text += static_cast<char>(0xC0 | (point >> 6));
        text += tail(point);
    } else if (point < 0x10000) {
        text += static_cast<char>(0xE0 | (point >> 12));
        text += tail(point >> 6);
        text += tail(point);
    } else {
        text += static_cast<char>(0xF0 | (point >> 18));
        text += tail(point >> 12);
        text += tail(point >> 6);
        text += tail(point);
    }
}

class Reader {
public:
    Reader(std::string_view text, TrailingCommas trailingCommas) : m_text(text), m_trailingCommas(trailingCommas) {}

    bool ReadDocument(Value& root) {
        Value value;
        while (true) {
            bool opened = false;
            if (!ReadValueOrOpen(value, opened)) return false;
            if (opened) continue;
            bool wantsNext = false;
            if (!Attach(value, wantsNext)) return false;
            if (!wantsNext) break;
        }
        root = std::move(value);
        SkipBlanks();
        return m_at == m_text.size() || Fail(JsonError::UnexpectedDataAfterRoot, m_at);
    }

    JsonError Code() const { return m_code; }
    std::size_t ErrorOffset() const { return m_errorOffset; }

private:
    struct Open {
        Value container;
        std::string key;
    };

    bool Fail(JsonError code, std::size_t offset) {
        m_code = code;
        m_errorOffset = offset;
        return false;
    }
    char Peek(std::size_t ahead = 0) const { return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : '\0'; }
    bool Take(char letter) {
        if (m_at >= m_text.size() || m_text[m_at] != letter) return false;
        ++m_at;
        return true;
    }
    char Closing() const { return m_open.back().container.IsList() ? ']' : '}'; }

    // White space and comments. A comment without an end isn't one: it is met as what it stands for.
    void SkipBlanks() {
        while (m_at < m_text.size()) {
            const char letter = m_text[m_at];
            if (letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n') {
                ++m_at;
            } else if (letter == '/' && Peek(1) == '/') {
                m_at = std::min(m_text.find_first_of("\r\n", m_at), m_text.size());
            } else if (letter == '/' && Peek(1) == '*') {
                const std::size_t end = m_text.find("*/", m_at + 2);
                if (end == std::string_view::npos) return;
                m_at = end + 2;
            } else {
                return;
            }
        }
    }

    // Reads a whole value, or opens a container that has something inside.
    bool ReadValueOrOpen(Value& value, bool& opened) {
        SkipBlanks();
        const std::size_t start = m_at;
        const char letter = Peek();
        if (letter == '[' || letter == '{') {
            if (static_cast<int>(m_open.size()) + 1 >= c_jsonNestingLimit) return Fail(JsonError::TooMuchNesting, start);
            ++m_at;
            const bool isList = letter == '[';
            value = Value(isList ? Value::Type::List : Value::Type::Dictionary);
            SkipBlanks();
            if (Take(isList ? ']' : '}')) return true;
            m_open.push_back({std::move(value), {}});
            opened = true;
            return isList || ReadKey();
        }
        if (letter == '"') {
            std::string text;
            if (!ReadString(text)) return false;
            value = Value(std::string_view(text));
            return true;
        }
        if (letter == '-' || IsDigit(letter)) return ReadNumber(value);
        if (letter == 't') return ReadWord("true", Value(true), value);
        if (letter == 'f') return ReadWord("false", Value(false), value);
        if (letter == 'n') return ReadWord("null", Value(), value);
        return Fail(JsonError::UnexpectedToken, start);
    }

    // Puts a whole value where it belongs and closes what ends behind it. `value` is the root when nothing is open
    // any more; otherwise another value follows.
    bool Attach(Value& value, bool& wantsNext) {
        while (!m_open.empty()) {
            Open& parent = m_open.back();
            if (parent.container.IsList()) parent.container.Append(std::move(value));
            else parent.container.Set(parent.key, std::move(value));
            SkipBlanks();
            if (Take(',')) {
                SkipBlanks();
                if (Peek() != Closing()) {
                    wantsNext = true;
                    return parent.container.IsList() || ReadKey();
                }
                if (m_trailingCommas == TrailingCommas::Refused) return Fail(JsonError::TrailingComma, m_at);
            }
            if (!Take(Closing())) return Fail(JsonError::SyntaxError, m_at);
            value = std::move(parent.container);
            m_open.pop_back();
        }
        return true;
    }

    bool ReadKey() {
        SkipBlanks();
        if (Peek() != '"') return Fail(JsonError::UnquotedDictionaryKey, m_at);
        std::string key;
        if (!ReadString(key)) return false;
        m_open.back().key = std::move(key);
        SkipBlanks();
        return Take(':') || Fail(JsonError::SyntaxError, m_at);
    }

    bool ReadWord(std::string_view word, Value meaning, Value& value) {
        if (m_text.substr(m_at, word.size()) != word) return Fail(JsonError::SyntaxError, m_at);
        m_at += word.size();
        value = std::move(meaning);
        return true;
    }

    bool ReadString(std::string& text) {
        const std::size_t start = m_at++;
        while (m_at < m_text.size()) {
            const std::size_t from = m_at;
            while (m_at < m_text.size() && m_text[m_at] != '"' && m_text[m_at] != '\\' && static_cast<unsigned char>(m_text[m_at]) >= 0x20) ++m_at;
            text.append(m_text.substr(from, m_at - from));
            if (Take('"')) return true;
            if (m_at == m_text.size()) break;
            // A control character must be escaped.
            if (m_text[m_at] != '\\') return Fail(JsonError::SyntaxError, m_at);
            if (!ReadEscape(text)) return false;
        }
        return Fail(JsonError::SyntaxError, start);
    }

    bool ReadEscape(std::string& text) {
        constexpr std::string_view c_letters = "\"\\/bfnrt", c_meanings = "\"\\/\b\f\n\r\t";
        const std::size_t start = m_at++;
        const char letter = Peek();
        if (letter == 'u') {
            unsigned unit = 0, low = 0;
            if (!ReadUnit(unit)) return Fail(JsonError::InvalidEscape, start);
            if (unit >= 0xD800 && unit <= 0xDBFF) {
                // Half a character is none: the other half must follow.
                if (!Take('\\') || Peek() != 'u' || !ReadUnit(low) || low < 0xDC00 || low > 0xDFFF) return Fail(JsonError::InvalidEscape, start);
                unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
            } else if (unit >= 0xDC00 && unit <= 0xDFFF) {
                return Fail(JsonError::InvalidEscape, start);
            }
            AppendUtf8(text, unit);
            return true;
        }
        const std::size_t known = letter == '\0' ? std::string_view::npos : c_letters.find(letter);
        if (known == std::string_view::npos) return Fail(JsonError::InvalidEscape, start);
        text += c_meanings[known];
        ++m_at;
        return true;
    }

    // 'u' and four hexadecimal digits.
    bool ReadUnit(unsigned& unit) {
        const std::string_view digits = m_text.substr(std::min(m_at + 1, m_text.size())).substr(0, 4);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
        if (digits.size() != 4 || error != std::errc() || end != digits.data() + 4) return false;
        m_at += 5;
        return true;
    }

    bool ReadNumber(Value& value) {
        const std::size_t start = m_at;
        Take('-');
        const auto takeDigits = [this] {
            const std::size_t from = m_at;
            while (IsDigit(Peek())) ++m_at;
            return m_at > from;
        };
        // A leading zero stands alone.
        const bool leadingZero = Peek() == '0';
        const std::size_t firstDigit = m_at;
        if (!takeDigits() || (leadingZero && m_at > firstDigit + 1)) return Fail(JsonError::SyntaxError, start);
        bool isWhole = true;
        if (Take('.')) {
            isWhole = false;
            if (!takeDigits()) return Fail(JsonError::SyntaxError, start);
        }
        if (Peek() == 'e' || Peek() == 'E') {
            isWhole = false;
            ++m_at;
            if (!Take('+')) Take('-');
            if (!takeDigits()) return Fail(JsonError::SyntaxError, start);
        }
        const std::string_view number = m_text.substr(start, m_at - start);
        std::int32_t integer = 0;
        if (isWhole && std::from_chars(number.data(), number.data() + number.size(), integer).ec == std::errc()) {
            value = Value(integer);
            return true;
        }
        double real = 0;
        const auto result = std::from_chars(number.data(), number.data() + number.size(), real);
        if (result.ec == std::errc::result_out_of_range && !IsTiny(number)) return Fail(JsonError::SyntaxError, start);
        if (result.ec != std::errc()) real = number[0] == '-' ? -0.0 : 0.0;
        value = Value(real);
        return true;
    }

    // Of a number that no double can hold: whether it is too small rather than too large.
    static bool IsTiny(std::string_view number) {
        constexpr long long c_far = 1'000'000'000'000;
        const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
        long long exponent = 0;
        if (mark < number.size()) {
            const bool isNegative = number[mark + 1] == '-';
            const std::size_t digits = mark + (isNegative || number[mark + 1] == '+' ? 2 : 1);
            if (std::from_chars(number.data() + digits, number.data() + number.size(), exponent).ec != std::errc()) exponent = c_far;
            if (isNegative) exponent = -exponent;
        }
        const auto point = static_cast<long long>(std::min(number.find('.'), mark));
        const auto firstDigit = static_cast<long long>(std::min(number.find_first_of("123456789"), mark));
        return exponent + (firstDigit < point ? point - firstDigit : point + 1 - firstDigit) < 0;
    }

    std::string_view m_text;
    TrailingCommas m_trailingCommas;
    std::size_t m_at = 0;
    std::vector<Open> m_open;
    JsonError m_code = JsonError::None;
    std::size_t m_errorOffset = 0;
};

void FindPosition(std::string_view text, std::size_t offset, JsonReadError& error) {
    error.line = 1;
    error.column = 1;
    for (std::size_t i = 0; i < offset; ++i) {
        const bool endsLine = text[i] == '\n' || (text[i] == '\r' && !(i + 1 < text.size() && text[i + 1] == '\n'));
        if (endsLine) {
            ++error.line;
            error.column = 1;
        } else if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
            // The bytes behind the first of a character count with it.
            ++error.column;
        }
    }
}

}  // namespace

const char* JsonErrorText(JsonError code) {
    switch (code) {
        case JsonError::None: return "";
        case JsonError::InvalidEscape: return "Invalid escape sequence.";
        case JsonError::SyntaxError: return "Syntax error.";
        case JsonError::UnexpectedToken: return "Unexpected token.";
        case JsonError::TrailingComma: return "Trailing comma not allowed.";
        case JsonError::TooMuchNesting: return "Too much nesting.";
        case JsonError::UnexpectedDataAfterRoot: return "Unexpected data after root element.";
        case JsonError::UnsupportedEncoding: return "Unsupported encoding. JSON must be UTF-8.";
        case JsonError::UnquotedDictionaryKey: return "Dictionary keys must be quoted.";
    }
    return "";
}

std::unique_ptr<Value> ReadJson(std::string_view text, JsonReadError* error, TrailingCommas trailingCommas) {
    JsonReadError ignored;
    JsonReadError& report = error ? *error : ignored;
    report = {};
    if (!IsUtf8(text)) {
        // The position isn't known: the text isn't looked at any further.
        report.code = JsonError::UnsupportedEncoding;
        report.message = JsonErrorText(report.code);
        return nullptr;
    }
    if (text.starts_with(c_byteOrderMark)) text.remove_prefix(c_byteOrderMark.size());
    Reader reader(text, trailingCommas);
    auto root = std::make_unique<Value>();
    if (reader.ReadDocument(*root)) return root;
    report.code = reader.Code();
    FindPosition(text, reader.ErrorOffset(), report);
    report.message = FormatText("Line: %i, column: %i, %s", report.line, report.column, JsonErrorText(report.code));
    return nullptr;
}

}  // namespace Zorvex
