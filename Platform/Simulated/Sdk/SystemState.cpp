#include "Platform/Simulated/Sdk/SystemState.h"

#include <cstring>

namespace Simulated {

bool GuidLess::operator()(const GUID& a, const GUID& b) const { return std::memcmp(&a, &b, sizeof a) < 0; }

SystemState& State() {
    static SystemState& state = *new SystemState;
    return state;
}

void SystemState::Reset() {
    registry.clear();
    registryReads = 0;
    debugOutput.clear();
    sessions.clear();
    events.clear();
    processes.clear();
    processes[1000] = Process{1000, L"C:\\Windows\\simulated.exe", 1, false, false};
    currentProcess = 1000;
    osVersion[0] = 10;
    osVersion[1] = 0;
    osVersion[2] = 19045;
    knownFolder.clear();
    coInitializeCalls.clear();
    nextCoInitialize = S_OK;
}

void ResetSystem() {
    std::vector<EventRegistration> alive;
    {
        std::lock_guard guard(State().lock);
        State().Reset();
        for (const auto& [handle, registration] : State().registrations) alive.push_back(registration);
    }
    // The sessions are gone, and their providers hear of it as they would when a real session ends.
    for (const EventRegistration& registration : alive)
        if (registration.callback) registration.callback(&registration.provider, 0, 0, 0, 0, nullptr, registration.context);
    ResetClock();
    DisarmAllocationFailures();
}

// ASCII is enough for the names of keys, modules and processes that the product uses.
std::wstring LowerCase(std::wstring_view text) {
    std::wstring result(text);
    for (wchar_t& unit : result)
        if (unit >= L'A' && unit <= L'Z') unit += L'a' - L'A';
    return result;
}

}  // namespace Simulated
