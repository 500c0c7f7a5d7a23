// Items of list boxes by window messages. List boxes of Windows Forms don't answer through accessibility in a usable
// way; what they do answer is their messages.
#pragma once

#include <vector>

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/AAUtilitiesSelection.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex {

// A box that claims more items than this is broken.
inline constexpr LRESULT MostListBoxItems = 1'000'000;

// Whether an item's text holds * or ?.
bool HasWildcard(const CString& text);

// Selects the items by their texts, which may be patterns: every match of a pattern in a box of multiple selection,
// the first under `firstMatchOnly`. A box of single selection gets the first item of the list alone. Ends at the first
// item that can't be selected.
SelectionResult SetSelectedItemsImpl_ListBox(HWND window, const std::vector<CString>& items, bool clearFirst, bool firstMatchOnly);

// Success always: what couldn't be cleared is told to the log.
SelectionResult ClearSelectedItemsImpl_ListBox(HWND window);

// The texts of the selected items in the order of the box. Success with none when nothing is selected. Failure when the
// selection or a text can't be read; the texts read until then stay in `items`, which is as long as the selection was.
// Under FirstOnly the list is that long too and only its first text is filled, which callers rely on.
SelectionResult GetSelectedItemsImpl_ListBox(HWND window, std::vector<CString>& items, AAUtil::SelectionExtent extent);

}  // namespace Zorvex
