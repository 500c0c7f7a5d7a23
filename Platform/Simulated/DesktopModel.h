// A whole desktop as plain data: what a desktop file holds.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Simulated/Window.h"

namespace Simulated {

struct ProcessData {
    DWORD id = 1000;
    std::wstring path = {};
    DWORD session = 0;  // 0: the desktop's
    bool current = false;
    bool accessDenied = false;
};

struct SystemData {
    DWORD session = 1;
    std::array<DWORD, 3> osVersion = {10, 0, 19045};
    std::vector<std::pair<std::wstring, std::wstring>> environment = {};
};

// Something that happens when the clock has moved `after` milliseconds since the desktop was built.
struct ScheduledChange {
    ULONGLONG after = 0;
    std::string window = {};  // receives the message
    UINT message = 0x0400;    // WM_USER
    bool posted = true;       // happens when the message is dispatched; false: as soon as anybody looks
    std::vector<Action> actions = {};
};

struct DesktopModel {
    SystemData system = {};
    std::vector<ProcessData> processes = {};
    std::vector<WindowPtr> windows = {};  // top-level ones, topmost first
    std::vector<Fault> faults = {};       // meet calls of any element, numbered over the whole desktop
    std::vector<ScheduledChange> schedule = {};
    HRESULT removedResult = static_cast<HRESULT>(0x800401FD);  // CO_E_OBJNOTCONNECTED

    DWORD CurrentProcess() const;
};

}  // namespace Simulated
