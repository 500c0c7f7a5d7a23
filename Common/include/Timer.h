// A countdown over the high-resolution counter.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

class Timer {
public:
    // Starts at once. A negative time is already over.
    explicit Timer(int milliseconds);

    // The milliseconds left, never below 0. Each call charges only the time since the previous one, rounded towards
    // zero: calls within one millisecond charge nothing.
    int Remaining();
    bool IsOver() { return Remaining() < 1; }

private:
    LONGLONG m_lastCounter;
    int m_left;
};

}  // namespace Zorvex
