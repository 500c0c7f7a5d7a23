#include "Controller/Loader/WindowTree.h"

#include <algorithm>
#include <map>

namespace Zorvex::Loader {

namespace {

BOOL CALLBACK AddWindow(HWND child, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
    return TRUE;
}

}  // namespace

HWND ParentWindow(HWND window) {
    if (!::IsWindow(window)) return nullptr;
    const HWND parent = ::GetAncestor(window, GA_PARENT);
    return parent == ::GetDesktopWindow() ? nullptr : parent;
}

std::vector<HWND> WindowsBelow(HWND window) {
    // Without a window the system would list every window there is.
    if (!::IsWindow(window)) return {};
    std::vector<HWND> all;
    ::EnumChildWindows(window, AddWindow, reinterpret_cast<LPARAM>(&all));
    // The system lists parents before children, but not level by level.
    std::map<HWND, int> levels{{window, 0}};
    for (const HWND child : all) {
        const auto parent = levels.find(::GetAncestor(child, GA_PARENT));
        levels.emplace(child, parent == levels.end() ? 1 : parent->second + 1);
    }
    std::stable_sort(all.begin(), all.end(), [&](HWND left, HWND right) { return levels[left] < levels[right]; });
    return all;
}

std::vector<HWND> ChildWindows(HWND window) {
    std::vector<HWND> children = WindowsBelow(window);
    std::erase_if(children, [&](HWND child) { return ::GetAncestor(child, GA_PARENT) != window; });
    return children;
}

}  // namespace Zorvex::Loader
