#include "RuntimeCore/Selectors/Search/AaSearch.h"

#include "RuntimeCore/Selectors/Search/AaSearchTraits.h"
#include "RuntimeCore/Selectors/Unified/BreadthFirstSearch.h"

namespace Zorvex::Search {

void Search(std::vector<AaSelectorResult>& results, const AaSearchResult& root, const std::vector<SelectorEntry>& queries,
            std::uint32_t timeoutMs) {
    BreadthFirstSearch<AaSearchTraits>().Search(results, root, queries, timeoutMs);
}

}  // namespace Zorvex::Search
