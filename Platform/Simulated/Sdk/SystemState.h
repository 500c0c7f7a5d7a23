// The state behind the simulated system functions. Private to this folder.
#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

#include "Platform/Simulated/Sdk/User.h"
#include "Platform/Simulated/System.h"

namespace Simulated {

struct GuidLess {
    bool operator()(const GUID& a, const GUID& b) const;
};

struct EventSession {
    bool enabled = false;
    BYTE level = 0;
    ULONGLONG flags = 0;
};
struct EventRegistration {
    GUID provider;
    PENABLECALLBACK callback;
    void* context;
};

// Guarded by `lock`, which is never held while code of a caller runs.
struct SystemState {
    std::mutex lock;

    // Root, key in lower case, name in lower case.
    struct RegistryValue { DWORD type; std::wstring text; };
    std::map<std::tuple<std::uintptr_t, std::wstring, std::wstring>, RegistryValue> registry;
    unsigned registryReads = 0;

    std::vector<std::string> debugOutput;
    std::map<GUID, EventSession, GuidLess> sessions;
    std::map<REGHANDLE, EventRegistration> registrations;
    REGHANDLE lastRegistration = 0;
    std::vector<TracedEvent> events;

    std::map<DWORD, Process> processes;
    DWORD currentProcess = 0;
    std::map<HANDLE, DWORD> handles;
    std::uintptr_t lastHandle = 0x100;
    DWORD osVersion[3] = {};

    std::wstring knownFolder;

    std::vector<CoInitializeCall> coInitializeCalls;
    HRESULT nextCoInitialize = S_OK;

    SystemState() { Reset(); }
    // All but handles and registrations, whose owners live on.
    void Reset();
};

// Never destroyed: objects with static storage may use it in their destructors.
SystemState& State();

std::wstring LowerCase(std::wstring_view text);

// Defined beside the functions that they serve.
void ResetClock();
DWORD NextThreadId();
bool CloseKernelObject(HANDLE handle);
int OpenKernelObjects();
// The calling thread's next message, if it is one made by CreateThread; such a thread sees no others.
bool TakeThreadMessage(MSG& message, bool remove, bool& isOwnQueue);
void DisarmAllocationFailures();
// True when this allocation is the one that shall fail.
bool AllocationFails(Allocation kind);
void CountBlock(Allocation kind, int change);

// More than this in one block is never to be had.
constexpr std::size_t LargestBlock = std::size_t{1} << 30;

}  // namespace Simulated
