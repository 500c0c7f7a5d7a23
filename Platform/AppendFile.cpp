#include "Platform/AppendFile.h"

#include <chrono>
#include <string>
#include <thread>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace Platform {
namespace {

constexpr int LockAttempts = 50;
constexpr std::chrono::milliseconds LockPause{1};

#ifdef _WIN32
HANDLE FileOf(std::intptr_t file) { return reinterpret_cast<HANDLE>(file); }

std::intptr_t OpenForAppending(std::wstring path) {
    // Only the right to append: each write then goes to the end, wherever that is by now.
    return reinterpret_cast<std::intptr_t>(::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                                         nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}
bool TryLock(std::intptr_t file) {
    OVERLAPPED start{};
    return ::LockFileEx(FileOf(file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &start);
}
void ReleaseLock(std::intptr_t file) {
    OVERLAPPED start{};
    ::UnlockFileEx(FileOf(file), 0, 1, 0, &start);
}
bool WriteAll(std::intptr_t file, std::string_view bytes) {
    DWORD written = 0;
    return ::WriteFile(FileOf(file), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) && written == bytes.size();
}
void CloseFile(std::intptr_t file) { ::CloseHandle(FileOf(file)); }
constexpr wchar_t Separator = L'\\';
#else
std::string NativePath(std::wstring_view path) {
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, path.data(), static_cast<int>(path.size()), nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, path.data(), static_cast<int>(path.size()), result.data(), size, nullptr, nullptr);
    return result;
}
std::intptr_t OpenForAppending(std::wstring path) {
    return ::open(NativePath(path).c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
}
bool TryLock(std::intptr_t file) { return ::flock(static_cast<int>(file), LOCK_EX | LOCK_NB) == 0; }
void ReleaseLock(std::intptr_t file) { ::flock(static_cast<int>(file), LOCK_UN); }
bool WriteAll(std::intptr_t file, std::string_view bytes) {
    return ::write(static_cast<int>(file), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}
void CloseFile(std::intptr_t file) { ::close(static_cast<int>(file)); }
constexpr wchar_t Separator = L'/';
#endif

}  // namespace

AppendFile::~AppendFile() { Close(); }

bool AppendFile::Open(std::wstring_view folder, std::wstring_view name) {
    Close();
    std::wstring path(folder);
    if (!path.empty() && path.back() != Separator) path += Separator;
    path += name;
    m_file = OpenForAppending(std::move(path));
    return IsOpen();
}

bool AppendFile::Append(std::string_view bytes) {
    if (!IsOpen()) return false;
    const bool locked = Lock();
    const bool written = WriteAll(m_file, bytes);
    if (locked) Unlock();
    return written;
}

void AppendFile::Close() noexcept {
    if (IsOpen()) CloseFile(m_file);
    m_file = c_none;
}

bool AppendFile::Lock() noexcept {
    // Real time, not the simulated clock: the other holder is a real process.
    for (int attempt = 0; attempt < LockAttempts; ++attempt) {
        if (TryLock(m_file)) return true;
        std::this_thread::sleep_for(LockPause);
    }
    return false;
}

void AppendFile::Unlock() noexcept { ReleaseLock(m_file); }

}  // namespace Platform
