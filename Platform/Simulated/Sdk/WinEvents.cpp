// Hooks on accessibility events.
#include <vector>

#include "Platform/Simulated/Sdk/System.h"
#include "Platform/Simulated/Sdk/ThreadState.h"
#include "Platform/Simulated/System.h"

namespace Simulated {

unsigned StandingHooks() {
    const std::lock_guard guard(Threads().lock);
    return static_cast<unsigned>(Threads().hooks.size());
}

unsigned AbandonedHooks() {
    const std::lock_guard guard(Threads().lock);
    return Threads().abandonedHooks;
}

}  // namespace Simulated

using namespace Simulated;

HWINEVENTHOOK SetWinEventHook(DWORD eventMin, DWORD eventMax, HMODULE module, WINEVENTPROC procedure, DWORD processId, DWORD threadId,
                              DWORD flags) {
    constexpr DWORD hookNeedsModule = 1428;  // ERROR_HOOK_NEEDS_HMOD
    DWORD delay = 0;
    {
        const std::lock_guard guard(Threads().lock);
        if (Threads().Fails(ThreadCall::SetHook)) return nullptr;
        delay = Threads().hookDelay;
    }
    if ((flags & WINEVENT_INCONTEXT) && !module) {
        SetLastError(hookNeedsModule);
        return nullptr;
    }
    if (delay) WaitFor(delay);
    const DWORD owner = GetCurrentThreadId();
    const std::lock_guard guard(Threads().lock);
    const auto hook = reinterpret_cast<HWINEVENTHOOK>(Threads().lastHook += 4);
    Threads().hooks[hook] = {eventMin, eventMax, processId, threadId, owner, procedure};
    return hook;
}

BOOL UnhookWinEvent(HWINEVENTHOOK hook) {
    const DWORD caller = GetCurrentThreadId();
    const std::lock_guard guard(Threads().lock);
    const auto known = Threads().hooks.find(hook);
    // As published: only the thread that set a hook can take it away.
    if (known == Threads().hooks.end() || known->second.owner != caller) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    Threads().hooks.erase(known);
    return TRUE;
}

void NotifyWinEvent(DWORD event, HWND window, LONG objectId, LONG childId) {
    DWORD process = 0;
    const DWORD thread = GetWindowThreadProcessId(window, &process);
    std::vector<std::pair<HWINEVENTHOOK, WINEVENTPROC>> listeners;
    {
        const std::lock_guard guard(Threads().lock);
        for (const auto& [handle, hook] : Threads().hooks)
            if (event >= hook.eventMin && event <= hook.eventMax && (hook.process == 0 || hook.process == process) &&
                (hook.thread == 0 || hook.thread == thread))
                listeners.emplace_back(handle, hook.procedure);
    }
    for (const auto& [handle, procedure] : listeners)
        procedure(handle, event, window, objectId, childId, thread, static_cast<DWORD>(ClockMilliseconds()));
}
