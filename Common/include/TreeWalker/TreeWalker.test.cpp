#include "Common/include/TreeWalker/TreeWalker.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace PlainTree {

// A tree of numbers; what happens to it is written down as "v" for visits and "r" for child reads.
struct Tree {
    std::vector<std::vector<int>> children;
    mutable std::string events;
    mutable const void* dataAddress = nullptr;
    mutable int dataReads = 0;

    void Note(char what, int id) const { events += what + std::to_string(id) + ' '; }
};

struct Node {
    const Tree* tree = nullptr;
    int id = -1;
    bool IsValid() const { return id >= 0; }
};

struct Data {
    int reads = 0;
};

void GetChildren(const Node& node, std::vector<Node>& out, Data& data) {
    node.tree->Note('r', node.id);
    node.tree->dataAddress = &data;
    node.tree->dataReads = ++data.reads;
    for (int child : node.tree->children[static_cast<std::size_t>(node.id)]) out.push_back({node.tree, child});
}

}  // namespace PlainTree

namespace Zorvex {
namespace {

using PlainTree::Node;
using PlainTree::Tree;
using Walker = TreeWalker<Node, PlainTree::Data>;
using Next = Walker::Next;
using TraversalType = Walker::TraversalType;
using Answers = std::vector<Next>;

constexpr unsigned NoLimit = Walker::NoDepthLimit;

// The three orders as their rules read, over the numbers alone.
class Reference {
public:
    Reference(const Tree& tree, const Answers& answers, unsigned maxDepth) : m_tree(tree), m_answers(answers), m_maxDepth(maxDepth) {}

    void Run(TraversalType type) {
        if (type == TraversalType::DepthFirstRecursive) {
            Recursive(0, 0);
        } else if (type == TraversalType::DepthFirstIterative) {
            Read(0);
            const Next next = Visit(0);
            if (next == Next::Continue || next == Next::SkipSiblings) Iterative(0, 1);
        } else {
            BreadthFirst();
        }
    }
    std::string events;
    int found = -1;

private:
    const std::vector<int>& ChildrenOf(int id) const { return m_tree.children[static_cast<std::size_t>(id)]; }
    void Read(int id) { events += "r" + std::to_string(id) + ' '; }
    Next Visit(int id) {
        events += "v" + std::to_string(id) + ' ';
        const Next next = m_answers[static_cast<std::size_t>(id)];
        if (next == Next::Stop) found = id;
        return next;
    }
    Next Recursive(int id, unsigned depth) {
        const Next own = Visit(id);
        if (own == Next::Stop) return own;
        if (own != Next::SkipChildren && depth < m_maxDepth) {
            Read(id);
            for (int child : ChildrenOf(id)) {
                const Next next = Recursive(child, depth + 1);
                if (next == Next::Stop) return next;
                if (next == Next::SkipSiblings) break;
            }
        }
        return own;
    }
    // The children of a node that was read already. False when the walk ends.
    bool Iterative(int id, unsigned depth) {
        for (int child : ChildrenOf(id)) {
            const Next next = Visit(child);
            if (next == Next::Stop) return false;
            if (next == Next::SkipChildren) continue;
            if (depth < m_maxDepth) {
                Read(child);
                if (!Iterative(child, depth + 1)) return false;
            }
            if (next == Next::SkipSiblings) break;
        }
        return true;
    }
    void BreadthFirst() {
        const Next first = Visit(0);
        if (first == Next::Stop || first == Next::SkipChildren) return;
        std::vector<int> level{0};
        for (unsigned depth = 1; depth <= m_maxDepth && !level.empty(); ++depth) {
            std::vector<int> below;
            bool abandoned = false;
            for (std::size_t at = 0; at < level.size() && !abandoned; ++at) {
                Read(level[at]);
                for (int child : ChildrenOf(level[at])) {
                    const Next next = Visit(child);
                    if (next == Next::Stop) return;
                    if (next == Next::Continue) below.push_back(child);
                    if (next == Next::SkipSiblings) {
                        below = {child};
                        abandoned = true;
                        break;
                    }
                }
            }
            // A node at the limit isn't entered.
            level = depth == m_maxDepth ? std::vector<int>() : below;
        }
    }

    const Tree& m_tree;
    const Answers& m_answers;
    unsigned m_maxDepth;
};

int FindFirst(const Tree& tree, const Answers& answers, unsigned maxDepth, TraversalType type) {
    Walker walker(Node{&tree, 0});
    return walker
        .FindFirst(
            [&](const Node& node, unsigned) {
                tree.Note('v', node.id);
                return answers[static_cast<std::size_t>(node.id)];
            },
            maxDepth, type)
        .id;
}

constexpr TraversalType AllOrders[] = {TraversalType::BreadthFirst, TraversalType::DepthFirstRecursive, TraversalType::DepthFirstIterative};

// Every ordered tree of `size` nodes, numbered in pre-order: each node's parent is the one before it or one of
// that one's ancestors.
void ForEachTree(int size, const std::function<void(const Tree&)>& use) {
    std::vector<int> parents{-1};
    std::function<void()> extend = [&] {
        if (static_cast<int>(parents.size()) == size) {
            Tree tree;
            tree.children.resize(parents.size());
            for (std::size_t id = 1; id < parents.size(); ++id) tree.children[static_cast<std::size_t>(parents[id])].push_back(static_cast<int>(id));
            use(tree);
            return;
        }
        for (int parent = static_cast<int>(parents.size()) - 1; parent >= 0; parent = parents[static_cast<std::size_t>(parent)]) {
            parents.push_back(parent);
            extend();
            parents.pop_back();
        }
    };
    extend();
}

void ForEachAnswers(int size, int mostSpecial, const std::function<void(const Answers&)>& use) {
    Answers answers(static_cast<std::size_t>(size), Next::Continue);
    std::function<void(int, int)> choose = [&](int at, int left) {
        if (at == size) return use(answers);
        for (int next = 0; next < (left > 0 ? 4 : 1); ++next) {
            answers[static_cast<std::size_t>(at)] = static_cast<Next>(next);
            choose(at + 1, left - (next != 0));
        }
        answers[static_cast<std::size_t>(at)] = Next::Continue;
    };
    choose(0, mostSpecial);
}

void CompareWithReference(const Tree& tree, const Answers& answers, unsigned maxDepth) {
    for (TraversalType type : AllOrders) {
        tree.events.clear();
        const int found = FindFirst(tree, answers, maxDepth, type);
        Reference reference(tree, answers, maxDepth);
        reference.Run(type);
        ASSERT_EQ(tree.events, reference.events) << "order " << static_cast<int>(type) << " limit " << maxDepth;
        ASSERT_EQ(found, reference.found) << "order " << static_cast<int>(type) << " limit " << maxDepth;
    }
}

TEST(TreeWalker, EverySmallTreeWithEveryAnswerWalksAsTheRulesSay) {
    int trees = 0;
    for (int size = 1; size <= 5; ++size)
        ForEachTree(size, [&](const Tree& tree) {
            ++trees;
            ForEachAnswers(size, size, [&](const Answers& answers) {
                for (unsigned maxDepth : {0u, 1u, 2u, 3u, NoLimit}) CompareWithReference(tree, answers, maxDepth);
            });
        });
    EXPECT_EQ(trees, 1 + 1 + 2 + 5 + 14);
}

TEST(TreeWalker, EveryTreeOfSevenNodesWithTwoSpecialAnswersWalksAsTheRulesSay) {
    int trees = 0;
    ForEachTree(7, [&](const Tree& tree) {
        ++trees;
        ForEachAnswers(7, 2, [&](const Answers& answers) {
            for (unsigned maxDepth : {2u, NoLimit}) CompareWithReference(tree, answers, maxDepth);
        });
    });
    EXPECT_EQ(trees, 132);
}

// 0 has 1 and 2; 1 has 3 and 4; 2 has 5.
Tree SixNodes() {
    Tree tree;
    tree.children = {{1, 2}, {3, 4}, {5}, {}, {}, {}};
    return tree;
}

Answers AllContinueBut(std::size_t size, std::initializer_list<std::pair<int, Next>> special) {
    Answers answers(size, Next::Continue);
    for (const auto& [id, next] : special) answers[static_cast<std::size_t>(id)] = next;
    return answers;
}

std::string Visits(const Tree& tree) {
    std::string visits;
    for (std::size_t at = 0; at < tree.events.size(); at += 3)
        if (tree.events[at] == 'v') visits += tree.events.substr(at, 3);
    return visits;
}

TEST(TreeWalker, DepthLimitZeroVisitsTheRootAloneBreadthFirstAndRecursively) {
    const Tree tree = SixNodes();
    FindFirst(tree, AllContinueBut(6, {}), 0, TraversalType::BreadthFirst);
    EXPECT_EQ(tree.events, "v0 ");
    tree.events.clear();
    FindFirst(tree, AllContinueBut(6, {}), 0, TraversalType::DepthFirstRecursive);
    EXPECT_EQ(tree.events, "v0 ");
}

TEST(TreeWalker, DepthLimitZeroStillVisitsTheRootsChildrenIteratively) {
    const Tree tree = SixNodes();
    FindFirst(tree, AllContinueBut(6, {}), 0, TraversalType::DepthFirstIterative);
    EXPECT_EQ(tree.events, "r0 v0 v1 v2 ");
}

TEST(TreeWalker, SkipSiblingsBreadthFirstDiscardsWhatWasGatheredUnderEarlierParents) {
    Tree tree = SixNodes();
    tree.children = {{1, 2}, {3}, {4, 5}, {6}, {7}, {}, {}, {}};
    FindFirst(tree, AllContinueBut(8, {{4, Next::SkipSiblings}}), NoLimit, TraversalType::BreadthFirst);
    // 3, under the earlier parent 1, is gathered and dropped with its child 6; 5, the later sibling, isn't visited.
    EXPECT_EQ(Visits(tree), "v0 v1 v2 v3 v4 v7 ");
}

TEST(TreeWalker, SkipSiblingsBreadthFirstAtTheDepthLimitLeavesNothing) {
    const Tree tree = SixNodes();
    FindFirst(tree, AllContinueBut(6, {{1, Next::SkipSiblings}}), 1, TraversalType::BreadthFirst);
    EXPECT_EQ(tree.events, "v0 r0 v1 ");
}

TEST(TreeWalker, SkipSiblingsRecursivelyWalksTheOwnSubtreeFirst) {
    const Tree tree = SixNodes();
    FindFirst(tree, AllContinueBut(6, {{1, Next::SkipSiblings}}), NoLimit, TraversalType::DepthFirstRecursive);
    EXPECT_EQ(Visits(tree), "v0 v1 v3 v4 ");
}

TEST(TreeWalker, SkipSiblingsOnTheRootCountsAsContinue) {
    for (TraversalType type : AllOrders) {
        const Tree tree = SixNodes();
        FindFirst(tree, AllContinueBut(6, {{0, Next::SkipSiblings}}), NoLimit, type);
        EXPECT_EQ(Visits(tree).size(), 6 * 3u);
    }
}

TEST(TreeWalker, AnUnknownTraversalTypeWalksBreadthFirst) {
    const Tree tree = SixNodes();
    FindFirst(tree, AllContinueBut(6, {}), NoLimit, static_cast<TraversalType>(7));
    EXPECT_EQ(Visits(tree), "v0 v1 v2 v3 v4 v5 ");
}

TEST(TreeWalker, AnUnknownAnswerForTheRootEndsOnlyTheIterativeOrder) {
    const Answers answers = AllContinueBut(6, {{0, static_cast<Next>(9)}});
    for (TraversalType type : AllOrders) {
        const Tree tree = SixNodes();
        FindFirst(tree, answers, NoLimit, type);
        EXPECT_EQ(Visits(tree).size(), (type == TraversalType::DepthFirstIterative ? 1 : 6) * 3u);
    }
}

TEST(TreeWalker, VisitorsSeeTheDepth) {
    for (TraversalType type : AllOrders) {
        const Tree tree = SixNodes();
        std::vector<unsigned> depths(6, 99);
        Walker(Node{&tree, 0})
            .FindFirst(
                [&](const Node& node, unsigned depth) {
                    depths[static_cast<std::size_t>(node.id)] = depth;
                    return Next::Continue;
                },
                NoLimit, type);
        EXPECT_EQ(depths, (std::vector<unsigned>{0, 1, 1, 2, 2, 2}));
    }
}

// Counts the calls of this very copy.
struct CountingVisitor {
    std::vector<int>* counts;
    int calls = 0;
    Next operator()(const Node& node, unsigned) {
        (*counts)[static_cast<std::size_t>(node.id)] = ++calls;
        return Next::Continue;
    }
};

TEST(TreeWalker, TheRecursiveOrderCopiesTheVisitorForEachChild) {
    const Tree tree = SixNodes();
    std::vector<int> counts(6);
    Walker(Node{&tree, 0}).FindFirst(CountingVisitor{&counts}, NoLimit, TraversalType::DepthFirstRecursive);
    EXPECT_EQ(counts, (std::vector<int>{1, 2, 2, 3, 3, 3}));
}

TEST(TreeWalker, TheOtherOrdersKeepOneVisitor) {
    const Tree tree = SixNodes();
    std::vector<int> counts(6);
    Walker(Node{&tree, 0}).FindFirst(CountingVisitor{&counts}, NoLimit, TraversalType::DepthFirstIterative);
    EXPECT_EQ(counts, (std::vector<int>{1, 2, 5, 3, 4, 6}));
    Walker(Node{&tree, 0}).FindFirst(CountingVisitor{&counts}, NoLimit, TraversalType::BreadthFirst);
    EXPECT_EQ(counts, (std::vector<int>{1, 2, 3, 4, 5, 6}));
}

TEST(TreeWalker, TheRecursiveOrderCanStartAnywhereAndAnswersForItsNode) {
    const Tree tree = SixNodes();
    Walker walker(Node{&tree, 0});
    std::vector<unsigned> depths;
    const auto visitor = [&](const Node& node, unsigned depth) {
        depths.push_back(depth);
        return node.id == 1 ? Next::SkipSiblings : Next::Continue;
    };
    EXPECT_EQ(walker.WalkDepthFirstRecursive(Node{&tree, 1}, 5, visitor, 6), Next::SkipSiblings);
    EXPECT_EQ(depths, (std::vector<unsigned>{5, 6, 6}));
}

TEST(TreeWalker, ADeepTreeDoesntUseTheNativeStack) {
    constexpr int depth = 200000;
    Tree tree;
    tree.children.resize(depth + 1);
    for (int id = 0; id < depth; ++id) tree.children[static_cast<std::size_t>(id)] = {id + 1};
    for (TraversalType type : AllOrders) {
        int visits = 0;
        const Node found = Walker(Node{&tree, 0})
                               .FindFirst(
                                   [&](const Node& node, unsigned at) {
                                       ++visits;
                                       EXPECT_EQ(static_cast<unsigned>(node.id), at);
                                       return node.id == depth ? Next::Stop : Next::Continue;
                                   },
                                   NoLimit, type);
        EXPECT_EQ(found.id, depth);
        EXPECT_EQ(visits, depth + 1);
    }
}

TEST(TreeWalker, TheCustomDataGoesToEveryReadOfTheWalker) {
    const Tree tree = SixNodes();
    Walker walker(Node{&tree, 0}, PlainTree::Data{100});
    walker.FindFirst([](const Node&, unsigned) { return Next::Continue; }, NoLimit, TraversalType::BreadthFirst);
    EXPECT_EQ(tree.dataReads, 106);
    EXPECT_GE(tree.dataAddress, static_cast<const void*>(&walker));
    EXPECT_LT(tree.dataAddress, static_cast<const void*>(&walker + 1));
}

TEST(TreeWalker, AnExceptionOfTheVisitorPassesThrough) {
    for (TraversalType type : AllOrders) {
        const Tree tree = SixNodes();
        Walker walker(Node{&tree, 0});
        EXPECT_THROW(walker.FindFirst([](const Node& node, unsigned) -> Next { return node.id == 4 ? throw 42 : Next::Continue; }, NoLimit, type), int);
    }
}

// The walker over accessible objects.

using Testing::FakeAccessible;
using Testing::FakeObjects;
using Testing::LogCapture;

TEST(AATreeWalker, AnInvalidRootIsLoggedOnceAndFindsTheDefaultNodeWithoutAVisit) {
    LogCapture log;
    AATreeWalker walker{AANode{}};
    int visits = 0;
    for (int type : {0, 1, 2, 7}) {
        const AANode found = walker.FindFirst(
            [&](const AANode&, unsigned) {
                ++visits;
                return AATreeWalker::Next::Stop;
            },
            AATreeWalker::NoDepthLimit, static_cast<AATreeWalker::TraversalType>(type));
        EXPECT_EQ(found.container.p, nullptr);
        EXPECT_EQ(found.childId.vt, VT_I4);
        EXPECT_EQ(found.childId.lVal, 0);
    }
    EXPECT_EQ(visits, 0);
    EXPECT_EQ(log.Count("Invalid root specified!"), 1u);
    EXPECT_EQ(log.Lines().at(0).substr(0, 1), "W");
}

TEST(AATreeWalker, ARootWithAWrongChildIdTypeIsInvalid) {
    LogCapture log;
    FakeObjects objects;
    AATreeWalker walker{AANode{CComPtr<IAccessible>(&objects.Add()), CComVariant()}};
    EXPECT_TRUE(log.Contains("Invalid root specified!"));
}

TEST(AATreeWalker, VisitsSimpleElementsWithoutEnteringThemAndSkipsInvalidOnes) {
    FakeObjects objects;
    FakeAccessible& root = objects.Add();
    FakeAccessible& child = objects.Add();
    FakeAccessible& leaf = objects.Add();
    root.AddSimpleChild(1);
    root.AddOddChild(CComVariant(L"no element"));
    root.AddOddChild(CComVariant());
    root.AddChild(child);
    child.AddChild(leaf);
    for (int type : {0, 1, 2}) {
        std::vector<std::pair<IAccessible*, LONG>> seen;
        AATreeWalker(AANode{CComPtr<IAccessible>(&root)})
            .FindFirst(
                [&](const AANode& node, unsigned) {
                    seen.emplace_back(node.container.p, node.childId.lVal);
                    return AATreeWalker::Next::Continue;
                },
                AATreeWalker::NoDepthLimit, static_cast<AATreeWalker::TraversalType>(type));
        EXPECT_EQ(seen, (std::vector<std::pair<IAccessible*, LONG>>{{&root, 0}, {&root, 1}, {&child, 0}, {&leaf, 0}}));
        EXPECT_EQ(objects.OutstandingReferences(), 0);
    }
}

TEST(AATreeWalker, AFailedReadIsAnEmptySubtree) {
    LogCapture log;
    FakeObjects objects;
    FakeAccessible& root = objects.Add();
    FakeAccessible& broken = objects.Add();
    FakeAccessible& last = objects.Add();
    root.AddChild(broken);
    root.AddChild(last);
    broken.countResult = E_FAIL;
    int visits = 0;
    const AANode found = AATreeWalker(AANode{CComPtr<IAccessible>(&root)})
                             .FindFirst(
                                 [&](const AANode& node, unsigned) {
                                     ++visits;
                                     return node.container.p == &last ? AATreeWalker::Next::Stop : AATreeWalker::Next::Continue;
                                 },
                                 AATreeWalker::NoDepthLimit, AATreeWalker::TraversalType::DepthFirstRecursive);
    EXPECT_EQ(found.container.p, &last);
    EXPECT_EQ(visits, 3);
    EXPECT_EQ(log.Count("parentAcc->get_accChildCount failed with hr=0x80004005"), 1u);
}

TEST(AANode, OptionalReadersGiveNothingForAnInvalidNodeOrAFailure) {
    FakeObjects objects;
    FakeAccessible& object = objects.Add(ROLE_SYSTEM_CLIENT);
    object.left = 10;
    object.top = 20;
    object.width = 30;
    object.height = 40;
    const AANode node{CComPtr<IAccessible>(&object)};
    ASSERT_TRUE(ReadRole(node));
    EXPECT_EQ(ReadRole(node)->lVal, ROLE_SYSTEM_CLIENT);
    const std::optional<RECT> location = ReadLocation(node);
    ASSERT_TRUE(location);
    EXPECT_EQ(location->left, 10);
    EXPECT_EQ(location->top, 20);
    EXPECT_EQ(location->right, 40);
    EXPECT_EQ(location->bottom, 60);

    object.roleResult = object.locationResult = E_FAIL;
    EXPECT_FALSE(ReadRole(node));
    EXPECT_FALSE(ReadLocation(node));
    EXPECT_FALSE(ReadRole(AANode{}));
    EXPECT_FALSE(ReadLocation(AANode{}));
}

TEST(AANode, AHugeLocationWraps) {
    FakeObjects objects;
    FakeAccessible& object = objects.Add();
    object.left = 0x7FFFFFFF;
    object.width = 1;
    EXPECT_EQ(ReadLocation(AANode{CComPtr<IAccessible>(&object)})->right, static_cast<LONG>(0x80000000));
}

}  // namespace
}  // namespace Zorvex
