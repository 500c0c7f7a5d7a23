// The whole command line on the shipped desktops. Each file of tests/expected/ctl is a case: its first line is typed, the
// rest is what that prints. With VANTREL_REWRITE_EXPECTED=1 in the environment the tests write the rest anew, so a new
// case begins as a file of one line.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/RecordJson.h"
#include "RuntimeCore/Requests/RequestId.h"
#include "tests/Support/CommandRun.h"

namespace Zorvex::Controller {
namespace {

using Testing::CommandAnswer;
using Testing::RunCommand;
using Testing::SplitLine;

const char* const kNotepad = "--desktop tests/desktops/notepad.json ";

CommandAnswer Ctl(const std::string& line) { return RunCommand(SplitLine(line)); }

constexpr const char* kCommand = "$ vantrel-ctl ";

// The names of the files, which begin with the line of their case.
std::vector<std::string> CaseNames() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(std::filesystem::path(VANTREL_SOURCE_DIR) / "tests/expected/ctl"))
        if (file.path().extension() == ".txt") names.push_back(file.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class ExpectedOutput : public ::testing::TestWithParam<std::string> {};

TEST_P(ExpectedOutput, IsAsWrittenDown) {
    const std::string path = "tests/expected/ctl/" + GetParam() + ".txt";
    const std::string expected = Testing::ReadSourceFile(path);
    ASSERT_EQ(expected.rfind(kCommand, 0), 0u) << path << " doesn't begin with the line that is typed";
    const std::string line = expected.substr(0, expected.find('\n')).substr(std::string(kCommand).size());
    const CommandAnswer answer = Ctl(line);
    const std::string text = kCommand + line + "\n" + answer.out + (answer.err.empty() ? "" : "-- messages\n" + answer.err) +
                             "-- exit code " + std::to_string(answer.code) + "\n";
    if (Testing::RewritesExpected()) Testing::WriteSourceFile(path, text);
    EXPECT_EQ(Testing::ReadSourceFile(path), text);
}

INSTANTIATE_TEST_SUITE_P(CommandLine, ExpectedOutput, ::testing::ValuesIn(CaseNames()),
                         [](const auto& info) { return info.param; });

// Every request stands in the table of the page, with a command that there is.
TEST(CommandLine, EveryRequestHasItsCommandInTheTable) {
    const std::string document = Testing::ReadSourceFile("docs/command-line.md");
    const std::string help = Ctl("--help").out;
    for (std::uint32_t number = 0; number < 40; ++number) {
        const std::string name = std::string(ToText(static_cast<RequestId>(number))).substr(std::string("RequestId::").size());
        const std::string row = "| " + std::to_string(number) + " | `" + name + "` | `";
        const std::size_t place = document.find(row);
        ASSERT_NE(place, std::string::npos) << row;
        const std::string command = document.substr(place + row.size(), document.find('`', place + row.size()) - place - row.size());
        EXPECT_NE(help.find("\n  " + command.substr(0, command.find(' ')) + " "), std::string::npos) << command;
        if (command.rfind("call ", 0) == 0) { EXPECT_EQ(command, "call " + name); }
    }
}

TEST(CommandLine, ExitCodesTellWhatHappened) {
    EXPECT_EQ(Ctl(std::string(kNotepad) + "find ctrl[name=File]").code, 0);
    EXPECT_EQ(Ctl(std::string(kNotepad) + "find ctrl[name=Nowhere]").code, 1);
    EXPECT_EQ(Ctl(std::string(kNotepad) + "find ctrl[").code, 2);
    EXPECT_EQ(Ctl("--desktop nowhere.json tree").code, 3);
    EXPECT_EQ(Ctl(std::string(kNotepad) + "--window nowhere tree").code, 3);
}

TEST(CommandLine, AnAnswerThatCannotBeWrittenIsAFailure) {
    std::ostringstream out, err;
    out.setstate(std::ios::badbit);
    EXPECT_EQ(RunCommandLine({"call", "--list"}, out, err), 3);
    EXPECT_EQ(err.str(), "the answer can't be written to the standard output\n");
}

TEST(CommandLine, PlacesAtTheEndsOfTheNumbersAreDrawnAndRecorded) {
    const std::string file = (std::filesystem::temp_directory_path() / "vantrel-vast-places.json").string();
    std::ofstream(file) << R"({"format": "vantrel-desktop/1", "windows": [{"id": "w", "class": "Dialog", "rectangle": [-2000000000, 5, 400, 300],
        "objects": {"client": {"rectangle": [-2000000000, 5, 400, 300], "children": [
            {"role": "push button", "name": "vast", "rectangle": [2000000000, 10, 100, 20]},
            {"role": "push button", "name": "round", "rectangle": [-2000000000, 10, 100, 20],
             "faults": [{"call": "accLocation", "count": 2147483647}]}]}}}]})";
    const CommandAnswer picture = Ctl("--desktop " + file + " picture -");
    EXPECT_EQ(picture.code, 0) << picture.err;
    EXPECT_NE(picture.out.find("x=\"4000000000\""), std::string::npos) << picture.out;
    const CommandAnswer recorded = Ctl("--desktop " + file + " record -");
    EXPECT_EQ(recorded.code, 0) << recorded.err;
    EXPECT_NE(recorded.out.find("2147483647"), std::string::npos) << recorded.out;
    std::filesystem::remove(file);
}

TEST(CommandLine, ASearchOfAnEndlessTreeEndsByItsTimeOut) {
    const std::string file = (std::filesystem::temp_directory_path() / "vantrel-endless.json").string();
    std::ofstream(file) << R"({"format": "vantrel-desktop/1", "windows": [{"id": "w", "class": "Dialog", "rectangle": [0, 0, 100, 100],
        "objects": {"client": {"children": [{"role": "list", "name": "more", "endless": true}]}}}]})";
    const auto start = std::chrono::steady_clock::now();
    const CommandAnswer answer = Ctl("--desktop " + file + " --timeout 500 find ctrl[name=Nowhere]");
    EXPECT_EQ(answer.code, 1);
    EXPECT_NE(answer.out.find("not found: tag 1 of 1"), std::string::npos) << answer.out;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    std::filesystem::remove(file);
}

TEST(CommandLine, ADesktopWithoutWindowsSaysSo) {
    const std::string file = (std::filesystem::temp_directory_path() / "vantrel-no-windows.json").string();
    std::ofstream(file) << R"({"format": "vantrel-desktop/1", "windows": []})";
    const CommandAnswer listed = Ctl("--desktop " + file + " windows"), all = Ctl("--desktop " + file + " --json windows --all");
    EXPECT_EQ(listed.code, 1);
    EXPECT_EQ(listed.err, "there is no visible window\n");
    EXPECT_EQ(all.err, "there is no window\n");
    EXPECT_EQ(all.out, "{\n \"windows\": []\n}\n");
    EXPECT_EQ(Ctl("--desktop " + file + " tree").code, 3);
    std::filesystem::remove(file);
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

// The tour of the front page: the lines that need no live window.
TEST(CommandLine, TheTourOfTheFrontPageWorks) {
    const std::string text = Testing::ReadSourceFile("README.md"), lead = "\n$ ./run.sh ctl --desktop ";
    int lines = 0;
    for (std::size_t at = 0; (at = text.find(lead, at)) != std::string::npos; ++lines) {
        at += lead.size();
        const std::string arguments = "--desktop " + text.substr(at, text.find('\n', at) - at);
        const CommandAnswer answer = Ctl(arguments);
        EXPECT_EQ(answer.code, 0) << arguments << '\n' << answer.err;
        EXPECT_FALSE(answer.out.empty()) << arguments;
    }
    EXPECT_GE(lines, 5);
}

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
