// A plain tree in memory that the search frame can walk: no platform, no accessibility. It notes what is asked of it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "RuntimeCore/Selectors/Unified/AttributeAccessPolicy.h"
#include "RuntimeCore/Selectors/Unified/BreadthFirstSearch.h"
#include "RuntimeCore/Selectors/Unified/ChildIterationPolicy.h"
#include "RuntimeCore/Selectors/Unified/SearchResultBase.h"
#include "RuntimeCore/Selectors/Unified/TagMatchingPolicy.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex::Testing {

struct SearchTreeNode {
    std::wstring label = L"a";                   // what the attribute `role` must be
    std::vector<double> resemblance = {1.0};     // to "0", "1" and so on, under the attribute `name`
    bool visible = true;
    bool simple = false;
    std::vector<int> children;
};

// Node 0 is the root. `onRead` is called for every attribute read.
struct SearchTree {
    std::vector<SearchTreeNode> nodes{1};
    mutable std::vector<int> visited;     // nodes, in the order in which they were fetched
    mutable std::vector<int> enumerated;  // nodes whose children were listed
    mutable std::vector<std::string> reads;
    mutable std::vector<int> located, locatedWithRectangle;

    int Add(int parent, std::wstring label) {
        const int index = static_cast<int>(nodes.size());
        nodes.push_back({std::move(label), {1.0}, true, false, {}});
        nodes[static_cast<std::size_t>(parent)].children.push_back(index);
        return index;
    }
    SearchTreeNode& operator[](int index) { return nodes[static_cast<std::size_t>(index)]; }
    const SearchTreeNode& operator[](int index) const { return nodes[static_cast<std::size_t>(index)]; }
    void ForgetNotes() const {
        visited.clear();
        enumerated.clear();
        reads.clear();
        located.clear();
        locatedWithRectangle.clear();
    }
};

class SearchTreeResult final : public Search::SearchResultBase {
public:
    SearchTreeResult(const SearchTree& searchTree, int nodeIndex) : tree(&searchTree), node(nodeIndex) {}
    void UpdateLocation(bool withRectangle) override { (withRectangle ? tree->locatedWithRectangle : tree->located).push_back(node); }
    bool IsSelf() const override { return !(*tree)[node].simple; }
    bool IsVisible() const override { return (*tree)[node].visible; }

    const SearchTree* tree;
    int node;
};

class SearchTreeChildren final : public Search::ChildIterationPolicy<SearchTreeResult> {
public:
    explicit SearchTreeChildren(const SearchTreeResult& parent) : m_tree(*parent.tree), m_parent(parent.node) {
        m_tree.enumerated.push_back(m_parent);
    }
    bool HasNext() override { return m_position < m_tree[m_parent].children.size(); }
    SearchTreeResult Next() override {
        const int node = m_tree[m_parent].children[m_position++];
        m_tree.visited.push_back(node);
        return SearchTreeResult(m_tree, node);
    }
    bool IsBlocked() const override { return false; }
    SearchTreeResult DefaultResult() const override { return SearchTreeResult(m_tree, 0); }

private:
    const SearchTree& m_tree;
    int m_parent;
    std::size_t m_position = 0;
};

class SearchTreeAttributes final : public Search::AttributeAccessPolicy {
public:
    explicit SearchTreeAttributes(const SearchTreeResult& element) : m_element(element) {}
    const SearchTreeNode& Node() const { return (*m_element.tree)[m_element.node]; }

private:
    CString GetValueImpl(std::wstring_view name) override {
        m_element.tree->reads.push_back(std::to_string(m_element.node) + std::string(name.begin(), name.end()));
        return name == L"role" ? Node().label : CString();
    }
    std::int64_t GetNumberValueImpl(std::wstring_view) override { return -1; }

    const SearchTreeResult& m_element;
};

// `role` must be the node's label; `name` is the number of a resemblance that must reach the value's fuzzy level.
class SearchTreeMatching final : public Search::TagMatchingPolicy {
public:
    explicit SearchTreeMatching(std::shared_ptr<ISelectorTag> tag) : TagMatchingPolicy(std::move(tag)) {
        if (m_tag) m_label = Enabled(L"role");
        if (m_tag) m_resembles = Enabled(L"name");
    }
    bool Matches(Search::AttributeAccessPolicy& attributes, ScoreStatistics& stats) override {
        if (m_label) {
            const bool equal = attributes.GetValue(L"role") == m_label->ToString();
            stats.Add(equal ? 1.0 : 0.0);
            if (!equal) return false;
        }
        if (!m_resembles) return true;
        attributes.GetValue(L"name");
        const auto index = static_cast<std::size_t>(std::stoi(m_resembles->ToString()));
        const double score = static_cast<SearchTreeAttributes&>(attributes).Node().resemblance.at(index);
        stats.Add(score);
        return score >= m_resembles->GetFuzzyLevel();
    }
    std::uint32_t GetAttributeCount() const override { return (m_label ? 1u : 0u) + (m_resembles ? 1u : 0u); }

private:
    std::shared_ptr<IAttrValue> Enabled(const wchar_t* name) const {
        auto value = m_tag->GetAttribute(name);
        return value && value->GetEnabled() ? value : nullptr;
    }

    std::shared_ptr<IAttrValue> m_label, m_resembles;
};

struct SearchTreeTraits {
    using SearchResult = SearchTreeResult;
    using Container = SearchTreeResult;
    using ChildIterationPolicy = SearchTreeChildren;
    using AttributeAccessPolicy = SearchTreeAttributes;
    using TagMatchingPolicy = SearchTreeMatching;
};

using SearchTreeOutcome = std::vector<Search::SelectorResult<SearchTreeResult>>;

// The root gets the id of the process-wide sequence as it stands.
inline SearchTreeOutcome SearchIn(const SearchTree& tree, const std::vector<Search::SelectorEntry>& queries, std::uint32_t timeoutMs = 60'000) {
    SearchTreeOutcome results;
    const SearchTreeResult root(tree, 0);
    Search::BreadthFirstSearch<SearchTreeTraits>().Search(results, root, queries, timeoutMs);
    return results;
}

inline std::vector<int> NodesOf(const std::vector<SearchTreeResult>& results) {
    std::vector<int> nodes;
    for (const SearchTreeResult& result : results) nodes.push_back(result.node);
    return nodes;
}

// A tag that wants a label; an empty one has no attribute.
inline std::shared_ptr<ISelectorTag> LabelTag(const wchar_t* label, std::int64_t index = 0) {
    auto tag = std::make_shared<AaTag>();
    if (*label) tag->SetAttribute(L"role", std::make_shared<StringValue>(label));
    if (index) tag->SetAttribute(L"idx", std::make_shared<NumberValue>(index));
    return tag;
}

// A tag that wants a resemblance of that number and at least that level.
inline std::shared_ptr<ISelectorTag> FuzzyTag(int resemblance, double level) {
    auto tag = std::make_shared<AaTag>();
    tag->SetAttribute(L"name", std::make_shared<StringValue>(std::to_wstring(resemblance), MatchingTypeFuzzy, level));
    return tag;
}

inline Search::SelectorEntry Entry(std::vector<std::shared_ptr<ISelectorTag>> tags, std::uint32_t scope = 1) {
    Search::SelectorEntry entry;
    entry.tags = std::move(tags);
    entry.options.scope = static_cast<Search::SearchScope>(scope);
    return entry;
}

}  // namespace Zorvex::Testing
