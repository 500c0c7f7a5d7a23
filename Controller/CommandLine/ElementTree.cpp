#include "Controller/CommandLine/ElementTree.h"

#include <algorithm>
#include <map>

#include "Controller/CommandLine/Elements.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Controller {

namespace {

// Levels that one request reads: a chain of tags that accept everything, each the child of the one before.
constexpr std::size_t kLevels = 16;

class Reader {
public:
    Reader(Session& session, std::size_t depth, std::size_t maximum) : m_session(session), m_depth(depth), m_maximum(maximum) {}

    ElementTree Read() {
        m_tree.nodes.push_back({FindTarget(m_session, {}), -1, 0, {}});
        // The window's element is read as the window, so that the search starts where a selector's does.
        ReadBelow(0, m_session.Root());
        for (std::size_t i = 0; i < m_open.size(); ++i) ReadBelow(m_open[i], m_tree.nodes[m_open[i]].identifier);
        return std::move(m_tree);
    }

private:
    void ReadBelow(std::size_t top, const AAObjectIdentifier& root) {
        const std::size_t left = m_depth - m_tree.nodes[top].depth;
        const std::size_t levels = std::min(left, kLevels);
        if (levels == 0) return;
        FindSelectorsRequest request;
        request.root = root;
        request.timeoutMilliseconds = m_session.SearchMilliseconds();
        request.sequence = m_sequence;
        Search::SelectorEntry& entry = request.selectors.emplace_back();
        entry.tags.assign(levels, std::make_shared<AaTag>());
        entry.options.scope = Search::SearchScope::ChildrenOnly;
        entry.options.keepIntermediateAlways = true;
        entry.options.refreshLocation = false;
        const auto response = m_session.Call(request);
        if (!response.success || response.results.empty()) {
            if (top == 0) throw CommandFailure(ExitCode::NotFound, "the window has no accessible element to read below");
            return;
        }
        m_sequence = std::max(m_sequence, response.sequence);
        std::map<std::int64_t, std::size_t> places{{0, top}};
        std::size_t level = 0;
        for (const auto& set : response.results[0].intermediate) AddLevel(set.results, places, ++level, levels, left);
        AddLevel(response.results[0].results, places, ++level, levels, left);
    }

    template <class Results>
    void AddLevel(const Results& found, std::map<std::int64_t, std::size_t>& places, std::size_t level, std::size_t levels, std::size_t left) {
        std::vector<const typename Results::value_type*> sorted;
        for (const auto& result : found) sorted.push_back(&result);
        // Ids grow in the order in which the walk met the elements.
        std::sort(sorted.begin(), sorted.end(), [](const auto* a, const auto* b) { return a->id < b->id; });
        for (const auto* result : sorted) {
            const auto parent = places.find(result->parentId);
            if (parent == places.end()) continue;  // its parent was one too many
            if (m_tree.nodes.size() >= m_maximum) {
                m_tree.cut = true;
                return;
            }
            const std::size_t place = m_tree.nodes.size();
            m_tree.nodes.push_back({result->identifier, static_cast<std::ptrdiff_t>(parent->second),
                                    m_tree.nodes[parent->second].depth + 1, {}});
            m_tree.nodes[parent->second].children.push_back(place);
            places.emplace(result->id, place);
            // Simple elements have no children; others on the last level may.
            if (level == levels && left > levels && result->identifier.childId == CHILDID_SELF) m_open.push_back(place);
        }
    }

    Session& m_session;
    const std::size_t m_depth;
    const std::size_t m_maximum;
    std::int64_t m_sequence = 0;
    ElementTree m_tree;
    std::vector<std::size_t> m_open;  // places whose children weren't read yet
};

}  // namespace

ElementTree ReadTree(Session& session, std::size_t depth, std::size_t maximum) { return Reader(session, depth, maximum).Read(); }

std::vector<std::size_t> DepthFirst(const ElementTree& tree) {
    std::vector<std::size_t> order;
    std::vector<std::size_t> stack;
    if (!tree.nodes.empty()) stack.push_back(0);
    while (!stack.empty()) {
        const std::size_t place = stack.back();
        stack.pop_back();
        order.push_back(place);
        const auto& children = tree.nodes[place].children;
        stack.insert(stack.end(), children.rbegin(), children.rend());
    }
    return order;
}

}  // namespace Zorvex::Controller
