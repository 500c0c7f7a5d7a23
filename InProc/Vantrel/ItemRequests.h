// Requests about the items of lists, combo boxes, trees, tables and tab lists.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"

namespace Zorvex {

// Opens a combo box of a web page for as long as it takes to read its items.
GetAllItemsResponse GetAllItemsImpl(const GetAllItemsRequest& request);
// Without items, the selection of a list box is cleared; elsewhere that is for `clearFirst` to say.
SelectionResponse SetSelectedItemsImpl(const SetSelectedItemsRequest& request);
GetSelectedItemsResponse GetSelectedItemsImpl(const GetSelectedItemsRequest& request);
SelectionResponse ClearSelectedItemsImpl(const ClearSelectedItemsRequest& request);

}  // namespace Zorvex
