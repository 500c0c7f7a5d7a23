// The state of an accessible element in the platform's own words.
#pragma once

#include <span>

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::N_COM {

// The single bits that are looked at, in the order in which their texts are joined: 32 entries.
std::span<const LONG> AAStateMasks();

// Joins the platform's localised texts of the element's state bits with ", ". `text` is replaced, and stays
// empty for an element without a named bit. E_INVALIDARG for a null element or a child id that isn't VT_I4; the
// platform's code if the state can't be read; E_FAIL if it isn't a VT_I4.
HRESULT GetAAStateAsText(IAccessible* acc, const VARIANT& child, CString& text);

}  // namespace Zorvex::N_COM
