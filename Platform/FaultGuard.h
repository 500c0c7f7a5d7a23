// Calls that survive the faults of what they call.
#pragma once

#include <cstdint>

#include "Platform/Windows.h"

namespace Zorvex {

// Whether faults of the hardware are survived too, or exceptions of C++ alone.
#ifdef _WIN32
inline constexpr bool SurvivesHardwareFaults = true;
#else
inline constexpr bool SurvivesHardwareFaults = false;
#endif

struct FaultReport {
    DWORD code = 0;
    std::uint64_t address = 0;
};

// Calls `function(argument)`. Answers false, and fills `report`, when an exception of the operating system with
// error severity came out of it (access violation, division by zero, stack overflow, an exception of a foreign
// language, ...); handlers inside the function come first, as they should. No destructor between runs then, and no
// lock is given back. `function` must not let C++ exceptions out. When several threads fault at once the report may
// be that of another one. Natively there are no such faults: the call is a plain one.
bool CallGuarded(void (*function)(void*), void* argument, FaultReport& report);

// Calls `function()`. Answers false when a C++ exception or a fault, as above, came out of it. Costs some 20
// instructions, so it may stand around every call of a server. As no destructor runs after a fault, nothing that owns
// may live in `function`: let it write to owners outside.
template <class Function>
bool SurvivesCall(Function&& function) {
    struct Call {
        Function& function;
        bool threw;
    } call{function, false};
    FaultReport report;
    const bool returned = CallGuarded(
        [](void* argument) {
            Call& made = *static_cast<Call*>(argument);
            try {
                made.function();
            } catch (...) {
                made.threw = true;
            }
        },
        &call, report);
    return returned && !call.threw;
}

}  // namespace Zorvex
