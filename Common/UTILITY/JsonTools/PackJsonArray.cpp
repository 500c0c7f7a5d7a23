#include "Common/include/JsonSerializer/PackJsonArray.h"

#include "Common/include/JsonSerializer/JsonSerializer.h"
#include "Common/include/JsonSerializer/JsonText.h"

namespace Zorvex {

PackJsonArray::PackJsonArray() : m_list(std::make_unique<Value>(Value::Type::List)) {}

PackJsonArray& PackJsonArray::Add(const std::wstring& text) {
    if (!m_list) return *this;
    std::unique_ptr<Value> element;
    if (JsonSerializer<std::wstring>().Serialize(text, element)) m_list->Append(std::move(*element));
    else m_list.reset();
    return *this;
}

std::unique_ptr<Value> PackJsonArray::Take() const { return std::move(m_list); }

std::wstring PackJsonArray::ToText() const {
    const std::unique_ptr<Value> list = Take();
    std::string narrow;
    std::wstring text;
    if (!list || !WriteJson(*list, JsonLayout::Compact, narrow) || !Utf8ToUtf16(narrow, text)) return {};
    return text;
}

bool JsonSerializer<PackJsonArray>::Serialize(const PackJsonArray& object, std::unique_ptr<Value>& out) const {
    std::unique_ptr<Value> list = object.Take();
    if (!list) return false;
    out = std::move(list);
    return true;
}

bool JsonSerializer<PackJsonArray>::Deserialize(const Value*, PackJsonArray&) const { return false; }

}  // namespace Zorvex
