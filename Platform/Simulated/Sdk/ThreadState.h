// The state behind simulated threads. Private to this folder.
#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include "Platform/Simulated/Threads.h"

namespace Simulated {

struct KernelObject {
    bool signalled = false;
    bool staysSignalled = true;  // an event of manual reset, or a thread
    std::thread thread;          // of a thread
};
using KernelObjectPtr = std::shared_ptr<KernelObject>;

// One wait that goes on.
struct Waiter {
    std::vector<KernelObjectPtr> objects;
    const std::deque<MSG>* messages = nullptr;  // null: the wait isn't for messages
    ULONGLONG deadline = 0;

    // The number of what ended the wait, or -1.
    int Ended() const;
};

// Guarded by `lock`, which is never held while code of a caller runs.
struct ThreadState {
    std::mutex lock;
    std::condition_variable changed;
    std::map<HANDLE, KernelObjectPtr> objects;
    std::uintptr_t lastHandle = 0x1000000;
    std::map<DWORD, std::deque<MSG>> queues;  // of the threads that live
    std::set<Waiter*> waiters;
    int running = 0;  // threads that take part and wait for nothing

    struct Failure { unsigned left = 0; DWORD error = 0; };
    std::map<ThreadCall, Failure> failures;
    DWORD hookDelay = 0;

    struct Hook { DWORD eventMin, eventMax, process, thread, owner; WINEVENTPROC procedure; };
    std::map<HWINEVENTHOOK, Hook> hooks;
    std::uintptr_t lastHook = 0x2000;
    unsigned abandonedHooks = 0;

    HANDLE Add(KernelObjectPtr object);
    // Under the lock. Sets the last error where the call is to fail.
    bool Fails(ThreadCall call);
};

// Never destroyed: threads may outlive everything else.
ThreadState& Threads();

// Lets the calling thread's clock run in a wait for nothing.
void WaitFor(DWORD milliseconds);

}  // namespace Simulated
