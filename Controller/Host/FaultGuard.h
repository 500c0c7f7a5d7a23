// A call that survives hardware faults of what it calls.
#pragma once

#include <cstdint>

#include "Platform/Windows.h"

namespace Zorvex::Host {

struct FaultReport {
    DWORD code = 0;
    std::uint64_t address = 0;
};

// Calls `function(argument)`. Answers false, and fills `report`, when an exception of the operating system with
// error severity came out of it (access violation, division by zero, stack overflow, an exception of a foreign
// language, ...); handlers inside the function come first, as they should. No destructor between runs then, and no
// lock is given back. `function` must not let C++ exceptions out. One call at a time in the process.
bool CallGuarded(void (*function)(void*), void* argument, FaultReport& report);

}  // namespace Zorvex::Host
