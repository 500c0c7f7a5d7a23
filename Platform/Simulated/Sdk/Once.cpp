// One-time initialisation: the first caller is told that it is pending, others wait until it completes or fails.
#include <condition_variable>
#include <mutex>

#include "Platform/Simulated/Sdk/System.h"

namespace {

// The two low bits of the pointer say how far it is; contexts are aligned pointers with these bits clear.
constexpr std::uintptr_t Untouched = 0, Running = 1, Done = 2, StateBits = 3;

struct Waiters {
    std::mutex lock;
    std::condition_variable changed;
};
Waiters& AllWaiters() {
    static Waiters& waiters = *new Waiters;
    return waiters;
}

std::uintptr_t Bits(const INIT_ONCE* once) { return reinterpret_cast<std::uintptr_t>(once->Ptr); }
void SetBits(INIT_ONCE* once, std::uintptr_t bits) { once->Ptr = reinterpret_cast<void*>(bits); }

}  // namespace

BOOL InitOnceBeginInitialize(INIT_ONCE* once, DWORD flags, BOOL* pending, void** context) {
    if (flags != 0) {
        // Checking only and asynchronous initialisation are not part of this system.
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    Waiters& waiters = AllWaiters();
    std::unique_lock guard(waiters.lock);
    waiters.changed.wait(guard, [&] { return (Bits(once) & StateBits) != Running; });
    *pending = (Bits(once) & StateBits) == Untouched;
    if (*pending) SetBits(once, Running);
    else if (context) *context = reinterpret_cast<void*>(Bits(once) & ~StateBits);
    return TRUE;
}

BOOL InitOnceComplete(INIT_ONCE* once, DWORD flags, void* context) {
    Waiters& waiters = AllWaiters();
    std::lock_guard guard(waiters.lock);
    const auto value = reinterpret_cast<std::uintptr_t>(context);
    if ((Bits(once) & StateBits) != Running || (value & StateBits) != 0) {
        SetLastError(ERROR_GEN_FAILURE);
        return FALSE;
    }
    SetBits(once, (flags & INIT_ONCE_INIT_FAILED) ? Untouched : value | Done);
    waiters.changed.notify_all();
    return TRUE;
}
