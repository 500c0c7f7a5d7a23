// The orders that the echo server takes.
#pragma once

#include <cstdint>

enum class EchoOrder : std::uint8_t {
    Echo = 'e',           // answers the rest
    AnswerNothing = 'n',  // leaves the response untouched
    Sleep = 's',          // 32-bit milliseconds, then "slept"
    Pump = 'p',           // 32-bit milliseconds of a message loop, then "pumped"
    ThreadId = 'i',       // 32 bits
    Bytes = 'b',          // 32-bit count; byte i is i * 7 + i / 256
    Count = 'k',          // 32 bits, one more each time since the load
    ThrowStandard = 't',
    ThrowArchive = 'a',
    ThrowCom = 'c',
    ThrowNumber = 'u',
    ThrowMemory = 'm',
    ReadNull = 'f',
    DivideByZero = 'z',
    OverflowStack = 'o',
    RaiseForeign = 'r',
    HandledFault = 'h',  // one byte: 1 when the fault was handled where it belongs
    EndProcess = 'x',
    HandleCount = 'H',   // 32 bits: valid handles of the target
    TlsSlotsLeft = 'T',  // 32 bits: thread-local slots that the target could still take
    HostReferences = 'R',  // 32 bits: how often the host is loaded, as the system counts
    Beside = 'l',        // three bytes: loaded, times started, times stopped
};
