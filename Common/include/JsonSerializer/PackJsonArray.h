// Builder of a JSON list of strings.
#pragma once

#include <memory>
#include <string>

#include "Common/include/JsonSerializer/IJsonSerializer.h"

namespace Zorvex {

class PackJsonArray {
public:
    PackJsonArray();
    // A text that can't be converted drops the list for good: later texts are not taken, and nothing comes out.
    PackJsonArray& Add(const std::wstring& text);
    // Moves the built list out; null after a failure, or when it was taken before.
    std::unique_ptr<Value> Take() const;
    // The list as compact JSON text in UTF-16; moves the list out as Take does. Empty after a failure.
    std::wstring ToText() const;

private:
    // Taking the list is part of serialising it, which sees its object as constant.
    mutable std::unique_ptr<Value> m_list;
};

template <>
class JsonSerializer<PackJsonArray> : public IJsonSerializer<PackJsonArray> {
public:
    bool Serialize(const PackJsonArray& object, std::unique_ptr<Value>& out) const override;
    // A builder isn't read back: false.
    bool Deserialize(const Value* value, PackJsonArray& object) const override;
};

}  // namespace Zorvex
