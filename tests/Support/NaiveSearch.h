// The search told step by step, on plain lists, without regard for cost: what the real one is compared with.
#pragma once

#include <deque>
#include <limits>
#include <set>
#include <vector>

#include "tests/Support/SearchTree.h"

namespace Zorvex::Testing {

class NaiveSearch {
public:
    struct Found {
        std::int64_t id = 0, parentId = 0;
        ScoreStatistics stats;
        double score = 0;
        int node = 0;
    };
    struct Tag {
        std::set<std::int64_t> acceptedParentIds;
        std::uint32_t limit = 0;
        std::vector<Found> results;
        std::shared_ptr<ISelectorTag> tag;
        std::int64_t indexFound = 0, indexWanted = 1;
        bool indexActive = false;
    };
    struct Selector {
        const Search::SelectorEntry* query = nullptr;
        std::vector<Tag> tags;
        bool done = false;
    };

    std::vector<Selector> selectors;
    std::vector<int> visited;
    std::vector<std::string> reads;

    // `nextId` is the id of the first element fetched.
    NaiveSearch(const SearchTree& tree, const std::vector<Search::SelectorEntry>& queries, std::int64_t nextId) : m_tree(tree) {
        for (const auto& query : queries) selectors.push_back(Build(query));
        struct Queued {
            int node;
            std::vector<std::int64_t> ancestorIds;
            bool isRoot;
        };
        std::deque<Queued> queue{{0, {}, true}};
        bool allDone = false;
        while (!queue.empty() && !allDone) {
            const Queued entry = queue.front();
            queue.pop_front();
            for (const int child : m_tree[entry.node].children) {
                visited.push_back(child);
                const std::int64_t id = nextId++;
                std::set<std::wstring> readOfElement;
                allDone = true;
                bool visitChildren = false;
                for (Selector& selector : selectors) {
                    if (selector.done) continue;
                    if (Match(selector, child, id, readOfElement, entry.isRoot, entry.ancestorIds)) visitChildren = true;
                    allDone = allDone && selector.done;
                }
                if (visitChildren && !m_tree[child].simple) {
                    std::vector<std::int64_t> ids = entry.ancestorIds;
                    ids.push_back(id);
                    queue.push_back({child, ids, false});
                }
                if (allDone) break;
            }
        }
    }

private:
    static constexpr std::uint32_t kUnbounded = 50'000'000;

    static Selector Build(const Search::SelectorEntry& query) {
        Selector selector;
        selector.query = &query;
        for (std::size_t i = 0; i < query.tags.size(); ++i) {
            Tag state;
            state.tag = query.tags[i];
            const bool last = i + 1 == query.tags.size();
            state.limit = (state.tag->GetLimitsEveryLevel() && !state.tag->HasFuzzyAttributes()) || last ? query.options.maxResults : kUnbounded;
            const auto policy = static_cast<std::uint32_t>(query.options.resultPolicy);
            const auto index = state.tag->GetAttribute(L"idx");
            if (index && index->GetEnabled() && policy <= 1) {
                state.indexActive = true;
                state.indexWanted = static_cast<const NumberValue&>(*index).GetValue();
                state.limit = 1;
            }
            if (policy == 0 && state.limit == 1) state.indexActive = true;
            selector.tags.push_back(state);
        }
        return selector;
    }

    static std::uint32_t Attributes(const Tag& tag) {
        std::uint32_t count = 0;
        for (const wchar_t* name : {L"role", L"name"}) {
            const auto value = tag.tag->GetAttribute(name);
            if (value && value->GetEnabled()) ++count;
        }
        return count;
    }

    bool Test(const Tag& tag, int node, std::set<std::wstring>& readOfElement, ScoreStatistics& stats) {
        if (Attributes(tag) == 0) {
            stats.Add(1.0);
            return true;
        }
        const auto note = [&](const wchar_t* name) {
            const std::wstring wide = name;
            if (readOfElement.insert(wide).second) reads.push_back(std::to_string(node) + std::string(wide.begin(), wide.end()));
        };
        if (const auto label = tag.tag->GetAttribute(L"role"); label && label->GetEnabled()) {
            note(L"role");
            const bool equal = m_tree[node].label == label->ToString();
            stats.Add(equal ? 1.0 : 0.0);
            if (!equal) return false;
        }
        if (const auto fuzzy = tag.tag->GetAttribute(L"name"); fuzzy && fuzzy->GetEnabled()) {
            note(L"name");
            const double score = m_tree[node].resemblance[static_cast<std::size_t>(std::stoi(fuzzy->ToString()))];
            stats.Add(score);
            if (score < fuzzy->GetFuzzyLevel()) return false;
        }
        return true;
    }

    bool Match(Selector& selector, int node, std::int64_t id, std::set<std::wstring>& readOfElement, bool isRootLevel,
               const std::vector<std::int64_t>& ancestorIds) {
        const auto& options = selector.query->options;
        const auto scope = static_cast<std::uint32_t>(options.scope);
        const bool anyDepth = scope != 0;
        bool visitChildren = false;
        for (std::size_t p = 0; p < selector.tags.size(); ++p) {
            Tag& tag = selector.tags[p];
            const bool isLast = p + 1 == selector.tags.size();
            if (tag.indexActive && tag.results.size() == 1) continue;
            if (tag.results.size() >= tag.limit && (tag.results.empty() || GreaterOrAlmostEqual(tag.results.back().stats.mean, 1.0))) continue;

            const bool canStart = p == 0 && (isRootLevel || (scope != 0 && scope != 2));
            std::vector<std::int64_t> parents;
            for (auto it = ancestorIds.rbegin(); it != ancestorIds.rend(); ++it) {
                if (tag.acceptedParentIds.count(*it)) parents.push_back(*it);
                else if (!anyDepth) break;
            }
            if (parents.empty() && !canStart) continue;

            Found found;
            found.id = id;
            found.node = node;
            bool passed = Test(tag, node, readOfElement, found.stats);
            if (passed && isLast) {
                const bool visible = m_tree[node].visible;
                if (!options.acceptHidden && !visible) passed = false;
                else if (!options.acceptHiddenAtFirstLevel && isRootLevel && scope == 2 && !visible) passed = false;
            }
            if (!passed) {
                if (scope == 1 || (scope == 2 && p != 0)) visitChildren = true;
                continue;
            }
            found.score = found.stats.mean;
            if (p == 0) {
                found.stats.Merge(selector.query->inheritedScore);
            } else {
                const Found* best = nullptr;
                for (const std::int64_t parent : parents)
                    for (const Found& candidate : selector.tags[p - 1].results)
                        if (candidate.id == parent && (!best || DefinitelyGreater(candidate.stats.mean, best->stats.mean))) best = &candidate;
                if (!best) continue;
                found.parentId = best->id;
                found.stats.Merge(best->stats);
            }
            if (Accept(selector, p, found, anyDepth)) visitChildren = true;
        }
        if (scope == 2 && selector.tags.size() == 1) return false;
        return visitChildren;
    }

    bool Accept(Selector& selector, std::size_t p, const Found& found, bool anyDepth) {
        Tag& tag = selector.tags[p];
        const bool isLast = p + 1 == selector.tags.size();
        const double minimum = selector.query->options.minimumScore;
        if (minimum != 0.0) {
            if (isLast) {
                if (!GreaterOrAlmostEqual(found.stats.mean, minimum)) return anyDepth;
            } else {
                double attributes = selector.query->pendingAttributeCount;
                for (std::size_t later = p + 1; later < selector.tags.size(); ++later) attributes += Attributes(selector.tags[later]);
                const double tested = found.stats.count;
                if (attributes != 0 && DefinitelyGreater(((attributes + tested) * minimum - tested * found.stats.mean) / attributes, 1.0))
                    return anyDepth;
            }
        }
        if (tag.indexActive && ++tag.indexFound != tag.indexWanted) return anyDepth;
        if (!Insert(tag.results, tag.limit, found)) return anyDepth;
        if (!isLast) {
            selector.tags[p + 1].acceptedParentIds.insert(found.id);
            return true;
        }
        if (tag.indexActive && tag.results.size() == 1) selector.done = true;
        if (tag.results.size() >= tag.limit && (tag.results.empty() || GreaterOrAlmostEqual(tag.results.back().stats.mean, 1.0))) selector.done = true;
        return !selector.done;
    }

public:
    // One insertion into a plain list.
    static bool Insert(std::vector<Found>& results, std::uint32_t limit, const Found& found) {
        if (results.size() >= limit && (results.empty() || GreaterOrAlmostEqual(results.back().stats.mean, 1.0))) return false;
        if (results.empty()) {
            results.push_back(found);
            return true;
        }
        if (GreaterOrAlmostEqual(results.back().stats.mean, found.stats.mean)) {
            if (results.size() >= limit) return false;
            results.push_back(found);
            return true;
        }
        auto place = results.begin();
        while (place != results.end() && !DefinitelyGreater(found.stats.mean, place->stats.mean)) ++place;
        results.insert(place, found);
        if (results.size() > limit) results.pop_back();
        return true;
    }

private:
    const SearchTree& m_tree;
};

}  // namespace Zorvex::Testing
