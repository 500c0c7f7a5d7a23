#include "Common/include/Timer.h"

#include <algorithm>

namespace Zorvex {
namespace {

LONGLONG ReadCounter() {
    LARGE_INTEGER counter{};
    ::QueryPerformanceCounter(&counter);
    return counter.QuadPart;
}

LONGLONG CountsPerSecond() {
    static const LONGLONG frequency = [] {
        LARGE_INTEGER value{};
        ::QueryPerformanceFrequency(&value);
        return value.QuadPart;
    }();
    return frequency;
}

}  // namespace

Timer::Timer(int milliseconds) : m_lastCounter(ReadCounter()), m_left(milliseconds) {}

int Timer::Remaining() {
    const LONGLONG now = ReadCounter();
    // In a double, so that no product overflows however long the machine runs.
    const double elapsed = static_cast<double>(now - m_lastCounter) * 1000.0 / static_cast<double>(CountsPerSecond());
    m_lastCounter = now;
    m_left = static_cast<int>(std::max<LONGLONG>(0, m_left - static_cast<LONGLONG>(elapsed)));
    return m_left;
}

}  // namespace Zorvex
