// A walk over a tree in one of three orders, with a visitor that steers it and a depth limit.
//
// A node type brings `bool IsValid() const` and, found beside it, a child reader
// `void GetChildren(const Node&, std::vector<Node>& out, CustomData&)`. A reader that fails leaves `out` empty:
// a subtree that can't be read never ends a walk.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "Common/include/Log.h"
#include "Common/include/TreeWalker/AANode.h"

namespace Zorvex {

template <class Node, class CustomData>
class TreeWalker {
public:
    // What a visitor answers for a node. A value outside the list counts as Continue.
    enum class Next : int {
        Continue = 0,      // go on, below this node as well if the depth limit allows
        Stop = 1,          // end the walk; in FindFirst this node is the result
        SkipChildren = 2,  // nothing below this node
        SkipSiblings = 3,  // differs by order, on purpose: see the three walks
    };

    // Any other value walks breadth first.
    enum class TraversalType : int { BreadthFirst = 0, DepthFirstRecursive = 1, DepthFirstIterative = 2 };

    // Called with the node and its depth: 0 for the root, 1 for its children.
    using Visitor = std::function<Next(const Node&, unsigned depth)>;

    static constexpr unsigned NoDepthLimit = static_cast<unsigned>(-1);

    // The custom data is handed to every call of the child reader; nothing else touches it.
    explicit TreeWalker(Node root, CustomData customData = {}) : m_customData(std::move(customData)) { Attach(std::move(root)); }

    // Takes another root. An invalid one is logged; a search from it calls no visitor.
    void Attach(Node root);

    // The node for which the visitor says Stop, or a default node. Nodes at a depth of `maxDepth` are visited but
    // not entered. The visitor must not be empty.
    Node FindFirst(Visitor visitor, unsigned maxDepth, TraversalType type);

    // Level by level; only two levels of nodes are alive at a time. SkipSiblings: the answer lies under this node,
    // so everything gathered for the next level goes, this node stands there alone, and the rest of the current
    // level is left out. On the root it counts as Continue.
    void WalkBreadthFirst(const Visitor& visitor, unsigned maxDepth);

    // Pre-order from `node` at `depth`. Each child is walked with a fresh copy of its parent's visitor, so what a
    // visitor function object learns below a node stays below it. SkipSiblings: the node's own subtree is still
    // walked, then its later siblings are left out. Answers Stop if some visit did, else the answer for `node`.
    // Memory follows the depth of the tree, the native stack does not.
    Next WalkDepthFirstRecursive(const Node& node, unsigned depth, Visitor visitor, unsigned maxDepth);

    // Pre-order with one visitor for all. SkipSiblings: as in the recursive order. The root's children are read
    // before the root is visited, and with a limit of 0 they are still visited: both on purpose. An answer for the
    // root other than Continue and SkipSiblings ends the walk.
    void WalkDepthFirstIterative(const Visitor& visitor, unsigned maxDepth);

private:
    std::vector<Node> ChildrenOf(const Node& node) {
        std::vector<Node> children;
        GetChildren(node, children, m_customData);
        return children;
    }

    Node m_root;
    CustomData m_customData;
};

using AATreeWalker = TreeWalker<AANode, TWDefaultCustomData>;

template <class Node, class CustomData>
void TreeWalker<Node, CustomData>::Attach(Node root) {
    m_root = std::move(root);
    if (!m_root.IsValid()) LogWarning("Invalid root specified!");
}

template <class Node, class CustomData>
Node TreeWalker<Node, CustomData>::FindFirst(Visitor visitor, unsigned maxDepth, TraversalType type) {
    Node result{};
    if (!m_root.IsValid()) return result;
    // The visitor is held by value: copying the wrapper copies it, as the recursive order promises.
    Visitor storing = [visitor = std::move(visitor), &result](const Node& node, unsigned depth) {
        const Next next = visitor(node, depth);
        if (next == Next::Stop) result = node;
        return next;
    };
    switch (type) {
        case TraversalType::DepthFirstRecursive: WalkDepthFirstRecursive(m_root, 0, std::move(storing), maxDepth); break;
        case TraversalType::DepthFirstIterative: WalkDepthFirstIterative(storing, maxDepth); break;
        default: WalkBreadthFirst(storing, maxDepth); break;
    }
    return result;
}

template <class Node, class CustomData>
void TreeWalker<Node, CustomData>::WalkBreadthFirst(const Visitor& visitor, unsigned maxDepth) {
    if (!m_root.IsValid()) return;
    const Next first = visitor(m_root, 0);
    if (first == Next::Stop || first == Next::SkipChildren || maxDepth == 0) return;

    std::vector<Node> level{m_root};
    std::vector<Node> nextLevel;
    for (unsigned depth = 1; !level.empty(); ++depth) {
        const bool descend = depth < maxDepth;
        bool levelAbandoned = false;
        for (const Node& parent : level) {
            std::vector<Node> children = ChildrenOf(parent);
            for (Node& child : children) {
                if (!child.IsValid()) continue;
                const Next next = visitor(child, depth);
                if (next == Next::Stop) return;
                if (next == Next::SkipChildren) continue;
                if (next == Next::SkipSiblings) {
                    nextLevel.clear();
                    levelAbandoned = true;
                }
                if (descend) nextLevel.push_back(std::move(child));
                if (levelAbandoned) break;
            }
            if (levelAbandoned) break;
        }
        level.swap(nextLevel);
        nextLevel.clear();
    }
}

template <class Node, class CustomData>
auto TreeWalker<Node, CustomData>::WalkDepthFirstRecursive(const Node& node, unsigned depth, Visitor visitor, unsigned maxDepth) -> Next {
    // One frame stands for one call of the recursion whose children are being walked; the target's depth must not
    // follow into the native stack. A node without children to walk needs no frame.
    struct Frame {
        Visitor visitor;
        std::vector<Node> children;
        std::size_t nextChild;
        Next answer;
    };
    if (!node.IsValid()) return Next::Continue;
    std::vector<Frame> frames;

    // The two halves of a call: visit and enter, or, with nothing to enter, be done at once.
    const Next own = visitor(node, depth);
    if (own == Next::Stop || own == Next::SkipChildren || depth >= maxDepth) return own;
    frames.push_back({std::move(visitor), ChildrenOf(node), 0, own});

    Next answer = own;
    while (!frames.empty()) {
        Frame& top = frames.back();
        if (top.nextChild == top.children.size()) {
            answer = top.answer;
            frames.pop_back();
            if (!frames.empty() && answer == Next::SkipSiblings) frames.back().nextChild = frames.back().children.size();
            continue;
        }
        const Node& child = top.children[top.nextChild++];
        if (!child.IsValid()) continue;
        const unsigned childDepth = depth + static_cast<unsigned>(frames.size());
        Visitor copy = top.visitor;
        const Next next = copy(child, childDepth);
        if (next == Next::Stop) return Next::Stop;
        if (next == Next::SkipChildren) continue;
        if (childDepth < maxDepth)
            frames.push_back({std::move(copy), ChildrenOf(child), 0, next});
        else if (next == Next::SkipSiblings)
            top.nextChild = top.children.size();
    }
    return answer;
}

template <class Node, class CustomData>
void TreeWalker<Node, CustomData>::WalkDepthFirstIterative(const Visitor& visitor, unsigned maxDepth) {
    // The frames hold the children lists, so that nodes stay alive while they are visited.
    struct Frame {
        std::vector<Node> children;
        std::size_t nextChild;
    };
    if (!m_root.IsValid()) return;
    std::vector<Frame> frames;
    frames.push_back({ChildrenOf(m_root), 0});
    const Next first = visitor(m_root, 0);
    if (first != Next::Continue && first != Next::SkipSiblings) return;

    while (!frames.empty()) {
        Frame& top = frames.back();
        if (top.nextChild == top.children.size()) {
            frames.pop_back();
            continue;
        }
        const Node& child = top.children[top.nextChild++];
        if (!child.IsValid()) continue;
        const unsigned depth = static_cast<unsigned>(frames.size());
        const Next next = visitor(child, depth);
        if (next == Next::Stop) return;
        if (next == Next::SkipChildren) continue;
        if (next == Next::SkipSiblings) top.nextChild = top.children.size();
        if (depth < maxDepth) frames.push_back({ChildrenOf(child), 0});
    }
}

}  // namespace Zorvex
