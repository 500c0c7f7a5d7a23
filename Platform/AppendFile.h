// A text file that several processes append to.
#pragma once

#include <cstdint>
#include <string_view>

#include "Platform/Windows.h"

namespace Platform {

class AppendFile {
public:
    AppendFile() noexcept = default;
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;
    ~AppendFile();

    // Opens the file in the folder, made if it isn't there; what it holds stays. An open file is closed first.
    bool Open(std::wstring_view folder, std::wstring_view name);
    bool IsOpen() const noexcept { return m_file != c_none; }
    // Writes the bytes at the end in one piece. The file is locked meanwhile; when another process keeps the lock for
    // longer than some 50 ms, the bytes are written without it. False when they couldn't be written whole.
    bool Append(std::string_view bytes);
    void Close() noexcept;

private:
    bool Lock() noexcept;
    void Unlock() noexcept;

    static constexpr std::intptr_t c_none = -1;
    std::intptr_t m_file = c_none;
};

}  // namespace Platform
