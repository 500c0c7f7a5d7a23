#include "Common/include/JsonSerializer/Value.h"

#include <new>
#include <utility>

namespace Zorvex {
namespace {

bool HoldsAny(const Value& value) {
    if (const auto* list = value.AsList()) return !list->empty();
    const auto* dictionary = value.AsDictionary();
    return dictionary && !dictionary->empty();
}

// Calls `visit` for each direct child.
template <class ValueType, class Visit>
void ForEachChild(ValueType& value, Visit visit) {
    if (auto* list = value.AsList()) {
        for (auto& child : *list) visit(child);
    } else if (auto* dictionary = value.AsDictionary()) {
        for (auto& [key, child] : *dictionary) visit(child);
    }
}

}  // namespace

Value::Value() noexcept = default;
Value::Value(bool value) noexcept : m_data(value) {}
Value::Value(std::int32_t value) noexcept : m_data(value) {}
Value::Value(double value) noexcept : m_data(value) {}
Value::Value(std::string_view value) : m_data(std::make_unique<std::string>(value)) {}
Value::Value(const char* value) : Value(std::string_view(value)) {}
Value::Value(BinaryData value) : m_data(std::make_unique<BinaryData>(std::move(value))) {}
Value::Value(Type type) {
    switch (type) {
        case Type::None: break;
        case Type::Boolean: m_data = false; break;
        case Type::Integer: m_data = std::int32_t{0}; break;
        case Type::Double: m_data = 0.0; break;
        case Type::String: m_data = std::make_unique<std::string>(); break;
        case Type::Binary: m_data = std::make_unique<BinaryData>(); break;
        case Type::Dictionary: m_data = std::make_unique<DictionaryData>(); break;
        case Type::List: m_data = std::make_unique<ListData>(); break;
    }
}

Value::Value(Value&& other) noexcept : m_data(std::exchange(other.m_data, {})) {}

Value& Value::operator=(Value&& other) noexcept {
    // Out of the other first: it may stand inside of what is replaced.
    auto data = std::exchange(other.m_data, {});
    m_data = std::move(data);
    return *this;
}

Value::~Value() {
    // Containers inside are moved out and taken apart one by one, so that the depth of a value is never a depth of
    // calls. What there is no memory to note falls back to the ordinary way.
    std::vector<Value> pending;
    const auto moveOut = [&pending](Value& child) {
        if (HoldsAny(child)) pending.push_back(std::move(child));
    };
    try {
        ForEachChild(*this, moveOut);
        while (!pending.empty()) {
            Value next = std::move(pending.back());
            pending.pop_back();
            ForEachChild(next, moveOut);
        }
    } catch (const std::bad_alloc&) {
    }
}

const Value* Value::Find(std::string_view key) const noexcept {
    const DictionaryData* dictionary = AsDictionary();
    if (!dictionary) return nullptr;
    const auto found = dictionary->find(key);
    return found == dictionary->end() ? nullptr : &found->second;
}

void Value::Set(std::string_view key, Value value) {
    if (!IsDictionary()) *this = Value(Type::Dictionary);
    DictionaryData& dictionary = *AsDictionary();
    const auto found = dictionary.find(key);
    if (found != dictionary.end()) found->second = std::move(value);
    else dictionary.emplace(std::string(key), std::move(value));
}

void Value::Append(Value value) {
    if (!IsList()) *this = Value(Type::List);
    AsList()->push_back(std::move(value));
}

std::unique_ptr<Value> Value::DeepCopy() const {
    auto copy = std::make_unique<Value>();
    std::vector<std::pair<const Value*, Value*>> pending{{this, copy.get()}};
    while (!pending.empty()) {
        const auto [from, to] = pending.back();
        pending.pop_back();
        *to = Value(from->GetType());
        if (const auto* boolean = from->AsBoolean()) to->m_data = *boolean;
        else if (const auto* integer = from->AsInteger()) to->m_data = *integer;
        else if (const auto* real = from->AsDouble()) to->m_data = *real;
        else if (const auto* text = from->AsString()) to->m_data = std::make_unique<std::string>(*text);
        else if (const auto* binary = from->AsBinary()) to->m_data = std::make_unique<BinaryData>(*binary);
        else if (const auto* list = from->AsList()) {
            // All elements at once: their addresses must not change any more.
            to->AsList()->resize(list->size());
            for (std::size_t i = 0; i < list->size(); ++i) pending.emplace_back(&(*list)[i], &(*to->AsList())[i]);
        } else if (const auto* dictionary = from->AsDictionary()) {
            for (const auto& [key, child] : *dictionary) pending.emplace_back(&child, &(*to->AsDictionary())[key]);
        }
    }
    return copy;
}

bool Value::operator==(const Value& other) const {
    std::vector<std::pair<const Value*, const Value*>> pending{{this, &other}};
    while (!pending.empty()) {
        const auto [a, b] = pending.back();
        pending.pop_back();
        if (a->GetType() != b->GetType()) return false;
        if (a->AsBoolean() && *a->AsBoolean() != *b->AsBoolean()) return false;
        if (a->AsInteger() && *a->AsInteger() != *b->AsInteger()) return false;
        if (a->AsDouble() && *a->AsDouble() != *b->AsDouble()) return false;
        if (a->AsString() && *a->AsString() != *b->AsString()) return false;
        if (a->AsBinary() && *a->AsBinary() != *b->AsBinary()) return false;
        if (const auto* list = a->AsList()) {
            if (list->size() != b->AsList()->size()) return false;
            for (std::size_t i = 0; i < list->size(); ++i) pending.emplace_back(&(*list)[i], &(*b->AsList())[i]);
        } else if (const auto* dictionary = a->AsDictionary()) {
            if (dictionary->size() != b->AsDictionary()->size()) return false;
            auto right = b->AsDictionary()->begin();
            for (const auto& [key, child] : *dictionary) {
                if (key != right->first) return false;
                pending.emplace_back(&child, &right->second);
                ++right;
            }
        }
    }
    return true;
}

}  // namespace Zorvex
