// The low-level log facility under the logger: a minimum level, a handler, and a file destination.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string_view>

#include "Common/include/Log.h"
#include "Platform/AppendFile.h"

namespace Zorvex {

class LogBase {
public:
    // Sees each line before it is written; true takes the line, and nothing more happens to it.
    using Handler = bool (*)(Severity severity, const char* file, unsigned line, std::string_view message);

    // Information and above, until somebody sets it.
    int MinimumLevel() const noexcept { return m_minimumLevel.load(std::memory_order_relaxed); }
    void SetMinimumLevel(int level) noexcept { m_minimumLevel.store(level, std::memory_order_relaxed); }
    void SetHandler(Handler handler) noexcept { m_handler = handler; }

    // Appends to the file from now on; an old one stays. False when it can't be opened.
    bool OpenFile(std::wstring_view folder, std::wstring_view name);
    void CloseFile();
    // One line of the file: time stamp, process and thread, severity, place, message. Without a file only the handler
    // sees it.
    void WriteLine(Severity severity, const char* file, unsigned line, std::string_view message);

private:
    std::atomic<int> m_minimumLevel{static_cast<int>(Severity::Info)};
    std::atomic<Handler> m_handler{nullptr};
    std::mutex m_fileLock;
    Platform::AppendFile m_file;
};

// "V", "I", "W", "E", "F"; "?" for what is no severity.
char SeverityLetter(Severity severity) noexcept;
// What stands behind the last separator of a path, of either kind.
const char* FileNameOf(const char* path) noexcept;

}  // namespace Zorvex
