// The basic types of the SDK, with the widths that they have on Windows. A wchar_t holds one UTF-16 code
// unit here as well: it is a wider box for the same unit.
#pragma once

#include <cstddef>
#include <cstdint>

using BYTE = std::uint8_t;
using CHAR = char;
using WCHAR = wchar_t;
using BOOL = int;
using BOOLEAN = std::uint8_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using WORD = std::uint16_t;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORD64 = std::uint64_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using HRESULT = std::int32_t;
using LCID = DWORD;
using LANGID = WORD;
using ATOM = WORD;
using FLOAT = float;
using DOUBLE = double;
using LPVOID = void*;
using PVOID = void*;
using LPCVOID = const void*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using OLECHAR = wchar_t;
using LPOLESTR = wchar_t*;
using LPCOLESTR = const wchar_t*;
using HANDLE = void*;
using FARPROC = void (*)();

struct HWND__ { int unused; };
using HWND = HWND__*;
struct HINSTANCE__ { int unused; };
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;
struct HKEY__ { int unused; };
using HKEY = HKEY__*;
struct HICON__ { int unused; };
using HICON = HICON__*;

#define WINAPI
#define CALLBACK
#define APIENTRY
#define STDMETHODCALLTYPE
#define FALSE 0
#define TRUE 1
#define INFINITE 0xFFFFFFFFu
#define MAX_PATH 260

struct POINT { LONG x; LONG y; };
struct SIZE { LONG cx; LONG cy; };
struct RECT { LONG left; LONG top; LONG right; LONG bottom; };

union LARGE_INTEGER {
    struct { DWORD LowPart; LONG HighPart; } u;
    LONGLONG QuadPart;
};

struct FILETIME { DWORD dwLowDateTime; DWORD dwHighDateTime; };

// The published result codes that the product or its tests name.
constexpr HRESULT ResultCode(std::uint32_t bits) { return static_cast<HRESULT>(bits); }
constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = ResultCode(0x80004001);
constexpr HRESULT E_NOINTERFACE = ResultCode(0x80004002);
constexpr HRESULT E_POINTER = ResultCode(0x80004003);
constexpr HRESULT E_ABORT = ResultCode(0x80004004);
constexpr HRESULT E_FAIL = ResultCode(0x80004005);
constexpr HRESULT E_UNEXPECTED = ResultCode(0x8000FFFF);
constexpr HRESULT E_ACCESSDENIED = ResultCode(0x80070005);
constexpr HRESULT E_HANDLE = ResultCode(0x80070006);
constexpr HRESULT E_OUTOFMEMORY = ResultCode(0x8007000E);
constexpr HRESULT E_INVALIDARG = ResultCode(0x80070057);
constexpr HRESULT DISP_E_MEMBERNOTFOUND = ResultCode(0x80020003);
constexpr HRESULT DISP_E_UNKNOWNNAME = ResultCode(0x80020006);
constexpr HRESULT DISP_E_BADPARAMCOUNT = ResultCode(0x8002000E);
constexpr HRESULT DISP_E_TYPEMISMATCH = ResultCode(0x80020005);
constexpr HRESULT DISP_E_BADVARTYPE = ResultCode(0x80020008);
constexpr HRESULT DISP_E_OVERFLOW = ResultCode(0x8002000A);
constexpr HRESULT DISP_E_BADINDEX = ResultCode(0x8002000B);
constexpr HRESULT DISP_E_ARRAYISLOCKED = ResultCode(0x8002000D);
constexpr HRESULT RPC_E_CHANGED_MODE = ResultCode(0x80010106);
constexpr HRESULT RPC_E_DISCONNECTED = ResultCode(0x80010108);
constexpr HRESULT RPC_E_SERVERFAULT = ResultCode(0x80010105);
constexpr HRESULT CO_E_OBJNOTCONNECTED = ResultCode(0x800401FD);
constexpr HRESULT CO_E_CLASSSTRING = ResultCode(0x800401F3);
constexpr HRESULT REGDB_E_CLASSNOTREG = ResultCode(0x80040154);

constexpr bool SUCCEEDED(HRESULT result) { return result >= 0; }
constexpr bool FAILED(HRESULT result) { return result < 0; }
constexpr WORD LOWORD(std::uintptr_t value) { return static_cast<WORD>(value & 0xFFFF); }
constexpr WORD HIWORD(std::uintptr_t value) { return static_cast<WORD>((value >> 16) & 0xFFFF); }

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_MORE_DATA = 234;
constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;
constexpr DWORD ERROR_INVALID_WINDOW_HANDLE = 1400;
constexpr DWORD ERROR_TIMEOUT = 1460;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
constexpr DWORD ERROR_UNSUPPORTED_TYPE = 1630;
