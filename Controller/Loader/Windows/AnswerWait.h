// Posts the host's message to a window and waits for what comes of it.
#pragma once

#include <chrono>
#include <optional>
#include <stop_token>

#include "Controller/Loader/LoadResult.h"
#include "Controller/Loader/Windows/SharedExchange.h"

namespace Zorvex::Loader {

// A point of time to be kept, or none.
class Deadline {
public:
    // Zero: no deadline.
    explicit Deadline(std::chrono::milliseconds timeout)
        : m_end(timeout.count() > 0 ? std::optional(std::chrono::steady_clock::now() + timeout) : std::nullopt) {}

    bool Passed() const { return m_end && std::chrono::steady_clock::now() >= *m_end; }
    // Milliseconds until then, rounded up, at most `most`.
    DWORD Remaining(DWORD most) const;

private:
    std::optional<std::chrono::steady_clock::time_point> m_end;
};

struct WaitPlace {
    HWND window;
    HANDLE process;  // waited on, not owned
    HANDLE thread;   // the window's; may be null when the system doesn't give it
};

// Nothing when the exchange is Answered. In every other case the exchange is Abandoned, so a late message finds
// nothing to do and a late answer is dropped.
std::optional<LoadFailure> PostAndWait(const WaitPlace& place, SharedExchange& exchange, const Deadline& deadline,
                                       const std::stop_token& stop);

// Sleeps, but ends early with true when stopping was asked for.
bool SleepUnlessStopped(DWORD milliseconds, const std::stop_token& stop);

}  // namespace Zorvex::Loader
