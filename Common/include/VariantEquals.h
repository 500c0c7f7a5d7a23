// The equality of two variants that element comparison and value matching share.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

// Types must agree; two VT_NULL are equal; VT_I1, VT_UI2, VT_UI4 and VT_UI8 compare by their bits; all else by
// VarCmp in the user's locale.
bool VariantEquals(const VARIANT& a, const VARIANT& b);

// Equality of VarBstrCmp in the user's locale: case counts, null and empty are the same.
bool BstrEquals(BSTR a, BSTR b);

}  // namespace Zorvex
