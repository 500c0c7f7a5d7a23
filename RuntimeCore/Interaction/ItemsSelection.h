// Items of a container through accessibility: which there are, which are selected, and selecting them.
#pragma once

#include <vector>

#include "Common/include/CString.h"
#include "RuntimeCore/Interaction/ItemsContainer.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex {

enum class DisabledItems { Refuse, Allow };
enum class ItemChoice { EveryMatch, FirstMatchOnly };
// Whether clearing also takes away the one item of a container in which only one can be selected.
enum class SingleSelection { Leave, Clear };

// Appends the names of all items to `items`, the values in a table; an item without a text is left out. Success also
// when all were left out, but for a combo box, where that means NothingFound.
SelectionResult GetAllItems(const ItemsContainer& container, std::vector<CString>& items);

// Selects the item with that name, or that text in a table. With wildcards in it, in a container of multiple selection,
// every item that matches. Ends at the first one that can't be selected; those before it stay selected.
SelectionResult SetSelectedItemImpl(const ItemsContainer& container, const CString& item, ItemChoice choice, DisabledItems disabled);

// Takes the selection off. Combo boxes and tab lists always have something selected, so there it does nothing.
SelectionResult ClearSelection(const ItemsContainer& container, SingleSelection single);

// Appends the names of the selected items to `items`, the values in a table. Of a combo box it is the value, whatever
// is selected in its list.
SelectionResult GetSelectedItems(const ItemsContainer& container, std::vector<CString>& items);

}  // namespace Zorvex
