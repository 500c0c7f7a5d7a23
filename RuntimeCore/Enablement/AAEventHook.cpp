#include "RuntimeCore/Enablement/AAEventHook.h"

#include "Common/include/Log.h"
#include "RuntimeCore/Enablement/AAEventProc.h"

namespace Zorvex {

namespace {

constexpr DWORD QuitMilliseconds = 1000;
// Any message at all, touch and pen among them.
constexpr DWORD AnyInput = 0x1CFF;

enum ThreadExit : DWORD { Ended = 0, Failed = 1 };

// Unset by the thread that set it, as the system wants it.
class EventHookOwner {
public:
    explicit EventHookOwner(HWINEVENTHOOK hook) noexcept : m_hook(hook) {}
    EventHookOwner(const EventHookOwner&) = delete;
    EventHookOwner& operator=(const EventHookOwner&) = delete;
    ~EventHookOwner() {
        if (m_hook) ::UnhookWinEvent(m_hook);
    }

private:
    HWINEVENTHOOK m_hook;
};

WINEVENTPROC ProcedureOf(CAAEventHook::EventProcedure procedure) {
    return procedure == CAAEventHook::EventProcedure::AdobeTrigger ? &N_AAEventProc::AdobeTrigger : nullptr;
}

}  // namespace

std::unique_ptr<CAAEventHook> CAAEventHook::CreateInstance(HINSTANCE hDll, HWND hWndTarget, EventProcedure enProcId, DWORD dwTimeoutReady) {
    LogVerbose("CAAEventHook::CreateInstance enter hDll=0x%p hWndTarget=0x%p enProcId=%d dwTimeoutReady=%d", hDll, hWndTarget, enProcId,
               dwTimeoutReady);
    const WINEVENTPROC procedure = ProcedureOf(enProcId);
    if (!hDll || !::IsWindow(hWndTarget) || !procedure) {
        LogError("CAAEventHook::CreateInstance Error, invalid arguments");
        return nullptr;
    }
    std::unique_ptr<CAAEventHook> instance(new CAAEventHook(hDll, hWndTarget, procedure, dwTimeoutReady));
    if (!instance->Start()) {
        LogError("CAAEventHook::CreateInstance failed to start event hook");
        return nullptr;
    }
    LogVerbose("CAAEventHook::CreateInstance return OK");
    return instance;
}

CAAEventHook::CAAEventHook(HINSTANCE hDll, HWND hWndTarget, WINEVENTPROC eventProcedure, DWORD dwTimeoutReady)
    : m_hDll(hDll), m_hWndTarget(hWndTarget), m_eventProcedure(eventProcedure), m_dwTimeoutReady(dwTimeoutReady) {}

CAAEventHook::~CAAEventHook() {
    try {
        Stop();
    } catch (...) {
        // Not even memory for a log line. The thread must end all the same, before the library can go.
        if (IsThreadRunning()) {
            ::SetEvent(m_hEvtHookQuit.Get());
            ::WaitForSingleObject(m_hThread.Get(), INFINITE);
        }
    }
}

bool CAAEventHook::InitEvents() {
    m_hEvtHookReady = SafeObject(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!m_hEvtHookReady) {
        LogError("CAAEventHook::InitEvents cannot create hEvtHookReady, lastError=0x%x", ::GetLastError());
        return false;
    }
    m_hEvtHookQuit = SafeObject(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!m_hEvtHookQuit) {
        LogError("CAAEventHook::InitEvents cannot create hEvtHookQuit, lastError=0x%x", ::GetLastError());
        m_hEvtHookReady.Close();
        return false;
    }
    return true;
}

bool CAAEventHook::Start() {
    LogVerbose("CAAEventHook::Start enter hWndTarget=0x%p hDll=0x%p dwTimeoutReady=%d", m_hWndTarget, m_hDll, m_dwTimeoutReady);
    if (!InitEvents()) {
        LogError("CAAEventHook::Start failed to initialize synchronization events");
        return false;
    }
    m_dwTID = ::GetWindowThreadProcessId(m_hWndTarget, &m_dwPID);
    LogVerbose("CAAEventHook::Start Create Hook Thread, targetPID=0x%x targetTID=0x%x", m_dwPID, m_dwTID);
    if (!m_dwTID || !m_dwPID) {
        // To the system 0 means every thread of every process: a window that died just now must not lead there.
        LogError("CAAEventHook::Start Error, the target window has gone");
        return false;
    }
    m_hThread = SafeObject(::CreateThread(nullptr, 0, &HookThreadProc, this, 0, &m_dwThreadId));
    if (!m_hThread) {
        LogError("CAAEventHook::Start Error, cannot create thread, lastError=0x%x", ::GetLastError());
        return false;
    }
    // With the thread among them, a hook that can't be set is known at once.
    const HANDLE handles[] = {m_hThread.Get(), m_hEvtHookReady.Get()};
    const DWORD dwWaitRes = ::WaitForMultipleObjects(2, handles, FALSE, m_dwTimeoutReady);
    if (dwWaitRes != WAIT_OBJECT_0 + 1) {
        LogError("CAAEventHook::Start Error, failed to set event hook, dwWaitRes=0x%x lastError=0x%x", dwWaitRes, ::GetLastError());
        return false;
    }
    LogVerbose("CAAEventHook::Start return OK, Hook ThreadID=0x%x", m_dwThreadId);
    return true;
}

DWORD WINAPI CAAEventHook::HookThreadProc(LPVOID instance) {
    try {
        if (!instance) {
            LogError("CAAEventHook::HookThreadProc Error, event hook instance pointer is NULL");
            return ThreadExit::Failed;
        }
        return static_cast<CAAEventHook*>(instance)->RunThread();
    } catch (...) {
        // Not even memory for a log line; the frame below is the system's, and an exception would end the process.
        return ThreadExit::Failed;
    }
}

DWORD CAAEventHook::RunThread() {
    LogVerbose("CAAEventHook::HookThreadProc start hDll=0x%p dwPID=0x%x dwTID=0x%x", m_hDll, m_dwPID, m_dwTID);
    DWORD result = ThreadExit::Failed;
    {
        const HWINEVENTHOOK hook = ThreadHookSet();
        const EventHookOwner owner(hook);
        if (hook) {
            LogVerbose("CAAEventHook::ThreadHookSet set event hook successfully, signaling hook ready event");
            if (!::SetEvent(m_hEvtHookReady.Get())) {
                LogError("CAAEventHook::ThreadHookSet Failed to signal the Hook Ready event, lastError=0x%x", ::GetLastError());
                // On purpose the words of a hook that was not set.
                LogError("CAAEventHook::HookThreadProc failed to set event hook");
                return ThreadExit::Failed;
            }
        } else {
            LogError("CAAEventHook::HookThreadProc failed to set event hook");
            return ThreadExit::Failed;
        }
        result = WaitForQuit();
    }
    LogVerbose("CAAEventHook::HookThreadProc exit");
    return result;
}

HWINEVENTHOOK CAAEventHook::ThreadHookSet() {
    const HWINEVENTHOOK hook = ::SetWinEventHook(EVENT_MIN, EVENT_MAX, m_hDll, m_eventProcedure, m_dwPID, m_dwTID, WINEVENT_INCONTEXT);
    if (!hook)
        LogError("CAAEventHook::ThreadHookSet Failed to set event hook, dwPID=0x%x dwTID=0x%x lastError=0x%x", m_dwPID, m_dwTID,
                 ::GetLastError());
    return hook;
}

DWORD CAAEventHook::WaitForQuit() {
    const HANDLE quit = m_hEvtHookQuit.Get();
    for (;;) {
        const DWORD dwWaitRes = ::MsgWaitForMultipleObjects(1, &quit, FALSE, INFINITE, AnyInput);
        if (dwWaitRes == WAIT_OBJECT_0) {
            LogVerbose("CAAEventHook::HookThreadProc received Quit signal (hEventHookQuit), exit");
            return ThreadExit::Ended;
        }
        if (dwWaitRes != WAIT_OBJECT_0 + 1) {
            LogError("CAAEventHook::HookThreadProc unhandled dwWaitRes=0x%x, lastError=0x%x", dwWaitRes, ::GetLastError());
            return ThreadExit::Failed;
        }
        MSG message{};
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                LogVerbose("CAAEventHook::HookThreadProc received WM_QUIT, exit");
                return ThreadExit::Ended;
            }
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
}

bool CAAEventHook::IsThreadRunning() const { return m_hThread && ::WaitForSingleObject(m_hThread.Get(), 0) == WAIT_TIMEOUT; }

void CAAEventHook::Stop() {
    m_dwTimeoutMsgQuit = QuitMilliseconds;
    LogVerbose("CAAEventHook::Stop enter dwTimeoutMsgQuit=%d", m_dwTimeoutMsgQuit);
    if (IsThreadRunning()) {
        LogVerbose("CAAEventHook::Stop Try to stop the thread by posting a message in its queue");
        if (!ThreadStopByMessage()) {
            LogError("CAAEventHook::Stop Failed to stop the hook thread by message, try to stop it by signaling the quit event");
            ThreadStopByEvent();
        }
    }
    m_hThread.Close();
    m_hEvtHookReady.Close();
    m_hEvtHookQuit.Close();
}

bool CAAEventHook::ThreadStopByMessage() {
    LogVerbose("CAAEventHook::ThreadStopByMessage enter dwThreadId=0x%x", m_dwThreadId);
    if (!::PostThreadMessageW(m_dwThreadId, WM_QUIT, 0, 0)) {
        LogError("CAAEventHook::ThreadStopByMessage failed to post WM_QUIT in thread queue, lastError=0x%x", ::GetLastError());
        return false;
    }
    if (::WaitForSingleObject(m_hThread.Get(), m_dwTimeoutMsgQuit) == WAIT_OBJECT_0) {
        LogVerbose("CAAEventHook::ThreadStopByMessage finish OK, hook thread stopped");
        return true;
    }
    LogError("CAAEventHook::ThreadStopByMessage failed to stop hook thread using WM_QUIT, timeout=%d ms", m_dwTimeoutMsgQuit);
    return false;
}

void CAAEventHook::ThreadStopByEvent() {
    LogVerbose("CAAEventHook::ThreadStopByEvent enter dwThreadId=0x%x", m_dwThreadId);
    if (!::SetEvent(m_hEvtHookQuit.Get()))
        LogError("CAAEventHook::ThreadStopByEvent failed to signal the thread quit event, lastError=0x%x", ::GetLastError());
    ::WaitForSingleObject(m_hThread.Get(), INFINITE);
    LogVerbose("CAAEventHook::ThreadStopByEvent finish OK, hook thread stopped");
}

}  // namespace Zorvex
