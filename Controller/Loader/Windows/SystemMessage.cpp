#include "Controller/Loader/Windows/SystemMessage.h"

#include <iterator>

#include "Common/include/UtfConversion.h"

namespace Zorvex::Loader {

std::string SystemMessage(DWORD error) {
    wchar_t text[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                  static_cast<DWORD>(std::size(text)), nullptr);
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L' ')) --length;
    if (length == 0) return "error " + std::to_string(error);
    return NarrowText({text, length});
}

LoadFailure CallFailure(LoadProblem problem, const char* call, DWORD error) {
    return {problem, std::string(call) + ": " + SystemMessage(error) + " (" + std::to_string(error) + ")"};
}

}  // namespace Zorvex::Loader
