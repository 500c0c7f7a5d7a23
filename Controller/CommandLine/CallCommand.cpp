#include <ostream>

#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/RecordJson.h"

namespace Zorvex::Controller {

ExitCode RunCall(Session& session, const CallCommand& command, Output& output) {
    if (command.list) {
        output.out << (output.json ? ListRequestsAsJson() : ListRequests());
        return ExitCode::Done;
    }
    const auto id = FindRequest(command.request);
    if (!id) throw CommandFailure(ExitCode::WrongArguments, "there is no request '" + command.request + "'; there are:\n" + ListRequests());
    session.Open();
    const RequestBuffer request = EncodeRequestJson(*id, command.json, {session.ClientNumber(), session.Window().window, session.SearchMilliseconds()});
    const RequestBuffer response = session.CallRaw(request);
    if (response.empty() && *id != RequestId::UnregisterAllContainersByClientPid)
        throw CommandFailure(ExitCode::NotFound, "the server answered nothing: it couldn't read the request, or doesn't serve it");
    output.out << DecodeResponseJson(*id, response) << '\n';
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
