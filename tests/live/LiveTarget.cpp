#include "tests/live/LiveTarget.h"

#include <cstring>
#include <stdexcept>

#include "Common/include/SafeObject.h"
#include "Controller/Loader/Windows/ProcessInfo.h"

#include <tlhelp32.h>

namespace Zorvex::Testing {

using namespace Zorvex::Loader;

Bytes Order(EchoOrder order) { return {static_cast<std::uint8_t>(order)}; }

Bytes Order(EchoOrder order, std::uint32_t argument) {
    Bytes bytes(5);
    bytes[0] = static_cast<std::uint8_t>(order);
    std::memcpy(bytes.data() + 1, &argument, sizeof(argument));
    return bytes;
}

std::uint32_t AsNumber(const Bytes& bytes) {
    std::uint32_t number = 0;
    if (bytes.size() == sizeof(number)) std::memcpy(&number, bytes.data(), sizeof(number));
    return number;
}

std::string AsText(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

std::wstring LiveFolder() { return FolderOfThisProgram(); }

LoaderOptions EchoOptions() {
    LoaderOptions options;
    options.hostPath = LiveFolder() + HostLibraryName(OwnBitness());
    options.serverPath = LiveFolder() + L"echo_server.dll";
    return options;
}

LiveTarget::LiveTarget() {
    static int number = 0;
    Start(L"\"" + LiveFolder() + L"test_window.exe\" vantrel test " + std::to_wstring(GetCurrentProcessId()) + L"-" +
          std::to_wstring(++number));
}

LiveTarget::LiveTarget(const std::wstring& command) { Start(command); }

void LiveTarget::Start(const std::wstring& command) {
    auto window = CreateLoaderSystem()->Launch(command, std::chrono::seconds(30), {});
    if (!window) throw std::runtime_error(window.Error().ToString());
    m_window = *window;
}

LiveTarget::~LiveTarget() { Kill(); }

void LiveTarget::Kill() const {
    const SafeObject process(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, m_window.processId));
    if (!process) return;
    TerminateProcess(process.Get(), 1);
    WaitForSingleObject(process.Get(), 5000);
}

std::unique_ptr<ITarget> LiveTarget::Open(const LoaderOptions& options) const {
    auto target = CreateLoaderSystem()->Open(m_window.window, options);
    if (!target) throw std::runtime_error(target.Error().ToString());
    return std::move(*target);
}

DWORD LiveTarget::ThreadCount() const { return CountThreads(m_window.processId); }

DWORD CountThreads(DWORD processId) {
    const SafeObject snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    DWORD count = 0;
    for (BOOL more = Thread32First(snapshot.Get(), &entry); more; more = Thread32Next(snapshot.Get(), &entry)) {
        if (entry.th32OwnerProcessID == processId) ++count;
    }
    return count;
}

bool LiveTarget::HasModule(const wchar_t* fileName) const {
    const SafeObject snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, m_window.processId));
    MODULEENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Module32FirstW(snapshot.Get(), &entry); more; more = Module32NextW(snapshot.Get(), &entry)) {
        if (lstrcmpiW(entry.szModule, fileName) == 0) return true;
    }
    return false;
}

bool LiveTarget::ModuleGoes(const wchar_t* fileName) const {
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (!HasModule(fileName)) return true;
        Sleep(20);
    }
    return false;
}

bool LiveTarget::HostGoes() const {
    const bool wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    if (!wine) return ModuleGoes(HostLibraryName(OwnBitness()));
    // Its last thread still has to end.
    Sleep(100);
    return true;
}

}  // namespace Zorvex::Testing
