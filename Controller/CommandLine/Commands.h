// The commands. Each answers the exit code, and throws CommandFailure where it can't go on.
#pragma once

#include <string>
#include <vector>

#include "Controller/CommandLine/Output.h"
#include "Controller/CommandLine/Session.h"

namespace Zorvex::Controller {

ExitCode RunWindows(Session& session, const WindowsCommand& command, Output& output);
ExitCode RunTree(Session& session, const TreeCommand& command, Output& output);
ExitCode RunAt(Session& session, const AtCommand& command, Output& output);
ExitCode RunAttrs(Session& session, const AttrsCommand& command, Output& output);
ExitCode RunFind(Session& session, const FindCommand& command, Output& output);
ExitCode RunSelector(Session& session, const SelectorCommand& command, Output& output);
ExitCode RunTable(Session& session, const TableCommand& command, Output& output);
ExitCode RunText(Session& session, const TextCommand& command, Output& output);
ExitCode RunAction(Session& session, const ActionCommand& command, Output& output);
ExitCode RunSibling(Session& session, const SiblingCommand& command, Output& output);
ExitCode RunFocused(Session& session, const FocusedCommand& command, Output& output);
ExitCode RunEqual(Session& session, const EqualCommand& command, Output& output);
ExitCode RunItems(Session& session, const ItemsCommand& command, Output& output);
ExitCode RunSelected(Session& session, const SelectedCommand& command, Output& output);
ExitCode RunSelect(Session& session, const SelectCommand& command, Output& output);
ExitCode RunClearSelection(Session& session, const ClearSelectionCommand& command, Output& output);
ExitCode RunWake(Session& session, const WakeCommand& command, Output& output);
ExitCode RunDialog(Session& session, const DialogCommand& command, Output& output);
ExitCode RunMarkerTab(Session& session, const MarkerTabCommand& command, Output& output);
ExitCode RunCall(Session& session, const CallCommand& command, Output& output);
ExitCode RunRecord(Session& session, const RecordCommand& command, Output& output);
ExitCode RunPicture(Session& session, const PictureCommand& command, Output& output);
ExitCode RunUnload(Session& session, const UnloadCommand& command, Output& output);

// The whole program but for where its arguments come from: reads them, runs the command, writes to `out` and `err`, and
// answers the exit code. Arguments are UTF-8, without the program's name.
int RunCommandLine(std::vector<std::string> arguments, std::ostream& out, std::ostream& err);

}  // namespace Zorvex::Controller
