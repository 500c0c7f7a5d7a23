// The clock that a search's deadline is measured by.
#pragma once

#include <cstdint>

namespace Zorvex::Search {

constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;

// Nanoseconds on the monotonic clock, the high-resolution counter.
std::int64_t NowNanoseconds();
// `ticks` of a counter with `frequency` ticks a second, without overflow for any time that a machine can be up.
// `frequency` is above 0.
std::int64_t TicksToNanoseconds(std::int64_t ticks, std::int64_t frequency);

}  // namespace Zorvex::Search
