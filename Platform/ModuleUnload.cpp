// Linked into each library that is loaded into foreign processes and unloaded again (vantrel_unloadable in
// cmake/VantrelTargets.cmake).
//
// The thread library under the C++ runtime keeps slots of thread-local storage, semaphores and, for each thread that
// used it, some handles, until the thread ends. In a library with a runtime of its own nobody gives these back when
// the library goes while the thread stays, as a window's thread does: a process has some 1,000 slots, so a thousand
// loads would be the last. Here the keys of the runtime are the system's own, which can be freed for all threads at
// once; what is left of the thread library is given back for the unloading thread. Both happen after everything else
// of the library has ended.
#ifdef _WIN32

#include <pthread.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

#include "Platform/Windows.h"

// The thread library's own ear for threads that end.
extern "C" PIMAGE_TLS_CALLBACK __xl_f;

namespace {

using Destructor = void (*)(void*);

// The runtime itself takes one or two.
constexpr unsigned KeyEnd = 8;
constexpr DWORD SlotEnd = 64 + 1024;  // the system's bound

struct Key {
    DWORD index = FLS_OUT_OF_INDEXES;
    Destructor destructor = nullptr;
};
Key keys[KeyEnd];
volatile LONG keysTaken = 0;

// The system's callback has another calling convention than the key's, and isn't told which key it is for.
template <unsigned number>
void WINAPI Destroy(void* value) {
    if (value && keys[number].destructor) keys[number].destructor(value);
}

template <unsigned... numbers>
PFLS_CALLBACK_FUNCTION CallbackOf(unsigned number, std::integer_sequence<unsigned, numbers...>) {
    static constexpr PFLS_CALLBACK_FUNCTION callbacks[] = {&Destroy<numbers>...};
    return callbacks[number];
}

void FreeKeys() {
    for (Key& key : keys) {
        const DWORD index = std::exchange(key.index, FLS_OUT_OF_INDEXES);
        if (index != FLS_OUT_OF_INDEXES) FlsFree(index);
    }
}

void ReleaseThread() {
    // Nobody tells the number of the thread library's slot; but it is the one that empties when the thread's things
    // are given back.
    pthread_self();
    bool filled[SlotEnd];
    for (DWORD slot = 0; slot < SlotEnd; ++slot) filled[slot] = TlsGetValue(slot) != nullptr;
    __xl_f(nullptr, DLL_THREAD_DETACH, nullptr);
    for (DWORD slot = 0; slot < SlotEnd; ++slot) {
        if (filled[slot] && TlsGetValue(slot) == nullptr) TlsFree(slot);
    }
}

void ReleaseRuntime() {
    FreeKeys();
    ReleaseThread();
}

// The earliest of the library's constructors: what is registered first, runs last.
__attribute__((constructor(101))) void RegisterRelease() { std::atexit(&ReleaseRuntime); }

}  // namespace

// The linker puts these in the place of the thread library's functions. A key is its number plus one.
extern "C" int __wrap_pthread_key_create(pthread_key_t* key, Destructor destructor) {
    const LONG number = InterlockedIncrement(&keysTaken) - 1;
    if (number >= static_cast<LONG>(KeyEnd)) return EAGAIN;
    keys[number].destructor = destructor;
    keys[number].index = FlsAlloc(CallbackOf(static_cast<unsigned>(number), std::make_integer_sequence<unsigned, KeyEnd>()));
    if (keys[number].index == FLS_OUT_OF_INDEXES) return EAGAIN;
    *key = static_cast<pthread_key_t>(number + 1);
    return 0;
}

extern "C" int __wrap_pthread_key_delete(pthread_key_t key) {
    if (key == 0 || key > KeyEnd) return EINVAL;
    // A deleted key's destructor isn't called.
    keys[key - 1].destructor = nullptr;
    const DWORD index = std::exchange(keys[key - 1].index, FLS_OUT_OF_INDEXES);
    return index != FLS_OUT_OF_INDEXES && FlsFree(index) ? 0 : EINVAL;
}

extern "C" void* __wrap_pthread_getspecific(pthread_key_t key) {
    if (key == 0 || key > KeyEnd || keys[key - 1].index == FLS_OUT_OF_INDEXES) return nullptr;
    // Reading a value mustn't change what the code around it is about to ask for.
    const DWORD error = GetLastError();
    void* value = FlsGetValue(keys[key - 1].index);
    SetLastError(error);
    return value;
}

extern "C" int __wrap_pthread_setspecific(pthread_key_t key, const void* value) {
    if (key == 0 || key > KeyEnd || keys[key - 1].index == FLS_OUT_OF_INDEXES) return EINVAL;
    return FlsSetValue(keys[key - 1].index, const_cast<void*>(value)) ? 0 : ENOMEM;
}

#endif
