// Where an element is.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

// The screen rectangle of an element, in pixels. E_INVALIDARG for a null element, otherwise the code of
// accLocation; `rcOut` is untouched on failure.
HRESULT GetAALocation(IAccessible* pAA, const VARIANT& varChild, RECT& rcOut);

}  // namespace Zorvex::AAUtil
