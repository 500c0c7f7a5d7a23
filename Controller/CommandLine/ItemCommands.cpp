// Commands about the items of lists, combo boxes, trees, tables and tab lists.
#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/Elements.h"
#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"

namespace Zorvex::Controller {

namespace {

struct StatusName {
    SelectionResult status;
    const char* name;
};
constexpr StatusName kStatusNames[] = {
    {SelectionResult::Failure, "failure"},
    {SelectionResult::Success, "success"},
    {SelectionResult::NothingFoundNoSelectSupport, "nothing found, no select support"},
    {SelectionResult::NothingFound, "nothing found"},
    {SelectionResult::ItemDisabled, "item disabled"},
};

std::string NameOf(SelectionResult status) {
    for (const StatusName& row : kStatusNames)
        if (row.status == status) return row.name;
    return std::to_string(static_cast<int>(status));
}

std::string CodeText(HRESULT result) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(result));
    return code;
}

std::string ListText(const std::vector<std::wstring>& texts) {
    std::string list;
    for (const std::wstring& text : texts) list += (list.empty() ? "" : ", ") + QuotedText(text);
    return list;
}

// The element that a person named, and how it is called in answers.
struct Container {
    Container(Session& session, const TargetName& target)
        : element(FindTarget(session, target)), view(ReadViews(session, {element}).front()) {}

    AAObjectIdentifier element;
    ElementView view;
};

// Why the server said no, as far as it tells.
std::string RefusalText(SelectionResult status, const Container& container) {
    const std::string what = "the server said no for " + ViewText(container.view) + ": ";
    switch (status) {
        case SelectionResult::NothingFoundNoSelectSupport:
            return what + "nothing was found in it, and it is no list, combo box, tree, table or tab list";
        case SelectionResult::NothingFound: return what + "there is no such item in it";
        case SelectionResult::ItemDisabled: return what + "an item is disabled; --allow-disabled tries it all the same";
        default: return what + "it can't be worked on; --log error says why";
    }
}

void WriteItems(JsonWriter& json, const std::vector<std::wstring>& items) {
    json.Key("items").BeginArray();
    for (const std::wstring& item : items) json.Text(item);
    json.EndArray();
}

// The answer of a request that reads items.
void WriteRead(const Container& container, SelectionResult status, const std::vector<std::wstring>& items, const HRESULT* comboBox,
               std::ostream& out) {
    JsonWriter json(out);
    json.BeginObject().Key("status").Text(NameOf(status));
    WriteItems(json, items);
    if (comboBox) json.Key("comboBoxResult").Text(CodeText(*comboBox));
    WriteView(json, container.view);
    json.EndObject().Finish();
}

ExitCode Refuse(SelectionResult status, const Container& container, Output& output) {
    output.err << RefusalText(status, container) << '\n';
    return ExitCode::NotFound;
}

bool IsAmong(const std::vector<std::wstring>& items, const std::wstring& wanted) {
    return std::any_of(items.begin(), items.end(), [&](const std::wstring& item) { return WildcardMatch(wanted, item, true); });
}

// What was asked for and isn't selected.
std::vector<std::wstring> Missing(const std::vector<std::wstring>& wanted, const std::vector<std::wstring>& selected) {
    std::vector<std::wstring> missing;
    for (const std::wstring& item : wanted)
        if (!IsAmong(selected, item)) missing.push_back(item);
    return missing;
}

}  // namespace

ExitCode RunItems(Session& session, const ItemsCommand& command, Output& output) {
    const Container container(session, command.target);
    const GetAllItemsResponse response = session.Call(GetAllItemsRequest{{container.element}});
    if (output.json) WriteRead(container, response.status, response.items, &response.comboBoxResult, output.out);
    else
        for (const std::wstring& item : response.items) output.out << QuotedText(item) << '\n';
    if (!output.json && response.status == SelectionResult::Success && response.items.empty()) output.out << "its items have no texts\n";
    if (FAILED(response.comboBoxResult)) {
        output.err << "the combo box didn't " << (response.status == SelectionResult::Failure ? "open: " : "close again: ")
                   << CodeText(response.comboBoxResult) << '\n';
        return ExitCode::NotFound;
    }
    return response.status == SelectionResult::Success ? ExitCode::Done : Refuse(response.status, container, output);
}

ExitCode RunSelected(Session& session, const SelectedCommand& command, Output& output) {
    const Container container(session, command.target);
    const GetSelectedItemsResponse response = session.Call(GetSelectedItemsRequest{{container.element}});
    if (output.json) WriteRead(container, response.status, response.items, nullptr, output.out);
    if (response.status != SelectionResult::Success) return Refuse(response.status, container, output);
    if (output.json) return ExitCode::Done;
    for (const std::wstring& item : response.items) output.out << QuotedText(item) << '\n';
    if (response.items.empty()) output.out << "nothing is selected\n";
    return ExitCode::Done;
}

ExitCode RunSelect(Session& session, const SelectCommand& command, Output& output) {
    const Container container(session, command.target);
    SetSelectedItemsRequest request;
    request.element = container.element;
    request.items = command.items;
    request.clearFirst = !command.keepSelection;
    request.firstMatchOnly = command.firstMatchOnly;
    request.allowDisabled = command.allowDisabled;
    const SelectionResult status = session.Call(request).status;
    const bool done = status == SelectionResult::Success;

    const bool verifies = command.verify && done;
    std::vector<std::wstring> selected, missing;
    if (verifies) {
        selected = session.Call(GetSelectedItemsRequest{{container.element}}).items;
        missing = Missing(command.items, selected);
    }
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("status").Text(NameOf(status)).Key("verified");
        if (verifies) json.Flag(missing.empty());
        else json.Null();
        if (verifies) WriteItems(json, selected);
        WriteView(json, container.view);
        json.EndObject().Finish();
    }
    if (!done) return Refuse(status, container, output);
    if (!output.json) {
        output.out << "selected " << ListText(command.items) << " in " << ViewText(container.view) << '\n';
        if (verifies) output.out << "selected are now " << (selected.empty() ? "no items" : ListText(selected)) << '\n';
    }
    if (missing.empty()) return ExitCode::Done;
    output.err << "it didn't take: " << ListText(missing) << '\n';
    return ExitCode::NotFound;
}

ExitCode RunClearSelection(Session& session, const ClearSelectionCommand& command, Output& output) {
    const Container container(session, command.target);
    const SelectionResult status = session.Call(ClearSelectedItemsRequest{{container.element}}).status;
    // The server calls it a success where there is always something selected.
    const bool keeps = container.view.role == L"combo box" || container.view.role == L"page tab list";
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("status").Text(NameOf(status)).Key("cleared").Flag(status == SelectionResult::Success && !keeps);
        WriteView(json, container.view);
        json.EndObject().Finish();
    }
    if (status != SelectionResult::Success) return Refuse(status, container, output);
    if (output.json) return ExitCode::Done;
    if (keeps) output.out << "nothing was done: a " << (container.view.role == L"combo box" ? "combo box" : "tab list") << " always has its selection\n";
    else output.out << "cleared the selection of " << ViewText(container.view) << '\n';
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
