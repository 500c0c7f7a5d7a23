// Archives written byte by byte, for tests.
#pragma once

#include <initializer_list>
#include <string>

#include "Common/include/Archive.h"

namespace Zorvex::Testing {

// A buffer of header and payload.
inline RequestBuffer BufferOf(std::initializer_list<int> payload) {
    RequestBuffer buffer;
    const auto size = static_cast<std::uint32_t>(payload.size() + 4);
    buffer.append(&size, sizeof size);
    for (const int byte : payload) buffer.push_back(static_cast<std::uint8_t>(byte));
    return buffer;
}

inline Archive ArchiveOf(std::initializer_list<int> payload) { return Archive(BufferOf(payload)); }

// The payload behind the header, as "01 ff".
inline std::string PayloadText(const RequestBuffer& buffer) {
    static const char* const digits = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 4; i < buffer.size(); ++i) {
        if (!text.empty()) text += ' ';
        text += digits[buffer[i] >> 4];
        text += digits[buffer[i] & 15];
    }
    return text;
}
inline std::string PayloadText(const Archive& archive) { return PayloadText(archive.buffer()); }

// The first `size` bytes, with a header that says so.
inline RequestBuffer Truncated(const RequestBuffer& buffer, std::size_t size) {
    RequestBuffer cut(buffer.data(), buffer.data() + size);
    const auto header = static_cast<std::uint32_t>(size);
    if (size >= sizeof header) std::memcpy(cut.data(), &header, sizeof header);
    return cut;
}

// A reader of what a writer wrote.
inline Archive Reread(const Archive& written) { return Archive(written.buffer()); }

// The text of the ArchiveException that `action` throws; a note when it throws none.
template <class Action>
std::string ArchiveProblem(Action&& action) {
    try {
        action();
    } catch (const ArchiveException& exception) {
        return exception.Text();
    }
    return "(no exception)";
}

// The result of the ComException that `action` throws; S_OK when it throws none.
template <class Action>
HRESULT ComProblem(Action&& action) {
    try {
        action();
    } catch (const ComException& exception) {
        return exception.Error();
    }
    return S_OK;
}

}  // namespace Zorvex::Testing
