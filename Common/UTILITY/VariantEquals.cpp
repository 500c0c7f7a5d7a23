#include "Common/include/VariantEquals.h"

namespace Zorvex {

bool VariantEquals(const VARIANT& a, const VARIANT& b) {
    if (a.vt == VT_NULL && b.vt == VT_NULL) return true;
    if (a.vt != b.vt) return false;
    switch (a.vt) {
        // The types that VarCmp leaves out.
        case VT_I1: return a.cVal == b.cVal;
        case VT_UI2: return a.uiVal == b.uiVal;
        case VT_UI4: return a.ulVal == b.ulVal;
        case VT_UI8: return a.ullVal == b.ullVal;
        default: return ::VarCmp(const_cast<VARIANT*>(&a), const_cast<VARIANT*>(&b), LOCALE_USER_DEFAULT, 0) == static_cast<HRESULT>(VARCMP_EQ);
    }
}

bool BstrEquals(BSTR a, BSTR b) { return ::VarBstrCmp(a, b, LOCALE_USER_DEFAULT, 0) == static_cast<HRESULT>(VARCMP_EQ); }

}  // namespace Zorvex
