// Finds the items of a container with the search that finds elements by selectors, so that wildcards mean the same in
// both.
#pragma once

#include <cstdint>
#include <vector>

#include "Common/include/CString.h"
#include "RuntimeCore/Interaction/ItemsContainer.h"
#include "RuntimeCore/Selectors/Search/AaSearchResult.h"

namespace Zorvex {

// More items than this are never acted on.
inline constexpr std::uint32_t MostItems = 1000;
// Never cuts a list that answers, and lets go of one that has no end.
inline constexpr std::uint32_t ItemSearchTimeout = 30'000;  // ms

enum class ItemMatches { First, All };

// What an item must be. An empty text asks nothing.
struct ItemPattern {
    CString role;
    CString name;
    CString text;
};

struct FoundItems {
    std::vector<Search::AaSearchResult> items;  // in the order of the tree, level by level
    // Something else went wrong than that there are none.
    bool failed = false;
};

// The items at any depth below the container.
FoundItems FindItems(const ItemsContainer& container, const ItemPattern& pattern, ItemMatches matches);

}  // namespace Zorvex
