// Errors, handles, processes, threads, and the version of the system.
#include <atomic>
#include <cstring>

#include "Platform/Simulated/Sdk/SystemState.h"

namespace Simulated {
namespace {

thread_local DWORD t_lastError = 0;
thread_local DWORD t_threadId = 0;
std::atomic<DWORD> g_threads{0};

constexpr std::uintptr_t SystemLibrary = 0x7FF0;

LONG ReportVersion(RTL_OSVERSIONINFOW* information) {
    std::lock_guard guard(State().lock);
    // A system without a version doesn't tell it.
    if (State().osVersion[0] == 0) return static_cast<LONG>(0xC0000001);
    information->dwMajorVersion = State().osVersion[0];
    information->dwMinorVersion = State().osVersion[1];
    information->dwBuildNumber = State().osVersion[2];
    information->dwPlatformId = 2;
    information->szCSDVersion[0] = 0;
    return 0;
}

}  // namespace

void SetProcess(const Process& process) {
    std::lock_guard guard(State().lock);
    State().processes[process.id] = process;
}
void RemoveProcess(DWORD id) {
    std::lock_guard guard(State().lock);
    State().processes.erase(id);
}
void SetCurrentProcessId(DWORD id) {
    std::lock_guard guard(State().lock);
    State().currentProcess = id;
}
void SetCurrentThreadId(DWORD id) { t_threadId = id; }
DWORD NextThreadId() { return ++g_threads; }
int OpenHandles() {
    const int objects = OpenKernelObjects();
    std::lock_guard guard(State().lock);
    return objects + static_cast<int>(State().handles.size());
}
void SetOsVersion(DWORD major, DWORD minor, DWORD build) {
    std::lock_guard guard(State().lock);
    State().osVersion[0] = major;
    State().osVersion[1] = minor;
    State().osVersion[2] = build;
}

}  // namespace Simulated

using namespace Simulated;

DWORD GetLastError() { return t_lastError; }
void SetLastError(DWORD code) { t_lastError = code; }

BOOL CloseHandle(HANDLE handle) {
    if (CloseKernelObject(handle)) return TRUE;
    std::lock_guard guard(State().lock);
    if (State().handles.erase(handle) != 0) return TRUE;
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}

DWORD GetCurrentProcessId() {
    std::lock_guard guard(State().lock);
    return State().currentProcess;
}
DWORD GetCurrentThreadId() {
    if (t_threadId == 0) t_threadId = ++g_threads;
    return t_threadId;
}

HANDLE OpenProcess(DWORD, BOOL, DWORD processId) {
    std::lock_guard guard(State().lock);
    const auto process = State().processes.find(processId);
    if (process == State().processes.end() || process->second.accessDenied) {
        // An id that nobody has is a bad parameter, not a missing thing.
        SetLastError(process == State().processes.end() ? ERROR_INVALID_PARAMETER : ERROR_ACCESS_DENIED);
        return nullptr;
    }
    HANDLE handle = reinterpret_cast<HANDLE>(State().lastHandle += 4);
    State().handles[handle] = processId;
    return handle;
}

BOOL QueryFullProcessImageNameW(HANDLE handle, DWORD, LPWSTR path, DWORD* length) {
    std::lock_guard guard(State().lock);
    const auto opened = State().handles.find(handle);
    const auto process = opened == State().handles.end() ? State().processes.end() : State().processes.find(opened->second);
    if (process == State().processes.end() || process->second.pathFails) {
        SetLastError(opened == State().handles.end() ? ERROR_INVALID_HANDLE : ERROR_GEN_FAILURE);
        return FALSE;
    }
    const std::wstring& text = process->second.path;
    if (*length < text.size() + 1) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    std::memcpy(path, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    *length = static_cast<DWORD>(text.size());
    return TRUE;
}

BOOL ProcessIdToSessionId(DWORD processId, DWORD* sessionId) {
    std::lock_guard guard(State().lock);
    const auto process = State().processes.find(processId);
    if (process == State().processes.end()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    *sessionId = process->second.session;
    return TRUE;
}

HMODULE GetModuleHandleW(LPCWSTR name) {
    const std::wstring module = name ? LowerCase(name) : L"";
    if (module == L"ntdll" || module == L"ntdll.dll") return reinterpret_cast<HMODULE>(SystemLibrary);
    return nullptr;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
    if (module == reinterpret_cast<HMODULE>(SystemLibrary) && std::strcmp(name, "RtlGetVersion") == 0)
        return reinterpret_cast<FARPROC>(&ReportVersion);
    return nullptr;
}
