// The platform's own properties of an element, under the platform's own names.
#pragma once

#include <span>

#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Texts: accName, accValue, accDescription, accHelp, accKeyboardShortcut, accDefaultAction. Numbers (VT_I4):
// accRole, accState, accChildCount. accLocation: four VT_I4, left, top, right, bottom. Of IAccessible2: role,
// states and uniqueID as numbers, attributes as the whole string, attributes.NAME as the value of one of them.
// A null text comes as an empty VT_BSTR. E_INVALIDARG for another name or a null element; otherwise the code of the
// failed read, E_UNEXPECTED for a role or state that is no number. `value` is empty on failure.
HRESULT GetNativeAttribute(IAccessible* accessible, const VARIANT& child, const CString& name, CComVariant& value);

// The names above, without attributes.NAME.
std::span<const wchar_t* const> NativeAttributeNames();

}  // namespace Zorvex
