// The virtual clock.
#include <atomic>

#include "Platform/Simulated/Sdk/SystemState.h"

namespace Simulated {
namespace {

constexpr ULONGLONG StartMilliseconds = 100'000;
constexpr LONGLONG CountsPerSecond = 10'000'000;
constexpr ULONGLONG CountsPerMillisecond = CountsPerSecond / 1000;
// What the wall shows when the clock stands at zero: 2024-01-01T00:00:00Z in steps of 100 ns since 1601.
constexpr ULONGLONG WallAtZero = 133485408000000000ULL;

std::atomic<ULONGLONG> g_now{StartMilliseconds};
std::atomic<ULONGLONG> g_tick{0};
std::atomic<ULONGLONG> g_slept{0};

ULONGLONG ReadClock() { return g_now.fetch_add(g_tick); }

}  // namespace

void ResetClock() {
    g_now = StartMilliseconds;
    g_tick = 0;
    g_slept = 0;
}
ULONGLONG ClockMilliseconds() { return g_now; }
void AdvanceClock(ULONGLONG milliseconds) { g_now += milliseconds; }
void SetClockTick(ULONGLONG milliseconds) { g_tick = milliseconds; }
ULONGLONG MillisecondsSlept() { return g_slept; }

}  // namespace Simulated

using namespace Simulated;

ULONGLONG GetTickCount64() { return ReadClock(); }

BOOL QueryPerformanceCounter(LARGE_INTEGER* counter) {
    counter->QuadPart = static_cast<LONGLONG>(ReadClock() * CountsPerMillisecond);
    return TRUE;
}

BOOL QueryPerformanceFrequency(LARGE_INTEGER* frequency) {
    frequency->QuadPart = CountsPerSecond;
    return TRUE;
}

void Sleep(DWORD milliseconds) {
    g_slept += milliseconds;
    g_now += milliseconds;
}

void GetSystemTimeAsFileTime(FILETIME* time) {
    const ULONGLONG value = WallAtZero + g_now * CountsPerMillisecond;
    time->dwLowDateTime = static_cast<DWORD>(value);
    time->dwHighDateTime = static_cast<DWORD>(value >> 32);
}
