// What the files of the controls share.
#pragma once

#include <algorithm>

#include "tests/live/standard_objects/ClientObject.h"

namespace StandardObjects {

// A count that a control gave, never negative and never beyond what a test would have.
LONG BoundedItems(LRESULT count);

// The client object for a control of the common controls library, or null.
CComPtr<IAccessible> MakeCommonControl(HWND window, const std::wstring& windowClass);

}  // namespace StandardObjects
