// What elements of web pages need before they can be worked: to be in view, and to have the focus for certain.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex {

namespace DomAriaUtilities {

// S_OK with no action for an element that is on screen. Otherwise scrolls through IAccessible2 and waits, up to
// 3,000 ms, until the element is on screen and has stopped moving. The code of what failed; S_FALSE when the wait ran
// out. IAccessible2 scrolls the container, also when `child` is one of its simple elements.
HRESULT ScrollIntoView(IAccessible* accessible, const VARIANT& child);

}  // namespace DomAriaUtilities

// Focuses an element of a page and waits, up to 3,000 ms, until it has the focus and is on screen. False if a call
// failed or the wait ran out. A page embedded in a Java window gets the focus from Java first.
bool DomAriaSetFocus(HWND window, IAccessible* accContainer, const VARIANT& accChildId);

}  // namespace Zorvex
