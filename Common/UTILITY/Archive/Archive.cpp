#include "Common/include/Archive.h"

#include <new>
#include <stdexcept>

#include "Common/include/Log.h"

namespace Zorvex {

namespace {

constexpr const char* kNumberExpected = "Invalid type, number expected.";
constexpr const char* kNumber64Expected = "Invalid type, number 64bit expected.";
constexpr const char* kStringExpected = "Invalid type, string expected.";
constexpr const char* kVariantExpected = "Invalid type, VARIANT expected!";

}  // namespace

std::size_t ArchiveText::TerminatedLength() const noexcept {
    std::size_t length = 0;
    while (length < m_length && (m_bytes[2 * length] | m_bytes[2 * length + 1]) != 0) ++length;
    return length;
}

CString ArchiveText::ToString() const {
    const std::size_t length = TerminatedLength();
    CString text(length, L'\0');
    if constexpr (sizeof(wchar_t) == 2) {
        if (length) std::memcpy(text.data(), m_bytes, 2 * length);
    } else {
        for (std::size_t i = 0; i < length; ++i) text[i] = (*this)[i];
    }
    return text;
}

Archive::Archive(const RequestBuffer& buffer) {
    std::uint32_t size = 0;
    if (buffer.size() < kHeaderSize || buffer.size() > static_cast<std::size_t>(INT32_MAX))
        throw ArchiveException("Invalid vBuffer in ctor");
    std::memcpy(&size, buffer.data(), kHeaderSize);
    if (size != buffer.size()) throw ArchiveException("Invalid vBuffer in ctor");
    m_buffer = buffer;
}

Archive::Archive(std::int32_t payloadHint) {
    const std::int64_t capacity = static_cast<std::int64_t>(payloadHint) + static_cast<std::int64_t>(kHeaderSize);
    if (capacity < 0) throw std::length_error("Archive: negative payload hint");
    m_buffer.reserve(static_cast<std::size_t>(capacity));
    extend(kHeaderSize);
}

RequestBuffer Archive::TakeBuffer() {
    RequestBuffer taken = std::move(m_buffer);
    m_buffer = RequestBuffer();
    extend(kHeaderSize);
    m_readPos = kHeaderSize;
    return taken;
}

void Archive::throwOutOfBounds() { throw ArchiveException("readBytes: out-of-bounds access"); }

void Archive::throwTagMismatch(const char* problem) { throw ArchiveException(problem); }

void Archive::throwTooLarge() { throw std::bad_alloc(); }

Archive& Archive::expectTag(ArchiveTag tag, const char* problem) {
    std::uint8_t found = 0;
    readTag(found);
    if (found != static_cast<std::uint8_t>(tag)) throwTagMismatch(problem);
    return *this;
}

Archive& Archive::readNumberSlowly(void* value) {
    return expectTag(ArchiveTag::Number, kNumberExpected).readBytes(value, 4);
}

void Archive::failNumbers(std::size_t count) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < count; ++i) readNumber(&number);
    throwOutOfBounds();
}

Archive& Archive::readNumber64(void* value) {
    std::uint8_t tag = 0;
    readTag(tag);
    if (tag != static_cast<std::uint8_t>(ArchiveTag::Number64)) {
        // The line names the function `read`, which is what callers know.
        SourceLocation where{__FILE__, "read", __LINE__, Severity::Error};
        if (ShouldLog(Severity::Error)) {
            const FormatArgument arguments[] = {FormatArgument(static_cast<int>(tag))};
            LogFormatted(where, "64-bit number expected actual type=%d", arguments);
        }
        throwTagMismatch(kNumber64Expected);
    }
    return readBytes(value, 8);
}

Archive& Archive::readExtended(std::int64_t& value) {
    std::int32_t number = 0;
    read(number);
    value = number;
    return *this;
}

Archive& Archive::read(HWND& window) {
    std::int32_t number = 0;
    read(number);
    window = reinterpret_cast<HWND>(static_cast<INT_PTR>(number));
    return *this;
}

Archive& Archive::read(bool& value) {
    std::uint8_t byte = 0;
    readBytes(&byte, 1);
    value = byte != 0;
    return *this;
}

Archive& Archive::read(ArchiveText& text) {
    expectTag(ArchiveTag::String, kStringExpected);
    std::int32_t count = 0;
    readCount(count);
    if (count < 1) {
        text = ArchiveText();
        return *this;
    }
    if (static_cast<std::size_t>(count) > remaining() / 2) throw ArchiveException("Invalid m_readPos in Archive::read");
    text = ArchiveText(m_buffer.data() + m_readPos, static_cast<std::size_t>(count));
    m_readPos += 2 * static_cast<std::size_t>(count);
    return *this;
}

Archive& Archive::read(CString& text) {
    ArchiveText view;
    read(view);
    text = view.ToString();
    return *this;
}

Archive& Archive::read(CComBSTR& text) {
    ArchiveText view;
    read(view);
    const std::size_t length = view.TerminatedLength();
    BSTR copy = ::SysAllocStringLen(nullptr, static_cast<UINT>(length));
    if (!copy) throw ComException(E_OUTOFMEMORY);
    for (std::size_t i = 0; i < length; ++i) copy[i] = view[i];
    copy[length] = L'\0';
    text.Attach(copy);
    return *this;
}

Archive& Archive::read(CComVariant& variant) {
    expectTag(ArchiveTag::Variant, kVariantExpected);
    readVariant(variant, 0);
    return *this;
}

Archive& Archive::write(HWND window) { return writeTruncated(reinterpret_cast<INT_PTR>(window)); }

Archive& Archive::write(std::wstring_view text) {
    if (text.size() > static_cast<std::size_t>(INT32_MAX) / 2) throwTooLarge();
    const auto count = static_cast<std::int32_t>(text.size());
    std::uint8_t* place = extend(5 + 2 * text.size());
    *place++ = static_cast<std::uint8_t>(ArchiveTag::String);
    std::memcpy(place, &count, sizeof count);
    place += sizeof count;
    if constexpr (sizeof(wchar_t) == 2) {
        if (count) std::memcpy(place, text.data(), 2 * text.size());
    } else {
        // In blocks of a fixed size, which the compiler turns into wide moves.
        constexpr std::size_t kBlock = 8;
        std::uint16_t narrow[kBlock];
        std::size_t i = 0;
        for (; i + kBlock <= text.size(); i += kBlock, place += sizeof narrow) {
            for (std::size_t k = 0; k < kBlock; ++k) narrow[k] = static_cast<std::uint16_t>(text[i + k]);
            std::memcpy(place, narrow, sizeof narrow);
        }
        for (; i < text.size(); ++i, place += 2) {
            narrow[0] = static_cast<std::uint16_t>(text[i]);
            std::memcpy(place, narrow, 2);
        }
    }
    return *this;
}

Archive& Archive::write(const VARIANT& variant) {
    writeVariant(variant, 0);
    return *this;
}

Archive& Archive::writeCount(std::size_t count) {
    if (count > static_cast<std::size_t>(INT32_MAX)) throwTooLarge();
    const auto raw = static_cast<std::int32_t>(count);
    return writeBytes(&raw, sizeof raw);
}

}  // namespace Zorvex
