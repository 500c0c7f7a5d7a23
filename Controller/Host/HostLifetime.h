// How long the host stays in the target.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex::Host {

// The hook that brought the host here may end at any time, with the controller. A request therefore holds a
// reference of its own. False if it can't be had; the request isn't run then.
bool HoldHost();

// Gives `count` references back once this thread has left the host for sure: code can't free the library that it
// runs in and return, so a thread of a moment waits until `window`'s thread (the calling one) takes messages again.
void ReleaseHostLater(HWND window, unsigned count);

}  // namespace Zorvex::Host
