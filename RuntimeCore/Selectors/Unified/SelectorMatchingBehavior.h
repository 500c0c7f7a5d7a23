// The live state of one selector while the tree is walked.
//
// The tree is walked once, so all tags of the chain are live at the same time: every element is offered to every
// tag, and a tag takes it only below an element that the previous tag accepted.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"
#include "RuntimeCore/Selectors/Unified/SelectorEntry.h"
#include "RuntimeCore/Selectors/Unified/SelectorResult.h"
#include "RuntimeCore/Selectors/Unified/TagMatchingBehavior.h"

namespace Zorvex::Search {

template <class TagBehavior, class Traits>
class SelectorMatchingBehavior {
public:
    using Result = typename Traits::SearchResult;
    using Attributes = typename Traits::AttributeAccessPolicy;

    // `query` is borrowed and must outlive the behaviour.
    explicit SelectorMatchingBehavior(const SelectorEntry& query) : m_query(query) {
        const std::size_t count = query.tags.size();
        m_tags.reserve(count);
        for (std::size_t i = 0; i < count; ++i) m_tags.emplace_back(query.tags[i], query.options, i + 1 == count);
        m_attributesAfter.resize(count);
        std::uint64_t after = query.pendingAttributeCount;
        for (std::size_t i = count; i-- > 0;) {
            m_attributesAfter[i] = after;
            after += m_tags[i].GetAttributeCount();
        }
    }

    // The selector has all the results that it can have.
    bool IsDone() const { return m_done; }

    // Offers one element. `isRootLevel`: it is a child of the search's root. The answer: whether this selector wants
    // its children visited.
    bool Match(const Result& candidate, Attributes& attributes, bool isRootLevel, const AncestorChain& ancestors) {
        const SearchScope scope = m_query.options.scope;
        bool visitChildren = false;
        for (std::size_t position = 0; position < m_tags.size(); ++position)
            visitChildren |= MatchTag(position, candidate, attributes, isRootLevel, ancestors);
        // A single tag that may only match among the root's children has no business further down.
        if (scope == SearchScope::DescendantsOfTopLevel && m_tags.size() == 1) return false;
        return visitChildren;
    }

    // Ends the search of this selector and moves its outcome out.
    SelectorResult<Result> Collect() {
        SelectorResult<Result> outcome;
        for (TagBehavior& tag : m_tags) {
            if (!outcome.error && tag.results.IsEmpty()) outcome.error = std::make_unique<ElementNotFoundError>();
        }
        for (TagBehavior& tag : m_tags) {
            const bool withRectangle = m_query.options.refreshLocation && &tag == &m_tags.back();
            tag.results.ForEach([&](Result& result) { result.UpdateLocation(withRectangle); });
        }
        if (m_tags.empty()) return outcome;
        const bool keepIntermediate =
            m_query.options.keepIntermediateAlways || (m_query.options.keepIntermediateOnError && outcome.error);
        for (std::size_t i = 0; i + 1 < m_tags.size(); ++i) {
            ResultSet<Result>& entry = outcome.intermediate.emplace_back();
            if (!keepIntermediate) continue;
            entry.limit = m_tags[i].results.Limit();
            entry.results = m_tags[i].results.Take();
        }
        outcome.limit = m_tags.back().results.Limit();
        outcome.results = m_tags.back().results.Take();
        return outcome;
    }

private:
    bool IsAnyDepth() const { return m_query.options.scope != SearchScope::ChildrenOnly; }
    bool IsLast(std::size_t position) const { return position + 1 == m_tags.size(); }

    bool MatchTag(std::size_t position, const Result& candidate, Attributes& attributes, bool isRootLevel, const AncestorChain& ancestors) {
        TagBehavior& tag = m_tags[position];
        if (tag.IsSettled()) return false;
        if (!MayStandHere(position, isRootLevel, ancestors)) return false;

        ScoreStatistics stats;
        if (!tag.Test(attributes, stats) || (IsLast(position) && !IsVisibleEnough(candidate, isRootLevel))) {
            // What doesn't match may still hold what does.
            const SearchScope scope = m_query.options.scope;
            return scope == SearchScope::Descendants || (scope == SearchScope::DescendantsOfTopLevel && position != 0);
        }

        const double score = stats.mean;
        std::int64_t parentId = 0;
        if (position == 0) {
            stats.Merge(m_query.inheritedScore);
        } else {
            const AcceptedParents::Parent* parent = tag.acceptedParents.BestAmong(ancestors, IsAnyDepth());
            if (!parent) {
                LogInfo(
                    "Parent score not found. Failed to find the parent based on the id; Possible that it was pushed out by better "
                    "results if the size limit was small");
                return false;
            }
            parentId = parent->id;
            stats.Merge(parent->stats);
        }
        return Accept(position, candidate, parentId, stats, score);
    }

    // The first tag starts where the scope lets it; a later one needs a parent above.
    bool MayStandHere(std::size_t position, bool isRootLevel, const AncestorChain& ancestors) {
        if (position != 0) return m_tags[position].acceptedParents.HasParentAmong(ancestors, IsAnyDepth());
        const SearchScope scope = m_query.options.scope;
        return isRootLevel || (scope != SearchScope::ChildrenOnly && scope != SearchScope::DescendantsOfTopLevel);
    }

    bool IsVisibleEnough(const Result& candidate, bool isRootLevel) const {
        const SearchParameters& options = m_query.options;
        if (!options.acceptHidden) return candidate.IsVisible();
        if (!options.acceptHiddenAtFirstLevel && isRootLevel && options.scope == SearchScope::DescendantsOfTopLevel)
            return candidate.IsVisible();
        return true;
    }

    // Takes a candidate that fits into the tag's results if score and index allow it. The answer: whether its
    // children are wanted.
    bool Accept(std::size_t position, const Result& candidate, std::int64_t parentId, const ScoreStatistics& stats, double score) {
        TagBehavior& tag = m_tags[position];
        if (!PassesScoreGate(position, stats) || !tag.PassesIndex()) return IsAnyDepth();
        const auto answer = tag.results.Insert(stats.mean, [&] {
            Result accepted(candidate);
            accepted.parentId = parentId;
            accepted.stats = stats;
            accepted.score = score;
            return accepted;
        });
        if (!answer.inserted) return IsAnyDepth();
        if (!IsLast(position)) {
            AcceptedParents& parents = m_tags[position + 1].acceptedParents;
            if (answer.pushedOut) parents.Forget(*answer.pushedOut);
            parents.Add(candidate.id, stats);
            return true;
        }
        m_done = tag.IsSettled();
        return !m_done;
    }

    // Before the last tag the question is whether a perfect score on all attributes still to come would suffice.
    bool PassesScoreGate(std::size_t position, const ScoreStatistics& stats) const {
        const double minimum = m_query.options.minimumScore;
        if (minimum == 0.0) return true;
        if (IsLast(position)) return GreaterOrAlmostEqual(stats.mean, minimum);
        if (m_attributesAfter[position] == 0) return true;
        const auto attributes = static_cast<double>(m_attributesAfter[position]);
        const auto tested = static_cast<double>(stats.count);
        const double needed = ((attributes + tested) * minimum - tested * stats.mean) / attributes;
        return !DefinitelyGreater(needed, 1.0);
    }

    const SelectorEntry& m_query;
    std::vector<TagBehavior> m_tags;
    std::vector<std::uint64_t> m_attributesAfter;  // for each tag: of all later ones, and of what is searched elsewhere
    bool m_done = false;
};

}  // namespace Zorvex::Search
