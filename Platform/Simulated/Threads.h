// What a test may see and set of simulated threads and event hooks. Native builds only.
#pragma once

#include <vector>

#include "Platform/Simulated/Sdk/Threads.h"

namespace Simulated {

enum class ThreadCall { CreateEvent, SetEvent, CreateThread, Wait, MessageWait, PostMessage, SetHook };

// Lets the `nth` call of the kind from now fail with this last error, counting from 1; later ones work again.
void FailThreadCall(ThreadCall call, unsigned nth, DWORD error);
// Every hook that is set from now on takes this long. 0: none.
void SetHookDelay(DWORD milliseconds);
// Forgets the failures and the delay.
void ResetThreadFailures();

// The threads made by CreateThread that have not ended.
std::vector<DWORD> LiveThreads();
// Hooks that stand now, and those that their threads left behind when they ended.
unsigned StandingHooks();
unsigned AbandonedHooks();

}  // namespace Simulated
