#include <ostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/FailedSearch.h"
#include "Controller/CommandLine/Identifier.h"
#include "RuntimeCore/Selectors/Unified/ISearchErrorBase.h"
#include "RuntimeCore/Selectors/Values/ISelectorTag.h"

namespace Zorvex::Controller {

namespace {

SplitSelector Parsed(const std::wstring& text) {
    Selector selector;
    SelectorTextError error;
    if (!ParseSelector(text, selector, error)) throw CommandFailure(ExitCode::WrongArguments, NarrowText(error.Show(text)));
    return Split(selector);
}

Search::SelectorEntry EntryOf(const Selector& selector, const FindCommand& command) {
    Search::SelectorEntry entry;
    entry.tags = selector.tags;
    entry.options.scope = selector.scope;
    entry.options.maxResults = command.maximum;
    entry.options.resultPolicy = command.policy;
    entry.options.minimumScore = command.minimumScore;
    entry.options.acceptHidden = !command.visibleOnly;
    // What can be seen or not decides nothing unless the person asks for it.
    entry.options.acceptHiddenAtFirstLevel = !command.visibleOnly;
    entry.options.keepIntermediateOnError = true;
    return entry;
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

// A selector of windows alone finds their own elements.
ExitCode ShowWindows(Session& session, const std::vector<HWND>& windows, const FindCommand& command, Output& output) {
    std::vector<Search::AaCrossProcessSearchResult> results;
    std::vector<ElementView> views;
    for (const HWND window : windows) {
        if (results.size() == command.maximum) break;
        session.MoveTo(window);
        Search::AaCrossProcessSearchResult& result = results.emplace_back();
        result.identifier = WindowElement(session, window);
        result.stats.mean = 1;
        views.push_back(ReadViews(session, {result.identifier}).front());
    }
    ShowFound(results, views, output);
    return ExitCode::Done;
}

}  // namespace

ExitCode RunFind(Session& session, const FindCommand& command, Output& output) {
    const SplitSelector split = Parsed(command.selector);
    const bool fromElement = !command.from.text.empty();
    if (fromElement && !split.windows.empty())
        throw CommandFailure(ExitCode::WrongArguments, "--from takes the place of the windows: leave the wnd tags out");
    const AAObjectIdentifier from = fromElement ? FindTarget(session, command.from) : AAObjectIdentifier{};
    const std::vector<HWND> windows = OpenWindows(session, split);
    if (split.elements.empty()) return ShowWindows(session, windows, command, output);

    const Selector selector = split.ElementSelector();
    std::optional<SearchReport> report;
    for (const HWND window : windows) {
        session.MoveTo(window);
        FindSelectorsRequest request;
        request.root = fromElement ? from : session.Root();
        request.timeoutMilliseconds = session.SearchMilliseconds();
        request.selectors.push_back(EntryOf(selector, command));
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
        // The frontmost window is the one that was most likely meant.
        if (!report) report = ExamineFailure(session, request.root, selector, result.intermediate);
    }
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("found").Flag(false);
        WriteReport(json, *report, selector);
        json.EndObject().Finish();
    } else {
        PrintReport(*report, selector, command, output.out);
    }
    return ExitCode::NotFound;
}

}  // namespace Zorvex::Controller
