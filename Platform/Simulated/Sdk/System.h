// Process, memory, time, settings and diagnostics.
#pragma once

#include "Platform/Simulated/Sdk/Com.h"

// Memory. One process heap, as on Windows: a block may be freed on the other side of the export.
constexpr DWORD HEAP_ZERO_MEMORY = 0x8;
HANDLE GetProcessHeap();
void* HeapAlloc(HANDLE heap, DWORD flags, SIZE_T size);
BOOL HeapFree(HANDLE heap, DWORD flags, void* block);

// Errors and handles.
DWORD GetLastError();
void SetLastError(DWORD code);
BOOL CloseHandle(HANDLE handle);
constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD message, DWORD language, LPSTR text, DWORD capacity, void* arguments);

// Time. The simulated clock stands still until something sleeps or a test moves it.
ULONGLONG GetTickCount64();
BOOL QueryPerformanceCounter(LARGE_INTEGER* counter);
BOOL QueryPerformanceFrequency(LARGE_INTEGER* frequency);
void Sleep(DWORD milliseconds);
void GetSystemTimeAsFileTime(FILETIME* time);

// One-time initialisation.
union INIT_ONCE { void* Ptr; };
using PINIT_ONCE = INIT_ONCE*;
constexpr DWORD INIT_ONCE_INIT_FAILED = 4;
BOOL InitOnceBeginInitialize(INIT_ONCE* once, DWORD flags, BOOL* pending, void** context);
BOOL InitOnceComplete(INIT_ONCE* once, DWORD flags, void* context);

// Processes.
constexpr DWORD PROCESS_QUERY_LIMITED_INFORMATION = 0x1000;
DWORD GetCurrentProcessId();
DWORD GetCurrentThreadId();
HANDLE OpenProcess(DWORD access, BOOL inherit, DWORD processId);
BOOL QueryFullProcessImageNameW(HANDLE process, DWORD flags, LPWSTR path, DWORD* length);
BOOL ProcessIdToSessionId(DWORD processId, DWORD* sessionId);
HMODULE GetModuleHandleW(LPCWSTR name);
FARPROC GetProcAddress(HMODULE module, LPCSTR name);

struct RTL_OSVERSIONINFOW {
    ULONG dwOSVersionInfoSize;
    ULONG dwMajorVersion;
    ULONG dwMinorVersion;
    ULONG dwBuildNumber;
    ULONG dwPlatformId;
    WCHAR szCSDVersion[128];
};

// Settings.
inline HKEY const HKEY_CURRENT_USER = reinterpret_cast<HKEY>(static_cast<std::uintptr_t>(0x80000001));
inline HKEY const HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(static_cast<std::uintptr_t>(0x80000002));
constexpr DWORD RRF_RT_REG_SZ = 0x2;
constexpr DWORD RRF_RT_REG_EXPAND_SZ = 0x4;
constexpr DWORD RRF_NOEXPAND = 0x10000000;
// Sizes are in bytes of the Windows kind: two a code unit.
LONG RegGetValueW(HKEY key, LPCWSTR subKey, LPCWSTR value, DWORD flags, DWORD* type, void* data, DWORD* size);

// Diagnostics.
void OutputDebugStringA(LPCSTR text);
using REGHANDLE = ULONGLONG;
struct EVENT_DATA_DESCRIPTOR { ULONGLONG Ptr; ULONG Size; ULONG Reserved; };
struct EVENT_FILTER_DESCRIPTOR { ULONGLONG Ptr; ULONG Size; ULONG Type; };
using PEVENT_FILTER_DESCRIPTOR = EVENT_FILTER_DESCRIPTOR*;
using PENABLECALLBACK = void (*)(const GUID* source, ULONG enabled, BYTE level, ULONGLONG any, ULONGLONG all,
                                 EVENT_FILTER_DESCRIPTOR* filter, void* context);
ULONG EventRegister(const GUID* provider, PENABLECALLBACK callback, void* context, REGHANDLE* handle);
ULONG EventWriteString(REGHANDLE handle, BYTE level, ULONGLONG keyword, LPCWSTR text);
ULONG EventUnregister(REGHANDLE handle);
BOOLEAN EventProviderEnabled(REGHANDLE handle, BYTE level, ULONGLONG keyword);

// Text. Code page 65001 is UTF-8; lengths are in units of the side they stand on.
constexpr UINT CP_UTF8 = 65001;
constexpr DWORD MB_ERR_INVALID_CHARS = 8;
constexpr DWORD WC_ERR_INVALID_CHARS = 0x80;
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR target, int capacity);
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, LPSTR target, int capacity, LPCSTR fallback, BOOL* usedFallback);

// Known folders. The caller frees the path with CoTaskMemFree.
constexpr KNOWNFOLDERID FOLDERID_Desktop = {0xB4BFCC3A, 0xDB2C, 0x424C, {0xB0, 0x29, 0x7F, 0xE9, 0x9A, 0x87, 0xC6, 0x41}};
HRESULT SHGetKnownFolderPath(REFGUID folder, DWORD flags, HANDLE token, LPWSTR* path);
