// Debug output, event tracing, messages of error codes, known folders.
#include <cstring>

#include "Platform/Simulated/Sdk/SystemState.h"

namespace Simulated {
namespace {

struct SystemMessage { DWORD code; const char* text; };
constexpr SystemMessage Messages[] = {
    {ERROR_SUCCESS, "The operation completed successfully.\r\n"},
    {ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.\r\n"},
    {ERROR_ACCESS_DENIED, "Access is denied.\r\n"},
    {ERROR_INVALID_HANDLE, "The handle is invalid.\r\n"},
    {ERROR_GEN_FAILURE, "A device attached to the system is not functioning.\r\n"},
    {ERROR_INVALID_PARAMETER, "The parameter is incorrect.\r\n"},
    {ERROR_INSUFFICIENT_BUFFER, "The data area passed to a system call is too small.\r\n"},
    {ERROR_INVALID_WINDOW_HANDLE, "Invalid window handle.\r\n"},
    {ERROR_TIMEOUT, "This operation returned because the timeout period expired.\r\n"},
};

bool SessionWants(const EventSession& session, BYTE level, ULONGLONG keyword) {
    if (!session.enabled) return false;
    if (session.level != 0 && level > session.level) return false;
    return keyword == 0 || session.flags == 0 || (keyword & session.flags) != 0;
}

void TellProvider(REFGUID provider, const EventSession& session) {
    std::vector<EventRegistration> listeners;
    {
        std::lock_guard guard(State().lock);
        State().sessions[provider] = session;
        for (const auto& [handle, registration] : State().registrations)
            if (registration.provider == provider && registration.callback) listeners.push_back(registration);
    }
    for (const EventRegistration& listener : listeners)
        listener.callback(&provider, session.enabled, session.level, session.flags, 0, nullptr, listener.context);
}

}  // namespace

std::vector<std::string> DebugOutput() {
    std::lock_guard guard(State().lock);
    return State().debugOutput;
}
void ClearDebugOutput() {
    std::lock_guard guard(State().lock);
    State().debugOutput.clear();
}
void EnableEvents(REFGUID provider, BYTE level, ULONGLONG flags) { TellProvider(provider, {true, level, flags}); }
void DisableEvents(REFGUID provider) { TellProvider(provider, {}); }
unsigned EventRegistrations(REFGUID provider) {
    std::lock_guard guard(State().lock);
    unsigned count = 0;
    for (const auto& [handle, registration] : State().registrations) count += registration.provider == provider;
    return count;
}
std::vector<TracedEvent> Events() {
    std::lock_guard guard(State().lock);
    return State().events;
}
void SetKnownFolder(std::wstring_view path) {
    std::lock_guard guard(State().lock);
    State().knownFolder = path;
}

}  // namespace Simulated

using namespace Simulated;

void OutputDebugStringA(LPCSTR text) {
    std::lock_guard guard(State().lock);
    State().debugOutput.push_back(text ? text : "");
}

ULONG EventRegister(const GUID* provider, PENABLECALLBACK callback, void* context, REGHANDLE* handle) {
    EventSession session;
    {
        std::lock_guard guard(State().lock);
        *handle = ++State().lastRegistration;
        State().registrations[*handle] = {*provider, callback, context};
        const auto running = State().sessions.find(*provider);
        if (running != State().sessions.end()) session = running->second;
    }
    // A session that already runs is told at once.
    if (session.enabled && callback) callback(provider, 1, session.level, session.flags, 0, nullptr, context);
    return ERROR_SUCCESS;
}

ULONG EventUnregister(REGHANDLE handle) {
    std::lock_guard guard(State().lock);
    return State().registrations.erase(handle) != 0 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

BOOLEAN EventProviderEnabled(REGHANDLE handle, BYTE level, ULONGLONG keyword) {
    std::lock_guard guard(State().lock);
    const auto registration = State().registrations.find(handle);
    if (registration == State().registrations.end()) return FALSE;
    const auto session = State().sessions.find(registration->second.provider);
    return session != State().sessions.end() && SessionWants(session->second, level, keyword);
}

ULONG EventWriteString(REGHANDLE handle, BYTE level, ULONGLONG keyword, LPCWSTR text) {
    std::lock_guard guard(State().lock);
    const auto registration = State().registrations.find(handle);
    if (registration == State().registrations.end()) return ERROR_INVALID_HANDLE;
    const auto session = State().sessions.find(registration->second.provider);
    if (session != State().sessions.end() && SessionWants(session->second, level, keyword))
        State().events.push_back({registration->second.provider, level, keyword, text});
    return ERROR_SUCCESS;
}

DWORD FormatMessageA(DWORD flags, LPCVOID, DWORD message, DWORD, LPSTR text, DWORD capacity, void*) {
    if (flags & FORMAT_MESSAGE_FROM_SYSTEM) {
        for (const SystemMessage& known : Messages) {
            if (known.code != message) continue;
            const std::size_t length = std::strlen(known.text);
            if (capacity < length + 1) {
                SetLastError(ERROR_INSUFFICIENT_BUFFER);
                return 0;
            }
            std::memcpy(text, known.text, length + 1);
            return static_cast<DWORD>(length);
        }
    }
    SetLastError(ERROR_MR_MID_NOT_FOUND);
    return 0;
}

HRESULT SHGetKnownFolderPath(REFGUID, DWORD, HANDLE, LPWSTR* path) {
    *path = nullptr;
    std::wstring folder;
    {
        std::lock_guard guard(State().lock);
        folder = State().knownFolder;
    }
    if (folder.empty()) return ResultCode(0x80070002);
    const std::size_t bytes = (folder.size() + 1) * sizeof(wchar_t);
    *path = static_cast<LPWSTR>(CoTaskMemAlloc(bytes));
    if (!*path) return E_OUTOFMEMORY;
    std::memcpy(*path, folder.c_str(), bytes);
    return S_OK;
}
