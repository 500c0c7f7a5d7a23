// A desktop file as a system of windows. The server runs in this very process, on the desktop that is installed.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

#include "Common/include/ArchiveException.h"
#include "Common/include/HeapAllocator.h"
#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/SystemChoice.h"
#include "Platform/Simulated/Desktop.h"
#include "Platform/Simulated/DesktopFile.h"
#include "Platform/Simulated/InstalledDesktop.h"
#include "Platform/Simulated/System.h"

// The server's export; the controller knows no more of it.
extern "C" void ExecuteAa(const Zorvex::RequestBuffer* inBuffer, Zorvex::RequestBuffer* outBuffer);

namespace Zorvex::Controller {

namespace {

using Loader::LoadFailure;
using Loader::LoadProblem;

// The simulated clock stands still while the server works, so its own time-outs would never come. Where a request takes
// four fifths of its time by the clock on the wall, as a search may, the simulated clock is moved on until it ends.
// Before that nothing moves, so that answers don't depend on the machine.
class Deadline {
public:
    Deadline() : m_thread([this](std::stop_token stop) { Watch(stop); }) {}

    // While a request runs.
    class Running {
    public:
        Running(Deadline& deadline, std::chrono::milliseconds timeout) : m_deadline(deadline) { m_deadline.Set(timeout); }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        ~Running() { m_deadline.Set({}); }

    private:
        Deadline& m_deadline;
    };

private:
    void Set(std::chrono::milliseconds timeout) {
        const std::lock_guard lock(m_mutex);
        m_timeout = timeout;
        m_end = std::chrono::steady_clock::now() + timeout * 8 / 10;
    }

    void Watch(const std::stop_token& stop) {
        std::unique_lock lock(m_mutex);
        while (!m_changed.wait_for(lock, stop, std::chrono::milliseconds(20), [&] { return stop.stop_requested(); }))
            if (m_timeout.count() > 0 && std::chrono::steady_clock::now() >= m_end)
                Simulated::AdvanceClock(static_cast<ULONGLONG>(m_timeout.count()));
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::chrono::milliseconds m_timeout{};  // zero: no request runs
    std::chrono::steady_clock::time_point m_end;
    std::jthread m_thread;
};

class DesktopTarget final : public Loader::ITarget {
public:
    explicit DesktopTarget(Loader::LoaderOptions options) : m_options(std::move(options)) {}

    Loader::LoadResult<Loader::Answer> Execute(std::span<const std::uint8_t> request, std::chrono::milliseconds timeout) override {
        RequestBuffer in, out;
        in.append(request.data(), request.size());
        const Deadline::Running running(m_deadline, timeout);
        try {
            ExecuteAa(&in, &out);
        } catch (const ArchiveException& exception) {
            return LoadFailure{LoadProblem::ServerException, exception.Text()};
        } catch (const std::exception& exception) {
            return LoadFailure{LoadProblem::ServerException, exception.what()};
        }
        if (out.empty()) return LoadFailure{LoadProblem::NoResponse, "the server couldn't read the request, or doesn't answer its kind"};
        Loader::Answer answer;
        answer.response.assign(out.data(), out.data() + out.size());
        return answer;
    }
    Loader::LoadResult<bool> ServerStays(std::chrono::milliseconds) override { return false; }
    std::optional<LoadFailure> Unload(std::chrono::milliseconds) override { return std::nullopt; }
    const Loader::LoaderOptions& Options() const override { return m_options; }
    void SetAfterRequest(Loader::AfterRequest afterRequest) override { m_options.afterRequest = afterRequest; }

private:
    Loader::LoaderOptions m_options;
    Deadline m_deadline;
};

class DesktopSystem final : public Loader::ILoaderSystem {
public:
    explicit DesktopSystem(std::shared_ptr<Simulated::Desktop> desktop) : m_desktop(desktop), m_installed(std::move(desktop)) {}

    std::vector<Loader::WindowInfo> TopLevelWindows(Loader::WindowFilter filter) override {
        std::vector<HWND> handles;
        ::EnumWindows([](HWND window, LPARAM list) -> BOOL {
            reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
            return TRUE;
        }, reinterpret_cast<LPARAM>(&handles));
        std::vector<Loader::WindowInfo> windows;
        for (const HWND handle : handles) {
            auto info = Describe(handle);
            if (info && (info->visible || filter == Loader::WindowFilter::All)) windows.push_back(std::move(*info));
        }
        return windows;
    }

    Loader::LoadResult<Loader::WindowInfo> Describe(HWND window) override {
        if (!::IsWindow(window)) return LoadFailure{LoadProblem::NoSuchWindow, "the handle names no window"};
        Loader::WindowInfo info;
        info.window = window;
        info.threadId = ::GetWindowThreadProcessId(window, &info.processId);
        wchar_t text[1024] = {};
        info.title.assign(text, static_cast<std::size_t>(::GetWindowTextW(window, text, 1024)));
        info.windowClass.assign(text, static_cast<std::size_t>(::GetClassNameW(window, text, 1024)));
        ::GetWindowRect(window, &info.rectangle);
        info.visible = ::IsWindowVisible(window);
        info.bitness = Loader::OwnBitness();
        for (const Simulated::ProcessData& process : m_desktop->Model().processes)
            if (process.id == info.processId) info.processName = process.path.substr(process.path.find_last_of(L'\\') + 1);
        return info;
    }

    bool ProcessExists(DWORD processId) override {
        for (const auto& window : TopLevelWindows(Loader::WindowFilter::All))
            if (window.processId == processId) return true;
        return false;
    }

    Loader::LoadResult<Loader::WindowInfo> Launch(const std::wstring&, std::chrono::milliseconds, std::stop_token) override {
        return LoadFailure{LoadProblem::LaunchFailed, "a desktop file has its windows already"};
    }

    Loader::LoadResult<std::unique_ptr<Loader::ITarget>> Open(HWND window, const Loader::LoaderOptions& options) override {
        if (!::IsWindow(window)) return LoadFailure{LoadProblem::NoSuchWindow, "the handle names no window"};
        return std::unique_ptr<Loader::ITarget>(std::make_unique<DesktopTarget>(options));
    }

private:
    std::shared_ptr<Simulated::Desktop> m_desktop;
    Simulated::InstalledDesktop m_installed;
};

// The server looks at its level again after this time. The clock is moved while no desktop is open, whose changes it
// would bring about.
constexpr ULONGLONG kLevelRefresh = 4'000;

class DesktopLogWatch final : public LogWatch {
public:
    DesktopLogWatch(const std::wstring& level, std::function<void(const std::string&)> show) : m_show(std::move(show)) {
        Simulated::SetUserEnvironment(L"ZORVEX_LOG_LEVEL", level);
        Simulated::AdvanceClock(kLevelRefresh);
        Simulated::ClearDebugOutput();
    }
    ~DesktopLogWatch() override {
        for (std::string line : Simulated::DebugOutput()) {
            while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
            m_show(line);
        }
        Simulated::RemoveUserEnvironment(L"ZORVEX_LOG_LEVEL");
        Simulated::AdvanceClock(kLevelRefresh);
    }

private:
    std::function<void(const std::string&)> m_show;
};

}  // namespace

std::unique_ptr<Loader::ILoaderSystem> OpenDesktopFile(const std::wstring& path) {
    const std::string text = ReadWholeFile(path);
    try {
        return std::make_unique<DesktopSystem>(Simulated::ReadDesktop(text));
    } catch (const Simulated::DesktopFileError& error) {
        throw CommandFailure(ExitCode::TargetProblem, NarrowText(path) + ": " + error.what());
    }
}

// Nothing is loaded here.
std::wstring LibraryPath(const std::wstring& name) { return name; }

// A desktop file has no pixels.
std::optional<Bitmap> TakePicture(HWND) { return std::nullopt; }

std::uint32_t OwnClientNumber() { return ::GetCurrentProcessId(); }

std::unique_ptr<LogWatch> WatchLog(const std::wstring& level, std::function<void(const std::string&)> show) {
    return std::make_unique<DesktopLogWatch>(level, std::move(show));
}

}  // namespace Zorvex::Controller
