// The search of an element by its role.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {
struct AANode;
}

namespace Zorvex::AAUtil {

// The first element of that role under the window, level by level, down to `maxDepthToSearch` levels below the
// window's object, which is level 0; -1 means no limit. An empty node if there is none.
AANode FindElementWithRole(HWND hWnd, LONG elementRole, LONG maxDepthToSearch);

}  // namespace Zorvex::AAUtil
