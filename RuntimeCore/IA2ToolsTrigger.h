// Waking the accessibility tree of a Chromium widget by asking for it.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex::IA2Tools {

// Asks the widget's client object, its content two levels below and its document. E_INVALIDARG, without a line,
// for a window of another class; a missing document is no failure.
HRESULT TriggerAccChromium(HWND hWnd);

// Asks one container for what makes the renderer build its tree: role, state, IAccessible2 with its states, and
// the child count. The first failure ends it.
HRESULT TriggerAccChromiumContainer(IAccessible* spAccContainer);

}  // namespace Zorvex::IA2Tools
