// How a structure is read from a JSON value and written to one.
#pragma once

#include <memory>

#include "Common/include/JsonSerializer/Value.h"

namespace Zorvex {

// The root without a type, so that serialisers of different types stand in one list. Objects are passed by the address
// of the very type that the serialiser is for.
class IJsonSerializerByPointer {
public:
    virtual ~IJsonSerializerByPointer() = default;
    // `out` is set only on success.
    virtual bool Serialize(const void* object, std::unique_ptr<Value>& out) const = 0;
    // `value` is borrowed and may be null. On failure the object may be half filled.
    virtual bool Deserialize(const Value* value, void* object) const = 0;
};

template <class T>
class IJsonSerializer : public IJsonSerializerByPointer {
public:
    bool Serialize(const void* object, std::unique_ptr<Value>& out) const final {
        return Serialize(*static_cast<const T*>(object), out);
    }
    bool Deserialize(const Value* value, void* object) const final { return Deserialize(value, *static_cast<T*>(object)); }
    virtual bool Serialize(const T& object, std::unique_ptr<Value>& out) const = 0;
    virtual bool Deserialize(const Value* value, T& object) const = 0;
};

// One specialisation a type, stateless, made where it is needed. A null value or one of another type is refused
// unless the specialisation says otherwise.
template <class T>
class JsonSerializer;

}  // namespace Zorvex
