// The windows and processes of the system that loading is done on.
#pragma once

#include <chrono>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "Controller/Loader/ITarget.h"
#include "Controller/Loader/LoadResult.h"
#include "Controller/Loader/LoaderOptions.h"
#include "Controller/Loader/WindowInfo.h"

namespace Zorvex::Loader {

enum class WindowFilter { Visible, All };

class ILoaderSystem {
public:
    virtual ~ILoaderSystem() = default;

    // Front to back. Windows that go away during the walk are left out.
    virtual std::vector<WindowInfo> TopLevelWindows(WindowFilter filter) = 0;

    // NoSuchWindow if it isn't one. Child windows are allowed.
    virtual LoadResult<WindowInfo> Describe(HWND window) = 0;

    virtual bool ProcessExists(DWORD processId) = 0;

    // Starts a command line as a person types it, and waits for the first visible top-level window of the process,
    // or of a process that it started. The program keeps running when the window doesn't come in time.
    virtual LoadResult<WindowInfo> Launch(const std::wstring& command, std::chrono::milliseconds limit,
                                          std::stop_token stop) = 0;

    // Checks window, process, word size, rights and files, so that a wrong choice is told before the first request.
    virtual LoadResult<std::unique_ptr<ITarget>> Open(HWND window, const LoaderOptions& options) = 0;
};

// Never null. Where no loading is possible every operation says so (LoadProblem::NotOnThisSystem).
std::unique_ptr<ILoaderSystem> CreateLoaderSystem();

}  // namespace Zorvex::Loader
