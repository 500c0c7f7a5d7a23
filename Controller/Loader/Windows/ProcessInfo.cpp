#include "Controller/Loader/Windows/ProcessInfo.h"

#include <tlhelp32.h>

#include "Common/include/SafeObject.h"

namespace Zorvex::Loader {

Bitness BitnessOfProcess(HANDLE process) {
    // Not on systems before Windows 10, so it isn't linked to.
    using IsWow64Process2Function = BOOL(WINAPI*)(HANDLE, USHORT*, USHORT*);
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "IsWow64Process2");
    const auto isWow64Process2 = reinterpret_cast<IsWow64Process2Function>(reinterpret_cast<void*>(address));
    USHORT processMachine = 0;
    USHORT nativeMachine = 0;
    if (isWow64Process2 && isWow64Process2(process, &processMachine, &nativeMachine)) {
        return BitnessFromMachines(processMachine, nativeMachine);
    }
    BOOL emulated = FALSE;
    if (!IsWow64Process(process, &emulated)) return Bitness::Unknown;
    SYSTEM_INFO system{};
    GetNativeSystemInfo(&system);
    return BitnessFromWow64(emulated != FALSE, system.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_AMD64);
}

std::wstring FileNameOfProcess(HANDLE process) {
    wchar_t path[1024];
    DWORD length = static_cast<DWORD>(std::size(path));
    if (!QueryFullProcessImageNameW(process, 0, path, &length)) return {};
    const std::wstring full(path, length);
    return full.substr(full.find_last_of(L"\\/") + 1);
}

std::wstring FolderOfThisProgram() {
    std::wstring path(1024, L'\0');
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    path.resize(length);
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

DWORD ParentOfProcess(DWORD processId) {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return 0;
    const SafeObject owner(snapshot);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
        if (entry.th32ProcessID == processId) return entry.th32ParentProcessID;
    }
    return 0;
}

}  // namespace Zorvex::Loader
