// Runs the command line in this process, as a shell would, and compares what it says with what is written down.
// Native builds only.
#pragma once

#include <string>
#include <vector>

namespace Zorvex::Testing {

struct CommandAnswer {
    int code = 0;
    std::string out;
    std::string err;
};

// `arguments` without the program's name. Files are found from the root of the sources. Numbers of containers in
// identifiers are made the same for every run, since they count on through the whole process.
CommandAnswer RunCommand(const std::vector<std::string>& arguments);

// A line as a person types it, with '...' and "..." around words with blanks; no other rule of a shell.
std::vector<std::string> SplitLine(const std::string& line);

// Whether VANTREL_REWRITE_EXPECTED is set: then what is written down is brought up to date in place of being compared.
bool RewritesExpected();

std::string ReadSourceFile(const std::string& path);
bool SourceFileExists(const std::string& path);
void WriteSourceFile(const std::string& path, const std::string& text);

// One block of a document that begins with ```console: lines with "$ " in front and what they print.
struct ConsoleExample {
    std::string line;      // behind "$ "
    std::string expected;  // output and messages, as a terminal shows them
};
std::vector<ConsoleExample> ReadExamples(const std::string& document);
// The document with all answers as they are now. `answer` is asked for each line.
std::string RewriteExamples(const std::string& document, std::string (*answer)(const std::string& line));

// What a terminal would show after the line: the name of the program, its arguments. Fails loudly for other programs.
std::string TerminalAnswer(const std::string& line);

}  // namespace Zorvex::Testing
