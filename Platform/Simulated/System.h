// What a test may set, and see, of the simulated system below the desktop: clock, settings, processes, memory,
// diagnostics. Native builds only. Everything here may be called from any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Simulated/Sdk/System.h"

namespace Simulated {

// Puts everything below back to its initial state, except what is outstanding: blocks, strings, arrays and handles
// live on until their owners free them. Armed failures are disarmed.
void ResetSystem();

// The clock. It starts at 100,000 ms and moves only by Sleep, by AdvanceClock, and by the tick of each reading.
ULONGLONG ClockMilliseconds();
void AdvanceClock(ULONGLONG milliseconds);
// Each GetTickCount64 and each QueryPerformanceCounter moves the clock by this much after it was read. 0 at first.
void SetClockTick(ULONGLONG milliseconds);
// The sum of all Sleep calls.
ULONGLONG MillisecondsSlept();

// The registry. Key and value names compare without regard to case.
constexpr DWORD TypeText = 1;
constexpr DWORD TypeExpandText = 2;
void SetRegistryText(HKEY root, std::wstring_view subKey, std::wstring_view name, std::wstring_view value, DWORD type = TypeText);
void RemoveRegistryValue(HKEY root, std::wstring_view subKey, std::wstring_view name);
// The user's environment key, where the settings of the product stand.
void SetUserEnvironment(std::wstring_view name, std::wstring_view value);
void RemoveUserEnvironment(std::wstring_view name);
// The machine's environment key, which is asked after the user's.
void SetMachineEnvironment(std::wstring_view name, std::wstring_view value);
// How many times RegGetValueW was called.
unsigned RegistryReads();

// Debug output, a record for each call of OutputDebugStringA.
std::vector<std::string> DebugOutput();
void ClearDebugOutput();

// Event tracing. `level` is the highest level that the session wants, 1 to 5, or 0 for all.
struct TracedEvent {
    GUID provider;
    BYTE level;
    ULONGLONG keyword;
    std::wstring text;
};
void EnableEvents(REFGUID provider, BYTE level, ULONGLONG flags);
void DisableEvents(REFGUID provider);
// How many registrations of the provider are alive.
unsigned EventRegistrations(REFGUID provider);
std::vector<TracedEvent> Events();

// Processes. At first there is one, id 1000, C:\Windows\simulated.exe, session 1, and it is the current one.
struct Process {
    DWORD id = 0;
    std::wstring path;
    DWORD session = 1;
    bool accessDenied = false;  // OpenProcess fails with ERROR_ACCESS_DENIED
    bool pathFails = false;     // QueryFullProcessImageNameW fails with ERROR_GEN_FAILURE
};
// Adds the process, or replaces the one with its id.
void SetProcess(const Process& process);
void RemoveProcess(DWORD id);
void SetCurrentProcessId(DWORD id);
// The id that GetCurrentThreadId answers on the calling thread from now on. Unset, threads count from 1.
void SetCurrentThreadId(DWORD id);
int OpenHandles();

// The version that RtlGetVersion reports. 10.0.19045 at first.
void SetOsVersion(DWORD major, DWORD minor, DWORD build);

// The folder of every known folder. At first there is none, and SHGetKnownFolderPath fails with 0x80070002.
void SetKnownFolder(std::wstring_view path);

// Memory. Each kind is counted apart.
enum class Allocation { Heap, Task, String, Array };
// Blocks of the kind that are not freed yet, in the whole process.
int OutstandingBlocks(Allocation kind);
// Bytes in heap blocks now, and the most there ever were since the last call of ResetHeapPeak.
std::size_t OutstandingHeapBytes();
std::size_t PeakHeapBytes();
void ResetHeapPeak();
// Lets the `nth` allocation of the kind from now fail, counting from 1; later ones work again. 0 disarms.
void FailAllocation(Allocation kind, unsigned nth);
// The next HeapFree frees nothing and answers FALSE with this last error. 0 disarms.
void FailNextHeapFree(DWORD error);

// COM.
struct CoInitializeCall {
    DWORD thread;
    DWORD model;
    HRESULT result;
};
std::vector<CoInitializeCall> CoInitializeCalls();
// CoInitializeEx calls of the calling thread that no CoUninitialize has balanced.
int ComInitializationDepth();
// The next CoInitializeEx answers `result` and does nothing else.
void FailNextCoInitialize(HRESULT result);

}  // namespace Simulated
