// Interface ids and the root interfaces of COM.
#pragma once

#include "Platform/Simulated/Sdk/Types.h"

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFIID = const IID&;
using REFGUID = const GUID&;
using REFCLSID = const CLSID&;
using KNOWNFOLDERID = GUID;

constexpr bool operator==(const GUID& a, const GUID& b) {
    if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3) return false;
    for (int i = 0; i < 8; ++i)
        if (a.Data4[i] != b.Data4[i]) return false;
    return true;
}
inline bool IsEqualGUID(REFGUID a, REFGUID b) { return a == b; }
inline bool IsEqualIID(REFIID a, REFIID b) { return a == b; }

struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;

protected:
    ~IUnknown() = default;
};

struct IServiceProvider : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID riid, void** object) = 0;
};

constexpr DWORD COINIT_APARTMENTTHREADED = 2;
constexpr DWORD COINIT_MULTITHREADED = 0;
constexpr DWORD CLSCTX_INPROC_SERVER = 1;

HRESULT CoInitializeEx(void* reserved, DWORD model);
void CoUninitialize();
HRESULT CoCreateInstance(REFCLSID classId, IUnknown* outer, DWORD context, REFIID riid, void** object);
HRESULT CLSIDFromProgID(LPCOLESTR programId, CLSID* classId);
void* CoTaskMemAlloc(SIZE_T size);
void CoTaskMemFree(void* block);
