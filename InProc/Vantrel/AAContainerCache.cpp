#include "InProc/Vantrel/AAContainerCache.h"

#include <atomic>
#include <ios>
#include <utility>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"

namespace Zorvex {

namespace {

// Zero at load and raised before use, so that 0 is never issued.
std::atomic<std::uint32_t> g_lastContainerId{0};

AAElement WindowAlone(HWND hWnd) { return AAElement{hWnd, nullptr, CComVariant(CHILDID_SELF)}; }

}  // namespace

AAContainerCache& AAContainerCache::Instance() {
    static AAContainerCache cache;
    return cache;
}

AAContainerCache::~AAContainerCache() { DetachAndLeakAaContainers(); }

AAObjectIdentifier AAContainerCache::RegisterObject(const ClientKey& clientKey, AAElement element,
                                                    std::optional<std::uint32_t> isDomAria) {
    if (!::IsWindow(element.hWnd)) return {};
    // Settled before the next test, whose first branch drops it.
    const std::uint32_t domAria = isDomAria ? *isDomAria
                                  : NWindows::IsChromeWidgetClass(element.hWnd) || NWindows::IsFirefoxWindow(element.hWnd) ? 1
                                                                                                                           : 0;
    AAObjectIdentifier identifier;
    identifier.hWnd = element.hWnd;
    identifier.clientPid = clientKey.clientPid;
    identifier.originalWnd = clientKey.originalWnd;
    if (!element.IsValid()) {
        LogWarning("invalid aaObj, returning WND identifier");
        return identifier;
    }
    identifier.containerId = RegisterContainerObject(clientKey.clientPid, std::move(element.spAcc));
    if (identifier.containerId == 0) {
        LogError("RegisterContainerObject failed");
        return {};
    }
    identifier.childId = element.child.lVal;
    identifier.isDomAria = domAria;
    return identifier;
}

std::uint32_t AAContainerCache::RegisterContainerObject(std::uint32_t clientPid, CComPtr<IAccessible> accessible) {
    CComPtr<IUnknown> identity;
    const HRESULT result = accessible.QueryInterface(identity);
    if (result != S_OK) {
        if (ShouldLog(Severity::Error)) LogStream(Severity::Error) << "QueryInterface(IUnknown) failed, hr=" << std::hex << result;
        return 0;
    }
    if (!identity) {
        LogError("QueryInterface(IUnknown) failed, NULL pointer returned");
        return 0;
    }

    // The identity's reference is released after the lock: releasing is a foreign call.
    const std::lock_guard lock(m_mutex);
    // The one description under the lock: it tells an object in the log from any other.
    const std::string description = ElementDebugText(accessible, CComVariant(CHILDID_SELF));
    if (const auto known = m_objects.find(identity); known != m_objects.end()) {
        LogVerbose("original container %s already registered as ID=%u unkObj=0x%p", description, known->second, identity.p);
        return known->second;
    }
    ++g_lastContainerId;
    const std::uint32_t id = g_lastContainerId;
    LogVerbose("original object %s newly registered as clientPId=%u ID=%u unkObj=0x%p", description, clientPid, id, identity.p);
    m_clients[clientPid].emplace(id, std::move(accessible));
    m_objects.emplace(identity, id);
    return id;
}

AAElement AAContainerCache::LookupIdentifier(const AAObjectIdentifier& identifier) {
    if (!::IsWindow(identifier.hWnd) || identifier.containerId == 0) {
        if (ShouldLog(Severity::Warning))
            LogStream(Severity::Warning) << "invalid ID=" << identifier.containerId << ", returning WND identifier";
        return WindowAlone(identifier.hWnd);
    }
    CComPtr<IAccessible> accessible;
    {
        const std::lock_guard lock(m_mutex);
        const auto client = m_clients.find(identifier.clientPid);
        if (client != m_clients.end()) {
            const auto container = client->second.find(identifier.containerId);
            if (container != client->second.end()) accessible = container->second;
        }
        if (!accessible) {
            if (ShouldLog(Severity::Error))
                LogStream(Severity::Error) << "clientPid=" << identifier.clientPid << " containerId=" << identifier.containerId
                                           << " not found";
            return WindowAlone(nullptr);
        }
    }
    AAElement element{identifier.hWnd, std::move(accessible), CComVariant(static_cast<LONG>(identifier.childId))};
    LogVerbose("clientPid=%u containerId=(%u,%d) found AA object %s", identifier.clientPid, identifier.containerId,
               identifier.childId, ElementDebugText(element.spAcc, element.child));
    return element;
}

void AAContainerCache::UnregisterAllContainersByClientPid(std::uint32_t clientPid) {
    Containers containers;
    {
        const std::lock_guard lock(m_mutex);
        const auto client = m_clients.find(clientPid);
        if (client == m_clients.end()) return;
        // The key stays, with an empty map.
        containers.swap(client->second);
    }

    std::vector<IUnknown*> identities;
    identities.reserve(containers.size());
    for (const auto& [id, accessible] : containers) {
        CComPtr<IUnknown> identity;
        // A container that fails here is skipped, and its entry in the object map stays behind.
        if (accessible.QueryInterface(identity) == S_OK && identity) identities.push_back(identity);
    }
    if (ShouldLog(Severity::Verbose))
        LogStream(Severity::Verbose) << "erasing " << identities.size() << " LPUNKNOWN pointers for clientPid " << clientPid;
    {
        const std::lock_guard lock(m_mutex);
        for (IUnknown* identity : identities) m_objects.erase(identity);
    }
    if (ShouldLog(Severity::Verbose))
        LogStream(Severity::Verbose) << "erasing " << containers.size() << " AA containers for clientPid " << clientPid;
}

void AAContainerCache::DetachAndLeakAaContainers() {
    std::unordered_map<std::uint32_t, Containers> clients;
    std::map<IUnknown*, std::uint32_t> objects;
    {
        const std::lock_guard lock(m_mutex);
        clients.swap(m_clients);
        objects.swap(m_objects);
    }
    if (ShouldLog(Severity::Verbose))
        LogStream(Severity::Verbose) << "cleaning up " << clients.size() << " client PIDs and " << objects.size() << " ptrs";
    for (auto& [clientPid, containers] : clients) {
        if (ShouldLog(Severity::Verbose))
            LogStream(Severity::Verbose) << "leaking " << containers.size() << " AA containers for clientPid " << clientPid;
        for (auto& [id, accessible] : containers) static_cast<void>(accessible.Detach());
    }
    objects.clear();
    LogVerbose("cleanup finished");
}

std::size_t AAContainerCache::ContainerCount() {
    const std::lock_guard lock(m_mutex);
    std::size_t count = 0;
    for (const auto& [clientPid, containers] : m_clients) count += containers.size();
    return count;
}

}  // namespace Zorvex
