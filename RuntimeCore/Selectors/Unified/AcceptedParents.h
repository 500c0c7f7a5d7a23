// The elements that the previous tag of a chain accepted, as the next tag looks for them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "RuntimeCore/Selectors/Unified/AncestorChain.h"
#include "RuntimeCore/Selectors/Values/CompareDoubles.h"
#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"

namespace Zorvex::Search {

// An element that was accepted stays a place to look below, even when a better one pushes it out of its tag's
// results; only its score is gone then.
class AcceptedParents {
public:
    struct Parent {
        std::int64_t id;
        ScoreStatistics stats;
        bool kept;
    };

    // Ids mostly come in rising order, which makes this an append.
    void Add(std::int64_t id, const ScoreStatistics& stats) { m_parents.insert(Place(id), {id, stats, true}); }
    void Forget(std::int64_t id) {
        const auto place = Place(id);
        if (place != m_parents.end() && place->id == id) place->kept = false;
    }

    // With `anyDepth` any ancestor may be a parent; without, only an unbroken line of accepted ones from the nearest
    // up. The siblings below one element ask in a row and share the answer: an element was offered, and accepted or
    // not, before the first of its children is.
    bool HasParentAmong(const AncestorChain& ancestors, bool anyDepth) {
        if (m_parents.empty() || ancestors.IsEmpty()) return false;
        if (m_asked && m_asked->nearestId == ancestors.NearestId() && m_asked->anyDepth == anyDepth) return m_asked->hasParent;
        bool found = false;
        ForEachParent(ancestors, anyDepth, [&](const Parent&) {
            found = true;
            return false;
        });
        m_asked = Asked{ancestors.NearestId(), anyDepth, found};
        return found;
    }
    // The best scored, the nearest of equals. Null when every parent was pushed out.
    const Parent* BestAmong(const AncestorChain& ancestors, bool anyDepth) const {
        const Parent* best = nullptr;
        ForEachParent(ancestors, anyDepth, [&](const Parent& parent) {
            if (parent.kept && (!best || DefinitelyGreater(parent.stats.mean, best->stats.mean))) best = &parent;
            return true;
        });
        return best;
    }

private:
    std::vector<Parent>::iterator Place(std::int64_t id) {
        if (m_parents.empty() || m_parents.back().id < id) return m_parents.end();
        return std::lower_bound(m_parents.begin(), m_parents.end(), id, [](const Parent& parent, std::int64_t wanted) { return parent.id < wanted; });
    }
    const Parent* Find(std::int64_t id) const {
        const auto place = std::lower_bound(m_parents.begin(), m_parents.end(), id,
                                            [](const Parent& parent, std::int64_t wanted) { return parent.id < wanted; });
        return place != m_parents.end() && place->id == id ? &*place : nullptr;
    }

    template <class Visit>
    void ForEachParent(const AncestorChain& ancestors, bool anyDepth, Visit&& visit) const {
        if (m_parents.empty()) return;
        ancestors.ForEachFromNearest([&](std::int64_t id) {
            const Parent* parent = Find(id);
            return parent ? visit(*parent) : anyDepth;
        });
    }

    struct Asked {
        std::int64_t nearestId;
        bool anyDepth;
        bool hasParent;
    };

    std::vector<Parent> m_parents;  // by id
    std::optional<Asked> m_asked;
};

}  // namespace Zorvex::Search
