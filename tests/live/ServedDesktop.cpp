#include "tests/live/ServedDesktop.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "Common/include/UtfConversion.h"
#include "tests/live/LiveTarget.h"

namespace Zorvex::Testing {

namespace {

std::wstring NewFile() {
    wchar_t folder[MAX_PATH], file[MAX_PATH];
    if (!GetTempPathW(MAX_PATH, folder) || !GetTempFileNameW(folder, L"vtr", 0, file))
        throw std::runtime_error("there is no place for a desktop file");
    return file;
}

}  // namespace

ServedDesktop::ServedDesktop(const std::string& text) : m_file(NewFile()) {
    std::ofstream(NarrowText(m_file), std::ios::binary) << text;

    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    HANDLE reading = nullptr, writing = nullptr;
    if (!CreatePipe(&reading, &writing, &inherited, 0)) throw std::runtime_error("there is no pipe");
    m_output = SafeObject(reading);
    SafeObject output(writing);
    SetHandleInformation(reading, HANDLE_FLAG_INHERIT, 0);

    std::wstring command = L"\"" + LiveFolder() + L"served_desktop.exe\" \"" + m_file + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = writing;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process))
        throw std::runtime_error("served_desktop.exe can't be started");
    m_process = SafeObject(process.hProcess);
    const SafeObject thread(process.hThread);
    // The serving program alone writes from here on, so that its end is the end of what there is to read.
    output.Close();

    const std::string ready = ReadLine();
    if (ready.rfind("ready ", 0) != 0) throw std::runtime_error("served_desktop said: " + ready);
    for (int left = std::atoi(ready.c_str() + 6); left > 0; --left) {
        const std::string line = ReadLine();
        const HWND window = reinterpret_cast<HWND>(static_cast<INT_PTR>(std::strtoul(line.c_str(), nullptr, 16)));
        const std::size_t space = line.find(' ');
        if (!window || space == std::string::npos) throw std::runtime_error("served_desktop said: " + line);
        m_windows[line.substr(space + 1)] = window;
        if (!m_front) m_front = window;
    }
}

ServedDesktop::~ServedDesktop() {
    TerminateProcess(m_process.Get(), 0);
    WaitForSingleObject(m_process.Get(), 5'000);
    DeleteFileW(m_file.c_str());
}

std::string ServedDesktop::ReadLine() {
    std::string line;
    char letter = 0;
    DWORD count = 0;
    while (ReadFile(m_output.Get(), &letter, 1, &count, nullptr) && count == 1 && letter != '\n')
        if (letter != '\r') line += letter;
    return line;
}

}  // namespace Zorvex::Testing
