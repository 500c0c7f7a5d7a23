// Life of a VARIANT.
#include "Platform/Simulated/Sdk/Automation.h"

namespace {

bool IsKnownPlainType(VARTYPE type) {
    return type <= VT_UNKNOWN || type == VT_DECIMAL || (type >= VT_I1 && type <= VT_UINT);
}

// What a variant as a whole may be: a plain value, an array, or a reference, to anything.
bool IsKnownType(VARTYPE type) {
    const VARTYPE base = type & ~(VT_ARRAY | VT_BYREF);
    if (!IsKnownPlainType(base)) return false;
    // A variant never holds a variant directly, and nothing has the address or an array of nothing.
    if (base == VT_VARIANT) return type != VT_VARIANT;
    return type == base || (base != VT_EMPTY && base != VT_NULL);
}

}  // namespace

void VariantInit(VARIANT* variant) { *variant = VARIANT{}; }

HRESULT VariantClear(VARIANT* variant) {
    if (!IsKnownType(variant->vt)) return DISP_E_BADVARTYPE;
    if (!(variant->vt & VT_BYREF)) {
        if (variant->vt & VT_ARRAY) {
            const HRESULT result = SafeArrayDestroy(variant->parray);
            if (FAILED(result)) return result;
        } else if (variant->vt == VT_BSTR) {
            SysFreeString(variant->bstrVal);
        } else if (variant->vt == VT_UNKNOWN || variant->vt == VT_DISPATCH) {
            if (variant->punkVal) variant->punkVal->Release();
        }
    }
    variant->vt = VT_EMPTY;
    return S_OK;
}

HRESULT VariantCopy(VARIANT* target, const VARIANT* source) {
    if (target == source) return S_OK;
    if (!IsKnownType(source->vt)) return DISP_E_BADVARTYPE;
    const HRESULT cleared = VariantClear(target);
    if (FAILED(cleared)) return cleared;

    VARIANT copy = *source;
    if (!(source->vt & VT_BYREF)) {
        if (source->vt & VT_ARRAY) {
            copy.parray = nullptr;
            if (source->parray) {
                const HRESULT result = SafeArrayCopy(source->parray, &copy.parray);
                if (FAILED(result)) return result;
            }
        } else if (source->vt == VT_BSTR && source->bstrVal) {
            copy.bstrVal = SysAllocStringLen(source->bstrVal, SysStringLen(source->bstrVal));
            if (!copy.bstrVal) return E_OUTOFMEMORY;
        } else if ((source->vt == VT_UNKNOWN || source->vt == VT_DISPATCH) && source->punkVal) {
            source->punkVal->AddRef();
        }
    }
    *target = copy;
    return S_OK;
}
