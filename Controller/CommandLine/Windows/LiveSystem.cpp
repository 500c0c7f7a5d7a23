// What the command line needs of the live system beyond the loader.
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/SystemChoice.h"
#include "Platform/Windows.h"

namespace Zorvex::Controller {

std::unique_ptr<Loader::ILoaderSystem> OpenDesktopFile(const std::wstring&) {
    throw CommandFailure(ExitCode::WrongArguments,
                         "--desktop belongs to the native build: here windows are live. A desktop file is served by served_desktop.exe");
}

std::uint32_t OwnClientNumber() { return ::GetCurrentProcessId(); }

}  // namespace Zorvex::Controller
