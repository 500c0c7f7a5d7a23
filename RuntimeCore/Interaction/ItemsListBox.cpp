#include "RuntimeCore/Interaction/ItemsListBox.h"

#include <algorithm>

#include "Common/UTILITY/NListControls.h"
#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"

namespace Zorvex {

namespace {

constexpr LRESULT Refused = -1;  // LB_ERR as it comes back

enum class BoxKind { Single, Multiple };

// What is asked here of a text of no length is a failure, in contrast to other readers of list boxes: such an item has
// nothing to be found by.
bool GetListBoxItem(HWND window, int index, CString& text) {
    if (::SendMessageW(window, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0) >= 1) return NWindows::GetListBoxItem(window, index, text);
    text.clear();
    LogError("GetListBoxItem: Could not find retrieve text length for item index: %d", index);
    return false;
}

// The indexes of the items that match, at most `most` of them.
std::vector<int> FindListBoxItemMatches(HWND window, const CString& item, std::size_t most) {
    std::vector<int> matches;
    const LRESULT count = std::min(::SendMessageW(window, LB_GETCOUNT, 0, 0), MostListBoxItems);
    CString text;
    for (int index = 0; index < count && matches.size() < most; ++index) {
        if (GetListBoxItem(window, index, text)) {
            if (WildcardMatch(item, text, true)) matches.push_back(index);
            continue;
        }
        LogError("Could not find retrieve text for item index: %d", index);
        // A box that went away meanwhile refuses all the rest.
        if (!::IsWindow(window)) break;
    }
    return matches;
}

bool Select(HWND window, int index, BoxKind kind) {
    return (kind == BoxKind::Multiple ? ::SendMessageW(window, LB_SETSEL, TRUE, index)
                                      : ::SendMessageW(window, LB_SETCURSEL, static_cast<WPARAM>(index), 0)) != Refused;
}

SelectionResult SelectListBoxItem(HWND window, const CString& item, BoxKind kind) {
    const std::vector<int> matches = FindListBoxItemMatches(window, item, 1);
    if (matches.empty()) {
        LogError("Could not find item: '%ls'", item);
        return SelectionResult::NothingFound;
    }
    if (!Select(window, matches.front(), kind)) {
        LogError("Could not set selection for item: '%ls'", item);
        return SelectionResult::Failure;
    }
    return SelectionResult::Success;
}

SelectionResult SelectListBoxMatchingItems(HWND window, const CString& item) {
    const std::vector<int> matches = FindListBoxItemMatches(window, item, static_cast<std::size_t>(MostListBoxItems));
    if (matches.empty()) {
        LogError("Could not find item: '%ls'", item);
        return SelectionResult::NothingFound;
    }
    for (const int index : matches) {
        if (Select(window, index, BoxKind::Multiple)) continue;
        LogError("Could not set selection for item: '%ls'", item);
        return SelectionResult::Failure;
    }
    return SelectionResult::Success;
}

// Nothing if the box refuses, or counts more than there can be.
bool ReadSelectedIndexes(HWND window, LRESULT count, std::vector<int>& indexes) {
    if (count > MostListBoxItems) return false;
    indexes.assign(static_cast<std::size_t>(count), 0);
    const LRESULT obtained = ::SendMessageW(window, LB_GETSELITEMS, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(indexes.data()));
    if (obtained < 0) return false;
    indexes.resize(static_cast<std::size_t>(std::min(obtained, count)));
    return true;
}

}  // namespace

bool HasWildcard(const CString& text) { return text.find_first_of(L"*?") != CString::npos; }

SelectionResult SetSelectedItemsImpl_ListBox(HWND window, const std::vector<CString>& items, bool clearFirst, bool firstMatchOnly) {
    if (::SendMessageW(window, LB_GETSELCOUNT, 0, 0) == Refused)
        return items.empty() ? SelectionResult::Success : SelectListBoxItem(window, items.front(), BoxKind::Single);
    if (clearFirst) {
        const SelectionResult cleared = ClearSelectedItemsImpl_ListBox(window);
        if (cleared != SelectionResult::Success) {
            LogError("Could not clear selection for WinForms List Box");
            return cleared;
        }
    }
    SelectionResult result = SelectionResult::Success;
    for (const CString& item : items) {
        result = firstMatchOnly || !HasWildcard(item) ? SelectListBoxItem(window, item, BoxKind::Multiple)
                                                      : SelectListBoxMatchingItems(window, item);
        if (result != SelectionResult::Success) break;
    }
    return result;
}

SelectionResult ClearSelectedItemsImpl_ListBox(HWND window) {
    const LRESULT count = ::SendMessageW(window, LB_GETSELCOUNT, 0, 0);
    if (count < 1) {
        if (::SendMessageW(window, LB_GETCURSEL, 0, 0) != Refused) ::SendMessageW(window, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
        return SelectionResult::Success;
    }
    std::vector<int> indexes;
    if (!ReadSelectedIndexes(window, count, indexes)) LogError("Could not retrieve current selected items for WinForms List Box");
    for (const int index : indexes)
        if (::SendMessageW(window, LB_SETSEL, FALSE, index) == Refused) LogError("Could not clear selection for item index: %d", index);
    return SelectionResult::Success;
}

SelectionResult GetSelectedItemsImpl_ListBox(HWND window, std::vector<CString>& items, AAUtil::SelectionExtent extent) {
    items.clear();
    const LRESULT count = ::SendMessageW(window, LB_GETSELCOUNT, 0, 0);
    std::vector<int> indexes;
    if (count == Refused) {
        const LRESULT current = ::SendMessageW(window, LB_GETCURSEL, 0, 0);
        if (current < 0) return SelectionResult::Success;
        indexes.push_back(static_cast<int>(current));
        items.resize(1);
    } else if (count < 1) {
        return SelectionResult::Success;
    } else {
        // On purpose before it is known which they are: a box that doesn't tell answers with as many empty texts.
        if (count <= MostListBoxItems) items.resize(static_cast<std::size_t>(count));
        if (!ReadSelectedIndexes(window, count, indexes)) {
            LogError("GetSelectedItemsImpl_ListBox: Could not retrieve current selected items for WinForms List Box");
            return SelectionResult::Failure;
        }
    }
    for (std::size_t place = 0; place < indexes.size(); ++place) {
        if (!GetListBoxItem(window, indexes[place], items[place])) {
            LogError("GetSelectedItemsImpl_ListBox: Could not find retrieve selected item index: %d", indexes[place]);
            return SelectionResult::Failure;
        }
        if (extent == AAUtil::SelectionExtent::FirstOnly) break;
    }
    return SelectionResult::Success;
}

}  // namespace Zorvex
