// Unpackers: what a JSON value is expected to hold, and where it goes.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Common/include/JsonSerializer/IJsonSerializer.h"

namespace Zorvex {

// The keys of a dictionary, each with its serialiser and target; both are borrowed and must outlive the unpacker.
class UnpackJson {
public:
    template <class T>
    UnpackJson& Add(std::string_view key, const IJsonSerializer<T>& serializer, T& target) {
        m_entries.push_back({std::string(key), &serializer, &target});
        return *this;
    }
    // False unless the value is a dictionary and every entry takes what stands under its key, in order. A missing key
    // is offered as null, which a plain serialiser refuses: its key is required. Other keys aren't noticed.
    bool Deserialize(const Value* value) const;

private:
    struct Entry {
        std::string key;
        const IJsonSerializerByPointer* serializer;
        void* target;
    };
    std::vector<Entry> m_entries;
};

// Alternatives for one value. Serialisers and targets are borrowed.
class UnpackAnyJson {
public:
    template <class T>
    UnpackAnyJson& Add(const IJsonSerializer<T>& serializer, T& target) {
        m_alternatives.push_back({&serializer, &target});
        return *this;
    }
    // Tries them in order until one takes the value; null is refused before any.
    bool Deserialize(const Value* value) const;

private:
    struct Alternative {
        const IJsonSerializerByPointer* serializer;
        void* target;
    };
    std::vector<Alternative> m_alternatives;
};

// Hands the value, which may be null, to a function.
class UnpackJsonPtrByCallback {
public:
    using Callback = std::function<bool(const Value*)>;
    explicit UnpackJsonPtrByCallback(Callback callback) : m_callback(std::move(callback)) {}
    bool Deserialize(const Value* value) const { return m_callback && m_callback(value); }

private:
    Callback m_callback;
};

namespace JsonDetail {
// An unpacker as the target of another: it can read, not write.
template <class Unpacker>
class UnpackerSerializer : public IJsonSerializer<Unpacker> {
public:
    bool Serialize(const Unpacker&, std::unique_ptr<Value>&) const override { return false; }
    bool Deserialize(const Value* value, Unpacker& unpacker) const override { return unpacker.Deserialize(value); }
};
}  // namespace JsonDetail

template <>
class JsonSerializer<UnpackJson> : public JsonDetail::UnpackerSerializer<UnpackJson> {};
template <>
class JsonSerializer<UnpackAnyJson> : public JsonDetail::UnpackerSerializer<UnpackAnyJson> {};
template <>
class JsonSerializer<UnpackJsonPtrByCallback> : public JsonDetail::UnpackerSerializer<UnpackJsonPtrByCallback> {};

}  // namespace Zorvex
