// The attributes of an element that a client may ask for one by one.
#pragma once

#include <vector>

#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// The nine attributes of AaAttrHandler as VT_BSTR, an empty one where the element has no such text; `value` as
// VT_BSTR; `screenRect` as four VT_I4, left, top, right, bottom. E_INVALIDARG for another name or a null element;
// otherwise the code that kept the attribute from a value. `value` is empty on failure.
HRESULT GetElementAttribute(HWND window, IAccessible* accessible, const VARIANT& child, bool useIA2, const CString& name,
                            CComVariant& value);

// Every name that GetElementAttribute knows, in the order of the handler table, then `value` and `screenRect`.
std::vector<CString> ElementAttributeNames();

}  // namespace Zorvex
