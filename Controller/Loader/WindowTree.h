// The tree of windows. Windows that go away during a walk are left out.
#pragma once

#include <vector>

#include "Platform/Windows.h"

namespace Zorvex::Loader {

// The window that this one is a child of; null for a top-level window and for what is no window.
HWND ParentWindow(HWND window);

// All windows below one, level by level, each level from front to back; the window itself isn't among them.
std::vector<HWND> WindowsBelow(HWND window);
// The direct ones alone.
std::vector<HWND> ChildWindows(HWND window);

}  // namespace Zorvex::Loader
