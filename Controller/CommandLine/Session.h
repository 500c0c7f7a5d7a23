// One run of the command line: the window that was chosen, the way to its server, and what is cleaned up at the end.
#pragma once

#include <memory>
#include <string>

#include "Controller/Client/Connection.h"
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/Options.h"
#include "Controller/CommandLine/SystemChoice.h"
#include "Controller/Loader/ILoaderSystem.h"
#include "Controller/Loader/LoaderTransport.h"

namespace Zorvex::Controller {

// Elements that are kept beyond one run are registered under this number, so that later runs can name them. No process
// has it.
inline constexpr std::uint32_t kKeptClient = 1;

class Session {
public:
    // Opens the desktop file or the live system; no window yet. Throws CommandFailure, as all of the class does.
    explicit Session(const GeneralOptions& options);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    // Forgets this run's elements and takes the server out again, unless it is to be kept or was found kept.
    ~Session();

    const GeneralOptions& Options() const { return m_options; }
    Loader::ILoaderSystem& System() { return *m_system; }

    // Whether the options name a window.
    bool HasChoice() const;
    // The window that the options name; natively a desktop's first visible window where they name none.
    Loader::WindowInfo Choose();
    // Prepares the way to the chosen window. Nothing happens in a session that is open.
    void Open();
    // Goes on to another window: the server follows into its process.
    void MoveTo(HWND window);
    // The frontmost visible top-level window that holds the point, where the options name none.
    void OpenAt(POINT point);

    const Loader::WindowInfo& Window() const { return m_window; }
    std::uint32_t ClientNumber() const { return m_clientNumber; }
    // Names the window as a root for a search.
    AAObjectIdentifier Root() const;

    // Throws CommandFailure where there is no answer.
    template <class Request>
    typename Request::Response Call(const Request& request) {
        auto outcome = m_client->Call(request);
        if (!outcome) throw CommandFailure(outcome.Error());
        return std::move(*outcome);
    }
    // The response's bytes, empty if there is none.
    RequestBuffer CallRaw(const RequestBuffer& request);

    // Takes a kept server out.
    void Unload();

    // What a search may take, which leaves time for its answer to come back before the deadline.
    std::uint32_t SearchMilliseconds() const;

private:
    void OpenWindow(Loader::WindowInfo window);
    void Close();

    GeneralOptions m_options;
    std::unique_ptr<LogWatch> m_log;
    std::unique_ptr<Loader::ILoaderSystem> m_system;
    Loader::WindowInfo m_window;
    std::unique_ptr<Loader::LoaderTransport> m_transport;
    std::unique_ptr<Client::Client> m_client;
    std::uint32_t m_clientNumber = 0;
    bool m_stays = false;  // the server outlives this run
};

}  // namespace Zorvex::Controller
