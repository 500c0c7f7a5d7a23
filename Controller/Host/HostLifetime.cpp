#include "Controller/Host/HostLifetime.h"

namespace Zorvex::Host {

namespace {

// Both fit into the thread's one argument only together on the heap.
struct Release {
    HWND window;
    HMODULE host;
    unsigned count;
};

HMODULE OwnModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(&HoldHost)), &module);
    return module;
}

DWORD WINAPI ReleaseThread(void* argument) {
    Release release = *static_cast<Release*>(argument);
    HeapFree(GetProcessHeap(), 0, argument);
    DWORD_PTR ignored = 0;
    while (!SendMessageTimeoutW(release.window, WM_NULL, 0, 0, SMTO_NORMAL, 1000, &ignored)) {
        if (IsWindow(release.window)) continue;
        // The request took its own window away. Only the way out of the hook is left to its thread.
        Sleep(200);
        break;
    }
    while (release.count-- > 1) FreeLibrary(release.host);
    FreeLibraryAndExitThread(release.host, 0);
}

}  // namespace

bool HoldHost() {
    HMODULE module = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                              reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(&HoldHost)), &module) != FALSE;
}

void ReleaseHostLater(HWND window, unsigned count) {
    Release* release = static_cast<Release*>(HeapAlloc(GetProcessHeap(), 0, sizeof(Release)));
    if (!release) return;
    *release = Release{window, OwnModule(), count};
    const HANDLE thread = CreateThread(nullptr, 0, &ReleaseThread, release, 0, nullptr);
    if (thread) {
        CloseHandle(thread);
    } else {
        // Staying loaded is the smaller harm.
        HeapFree(GetProcessHeap(), 0, release);
    }
}

}  // namespace Zorvex::Host
