// Safe arrays. The first dimension varies fastest, and the bounds stand in the descriptor from the last to the first.
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <vector>

#include "Platform/Simulated/Sdk/Automation.h"
#include "Platform/Simulated/Sdk/SystemState.h"

using namespace Simulated;

namespace {

// The element type stands before the descriptor, as on Windows.
constexpr std::size_t HeaderSize = 16;
constexpr UINT DimensionLimit = 0xFFFF;

ULONG ElementSize(VARTYPE type) {
    switch (type) {
        case VT_I1: case VT_UI1: return 1;
        case VT_I2: case VT_UI2: case VT_BOOL: return 2;
        case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: case VT_ERROR: case VT_R4: return 4;
        case VT_I8: case VT_UI8: case VT_R8: case VT_CY: case VT_DATE: return 8;
        case VT_BSTR: case VT_UNKNOWN: case VT_DISPATCH: return sizeof(void*);
        case VT_VARIANT: return sizeof(VARIANT);
        default: return 0;
    }
}

USHORT FeaturesOf(VARTYPE type) {
    switch (type) {
        case VT_BSTR: return FADF_BSTR | FADF_HAVEVARTYPE;
        case VT_VARIANT: return FADF_VARIANT | FADF_HAVEVARTYPE;
        case VT_UNKNOWN: return FADF_UNKNOWN | FADF_HAVEIID;
        case VT_DISPATCH: return FADF_DISPATCH | FADF_HAVEIID;
        default: return FADF_HAVEVARTYPE;
    }
}

char* Header(SAFEARRAY* array) { return reinterpret_cast<char*>(array) - HeaderSize; }

VARTYPE TypeOf(SAFEARRAY* array) {
    if (array->fFeatures & FADF_UNKNOWN) return VT_UNKNOWN;
    if (array->fFeatures & FADF_DISPATCH) return VT_DISPATCH;
    VARTYPE type = 0;
    std::memcpy(&type, Header(array), sizeof type);
    return type;
}

// False when the count or the bytes can't be had.
bool CountElements(const SAFEARRAYBOUND* bounds, UINT dimensions, ULONG elementSize, std::size_t& count) {
    count = 1;
    for (UINT i = 0; i < dimensions; ++i) {
        count *= bounds[i].cElements;
        if (count > LargestBlock) return false;
    }
    return count * elementSize <= LargestBlock;
}

std::size_t ElementCount(SAFEARRAY* array) {
    std::size_t count = 0;
    CountElements(array->rgsabound, array->cDims, array->cbElements, count);
    return count;
}

HRESULT CopyElement(VARTYPE type, const void* source, void* target, ULONG size) {
    if (type == VT_VARIANT) {
        VariantInit(static_cast<VARIANT*>(target));
        return VariantCopy(static_cast<VARIANT*>(target), static_cast<const VARIANT*>(source));
    }
    if (type == VT_BSTR) {
        BSTR text = *static_cast<const BSTR*>(source), copy = nullptr;
        if (text) {
            copy = SysAllocStringLen(text, SysStringLen(text));
            if (!copy) return E_OUTOFMEMORY;
        }
        *static_cast<BSTR*>(target) = copy;
        return S_OK;
    }
    if (type == VT_UNKNOWN || type == VT_DISPATCH) {
        IUnknown* object = *static_cast<IUnknown* const*>(source);
        if (object) object->AddRef();
        *static_cast<IUnknown**>(target) = object;
        return S_OK;
    }
    std::memcpy(target, source, size);
    return S_OK;
}

void ClearElement(VARTYPE type, void* element) {
    if (type == VT_VARIANT) {
        VariantClear(static_cast<VARIANT*>(element));
    } else if (type == VT_BSTR) {
        SysFreeString(*static_cast<BSTR*>(element));
        *static_cast<BSTR*>(element) = nullptr;
    } else if (type == VT_UNKNOWN || type == VT_DISPATCH) {
        IUnknown*& object = *static_cast<IUnknown**>(element);
        if (object) object->Release();
        object = nullptr;
    }
}

SAFEARRAY* Allocate(VARTYPE type, UINT dimensions, const SAFEARRAYBOUND* reversedBounds) {
    const ULONG size = ElementSize(type);
    std::size_t count = 0;
    if (size == 0 || dimensions == 0 || dimensions > DimensionLimit || !CountElements(reversedBounds, dimensions, size, count)) return nullptr;
    if (AllocationFails(Allocation::Array)) return nullptr;
    const std::size_t descriptor = sizeof(SAFEARRAY) + (dimensions - 1) * sizeof(SAFEARRAYBOUND);
    auto* header = static_cast<char*>(std::calloc(1, HeaderSize + descriptor));
    void* data = std::calloc(count ? count : 1, size);
    if (!header || !data) {
        std::free(header);
        std::free(data);
        return nullptr;
    }
    std::memcpy(header, &type, sizeof type);
    auto* array = reinterpret_cast<SAFEARRAY*>(header + HeaderSize);
    array->cDims = static_cast<USHORT>(dimensions);
    array->fFeatures = FeaturesOf(type);
    array->cbElements = size;
    array->pvData = data;
    std::memcpy(array->rgsabound, reversedBounds, dimensions * sizeof(SAFEARRAYBOUND));
    CountBlock(Allocation::Array, 1);
    return array;
}

const SAFEARRAYBOUND* BoundOf(SAFEARRAY* array, UINT dimension) {
    if (dimension == 0 || dimension > array->cDims) return nullptr;
    return &array->rgsabound[array->cDims - dimension];
}

}  // namespace

SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
    if (!bounds || dimensions == 0 || dimensions > DimensionLimit) return nullptr;
    std::vector<SAFEARRAYBOUND> reversed(std::reverse_iterator(bounds + dimensions), std::reverse_iterator(bounds));
    return Allocate(type, dimensions, reversed.data());
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG count) {
    SAFEARRAYBOUND bound{count, lowerBound};
    return Allocate(type, 1, &bound);
}

HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy) {
    if (!copy) return E_INVALIDARG;
    *copy = nullptr;
    if (!source) return S_OK;
    const VARTYPE type = TypeOf(source);
    SAFEARRAY* result = Allocate(type, source->cDims, source->rgsabound);
    if (!result) return E_OUTOFMEMORY;
    const std::size_t count = ElementCount(source);
    for (std::size_t i = 0; i < count; ++i) {
        const HRESULT copied = CopyElement(type, static_cast<char*>(source->pvData) + i * source->cbElements,
                                           static_cast<char*>(result->pvData) + i * source->cbElements, source->cbElements);
        if (FAILED(copied)) {
            SafeArrayDestroy(result);
            return copied;
        }
    }
    *copy = result;
    return S_OK;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
    if (!array) return S_OK;
    if (array->cLocks > 0) return DISP_E_ARRAYISLOCKED;
    const VARTYPE type = TypeOf(array);
    const std::size_t count = ElementCount(array);
    for (std::size_t i = 0; i < count; ++i) ClearElement(type, static_cast<char*>(array->pvData) + i * array->cbElements);
    std::free(array->pvData);
    std::free(Header(array));
    CountBlock(Allocation::Array, -1);
    return S_OK;
}

HRESULT SafeArrayLock(SAFEARRAY* array) {
    if (!array) return E_INVALIDARG;
    ++array->cLocks;
    return S_OK;
}

HRESULT SafeArrayUnlock(SAFEARRAY* array) {
    if (!array) return E_INVALIDARG;
    if (array->cLocks == 0) return E_UNEXPECTED;
    --array->cLocks;
    return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
    if (!array || !data) return E_INVALIDARG;
    *data = array->pvData;
    return SafeArrayLock(array);
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) { return SafeArrayUnlock(array); }

UINT SafeArrayGetDim(SAFEARRAY* array) { return array ? array->cDims : 0; }

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type) {
    if (!array || !type) return E_INVALIDARG;
    *type = TypeOf(array);
    return S_OK;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
    if (!array || !bound) return E_INVALIDARG;
    const SAFEARRAYBOUND* found = BoundOf(array, dimension);
    if (!found) return DISP_E_BADINDEX;
    *bound = found->lLbound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
    if (!array || !bound) return E_INVALIDARG;
    const SAFEARRAYBOUND* found = BoundOf(array, dimension);
    if (!found) return DISP_E_BADINDEX;
    // One below the lower bound for an empty dimension. Unsigned, so that extreme bounds wrap as they do on Windows.
    *bound = static_cast<LONG>(static_cast<ULONG>(found->lLbound) + found->cElements - 1);
    return S_OK;
}

HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element) {
    if (!array || !indices || !element) return E_INVALIDARG;
    std::size_t cell = 0, stride = 1;
    for (UINT dimension = 1; dimension <= array->cDims; ++dimension) {
        const SAFEARRAYBOUND& bound = *BoundOf(array, dimension);
        const LONGLONG offset = LONGLONG{indices[dimension - 1]} - bound.lLbound;
        if (offset < 0 || offset >= LONGLONG{bound.cElements}) return DISP_E_BADINDEX;
        cell += static_cast<std::size_t>(offset) * stride;
        stride *= bound.cElements;
    }
    *element = static_cast<char*>(array->pvData) + cell * array->cbElements;
    return S_OK;
}

HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* element) {
    void* source = nullptr;
    const HRESULT found = SafeArrayPtrOfIndex(array, indices, &source);
    if (FAILED(found)) return found;
    if (!element) return E_INVALIDARG;
    return CopyElement(TypeOf(array), source, element, array->cbElements);
}

HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element) {
    void* target = nullptr;
    const HRESULT found = SafeArrayPtrOfIndex(array, indices, &target);
    if (FAILED(found)) return found;
    const VARTYPE type = TypeOf(array);
    // A string or an object is passed itself, anything else by address. A null string or object is one.
    const bool passedItself = type == VT_BSTR || type == VT_UNKNOWN || type == VT_DISPATCH;
    if (!element && !passedItself) return E_INVALIDARG;
    // The copy is made first: the element may be the very one that it replaces.
    alignas(VARIANT) char copy[sizeof(VARIANT)];
    const HRESULT copied = CopyElement(type, passedItself ? static_cast<const void*>(&element) : element, copy, array->cbElements);
    if (FAILED(copied)) return copied;
    ClearElement(type, target);
    std::memcpy(target, copy, array->cbElements);
    return S_OK;
}
