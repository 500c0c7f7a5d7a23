#include "Platform/FaultGuard.h"

#ifdef _WIN32

#include <malloc.h>

#include <atomic>

extern "C" {
// In FaultFrame_x64.cpp or FaultFrame_x86.cpp: a frame with a handler that ends the call with the exception's code.
DWORD VantrelCallInFaultFrame(void (*function)(void*), void* argument);
int VantrelOnException(const EXCEPTION_RECORD* record);
}

namespace Zorvex {

namespace {

// One for all threads: storage of a thread has to be given back when the library is unloaded.
std::atomic<ULONG_PTR> lastAddress;

}  // namespace

bool CallGuarded(void (*function)(void*), void* argument, FaultReport& report) {
    // Room for the handler after the stack has run out. The thread keeps it; asking again changes nothing.
    ULONG guarantee = 65536;
    SetThreadStackGuarantee(&guarantee);
    const DWORD code = VantrelCallInFaultFrame(function, argument);
    if (code == 0) return true;
    // The guard page was used up; without a new one the next overflow ends the target.
    if (code == STATUS_STACK_OVERFLOW) _resetstkoflw();
    report.code = code;
    report.address = lastAddress;
    return false;
}

}  // namespace Zorvex

// Answers 1 if the exception ends the guarded call. Runs on what is left of the stack, so it does little.
int VantrelOnException(const EXCEPTION_RECORD* record) {
    const DWORD severity = record->ExceptionCode >> 28;
    if (severity != 0xC && severity != 0xE) return 0;
    Zorvex::lastAddress = reinterpret_cast<ULONG_PTR>(record->ExceptionAddress);
    return 1;
}

#else

namespace Zorvex {

bool CallGuarded(void (*function)(void*), void* argument, FaultReport&) {
    function(argument);
    return true;
}

}  // namespace Zorvex

#endif
