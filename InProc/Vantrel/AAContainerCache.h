// The registry of the accessible objects that clients hold identifiers for.
//
// A client in another process can't hold an IAccessible. It holds an AAObjectIdentifier instead, and the cache holds
// the reference behind it, from registration until that client is unregistered or the process ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <unordered_map>

#include "Common/include/AAElement.h"
#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"
#include "RuntimeCore/Requests/AAObjectIdentifier.h"

namespace Zorvex {

class AAContainerCache {
public:
    // On whose behalf an element is registered: both go into the identifier as they stand.
    struct ClientKey {
        std::uint32_t clientPid = 0;
        HWND originalWnd = nullptr;
    };

    // The one cache of the process, made on first use.
    static AAContainerCache& Instance();

    AAContainerCache() = default;
    AAContainerCache(const AAContainerCache&) = delete;
    AAContainerCache& operator=(const AAContainerCache&) = delete;
    // Leaks every reference on purpose: at the end of the process the objects behind them may be gone already.
    ~AAContainerCache();

    // Makes the identifier of an element. `isDomAria` is worked out from the window's class when it isn't given.
    // All zero when the window is none or the object has no identity; the identifier of the window alone
    // (containerId 0) when the element has no object or a child id that isn't VT_I4.
    AAObjectIdentifier RegisterObject(const ClientKey& clientKey, AAElement element,
                                      std::optional<std::uint32_t> isDomAria = std::nullopt);

    // The id of the container, new or known, or 0 on failure. Consumes the reference. One object has one id over all
    // clients, and only the client that registered it first can look it up.
    std::uint32_t RegisterContainerObject(std::uint32_t clientPid, CComPtr<IAccessible> accessible);

    // The element behind an identifier. Two empty answers: a null window means not found; a window with a null
    // object means that the identifier names the window alone, or that its window is gone.
    AAElement LookupIdentifier(const AAObjectIdentifier& identifier);

    // Lets go of all containers of a client. Foreign code runs without the lock, so that a dead or hanging object
    // does not block the lookups of other clients.
    void UnregisterAllContainersByClientPid(std::uint32_t clientPid);

    // Forgets everything without releasing anything.
    void DetachAndLeakAaContainers();

    // Containers held for all clients.
    std::size_t ContainerCount();

private:
    using Containers = std::unordered_map<std::uint32_t, CComPtr<IAccessible>>;

    std::mutex m_mutex;
    std::unordered_map<std::uint32_t, Containers> m_clients;
    // Bare pointers: the object stays alive through the reference in m_clients.
    std::map<IUnknown*, std::uint32_t> m_objects;
};

}  // namespace Zorvex
