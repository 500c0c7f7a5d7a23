// Where windows are: the live system, or a desktop file. Which of them there are is a matter of the build.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Controller/CommandLine/Bitmap.h"
#include "Controller/Loader/ILoaderSystem.h"

namespace Zorvex::Controller {

// The desktop of a file as a system of windows, whose server runs in this process. Throws CommandFailure if the file
// can't be read, isn't a desktop file, or this build has no desktops. Lives until the next desktop is opened.
std::unique_ptr<Loader::ILoaderSystem> OpenDesktopFile(const std::wstring& path);

// The number under which this program registers elements when they don't outlive it.
std::uint32_t OwnClientNumber();

// The path of a library that a person named: a bare name that isn't in the current folder is looked for beside this program.
std::wstring LibraryPath(const std::wstring& name);

// Shows the server's log lines while it lives. `show` gets one line at a time, without its end, maybe on another thread.
class LogWatch {
public:
    virtual ~LogWatch() = default;
};
// `level` as the logging settings have it, such as VERBOSE. Throws CommandFailure where the lines can't be had.
std::unique_ptr<LogWatch> WatchLog(const std::wstring& level, std::function<void(const std::string&)> show);

// The window as the screen shows it. Nothing where there is no screen, or the window can't be seen.
std::optional<Bitmap> TakePicture(HWND window);

// Whole files; a failure throws CommandFailure and names the file.
std::string ReadWholeFile(const std::wstring& path);
void WriteWholeFile(const std::wstring& path, const std::string& text);

}  // namespace Zorvex::Controller
