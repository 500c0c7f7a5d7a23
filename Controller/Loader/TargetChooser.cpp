#include "Controller/Loader/TargetChooser.h"

#include <algorithm>

#include "Common/include/UtfConversion.h"
#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"

namespace Zorvex::Loader {

namespace {

constexpr std::size_t TitlesInMessage = 5;

// The pattern's own letters somewhere in the title make it a candidate for what was meant.
bool MightBeMeant(std::wstring_view pattern, const std::wstring& title) {
    std::wstring anywhere = L"*";
    for (const wchar_t unit : pattern) anywhere += unit;
    anywhere += L'*';
    return WildcardMatch(anywhere, title, false);
}

LoadFailure NoWindowWithTitle(std::wstring_view pattern, const std::vector<WindowInfo>& windows) {
    std::vector<std::wstring> titles;
    for (const WindowInfo& window : windows) {
        if (!window.title.empty() && std::find(titles.begin(), titles.end(), window.title) == titles.end()) {
            titles.push_back(window.title);
        }
    }
    std::stable_partition(titles.begin(), titles.end(),
                          [&](const std::wstring& title) { return MightBeMeant(pattern, title); });
    std::string detail = "no visible window has a title like \"" + NarrowText(pattern) + "\"";
    if (titles.empty()) return {LoadProblem::NoSuchWindow, detail + "; none has a title"};
    detail += "; there are ";
    for (std::size_t i = 0; i < std::min(titles.size(), TitlesInMessage); ++i) {
        detail += (i ? ", \"" : "\"") + NarrowText(titles[i]) + "\"";
    }
    if (titles.size() > TitlesInMessage) detail += " and " + std::to_string(titles.size() - TitlesInMessage) + " more";
    return {LoadProblem::NoSuchWindow, std::move(detail)};
}

}  // namespace

LoadResult<WindowInfo> FindWindowByTitle(ILoaderSystem& system, std::wstring_view pattern) {
    std::vector<WindowInfo> windows = system.TopLevelWindows(WindowFilter::Visible);
    for (WindowInfo& window : windows) {
        if (WildcardMatch(pattern, window.title, false)) return std::move(window);
    }
    return NoWindowWithTitle(pattern, windows);
}

LoadResult<WindowInfo> FindWindowByProcess(ILoaderSystem& system, DWORD processId) {
    std::vector<WindowInfo> windows = system.TopLevelWindows(WindowFilter::Visible);
    WindowInfo* untitled = nullptr;
    for (WindowInfo& window : windows) {
        if (window.processId != processId) continue;
        if (!window.title.empty()) return std::move(window);
        if (!untitled) untitled = &window;
    }
    if (untitled) return std::move(*untitled);
    const std::string number = std::to_string(processId);
    if (system.ProcessExists(processId)) return LoadFailure{LoadProblem::NoSuchProcess, number + " has no visible window"};
    return LoadFailure{LoadProblem::NoSuchProcess, number};
}

}  // namespace Zorvex::Loader
