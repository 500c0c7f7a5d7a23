#include "Controller/CommandLine/WindowTags.h"

#include <algorithm>
#include <set>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/Output.h"
#include "Controller/Loader/WindowTree.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex::Controller {

namespace {

constexpr std::size_t kShown = 5;

using Loader::WindowInfo;

bool IsKnown(std::wstring_view name) {
    constexpr std::wstring_view known[] = {L"app", L"cls", L"title", L"pid", L"tid", L"idx"};
    return std::find(std::begin(known), std::end(known), name) != std::end(known);
}

// The place among the windows that fit, from 1; 0 if the tag asks for none.
std::int64_t IndexOf(const ISelectorTag& tag) {
    const auto index = std::dynamic_pointer_cast<NumberValue>(tag.GetAttribute(L"idx"));
    return index && index->GetEnabled() ? index->GetValue() : 0;
}

bool Fits(const ISelectorTag& tag, const WindowInfo& window) {
    for (const auto& [name, value] : tag.GetAttributes()) {
        if (!value->GetEnabled() || name == L"idx") continue;
        const bool matches = name == L"app"     ? value->Matches(CString(window.processName), nullptr)
                             : name == L"cls"   ? value->Matches(CString(window.windowClass), nullptr)
                             : name == L"title" ? value->Matches(CString(window.title), nullptr)
                             : name == L"pid"   ? value->Matches(static_cast<std::int64_t>(window.processId), nullptr)
                                                : value->Matches(static_cast<std::int64_t>(window.threadId), nullptr);
        if (!matches) return false;
    }
    return true;
}

std::vector<WindowInfo> Describe(Loader::ILoaderSystem& system, const std::vector<HWND>& handles) {
    std::vector<WindowInfo> windows;
    for (const HWND handle : handles)
        if (auto window = system.Describe(handle)) windows.push_back(std::move(*window));
    return windows;
}

// What a tag is tried on: top-level windows, or what lies below the windows that fitted the tag before.
std::vector<WindowInfo> Offered(Loader::ILoaderSystem& system, const std::vector<HWND>& above, Search::SearchScope scope) {
    std::vector<HWND> handles;
    std::set<HWND> known;
    for (const HWND parent : above)
        for (const HWND child : scope == Search::SearchScope::ChildrenOnly ? Loader::ChildWindows(parent) : Loader::WindowsBelow(parent))
            if (known.insert(child).second) handles.push_back(child);
    return Describe(system, handles);
}

}  // namespace

Selector SplitSelector::ElementSelector() const {
    Selector selector;
    selector.tags = elements;
    const bool firstAlone = scope == Search::SearchScope::DescendantsOfTopLevel && !windows.empty();
    selector.scope = firstAlone ? Search::SearchScope::Descendants : scope;
    return selector;
}

SplitSelector Split(const Selector& selector) {
    SplitSelector split;
    split.scope = selector.scope;
    for (const auto& tag : selector.tags) {
        const std::string text = NarrowText(WriteTag(*tag));
        if (tag->GetTagKind() == TagKind::Aa) {
            split.elements.push_back(tag);
            continue;
        }
        if (tag->GetTagKind() != TagKind::Wnd)
            throw CommandFailure(ExitCode::WrongArguments, "the search knows wnd and ctrl tags alone, not " + text);
        if (!split.elements.empty())
            throw CommandFailure(ExitCode::WrongArguments, "windows stand before elements: " + text + " can't be below a ctrl tag");
        for (const auto& [name, value] : tag->GetAttributes())
            if (value->GetEnabled() && !IsKnown(name))
                throw CommandFailure(ExitCode::WrongArguments, "a window can't be found by " + NarrowText(name) + ", as " + text +
                                                                   " asks; there are app, cls, title, pid, tid and idx");
        split.windows.push_back(tag);
    }
    return split;
}

std::shared_ptr<ISelectorTag> DescribeWindow(const WindowInfo& window, WindowTitle title) {
    auto tag = std::make_shared<WndTag>();
    const auto set = [&](const wchar_t* name, const std::wstring& text) {
        if (!text.empty()) tag->SetAttribute(name, std::make_shared<StringValue>(text, MatchingTypeNormal));
    };
    set(L"app", window.processName);
    set(L"cls", window.windowClass);
    if (title == WindowTitle::Include) set(L"title", window.title);
    return tag;
}

FoundWindows FindWindows(Loader::ILoaderSystem& system, const TagList& tags, Search::SearchScope scope, const std::vector<HWND>& top) {
    FoundWindows found;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        std::vector<WindowInfo> offered = i > 0         ? Offered(system, found.windows, scope)
                                          : top.empty() ? system.TopLevelWindows(Loader::WindowFilter::All)
                                                        : Describe(system, top);
        std::stable_partition(offered.begin(), offered.end(), [](const WindowInfo& window) { return window.visible; });
        std::vector<HWND> fitting;
        for (const WindowInfo& window : offered)
            if (Fits(*tags[i], window)) fitting.push_back(window.window);
        if (const std::int64_t index = IndexOf(*tags[i]); index != 0) {
            const bool there = index > 0 && static_cast<std::uint64_t>(index) <= fitting.size();
            fitting = there ? std::vector<HWND>{fitting[static_cast<std::size_t>(index - 1)]} : std::vector<HWND>{};
        }
        found.windows = std::move(fitting);
        if (found.windows.empty()) {
            found.offered = std::move(offered);
            return found;
        }
        ++found.matchedTags;
    }
    return found;
}

std::string NoWindowText(const FoundWindows& found, const TagList& tags) {
    std::string text = "no window fits tag " + std::to_string(found.matchedTags + 1) + " of " + std::to_string(tags.size()) + ", " +
                       NarrowText(WriteTag(*tags[found.matchedTags]));
    if (found.offered.empty()) return text + "; there is none to try it on";
    text += "; there are";
    for (std::size_t i = 0; i < std::min(found.offered.size(), kShown); ++i)
        text += "\n  " + NarrowText(WriteTag(*DescribeWindow(found.offered[i], WindowTitle::Include)));
    if (found.offered.size() > kShown) text += "\n  and " + std::to_string(found.offered.size() - kShown) + " more";
    return text;
}

}  // namespace Zorvex::Controller
