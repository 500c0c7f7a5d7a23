// From the frame of a window to what it holds.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Puts the client in the place of a window's own object. False, with `object` as it was, if it is no such object, or
// has no client that is an object of its own.
bool EnterFrame(CComPtr<IAccessible>& object);

}  // namespace Zorvex
