#include "Common/UTILITY/LogPlatform.h"

#include <iterator>

namespace Zorvex {
namespace {

constexpr wchar_t c_userKey[] = L"Environment";
constexpr wchar_t c_machineKey[] = L"System\\CurrentControlSet\\Control\\Session Manager\\Environment";
constexpr DWORD c_bytesPerUnit = 2;
constexpr DWORD c_longestPath = 32'768;

std::optional<std::wstring> ReadRegistryText(HKEY root, const wchar_t* key, const wchar_t* name) {
    // Both settings are a word long; what doesn't fit is none of their values.
    wchar_t text[128] = {};
    DWORD size = static_cast<DWORD>(std::size(text)) * c_bytesPerUnit;
    const LONG result = ::RegGetValueW(root, key, name, RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND, nullptr, text, &size);
    if (result == static_cast<LONG>(ERROR_MORE_DATA)) return std::wstring();
    if (result != static_cast<LONG>(ERROR_SUCCESS)) return std::nullopt;
    text[std::size(text) - 1] = 0;
    return std::wstring(text);
}

class SystemLogPlatform : public LogPlatform {
public:
    std::optional<std::wstring> ReadSetting(const wchar_t* name) override {
        // The registry, not the process's own environment block: an operator can change it for a running process.
        auto text = ReadRegistryText(HKEY_CURRENT_USER, c_userKey, name);
        return text ? text : ReadRegistryText(HKEY_LOCAL_MACHINE, c_machineKey, name);
    }

    void DebugOutput(const char* line) override { ::OutputDebugStringA(line); }

    std::wstring ProcessPath() override {
        std::wstring path(c_longestPath, L'\0');
        DWORD length = c_longestPath;
        HANDLE process = ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, ::GetCurrentProcessId());
        if (!process || !::QueryFullProcessImageNameW(process, 0, path.data(), &length)) length = 0;
        // No owner here: one whose close fails would log, and the logger is just being set up.
        if (process) ::CloseHandle(process);
        path.resize(length);
        return path;
    }

    void RegisterEvents(EventListener listener, void* context) override {
        m_listener = listener;
        m_context = context;
        REGHANDLE handle = 0;
        if (::EventRegister(&c_logEventProvider, &OnSessionChanged, this, &handle) == ERROR_SUCCESS) m_events = handle;
    }
    void UnregisterEvents() override {
        if (m_events != 0) ::EventUnregister(m_events);
        m_events = 0;
    }
    bool EventWanted(BYTE level) override { return m_events != 0 && ::EventProviderEnabled(m_events, level, 0); }
    void WriteEvent(BYTE level, const std::wstring& text) override { ::EventWriteString(m_events, level, 0, text.c_str()); }

private:
    static void WINAPI OnSessionChanged(const GUID*, ULONG enabled, BYTE level, ULONGLONG any, ULONGLONG, PEVENT_FILTER_DESCRIPTOR,
                                        void* context) {
        auto& self = *static_cast<SystemLogPlatform*>(context);
        // 2 would be a request to write out state, which there is none of.
        constexpr ULONG c_captureState = 2;
        if (enabled != c_captureState) self.m_listener(self.m_context, enabled != 0, level, any);
    }

    EventListener m_listener = nullptr;
    void* m_context = nullptr;
    REGHANDLE m_events = 0;
};

}  // namespace

std::unique_ptr<LogPlatform> LogPlatform::CreateOfSystem() { return std::make_unique<SystemLogPlatform>(); }

}  // namespace Zorvex
