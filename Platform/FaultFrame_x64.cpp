// The frame of a guarded call on x64: a function with its own language handler. The compiler has no structured
// exceptions, but its assembler knows the directives that describe such a frame.
#if defined(_WIN32) && defined(__x86_64__)

#include "Platform/Windows.h"

extern "C" {
int VantrelOnException(const EXCEPTION_RECORD* record);
extern char VantrelFaultLanding[];

EXCEPTION_DISPOSITION VantrelFaultHandler(EXCEPTION_RECORD* record, void* frame, CONTEXT*, DISPATCHER_CONTEXT* dispatch) {
    constexpr DWORD unwindingFlags = 0x2 | 0x4;
    if (record->ExceptionFlags & unwindingFlags) return ExceptionContinueSearch;
    if (!VantrelOnException(record)) return ExceptionContinueSearch;
    RtlUnwindEx(frame, VantrelFaultLanding, record, reinterpret_cast<void*>(static_cast<ULONG_PTR>(record->ExceptionCode)),
                dispatch->ContextRecord, dispatch->HistoryTable);
    return ExceptionContinueSearch;  // not reached
}
}

// rcx: function, rdx: argument. The unwinder comes to the landing with this frame's stack pointer and the code in
// rax.
asm(R"(
    .text
    .p2align 4
    .globl VantrelCallInFaultFrame
    .def VantrelCallInFaultFrame; .scl 2; .type 32; .endef
    .seh_proc VantrelCallInFaultFrame
VantrelCallInFaultFrame:
    subq $40, %rsp
    .seh_stackalloc 40
    .seh_handler VantrelFaultHandler, @except
    .seh_endprologue
    movq %rcx, %rax
    movq %rdx, %rcx
    call *%rax
    xorl %eax, %eax
    .globl VantrelFaultLanding
VantrelFaultLanding:
    nop
    addq $40, %rsp
    ret
    .seh_endproc
)");

#endif
