// What the command line needs of the live system beyond the loader.
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/SystemChoice.h"
#include "Platform/Windows.h"

namespace Zorvex::Controller {

std::unique_ptr<Loader::ILoaderSystem> OpenDesktopFile(const std::wstring&) {
    throw CommandFailure(ExitCode::WrongArguments,
                         "--desktop belongs to the native build: here windows are live. A desktop file is served by served_desktop.exe");
}

std::wstring LibraryPath(const std::wstring& name) {
    const bool bare = !name.empty() && name.find_first_of(L"\\/:") == std::wstring::npos;
    if (!bare || ::GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES) return name;
    wchar_t program[1024];
    const DWORD length = ::GetModuleFileNameW(nullptr, program, 1024);
    if (length == 0 || length >= 1024) return name;
    const std::wstring path = program;
    return path.substr(0, path.find_last_of(L'\\') + 1) + name;
}

std::uint32_t OwnClientNumber() { return ::GetCurrentProcessId(); }

}  // namespace Zorvex::Controller
