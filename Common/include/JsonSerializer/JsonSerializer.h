// The serialisers of the plain types. Those of the policies stand with their types.
#pragma once

#include <string>
#include <vector>

#include "Common/include/JsonSerializer/IJsonSerializer.h"
#include "Common/include/UtfConversion.h"

namespace Zorvex {

template <>
class JsonSerializer<int> : public IJsonSerializer<int> {
public:
    bool Serialize(const int& object, std::unique_ptr<Value>& out) const override;
    bool Deserialize(const Value* value, int& object) const override;
};

// UTF-8 text as it stands.
template <>
class JsonSerializer<std::string> : public IJsonSerializer<std::string> {
public:
    bool Serialize(const std::string& object, std::unique_ptr<Value>& out) const override;
    bool Deserialize(const Value* value, std::string& object) const override;
};

// A type that stands in JSON as a string, by a function for each direction; a function that answers false fails the
// call.
template <class T, auto ToJsonText, auto FromJsonText>
class StringJsonSerializerDeserializerViaFunctions : public IJsonSerializer<T> {
public:
    bool Serialize(const T& object, std::unique_ptr<Value>& out) const override {
        std::string text;
        if (!ToJsonText(object, text)) return false;
        out = std::make_unique<Value>(std::string_view(text));
        return true;
    }
    bool Deserialize(const Value* value, T& object) const override {
        const std::string* text = value ? value->AsString() : nullptr;
        return text && FromJsonText(*text, object);
    }
};

namespace JsonDetail {
constexpr bool (*c_wideToText)(const std::wstring&, std::string&) = &Utf16ToUtf8;
constexpr bool (*c_textToWide)(const std::string&, std::wstring&) = &Utf8ToUtf16;
}  // namespace JsonDetail

template <>
class JsonSerializer<std::wstring>
    : public StringJsonSerializerDeserializerViaFunctions<std::wstring, JsonDetail::c_wideToText, JsonDetail::c_textToWide> {};

template <>
class JsonSerializer<std::vector<std::wstring>> : public IJsonSerializer<std::vector<std::wstring>> {
public:
    bool Serialize(const std::vector<std::wstring>& object, std::unique_ptr<Value>& out) const override;
    // Clears the target first; the first element that can't be read stops, with what was read before it kept.
    bool Deserialize(const Value* value, std::vector<std::wstring>& object) const override;
};

}  // namespace Zorvex
