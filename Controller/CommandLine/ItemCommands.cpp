// Commands about the items of lists, combo boxes, trees, tables and tab lists.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/Elements.h"
#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"
#include "RuntimeCore/Selectors/Values/AttributeNames.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

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

std::vector<AAObjectIdentifier> FindBelow(Session& session, const AAObjectIdentifier& root, std::shared_ptr<AaTag> tag, std::uint32_t most) {
    Search::SelectorEntry entry;
    entry.tags = {std::move(tag)};
    entry.options.scope = Search::SearchScope::Descendants;
    entry.options.maxResults = most;
    return Search(session, root, std::move(entry));
}

// The selection as it is now. A table is asked for its rows, since what is selected in it has no text of its own.
class SelectionNow {
public:
    SelectionNow(Session& session, const Container& container) : m_session(session), m_isTable(container.view.role == L"table") {
        if (m_isTable) {
            ReadRows(container);
        } else {
            const auto response = session.Call(GetSelectedItemsRequest{{container.element}});
            m_isRead = response.status != SelectionResult::Failure;
            m_items = response.items;
        }
    }

    bool IsRead() const { return m_isRead; }
    // Of rows, what is said of them.
    const std::vector<std::wstring>& Items() const { return m_items; }
    // What was asked for and isn't selected.
    std::vector<std::wstring> Missing(const std::vector<std::wstring>& wanted) const {
        std::vector<std::wstring> missing;
        for (const std::wstring& item : wanted)
            if (!(m_isTable ? IsInRow(item) : IsAmong(m_items, item))) missing.push_back(item);
        return missing;
    }

private:
    static constexpr std::uint32_t kMostRows = 1000;  // as many items as the server acts on

    static std::shared_ptr<AaTag> TagOf(const wchar_t* role, const std::wstring& text = {}) {
        auto tag = std::make_shared<AaTag>();
        tag->SetAttribute(AttributeNames::Role, std::make_shared<StringValue>(role));
        if (!text.empty()) tag->SetAttribute(AttributeNames::Text, std::make_shared<StringValue>(text));
        return tag;
    }
    void ReadRows(const Container& container) {
        for (const AAObjectIdentifier& row : FindBelow(m_session, container.element, TagOf(L"row"), kMostRows))
            if (const auto state = ReadState(m_session, row); state && (*state & STATE_SYSTEM_SELECTED)) m_rows.push_back(row);
        m_items = ReadTexts(m_session, m_rows, L"rowName");
        m_isRead = true;
    }
    bool IsInRow(const std::wstring& text) const {
        return std::any_of(m_rows.begin(), m_rows.end(), [&](const AAObjectIdentifier& row) {
            return !FindBelow(m_session, row, TagOf(L"cell", text), 1).empty();
        });
    }

    Session& m_session;
    bool m_isTable;
    bool m_isRead = false;
    std::vector<std::wstring> m_items;
    std::vector<AAObjectIdentifier> m_rows;
};

void WriteVerified(JsonWriter& json, const SelectionNow* now, bool took) {
    json.Key("verified");
    if (now && now->IsRead()) json.Flag(took);
    else json.Null();
    if (now) WriteItems(json, now->Items());
}

ExitCode DoubtSelection(Output& output) {
    output.err << "it can't be told whether it took: the selection can't be read\n";
    return ExitCode::NotFound;
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

    std::optional<SelectionNow> now;
    if (command.verify && done) now.emplace(session, container);
    const std::vector<std::wstring> missing = now ? now->Missing(command.items) : std::vector<std::wstring>();
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("status").Text(NameOf(status));
        WriteVerified(json, now ? &*now : nullptr, missing.empty());
        WriteView(json, container.view);
        json.EndObject().Finish();
    }
    if (!done) {
        Refuse(status, container, output);
        // A page may load the options of a combo box only when it opens, and selecting doesn't open it.
        if (status == SelectionResult::NothingFound && container.element.isDomAria && container.view.role == L"combo box")
            output.err << "expand opens it, which may bring its items\n";
        return ExitCode::NotFound;
    }
    if (!output.json) {
        output.out << "selected " << ListText(command.items) << " in " << ViewText(container.view) << '\n';
        if (now && now->IsRead()) output.out << "selected are now " << (now->Items().empty() ? "no items" : ListText(now->Items())) << '\n';
    }
    if (now && !now->IsRead()) return DoubtSelection(output);
    if (missing.empty()) return ExitCode::Done;
    output.err << "it didn't take: " << ListText(missing) << '\n';
    return ExitCode::NotFound;
}

ExitCode RunClearSelection(Session& session, const ClearSelectionCommand& command, Output& output) {
    const Container container(session, command.target);
    const SelectionResult status = session.Call(ClearSelectedItemsRequest{{container.element}}).status;
    // The server calls it a success where there is always something selected.
    const bool keeps = container.view.role == L"combo box" || container.view.role == L"page tab list";
    const bool cleared = status == SelectionResult::Success && !keeps;
    std::optional<SelectionNow> now;
    if (command.verify && cleared) now.emplace(session, container);
    const bool isEmpty = !now || now->Items().empty();
    if (output.json) {
        JsonWriter json(output.out);
        json.BeginObject().Key("status").Text(NameOf(status)).Key("cleared").Flag(cleared);
        if (command.verify) WriteVerified(json, now ? &*now : nullptr, isEmpty);
        WriteView(json, container.view);
        json.EndObject().Finish();
    }
    if (status != SelectionResult::Success) return Refuse(status, container, output);
    if (!output.json) {
        if (keeps) output.out << "nothing was done: a " << (container.view.role == L"combo box" ? "combo box" : "tab list") << " always has its selection\n";
        else output.out << "cleared the selection of " << ViewText(container.view) << '\n';
    }
    if (now && !now->IsRead()) return DoubtSelection(output);
    if (!isEmpty) {
        output.err << "it didn't take: selected is still " << ListText(now->Items()) << '\n';
        return ExitCode::NotFound;
    }
    if (now && !output.json) output.out << "nothing is selected now\n";
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
