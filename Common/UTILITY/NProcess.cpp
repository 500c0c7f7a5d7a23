#include "Common/UTILITY/NProcess.h"

#include <cwctype>

#include "Common/include/Log.h"
#include "Common/include/SafeObject.h"

namespace Zorvex::NProcess {

namespace {

// The longest path that the system has, and the length that nearly every path stays below.
constexpr DWORD LongestPath = 32768;
constexpr DWORD UsualPath = 512;

using RtlGetVersionFunction = LONG(WINAPI*)(RTL_OSVERSIONINFOW*);

RtlGetVersionFunction LookUpRtlGetVersion() {
    const HMODULE module = ::GetModuleHandleW(L"ntdll");
    if (!module) return nullptr;
    // By way of a plain function pointer: the compiler warns of a direct cast between unlike functions.
    return reinterpret_cast<RtlGetVersionFunction>(reinterpret_cast<void (*)()>(::GetProcAddress(module, "RtlGetVersion")));
}

}  // namespace

CString GetProcessPath(DWORD pid) {
    const SafeObject process(::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, pid));
    if (!process) {
        LogError("OpenProcess failed for dwPid:%u; GetLastError:%u", pid, ::GetLastError());
        return CString();
    }
    CString path;
    for (const DWORD capacity : {UsualPath, LongestPath}) {
        path.resize(capacity);
        DWORD length = capacity;
        if (::QueryFullProcessImageNameW(process.Get(), 0, path.data(), &length)) {
            path.resize(length < capacity ? length : 0);
            return path;
        }
        if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER) break;
    }
    LogError("QueryFullProcessImageName failed for dwPid:%u; GetLastError:%u", pid, ::GetLastError());
    return CString();
}

CString GetProcessName(DWORD pid) {
    CString name = GetProcessPath(pid);
    name.erase(0, name.rfind(L'\\') + 1);
    for (wchar_t& unit : name) unit = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(unit)));
    return name;
}

CString GetWindowProcessName(HWND hWnd) {
    DWORD pid = 0;
    if (::GetWindowThreadProcessId(hWnd, &pid) == 0 || pid == 0) return CString();
    return GetProcessName(pid);
}

bool GetOsVersion(RTL_OSVERSIONINFOW& out_info) {
    // Looked up once; initialisation of a local is the guard.
    static const RtlGetVersionFunction getVersion = LookUpRtlGetVersion();
    out_info = {};
    out_info.dwOSVersionInfoSize = sizeof out_info;
    return getVersion && getVersion(&out_info) == 0;
}

}  // namespace Zorvex::NProcess
