// The live state of one tag of a selector while the tree is walked.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <utility>

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Unified/AcceptedParents.h"
#include "RuntimeCore/Selectors/Unified/RankedResults.h"
#include "RuntimeCore/Selectors/Unified/SearchParameters.h"
#include "RuntimeCore/Selectors/Values/ISelectorTag.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"

namespace Zorvex::Search {

template <class Traits>
class TagMatchingBehavior {
public:
    using Result = typename Traits::SearchResult;
    using Attributes = typename Traits::AttributeAccessPolicy;

    TagMatchingBehavior(const std::shared_ptr<ISelectorTag>& tag, const SearchParameters& options, bool isLast)
        : results(StartingLimit(tag.get(), options, isLast)), m_policy(tag) {
        const bool honoursIndex = options.resultPolicy == ResultPolicy::FirstMatch || options.resultPolicy == ResultPolicy::BestMatch;
        std::uint32_t limit = results.Limit();
        if (const auto index = tag ? tag->GetAttribute(L"idx") : nullptr; index && index->GetEnabled() && honoursIndex) {
            m_indexActive = true;
            const auto* number = dynamic_cast<const NumberValue*>(index.get());
            m_indexWanted = number ? number->GetValue() : std::numeric_limits<std::int64_t>::min();
            limit = 1;
            LogInfo("Searching for IDX = %lld", m_indexWanted);
        }
        if (options.resultPolicy == ResultPolicy::FirstMatch && limit == 1) m_indexActive = true;
        results = RankedResults<Result>(limit);
    }

    // Nothing that may come can change this tag's results.
    bool IsSettled() const { return HasIndexedResult() || results.IsSaturated(); }
    bool HasIndexedResult() const { return m_indexActive && results.Size() == 1; }

    // A tag without attributes to test fits everything with a full score.
    bool Test(Attributes& attributes, ScoreStatistics& stats) {
        if (m_policy.GetAttributeCount() == 0) {
            stats.Add(1.0);
            return true;
        }
        return m_policy.Matches(attributes, stats);
    }
    std::uint32_t GetAttributeCount() const { return m_policy.GetAttributeCount(); }

    // Counts a candidate that passed everything else. False: it isn't the one that `idx` asks for.
    bool PassesIndex() {
        if (!m_indexActive) return true;
        ++m_indexFound;
        LogInfo("Found result for IDX = %lld", m_indexFound);
        return m_indexFound == m_indexWanted;
    }

    AcceptedParents acceptedParents;
    RankedResults<Result> results;

private:
    // A list of fuzzy candidates that isn't the answer itself is unbounded: a better parent could still change the
    // final ranking. A missing tag has room for nothing and so never finds anything.
    static std::uint32_t StartingLimit(const ISelectorTag* tag, const SearchParameters& options, bool isLast) {
        if (!tag) return 0;
        if (isLast || (tag->GetLimitsEveryLevel() && !tag->HasFuzzyAttributes())) return options.maxResults;
        return kUnboundedResults;
    }

    typename Traits::TagMatchingPolicy m_policy;
    std::int64_t m_indexFound = 0;
    std::int64_t m_indexWanted = 1;
    bool m_indexActive = false;
};

}  // namespace Zorvex::Search
