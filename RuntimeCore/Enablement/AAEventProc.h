// The procedures that an event hook calls, inside the thread of the window that it was set for.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex::N_AAEventProc {

// Asks for the object that the event is about, and lets go of it: that somebody in the process asks is what the
// reader waits for. Nothing that a server does leaves it as an exception: the system called it.
void CALLBACK AdobeTrigger(HWINEVENTHOOK hHook, DWORD event, HWND hwnd, LONG idObject, LONG idChild, DWORD dwEventThread,
                           DWORD dwmsEventTime);

}  // namespace Zorvex::N_AAEventProc
