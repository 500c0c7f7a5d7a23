// The table around an element, and its rows.
#pragma once

#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/AAElement.h"

namespace Zorvex {

// The nearest of the element itself and those above it whose role is table, under the window of the element. Empty if
// there is none within 10,000 levels: a tree may lead back to itself.
AAElement GetTableFromElement(const AAElement& element);

// The rows straight below the table and those in groups straight below it, in the order of the tree; at most
// 1,000,000. A simple element has none.
std::vector<AAObjectWrapper> GetTableRows(const AAElement& table);

// The children of an element that may be simple, and then has none of its own: its container's are its siblings.
// `role` as in GetAccChildren.
std::vector<AAObjectWrapper> GetElementChildren(const AAObjectWrapper& element, LONG role = 0);

}  // namespace Zorvex
