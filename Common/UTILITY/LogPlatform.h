// What the logger asks of the system.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Windows.h"

namespace Zorvex {

class LogPlatform {
public:
    virtual ~LogPlatform() = default;

    // A named setting, from a place that can change at run time. Nothing when it is absent.
    virtual std::optional<std::wstring> ReadSetting(const wchar_t* name) = 0;
    // One whole line, line end included.
    virtual void DebugOutput(const char* line) = 0;
    // The full path of the current process's image; empty when it can't be had.
    virtual std::wstring ProcessPath() = 0;

    // The event provider. The listener hears whether a session is on, its highest level (0 for all), and its flags;
    // it is called on any thread, and not after UnregisterEvents.
    using EventListener = void (*)(void* context, bool enabled, BYTE level, ULONGLONG flags);
    virtual void RegisterEvents(EventListener listener, void* context) = 0;
    virtual void UnregisterEvents() = 0;
    virtual bool EventWanted(BYTE level) = 0;
    virtual void WriteEvent(BYTE level, const std::wstring& text) = 0;

    // The system's own. Each has an event registration of its own, which must be over before it is destroyed.
    static std::unique_ptr<LogPlatform> CreateOfSystem();
};

// The provider of the product's events.
constexpr GUID c_logEventProvider = {0x204DE76A, 0x126E, 0x4673, {0xB3, 0x49, 0x5A, 0x5D, 0x11, 0xD1, 0x80, 0xD7}};

}  // namespace Zorvex
