#include <ostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/FailedSearch.h"
#include "Controller/CommandLine/Identifier.h"
#include "RuntimeCore/Selectors/Unified/ISearchErrorBase.h"
#include "RuntimeCore/Selectors/Values/ISelectorTag.h"

namespace Zorvex::Controller {

namespace {

Selector Parsed(const std::wstring& text) {
    Selector selector;
    SelectorTextError error;
    if (!ParseSelector(text, selector, error)) throw CommandFailure(ExitCode::WrongArguments, NarrowText(error.Show(text)));
    for (const auto& tag : selector.tags)
        if (tag->GetTagKind() != TagKind::Aa)
            throw CommandFailure(ExitCode::WrongArguments, "the search in a window knows ctrl tags alone, not " + NarrowText(WriteTag(*tag)));
    return selector;
}

void ShowFound(const std::vector<Search::AaCrossProcessSearchResult>& results, const std::vector<ElementView>& views, Output& output) {
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("found").Flag(true).Key("results").BeginArray();
        for (std::size_t i = 0; i < results.size(); ++i) {
            json.BeginObject();
            WriteView(json, views[i]);
            json.Key("score").Fraction(results[i].stats.mean).EndObject();
        }
        json.EndArray().EndObject().Finish();
        return;
    }
    for (std::size_t i = 0; i < results.size(); ++i)
        output.out << IdentifierText(results[i].identifier) << "  " << ScoreText(results[i].stats.mean) << "  " << ViewText(views[i]) << '\n';
}

}  // namespace

ExitCode RunFind(Session& session, const FindCommand& command, Output& output) {
    const Selector selector = Parsed(command.selector);
    session.Open();
    FindSelectorsRequest request;
    request.root = command.from.text.empty() ? session.Root() : FindTarget(session, command.from);
    request.timeoutMilliseconds = session.SearchMilliseconds();
    Search::SelectorEntry& entry = request.selectors.emplace_back();
    entry.tags = selector.tags;
    entry.options.scope = selector.scope;
    entry.options.maxResults = command.maximum;
    entry.options.resultPolicy = command.policy;
    entry.options.minimumScore = command.minimumScore;
    entry.options.acceptHidden = !command.visibleOnly;
    // What can be seen or not decides nothing unless the person asks for it.
    entry.options.acceptHiddenAtFirstLevel = !command.visibleOnly;
    entry.options.keepIntermediateOnError = true;
    const auto response = session.Call(request);
    if (!response.success || response.results.empty())
        throw CommandFailure(ExitCode::NotFound, "the server has no element to search from: the window is gone, or not accessible");

    const auto& result = response.results.front();
    if (!result.results.empty()) {
        std::vector<AAObjectIdentifier> found;
        for (const auto& element : result.results) found.push_back(element.identifier);
        ShowFound(result.results, ReadViews(session, found), output);
        return ExitCode::Done;
    }
    const SearchReport report = ExamineFailure(session, request.root, selector, result.intermediate);
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("found").Flag(false);
        WriteReport(json, report, selector);
        json.EndObject().Finish();
    } else {
        PrintReport(report, selector, command, output.out);
    }
    return ExitCode::NotFound;
}

}  // namespace Zorvex::Controller
