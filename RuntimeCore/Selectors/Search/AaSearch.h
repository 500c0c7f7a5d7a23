// The element search over the accessibility tree.
#pragma once

#include <cstdint>
#include <vector>

#include "RuntimeCore/Selectors/Search/AaSearchResult.h"
#include "RuntimeCore/Selectors/Unified/SelectorEntry.h"
#include "RuntimeCore/Selectors/Unified/SelectorResult.h"

namespace Zorvex::Search {

using AaSelectorResult = SelectorResult<AaSearchResult>;
using AaResultSet = ResultSet<AaSearchResult>;

// Walks the tree below `root` once, level by level, for all `queries`; `root` itself is not matched. `results` is
// replaced by one answer for each query, in their order; a query that found nothing has an error and no results.
// After `timeoutMs` milliseconds nothing more is matched, and what was found until then is the answer.
// Throws std::bad_alloc and ComException (a variant that can't be copied) alone.
void Search(std::vector<AaSelectorResult>& results, const AaSearchResult& root, const std::vector<SelectorEntry>& queries,
            std::uint32_t timeoutMs);

}  // namespace Zorvex::Search
