// The server's log lines on the live system: its level is a setting of the user, its lines are debug output.
#include <windows.h>

#include <atomic>
#include <optional>
#include <thread>

#include "Common/include/SafeObject.h"
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/SystemChoice.h"

namespace Zorvex::Controller {

namespace {

constexpr const wchar_t* kKey = L"Environment";
constexpr const wchar_t* kSetting = L"ZORVEX_LOG_LEVEL";
constexpr DWORD kBufferSize = 4096;
constexpr DWORD kLastLinesWait = 200;

// What stands in the shared memory; the text ends with a zero.
struct DebugBuffer {
    DWORD processId;
    char text[kBufferSize - sizeof(DWORD)];
};

// Sets the user's log level and puts back what was there. Servers look at it every few seconds, and when they are loaded.
class LevelSetting {
public:
    explicit LevelSetting(const std::wstring& level) {
        wchar_t old[64];
        DWORD size = sizeof(old);
        if (RegGetValueW(HKEY_CURRENT_USER, kKey, kSetting, RRF_RT_REG_SZ, nullptr, old, &size) == ERROR_SUCCESS) m_old = old;
        Set(level);
    }
    LevelSetting(const LevelSetting&) = delete;
    LevelSetting& operator=(const LevelSetting&) = delete;
    ~LevelSetting() {
        if (m_old) Set(*m_old);
        else RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, kSetting);
    }

private:
    static void Set(const std::wstring& level) {
        RegSetKeyValueW(HKEY_CURRENT_USER, kKey, kSetting, REG_SZ, level.c_str(), static_cast<DWORD>((level.size() + 1) * sizeof(wchar_t)));
    }

    std::optional<std::wstring> m_old;
};

// Reads the system's debug output, of which there can be one reader at a time.
class DebugOutputWatch final : public LogWatch {
public:
    DebugOutputWatch(const std::wstring& level, std::function<void(const std::string&)> show) : m_level(level), m_show(std::move(show)) {
        m_ready = SafeObject(CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_BUFFER_READY"));
        m_written = SafeObject(CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY"));
        m_mapping = SafeObject(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kBufferSize, L"DBWIN_BUFFER"));
        const bool taken = GetLastError() == ERROR_ALREADY_EXISTS;
        if (!m_ready || !m_written || !m_mapping || taken)
            throw CommandFailure(ExitCode::TargetProblem,
                                 "the log lines can't be had: another program reads the debug output; docs/logging.md has other ways");
        m_buffer = static_cast<const DebugBuffer*>(MapViewOfFile(m_mapping.Get(), FILE_MAP_READ, 0, 0, kBufferSize));
        if (!m_buffer) throw CommandFailure(ExitCode::TargetProblem, "the log lines can't be had: the debug output can't be mapped");
        m_thread = std::thread([this] { Read(); });
    }

    ~DebugOutputWatch() override {
        m_stop = true;
        m_thread.join();
        UnmapViewOfFile(m_buffer);
    }

private:
    void Read() {
        SetEvent(m_ready.Get());
        while (true) {
            const bool last = m_stop;
            if (WaitForSingleObject(m_written.Get(), kLastLinesWait) == WAIT_OBJECT_0) {
                const std::string text(m_buffer->text, strnlen(m_buffer->text, sizeof(m_buffer->text)));
                SetEvent(m_ready.Get());
                // Other programs write there too; the server's lines begin with their thread.
                if (!text.empty() && text[0] == '{' && text.find("}[") != std::string::npos)
                    m_show(text.substr(0, text.find_last_not_of("\r\n") + 1));
            } else if (last) {
                return;
            }
        }
    }

    LevelSetting m_level;
    std::function<void(const std::string&)> m_show;
    SafeObject m_ready, m_written, m_mapping;
    const DebugBuffer* m_buffer = nullptr;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

}  // namespace

std::unique_ptr<LogWatch> WatchLog(const std::wstring& level, std::function<void(const std::string&)> show) {
    return std::make_unique<DebugOutputWatch>(level, std::move(show));
}

}  // namespace Zorvex::Controller
