// The walk of a search: level by level, in the order in which parents were visited and listed their children.
#pragma once

#include <deque>
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
        std::deque<SearchQueueEntry> queue;
        queue.push_back({Container(std::move(root)), AncestorChain(), true});
        Progress progress = Progress::Continue;
        while (!queue.empty() && progress == Progress::Continue) {
            const SearchQueueEntry entry = std::move(queue.front());
            queue.pop_front();
            progress = VisitChildren(entry, behaviours, queue);
        }
        LogInfo("BFS End");
    }

private:
    // An element whose children are to be visited.
    struct SearchQueueEntry {
        Container element;
        AncestorChain above;  // of its parent, which all siblings share
        bool isRoot;
    };

    enum class Progress { Continue, AllDone, TimeUp };

    Progress VisitChildren(const SearchQueueEntry& entry, std::vector<Behavior>& behaviours, std::deque<SearchQueueEntry>& queue) {
        typename Traits::ChildIterationPolicy children(entry.element);
        if (!children.HasNext()) return Progress::Continue;
        const AncestorChain ancestors = entry.isRoot ? AncestorChain() : entry.above.Extended(entry.element.id);
        do {
            // The check stands before the next child is fetched, so that nothing is read from it. What is left in the
            // queue isn't even listed: that would cost a call for each entry, and an endless tree has no end of them.
            if (this->IsTimeUp()) return Progress::TimeUp;
            Result child = children.Next();
            bool visitChildren = false;
            if (Offer(child, behaviours, entry.isRoot, ancestors, visitChildren)) return Progress::AllDone;
            if (visitChildren && child.IsSelf()) queue.push_back({Container(std::move(child)), ancestors, false});
        } while (children.HasNext());
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
