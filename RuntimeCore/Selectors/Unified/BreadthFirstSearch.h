// The walk of a search: level by level, in the order in which parents were visited and listed their children.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Unified/AncestorChain.h"
#include "RuntimeCore/Selectors/Unified/SelectorMatchingBehavior.h"
#include "RuntimeCore/Selectors/Unified/TagMatchingBehavior.h"
#include "RuntimeCore/Selectors/Unified/TraversalAlgorithm.h"

namespace Zorvex::Search {

template <class Behavior, class Traits>
class BreadthFirstTraversalAlgorithm : public TraversalAlgorithm<Behavior, Traits> {
public:
    using Result = typename Traits::SearchResult;
    using Container = typename Traits::Container;

    void DoSearch(Result root, std::vector<Behavior>& behaviours) override {
        LogInfo("BFS Start");
        Level level;
        Level below;
        level.elements.emplace_back(std::move(root));
        level.families.push_back({AncestorChain(), 1});
        bool isRoot = true;
        while (VisitLevel(level, isRoot, behaviours, below) == Progress::Continue && !below.elements.empty()) {
            std::swap(level, below);
            below.Clear();
            isRoot = false;
        }
        LogInfo("BFS End");
    }

private:
    // The children of one parent, a number of elements in a row. What they share lies beside them: a level of a wide
    // tree is long.
    struct Family {
        AncestorChain above;  // ends with the parent
        std::size_t size;
    };
    // Elements whose children are to be visited, in the order in which that is done.
    struct Level {
        std::vector<Container> elements;
        std::vector<Family> families;

        void Clear() {
            elements.clear();
            families.clear();
        }
    };

    enum class Progress { Continue, AllDone, TimeUp };

    Progress VisitLevel(Level& level, bool isRoot, std::vector<Behavior>& behaviours, Level& below) {
        auto next = level.elements.begin();
        for (const Family& family : level.families) {
            for (const auto end = next + static_cast<std::ptrdiff_t>(family.size); next != end; ++next) {
                // Nothing is held longer than it is needed.
                const Container element = std::move(*next);
                const Progress progress = VisitChildren(element, isRoot, family.above, behaviours, below);
                if (progress != Progress::Continue) return progress;
            }
        }
        return Progress::Continue;
    }

    Progress VisitChildren(const Container& element, bool isRoot, const AncestorChain& above, std::vector<Behavior>& behaviours, Level& below) {
        typename Traits::ChildIterationPolicy children(element);
        if (!children.HasNext()) return Progress::Continue;
        AncestorChain ancestors = isRoot ? AncestorChain() : above.Extended(element.id);
        const std::size_t first = below.elements.size();
        do {
            // The check stands before the next child is fetched, so that nothing is read from it. What else waits
            // isn't even listed: that would cost a call for each element, and an endless tree has no end of them.
            if (this->IsTimeUp()) return Progress::TimeUp;
            Result child = children.Next();
            bool visitChildren = false;
            if (Offer(child, behaviours, isRoot, ancestors, visitChildren)) return Progress::AllDone;
            if (visitChildren && child.IsSelf()) below.elements.emplace_back(std::move(child));
        } while (children.HasNext());
        if (const std::size_t size = below.elements.size() - first; size != 0) below.families.push_back({std::move(ancestors), size});
        return Progress::Continue;
    }

    // True when every behaviour is done.
    bool Offer(const Result& child, std::vector<Behavior>& behaviours, bool isRootLevel, const AncestorChain& ancestors,
               bool& visitChildren) {
        // One reader for all selectors: an attribute that two of them test is read once.
        typename Traits::AttributeAccessPolicy attributes(child);
        bool allDone = true;
        for (Behavior& behaviour : behaviours) {
            if (behaviour.IsDone()) continue;
            visitChildren |= behaviour.Match(child, attributes, isRootLevel, ancestors);
            allDone &= behaviour.IsDone();
        }
        return allDone;
    }
};

template <class Traits>
class BreadthFirstSearch final
    : public BreadthFirstTraversalAlgorithm<SelectorMatchingBehavior<TagMatchingBehavior<Traits>, Traits>, Traits> {};

}  // namespace Zorvex::Search
