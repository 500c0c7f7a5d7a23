#include <ostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/DesktopRecorder.h"

namespace Zorvex::Controller {

ExitCode RunRecord(Session& session, const RecordCommand& command, Output& output) {
    session.Open();
    const Recording recording = RecordDesktop(session);
    if (command.file == L"-") {
        output.out << recording.text;
        return ExitCode::Done;
    }
    WriteWholeFile(command.file, recording.text);
    if (output.json)
        JsonWriter(output.out).BeginObject().Key("file").Text(command.file).Key("windows").Number(static_cast<std::int64_t>(recording.windows))
            .Key("elements").Number(static_cast<std::int64_t>(recording.elements)).EndObject().Finish();
    else output.out << NarrowText(command.file) << ": " << recording.windows << " windows, " << recording.elements << " elements\n";
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
