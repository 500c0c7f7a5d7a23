#include <filesystem>
#include <fstream>
#include <iterator>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/SystemChoice.h"

namespace Zorvex::Controller {

namespace {

// The path type takes UTF-8 on every system by this way.
std::filesystem::path PathOf(const std::wstring& text) {
    const std::string narrow = NarrowText(text);
    return std::filesystem::path(std::u8string(narrow.begin(), narrow.end()));
}

}  // namespace

std::string ReadWholeFile(const std::wstring& path) {
    std::error_code ignored;
    std::ifstream file(PathOf(path), std::ios::binary);
    if (!file || std::filesystem::is_directory(PathOf(path), ignored))
        throw CommandFailure(ExitCode::TargetProblem, "the file " + NarrowText(path) + " can't be read");
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteWholeFile(const std::wstring& path, const std::string& text) {
    std::ofstream file(PathOf(path), std::ios::binary);
    file << text;
    if (!file.flush()) throw CommandFailure(ExitCode::TargetProblem, "the file " + NarrowText(path) + " can't be written");
}

}  // namespace Zorvex::Controller
