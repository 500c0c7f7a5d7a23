// Threads and waits on the virtual clock.
#include "Platform/Simulated/Sdk/Threads.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "Platform/Simulated/Sdk/SystemState.h"
#include "Platform/Simulated/Sdk/ThreadState.h"

namespace Simulated {
namespace {

constexpr ULONGLONG Never = std::numeric_limits<ULONGLONG>::max();
constexpr DWORD InvalidThreadId = 1444;  // ERROR_INVALID_THREAD_ID

// Whether the calling thread is one of those whose waiting lets the clock move. Used under the lock.
class Participation {
public:
    void Begin() {
        if (m_begun) return;
        m_begun = true;
        ++Threads().running;
    }
    // For a thread that was counted when it was made.
    void TakeOver() { m_begun = true; }
    bool HasBegun() const { return m_begun; }
    void End() {
        if (!std::exchange(m_begun, false)) return;
        --Threads().running;
        Threads().changed.notify_all();
    }
    ~Participation() {
        const std::lock_guard guard(Threads().lock);
        End();
    }

private:
    bool m_begun = false;
};
thread_local Participation t_participation;
thread_local bool t_isMadeHere = false;

// Under the lock.
bool TimesOut(const Waiter& waiter) {
    if (ClockMilliseconds() >= waiter.deadline) return true;
    const ThreadState& state = Threads();
    if (state.running > 0) return false;
    return std::none_of(state.waiters.begin(), state.waiters.end(), [&](const Waiter* other) {
        return other->Ended() >= 0 || other->deadline < waiter.deadline;
    });
}

DWORD Wait(std::unique_lock<std::mutex>& guard, Waiter& waiter, DWORD milliseconds) {
    ThreadState& state = Threads();
    waiter.deadline = milliseconds == INFINITE ? Never : ClockMilliseconds() + milliseconds;
    const bool counts = t_participation.HasBegun();
    state.waiters.insert(&waiter);
    if (counts) --state.running;
    state.changed.notify_all();
    DWORD result = WAIT_TIMEOUT;
    for (;;) {
        if (const int ended = waiter.Ended(); ended >= 0) {
            result = static_cast<DWORD>(ended);
            if (result < waiter.objects.size() && !waiter.objects[result]->staysSignalled) waiter.objects[result]->signalled = false;
            break;
        }
        if (waiter.deadline != Never && TimesOut(waiter)) {
            const ULONGLONG now = ClockMilliseconds();
            if (now < waiter.deadline) AdvanceClock(waiter.deadline - now);
            break;
        }
        state.changed.wait(guard);
    }
    state.waiters.erase(&waiter);
    if (counts) ++state.running;
    state.changed.notify_all();
    return result;
}

DWORD WaitForHandles(DWORD count, const HANDLE* handles, DWORD milliseconds, ThreadCall call) {
    ThreadState& state = Threads();
    std::unique_lock guard(state.lock);
    if (state.Fails(call)) return WAIT_FAILED;
    Waiter waiter;
    for (DWORD i = 0; i < count; ++i) {
        const auto known = state.objects.find(handles[i]);
        if (known == state.objects.end()) {
            SetLastError(ERROR_INVALID_HANDLE);
            return WAIT_FAILED;
        }
        waiter.objects.push_back(known->second);
    }
    if (call == ThreadCall::MessageWait) {
        const auto queue = state.queues.find(GetCurrentThreadId());
        if (queue != state.queues.end()) waiter.messages = &queue->second;
    }
    return Wait(guard, waiter, milliseconds);
}

void RunThread(const KernelObjectPtr& object, DWORD id, LPTHREAD_START_ROUTINE start, LPVOID parameter) {
    SetCurrentThreadId(id);
    t_isMadeHere = true;
    t_participation.TakeOver();
    start(parameter);
    ThreadState& state = Threads();
    const std::lock_guard guard(state.lock);
    // As on Windows, the hooks of a thread go with it.
    state.abandonedHooks += static_cast<unsigned>(std::erase_if(state.hooks, [&](const auto& hook) { return hook.second.owner == id; }));
    state.queues.erase(id);
    object->signalled = true;
    t_participation.End();
    state.changed.notify_all();
}

}  // namespace

int Waiter::Ended() const {
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (objects[i]->signalled) return static_cast<int>(i);
    return messages && !messages->empty() ? static_cast<int>(objects.size()) : -1;
}

ThreadState& Threads() {
    static ThreadState& state = *new ThreadState;
    return state;
}

HANDLE ThreadState::Add(KernelObjectPtr object) {
    const HANDLE handle = reinterpret_cast<HANDLE>(lastHandle += 4);
    objects[handle] = std::move(object);
    return handle;
}

bool ThreadState::Fails(ThreadCall call) {
    const auto planned = failures.find(call);
    if (planned == failures.end() || planned->second.left == 0 || --planned->second.left > 0) return false;
    SetLastError(planned->second.error);
    return true;
}

void WaitFor(DWORD milliseconds) {
    std::unique_lock guard(Threads().lock);
    Waiter waiter;
    Wait(guard, waiter, milliseconds);
}

void FailThreadCall(ThreadCall call, unsigned nth, DWORD error) {
    const std::lock_guard guard(Threads().lock);
    Threads().failures[call] = {nth, error};
}

void SetHookDelay(DWORD milliseconds) {
    const std::lock_guard guard(Threads().lock);
    Threads().hookDelay = milliseconds;
}

void ResetThreadFailures() {
    const std::lock_guard guard(Threads().lock);
    Threads().failures.clear();
    Threads().hookDelay = 0;
}

std::vector<DWORD> LiveThreads() {
    const std::lock_guard guard(Threads().lock);
    std::vector<DWORD> threads;
    for (const auto& [id, queue] : Threads().queues) threads.push_back(id);
    return threads;
}

bool TakeThreadMessage(MSG& message, bool remove, bool& isOwnQueue) {
    isOwnQueue = t_isMadeHere;
    if (!isOwnQueue) return false;
    const std::lock_guard guard(Threads().lock);
    std::deque<MSG>& queue = Threads().queues[GetCurrentThreadId()];
    if (queue.empty()) return false;
    message = queue.front();
    if (remove) queue.pop_front();
    return true;
}

bool CloseKernelObject(HANDLE handle) {
    KernelObjectPtr object;
    {
        const std::lock_guard guard(Threads().lock);
        const auto known = Threads().objects.find(handle);
        if (known == Threads().objects.end()) return false;
        object = std::move(known->second);
        Threads().objects.erase(known);
        if (object->thread.joinable() && !object->signalled) object->thread.detach();
    }
    // It has nothing left to do but to end.
    if (object->thread.joinable()) object->thread.join();
    return true;
}

int OpenKernelObjects() {
    const std::lock_guard guard(Threads().lock);
    return static_cast<int>(Threads().objects.size());
}

}  // namespace Simulated

using namespace Simulated;

HANDLE CreateThread(void*, SIZE_T, LPTHREAD_START_ROUTINE start, LPVOID parameter, DWORD, DWORD* threadId) {
    ThreadState& state = Threads();
    const DWORD id = NextThreadId();
    const std::lock_guard guard(state.lock);
    if (state.Fails(ThreadCall::CreateThread)) return nullptr;
    t_participation.Begin();
    ++state.running;
    state.queues[id];
    auto object = std::make_shared<KernelObject>();
    if (threadId) *threadId = id;
    object->thread = std::thread(RunThread, object, id, start, parameter);
    return state.Add(std::move(object));
}

HANDLE CreateEventW(void*, BOOL manualReset, BOOL initialState, LPCWSTR) {
    const std::lock_guard guard(Threads().lock);
    if (Threads().Fails(ThreadCall::CreateEvent)) return nullptr;
    auto object = std::make_shared<KernelObject>();
    object->signalled = initialState != FALSE;
    object->staysSignalled = manualReset != FALSE;
    return Threads().Add(std::move(object));
}

BOOL SetEvent(HANDLE event) {
    const std::lock_guard guard(Threads().lock);
    if (Threads().Fails(ThreadCall::SetEvent)) return FALSE;
    const auto known = Threads().objects.find(event);
    if (known == Threads().objects.end()) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    known->second->signalled = true;
    Threads().changed.notify_all();
    return TRUE;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) { return WaitForHandles(1, &handle, milliseconds, ThreadCall::Wait); }

DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL, DWORD milliseconds) {
    return WaitForHandles(count, handles, milliseconds, ThreadCall::Wait);
}

DWORD MsgWaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL, DWORD milliseconds, DWORD) {
    return WaitForHandles(count, handles, milliseconds, ThreadCall::MessageWait);
}

BOOL PostThreadMessageW(DWORD threadId, UINT message, WPARAM wParam, LPARAM lParam) {
    const std::lock_guard guard(Threads().lock);
    if (Threads().Fails(ThreadCall::PostMessage)) return FALSE;
    const auto queue = Threads().queues.find(threadId);
    if (queue == Threads().queues.end()) {
        SetLastError(InvalidThreadId);
        return FALSE;
    }
    queue->second.push_back({nullptr, message, wParam, lParam, static_cast<DWORD>(ClockMilliseconds()), {}});
    Threads().changed.notify_all();
    return TRUE;
}
