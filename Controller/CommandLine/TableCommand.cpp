// The table around an element: as XML, as the server gives it, or for other programs.
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/TableXml.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex::Controller {

namespace {

struct FlagName {
    std::uint32_t flag;
    const char* name;
    const char* meaning;
};
constexpr FlagName kFlagNames[] = {
    {SameSessionEncountered, "SameSessionEncountered", "the same cells as the last time"},
    {MightBeDuringLoad, "MightBeDuringLoad", "the page might still be loading; this comes with every page that can be compared"},
    {CannotDetermineSession, "CannotDetermineSession", "a cell has no unique id, so the page can't be compared"},
    {PreviousValidSessionDataFound, "PreviousValidSessionDataFound", "there was an earlier extraction to compare with"},
    {PreviousInvalidSessionDataFound, "PreviousInvalidSessionDataFound", "there was an earlier extraction in which a cell had no unique id"},
};

// All records of comma-separated values have as many fields as the longest, so a table of one long row and many short
// ones is little for the server and much for us.
constexpr std::size_t kMostFields = std::size_t(1) << 25;

bool HasTooManyFields(const Table& table) { return table.ColumnNames().size() > kMostFields / (table.rows.size() + 1); }

void ShowFlags(std::uint32_t flags, std::ostream& out) {
    if (flags == 0) out << "session: not kept; only windows of Chromium and Firefox have sessions\n";
    for (const FlagName& item : kFlagNames)
        if (flags & item.flag) out << "session: " << item.name << ": " << item.meaning << '\n';
}

void WriteJson(const Table& table, const ExtractTableResponse& response, bool hasSession, std::ostream& out) {
    JsonWriter json(out);
    json.BeginObject().Key("columns").BeginArray();
    for (const std::wstring& name : table.ColumnNames()) json.Text(name);
    json.EndArray().Key("rows").BeginArray();
    for (const auto& row : table.rows) {
        json.BeginArray();
        for (const TableCell& cell : row) json.Text(cell.text);
        json.EndArray();
    }
    json.EndArray();
    if (hasSession) {
        json.Key("session").BeginArray();
        for (const FlagName& item : kFlagNames)
            if (response.sessionFlags & item.flag) json.Text(std::string_view(item.name));
        json.EndArray();
    }
    json.EndObject().Finish();
}

ExtractTableResponse Extract(Session& session, const TableCommand& command) {
    ExtractTableRequest request;
    request.element = FindTarget(session, command.target);
    request.columnNamesFromHeader = command.noHeader ? 0 : 1;
    request.cleanup = command.cleanup ? 1 : 0;
    request.sessionId = command.session;
    request.maxRows = command.maximumRows;
    ExtractTableResponse response = session.Call(request);
    if (!response.success)
        throw CommandFailure(ExitCode::NotFound, command.cleanup ? "the window keeps no sessions; only those of Chromium and Firefox do"
                                                                 : "there is no table around the element, or it can't be read; --log error says which");
    return response;
}

}  // namespace

ExitCode RunTable(Session& session, const TableCommand& command, Output& output) {
    const ExtractTableResponse response = Extract(session, command);
    if (command.cleanup) return ExitCode::Done;
    if (command.csv || output.json) {
        const auto table = ReadTableXml(response.xml);
        if (!table) throw CommandFailure(ExitCode::TargetProblem, "the server's answer is no table");
        if (!output.json && HasTooManyFields(*table))
            throw CommandFailure(ExitCode::TargetProblem, "the table would have too many empty fields; it can be read without --csv");
        if (output.json) WriteJson(*table, response, !command.session.empty(), output.out);
        else output.out << WriteTableCsv(*table);
    } else {
        const std::string xml = NarrowText(response.xml);
        output.out << xml << (xml.ends_with('\n') ? "" : "\n");
    }
    // Apart from the table, which another program may read.
    if (!command.session.empty() && !output.json) ShowFlags(response.sessionFlags, output.err);
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
