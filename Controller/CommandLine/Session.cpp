#include "Controller/CommandLine/Session.h"

#include <algorithm>
#include <iostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Identifier.h"
#include "Controller/Loader/TargetChooser.h"

namespace Zorvex::Controller {

namespace {

template <class Value>
Value Checked(Loader::LoadResult<Value> result) {
    if (!result) throw CommandFailure(result.Error());
    return std::move(*result);
}

constexpr std::chrono::milliseconds kCleaningUp{2'000};

bool Holds(const RECT& rectangle, POINT point) { return ::PtInRect(&rectangle, point); }

std::wstring UpperCase(std::wstring text) {
    for (wchar_t& unit : text)
        if (unit >= L'a' && unit <= L'z') unit = static_cast<wchar_t>(unit - L'a' + L'A');
    return text;
}

}  // namespace

Session::Session(const GeneralOptions& options) : m_options(options) {
    if (!m_options.logLevel.empty())
        m_log = WatchLog(UpperCase(m_options.logLevel), [](const std::string& line) { std::cerr << line + "\n"; });
    m_system = m_options.desktopFile.empty() ? Loader::CreateLoaderSystem() : OpenDesktopFile(m_options.desktopFile);
}

Session::~Session() { Close(); }

void Session::Close() {
    if (!m_transport) return;
    // A target that doesn't answer any more doesn't keep a person waiting twice.
    const auto limit = std::min(m_options.timeout, kCleaningUp);
    m_client->SetTimeout(limit);
    try {
        if (!m_stays) m_client->Call(UnregisterAllContainersByClientPidRequest{m_clientNumber, nullptr});
    } catch (...) {
        // The target keeps the elements until it ends; nothing else can be done about it here.
    }
    if (!m_stays) m_transport->Target().Unload(limit);
    m_client.reset();
    m_transport.reset();
}

Loader::WindowInfo Session::Choose() {
    if (m_options.windowHandle) return Checked(m_system->Describe(HandleOf(m_options.windowHandle)));
    if (m_options.processId) return Checked(Loader::FindWindowByProcess(*m_system, *m_options.processId));
    if (!m_options.windowTitle.empty()) return Checked(Loader::FindWindowByTitle(*m_system, m_options.windowTitle));
    if (!m_options.launch.empty()) return Checked(m_system->Launch(m_options.launch, m_options.timeout, {}));
    if (m_options.desktopFile.empty())
        throw CommandFailure(ExitCode::WrongArguments, "which window? Say --window TITLE, --pid N, --handle H or --launch COMMAND");
    auto windows = m_system->TopLevelWindows(Loader::WindowFilter::Visible);
    if (windows.empty()) throw CommandFailure(ExitCode::TargetProblem, "the desktop file has no visible window");
    return std::move(windows.front());
}

bool Session::HasChoice() const {
    return m_options.windowHandle || m_options.processId || !m_options.windowTitle.empty() || !m_options.launch.empty();
}

void Session::Open() {
    if (!m_transport) OpenWindow(Choose());
}

void Session::MoveTo(HWND window) {
    Loader::WindowInfo info = Checked(m_system->Describe(window));
    // Requests run on the thread that owns the window, so another thread's window needs a way of its own.
    if (m_transport && info.threadId == m_window.threadId) {
        m_window = std::move(info);
        return;
    }
    Close();
    OpenWindow(std::move(info));
}

void Session::OpenAt(POINT point) {
    if (HasChoice()) return Open();
    for (Loader::WindowInfo& window : m_system->TopLevelWindows(Loader::WindowFilter::Visible))
        if (Holds(window.rectangle, point)) return OpenWindow(std::move(window));
    throw CommandFailure(ExitCode::TargetProblem, "there is no visible window at " + std::to_string(point.x) + "," + std::to_string(point.y));
}

void Session::OpenWindow(Loader::WindowInfo window) {
    m_window = std::move(window);
    Loader::LoaderOptions options;
    options.serverPath = LibraryPath(m_options.serverLibrary);
    options.besidePath = LibraryPath(m_options.besideLibrary);
    options.afterRequest = Loader::AfterRequest::Stay;
    auto target = Checked(m_system->Open(m_window.window, options));
    const bool keptBefore = Checked(target->ServerStays(m_options.timeout));
    m_stays = keptBefore || m_options.keep;
    m_clientNumber = m_stays ? kKeptClient : OwnClientNumber();
    m_transport = std::make_unique<Loader::LoaderTransport>(std::move(target));
    m_client = std::make_unique<Client::Client>(*m_transport, m_options.timeout);
}

AAObjectIdentifier Session::Root() const { return {m_window.window, 0, CHILDID_SELF, 0, m_clientNumber, m_window.window}; }

RequestBuffer Session::CallRaw(const RequestBuffer& request) {
    RequestBuffer response;
    if (const auto failure = m_client->CallRaw(request, response)) throw CommandFailure(*failure);
    return response;
}

void Session::Unload() {
    m_stays = true;  // nothing is left for the end of the run
    if (const auto failure = m_transport->Target().Unload(m_options.timeout)) throw CommandFailure(*failure);
}

std::uint32_t Session::SearchMilliseconds() const {
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(m_options.timeout.count() * 8 / 10, 1, 0x7FFFFFFF));
}

}  // namespace Zorvex::Controller
