// The whole command line on the shipped desktops. What each case prints is written down in tests/expected/ctl; with
// VANTREL_REWRITE_EXPECTED=1 in the environment the tests write it anew.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "Controller/CommandLine/RecordJson.h"
#include "tests/Support/CommandRun.h"

namespace Zorvex::Controller {
namespace {

using Testing::CommandAnswer;
using Testing::RunCommand;
using Testing::SplitLine;

const char* const kNotepad = "--desktop tests/desktops/notepad.json ";
const char* const kSettings = "--desktop tests/desktops/settings.json ";
const char* const kBrowser = "--desktop tests/desktops/browser.json ";
const char* const kRegistry = "--desktop tests/desktops/registry.json ";

CommandAnswer Ctl(const std::string& line) { return RunCommand(SplitLine(line)); }

struct Case {
    const char* name;
    std::string line;
};

void PrintTo(const Case& item, std::ostream* out) { *out << item.line; }

class ExpectedOutput : public ::testing::TestWithParam<Case> {};

TEST_P(ExpectedOutput, IsAsWrittenDown) {
    const Case& item = GetParam();
    const CommandAnswer answer = Ctl(item.line);
    const std::string text = "$ vantrel-ctl " + item.line + "\n" + answer.out + (answer.err.empty() ? "" : "-- messages\n" + answer.err) +
                             "-- exit code " + std::to_string(answer.code) + "\n";
    const std::string path = std::string("tests/expected/ctl/") + item.name + ".txt";
    if (Testing::RewritesExpected()) Testing::WriteSourceFile(path, text);
    ASSERT_TRUE(Testing::SourceFileExists(path)) << path << " is missing; VANTREL_REWRITE_EXPECTED=1 writes it";
    EXPECT_EQ(Testing::ReadSourceFile(path), text);
}

const Case kCases[] = {
    {"help", "--help"},
    {"help_find", "find --help"},
    {"version", "--version"},
    {"windows", std::string(kNotepad) + "windows"},
    {"windows_json", std::string(kNotepad) + "--json windows"},
    {"windows_all", std::string(kSettings) + "windows --all"},
    {"tree_notepad", std::string(kNotepad) + "tree"},
    {"tree_settings", std::string(kSettings) + "tree"},
    {"tree_browser", std::string(kBrowser) + "tree"},
    {"tree_registry", std::string(kRegistry) + "tree"},
    {"tree_json", std::string(kNotepad) + "--json tree --depth 2"},
    {"tree_depth", std::string(kNotepad) + "tree --depth 1"},
    {"tree_cut", std::string(kNotepad) + "tree --max 5"},
    {"tree_attributes", std::string(kBrowser) + "tree --attrs text,automationid --ids"},
    {"tree_other_window", std::string(kNotepad) + "--handle 0x20104 tree"},
    {"tree_by_process", std::string(kNotepad) + "--pid 1204 tree"},
    {"tree_by_title", std::string(kNotepad) + "--window '*notepad' tree --depth 1"},
    {"at", std::string(kNotepad) + "at 120 140"},
    {"at_json", std::string(kNotepad) + "--json at 120 140"},
    {"at_hit_test", std::string(kNotepad) + "at 120 140 --hit-test-only"},
    {"at_hierarchy", std::string(kNotepad) + "at 120 140 --hierarchy-only"},
    {"at_other_window", std::string(kNotepad) + "at 10 1050"},
    {"at_outside", std::string(kNotepad) + "--window '*Notepad' at 10 10"},
    {"at_negative", std::string(kNotepad) + "at -5 10"},
    {"at_no_window", std::string(kNotepad) + "at 5000 10"},
    {"at_dom", std::string(kBrowser) + "at 150 230 --dom"},
    {"at_related", std::string(kBrowser) + "at 150 290 --related combo-box"},
    {"attrs_window", std::string(kNotepad) + "attrs"},
    {"attrs_selector", std::string(kSettings) + "attrs 'ctrl[name=\"Play sounds\" role=\"check box\"]'"},
    {"attrs_at", std::string(kSettings) + "attrs at 390,225"},
    {"attrs_handle", std::string(kNotepad) + "attrs 0x20102"},
    {"attrs_native", std::string(kBrowser) + "attrs --native 'ctrl[name=Search]'"},
    {"attrs_json", std::string(kBrowser) + "--json attrs --native 'ctrl[name=Search]'"},
    {"attrs_stale", std::string(kNotepad) + "attrs 0x10102:9999999:0:0:1:0x10102"},
    {"attrs_no_such", std::string(kNotepad) + "attrs 'ctrl[name=Nowhere]'"},
    {"attrs_mistake", std::string(kNotepad) + "attrs 'ctrl[name'"},
    {"find", std::string(kNotepad) + "find 'ctrl[name=File]'"},
    {"find_json", std::string(kNotepad) + "--json find 'ctrl[name=File]'"},
    {"find_all", std::string(kBrowser) + "find --all 'ctrl[role=link]'"},
    {"find_max", std::string(kBrowser) + "find --max 2 'ctrl[role=link]'"},
    {"find_index", std::string(kBrowser) + "find 'ctrl[role=link idx=3]'"},
    {"find_ignore_index", std::string(kBrowser) + "find --policy ignore-index 'ctrl[role=link idx=3]'"},
    {"find_fuzzy_best", std::string(kBrowser) + "find --policy best 'ctrl[name~\"Customers\":0.6]'"},
    {"find_regex", std::string(kBrowser) + "find --all 'ctrl[name=/\\d+ May/]'"},
    {"find_chain", std::string(kBrowser) + "find --all 'ctrl[role=table] ctrl[role=row idx=2] ctrl[role=cell]'"},
    {"find_children", std::string(kNotepad) + "find '> ctrl[role=\"menu bar\"] > ctrl[name=View]'"},
    {"find_states", std::string(kSettings) + "find --all 'ctrl[aastate=\"checked\"]'"},
    {"find_visible", std::string(kSettings) + "find --visible 'ctrl[name=\"High contrast\"]'"},
    {"find_from", std::string(kBrowser) + "find --all --from 'ctrl[role=table]' 'ctrl[role=\"column header\"]'"},
    {"find_nothing", std::string(kBrowser) + "find 'ctrl[role=table] ctrl[role=cell name=Bern]'"},
    {"find_nothing_json", std::string(kBrowser) + "--json find 'ctrl[role=table] ctrl[role=cell name=Bern]'"},
    {"find_nothing_first", std::string(kNotepad) + "find 'ctrl[name=Fiel]'"},
    {"find_nothing_fuzzy", std::string(kNotepad) + "find 'ctrl[name~\"Windows (LF)\":0.95]'"},
    {"find_nothing_index", std::string(kBrowser) + "find 'ctrl[role=link idx=30]'"},
    {"find_nothing_score", std::string(kNotepad) + "find --min-score 0.99 'ctrl[name~\"Fill\":0.5]'"},
    {"find_nothing_states", std::string(kSettings) + "find 'ctrl[name=\"Play sounds\" aastate=\"checked, focused\"]'"},
    {"find_mistake", std::string(kNotepad) + "find 'ctrl[nmae=File]'"},
    {"find_mistake_quote", std::string(kNotepad) + "find 'ctrl[name=/File]'"},
    {"find_other_technology", std::string(kNotepad) + "find 'html[name=File]'"},
    {"call_by_name", std::string(kNotepad) + "call aaNameFromWindow"},
    {"call_by_number", std::string(kNotepad) + "call 22 '{\"window\": \"0x20102\"}'"},
    {"call_search", std::string(kNotepad) + "call FindSelectors '{\"selectors\": [\"ctrl[name=File]\", {\"tags\": [{\"kind\": \"ctrl\", "
                                            "\"attributes\": {\"name\": {\"value\": \"fi.*\", \"matching\": \"regex\", \"caseSensitive\": false}, "
                                            "\"idx\": 1}}], \"options\": {\"maxResults\": 1}}]}'"},
    {"call_search_fails", std::string(kNotepad) + "call FindSelectors '{\"selectors\": [{\"selector\": \"ctrl[role=window] ctrl[name=x]\", "
                                                  "\"options\": {\"keepIntermediateOnError\": true}}]}'"},
    {"call_point", std::string(kNotepad) + "call FindElemFromPoint '{\"point\": {\"x\": 120, \"y\": 140}, \"flags\": 3}'"},
    {"call_list", "call --list"},
    {"call_unknown", std::string(kNotepad) + "call FindSelector"},
    {"call_no_json", std::string(kNotepad) + "call 22 '{'"},
    {"call_wrong_field", std::string(kNotepad) + "call 22 '{\"windwo\": 1}'"},
    {"call_wrong_type", std::string(kNotepad) + "call 20 '{\"selectors\": [{\"options\": {\"scope\": \"x\"}}]}'"},
    {"call_wrong_selector", std::string(kNotepad) + "call 20 '{\"selectors\": [\"ctrl[\"]}'"},
    {"call_not_served", std::string(kNotepad) + "call Scrape"},
    {"picture", std::string(kNotepad) + "picture - --outline 'ctrl[name=File]'"},
    {"record", std::string(kNotepad) + "record -"},
    {"unload", std::string(kNotepad) + "unload"},
    {"no_command", std::string(kNotepad)},
    {"unknown_command", "frobnicate"},
    {"unknown_option", "windows --frobnicate"},
    {"two_targets", std::string(kNotepad) + "--pid 1000 --window x tree"},
    {"wrong_number", std::string(kNotepad) + "--timeout x tree"},
    {"wrong_handle", std::string(kNotepad) + "--handle wide tree"},
    {"no_such_window", std::string(kNotepad) + "--window 'letter.doc*' tree"},
    {"no_such_process", std::string(kNotepad) + "--pid 77 tree"},
    {"no_such_handle", std::string(kNotepad) + "--handle 0x7777 tree"},
    {"no_such_file", "--desktop tests/desktops/nowhere.json tree"},
    {"no_desktop_file", "--desktop tests/expected/ctl/broken.json tree"},
    {"launch_on_desktop", std::string(kNotepad) + "--launch notepad tree"},
    {"no_live_windows", "windows"},
    {"no_window_said", "tree"},
};

INSTANTIATE_TEST_SUITE_P(CommandLine, ExpectedOutput, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CommandLine, EveryExpectedFileBelongsToACase) {
    std::set<std::string> names{"broken.json"};
    for (const Case& item : kCases) names.insert(std::string(item.name) + ".txt");
    for (const auto& file : std::filesystem::directory_iterator(std::filesystem::path(VANTREL_SOURCE_DIR) / "tests/expected/ctl"))
        EXPECT_TRUE(names.count(file.path().filename().string())) << file.path();
}

TEST(CommandLine, ExitCodesTellWhatHappened) {
    EXPECT_EQ(Ctl(std::string(kNotepad) + "find ctrl[name=File]").code, 0);
    EXPECT_EQ(Ctl(std::string(kNotepad) + "find ctrl[name=Nowhere]").code, 1);
    EXPECT_EQ(Ctl(std::string(kNotepad) + "call Scrape").code, 1);
    EXPECT_EQ(Ctl(std::string(kNotepad) + "find ctrl[").code, 2);
    EXPECT_EQ(Ctl("--desktop nowhere.json tree").code, 3);
    EXPECT_EQ(Ctl(std::string(kNotepad) + "--window nowhere tree").code, 3);
}

TEST(CommandLine, LogLinesOfTheServerAreShownOnlyWhenAskedFor) {
    ::testing::internal::CaptureStderr();
    Ctl(std::string(kNotepad) + "at 120 140");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    ::testing::internal::CaptureStderr();
    Ctl(std::string(kNotepad) + "--log verbose at 120 140");
    const std::string lines = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(lines.find("RequestId::FindElemFromPoint"), std::string::npos);
    EXPECT_NE(lines.find("RequestId::UnregisterAllContainersByClientPid"), std::string::npos) << "the elements weren't forgotten";
}

TEST(CommandLine, KeptElementsAreNotForgotten) {
    ::testing::internal::CaptureStderr();
    Ctl(std::string(kNotepad) + "--keep --log verbose at 120 140");
    EXPECT_EQ(::testing::internal::GetCapturedStderr().find("UnregisterAll"), std::string::npos);
    // Nothing is left behind by the test: kept elements belong to client 1.
    EXPECT_EQ(Ctl(std::string(kNotepad) + "call UnregisterAllContainersByClientPid '{\"clientPid\": 1}'").code, 0);
}

class ShippedDesktop : public ::testing::TestWithParam<const char*> {};

TEST_P(ShippedDesktop, RecordedAndLoadedAgainHasTheSameTree) {
    const std::string original = std::string("--desktop tests/desktops/") + GetParam() + " ";
    const auto folder = std::filesystem::temp_directory_path() / ("vantrel-record-" + std::string(GetParam()));
    const std::string copy = folder.string();
    ASSERT_EQ(Ctl(original + "record " + copy).code, 0);
    const std::string attributes = "tree --attrs text,value,helpText,automationid,labeledby";
    const CommandAnswer before = Ctl(original + attributes), after = Ctl("--desktop " + copy + " " + attributes);
    EXPECT_EQ(after.code, 0) << after.err;
    EXPECT_EQ(before.out, after.out);
    // A second recording is the same text: nothing is lost step by step.
    EXPECT_EQ(Ctl(original + "record -").out, Ctl("--desktop " + copy + " record -").out);
    std::filesystem::remove(folder);
}

INSTANTIATE_TEST_SUITE_P(CommandLine, ShippedDesktop, ::testing::Values("notepad.json", "settings.json", "browser.json", "registry.json"),
                         [](const auto& info) { return std::string(info.param).substr(0, std::string(info.param).find('.')); });

class Document : public ::testing::TestWithParam<const char*> {};

TEST_P(Document, ExamplesPrintWhatIsWritten) {
    const std::string path = std::string("docs/") + GetParam();
    std::string text = Testing::ReadSourceFile(path);
    if (Testing::RewritesExpected()) Testing::WriteSourceFile(path, text = Testing::RewriteExamples(text, &Testing::TerminalAnswer));
    const auto examples = Testing::ReadExamples(text);
    EXPECT_GE(examples.size(), 5u);
    for (const auto& example : examples) EXPECT_EQ(Testing::TerminalAnswer(example.line), example.expected) << example.line;
}

INSTANTIATE_TEST_SUITE_P(CommandLine, Document, ::testing::Values("command-line.md", "selectors.md"),
                         [](const auto& info) { return std::string(info.param).substr(0, 5) == "comma" ? "CommandLine" : "Selectors"; });

TEST(RecordJson, EveryRequestIsEncodedUnderItsNameAndItsNumber) {
    for (std::uint32_t number = 0; number < kRequestCount; ++number) {
        const RequestId id = static_cast<RequestId>(number);
        EXPECT_EQ(FindRequest(RequestName(id)), id);
        EXPECT_EQ(FindRequest(std::to_string(number)), id);
        // A request without its element or text is still a request: what the server says to it is another matter.
        EXPECT_FALSE(EncodeRequestJson(id, "{}", {}).empty()) << RequestName(id);
        EXPECT_EQ(DecodeResponseJson(id, {}), "null");
    }
    EXPECT_EQ(FindRequest("40"), std::nullopt);
    EXPECT_EQ(FindRequest(""), std::nullopt);
}

}  // namespace
}  // namespace Zorvex::Controller
