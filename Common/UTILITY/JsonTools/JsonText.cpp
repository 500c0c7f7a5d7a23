#include "Common/include/JsonSerializer/JsonText.h"

#include "Common/include/Log.h"
#include "Common/include/UtfConversion.h"

namespace Zorvex {
namespace {

// The lines stand under the name of the function that both forms of text share.
constexpr char ParseOperation[] = "ParseJsonFromString";

std::unique_ptr<Value> ParseUtf8(bool converted, const std::string& text) {
    if (!converted) {
        LogError(LocatedFormat<char>("ParseJsonFromString: failed to convert JSON policy string from Unicode to UTF8", __builtin_FILE(),
                                     ParseOperation));
        return nullptr;
    }
    JsonReadError error;
    auto value = ReadJson(text, &error);
    if (!value)
        LogError(LocatedFormat<char>("ParseJsonFromString: JSONReader::ReadAndReturnError failed, error %d '%s', line %d, column %d",
                                     __builtin_FILE(), ParseOperation),
                 error.code, error.message, error.line, error.column);
    return value;
}

}  // namespace

std::unique_ptr<Value> ParseJsonFromString(const wchar_t* text) {
    std::string narrow;
    const bool converted = Utf16ToUtf8(text, narrow);
    return ParseUtf8(converted, narrow);
}

std::unique_ptr<Value> ParseJsonFromString(const std::wstring& text) {
    std::string narrow;
    const bool converted = Utf16ToUtf8(text, narrow);
    return ParseUtf8(converted, narrow);
}

bool ConvertJsonToString(const Value& value, std::wstring& text) {
    text.clear();
    std::string narrow;
    if (!WriteJson(value, JsonLayout::Pretty, narrow)) {
        LogError("ConvertJsonToString: failed to convert JSON policy to string");
        return false;
    }
    if (!Utf8ToUtf16(narrow, text)) {
        LogError("ConvertJsonToString: failed to convert JSON string from UTF to Unicode");
        return false;
    }
    return true;
}

}  // namespace Zorvex
