// The element that stands in for another one, such as the combo box around a piece of its inside.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

// The nearest of the object itself and its ancestors that has the role, at most 128 levels up, never in another
// process. Null if there is none.
CComPtr<IAccessible> FindAncestorWithRole(IAccessible* object, LONG role);

}  // namespace Zorvex
