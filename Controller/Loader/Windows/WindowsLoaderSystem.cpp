// The system's windows and processes as they are.
#include <algorithm>

#include "Common/include/SafeObject.h"
#include "Common/include/UtfConversion.h"
#include "Controller/Loader/ILoaderSystem.h"
#include "Controller/Loader/Windows/AnswerWait.h"
#include "Controller/Loader/Windows/ProcessInfo.h"
#include "Controller/Loader/Windows/SystemMessage.h"
#include "Controller/Loader/Windows/WindowsTarget.h"

namespace Zorvex::Loader {

namespace {

constexpr DWORD LaunchPollInterval = 50;

std::wstring TitleOf(HWND window) {
    // Reads what the system holds of windows of other processes, so that a hung one can't hold this up.
    std::wstring title(512, L'\0');
    const int length = InternalGetWindowText(window, title.data(), static_cast<int>(title.size()));
    title.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return title;
}

std::wstring ClassOf(HWND window) {
    std::wstring name(257, L'\0');
    const int length = GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    name.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return name;
}

bool Fill(HWND window, WindowInfo& info) {
    info.window = window;
    info.threadId = GetWindowThreadProcessId(window, &info.processId);
    if (info.threadId == 0) return false;
    info.title = TitleOf(window);
    info.windowClass = ClassOf(window);
    info.visible = IsWindowVisible(window) != FALSE;
    GetWindowRect(window, &info.rectangle);
    const SafeObject process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, info.processId));
    if (process) {
        info.processName = FileNameOfProcess(process.Get());
        info.bitness = BitnessOfProcess(process.Get());
    }
    return true;
}

BOOL CALLBACK Collect(HWND window, LPARAM collected) {
    reinterpret_cast<std::vector<HWND>*>(collected)->push_back(window);
    return TRUE;
}

// True if `processId` is `ancestor` or was started by it, over at most three steps.
bool ComesFrom(DWORD processId, DWORD ancestor) {
    for (int step = 0; step < 4 && processId != 0; ++step) {
        if (processId == ancestor) return true;
        processId = ParentOfProcess(processId);
    }
    return false;
}

class WindowsLoaderSystem : public ILoaderSystem {
public:
    std::vector<WindowInfo> TopLevelWindows(WindowFilter filter) override {
        std::vector<HWND> handles;
        EnumWindows(&Collect, reinterpret_cast<LPARAM>(&handles));
        std::vector<WindowInfo> windows;
        for (const HWND window : handles) {
            if (filter == WindowFilter::Visible && !IsWindowVisible(window)) continue;
            WindowInfo info;
            if (Fill(window, info)) windows.push_back(std::move(info));
        }
        return windows;
    }

    LoadResult<WindowInfo> Describe(HWND window) override {
        WindowInfo info;
        if (!Fill(window, info)) return LoadFailure{LoadProblem::NoSuchWindow, "the handle names no window"};
        return info;
    }

    bool ProcessExists(DWORD processId) override {
        const SafeObject process(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
        if (!process) return GetLastError() == ERROR_ACCESS_DENIED;
        return WaitForSingleObject(process.Get(), 0) == WAIT_TIMEOUT;
    }

    LoadResult<WindowInfo> Launch(const std::wstring& command, std::chrono::milliseconds limit, std::stop_token stop) override {
        std::wstring writable = command;
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        PROCESS_INFORMATION started{};
        if (!CreateProcessW(nullptr, writable.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started)) {
            return LoadFailure{LoadProblem::LaunchFailed, NarrowText(command) + ": " + SystemMessage(GetLastError())};
        }
        const SafeObject process(started.hProcess);
        const SafeObject thread(started.hThread);
        const Deadline deadline(limit);
        while (true) {
            const bool ended = WaitForSingleObject(process.Get(), 0) == WAIT_OBJECT_0;
            for (WindowInfo& window : TopLevelWindows(WindowFilter::Visible)) {
                if (ComesFrom(window.processId, started.dwProcessId)) return std::move(window);
            }
            if (deadline.Passed()) {
                return LoadFailure{LoadProblem::NoWindowInTime, NarrowText(command) + (ended ? ": it has ended" : ": it runs on")};
            }
            if (SleepUnlessStopped(deadline.Remaining(LaunchPollInterval), stop)) return LoadFailure{LoadProblem::Cancelled, ""};
        }
    }

    LoadResult<std::unique_ptr<ITarget>> Open(HWND window, const LoaderOptions& options) override {
        return WindowsTarget::Open(window, options);
    }
};

}  // namespace

std::unique_ptr<ILoaderSystem> CreateLoaderSystem() { return std::make_unique<WindowsLoaderSystem>(); }

}  // namespace Zorvex::Loader
