// The search compared with the naive one: every small tree under every small question, and random larger ones.
#include <gtest/gtest.h>

#include <random>

#include "RuntimeCore/Selectors/Unified/SearchResultSequence.h"
#include "tests/Support/NaiveSearch.h"

namespace Zorvex::Testing {
namespace {

using Search::ResultPolicy;
using Search::SelectorEntry;

std::string Describe(const SearchTree& tree, const std::vector<SelectorEntry>& queries) {
    std::string text = "tree:";
    for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
        const SearchTreeNode& node = tree.nodes[i];
        text += " " + std::to_string(i) + std::string(node.label.begin(), node.label.end()) + (node.visible ? "" : "-hidden") + (node.simple ? "-simple" : "") + "(";
        for (const int child : node.children) text += std::to_string(child) + " ";
        text += ")";
    }
    for (const SelectorEntry& query : queries) {
        text += "\nquery: scope " + std::to_string(static_cast<unsigned>(query.options.scope)) + " policy " + std::to_string(static_cast<unsigned>(query.options.resultPolicy)) +
                " limit " + std::to_string(query.options.maxResults) + " minimum " + std::to_string(query.options.minimumScore) + " tags";
        for (const auto& tag : query.tags) {
            text += " [";
            for (const auto& [name, value] : tag->GetAttributes()) {
                const CString wanted = value->ToString();
                text += std::string(name.begin(), name.end()) + "=" + std::string(wanted.begin(), wanted.end()) + " ";
            }
            text += "]";
        }
    }
    return text;
}

bool SameStatistics(const ScoreStatistics& a, const ScoreStatistics& b) {
    return a.mean == b.mean && a.count == b.count && a.max == b.max && a.min == b.min && a.sum == b.sum;
}

bool SameList(const std::vector<SearchTreeResult>& actual, const std::vector<NaiveSearch::Found>& expected) {
    if (actual.size() != expected.size()) return false;
    for (std::size_t i = 0; i < actual.size(); ++i)
        if (actual[i].node != expected[i].node || actual[i].id != expected[i].id || actual[i].parentId != expected[i].parentId ||
            actual[i].score != expected[i].score || !SameStatistics(actual[i].stats, expected[i].stats))
            return false;
    return true;
}

// Searches both ways. Compares outcomes, order of visits, and what was read. False after a difference.
bool Agree(const SearchTree& tree, const std::vector<SelectorEntry>& queries) {
    tree.ForgetNotes();
    Search::SetSearchResultSequence(1);
    const SearchTreeOutcome actual = SearchIn(tree, queries);
    const NaiveSearch expected(tree, queries, 2);
    bool same = tree.visited == expected.visited && tree.reads == expected.reads && actual.size() == expected.selectors.size();
    for (std::size_t i = 0; same && i < actual.size(); ++i) {
        const NaiveSearch::Selector& selector = expected.selectors[i];
        const auto& outcome = actual[i];
        bool error = false;
        for (const auto& tag : selector.tags) error = error || tag.results.empty();
        same = static_cast<bool>(outcome.error) == error && outcome.reserved == -1;
        if (selector.tags.empty()) {
            same = same && outcome.limit == 50'000'000 && outcome.results.empty() && outcome.intermediate.empty();
            continue;
        }
        same = same && outcome.limit == selector.tags.back().limit && SameList(outcome.results, selector.tags.back().results) &&
               outcome.intermediate.size() == selector.tags.size() - 1;
        const auto& options = selector.query->options;
        const bool keep = options.keepIntermediateAlways || (options.keepIntermediateOnError && error);
        for (std::size_t level = 0; same && level + 1 < selector.tags.size(); ++level) {
            const auto& set = outcome.intermediate[level];
            if (keep) same = set.limit == selector.tags[level].limit && SameList(set.results, selector.tags[level].results);
            else same = set.limit == 50'000'000 && set.results.empty();
        }
    }
    EXPECT_TRUE(same) << Describe(tree, queries);
    return same;
}

// Every shape of `count` nodes below the root: node i hangs below any node of the rightmost path.
template <class Visit>
void ForEachShape(std::vector<int>& parents, std::size_t count, const Visit& visit) {
    if (parents.size() == count + 1) {
        visit();
        return;
    }
    for (int parent = static_cast<int>(parents.size()) - 1; parent >= 0; parent = parents[static_cast<std::size_t>(parent)]) {
        parents.push_back(parent);
        ForEachShape(parents, count, visit);
        parents.pop_back();
    }
}

template <class Visit>
void ForEachTree(std::size_t count, const Visit& visit) {
    std::vector<int> parents{-1};
    ForEachShape(parents, count, [&] {
        for (unsigned labels = 0; labels < 1u << count; ++labels) {
            SearchTree tree;
            for (std::size_t i = 1; i <= count; ++i) tree.Add(parents[i], labels >> (i - 1) & 1 ? L"b" : L"a");
            visit(tree);
        }
    });
}

template <class Visit>
void ForEachChain(std::size_t length, const std::vector<std::shared_ptr<ISelectorTag>>& choices, const Visit& visit) {
    std::vector<std::size_t> digits(length);
    for (;;) {
        std::vector<std::shared_ptr<ISelectorTag>> chain;
        for (const std::size_t digit : digits) chain.push_back(choices[digit]);
        visit(chain);
        std::size_t place = 0;
        while (place < length && ++digits[place] == choices.size()) digits[place++] = 0;
        if (place == length) return;
    }
}

void CompareEverything(std::size_t largestTree, std::size_t chainLength, const std::vector<std::shared_ptr<ISelectorTag>>& choices,
                       const std::vector<std::uint32_t>& limits) {
    std::vector<SelectorEntry> entries;
    ForEachChain(chainLength, choices, [&](const auto& chain) {
        for (std::uint32_t scope = 0; scope < 4; ++scope)
            for (std::uint32_t policy = 0; policy < 3; ++policy)
                for (const std::uint32_t limit : limits) {
                    SelectorEntry entry = Entry(chain, scope);
                    entry.options.resultPolicy = static_cast<ResultPolicy>(policy);
                    entry.options.maxResults = limit;
                    entry.options.keepIntermediateAlways = true;
                    entries.push_back(entry);
                }
    });
    bool same = true;
    for (std::size_t count = 0; count <= largestTree; ++count)
        ForEachTree(count, [&](const SearchTree& tree) {
            for (const SelectorEntry& entry : entries)
                if (same) same = Agree(tree, {entry});
        });
}

TEST(SearchAgainstNaiveSearch, OneTagOnEveryTreeOfUpToFiveNodes) {
    CompareEverything(5, 1, {LabelTag(L"a"), LabelTag(L""), LabelTag(L"a", 1), LabelTag(L"a", 2), LabelTag(L"a", 3), LabelTag(L"", 2)}, {0, 1, 2, 50'000'000});
}

TEST(SearchAgainstNaiveSearch, TwoTagsOnEveryTreeOfUpToFiveNodes) {
    CompareEverything(5, 2, {LabelTag(L"a"), LabelTag(L""), LabelTag(L"b", 2)}, {1, 2, 50'000'000});
}

TEST(SearchAgainstNaiveSearch, ThreeTagsOnEveryTreeOfUpToFourNodes) {
    CompareEverything(4, 3, {LabelTag(L"a"), LabelTag(L"b"), LabelTag(L""), LabelTag(L"a", 2)}, {1, 2});
}

// Trees and selectors with everything that a search looks at.
class RandomSearch {
public:
    explicit RandomSearch(unsigned seed) : m_random(seed) {}

    int Below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(m_random); }
    bool Chance(int percent) { return Below(100) < percent; }
    double Score() {
        static const double scores[] = {0.0, 0.25, 1.0 / 3, 0.5, 0.5 + 1e-16, 0.5 + 1e-9, 2.0 / 3, 0.75, 0.9, 1.0, 1.0, 1.0};
        return scores[Below(12)];
    }

    SearchTree Tree(int size) {
        SearchTree tree;
        const bool deep = Chance(20);
        for (int i = 1; i <= size; ++i) {
            const int parent = deep ? std::max(0, i - 1 - Below(3)) : Below(i);
            const int node = tree.Add(parent, Chance(60) ? L"a" : L"b");
            tree[node].resemblance = {Score(), Score(), Score()};
            tree[node].visible = !Chance(20);
            tree[node].simple = Chance(8);
        }
        return tree;
    }

    std::shared_ptr<ISelectorTag> Tag() {
        auto tag = std::make_shared<AaTag>();
        if (Chance(50)) tag->SetAttribute(L"role", std::make_shared<StringValue>(Chance(70) ? L"a" : L"b", MatchingTypeNormal, 1.0, !Chance(10)));
        if (Chance(60)) tag->SetAttribute(L"name", std::make_shared<StringValue>(std::to_wstring(Below(3)), MatchingTypeFuzzy, Chance(50) ? 0.0 : Score(), !Chance(10)));
        if (Chance(15)) {
            auto index = std::make_shared<NumberValue>(1 + Below(4));
            index->SetEnabled(!Chance(20));
            tag->SetAttribute(L"idx", index);
        }
        if (Chance(30)) tag->SetLimitsEveryLevel(false);
        return tag;
    }

    SelectorEntry Query() {
        static const std::uint32_t limits[] = {1, 1, 2, 3, 7, 50'000'000, 50'000'000, 0};
        SelectorEntry entry;
        for (int tags = Chance(3) ? 0 : 1 + Below(4); tags > 0; --tags) entry.tags.push_back(Tag());
        auto& options = entry.options;
        options.scope = static_cast<Search::SearchScope>(Chance(50) ? 1 : Below(5));
        options.resultPolicy = static_cast<ResultPolicy>(Below(4));
        options.maxResults = limits[Below(8)];
        options.minimumScore = Chance(50) ? 0.0 : Score();
        options.acceptHidden = Chance(70);
        options.acceptHiddenAtFirstLevel = Chance(50);
        options.keepIntermediateAlways = Chance(60);
        options.keepIntermediateOnError = Chance(30);
        options.refreshLocation = Chance(50);
        for (int inherited = Chance(30) ? Below(4) : 0; inherited > 0; --inherited) entry.inheritedScore.Add(Score());
        entry.pendingAttributeCount = Chance(30) ? static_cast<std::uint32_t>(Below(5)) : 0;
        return entry;
    }

private:
    std::mt19937 m_random;
};

TEST(SearchAgainstNaiveSearch, RandomTreesScoresAndOptions) {
    bool same = true;
    for (unsigned seed = 1; seed <= 6000 && same; ++seed) {
        RandomSearch random(seed);
        const SearchTree tree = random.Tree(1 + random.Below(40));
        std::vector<SelectorEntry> queries;
        for (int count = random.Chance(5) ? 0 : 1 + random.Below(3); count > 0; --count) queries.push_back(random.Query());
        same = Agree(tree, queries);
        EXPECT_TRUE(same) << "seed " << seed;
    }
}

TEST(SearchAgainstNaiveSearch, RandomTreesOfAThousandElements) {
    bool same = true;
    for (unsigned seed = 1; seed <= 12 && same; ++seed) {
        RandomSearch random(seed * 7919);
        const SearchTree tree = random.Tree(1000);
        same = Agree(tree, {random.Query(), random.Query()});
        EXPECT_TRUE(same) << "seed " << seed;
    }
}

}  // namespace
}  // namespace Zorvex::Testing
