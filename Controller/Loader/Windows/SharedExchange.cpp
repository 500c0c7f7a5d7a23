#include "Controller/Loader/Windows/SharedExchange.h"

#include <cstring>
#include <cwchar>
#include <random>
#include <utility>

#include "Controller/Loader/Windows/SystemMessage.h"

namespace Zorvex::Loader {

namespace {

constexpr std::uint64_t ViewGranularity = 65536;
// Only address space of the section object until it is used; what a 32-bit process can map at all is less.
constexpr std::uint64_t LargestResponse = sizeof(void*) == 8 ? std::uint64_t(1) << 30 : std::uint64_t(1) << 28;
constexpr std::uint64_t SmallestResponse = std::uint64_t(1) << 24;

// The device of this runtime asks the system's generator for each number.
template <class Number>
Number RandomNumber() {
    std::random_device device;
    std::uint64_t bits = device();
    bits = bits << 32 | device();
    return static_cast<Number>(bits);
}

}  // namespace

LoadResult<SharedExchange> SharedExchange::Create(std::span<const std::uint8_t> request) {
    SharedExchange shared;
    shared.m_high = RandomNumber<WPARAM>();
    shared.m_low = RandomNumber<LPARAM>();
    wchar_t name[Host::NameRoom];
    Host::SectionName(shared.m_high, shared.m_low, name);
    const std::uint64_t head = sizeof(Host::Exchange) + request.size();
    shared.m_responseOffset = (head + ViewGranularity - 1) / ViewGranularity * ViewGranularity;

    HANDLE section = nullptr;
    for (std::uint64_t capacity = LargestResponse; !section && capacity >= SmallestResponse; capacity /= 2) {
        const std::uint64_t size = shared.m_responseOffset + capacity;
        shared.m_responseCapacity = capacity;
        section = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_RESERVE,
                                     static_cast<DWORD>(size >> 32), static_cast<DWORD>(size), name);
        if (section && GetLastError() == ERROR_ALREADY_EXISTS) {
            CloseHandle(section);
            return LoadFailure{LoadProblem::Failed, "somebody else already has the name of the shared memory"};
        }
    }
    if (!section) return CallFailure(LoadProblem::Failed, "CreateFileMapping", GetLastError());
    shared.m_section = SafeObject(section);

    wchar_t eventName[Host::NameRoom];
    Host::EventName(name, eventName);
    shared.m_answered = SafeObject(CreateEventW(nullptr, TRUE, FALSE, eventName));
    if (!shared.m_answered) return CallFailure(LoadProblem::Failed, "CreateEvent", GetLastError());

    const SIZE_T viewSize = static_cast<SIZE_T>(shared.m_responseOffset);
    void* view = MapViewOfFile(section, FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, viewSize);
    if (!view) return CallFailure(LoadProblem::Failed, "MapViewOfFile", GetLastError());
    shared.m_exchange = static_cast<Host::Exchange*>(view);
    if (!VirtualAlloc(view, viewSize, MEM_COMMIT, PAGE_READWRITE)) {
        return CallFailure(LoadProblem::Failed, "VirtualAlloc", GetLastError());
    }
    Host::Exchange& exchange = *shared.m_exchange;
    exchange.magic = Host::ExchangeMagic;
    exchange.requestSize = request.size();
    exchange.responseOffset = shared.m_responseOffset;
    exchange.responseCapacity = shared.m_responseCapacity;
    if (!request.empty()) std::memcpy(&exchange + 1, request.data(), request.size());
    shared.Rewind();
    return shared;
}

SharedExchange::SharedExchange(SharedExchange&& other) noexcept
    : m_high(other.m_high),
      m_low(other.m_low),
      m_section(std::move(other.m_section)),
      m_answered(std::move(other.m_answered)),
      m_exchange(std::exchange(other.m_exchange, nullptr)),
      m_responseOffset(other.m_responseOffset),
      m_responseCapacity(other.m_responseCapacity) {}

SharedExchange::~SharedExchange() {
    if (m_exchange) UnmapViewOfFile(m_exchange);
}

void SharedExchange::Rewind() {
    ResetEvent(m_answered.Get());
    m_exchange->outcome = Host::HostOutcome::None;
    m_exchange->code = 0;
    m_exchange->responseSize = 0;
    m_exchange->text[0] = L'\0';
    InterlockedExchange(&m_exchange->state, static_cast<LONG>(Host::ExchangeState::Posted));
}

LoadResult<std::vector<std::uint8_t>> SharedExchange::TakeResponse() const {
    const std::uint64_t size = m_exchange->responseSize;
    if (size == 0 || size > m_responseCapacity) {
        return LoadFailure{LoadProblem::Failed, "the target claims a response of " + std::to_string(size) + " bytes"};
    }
    void* view = MapViewOfFile(m_section.Get(), FILE_MAP_READ | FILE_MAP_WRITE, static_cast<DWORD>(m_responseOffset >> 32),
                               static_cast<DWORD>(m_responseOffset), static_cast<SIZE_T>(size));
    if (!view) return CallFailure(LoadProblem::Failed, "MapViewOfFile", GetLastError());
    // Pages that the target has filled stay as they are; those that it only claims to have filled would fault.
    const bool committed = VirtualAlloc(view, static_cast<SIZE_T>(size), MEM_COMMIT, PAGE_READWRITE) != nullptr;
    const DWORD error = committed ? 0 : GetLastError();
    std::vector<std::uint8_t> response;
    const std::uint8_t* bytes = static_cast<const std::uint8_t*>(view);
    if (committed) response.assign(bytes, bytes + size);
    UnmapViewOfFile(view);
    if (!committed) return CallFailure(LoadProblem::Failed, "VirtualAlloc", error);
    return response;
}

std::wstring SharedExchange::Text() const {
    const wchar_t* text = m_exchange->text;
    std::wstring copy(text, Host::TextRoom);
    return copy.substr(0, copy.find(L'\0'));
}

}  // namespace Zorvex::Loader
