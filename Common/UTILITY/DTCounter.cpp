#include "Common/include/DTCounter.h"

#include <cstring>

#include "Common/include/Log.h"

namespace Zorvex {

DTCounter::DTCounter(const char* name) : m_start(::GetTickCount64()) {
    if (name) std::strncpy(m_name, name, c_maximumName);
}

DTCounter::~DTCounter() { Log(); }

// The line names this function.
void DTCounter::Log() const {
    const ULONGLONG elapsed = ::GetTickCount64() - m_start;
    // The spelling is the one that log readers look for.
    if (m_name[0]) LogInfo("Counter %s - %d miliseconds", m_name, elapsed);
    else LogInfo("Counter unknown - %d miliseconds", elapsed);
}

}  // namespace Zorvex
