// The accessible object of a window, by way of automation.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Null if the window gives none, or one that isn't accessible.
CComPtr<IAccessible> GetAccessibleWindowObject(HWND hWnd);

}  // namespace Zorvex
