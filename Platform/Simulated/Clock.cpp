// The desktop's clock: the simulated one, or in a serving program the real one.
#include "Platform/Simulated/Desktop.h"
#ifndef _WIN32
#include "Platform/Simulated/System.h"
#endif

namespace Simulated {

void Desktop::Wait(unsigned milliseconds) {
#ifdef _WIN32
    ::Sleep(milliseconds);
#else
    AdvanceClock(milliseconds);
#endif
}

ULONGLONG Desktop::Now() const {
#ifdef _WIN32
    return ::GetTickCount64();
#else
    return ClockMilliseconds();
#endif
}

}  // namespace Simulated
