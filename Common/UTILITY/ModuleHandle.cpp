#include "Common/UTILITY/ModuleHandle.h"

#include "Common/include/Log.h"

namespace Zorvex {

namespace {
HINSTANCE g_module = nullptr;
}

BOOL OnDllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    constexpr DWORD processAttach = 1;  // DLL_PROCESS_ATTACH
    if (reason != processAttach) return TRUE;
    if (reserved) LogError("This should be called only from LoadLibrary, no static linking!");
    g_module = instance;
    return TRUE;
}

HINSTANCE ModuleHandle() { return g_module; }

}  // namespace Zorvex
