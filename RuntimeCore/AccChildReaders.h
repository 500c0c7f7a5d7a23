// The small readers of children, role, parent and location that attributes, capture and tables share.
#pragma once

#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"

namespace Zorvex {

// The children of a container. `role` 0 means all of them, invalid elements too; any other keeps only the children
// with that role. A null container, or one whose children can't be read, has none; the latter is logged.
std::vector<AAObjectWrapper> GetAccChildren(IAccessible* acc, LONG role = 0);

// The role number; 0, with an error in the log, if it can't be read or is no number.
LONG GetAccRole(IAccessible* acc, const VARIANT& child);

// The container itself for a child id other than 0, else the container's parent. Null if there is none.
CComPtr<IAccessible> GetAccParent(IAccessible* acc, const VARIANT& child);

// The location as an array of four VT_I4: left, top, right, bottom in screen coordinates. Empty, with an error in
// the log, if it can't be read.
CComVariant GetAccRectangleAsVariant(IAccessible* acc, const VARIANT& child);

}  // namespace Zorvex
