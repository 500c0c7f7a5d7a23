// What the controller and the host agree on: one shared memory section for each request, one event, one message.
//
// The section's name is made up by the controller for each request from random bits, which travel in the two
// parameters of the message; the event's name is the section's with a suffix. The section holds an Exchange, the
// request's bytes behind it, and from `responseOffset` on the response's. Pages of the response are only reserved
// until the host commits as many as the response needs, so a large bound costs nothing.
#pragma once

#include <cstdint>

#include "Controller/Host/BoundedText.h"
#include "Platform/Windows.h"

namespace Zorvex::Host {

inline constexpr wchar_t MessageName[] = L"vantrel host request";
inline constexpr char HookExportName[] = "VantrelHostHook";
inline constexpr std::uint32_t ExchangeMagic = 0x78745631;  // changes with any change of the layout
inline constexpr std::size_t PathRoom = 1024;
inline constexpr std::size_t TextRoom = 1024;
inline constexpr std::size_t NameRoom = 64;

// Every change of state is one compare-and-swap, so that a request is run at most once and an answer is either seen
// by the controller or dropped by the host.
enum class ExchangeState : LONG {
    Posted = 1,     // the controller waits for the host
    Running = 2,    // the host has taken the request
    Answered = 3,   // outcome and response are there
    Abandoned = 4,  // the controller has gone away
};

enum class HostTask : std::uint32_t { Execute = 1, AskIfServerStays = 2, Unload = 3 };

enum class ServerPolicy : std::uint32_t { AsFound = 0, Stay = 1, Go = 2 };

enum class HostOutcome : std::uint32_t {
    None = 0,
    Response,         // responseSize bytes
    NoResponse,       // the server answered nothing
    Stays,            // AskIfServerStays: yes; Unload: was there and is gone
    DoesNotStay,      // AskIfServerStays: no; Unload: nothing was there
    Busy,             // another request runs in this process
    LibraryNotFound,  // text: the path
    LibraryFailed,    // code: the system's; text: the path and the system's message
    ExportMissing,    // text: the path
    Exception,        // text: type and message
    Fault,            // code: the exception's number; faultAddress; text
    AnswerTooLarge,   // responseSize: the bytes that it has
    Malformed,        // the section isn't what it should be
    OutOfMemory,
};

// Fixed widths only: both word sizes have the same layout.
struct Exchange {
    std::uint32_t magic;
    volatile LONG state;
    HostTask task;
    ServerPolicy policy;
    HostOutcome outcome;
    std::uint32_t code;
    std::uint32_t threadId;
    std::uint32_t reserved;
    std::uint64_t requestSize;
    std::uint64_t responseOffset;    // a multiple of 65,536
    std::uint64_t responseCapacity;
    std::uint64_t responseSize;
    std::uint64_t faultAddress;
    wchar_t serverPath[PathRoom];
    wchar_t besidePath[PathRoom];
    wchar_t text[TextRoom];
};
static_assert(sizeof(Exchange) == 72 + 2 * (2 * PathRoom + TextRoom), "shared by both word sizes");

// The names that belong to the message's parameters. `name` has room for NameRoom units.
inline void SectionName(WPARAM high, LPARAM low, wchar_t* name) {
    constexpr const wchar_t* alphabet = L"0123456789abcdef";
    BoundedText(name, NameRoom)
        .Add(L"Local\\vantrel-")
        .AddHex(high, 16, alphabet)
        .AddHex(static_cast<ULONG_PTR>(low), 16, alphabet);
}
inline void EventName(const wchar_t* sectionName, wchar_t* name) {
    BoundedText(name, NameRoom).Add(sectionName).Add(L"-answered");
}

inline bool ChangeState(Exchange& exchange, ExchangeState from, ExchangeState to) {
    return InterlockedCompareExchange(&exchange.state, static_cast<LONG>(to), static_cast<LONG>(from)) ==
           static_cast<LONG>(from);
}

}  // namespace Zorvex::Host
