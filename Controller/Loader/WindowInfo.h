// What a person needs to know of a window to choose it as a target.
#pragma once

#include <string>

#include "Controller/Loader/Bitness.h"
#include "Platform/Windows.h"

namespace Zorvex::Loader {

struct WindowInfo {
    HWND window = nullptr;
    DWORD processId = 0;
    DWORD threadId = 0;
    std::wstring title;
    std::wstring windowClass;
    RECT rectangle{};          // screen coordinates
    std::wstring processName;  // the file's name without its folder; empty when the system doesn't tell
    Bitness bitness = Bitness::Unknown;
    bool visible = false;
};

}  // namespace Zorvex::Loader
