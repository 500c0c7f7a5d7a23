// Decides what is logged, and where it goes.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "Common/UTILITY/LogBase.h"
#include "Common/UTILITY/LogPlatform.h"

namespace Zorvex {

// Any thread may use it. One serves the process; a test makes its own, on a platform of its own.
class LogRouter {
public:
    // The platform is borrowed. What is done once a process, the event provider among it, stays with it for good.
    explicit LogRouter(LogPlatform& platform) : m_home(platform), m_platform(&platform) {}
    LogRouter(const LogRouter&) = delete;
    LogRouter& operator=(const LogRouter&) = delete;
    ~LogRouter() { Shutdown(); }

    static LogRouter& OfProcess();

    bool ShouldLog(Severity severity) {
        return static_cast<int>(severity) >= m_base.MinimumLevel() || static_cast<int>(severity) >= Level();
    }

    // `text` is the whole line, line end included; the message proper begins at `messageOffset`.
    void Emit(Severity severity, const char* file, unsigned line, std::size_t messageOffset, std::string_view text);

    // The level of ZORVEX_LOG_LEVEL, at most 3,000 ms old.
    int Level();
    // Reads the settings anew at the next line.
    void ForgetSettings();
    // Takes settings and debug output from the other platform, from the next line on, and answers the one before.
    LogPlatform& ExchangePlatform(LogPlatform& platform);
    // Ends the event registration and closes the file. Later lines still go to the debug output.
    void Shutdown();

    LogBase& Base() { return m_base; }

private:
    // A value read from the settings, with its time. Two threads may read it at the same moment, which does no harm.
    struct Cached {
        static constexpr std::uint64_t c_never = UINT64_MAX;
        std::atomic<int> value{0};
        std::atomic<std::uint64_t> time{c_never};
        bool IsYoung(std::uint64_t now) const;
    };

    bool FileWanted();
    void SetUpOnce();
    void SetUpFileOnce();
    void SendEvent(Severity severity, const char* file, unsigned line, std::string_view message);
    static void OnEventSession(void* context, bool enabled, BYTE level, ULONGLONG flags);

    LogPlatform& m_home;
    std::atomic<LogPlatform*> m_platform;
    LogBase m_base;
    Cached m_level;
    Cached m_fileFlag;
    std::once_flag m_setUp;
    std::once_flag m_fileSetUp;
    bool m_debugOutput = true;
    std::atomic<bool> m_eventsRegistered{false};
    std::atomic<ULONGLONG> m_eventFlags{0};
};

}  // namespace Zorvex
