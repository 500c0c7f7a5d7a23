// The helpers of tests/Support/CommandRun.h: they stand here because they need the controller.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

#include "tests/Support/CommandRun.h"

namespace Zorvex::Controller {
int RunCommandLine(std::vector<std::string> arguments, std::ostream& out, std::ostream& err);
}

namespace Zorvex::Testing {

namespace {

const std::filesystem::path kRoot = VANTREL_SOURCE_DIR;

bool IsHexadecimal(char unit) { return (unit >= '0' && unit <= '9') || (unit >= 'a' && unit <= 'f'); }
bool IsDecimal(char unit) { return unit >= '0' && unit <= '9'; }

// The container's number stands behind "0x...:" and in front of ":".
std::string EvenOut(const std::string& text) {
    std::map<std::string, std::string> numbers;
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i;
        if (text.compare(i, 2, "0x") == 0) {
            end = i + 2;
            while (end < text.size() && IsHexadecimal(text[end])) ++end;
            std::size_t number = end + 1;
            while (end < text.size() && text[end] == ':' && number < text.size() && IsDecimal(text[number])) ++number;
            if (number > end + 1 && number < text.size() && text[number] == ':') {
                const std::string old = text.substr(end + 1, number - end - 1);
                const auto known = numbers.emplace(old, std::to_string(numbers.size() + 1)).first;
                result += text.substr(i, end + 1 - i) + (old == "0" ? old : known->second);
                i = number;
                continue;
            }
        }
        if (end == i) ++end;
        result += text.substr(i, end - i);
        i = end;
    }
    return result;
}

// A process of its own would take what it remembers of a table along.
void ForgetSession(std::vector<std::string> arguments) {
    const auto has = [&arguments](const char* word) { return std::find(arguments.begin(), arguments.end(), word) != arguments.end(); };
    if (!has("--session") || has("--cleanup")) return;
    // These have no meaning there.
    const auto rows = std::find(arguments.begin(), arguments.end(), "--max-rows");
    if (rows != arguments.end()) arguments.erase(rows, rows + 2);
    for (const char* word : {"--csv", "--no-header"}) std::erase(arguments, word);
    arguments.push_back("--cleanup");
    std::ostringstream ignored;
    if (Controller::RunCommandLine(std::move(arguments), ignored, ignored) == 2) throw std::logic_error(ignored.str());
}

}  // namespace

CommandAnswer RunCommand(const std::vector<std::string>& arguments) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(kRoot);
    std::ostringstream out, err;
    CommandAnswer answer;
    answer.code = Controller::RunCommandLine(arguments, out, err);
    if (answer.code == 0) ForgetSession(arguments);
    std::filesystem::current_path(before);
    answer.out = EvenOut(out.str());
    answer.err = EvenOut(err.str());
    return answer;
}

std::vector<std::string> SplitLine(const std::string& line) {
    std::vector<std::string> words;
    bool inside = false;
    char quote = 0;
    for (const char unit : line) {
        if (quote ? unit == quote : unit == '\'' || unit == '"') {
            quote = quote ? 0 : unit;
            if (!inside) words.emplace_back();
            inside = true;
        } else if (!quote && unit == ' ') {
            inside = false;
        } else {
            if (!inside) words.emplace_back();
            inside = true;
            words.back() += unit;
        }
    }
    return words;
}

bool RewritesExpected() { return std::getenv("VANTREL_REWRITE_EXPECTED") != nullptr; }

std::string ReadSourceFile(const std::string& path) {
    std::ifstream file(kRoot / path, std::ios::binary);
    if (!file) throw std::runtime_error(path + " is missing");
    return {std::istreambuf_iterator<char>(file), {}};
}

bool SourceFileExists(const std::string& path) { return std::filesystem::exists(kRoot / path); }

void WriteSourceFile(const std::string& path, const std::string& text) {
    std::filesystem::create_directories((kRoot / path).parent_path());
    std::ofstream(kRoot / path, std::ios::binary) << text;
}

std::vector<ConsoleExample> ReadExamples(const std::string& document) {
    std::vector<ConsoleExample> examples;
    std::istringstream lines(document);
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line == "```console") inside = true;
        else if (line == "```") inside = false;
        else if (inside && line.rfind("$ ", 0) == 0) examples.push_back({line.substr(2), ""});
        else if (inside && !examples.empty()) examples.back().expected += line + "\n";
    }
    return examples;
}

std::string RewriteExamples(const std::string& document, std::string (*answer)(const std::string& line)) {
    std::istringstream lines(document);
    std::string result;
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line == "```console") inside = true;
        else if (line == "```") inside = false;
        else if (inside && line.rfind("$ ", 0) == 0) {
            result += line + "\n" + answer(line.substr(2));
            continue;
        } else if (inside) {
            continue;
        }
        result += line + "\n";
    }
    return result;
}

std::string TerminalAnswer(const std::string& line) {
    std::vector<std::string> words = SplitLine(line);
    if (words.empty() || words[0] != "vantrel-ctl") throw std::runtime_error("an example doesn't begin with vantrel-ctl: " + line);
    words.erase(words.begin());
    const CommandAnswer answer = RunCommand(words);
    std::string text = answer.out + answer.err;
    // A terminal shows no carriage return.
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    if (!text.empty() && text.back() != '\n') text += '\n';
    return text;
}

TEST(CommandRun, ATableIsAsNewInEveryRun) {
    const std::string line =
        "vantrel-ctl --desktop tests/desktops/timetable.json table 'ctrl[name=late]' --csv --max-rows 1 --no-header --session again";
    const std::string answer = TerminalAnswer(line);
    EXPECT_NE(answer.find("session: MightBeDuringLoad"), std::string::npos) << answer;
    EXPECT_EQ(TerminalAnswer(line), answer);
}

}  // namespace Zorvex::Testing
