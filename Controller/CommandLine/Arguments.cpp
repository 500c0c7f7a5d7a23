#include "Controller/CommandLine/Arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "Common/include/UtfConversion.h"

namespace Zorvex::Controller {

namespace {

constexpr const char* kTargetHelp =
    "an identifier as another command printed it, a window's handle, a selector, or at X,Y; see docs/command-line.md";

// Everything as CLI11 reads it; the commands' own records are made from it once the whole line is understood.
struct RawArguments {
    bool wakeDescendants = false, wakeTopLevels = false, wakeChromium = false;
    std::string window, launch, desktop, server, beside, log, handle;
    std::string selector, policy = "first", related, request, json, file, outline, attributes, from, policyFile, fuzzyLevel, picture, written, firstTarget, secondTarget, rectangle, session;
    std::vector<std::string> target, itemTexts;
    std::uint32_t windowKind = 0, processId = 0, timeout = 10'000, depth = 100, treeMaximum = 20'000, maximum = 1;
    std::int32_t maximumRows = 0x7FFFFFFF;
    LONG x = 0, y = 0, offset = 1;
    double minimumScore = 0;
    bool keep = false, jsonOutput = false, all = false, identifiers = false, hitTestOnly = false, hierarchyOnly = false;
    bool topLevel = false, dom = false, native = false, visible = false, list = false, explain = false, aaOnly = false, lines = false, exact = false, noHidden = false,
         noOffscreen = false, verify = false;
    bool noHeader = false, csv = false, cleanup = false, keepSelection = false, firstMatchOnly = false, allowDisabled = false;
};

std::uint32_t HandleOf(const std::string& text) {
    char* end = nullptr;
    const unsigned long long number = std::strtoull(text.c_str(), &end, 0);
    if (text.empty() || *end || number == 0 || number > 0xFFFFFFFFull)
        throw CLI::ValidationError("--handle", "a window's handle is expected, such as 0x10102");
    return static_cast<std::uint32_t>(number);
}

// An option without a value means the usual level.
double FuzzyLevelOf(const std::string& text) {
    if (text.empty()) return kDefaultFuzzyLevel;
    char* end = nullptr;
    const double level = std::strtod(text.c_str(), &end);
    if (*end || !(level >= 0 && level <= 1)) throw CLI::ValidationError("--fuzzy", "a level from 0 to 1 is expected");
    return level;
}

std::vector<std::wstring> NamesOf(const std::string& list) {
    std::vector<std::wstring> names;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        const std::wstring name = WideText(std::string_view(list).substr(start, end - start));
        if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
        start = end + 1;
    }
    return names;
}

// A target may be typed as several words: at 10,20 or at 10 20.
TargetName TargetOf(const std::vector<std::string>& words) {
    TargetName target;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool secondNumber = i == 2 && words[0] == "at";
        target.text += (i == 0 ? L"" : secondNumber ? L"," : L" ") + WideText(words[i]);
    }
    return target;
}

// Usage lines say how often an argument may come by their dots alone.
class HelpText : public CLI::Formatter {
public:
    std::string make_option_usage(const CLI::Option* option) const override {
        const std::string name = make_option_name(option, true);
        return option->get_required() ? name : "[" + name + "]";
    }
};

// Ranges don't keep out what is no number.
std::string CheckIsNumber(const std::string& text) {
    return text.find_first_of("nN") == std::string::npos ? "" : "Value " + text + " is no number";
}

void AddGeneral(CLI::App& app, RawArguments& raw) {
    auto* group = app.add_option_group("Which window");
    group->add_option("--pid", raw.processId, "the frontmost window of a process")->check(CLI::Range(1u, 0xFFFFFFFFu));
    group->add_option("--window", raw.window, "the frontmost window whose title fits; * and ? are wildcards");
    group->add_option("--handle", raw.handle, "the window of a handle; child windows as well");
    group->add_option("--launch", raw.launch, "start a command and take its window");
    group->require_option(0, 1);
    app.add_option("--desktop", raw.desktop, "read windows from a desktop file instead of the system (native build only)");
    app.add_option("--server", raw.server, "the server library, if it isn't beside this program");
    app.add_option("--beside", raw.beside, "another library that is loaded into the target before the server");
    app.add_flag("--keep", raw.keep, "leave the server in the target, so that identifiers stay known");
    app.add_flag("--json", raw.jsonOutput, "write JSON for programs");
    app.add_option("--timeout", raw.timeout, "milliseconds that one request may take")->capture_default_str()
        ->check(CLI::Range(1u, 3'600'000u));
    app.add_option("--log", raw.log, "show the server's log lines from this level on")
        ->check(CLI::IsMember({"verbose", "info", "warning", "error", "fatal"}, CLI::ignore_case));
}

WindowsCommand MakeWindows(const RawArguments& raw) { return {raw.all}; }

// The commands that wake applications, and those about browser windows.
struct EnablementCommands {
    CLI::App *wake, *dialog, *markerTab;
};

EnablementCommands AddEnablement(CLI::App& app, RawArguments& raw) {
    const EnablementCommands commands{
        app.add_subcommand("wake", "Ask an application for its elements in the way that makes it build them"),
        app.add_subcommand("dialog", "Say where the dialog is that a browser window shows"),
        app.add_subcommand("marker-tab", "Print the id that a browser extension put into the title of a tab")};
    auto* below = commands.wake->add_flag("--descendants", raw.wakeDescendants, "the window and all windows below it");
    auto* topLevels = commands.wake->add_flag("--top-levels", raw.wakeTopLevels, "every top-level window")->excludes(below);
    commands.wake->add_flag("--chromium", raw.wakeChromium, "the window is a Chromium frame: tell whether it answered everything")
        ->excludes(below)->excludes(topLevels);
    return commands;
}

WakeCommand MakeWake(const RawArguments& raw) {
    return {raw.wakeDescendants ? WakeScope::Descendants
            : raw.wakeTopLevels ? WakeScope::TopLevels
            : raw.wakeChromium  ? WakeScope::Chromium
                                : WakeScope::Window};
}

struct ItemCommands {
    CLI::App *all, *select, *selected, *clear;
};

// The commands about items of lists and their kind.
ItemCommands AddItems(CLI::App& app, RawArguments& raw) {
    const ItemCommands commands{app.add_subcommand("items", "List the items of a list, combo box, tree, table or tab list"),
                                app.add_subcommand("select", "Select items by their names"),
                                app.add_subcommand("selected", "List the items that are selected"),
                                app.add_subcommand("clear-selection", "Take the selection off")};
    for (CLI::App* command : {commands.all, commands.selected, commands.clear})
        command->add_option("TARGET", raw.target, kTargetHelp)->expected(1, 3)->required();
    // One word each, since items follow.
    commands.select->add_option("TARGET", raw.selector, kTargetHelp)->required();
    commands.select->add_option("ITEM", raw.itemTexts, "the items' names; * and ? are wildcards")->required();
    commands.select->add_flag("--keep-selection", raw.keepSelection, "add to what is selected");
    commands.select->add_flag("--first", raw.firstMatchOnly, "of a name with wildcards the first match alone");
    commands.select->add_flag("--allow-disabled", raw.allowDisabled, "try disabled items as well");
    for (CLI::App* command : {commands.select, commands.clear})
        command->add_flag("--verify", raw.verify, "read the selection again and say whether it took");
    return commands;
}

SelectCommand MakeSelect(const RawArguments& raw) {
    SelectCommand select{{WideText(raw.selector)}, {}, raw.keepSelection, raw.firstMatchOnly, raw.allowDisabled, raw.verify};
    for (const std::string& item : raw.itemTexts) select.items.push_back(WideText(item));
    return select;
}

using ActionCommands = std::vector<std::pair<CLI::App*, ElementAction>>;

// The commands that do one thing to one element.
ActionCommands AddActions(CLI::App& app, RawArguments& raw) {
    constexpr struct {
        ElementAction action;
        const char* name;
        const char* help;
    } rows[] = {
        {ElementAction::Focus, "focus", "Give the focus to an element"},
        {ElementAction::Click, "click", "Do what a click on the element would do: its default action"},
        {ElementAction::Check, "check", "Check a check box or a radio button"},
        {ElementAction::Uncheck, "uncheck", "Uncheck a check box"},
        {ElementAction::IsChecked, "is-checked", "Say whether a check box or a radio button is checked"},
        {ElementAction::ScrollTo, "scroll-to", "Bring an element into view"},
        {ElementAction::Write, "write", "Write a text into an element"},
        {ElementAction::Expand, "expand", "Open a combo box of a web page"},
        {ElementAction::Collapse, "collapse", "Close a combo box of a web page"},
    };
    ActionCommands commands;
    for (const auto& row : rows) {
        CLI::App* command = app.add_subcommand(row.name, row.help);
        if (row.action == ElementAction::Write) {
            command->add_option("TARGET", raw.selector, kTargetHelp)->required();
            command->add_option("TEXT", raw.written, "what it shall hold")->required();
        } else {
            command->add_option("TARGET", raw.target, kTargetHelp)->required()->expected(1, 3);
        }
        if (row.action != ElementAction::IsChecked) command->add_flag("--verify", raw.verify, "look at the element again, whether it took");
        commands.emplace_back(command, row.action);
    }
    return commands;
}

ActionCommand MakeAction(const RawArguments& raw, ElementAction action) {
    if (action == ElementAction::Write) return {action, {WideText(raw.selector)}, WideText(raw.written), raw.verify};
    return {action, TargetOf(raw.target), {}, raw.verify};
}

// LEFT,TOP,WIDTH,HEIGHT
RECT RectangleOf(const std::string& text) {
    std::int64_t numbers[4] = {};
    const char* place = text.c_str();
    for (std::size_t i = 0; i < 4; ++i) {
        char* end = nullptr;
        numbers[i] = std::strtoll(place, &end, 10);
        if (end == place || *end != (i < 3 ? ',' : '\0')) throw CLI::ValidationError("--rectangle", "four numbers are expected, such as 10,20,300,200");
        place = end + 1;
    }
    constexpr std::int64_t least = std::numeric_limits<LONG>::min(), most = std::numeric_limits<LONG>::max();
    for (const std::size_t i : {0u, 1u})
        if (numbers[i] < least || numbers[i] > most || numbers[i + 2] < 0 || numbers[i + 2] > most || numbers[i] + numbers[i + 2] > most)
            throw CLI::ValidationError("--rectangle", "width and height must fit on the screen");
    return {static_cast<LONG>(numbers[0]), static_cast<LONG>(numbers[1]), static_cast<LONG>(numbers[0] + numbers[2]),
            static_cast<LONG>(numbers[1] + numbers[3])};
}

TextCommand MakeText(const RawArguments& raw, bool hasKind) {
    TextCommand text;
    text.target = TargetOf(raw.target);
    if (!raw.rectangle.empty()) text.rectangle = RectangleOf(raw.rectangle);
    text.exact = raw.exact;
    text.leaveOutHidden = raw.noHidden;
    text.leaveOutOffscreen = raw.noOffscreen;
    text.lines = raw.lines;
    if (hasKind) text.kind = raw.windowKind;
    text.picture = WideText(raw.picture);
    return text;
}

FindCommand MakeFind(const RawArguments& raw) {
    FindCommand find;
    find.selector = WideText(raw.selector);
    find.maximum = raw.all ? Search::kUnboundedResults : raw.maximum;
    find.minimumScore = raw.minimumScore;
    find.visibleOnly = raw.visible;
    find.policy = raw.policy == "best"           ? Search::ResultPolicy::BestMatch
                  : raw.policy == "ignore-index" ? Search::ResultPolicy::IgnoreIndex
                                                 : Search::ResultPolicy::FirstMatch;
    find.from.text = WideText(raw.from);
    return find;
}

}  // namespace

std::variant<Invocation, ArgumentsText> ReadArguments(std::vector<std::string> arguments) {
    RawArguments raw;
    CLI::App app("Asks live windows for their accessible elements, through a server that is loaded into their process.", "vantrel-ctl");
    app.set_version_flag("--version", "vantrel-ctl " VANTREL_VERSION);
    app.require_subcommand(1);
    app.formatter(std::make_shared<HelpText>());
    app.fallthrough();
    AddGeneral(app, raw);
    app.footer("Exit codes: 0 done, 1 not found or refused by the server, 2 wrong arguments, 3 target or loading problem, 4 time-out.");

    auto* windows = app.add_subcommand("windows", "List the windows that there are, frontmost first");
    windows->add_flag("--all", raw.all, "hidden ones as well");

    auto* tree = app.add_subcommand("tree", "Print the window's elements, indented");
    tree->add_option("--depth", raw.depth, "levels below the window")->capture_default_str()->check(CLI::Range(1u, 100'000u));
    tree->add_option("--max", raw.treeMaximum, "elements at most")->capture_default_str()->check(CLI::Range(1u, 1'000'000u));
    tree->add_option("--attrs", raw.attributes, "attributes to show as well, with commas between them");
    tree->add_flag("--ids", raw.identifiers, "print identifiers");

    auto* at = app.add_subcommand("at", "Say which element lies under a point of the screen");
    at->add_option("X", raw.x, "screen pixels from the left")->required();
    at->add_option("Y", raw.y, "screen pixels from the top")->required();
    auto* hitTest = at->add_flag("--hit-test-only", raw.hitTestOnly, "ask the elements' own hit test alone");
    at->add_flag("--hierarchy-only", raw.hierarchyOnly, "walk the hierarchy alone")->excludes(hitTest);
    at->add_flag("--top-level", raw.topLevel, "start the hit test at the top-level window");
    at->add_flag("--dom", raw.dom, "prefer the element of the HTML element");
    at->add_option("--related", raw.related, "answer with a related element")->check(CLI::IsMember({"combo-box"}));

    auto* attrs = app.add_subcommand("attrs", "Print all attributes of an element");
    attrs->add_option("TARGET", raw.target, kTargetHelp)->expected(0, 3);
    attrs->add_flag("--native", raw.native, "the platform's own properties as well");

    auto* find = app.add_subcommand("find", "Find elements by a selector");
    find->add_option("SELECTOR", raw.selector, "such as 'ctrl[name=\"Save*\" role=\"push button\"]'; see docs/selectors.md")->required();
    auto* maximum = find->add_option("--max", raw.maximum, "results at most")->capture_default_str()
                        ->check(CLI::Range(1u, Search::kUnboundedResults));
    find->add_flag("--all", raw.all, "all results")->excludes(maximum);
    find->add_option("--min-score", raw.minimumScore, "the lowest mean score that counts")->check(CheckIsNumber)
        ->check(CLI::Range(0.0, 1.0));
    find->add_flag("--visible", raw.visible, "only elements that can be seen");
    find->add_option("--policy", raw.policy, "which of several results")->capture_default_str()
        ->check(CLI::IsMember({"first", "best", "ignore-index"}));
    find->add_option("--from", raw.from, "search below this element instead of the window");

    auto* selector = app.add_subcommand("selector", "Write the selector by which an element is found again, and check it");
    auto* described = selector->add_option("TARGET", raw.target, kTargetHelp)->expected(1, 3);
    selector->add_option("--policy", raw.policyFile, "a file with rules for what the selector holds");
    auto* fuzzy = selector->add_option("--fuzzy", raw.fuzzyLevel, "compare names and titles by resemblance, at least this much (0.7)")
                      ->expected(0, 1)->type_name("LEVEL");
    selector->add_flag("--aa-only", raw.aaOnly, "stay in the accessible tree, where the usual way goes over to windows");
    selector->add_flag("--explain", raw.explain, "say of each node why it is in or out, and what each attribute is good for");

    auto* surveyed = selector->add_flag("--all", raw.all, "every element of the window: how many are found again, and which aren't")
                         ->excludes(described);
    selector->add_option("--max", raw.treeMaximum, "with --all: elements at most")->capture_default_str()->check(CLI::Range(1u, 1'000'000u))
        ->needs(surveyed);

    auto* table = app.add_subcommand("table", "Read the table around an element");
    table->add_option("TARGET", raw.target, kTargetHelp)->expected(1, 3)->required();
    auto* maximumRows = table->add_option("--max-rows", raw.maximumRows, "rows with cells at most")->check(CLI::Range(1, 0x7FFFFFFF));
    auto* noHeader = table->add_flag("--no-header", raw.noHeader, "number the columns instead of naming them by the first row's headers");
    auto* csv = table->add_flag("--csv", raw.csv, "write comma-separated values in place of XML");
    auto* scrape = table->add_option("--session", raw.session, "compare with the last extraction under this name; needs --keep to last");
    table->add_flag("--cleanup", raw.cleanup, "only forget the session")->needs(scrape)->excludes(maximumRows)->excludes(noHeader)->excludes(csv);

    const auto actions = AddActions(app, raw);
    auto* sibling = app.add_subcommand("sibling", "Print the element that stands OFFSET places on among its siblings");
    sibling->add_option("TARGET", raw.selector, kTargetHelp)->required();
    sibling->add_option("OFFSET", raw.offset, "places; negative: before it")->capture_default_str();
    auto* focused = app.add_subcommand("focused", "Print the element that has the focus in the window");
    auto* equal = app.add_subcommand("equal", "Say whether two targets are the same element");
    equal->add_option("FIRST", raw.firstTarget, kTargetHelp)->required();
    equal->add_option("SECOND", raw.secondTarget, kTargetHelp)->required();

    auto* text = app.add_subcommand("text", "Read the text that the window or an element shows");
    text->add_option("TARGET", raw.target, kTargetHelp)->expected(1, 3);
    text->add_flag("--lines", raw.lines, "each line with its place on the screen");
    text->add_flag("--no-hidden", raw.noHidden, "leave out what is invisible");
    text->add_flag("--no-offscreen", raw.noOffscreen, "leave out list items that are scrolled away");
    auto* rectangle = text->add_option("--rectangle", raw.rectangle, "only what lies in LEFT,TOP,WIDTH,HEIGHT of the screen");
    text->add_flag("--exact", raw.exact, "the rectangle is the place of one element")->needs(rectangle);
    auto* kind = text->add_option("--kind", raw.windowKind, "how the window is read, a number of docs/wire-format.md; by its class if not said")
                     ->check(CLI::Range(0u, 14u));
    text->add_option("--picture", raw.picture, "write a PNG file of the window with the lines outlined");

    const ItemCommands items = AddItems(app, raw);

    const auto enablement = AddEnablement(app, raw);
    auto* call = app.add_subcommand("call", "Send any request as it stands");
    call->add_option("REQUEST", raw.request, "name or number; --list shows all");
    call->add_option("JSON", raw.json, "its fields; those left out have their defaults");
    call->add_flag("--list", raw.list, "print all requests with their fields");

    auto* record = app.add_subcommand("record", "Write the window into a desktop file");
    record->add_option("FILE", raw.file, "the file; - for the standard output")->required();

    auto* picture = app.add_subcommand("picture", "Draw the window's elements as rectangles into an SVG file");
    picture->add_option("FILE", raw.file, "the file; - for the standard output")->required();
    picture->add_option("--outline", raw.outline, kTargetHelp);

    auto* unload = app.add_subcommand("unload", "Take a server that was kept out of the target");

    Invocation invocation;
    try {
        std::reverse(arguments.begin(), arguments.end());
        app.parse(std::move(arguments));

        GeneralOptions& general = invocation.general;
        if (raw.processId) general.processId = raw.processId;
        general.windowTitle = WideText(raw.window);
        if (!raw.handle.empty()) general.windowHandle = HandleOf(raw.handle);
        general.launch = WideText(raw.launch);
        general.desktopFile = WideText(raw.desktop);
        general.serverLibrary = WideText(raw.server);
        general.besideLibrary = WideText(raw.beside);
        general.keep = raw.keep;
        general.json = raw.jsonOutput;
        general.logLevel = WideText(raw.log);
        general.timeout = std::chrono::milliseconds(raw.timeout);

        if (windows->parsed()) invocation.command = MakeWindows(raw);
        if (tree->parsed()) invocation.command = TreeCommand{raw.depth, raw.treeMaximum, NamesOf(raw.attributes), raw.identifiers};
        if (at->parsed())
            invocation.command = AtCommand{{raw.x, raw.y}, raw.hitTestOnly, raw.hierarchyOnly, raw.topLevel, raw.dom, !raw.related.empty()};
        if (attrs->parsed()) invocation.command = AttrsCommand{TargetOf(raw.target), raw.native};
        if (find->parsed()) invocation.command = MakeFind(raw);
        if (selector->parsed()) {
            if (raw.target.empty() && !raw.all) throw CLI::RequiredError("TARGET");
            invocation.command = SelectorCommand{TargetOf(raw.target), WideText(raw.policyFile),
                                                 fuzzy->count() ? std::optional(FuzzyLevelOf(raw.fuzzyLevel)) : std::nullopt, raw.aaOnly, raw.explain, raw.all, raw.treeMaximum};
        }
        if (table->parsed())
            invocation.command = TableCommand{TargetOf(raw.target), WideText(raw.session), raw.maximumRows, raw.noHeader, raw.cleanup, raw.csv};
        for (const auto& [command, action] : actions)
            if (command->parsed()) invocation.command = MakeAction(raw, action);
        if (sibling->parsed()) invocation.command = SiblingCommand{{WideText(raw.selector)}, raw.offset};
        if (focused->parsed()) invocation.command = FocusedCommand{};
        if (equal->parsed()) invocation.command = EqualCommand{{WideText(raw.firstTarget)}, {WideText(raw.secondTarget)}};
        if (text->parsed()) invocation.command = MakeText(raw, kind->count() != 0);
        if (items.all->parsed()) invocation.command = ItemsCommand{TargetOf(raw.target)};
        if (items.selected->parsed()) invocation.command = SelectedCommand{TargetOf(raw.target)};
        if (items.clear->parsed()) invocation.command = ClearSelectionCommand{TargetOf(raw.target), raw.verify};
        if (items.select->parsed()) invocation.command = MakeSelect(raw);
        if (enablement.wake->parsed()) invocation.command = MakeWake(raw);
        if (enablement.dialog->parsed()) invocation.command = DialogCommand{};
        if (enablement.markerTab->parsed()) invocation.command = MarkerTabCommand{};
        if (call->parsed()) {
            if (raw.request.empty() && !raw.list) throw CLI::RequiredError("REQUEST");
            invocation.command = CallCommand{raw.request, raw.json, raw.list};
        }
        if (record->parsed()) invocation.command = RecordCommand{WideText(raw.file)};
        if (picture->parsed()) invocation.command = PictureCommand{WideText(raw.file), {WideText(raw.outline)}};
        if (unload->parsed()) invocation.command = UnloadCommand{};
        return invocation;
    } catch (const CLI::CallForHelp&) {
        for (const CLI::App* command : app.get_subcommands()) {
            // The options in front of the command belong to it as well, and nothing else here says so.
            return ArgumentsText{ExitCode::Done, command->help("vantrel-ctl") +
                                                     "Behind it or in front go also --window, --json, --timeout and so on: vantrel-ctl --help tells them.\n"};
        }
        return ArgumentsText{ExitCode::Done, app.help()};
    } catch (const CLI::CallForVersion& version) {
        return ArgumentsText{ExitCode::Done, std::string(version.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        if (app.get_subcommands().empty() && dynamic_cast<const CLI::RequiredError*>(&error)) {
            std::string names;
            for (const CLI::App* command : app.get_subcommands([](const CLI::App* any) { return !any->get_name().empty(); }))
                names += (names.empty() ? "" : ", ") + command->get_name();
            return ArgumentsText{ExitCode::WrongArguments, "a command is expected; there are " + names + "\n--help tells what there is.\n"};
        }
        return ArgumentsText{ExitCode::WrongArguments, std::string(error.what()) + "\n--help tells what there is.\n"};
    }
}

}  // namespace Zorvex::Controller
