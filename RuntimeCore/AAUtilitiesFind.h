// The search of an element by its role.
#pragma once

#include "Common/include/TreeWalker/AANode.h"
#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

// A search without a time limit gives up after this many elements: the tree may have no end, and each that waits is held.
constexpr LONG MaximumSearchedElements = 1'000'000;

// The first element of that role under the window, level by level, down to `maxDepthToSearch` levels below the
// window's object, which is level 0 and counts; -1 means no limit. An empty node if there is none.
AANode FindElementWithRole(HWND hWnd, LONG elementRole, LONG maxDepthToSearch);

}  // namespace Zorvex::AAUtil
