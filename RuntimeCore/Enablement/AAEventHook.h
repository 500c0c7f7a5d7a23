// A thread that holds a hook on the accessibility events of one window's thread, for as long as the object lives.
#pragma once

#include <memory>

#include "Common/include/SafeObject.h"
#include "Platform/Windows.h"

namespace Zorvex {

class CAAEventHook {
public:
    // Which procedure of N_AAEventProc hears the events.
    enum class EventProcedure : int { AdobeTrigger = 1 };

    // The hook stands when this returns. Null, with the reason in the log, if it could not be set within
    // `dwTimeoutReady` milliseconds; then nothing is left behind. `hDll` is the module that the procedure is in.
    static std::unique_ptr<CAAEventHook> CreateInstance(HINSTANCE hDll, HWND hWndTarget, EventProcedure enProcId, DWORD dwTimeoutReady);

    // Takes the hook away and ends the thread: no code of this library runs in it any more when this returns. A
    // thread that hangs inside the system's own calls holds the caller.
    virtual ~CAAEventHook();
    CAAEventHook(const CAAEventHook&) = delete;
    CAAEventHook& operator=(const CAAEventHook&) = delete;

private:
    CAAEventHook(HINSTANCE hDll, HWND hWndTarget, WINEVENTPROC eventProcedure, DWORD dwTimeoutReady);

    bool Start();
    bool InitEvents();
    void Stop();
    bool IsThreadRunning() const;
    bool ThreadStopByMessage();
    void ThreadStopByEvent();

    static DWORD WINAPI HookThreadProc(LPVOID instance);
    // The hook thread's own part.
    DWORD RunThread();
    HWINEVENTHOOK ThreadHookSet();
    DWORD WaitForQuit();

    HINSTANCE m_hDll;
    HWND m_hWndTarget;
    WINEVENTPROC m_eventProcedure;
    DWORD m_dwTimeoutReady;
    DWORD m_dwTimeoutMsgQuit = 0;
    SafeObject m_hThread;
    DWORD m_dwThreadId = 0;
    SafeObject m_hEvtHookReady;
    SafeObject m_hEvtHookQuit;
    DWORD m_dwPID = 0;
    DWORD m_dwTID = 0;
};

}  // namespace Zorvex
