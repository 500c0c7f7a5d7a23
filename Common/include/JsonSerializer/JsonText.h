// JSON as text: reader and writer.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Common/include/JsonSerializer/Value.h"

namespace Zorvex {

// A list or dictionary at this depth or deeper is neither read nor written; the outermost stands at depth 1.
constexpr int c_jsonNestingLimit = 200;

enum class JsonError : int {
    None = 0,
    InvalidEscape = 1,
    SyntaxError = 2,
    UnexpectedToken = 3,
    TrailingComma = 4,
    TooMuchNesting = 5,
    UnexpectedDataAfterRoot = 6,
    UnsupportedEncoding = 7,
    UnquotedDictionaryKey = 8
};

// The plain message of a code; empty for None.
const char* JsonErrorText(JsonError code);

struct JsonReadError {
    JsonError code = JsonError::None;
    // "Line: %i, column: %i, " and the plain message, or the plain message alone when the position isn't known.
    std::string message;
    // From 1; 0 when not known. Columns count characters, CR LF is one line end.
    int line = 0;
    int column = 0;
};

enum class TrailingCommas { Allowed, Refused };

// Reads one value. Comments are white space, a byte order mark is skipped, a key that stands twice counts with its
// last value, a number that no double can hold is a syntax error. Null on failure; `error` may be null.
std::unique_ptr<Value> ReadJson(std::string_view text, JsonReadError* error = nullptr,
                                TrailingCommas trailingCommas = TrailingCommas::Allowed);

enum class JsonLayout { Compact, Pretty };

// False, with an empty text, for what JSON can't express: binary data, an infinite or undefined number, text that
// isn't UTF-8, too much nesting.
bool WriteJson(const Value& value, JsonLayout layout, std::string& text);

// Null on failure, which is logged as an error. A text that is null fails as one that can't be converted.
std::unique_ptr<Value> ParseJsonFromString(const wchar_t* text);
std::unique_ptr<Value> ParseJsonFromString(const std::wstring& text);

// Pretty text. False on failure, which is logged as an error.
bool ConvertJsonToString(const Value& value, std::wstring& text);

}  // namespace Zorvex
