#include "RuntimeCore/Selectors/Unified/SearchClock.h"

#include "Platform/Windows.h"

namespace Zorvex::Search {

namespace {
constexpr std::int64_t kCommonFrequency = 10'000'000;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
}  // namespace

std::int64_t TicksToNanoseconds(std::int64_t ticks, std::int64_t frequency) {
    if (frequency == kCommonFrequency) return ticks * (kNanosecondsPerSecond / kCommonFrequency);
    const std::int64_t seconds = ticks / frequency;
    const std::int64_t remainder = ticks % frequency;
    return seconds * kNanosecondsPerSecond + remainder * kNanosecondsPerSecond / frequency;
}

std::int64_t NowNanoseconds() {
    LARGE_INTEGER counter{};
    LARGE_INTEGER frequency{};
    ::QueryPerformanceCounter(&counter);
    ::QueryPerformanceFrequency(&frequency);
    return TicksToNanoseconds(counter.QuadPart, frequency.QuadPart);
}

}  // namespace Zorvex::Search
