#include <ostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"

namespace Zorvex::Controller {

ExitCode RunWindows(Session& session, const WindowsCommand& command, Output& output) {
    const auto windows = session.System().TopLevelWindows(command.all ? Loader::WindowFilter::All : Loader::WindowFilter::Visible);
    // A system that has no windows at all says why; one that has none now describes no window either, for another reason.
    if (windows.empty())
        if (const auto none = session.System().Describe(nullptr); !none && none.Error().problem == Loader::LoadProblem::NotOnThisSystem)
            throw CommandFailure(none.Error());
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("windows").BeginArray();
        for (const auto& window : windows) {
            json.BeginObject();
            json.Key("handle").Number(static_cast<std::uint32_t>(reinterpret_cast<UINT_PTR>(window.window)));
            json.Key("process").Number(window.processId).Key("thread").Number(window.threadId);
            json.Key("title").Text(window.title).Key("class").Text(window.windowClass).Key("program").Text(window.processName);
            json.Key("bitness").Text(std::string_view(ToText(window.bitness))).Key("visible").Flag(window.visible);
            json.Key("rectangle").Rectangle(window.rectangle);
            json.EndObject();
        }
        json.EndArray().EndObject().Finish();
    } else {
        for (const auto& window : windows) {
            output.out << HandleText(window.window) << "  pid " << window.processId << "  " << ToText(window.bitness) << "  "
                       << NarrowText(window.windowClass) << "  " << QuotedText(window.title) << "  " << RectangleText(window.rectangle)
                       << (window.visible ? "" : "  hidden");
            if (!window.processName.empty()) output.out << "  " << NarrowText(window.processName);
            output.out << '\n';
        }
    }
    if (!windows.empty()) return ExitCode::Done;
    output.err << (command.all ? "there is no window\n" : "there is no visible window\n");
    return ExitCode::NotFound;
}

ExitCode RunUnload(Session& session, const UnloadCommand&, Output& output) {
    session.Open();
    session.Unload();
    if (output.json) JsonWriter(output.out).BeginObject().Key("unloaded").Flag(true).EndObject().Finish();
    else output.out << "unloaded\n";
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
