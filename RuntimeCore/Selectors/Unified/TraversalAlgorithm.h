// The frame of a search: several selectors, one walk, one deadline.
//
// The frame knows nothing of accessibility. A trait bundle gives it
//   SearchResult             copyable and movable, derived from SearchResultBase
//   Container                made of a SearchResult, from which it may move: what is needed to list its children, and its id
//   ChildIterationPolicy     made on a Container that outlives it: HasNext(), Next() answering a new SearchResult
//   AttributeAccessPolicy    made on an element that outlives it: reads and keeps attributes for one visit
//   TagMatchingPolicy        made on a shared tag, which may be null: Matches(attributes, stats), GetAttributeCount()
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "RuntimeCore/Selectors/Unified/SearchClock.h"
#include "RuntimeCore/Selectors/Unified/SelectorEntry.h"
#include "RuntimeCore/Selectors/Unified/SelectorResult.h"

namespace Zorvex::Search {

template <class Behavior, class Traits>
class TraversalAlgorithm {
public:
    using Result = typename Traits::SearchResult;

    virtual ~TraversalAlgorithm() = default;
    // Walks the descendants of `root` and offers each to the behaviours until all are done, the tree ends, or the
    // time is up.
    virtual void DoSearch(Result root, std::vector<Behavior>& behaviours) = 0;

    // `results` is replaced by one outcome for each query, in their order. `root` itself isn't matched.
    void Search(std::vector<SelectorResult<Result>>& results, const Result& root, const std::vector<SelectorEntry>& queries,
                std::uint32_t timeoutMs) {
        std::vector<Behavior> behaviours;
        behaviours.reserve(queries.size());
        for (const SelectorEntry& query : queries) behaviours.emplace_back(query);
        m_deadline = NowNanoseconds() + timeoutMs * kNanosecondsPerMillisecond;
        DoSearch(root, behaviours);
        results.clear();
        results.reserve(behaviours.size());
        for (Behavior& behaviour : behaviours) results.push_back(behaviour.Collect());
    }

protected:
    bool IsTimeUp() const { return m_deadline - NowNanoseconds() < 1; }

private:
    std::int64_t m_deadline = 0;  // nanoseconds on the monotonic clock
};

}  // namespace Zorvex::Search
