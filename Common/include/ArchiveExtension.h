// Vectors, maps, shared pointers and records in an archive.
//
// What may stand in a vector, a map or a record: whatever Archive reads itself, enumerations (as their 32-bit
// number), RECT, vectors, maps, shared pointers to a DynamicType, and records. A record is a class with either
//
//   template <class Self, class Visitor> static void Fields(Self& self, Visitor&& visit)
//
// which calls visit("name", self.field) for each field in the order of the wire, or WriteToArchive(Archive&) const
// and ReadFromArchive(Archive&). A record with Fields that is nothing but numbers of 32 bits and windows may say so as
// T::kNumberCount, and is then read and written in one go.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <type_traits>
#include <vector>

#include "Common/include/Archive.h"
#include "Common/include/DynamicType.h"

namespace Zorvex {

// Orders BSTR keys as the receiving side keeps them: VarBstrCmp in the user's locale.
struct BstrLess {
    bool operator()(const CComBSTR& a, const CComBSTR& b) const {
        return ::VarBstrCmp(a, b, LOCALE_USER_DEFAULT, 0) == VARCMP_LT;
    }
};

struct NoVisitor {
    template <class T>
    void operator()(const char*, T&&) const {}
};

template <class T>
concept FieldRecord = requires(T& record) { T::Fields(record, NoVisitor()); };

template <class T>
concept NumberRecord = FieldRecord<T> && requires { T::kNumberCount; };

template <class T>
concept SelfArchived = requires(T& record, const T& constant, Archive& archive) {
    record.ReadFromArchive(archive);
    constant.WriteToArchive(archive);
};

// The fewest bytes that one element takes on the wire: a count that claims more elements than the rest of the
// archive could hold reserves no memory for them. A record may raise its own as T::kMinimumWireSize.
template <class T>
constexpr std::size_t MinimumWireSize() {
    if constexpr (requires { T::kMinimumWireSize; }) return T::kMinimumWireSize;
    else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, std::uint8_t>) return 1;
    else if constexpr (std::is_same_v<T, CComVariant>) return 3;
    else if constexpr (std::is_same_v<T, double>) return 8;
    else if constexpr (requires { typename T::element_type; }) return 2;
    else return 5;
}

template <class T>
void readField(Archive& archive, T& value);
template <class T>
void writeField(Archive& archive, const T& value);

// Writes id and fields of what `object` points to, behind tag and present byte. A null object is logged and thrown as
// ArchiveException, since the present byte already promises one.
void writeDynamicObject(Archive& archive, const DynamicType* object);
// Reads what stands in front of an object's fields. True if an object follows, with its id in `id`.
bool readDynamicHeader(Archive& archive, std::uint32_t& id);

template <class T>
void writeDynamic(Archive& archive, const std::shared_ptr<T>& pointer) {
    archive.writeTag(ArchiveTag::SharedPointer);
    archive.write(static_cast<bool>(pointer));
    if (pointer) writeDynamicObject(archive, pointer.get());
}

// The overload for a concrete class builds that class, whatever the id says. Overloads for the abstract classes are
// in RuntimeCore/Selectors/Values/ReadDynamic.h.
template <class T>
    requires(!std::is_abstract_v<T>)
void readDynamic(Archive& archive, std::uint32_t, std::shared_ptr<T>& pointer) {
    auto object = std::make_shared<T>();
    object->ReadFromArchive(archive);
    pointer = std::move(object);
}

template <class T>
void readShared(Archive& archive, std::shared_ptr<T>& pointer) {
    archive.expectTag(ArchiveTag::SharedPointer, "Invalid type, shared_ptr expected!");
    pointer.reset();
    std::uint32_t id = 0;
    if (readDynamicHeader(archive, id)) readDynamic(archive, id, pointer);
}

template <class T>
void readVector(Archive& archive, std::vector<T>& values) {
    archive.expectTag(ArchiveTag::Vector, "Invalid type, vector expected!");
    std::int32_t count = 0;
    archive.readCount(count);
    values.clear();
    if (count < 1) return;
    // Never more memory than a small multiple of what lies there, whatever the count says.
    const std::size_t possible = std::min(archive.remaining() / MinimumWireSize<T>(), 8 * archive.remaining() / sizeof(T) + 1);
    values.reserve(std::min(static_cast<std::size_t>(count), possible));
    for (std::int32_t i = 0; i < count; ++i) {
        if constexpr (std::is_same_v<T, bool>) {
            bool value = false;
            archive.read(value);
            values.push_back(value);
        } else {
            readField(archive, values.emplace_back());
        }
    }
}

template <class T>
void writeVector(Archive& archive, const std::vector<T>& values) {
    archive.writeTag(ArchiveTag::Vector).writeCount(values.size());
    for (const auto& value : values) writeField<T>(archive, value);
}

// Of a key that comes twice the first value stays.
template <class Key, class Value, class Less>
void readMap(Archive& archive, std::map<Key, Value, Less>& values) {
    archive.expectTag(ArchiveTag::Map, "Invalid type, map expected!");
    std::int32_t count = 0;
    archive.readCount(count);
    values.clear();
    for (std::int32_t i = 0; i < count; ++i) {
        Key key{};
        Value value{};
        readField(archive, key);
        readField(archive, value);
        values.emplace(std::move(key), std::move(value));
    }
}

template <class Key, class Value, class Less>
void writeMap(Archive& archive, const std::map<Key, Value, Less>& values) {
    archive.writeTag(ArchiveTag::Map).writeCount(values.size());
    for (const auto& [key, value] : values) {
        writeField(archive, key);
        writeField(archive, value);
    }
}

namespace ArchiveDetail {

template <class T>
struct Container : std::false_type {};
template <class T>
struct Container<std::vector<T>> : std::true_type {
    static void Read(Archive& archive, std::vector<T>& values) { readVector(archive, values); }
    static void Write(Archive& archive, const std::vector<T>& values) { writeVector(archive, values); }
};
template <class Key, class Value, class Less>
struct Container<std::map<Key, Value, Less>> : std::true_type {
    static void Read(Archive& archive, std::map<Key, Value, Less>& values) { readMap(archive, values); }
    static void Write(Archive& archive, const std::map<Key, Value, Less>& values) { writeMap(archive, values); }
};
template <class T>
struct Container<std::shared_ptr<T>> : std::true_type {
    static void Read(Archive& archive, std::shared_ptr<T>& pointer) { readShared(archive, pointer); }
    static void Write(Archive& archive, const std::shared_ptr<T>& pointer) { writeDynamic(archive, pointer); }
};

inline void FromNumber(std::uint32_t number, HWND& window) {
    window = reinterpret_cast<HWND>(static_cast<INT_PTR>(static_cast<std::int32_t>(number)));
}
template <class T>
void FromNumber(std::uint32_t number, T& value) {
    static_assert(sizeof(T) == 4);
    value = static_cast<T>(number);
}
inline std::uint32_t ToNumber(HWND window) { return static_cast<std::uint32_t>(reinterpret_cast<INT_PTR>(window)); }
template <class T>
std::uint32_t ToNumber(T value) {
    static_assert(sizeof(T) == 4);
    return static_cast<std::uint32_t>(value);
}

}  // namespace ArchiveDetail

template <class T>
void readField(Archive& archive, T& value) {
    if constexpr (ArchiveDetail::Container<T>::value) {
        ArchiveDetail::Container<T>::Read(archive, value);
    } else if constexpr (NumberRecord<T>) {
        std::uint32_t numbers[T::kNumberCount];
        archive.readNumbers(numbers);
        const std::uint32_t* next = numbers;
        T::Fields(value, [&next](const char*, auto& field) { ArchiveDetail::FromNumber(*next++, field); });
    } else if constexpr (FieldRecord<T>) {
        T::Fields(value, [&archive](const char*, auto& field) { readField(archive, field); });
    } else if constexpr (SelfArchived<T>) {
        value.ReadFromArchive(archive);
    } else if constexpr (std::is_same_v<T, RECT>) {
        std::uint32_t numbers[4];
        archive.readNumbers(numbers);
        value = {static_cast<LONG>(numbers[0]), static_cast<LONG>(numbers[1]), static_cast<LONG>(numbers[2]), static_cast<LONG>(numbers[3])};
    } else if constexpr (std::is_enum_v<T>) {
        static_assert(sizeof(T) == 4);
        std::uint32_t number = 0;
        archive.read(number);
        value = static_cast<T>(number);
    } else {
        archive.read(value);
    }
}

template <class T>
void writeField(Archive& archive, const T& value) {
    if constexpr (ArchiveDetail::Container<T>::value) {
        ArchiveDetail::Container<T>::Write(archive, value);
    } else if constexpr (NumberRecord<T>) {
        std::uint32_t numbers[T::kNumberCount];
        std::uint32_t* next = numbers;
        T::Fields(value, [&next](const char*, const auto& field) { *next++ = ArchiveDetail::ToNumber(field); });
        archive.writeNumbers(numbers);
    } else if constexpr (FieldRecord<T>) {
        T::Fields(value, [&archive](const char*, const auto& field) { writeField(archive, field); });
    } else if constexpr (SelfArchived<T>) {
        value.WriteToArchive(archive);
    } else if constexpr (std::is_same_v<T, RECT>) {
        archive.write(value.left).write(value.top).write(value.right).write(value.bottom);
    } else if constexpr (std::is_enum_v<T>) {
        static_assert(sizeof(T) == 4);
        archive.write(static_cast<std::uint32_t>(value));
    } else {
        archive.write(value);
    }
}

}  // namespace Zorvex
