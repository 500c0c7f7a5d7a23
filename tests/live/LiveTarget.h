// A program of its own for each test, and the echo server in it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Controller/Loader/ILoaderSystem.h"
#include "tests/live/EchoOrders.h"

namespace Zorvex::Testing {

using Bytes = std::vector<std::uint8_t>;

// An order with its 32-bit argument.
Bytes Order(EchoOrder order);
Bytes Order(EchoOrder order, std::uint32_t argument);
std::uint32_t AsNumber(const Bytes& bytes);
std::string AsText(const Bytes& bytes);

// The folder of the test program, with a backslash at its end.
std::wstring LiveFolder();
// Host and echo server beside the test program.
Loader::LoaderOptions EchoOptions();

DWORD CountThreads(DWORD processId);

// Runs until the test is over. Throws std::runtime_error when it doesn't start.
class LiveTarget {
public:
    // A command line; without one a test window of a title that no other has.
    LiveTarget();
    explicit LiveTarget(const std::wstring& command);
    ~LiveTarget();
    LiveTarget(const LiveTarget&) = delete;

    const Loader::WindowInfo& Window() const { return m_window; }
    void Kill() const;
    // The window's thread sleeps, without a word to anybody.
    void Hang(DWORD milliseconds) const { PostMessageW(m_window.window, WM_APP, milliseconds, 0); }

    // Throws std::runtime_error when it can't be opened.
    std::unique_ptr<Loader::ITarget> Open(const Loader::LoaderOptions& options = EchoOptions()) const;

    DWORD ThreadCount() const;
    bool HasModule(const wchar_t* fileName) const;
    // The host goes a moment after the answer; this waits for that, at most two seconds.
    bool ModuleGoes(const wchar_t* fileName) const;
    // The same for the host. Wine keeps every library that came by a hook, so there it is true anyhow; the tests
    // count the host's references instead.
    bool HostGoes() const;

private:
    void Start(const std::wstring& command);

    Loader::WindowInfo m_window;
};

}  // namespace Zorvex::Testing
