// A JSON value.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Zorvex {

// Movable; a copy is made with DeepCopy. A value owns what it holds. Copying, comparing and destroying work at any
// nesting without recursion.
class Value {
public:
    // The numbers appear in log messages.
    enum class Type : int { None = 0, Boolean = 1, Integer = 2, Double = 3, String = 4, Binary = 5, Dictionary = 6, List = 7 };
    using BinaryData = std::vector<std::uint8_t>;
    // Ordered by the bytes of the UTF-8 key.
    using DictionaryData = std::map<std::string, Value, std::less<>>;
    using ListData = std::vector<Value>;

    Value() noexcept;
    explicit Value(bool value) noexcept;
    explicit Value(std::int32_t value) noexcept;
    explicit Value(double value) noexcept;
    // Text is UTF-8.
    explicit Value(std::string_view value);
    explicit Value(const char* value);
    explicit Value(BinaryData value);
    // An empty container, text or zero of the type.
    explicit Value(Type type);
    Value(Value&& other) noexcept;
    Value& operator=(Value&& other) noexcept;
    ~Value();

    Type GetType() const noexcept { return static_cast<Type>(m_data.index()); }
    int TypeNumber() const noexcept { return static_cast<int>(m_data.index()); }
    bool IsNone() const noexcept { return GetType() == Type::None; }
    bool IsString() const noexcept { return GetType() == Type::String; }
    bool IsDictionary() const noexcept { return GetType() == Type::Dictionary; }
    bool IsList() const noexcept { return GetType() == Type::List; }

    // Null when the value is of another type.
    const bool* AsBoolean() const noexcept { return std::get_if<bool>(&m_data); }
    const std::int32_t* AsInteger() const noexcept { return std::get_if<std::int32_t>(&m_data); }
    const double* AsDouble() const noexcept { return std::get_if<double>(&m_data); }
    const std::string* AsString() const noexcept { return Pointee<std::string>(); }
    const BinaryData* AsBinary() const noexcept { return Pointee<BinaryData>(); }
    const DictionaryData* AsDictionary() const noexcept { return Pointee<DictionaryData>(); }
    const ListData* AsList() const noexcept { return Pointee<ListData>(); }
    DictionaryData* AsDictionary() noexcept { return const_cast<DictionaryData*>(Pointee<DictionaryData>()); }
    ListData* AsList() noexcept { return const_cast<ListData*>(Pointee<ListData>()); }

    // The value under the key; null when there is none or this is no dictionary. Borrowed.
    const Value* Find(std::string_view key) const noexcept;
    // Sets the key of a dictionary, replacing what stood there. Anything else becomes a dictionary first.
    void Set(std::string_view key, Value value);
    // Appends to a list. Anything else becomes a list first.
    void Append(Value value);

    std::unique_ptr<Value> DeepCopy() const;
    // Equal types and contents; an integer and a double are never equal.
    bool operator==(const Value& other) const;

private:
    template <class T>
    const T* Pointee() const noexcept {
        const auto* held = std::get_if<std::unique_ptr<T>>(&m_data);
        return held ? held->get() : nullptr;
    }

    // The order is that of Type. Containers stand behind a pointer so that the elements of a long list stay small.
    std::variant<std::monostate, bool, std::int32_t, double, std::unique_ptr<std::string>, std::unique_ptr<BinaryData>,
                 std::unique_ptr<DictionaryData>, std::unique_ptr<ListData>>
        m_data;
};

}  // namespace Zorvex
