// The binary stream of every request and response: positional, little-endian, text in UTF-16.
// docs/wire-format.md tells the bytes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Common/include/ArchiveException.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Common/include/HeapAllocator.h"
#include "Platform/Windows.h"

namespace Zorvex {

static_assert(std::endian::native == std::endian::little, "numbers are copied to and from the stream as they lie");

// The integers that travel as numbers. Named one by one, since the platforms disagree about which of them are the
// fixed-width ones, and a bool or a character is none of them.
template <class T>
concept ArchiveNumber = std::is_same_v<T, int> || std::is_same_v<T, unsigned> || std::is_same_v<T, long> ||
                        std::is_same_v<T, unsigned long> || std::is_same_v<T, long long> ||
                        std::is_same_v<T, unsigned long long>;

// The byte in front of an item. 0, 5 and 7 aren't used; bool, double and raw bytes have none.
enum class ArchiveTag : std::uint8_t { Number = 1, String = 2, Vector = 3, Map = 4, Number64 = 6, Variant = 8, SharedPointer = 9 };

// A text that still lies in the archive, valid as long as the archive isn't changed. Units may be at odd addresses.
class ArchiveText {
public:
    ArchiveText() noexcept = default;
    ArchiveText(const std::uint8_t* bytes, std::size_t length) noexcept : m_bytes(bytes), m_length(length) {}

    // All units, embedded NULs included.
    std::size_t size() const noexcept { return m_length; }
    bool empty() const noexcept { return m_length == 0; }
    wchar_t operator[](std::size_t index) const noexcept {
        return static_cast<wchar_t>(m_bytes[2 * index] | m_bytes[2 * index + 1] << 8);
    }
    const std::uint8_t* Bytes() const noexcept { return m_bytes; }
    // Units before the first NUL: what a zero-terminated reader sees.
    std::size_t TerminatedLength() const noexcept;
    // The text before the first NUL.
    CString ToString() const;

private:
    const std::uint8_t* m_bytes = nullptr;
    std::size_t m_length = 0;
};

// Writer and reader in one. Every read that doesn't fit what lies there throws ArchiveException, before anything is
// allocated for it; nobody reads on after that. Everything returns the archive, for chaining.
//
// Vectors, maps, shared pointers and records are read and written by the templates of ArchiveExtension.h.
class Archive {
public:
    // Variants of arrays of variants deeper than this are refused in both directions. Each level costs stack, here
    // and in the system's own recursive clearing and copying, and requests run on threads of programs that may have
    // given them as little as 256 KiB. No request or response of ours nests variants at all.
    static constexpr int kMaximumVariantNesting = 128;
    // What a writer of an ordinary response asks for.
    static constexpr std::int32_t kResponsePayloadHint = 64;

    // For reading: copies the bytes, so that the caller's can't change under the reader. Throws
    // "Invalid vBuffer in ctor" unless the first four bytes hold the size.
    explicit Archive(const RequestBuffer& buffer);
    // For writing: room for `payloadHint` bytes behind the header. -4 reserves nothing; below that
    // std::length_error.
    explicit Archive(std::int32_t payloadHint = kResponsePayloadHint);

    Archive(Archive&&) noexcept = default;
    Archive& operator=(Archive&&) noexcept = default;

    // ---- Reading ----

    // Tag 1 or 6, by the width of the variable. For a number of 32 bits that is wanted in 64, see readExtended.
    template <ArchiveNumber T>
    Archive& read(T& value) {
        if constexpr (sizeof(T) == 4) return readNumber(&value);
        else return readNumber64(&value);
    }
    // A number of 32 bits, sign-extended.
    Archive& readExtended(std::int64_t& value);
    // Window handles travel as 32 bits and come back sign-extended.
    Archive& read(HWND& window);
    // `count` numbers of 32 bits, one behind the other: what a run of single reads does, checked once.
    template <std::size_t count>
    Archive& readNumbers(std::uint32_t (&values)[count]) {
        const std::uint8_t* bytes = m_buffer.data() + m_readPos;
        if (remaining() < 5 * count) failNumbers(count);
        // Spelt out for each number: loops would be left as loops.
        [&]<std::size_t... i>(std::index_sequence<i...>) {
            if (((bytes[5 * i] ^ static_cast<unsigned>(ArchiveTag::Number)) | ...)) failNumbers(count);
            (std::memcpy(&values[i], bytes + 5 * i + 1, 4), ...);
        }(std::make_index_sequence<count>());
        m_readPos += 5 * count;
        return *this;
    }
    // x, then y.
    Archive& read(POINT& point) { return read(point.x).read(point.y); }
    // Any byte but 0 is true.
    Archive& read(bool& value);
    Archive& read(std::uint8_t& byte) { return readBytes(&byte, 1); }
    Archive& read(double& value) { return readBytes(&value, sizeof value); }
    // A text ends at an embedded NUL; all its bytes are consumed.
    Archive& read(CString& text);
    // Never null afterwards.
    Archive& read(CComBSTR& text);
    // The text where it lies, without a copy.
    Archive& read(ArchiveText& text);
    // Throws ComException, not ArchiveException, when the platform's array functions fail.
    Archive& read(CComVariant& variant);

    // The next byte, whatever it is.
    Archive& readTag(std::uint8_t& tag) { return readBytes(&tag, 1); }
    // Throws ArchiveException with `problem` unless the next byte is the tag.
    Archive& expectTag(ArchiveTag tag, const char* problem);
    // The raw count in front of a vector's or map's elements, behind the tag. May be negative, which means none.
    Archive& readCount(std::int32_t& count) { return readBytes(&count, sizeof count); }
    // Copies `count` bytes; without `advance` they will be read again.
    Archive& readBytes(void* target, std::size_t count, bool advance = true) {
        if (count > remaining()) throwOutOfBounds();
        if (count) std::memcpy(target, m_buffer.data() + m_readPos, count);
        if (advance) m_readPos += count;
        return *this;
    }
    std::size_t remaining() const noexcept { return m_buffer.size() - static_cast<std::size_t>(m_readPos); }
    std::uint64_t readPosition() const noexcept { return m_readPos; }

    // ---- Writing ----

    template <ArchiveNumber T>
    Archive& write(T value) {
        return writeNumber(sizeof(T) == 4 ? ArchiveTag::Number : ArchiveTag::Number64, &value, sizeof(T));
    }
    template <std::size_t count>
    Archive& writeNumbers(const std::uint32_t (&values)[count]) {
        std::uint8_t* place = extend(5 * count);
        [&]<std::size_t... i>(std::index_sequence<i...>) {
            ((place[5 * i] = static_cast<std::uint8_t>(ArchiveTag::Number), std::memcpy(place + 5 * i + 1, &values[i], 4)), ...);
        }(std::make_index_sequence<count>());
        return *this;
    }
    // The low 32 bits.
    Archive& writeTruncated(std::int64_t value) { return write(static_cast<std::int32_t>(value)); }
    Archive& write(HWND window);
    Archive& write(const POINT& point) { return write(point.x).write(point.y); }
    Archive& write(bool value) { return write(static_cast<std::uint8_t>(value ? 1 : 0)); }
    Archive& write(std::uint8_t byte) { return writeBytes(&byte, 1); }
    Archive& write(double value) { return writeBytes(&value, sizeof value); }
    // Embedded NULs are written; a reader stops at them.
    Archive& write(std::wstring_view text);
    Archive& write(const CString& text) { return write(std::wstring_view(text)); }
    Archive& write(const wchar_t* text) { return write(text ? std::wstring_view(text) : std::wstring_view()); }
    // A null text is written as an empty one.
    Archive& write(const CComBSTR& text) { return write(text.View()); }
    // Throws ArchiveException for a type that doesn't travel, ComException for an array that can't be read.
    Archive& write(const VARIANT& variant);
    // A pointer would otherwise be taken for a bool.
    template <class T>
    Archive& write(T*) = delete;

    Archive& writeTag(ArchiveTag tag) { return write(static_cast<std::uint8_t>(tag)); }
    // Raw, without a tag: the count of a vector or map.
    Archive& writeCount(std::size_t count);
    // The bytes as they stand. The header is right after every write. Throws std::bad_alloc when the archive would
    // grow past what a reader accepts, 2 GiB.
    Archive& writeBytes(const void* bytes, std::size_t count) {
        if (count) std::memcpy(extend(count), bytes, count);
        return *this;
    }

    const RequestBuffer& buffer() const noexcept { return m_buffer; }
    // Hands the bytes over and starts again as an empty archive.
    [[nodiscard]] RequestBuffer TakeBuffer();

private:
    static constexpr std::size_t kHeaderSize = 4;

    [[noreturn]] static void throwOutOfBounds();
    [[noreturn]] static void throwTagMismatch(const char* problem);
    [[noreturn]] static void throwTooLarge();
    [[noreturn]] static void throwVariantType(const char* function, const char* format, VARTYPE type);

    Archive& readNumber(void* value) {
        if (remaining() < 5 || m_buffer[m_readPos] != static_cast<std::uint8_t>(ArchiveTag::Number)) return readNumberSlowly(value);
        std::memcpy(value, m_buffer.data() + m_readPos + 1, 4);
        m_readPos += 5;
        return *this;
    }
    Archive& readNumberSlowly(void* value);
    // Reads up to the number that can't be read, so that the exception and the position are those of a single read.
    [[noreturn]] void failNumbers(std::size_t count);
    Archive& readNumber64(void* value);
    Archive& writeNumber(ArchiveTag tag, const void* value, std::size_t width) {
        std::uint8_t* place = extend(1 + width);
        place[0] = static_cast<std::uint8_t>(tag);
        std::memcpy(place + 1, value, width);
        return *this;
    }
    std::uint8_t* extend(std::size_t count) {
        const std::size_t size = m_buffer.size() + count;
        if (size > static_cast<std::size_t>(INT32_MAX)) throwTooLarge();
        std::uint8_t* place = m_buffer.Extend(count);
        const auto header = static_cast<std::uint32_t>(size);
        std::memcpy(m_buffer.data(), &header, kHeaderSize);
        return place;
    }

    void readVariant(VARIANT& variant, int depth);
    void readSafeArray(VARIANT& variant, VARTYPE type, int depth);
    void writeVariant(const VARIANT& variant, int depth);
    void writeSafeArray(const VARIANT& variant, int depth);

    std::uint64_t m_readPos = kHeaderSize;
    RequestBuffer m_buffer;
};

}  // namespace Zorvex
