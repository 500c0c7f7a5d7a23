// The tags of a selector that name windows. They are resolved here, in the controller: the server, which sits in one
// window's process, never sees them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Controller/CommandLine/SelectorText.h"
#include "Controller/Loader/ILoaderSystem.h"
#include "RuntimeCore/Selectors/Values/ISelectorTag.h"

namespace Zorvex::Controller {

using TagList = std::vector<std::shared_ptr<ISelectorTag>>;

// A selector taken apart: `wnd` tags from the top-level window down, then the tags that are for the server.
struct SplitSelector {
    Search::SearchScope scope = Search::SearchScope::Descendants;
    TagList windows;
    TagList elements;  // ctrl tags

    // The part for the server. Its scope is the selector's, but below a window the first tag is not at its top: a scope
    // that binds the first tag alone has done so with the first window.
    Selector ElementSelector() const;
};

// Throws CommandFailure for a tag that is neither, a `wnd` tag behind a `ctrl` tag, and an attribute of a `wnd` tag
// that isn't one of app, cls, title, pid, tid and idx.
SplitSelector Split(const Selector& selector);

// A tag for the window: app, cls, and the title on wish where it has one.
enum class WindowTitle { Include, LeaveOut };
std::shared_ptr<ISelectorTag> DescribeWindow(const Loader::WindowInfo& window, WindowTitle title);

// Where a search of windows ended.
struct FoundWindows {
    std::vector<HWND> windows;     // that fit all tags; visible ones first, each group from front to back
    std::size_t matchedTags = 0;   // with `windows` empty: so many tags had matches
    std::vector<Loader::WindowInfo> offered;  // with `windows` empty: what the failed tag was tried on
};

// `top`: the windows that the first tag may be; empty: every top-level window.
FoundWindows FindWindows(Loader::ILoaderSystem& system, const TagList& tags, Search::SearchScope scope,
                         const std::vector<HWND>& top = {});

// "no window fits tag 2 of 3, wnd[cls="Edit"]; there are ...", for a person.
std::string NoWindowText(const FoundWindows& found, const TagList& tags);

}  // namespace Zorvex::Controller
