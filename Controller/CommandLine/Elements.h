// Reading elements, many at a time.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Controller/CommandLine/Session.h"
#include "Controller/CommandLine/WindowTags.h"

namespace Zorvex::Controller {

// The attributes of an element that the search knows, then the two that only requests know.
inline constexpr const wchar_t* kAttributeNames[] = {L"name", L"role", L"text", L"value", L"aastate", L"automationid", L"labeledby",
                                                     L"helpText", L"virtualname", L"rowName", L"screenRect"};

// One attribute of many elements, in their order; VT_EMPTY where one has none.
std::vector<CComVariant> ReadAttribute(Session& session, const std::vector<AAObjectIdentifier>& elements, const std::wstring& name);
// The same as texts; what isn't a text comes empty.
std::vector<std::wstring> ReadTexts(Session& session, const std::vector<AAObjectIdentifier>& elements, const std::wstring& name);

// The bits of the state; nothing if they can't be read.
std::optional<LONG> ReadState(Session& session, const AAObjectIdentifier& element);

// Four numbers in an array; nothing for any other variant.
std::optional<RECT> RectangleOf(const VARIANT& value);
// A variant as a person reads it: texts in quotes, numbers, rectangles; a dash for an empty one.
std::string VariantText(const VARIANT& value);
void WriteVariant(class JsonWriter& json, const VARIANT& value);

// What most commands show of an element.
struct ElementView {
    AAObjectIdentifier identifier;
    std::wstring role, name, state;
    RECT rectangle{};
};
std::vector<ElementView> ReadViews(Session& session, const std::vector<AAObjectIdentifier>& elements);
// push button "Save"  110,110 80x24  [focusable]
std::string ViewText(const ElementView& view);
// The fields of an object that was begun.
void WriteView(class JsonWriter& json, const ElementView& view);

// The element that a person named, in a session that is opened at its window if it isn't open. Throws CommandFailure: a
// mistake in a selector with its column, nothing found, an identifier that isn't known any more.
AAObjectIdentifier FindTarget(Session& session, const TargetName& name);

// Among elements that resemble what is wanted the best is meant, among equals the first.
Search::ResultPolicy PolicyFor(const TagList& tags);

// Opens the session for a selector, and answers the windows to search in, one after another: those that its wnd tags
// name, which begin at the chosen window if one was chosen, or the chosen window itself. Never empty: throws
// CommandFailure where there is none.
std::vector<HWND> OpenWindows(Session& session, const SplitSelector& selector);

// The window's own element. Throws CommandFailure where it has none.
AAObjectIdentifier WindowElement(Session& session, HWND window);

// The elements that a search below `root` gives, in the tree's order.
std::vector<AAObjectIdentifier> Search(Session& session, const AAObjectIdentifier& root, Search::SelectorEntry entry);

}  // namespace Zorvex::Controller
