#include "Common/include/JsonSerializer/JsonSerializer.h"

namespace Zorvex {

bool JsonSerializer<int>::Serialize(const int& object, std::unique_ptr<Value>& out) const {
    out = std::make_unique<Value>(static_cast<std::int32_t>(object));
    return true;
}

bool JsonSerializer<int>::Deserialize(const Value* value, int& object) const {
    const std::int32_t* integer = value ? value->AsInteger() : nullptr;
    if (!integer) return false;
    object = *integer;
    return true;
}

bool JsonSerializer<std::string>::Serialize(const std::string& object, std::unique_ptr<Value>& out) const {
    out = std::make_unique<Value>(std::string_view(object));
    return true;
}

bool JsonSerializer<std::string>::Deserialize(const Value* value, std::string& object) const {
    const std::string* text = value ? value->AsString() : nullptr;
    if (!text) return false;
    object = *text;
    return true;
}

bool JsonSerializer<std::vector<std::wstring>>::Serialize(const std::vector<std::wstring>& object, std::unique_ptr<Value>& out) const {
    auto list = std::make_unique<Value>(Value::Type::List);
    const JsonSerializer<std::wstring> serializer;
    for (const std::wstring& text : object) {
        std::unique_ptr<Value> element;
        if (!serializer.Serialize(text, element)) return false;
        list->Append(std::move(*element));
    }
    out = std::move(list);
    return true;
}

bool JsonSerializer<std::vector<std::wstring>>::Deserialize(const Value* value, std::vector<std::wstring>& object) const {
    const Value::ListData* list = value ? value->AsList() : nullptr;
    if (!list) return false;
    object.clear();
    object.reserve(list->size());
    const JsonSerializer<std::wstring> serializer;
    for (const Value& element : *list) {
        std::wstring text;
        if (!serializer.Deserialize(&element, text)) return false;
        object.push_back(std::move(text));
    }
    return true;
}

}  // namespace Zorvex
