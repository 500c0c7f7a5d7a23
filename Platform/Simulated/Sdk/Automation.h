// Automation: strings, variants, safe arrays and late binding.
#pragma once

#include "Platform/Simulated/Sdk/Com.h"

using BSTR = wchar_t*;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = std::int16_t;
using DATE = double;
using SCODE = std::int32_t;
using DISPID = LONG;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

enum VARENUM : VARTYPE {
    VT_EMPTY = 0, VT_NULL = 1, VT_I2 = 2, VT_I4 = 3, VT_R4 = 4, VT_R8 = 5, VT_CY = 6, VT_DATE = 7,
    VT_BSTR = 8, VT_DISPATCH = 9, VT_ERROR = 10, VT_BOOL = 11, VT_VARIANT = 12, VT_UNKNOWN = 13,
    VT_DECIMAL = 14, VT_I1 = 16, VT_UI1 = 17, VT_UI2 = 18, VT_UI4 = 19, VT_I8 = 20, VT_UI8 = 21,
    VT_INT = 22, VT_UINT = 23, VT_RECORD = 36, VT_ARRAY = 0x2000, VT_BYREF = 0x4000
};

struct IDispatch;
struct SAFEARRAY;

union CY {
    struct { ULONG Lo; LONG Hi; } u;
    LONGLONG int64;
};

struct VARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        CHAR cVal;
        USHORT uiVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        INT intVal;
        UINT uintVal;
        void* byref;
    };
};
using VARIANTARG = VARIANT;

constexpr WORD DISPATCH_METHOD = 0x1;
constexpr WORD DISPATCH_PROPERTYGET = 0x2;
constexpr WORD DISPATCH_PROPERTYPUT = 0x4;
constexpr DISPID DISPID_PROPERTYPUT = -3;
struct DISPPARAMS { VARIANTARG* rgvarg; DISPID* rgdispidNamedArgs; UINT cArgs; UINT cNamedArgs; };
struct EXCEPINFO { WORD wCode; HRESULT scode; };
struct ITypeInfo;

struct IDispatch : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID locale, WORD flags, DISPPARAMS* arguments,
                                             VARIANT* result, EXCEPINFO* exception, UINT* argumentError) = 0;
};

struct IEnumVARIANT : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) = 0;
};

// Strings. A null BSTR is an empty string; lengths are in UTF-16 code units.
BSTR SysAllocString(const OLECHAR* text);
BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
void SysFreeString(BSTR text);
UINT SysStringLen(BSTR text);

// Variants.
constexpr LCID LOCALE_USER_DEFAULT = 1024;
constexpr HRESULT VARCMP_LT = 0;
constexpr HRESULT VARCMP_EQ = 1;
constexpr HRESULT VARCMP_GT = 2;
constexpr HRESULT VARCMP_NULL = 3;
void VariantInit(VARIANT* variant);
HRESULT VariantClear(VARIANT* variant);
HRESULT VariantCopy(VARIANT* target, const VARIANT* source);
HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, USHORT flags, VARTYPE type);
HRESULT VarCmp(VARIANT* left, VARIANT* right, LCID locale, ULONG flags);
HRESULT VarBstrCmp(BSTR left, BSTR right, LCID locale, ULONG flags);

// Safe arrays.
struct SAFEARRAYBOUND { ULONG cElements; LONG lLbound; };
struct SAFEARRAY {
    USHORT cDims;
    USHORT fFeatures;
    ULONG cbElements;
    ULONG cLocks;
    void* pvData;
    SAFEARRAYBOUND rgsabound[1];
};
constexpr USHORT FADF_AUTO = 0x1;
constexpr USHORT FADF_HAVEIID = 0x40;
constexpr USHORT FADF_HAVEVARTYPE = 0x80;
constexpr USHORT FADF_BSTR = 0x100;
constexpr USHORT FADF_UNKNOWN = 0x200;
constexpr USHORT FADF_DISPATCH = 0x400;
constexpr USHORT FADF_VARIANT = 0x800;
SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds);
SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG count);
HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy);
HRESULT SafeArrayDestroy(SAFEARRAY* array);
HRESULT SafeArrayLock(SAFEARRAY* array);
HRESULT SafeArrayUnlock(SAFEARRAY* array);
HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
HRESULT SafeArrayUnaccessData(SAFEARRAY* array);
UINT SafeArrayGetDim(SAFEARRAY* array);
HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type);
HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* element);
HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element);
HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element);
