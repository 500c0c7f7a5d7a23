// A server that does what it is told, for tests of the loading alone. The first byte of a request is the order, the
// rest its argument.
#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>
#include <vector>

#include "Common/include/ArchiveException.h"
#include "Common/include/ComException.h"
#include "Platform/Windows.h"
#include "tests/live/EchoOrders.h"
#include "tests/live/OwnResources.h"

namespace {

struct Buffer {
    std::uint8_t* begin;
    std::uint8_t* end;
    std::uint8_t* capacityEnd;
};

std::uint32_t counter = 0;

void Answer(Buffer* out, const void* bytes, std::size_t size) {
    if (out->begin) HeapFree(GetProcessHeap(), 0, out->begin);
    out->begin = static_cast<std::uint8_t*>(HeapAlloc(GetProcessHeap(), 0, size ? size : 1));
    std::memcpy(out->begin, bytes, size);
    out->end = out->capacityEnd = out->begin + size;
}

std::uint32_t Number(const Buffer* in) {
    std::uint32_t number = 0;
    std::memcpy(&number, in->begin + 1, sizeof(number));
    return number;
}

[[gnu::noinline]] int Overflow(volatile int* depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(*depth);
    *depth = *depth + 1;
    if (*depth < 0) return 0;  // never
    const int below = Overflow(depth);
    return below + room[0];
}

void PumpFor(DWORD milliseconds) {
    const ULONGLONG end = GetTickCount64() + milliseconds;
    while (GetTickCount64() < end) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        Sleep(5);
    }
}

}  // namespace

extern "C" __declspec(dllexport) void ExecuteAa(const Buffer* in, Buffer* out) {
    const std::size_t size = static_cast<std::size_t>(in->end - in->begin);
    if (size == 0) return;
    volatile int zero = 0;
    switch (static_cast<EchoOrder>(in->begin[0])) {
        case EchoOrder::Echo: return Answer(out, in->begin + 1, size - 1);
        case EchoOrder::AnswerNothing: return;
        case EchoOrder::Sleep: Sleep(Number(in)); return Answer(out, "slept", 5);
        case EchoOrder::Pump: PumpFor(Number(in)); return Answer(out, "pumped", 6);
        case EchoOrder::ThreadId: {
            const DWORD id = GetCurrentThreadId();
            return Answer(out, &id, sizeof(id));
        }
        case EchoOrder::Bytes: {
            std::vector<std::uint8_t> bytes(Number(in));
            for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
            return Answer(out, bytes.data(), bytes.size());
        }
        case EchoOrder::Count: ++counter; return Answer(out, &counter, sizeof(counter));
        case EchoOrder::ThrowStandard: throw std::runtime_error("thrown on request");
        case EchoOrder::ThrowArchive: throw Zorvex::ArchiveException("Invalid vBuffer in ctor");
        case EchoOrder::ThrowCom: throw Zorvex::ComException(E_OUTOFMEMORY);
        case EchoOrder::ThrowNumber: throw 42;
        case EchoOrder::ThrowMemory: throw std::bad_alloc();
        case EchoOrder::ReadNull: zero = *reinterpret_cast<volatile int*>(static_cast<std::uintptr_t>(zero) + 16); return;
        case EchoOrder::DivideByZero: zero = 7 / zero; return;
        case EchoOrder::OverflowStack: Overflow(&zero); return;
        case EchoOrder::RaiseForeign: RaiseException(0xE06D7363, 0, 0, nullptr); return;
        case EchoOrder::HandledFault: {
            // The system's own handler catches this one, so the guard around the server must let it through.
            const std::uint8_t bad = IsBadReadPtr(reinterpret_cast<const void*>(static_cast<std::uintptr_t>(16)), 1) != 0;
            return Answer(out, &bad, 1);
        }
        case EchoOrder::EndProcess: TerminateProcess(GetCurrentProcess(), 3); return;
        case EchoOrder::HandleCount: {
            const std::uint32_t count = CountOwnHandles();
            return Answer(out, &count, sizeof(count));
        }
        case EchoOrder::TlsSlotsLeft: {
            const std::uint32_t count = CountFreeTlsSlots();
            return Answer(out, &count, sizeof(count));
        }
        case EchoOrder::HostReferences: {
            const std::uint32_t count = CountReferences(L"vantrel_host_x64.dll");
            return Answer(out, &count, sizeof(count));
        }
        case EchoOrder::Beside: {
            wchar_t started[2] = L"0";
            wchar_t stopped[2] = L"0";
            GetEnvironmentVariableW(L"VANTREL_BESIDE_STARTED", started, 2);
            GetEnvironmentVariableW(L"VANTREL_BESIDE_STOPPED", stopped, 2);
            const std::uint8_t beside[] = {GetModuleHandleW(L"beside_library.dll") != nullptr,
                                           static_cast<std::uint8_t>(started[0] - L'0'),
                                           static_cast<std::uint8_t>(stopped[0] - L'0')};
            return Answer(out, beside, sizeof(beside));
        }
    }
}
