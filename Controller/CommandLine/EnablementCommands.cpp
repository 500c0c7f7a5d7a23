// Commands that wake applications, and those about browser windows.
#include <ostream>

#include "Controller/CommandLine/Commands.h"

namespace Zorvex::Controller {

namespace {

const char* ScopeText(WakeScope scope) {
    switch (scope) {
        case WakeScope::Window: return "window";
        case WakeScope::Descendants: return "descendants";
        case WakeScope::TopLevels: return "top-levels";
        case WakeScope::Chromium: break;
    }
    return "chromium";
}

bool Wake(Session& session, WakeScope scope) {
    const HWND window = session.Window().window;
    switch (scope) {
        case WakeScope::Window: return session.Call(TriggerAccessibilityRequest{window, TriggerScope::Window}).success;
        case WakeScope::Descendants: return session.Call(TriggerAccessibilityRequest{window, TriggerScope::Descendants}).success;
        case WakeScope::TopLevels: return session.Call(TriggerAccessibilityRequest{nullptr, TriggerScope::TopLevels}).success;
        case WakeScope::Chromium: break;
    }
    return session.Call(Ia2TriggerChromiumRequest{{window}}).success;
}

std::string WindowText(const Loader::WindowInfo& window) { return HandleText(window.window) + " " + QuotedText(window.title); }

std::string WokenText(WakeScope scope, const Loader::WindowInfo& window) {
    switch (scope) {
        case WakeScope::Window: return "asked window " + WindowText(window);
        case WakeScope::Descendants: return "asked window " + WindowText(window) + " and those below it";
        case WakeScope::TopLevels: return "asked the top-level windows";
        case WakeScope::Chromium: break;
    }
    return "asked the Chromium window " + WindowText(window) + ", its content and its document";
}

// Why nothing was woken, as far as the server tells.
std::string NotWokenText(WakeScope scope, const Loader::WindowInfo& window) {
    switch (scope) {
        case WakeScope::Window: return "window " + WindowText(window) + " is none of Chromium, Firefox or Adobe Reader";
        case WakeScope::Descendants:
            return "neither window " + WindowText(window) + " nor one below it is of Chromium, Firefox or Adobe Reader";
        case WakeScope::TopLevels: return "no top-level window is of Chromium, Firefox or Adobe Reader";
        case WakeScope::Chromium: break;
    }
    return "window " + WindowText(window) + " is no Chromium frame, or one of its elements refused an answer";
}

}  // namespace

ExitCode RunWake(Session& session, const WakeCommand& command, Output& output) {
    session.Open();
    const bool done = Wake(session, command.scope);
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("done").Flag(done).Key("scope").Text(std::string_view(ScopeText(command.scope)));
        json.EndObject().Finish();
    }
    if (!done) {
        output.err << NotWokenText(command.scope, session.Window()) << '\n';
        return ExitCode::NotFound;
    }
    if (!output.json) output.out << WokenText(command.scope, session.Window()) << '\n';
    return ExitCode::Done;
}

ExitCode RunDialog(Session& session, const DialogCommand&, Output& output) {
    session.Open();
    const FindBrowserDialogResponse answer = session.Call(FindBrowserDialogRequest{{session.Window().window}});
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("found").Flag(answer.found).Key("rectangle");
        if (answer.found) json.Rectangle(answer.rectangle);
        else json.Null();
        json.EndObject().Finish();
    }
    if (!answer.found) {
        output.err << "window " << WindowText(session.Window()) << " shows no dialog of a browser\n";
        return ExitCode::NotFound;
    }
    if (!output.json) output.out << "dialog  " << RectangleText(answer.rectangle) << '\n';
    return ExitCode::Done;
}

ExitCode RunMarkerTab(Session& session, const MarkerTabCommand&, Output& output) {
    session.Open();
    const HWND window = session.Window().window;
    const auto ids = session.Call(ExtractWindowIdFromBrowserMarkerTabRequest{{window}}).windowIds;
    const auto known = ids.find(window);
    const bool isFound = known != ids.end() && known->second != -1;
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("windowId");
        if (isFound) json.Number(known->second);
        else json.Null();
        json.EndObject().Finish();
    }
    if (!isFound) {
        output.err << "window " << WindowText(session.Window()) << " has no marker tab\n";
        return ExitCode::NotFound;
    }
    if (!output.json) output.out << known->second << '\n';
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
