// The window that the search takes an element to belong to.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex::Search {

// The element's own window. Elements of a browser are often in a child or a hidden helper of its window: below a
// browser's window that window stays the owner. `current` also stays where the element can't tell, or tells a window
// that doesn't exist. Both may be null.
HWND RenewOwnerWindow(HWND current, IAccessible* accessible);

}  // namespace Zorvex::Search
