#include "Controller/Host/RequestRunner.h"

#include <cstring>
#include <cwchar>
#include <exception>
#include <new>
#include <stdexcept>

#include "Common/include/ArchiveException.h"
#include "Common/include/ComException.h"
#include "Platform/FaultGuard.h"
#include "Controller/Host/LoadedServer.h"

namespace Zorvex::Host {

namespace {

// The server is made for one request at a time; a second one can come on another window's thread, or on this one
// while the first pumps messages.
volatile LONG running = 0;

struct Section {
    HANDLE mapping = nullptr;
    Exchange* exchange = nullptr;
};

bool OpenSection(const wchar_t* name, Section& section) {
    section.mapping = OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, name);
    if (!section.mapping) return false;
    section.exchange = static_cast<Exchange*>(MapViewOfFile(section.mapping, FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, sizeof(Exchange)));
    if (section.exchange && section.exchange->magic == ExchangeMagic) {
        // The view of the head gives way to one of head and request.
        const std::uint64_t size = section.exchange->responseOffset;
        const std::uint64_t needed = sizeof(Exchange) + section.exchange->requestSize;
        UnmapViewOfFile(section.exchange);
        section.exchange = nullptr;
        if (needed >= sizeof(Exchange) && size >= needed && size <= SIZE_MAX) {
            section.exchange = static_cast<Exchange*>(
                MapViewOfFile(section.mapping, FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, static_cast<SIZE_T>(size)));
        }
        if (section.exchange) return true;
    }
    if (section.exchange) UnmapViewOfFile(section.exchange);
    CloseHandle(section.mapping);
    return false;
}

void WriteText(Exchange& exchange, const char* kind, const char* text) {
    BoundedText(exchange.text, TextRoom).Add(kind).Add(*text ? ": " : "").Add(text);
}

struct Run {
    Exchange* exchange;
    LoadedServer server;
    RawBuffer request;
    RawBuffer response;
};

// C++ exceptions end here, while the library that they come from is still loaded.
void Execute(void* argument) {
    Run& run = *static_cast<Run*>(argument);
    Exchange& exchange = *run.exchange;
    exchange.outcome = HostOutcome::Exception;
    try {
        run.server.execute(&run.request, &run.response);
        exchange.outcome = HostOutcome::Response;
    } catch (const ArchiveException& exception) {
        WriteText(exchange, "ArchiveException", exception.Text().c_str());
    } catch (const ComException& exception) {
        exchange.code = static_cast<std::uint32_t>(exception.Error());
        BoundedText(exchange.text, TextRoom).Add("ComException: 0x").AddHex(exchange.code, 8);
    } catch (const std::bad_alloc&) {
        WriteText(exchange, "std::bad_alloc", "");
    } catch (const std::exception& exception) {
        WriteText(exchange, "std::exception", exception.what());
    } catch (...) {
        WriteText(exchange, "an exception of unknown type", "");
    }
}

const wchar_t* NameOfFault(DWORD code) {
    switch (code) {
        case STATUS_ACCESS_VIOLATION: return L"access violation";
        case STATUS_STACK_OVERFLOW: return L"stack overflow";
        case STATUS_INTEGER_DIVIDE_BY_ZERO: return L"integer division by zero";
        case STATUS_ILLEGAL_INSTRUCTION: return L"illegal instruction";
        case STATUS_PRIVILEGED_INSTRUCTION: return L"privileged instruction";
        case STATUS_IN_PAGE_ERROR: return L"page that can't be read in";
        case STATUS_DATATYPE_MISALIGNMENT: return L"misaligned access";
        case 0xE06D7363: return L"a C++ exception of another compiler";
        default: return L"exception";
    }
}

void PutResponse(HANDLE mapping, Exchange& exchange, const RawBuffer& response) {
    const std::size_t size = static_cast<std::size_t>(response.end - response.begin);
    exchange.responseSize = size;
    if (size == 0) {
        exchange.outcome = HostOutcome::NoResponse;
        return;
    }
    if (size > exchange.responseCapacity) {
        exchange.outcome = HostOutcome::AnswerTooLarge;
        return;
    }
    const std::uint64_t offset = exchange.responseOffset;
    void* view = MapViewOfFile(mapping, FILE_MAP_READ | FILE_MAP_WRITE, static_cast<DWORD>(offset >> 32),
                               static_cast<DWORD>(offset), size);
    if (view && VirtualAlloc(view, size, MEM_COMMIT, PAGE_READWRITE)) {
        std::memcpy(view, response.begin, size);
    } else {
        exchange.outcome = HostOutcome::OutOfMemory;
    }
    if (view) UnmapViewOfFile(view);
}

void ExecuteRequest(HANDLE mapping, Exchange& exchange) {
    Run run{&exchange, {}, {}, {}};
    if (!LoadServer(exchange, run.server)) return;
    // A copy of the request: the controller must not be able to change it while it is read, and a fault of the
    // section's pages can't happen in the middle of the server.
    const std::size_t size = static_cast<std::size_t>(exchange.requestSize);
    run.request.begin = static_cast<std::uint8_t*>(HeapAlloc(GetProcessHeap(), 0, size ? size : 1));
    if (run.request.begin) {
        std::memcpy(run.request.begin, &exchange + 1, size);
        run.request.end = run.request.capacityEnd = run.request.begin + size;
        FaultReport fault;
        if (!CallGuarded(&Execute, &run, fault)) {
            exchange.outcome = HostOutcome::Fault;
            exchange.code = fault.code;
            exchange.faultAddress = fault.address;
            BoundedText(exchange.text, TextRoom)
                .Add(NameOfFault(fault.code)).Add(" (0x").AddHex(fault.code, 8).Add(") at 0x").AddHex(fault.address, 16);
        } else if (exchange.outcome == HostOutcome::Response) {
            PutResponse(mapping, exchange, run.response);
        }
        if (run.response.begin) HeapFree(GetProcessHeap(), 0, run.response.begin);
        HeapFree(GetProcessHeap(), 0, run.request.begin);
    } else {
        exchange.outcome = HostOutcome::OutOfMemory;
    }
    ReleaseServer(exchange, run.server);
}

bool HasEnd(const wchar_t* text, std::size_t room) { return std::wmemchr(text, L'\0', room) != nullptr; }

void Serve(HANDLE mapping, Exchange& exchange) {
    exchange.threadId = GetCurrentThreadId();
    if (InterlockedCompareExchange(&running, 1, 0) != 0) {
        exchange.outcome = HostOutcome::Busy;
        return;
    }
    if (!HasEnd(exchange.serverPath, PathRoom) || !HasEnd(exchange.besidePath, PathRoom)) {
        exchange.outcome = HostOutcome::Malformed;
    } else if (exchange.task == HostTask::Execute) {
        ExecuteRequest(mapping, exchange);
    } else if (exchange.task == HostTask::AskIfServerStays) {
        exchange.outcome = ServerStays() ? HostOutcome::Stays : HostOutcome::DoesNotStay;
    } else if (exchange.task == HostTask::Unload) {
        exchange.outcome = UnloadStayingServer() ? HostOutcome::Stays : HostOutcome::DoesNotStay;
    } else {
        exchange.outcome = HostOutcome::Malformed;
    }
    InterlockedExchange(&running, 0);
}

}  // namespace

void ServeExchange(const wchar_t* name) {
    Section section;
    if (!OpenSection(name, section)) return;
    Exchange& exchange = *section.exchange;
    if (ChangeState(exchange, ExchangeState::Posted, ExchangeState::Running)) {
        wchar_t eventName[NameRoom];
        EventName(name, eventName);
        const HANDLE answered = OpenEventW(EVENT_MODIFY_STATE, FALSE, eventName);
        Serve(section.mapping, exchange);
        // A controller that has given up sees nothing of this; the section dies with this side's view.
        if (ChangeState(exchange, ExchangeState::Running, ExchangeState::Answered) && answered) SetEvent(answered);
        if (answered) CloseHandle(answered);
    }
    UnmapViewOfFile(section.exchange);
    CloseHandle(section.mapping);
}

}  // namespace Zorvex::Host
