#include "Controller/Loader/Windows/ThreadHook.h"

#include <utility>

#include "Common/include/UtfConversion.h"
#include "Controller/Host/HostProtocol.h"
#include "Controller/Loader/Windows/SystemMessage.h"

namespace Zorvex::Loader {

LoadResult<ThreadHook> ThreadHook::Install(const std::wstring& path, DWORD threadId) {
    const HMODULE library = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!library) {
        const DWORD error = GetLastError();
        return LoadFailure{LoadProblem::LibraryFailed, NarrowText(path) + ": " + SystemMessage(error)};
    }
    const FARPROC procedure = GetProcAddress(library, Host::HookExportName);
    if (!procedure) {
        FreeLibrary(library);
        return LoadFailure{LoadProblem::LibraryFailed, NarrowText(path) + " isn't a host: it has no hook"};
    }
    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROC, reinterpret_cast<HOOKPROC>(reinterpret_cast<void*>(procedure)),
                                         library, threadId);
    if (hook) return ThreadHook(library, hook);
    const DWORD error = GetLastError();
    FreeLibrary(library);
    if (error == ERROR_ACCESS_DENIED) {
        return LoadFailure{LoadProblem::AccessDenied, "the system doesn't let this user hook the target's thread"};
    }
    if (error == ERROR_INVALID_PARAMETER || error == ERROR_INVALID_THREAD_ID) {
        return LoadFailure{LoadProblem::TargetGone, "the window's thread has ended"};
    }
    return CallFailure(LoadProblem::Failed, "SetWindowsHookEx", error);
}

ThreadHook::ThreadHook(ThreadHook&& other) noexcept
    : m_library(std::exchange(other.m_library, nullptr)), m_hook(std::exchange(other.m_hook, nullptr)) {}

ThreadHook::~ThreadHook() {
    if (m_hook) UnhookWindowsHookEx(m_hook);
    if (m_library) FreeLibrary(m_library);
}

}  // namespace Zorvex::Loader
