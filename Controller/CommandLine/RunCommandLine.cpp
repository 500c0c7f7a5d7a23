#include <exception>
#include <ostream>

#include "Controller/CommandLine/Arguments.h"
#include "Controller/CommandLine/Commands.h"

namespace Zorvex::Controller {

namespace {

ExitCode Run(Session& session, const WindowsCommand& command, Output& output) { return RunWindows(session, command, output); }
ExitCode Run(Session& session, const TreeCommand& command, Output& output) { return RunTree(session, command, output); }
ExitCode Run(Session& session, const AtCommand& command, Output& output) { return RunAt(session, command, output); }
ExitCode Run(Session& session, const AttrsCommand& command, Output& output) { return RunAttrs(session, command, output); }
ExitCode Run(Session& session, const FindCommand& command, Output& output) { return RunFind(session, command, output); }
ExitCode Run(Session& session, const SelectorCommand& command, Output& output) { return RunSelector(session, command, output); }
ExitCode Run(Session& session, const TableCommand& command, Output& output) { return RunTable(session, command, output); }
ExitCode Run(Session& session, const TextCommand& command, Output& output) { return RunText(session, command, output); }
ExitCode Run(Session& session, const ActionCommand& command, Output& output) { return RunAction(session, command, output); }
ExitCode Run(Session& session, const SiblingCommand& command, Output& output) { return RunSibling(session, command, output); }
ExitCode Run(Session& session, const FocusedCommand& command, Output& output) { return RunFocused(session, command, output); }
ExitCode Run(Session& session, const EqualCommand& command, Output& output) { return RunEqual(session, command, output); }
ExitCode Run(Session& session, const ItemsCommand& command, Output& output) { return RunItems(session, command, output); }
ExitCode Run(Session& session, const SelectedCommand& command, Output& output) { return RunSelected(session, command, output); }
ExitCode Run(Session& session, const SelectCommand& command, Output& output) { return RunSelect(session, command, output); }
ExitCode Run(Session& session, const ClearSelectionCommand& command, Output& output) { return RunClearSelection(session, command, output); }
ExitCode Run(Session& session, const WakeCommand& command, Output& output) { return RunWake(session, command, output); }
ExitCode Run(Session& session, const DialogCommand& command, Output& output) { return RunDialog(session, command, output); }
ExitCode Run(Session& session, const MarkerTabCommand& command, Output& output) { return RunMarkerTab(session, command, output); }
ExitCode Run(Session& session, const CallCommand& command, Output& output) { return RunCall(session, command, output); }
ExitCode Run(Session& session, const RecordCommand& command, Output& output) { return RunRecord(session, command, output); }
ExitCode Run(Session& session, const PictureCommand& command, Output& output) { return RunPicture(session, command, output); }
ExitCode Run(Session& session, const UnloadCommand& command, Output& output) { return RunUnload(session, command, output); }

}  // namespace

int RunCommandLine(std::vector<std::string> arguments, std::ostream& out, std::ostream& err) {
    try {
        const auto read = ReadArguments(std::move(arguments));
        if (const auto* text = std::get_if<ArgumentsText>(&read)) {
            (text->code == ExitCode::Done ? out : err) << text->text;
            return static_cast<int>(text->code);
        }
        const Invocation& invocation = std::get<Invocation>(read);
        Output output{out, err, invocation.general.json};
        Session session(invocation.general);
        const ExitCode code = std::visit([&](const auto& command) { return Run(session, command, output); }, invocation.command);
        if (!out.flush()) throw CommandFailure(ExitCode::TargetProblem, "the answer can't be written to the standard output");
        return static_cast<int>(code);
    } catch (const CommandFailure& failure) {
        err << failure.what() << '\n';
        return static_cast<int>(failure.Code());
    } catch (const std::exception& exception) {
        err << "unexpected: " << exception.what() << '\n';
        return static_cast<int>(ExitCode::TargetProblem);
    }
}

}  // namespace Zorvex::Controller
