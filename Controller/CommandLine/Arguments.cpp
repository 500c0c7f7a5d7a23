#include "Controller/CommandLine/Arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>

#include "Common/include/UtfConversion.h"

namespace Zorvex::Controller {

namespace {

constexpr const char* kTargetHelp =
    "an identifier as another command printed it, a window's handle, a selector, or at X,Y; see docs/command-line.md";

// Everything as CLI11 reads it; the commands' own records are made from it once the whole line is understood.
struct RawArguments {
    std::string window, launch, desktop, server, beside, log, handle;
    std::string selector, policy = "first", related, request, json, file, outline, attributes, from;
    std::vector<std::string> target;
    std::uint32_t processId = 0, timeout = 10'000, depth = 100, treeMaximum = 20'000, maximum = 1;
    LONG x = 0, y = 0;
    double minimumScore = 0;
    bool keep = false, jsonOutput = false, all = false, identifiers = false, hitTestOnly = false, hierarchyOnly = false;
    bool topLevel = false, dom = false, native = false, visible = false, list = false;
};

std::uint32_t HandleOf(const std::string& text) {
    char* end = nullptr;
    const unsigned long long number = std::strtoull(text.c_str(), &end, 0);
    if (text.empty() || *end || number == 0 || number > 0xFFFFFFFFull)
        throw CLI::ValidationError("--handle", "a window's handle is expected, such as 0x10102");
    return static_cast<std::uint32_t>(number);
}

std::vector<std::wstring> NamesOf(const std::string& list) {
    std::vector<std::wstring> names;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        if (end > start) names.push_back(WideText(std::string_view(list).substr(start, end - start)));
        start = end + 1;
    }
    return names;
}

// A target may be typed as several words: at 10,20.
TargetName TargetOf(const std::vector<std::string>& words) {
    TargetName target;
    for (const std::string& word : words) target.text += (target.text.empty() ? L"" : L" ") + WideText(word);
    return target;
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
    attrs->add_option("TARGET", raw.target, kTargetHelp)->expected(0, 2);
    attrs->add_flag("--native", raw.native, "the platform's own properties as well");

    auto* find = app.add_subcommand("find", "Find elements by a selector");
    find->add_option("SELECTOR", raw.selector, "such as 'ctrl[name=\"Save*\" role=\"push button\"]'; see docs/selectors.md")->required();
    auto* maximum = find->add_option("--max", raw.maximum, "results at most")->capture_default_str()
                        ->check(CLI::Range(1u, Search::kUnboundedResults));
    find->add_flag("--all", raw.all, "all results")->excludes(maximum);
    find->add_option("--min-score", raw.minimumScore, "the lowest mean score that counts")->check(CLI::Range(0.0, 1.0));
    find->add_flag("--visible", raw.visible, "only elements that can be seen");
    find->add_option("--policy", raw.policy, "which of several results")->capture_default_str()
        ->check(CLI::IsMember({"first", "best", "ignore-index"}));
    find->add_option("--from", raw.from, "search below this element instead of the window");

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
        if (call->parsed()) {
            if (raw.request.empty() && !raw.list) throw CLI::RequiredError("REQUEST");
            invocation.command = CallCommand{raw.request, raw.json, raw.list};
        }
        if (record->parsed()) invocation.command = RecordCommand{WideText(raw.file)};
        if (picture->parsed()) invocation.command = PictureCommand{WideText(raw.file), {WideText(raw.outline)}};
        if (unload->parsed()) invocation.command = UnloadCommand{};
        return invocation;
    } catch (const CLI::CallForHelp&) {
        for (const CLI::App* command : app.get_subcommands()) return ArgumentsText{ExitCode::Done, command->help()};
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
