// Linked into each library that is loaded into foreign processes and unloaded again.
//
// The thread library that the C++ runtime is built on keeps, for each thread that used it, a slot of thread-local
// storage and some handles until the thread ends. In a library with a runtime of its own nobody gives them back when
// the library goes while the thread stays, as a window's thread does: a process has some 1,000 slots, so a thousand
// loads would be the last. This gives back what belongs to the unloading thread, after everything else of the library
// has ended.
#ifdef _WIN32

#include <pthread.h>

#include <cstdlib>

#include "Platform/Windows.h"

// The thread library's own ear for threads that end.
extern "C" PIMAGE_TLS_CALLBACK __xl_f;

namespace {

constexpr DWORD SlotEnd = 64 + 1024;  // the system's bound

void ReleaseThreadLibrary() {
    // Nobody tells the number of the slot; but it is the one that empties when the thread's things are given back.
    pthread_self();
    bool filled[SlotEnd];
    for (DWORD slot = 0; slot < SlotEnd; ++slot) filled[slot] = TlsGetValue(slot) != nullptr;
    __xl_f(nullptr, DLL_THREAD_DETACH, nullptr);
    for (DWORD slot = 0; slot < SlotEnd; ++slot) {
        if (filled[slot] && TlsGetValue(slot) == nullptr) TlsFree(slot);
    }
}

// The earliest of the library's constructors: what is registered first, runs last.
__attribute__((constructor(101))) void RegisterRelease() { std::atexit(&ReleaseThreadLibrary); }

}  // namespace

#endif
