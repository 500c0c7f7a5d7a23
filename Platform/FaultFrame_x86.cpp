// The frame of a guarded call on x86: a registration in the thread's chain of handlers.
#if defined(_WIN32) && defined(__i386__)

#include "Platform/Windows.h"

extern "C" {
int VantrelOnException(const EXCEPTION_RECORD* record);
void VantrelUnwindTo(void* frame, EXCEPTION_RECORD* record);
[[noreturn]] void VantrelFaultResume(void* frame, DWORD code);

EXCEPTION_DISPOSITION VantrelFaultHandler(EXCEPTION_RECORD* record, void* frame, CONTEXT*, void*) {
    constexpr DWORD unwindingFlags = 0x2 | 0x4;
    if (record->ExceptionFlags & unwindingFlags) return ExceptionContinueSearch;
    if (!VantrelOnException(record)) return ExceptionContinueSearch;
    const DWORD code = record->ExceptionCode;
    VantrelUnwindTo(frame, record);
    VantrelFaultResume(frame, code);
}
}

// The registration (next, handler) lies below the four saved registers; its address is the frame that the handler
// is given.
asm(R"(
    .text
    .p2align 4
    .globl _VantrelCallInFaultFrame
_VantrelCallInFaultFrame:
    pushl %ebp
    movl %esp, %ebp
    pushl %ebx
    pushl %esi
    pushl %edi
    pushl $_VantrelFaultHandler
    pushl %fs:0
    movl %esp, %fs:0
    pushl 12(%ebp)
    call *8(%ebp)
    addl $4, %esp
    xorl %eax, %eax
_VantrelLeaveFaultFrame:
    popl %fs:0
    addl $4, %esp
    popl %edi
    popl %esi
    popl %ebx
    popl %ebp
    ret

    .globl _VantrelFaultResume
_VantrelFaultResume:
    movl 8(%esp), %eax
    movl 4(%esp), %esp
    jmp _VantrelLeaveFaultFrame

    .globl _VantrelUnwindTo
_VantrelUnwindTo:
    pushl %ebp
    movl %esp, %ebp
    pushl %ebx
    pushl %esi
    pushl %edi
    pushl $0
    pushl 12(%ebp)
    pushl $1f
    pushl 8(%ebp)
    call _RtlUnwind@16
1:
    leal -12(%ebp), %esp
    popl %edi
    popl %esi
    popl %ebx
    popl %ebp
    ret
)");

#endif
