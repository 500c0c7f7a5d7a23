#include "Controller/Loader/Windows/AnswerWait.h"

#include <algorithm>
#include <atomic>

#include "Controller/Loader/Windows/SystemMessage.h"

namespace Zorvex::Loader {

namespace {

using Host::ChangeState;
using Host::ExchangeState;

// Callbacks come to the thread that sent, perhaps long after the wait for them has ended: so they carry a number and
// no pointer.
std::atomic<ULONG_PTR> lastSent{0};
thread_local ULONG_PTR lastReturned = 0;

void CALLBACK OnMessageReturned(HWND, UINT, ULONG_PTR number, LRESULT) {
    lastReturned = std::max(lastReturned, number);
}

// Lets messages sent to this thread, and the callbacks among them, in. Nothing is taken out of the queue: it is the
// caller's.
void ServeSentMessages() {
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

// Wakes a wait when stopping is asked for.
class StopEvent {
public:
    explicit StopEvent(const std::stop_token& stop)
        : m_event(CreateEventW(nullptr, TRUE, FALSE, nullptr)), m_callback(stop, SetOnStop{m_event.Get()}) {}
    HANDLE Get() const { return m_event.Get(); }

private:
    struct SetOnStop {
        HANDLE event;
        void operator()() const { SetEvent(event); }
    };
    SafeObject m_event;
    std::stop_callback<SetOnStop> m_callback;
};

// Gives the exchange up. Nothing if the answer came at the last moment.
std::optional<LoadFailure> Abandon(SharedExchange& exchange, LoadFailure ifPosted, LoadFailure ifRunning) {
    if (ChangeState(*exchange, ExchangeState::Posted, ExchangeState::Abandoned)) return ifPosted;
    if (ChangeState(*exchange, ExchangeState::Running, ExchangeState::Abandoned)) return ifRunning;
    return std::nullopt;
}
std::optional<LoadFailure> Abandon(SharedExchange& exchange, const LoadFailure& failure) {
    return Abandon(exchange, failure, failure);
}

ExchangeState StateOf(const SharedExchange& exchange) {
    return static_cast<ExchangeState>(InterlockedCompareExchange(&exchange->state, 0, 0));
}

LoadFailure DeadlineWhilePosted(HWND window) {
    const char* detail = IsHungAppWindow(window)
                             ? "the window doesn't take messages (the system calls it hung); nothing was run in it"
                             : "the window's thread took no message before the deadline; nothing was run in it";
    return {LoadProblem::TargetHung, detail};
}

}  // namespace

DWORD Deadline::Remaining(DWORD most) const {
    if (!m_end) return most;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*m_end - std::chrono::steady_clock::now()).count();
    return static_cast<DWORD>(std::clamp<long long>(left, 0, most));
}

std::optional<LoadFailure> PostAndWait(const WaitPlace& place, SharedExchange& exchange, const Deadline& deadline,
                                       const std::stop_token& stop) {
    // A window that goes away takes its messages along without a word; so the wait looks up now and then.
    constexpr DWORD LookUpInterval = 250;
    const StopEvent stopEvent(stop);
    const UINT message = RegisterWindowMessageW(Host::MessageName);
    const ULONG_PTR number = ++lastSent;
    if (!SendMessageCallbackW(place.window, message, exchange.High(), exchange.Low(), &OnMessageReturned, number)) {
        const DWORD error = GetLastError();
        InterlockedExchange(&exchange->state, static_cast<LONG>(ExchangeState::Abandoned));
        if (error == ERROR_ACCESS_DENIED) {
            return LoadFailure{LoadProblem::AccessDenied, "the system doesn't let messages through to the target, which has more rights"};
        }
        if (error == ERROR_INVALID_WINDOW_HANDLE) return LoadFailure{LoadProblem::TargetGone, "the window is gone"};
        return CallFailure(LoadProblem::Failed, "SendMessageCallback", error);
    }

    const HANDLE all[] = {exchange.Answered(), place.process, stopEvent.Get(), place.thread};
    const DWORD count = place.thread ? 4 : 3;
    while (true) {
        const DWORD answer = MsgWaitForMultipleObjectsEx(count, all, deadline.Remaining(LookUpInterval), QS_SENDMESSAGE, 0);
        const DWORD waitError = answer == WAIT_FAILED ? GetLastError() : 0;
        if (StateOf(exchange) == ExchangeState::Answered) return std::nullopt;
        if (WaitForSingleObject(place.process, 0) == WAIT_OBJECT_0) {
            return Abandon(exchange, {LoadProblem::TargetGone, "the process ended before it took the request"},
                           {LoadProblem::TargetGone, "the process ended while it served the request"});
        }
        if (place.thread && WaitForSingleObject(place.thread, 0) == WAIT_OBJECT_0) {
            return Abandon(exchange, {LoadProblem::TargetGone, "the window's thread ended before it took the request"},
                           {LoadProblem::TargetGone, "the window's thread ended while it served the request"});
        }
        if (stop.stop_requested()) return Abandon(exchange, {LoadProblem::Cancelled, ""});
        if (deadline.Passed()) {
            return Abandon(exchange, DeadlineWhilePosted(place.window),
                           {LoadProblem::DeadlinePassed, "the target is still busy with the request; its answer will be dropped"});
        }
        if (waitError) return Abandon(exchange, CallFailure(LoadProblem::Failed, "MsgWaitForMultipleObjectsEx", waitError));
        ServeSentMessages();
        if (StateOf(exchange) != ExchangeState::Posted) continue;
        if (lastReturned >= number) {
            return Abandon(exchange, {LoadProblem::HostNotLoaded,
                                      "the target took the message, but the host library wasn't in it; the target may refuse foreign libraries"},
                           {LoadProblem::Failed, "the host took the request too late"});
        }
        if (!IsWindow(place.window)) return Abandon(exchange, {LoadProblem::TargetGone, "the window is gone"});
    }
}

bool SleepUnlessStopped(DWORD milliseconds, const std::stop_token& stop) {
    const StopEvent stopEvent(stop);
    return WaitForSingleObject(stopEvent.Get(), milliseconds) == WAIT_OBJECT_0;
}

}  // namespace Zorvex::Loader
