// The controller's side of the memory that carries one request.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Common/include/SafeObject.h"
#include "Controller/Host/HostProtocol.h"
#include "Controller/Loader/LoadResult.h"

namespace Zorvex::Loader {

// Owns the section, its view and the event. The target's host has a view of its own, so giving this one up while a
// request runs is safe: the system frees the memory with the last of both.
class SharedExchange {
public:
    // Makes up a name nobody can guess, and puts the request in.
    static LoadResult<SharedExchange> Create(std::span<const std::uint8_t> request);

    SharedExchange(SharedExchange&& other) noexcept;
    SharedExchange& operator=(SharedExchange&&) = delete;
    ~SharedExchange();

    Host::Exchange& operator*() const noexcept { return *m_exchange; }
    Host::Exchange* operator->() const noexcept { return m_exchange; }
    HANDLE Answered() const noexcept { return m_answered.Get(); }

    // The parameters of the message that names this section.
    WPARAM High() const noexcept { return m_high; }
    LPARAM Low() const noexcept { return m_low; }

    // Makes it ready to be posted once more, with the same request.
    void Rewind();

    // Call only when the state is Answered and the outcome Response. The target's numbers are checked, not trusted.
    LoadResult<std::vector<std::uint8_t>> TakeResponse() const;

    // The outcome's text; ends where it ends, whatever the target wrote.
    std::wstring Text() const;

private:
    SharedExchange() = default;

    WPARAM m_high = 0;
    LPARAM m_low = 0;
    SafeObject m_section;
    SafeObject m_answered;
    Host::Exchange* m_exchange = nullptr;
    std::uint64_t m_responseOffset = 0;
    std::uint64_t m_responseCapacity = 0;
};

}  // namespace Zorvex::Loader
