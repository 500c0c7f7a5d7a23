#include "RuntimeCore/Selectors/Generation/Ancestry.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

using namespace Zorvex::Generation;
using Generation::AncestryInfoOptions;

// A chain of made nodes: what each answers is written down by the test, what it was asked is counted.
class Node : public SelectorNodeContextInProcess {
public:
    explicit Node(std::string name, std::uint32_t level = LevelInner) : SelectorNodeContextInProcess(level), name(std::move(name)) {}

    std::string name;
    std::shared_ptr<SelectorNodeContext> parent;
    HRESULT parentResult = S_OK;
    HRESULT infoResult = S_OK;
    HRESULT setupResult = S_OK;
    bool included = true;
    bool valid = true;
    bool sameAsAny = false;
    int type = 1;
    int setups = 0;
    int parentTakes = 0;  // milliseconds
    std::uint32_t timeoutAtInfo = 0;
    std::string scope, pathParent;

    bool IsIncludedInDefaultHierarchy(const ContextData&) override { return included; }
    HRESULT InitialSetup(const AncestryInfoOptions&, ContextData&) override {
        ++setups;
        return setupResult;
    }
    int GetType() const override { return type; }
    bool IsValid() const override { return valid; }
    std::unique_ptr<GenericDataContainer> GetNativeData() const override { return nullptr; }
    bool IsSameNode(const SelectorNodeContext& other) const override { return sameAsAny || this == &other; }
    HRESULT GetParent(const AncestryInfoOptions&, ContextData&, std::shared_ptr<SelectorNodeContext>& out) override {
        ::Sleep(static_cast<DWORD>(parentTakes));
        out = parent;
        return parentResult;
    }
    HRESULT GetAncestryElementNodeInfo(const std::shared_ptr<SelectorNodeContext>& scopeAncestor,
                                       const std::shared_ptr<SelectorNodeContext>& path, const AncestryInfoOptions& options,
                                       ContextData& contextData, AncestryElementNodeInfo& info) override {
        scope = NameOf(scopeAncestor);
        pathParent = NameOf(path);
        timeoutAtInfo = options.timeoutMilliseconds;
        info.node = shared_from_this();
        info.included = ResolveHierarchyPresence(contextData) == HierarchyPresence::Included;
        return infoResult;
    }
    static std::string NameOf(const std::shared_ptr<SelectorNodeContext>& node) {
        if (!node) return "-";
        const auto* made = dynamic_cast<const Node*>(node.get());
        return made ? made->name : "foreign";
    }

protected:
    CString GetCurrentAttrValue(const CString&, const ContextData&) override { return {}; }
};

// leaf, excluded a, excluded b, included c, excluded d, included e, and there the way is paused at a window.
class AncestryTest : public testing::Test {
protected:
    AncestryTest() {
        const std::shared_ptr<Node> way[] = {leaf, a, b, c, d, e, window};
        for (std::size_t i = 0; i + 1 < std::size(way); ++i) way[i]->parent = way[i + 1];
        for (const auto& node : {a, b, d}) node->included = false;
        window->valid = false;
        e->parentResult = AncestryPaused;
    }
    HRESULT Walk(const std::shared_ptr<SelectorNodeContext>& relativeAncestor = nullptr) {
        result = {};
        return AppendFullAncestry(result, leaf, relativeAncestor, options, contextData, next);
    }
    std::string Names() const {
        std::string names;
        for (const auto& info : result.nodes) names += Node::NameOf(info.node) + (info.included ? " " : "- ");
        return names;
    }

    LogCapture log;
    AncestryInfoOptions options;
    ContextData contextData;
    AncestryResult result;
    std::shared_ptr<SelectorNodeContext> next;
    std::shared_ptr<Node> leaf = std::make_shared<Node>("leaf", LevelLeaf), a = std::make_shared<Node>("a"), b = std::make_shared<Node>("b"),
                          c = std::make_shared<Node>("c"), d = std::make_shared<Node>("d"), e = std::make_shared<Node>("e"),
                          window = std::make_shared<Node>("window", LevelLeaf);
};

TEST_F(AncestryTest, ExcludedNodesAreClimbedThroughAndDropped) {
    EXPECT_EQ(Walk(), S_OK);
    EXPECT_EQ(Names(), "leaf c e ");
    EXPECT_EQ(next, window);
    EXPECT_TRUE(log.Contains("V [AppendFullAncestry] Zorvex::Generation::GetDefaultSelectorAncestry: using timeout of 30000ms"));
    EXPECT_EQ(log.Count("SelectorNodeContextInProcess::GetPartialAncestryInfo: using timeout of 30000ms"), 3u);
    EXPECT_TRUE(log.Contains("V [AppendFullAncestry] Zorvex::Generation::GetDefaultSelectorAncestry: ancestry paused"));
    EXPECT_FALSE(log.Contains("ancestry finished normally"));
}

TEST_F(AncestryTest, KeepAllNodesRecordsExcludedOnesAsSuch) {
    options.flags = AncestryKeepAllNodes;
    EXPECT_EQ(Walk(), S_OK);
    EXPECT_EQ(Names(), "leaf a- b- c d- e ");
}

TEST_F(AncestryTest, EveryRecordOfAStretchHasTheNextIncludedNodeAsItsScope) {
    options.flags = AncestryKeepAllNodes;
    Walk();
    EXPECT_EQ(leaf->scope + a->scope + b->scope, "ccc");
    EXPECT_EQ(leaf->pathParent + a->pathParent + b->pathParent, "abc");
    EXPECT_EQ(c->scope + d->scope, "ee");
    EXPECT_EQ(e->scope, "window");
}

TEST_F(AncestryTest, WithoutKeepAllNodesThePathParentIsTheFirstNodeThatWasPassed) {
    Walk();
    EXPECT_EQ(leaf->pathParent, "a");
    EXPECT_EQ(e->pathParent, "window");
}

TEST_F(AncestryTest, LeafIsIncludedEvenWhereTheDefaultRuleWouldExcludeIt) {
    leaf->included = false;
    EXPECT_EQ(Walk(), S_OK);
    EXPECT_EQ(Names(), "leaf c e ");
}

TEST_F(AncestryTest, WayThatEndsWithoutAPauseHasNoNextNode) {
    e->parent = nullptr;
    e->parentResult = S_OK;
    EXPECT_EQ(Walk(), S_OK);
    EXPECT_EQ(Names(), "leaf c e ");
    EXPECT_EQ(next, nullptr);
    EXPECT_EQ(e->scope, "-");
    EXPECT_TRUE(log.Contains("V [AppendFullAncestry] Zorvex::Generation::GetDefaultSelectorAncestry: ancestry finished normally"));
}

TEST_F(AncestryTest, TargetThatIsTheRelativeAncestorHasNoRecordsAndNoFailure) {
    EXPECT_EQ(Walk(leaf), S_OK);
    EXPECT_TRUE(result.nodes.empty());
    EXPECT_TRUE(result.m_hasReachedRelativeAncestor);
    EXPECT_EQ(next, nullptr);
    EXPECT_TRUE(log.Contains(
        "V [GetPartialAncestryInfo] SelectorNodeContextInProcessBase::GetPartialAncestryInfo: m_hasReachedRelativeAncestor = true for the target node"));
}

TEST_F(AncestryTest, WalkEndsBelowTheRelativeAncestorWhichIsTheScope) {
    for (const auto& ancestor : {b, c}) {
        EXPECT_EQ(Walk(ancestor), S_OK);
        EXPECT_EQ(Names(), "leaf ");
        EXPECT_TRUE(result.m_hasReachedRelativeAncestor);
        EXPECT_EQ(leaf->scope, ancestor->name);
        EXPECT_EQ(next, nullptr);
    }
    EXPECT_EQ(log.Count("SelectorNodeContextInProcessBase::GetPartialAncestryInfo: m_hasReachedRelativeAncestor = true"), 2u);
}

TEST_F(AncestryTest, RelativeAncestorAboveAPauseIsAFailureAlthoughRecordsExist) {
    const auto elsewhere = std::make_shared<Node>("elsewhere");
    EXPECT_EQ(Walk(elsewhere), AncestryInvalidNode);
    EXPECT_EQ(Names(), "leaf c e ");
    EXPECT_TRUE(log.Contains("E [CheckRelativeAncestorReached] SelectorNodeContextAncestry::CheckRelativeAncestorReached: could not reach relative ancestor"));
}

TEST_F(AncestryTest, NodeOfAnotherKindIsNeverTheRelativeAncestor) {
    c->sameAsAny = true;
    const auto other = std::make_shared<Node>("other");
    other->type = 2;
    EXPECT_EQ(Walk(other), AncestryInvalidNode);
    other->type = 1;
    EXPECT_EQ(Walk(other), S_OK);
    EXPECT_EQ(Names(), "leaf ");
}

TEST_F(AncestryTest, NullTargetIsABadArgument) {
    EXPECT_EQ(AppendFullAncestry(result, nullptr, nullptr, options, contextData, next), E_INVALIDARG);
    EXPECT_TRUE(log.Contains("E [AppendFullAncestry] Zorvex::Generation::GetDefaultSelectorAncestry: the target node is NULL"));
}

TEST_F(AncestryTest, TimeoutOfZeroStillGivesThirtySeconds) {
    leaf->parentTakes = 29'999;
    EXPECT_EQ(Walk(), S_OK);
    EXPECT_EQ(leaf->timeoutAtInfo, 1u);
}

TEST_F(AncestryTest, TimeoutInTheMiddleEndsTheWalkWithItsCode) {
    options.timeoutMilliseconds = 1'000;
    leaf->parentTakes = 31'000;
    EXPECT_EQ(Walk(), AncestryTimeout);
    EXPECT_TRUE(result.nodes.empty());
    EXPECT_EQ(log.Count("E [GetPartialAncestryInfo] SelectorNodeContextInProcess::GetPartialAncestryInfo: the timeout of 31000ms has expired"), 1u);
    EXPECT_TRUE(log.Contains("E [AppendFullAncestry] Zorvex::Generation::GetDefaultSelectorAncestry: GetPartialAncestryInfo failed, hr=0x80040226"));
}

TEST_F(AncestryTest, EachStretchGetsWhatTheOthersLeft) {
    leaf->parentTakes = 10'000;
    c->parentTakes = 5'000;
    EXPECT_EQ(Walk(), S_OK);
    EXPECT_EQ(leaf->timeoutAtInfo, 20'000u);
    EXPECT_EQ(c->timeoutAtInfo, 15'000u);
    EXPECT_EQ(options.timeoutMilliseconds, 15'000u);
}

TEST_F(AncestryTest, HugeTimeoutsDontWrapRound) {
    options.timeoutMilliseconds = 0xFFFFFFFFu;
    EXPECT_EQ(leaf->AdjustTimeout(options), static_cast<std::uint32_t>(std::numeric_limits<int>::max()));
    EXPECT_EQ(options.timeoutMilliseconds, static_cast<std::uint32_t>(std::numeric_limits<int>::max()));
    options.timeoutMilliseconds = 5;
    EXPECT_EQ(leaf->AdjustTimeout(options), 30'005u);
}

TEST_F(AncestryTest, FailureOfTheParentIsToldUnderTheOtherOperationsName) {
    c->parentResult = E_ACCESSDENIED;
    EXPECT_EQ(Walk(), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains(
        "E [GetPartialAncestryInfo] SelectorNodeContextInProcessBase::GetPartialAncestryInfo: GetAncestryElementNodeInfo failed, hr=0x80070005"));
}

TEST_F(AncestryTest, FailureOfARecordEndsTheWalk) {
    c->infoResult = E_FAIL;
    EXPECT_EQ(Walk(), E_FAIL);
    EXPECT_TRUE(log.Contains(
        "E [GetPartialAncestryInfo] SelectorNodeContextInProcessBase::GetPartialAncestryInfo: GetAncestryElementNodeInfo failed, hr=0x80004005"));
}

TEST_F(AncestryTest, InvalidTargetIsRefused) {
    leaf->valid = false;
    EXPECT_EQ(Walk(), AncestryInvalidNode);
}

TEST_F(AncestryTest, NodeThatDiesUnderTheWalkIsAnInvalidElement) {
    a->valid = false;
    EXPECT_EQ(Walk(), AncestryInvalidNode);
    EXPECT_TRUE(log.Contains("E [GetPartialAncestryInfo] SelectorNodeContextInProcess::GetPartialAncestryInfo: invalid element"));
}

TEST_F(AncestryTest, FailedSetupOfTheTargetEndsTheWalk) {
    leaf->setupResult = E_OUTOFMEMORY;
    EXPECT_EQ(Walk(), E_OUTOFMEMORY);
    EXPECT_TRUE(log.Contains(
        "E [AppendFullAncestry] Zorvex::Generation::GetDefaultSelectorAncestry: targetLeafNode->InitialSetup failed, hr=0x8007000E"));
}

TEST_F(AncestryTest, OnlyTheFirstNodeOfAKindIsSetUpAndALaterFailureIsIgnored) {
    e->type = 2;
    e->setupResult = E_FAIL;
    EXPECT_EQ(Walk(), S_OK);
    EXPECT_EQ(leaf->setups, 1);
    EXPECT_EQ(c->setups, 0);
    EXPECT_EQ(e->setups, 1);
}

TEST_F(AncestryTest, ParentsThatGoRoundInACircleEndTheWalk) {
    for (const std::uint32_t flags : {0u, static_cast<std::uint32_t>(AncestryKeepAllNodes)}) {
        options = {flags, 0, nullptr};
        b->parent = a;
        EXPECT_EQ(Walk(), AncestryInvalidNode);
        EXPECT_TRUE(log.Contains("no end after 10000 ancestors"));
    }
    b->parent = c;
    d->parent = c;  // and a circle of included ones
    options = {};
    log.Clear();
    EXPECT_EQ(Walk(), AncestryInvalidNode);
    EXPECT_EQ(result.nodes.size(), 10'000u);
    EXPECT_TRUE(log.Contains("Zorvex::Generation::GetDefaultSelectorAncestry: no end after 10000 ancestors"));
    d->parent = e;
}

TEST_F(AncestryTest, ParentThatIsNoInProcessNodeIsWhereTheWayStops) {
    struct Foreign : SelectorNodeContext {
        Foreign() : SelectorNodeContext(LevelInner) {}
        HRESULT GetPartialAncestryInfo(const std::shared_ptr<SelectorNodeContext>&, AncestryInfoOptions&, ContextData&, AncestryResult&,
                                       std::shared_ptr<SelectorNodeContext>&) override { return E_NOTIMPL; }
        HRESULT InitialSetup(const AncestryInfoOptions&, ContextData&) override { return S_OK; }
        int GetType() const override { return 3; }
        bool IsValid() const override { return true; }
        std::unique_ptr<GenericDataContainer> GetNativeData() const override { return nullptr; }
        bool IsSameNode(const SelectorNodeContext&) const override { return false; }
        bool IsIncludedInDefaultHierarchy(const ContextData&) override { return false; }
        CString GetCurrentAttrValue(const CString&, const ContextData&) override { return {}; }
    };
    const auto foreign = std::make_shared<Foreign>();
    c->parent = foreign;
    EXPECT_EQ(Walk(), E_NOTIMPL);
    EXPECT_EQ(Names(), "leaf c ");
    EXPECT_EQ(c->scope, "foreign");
}

TEST(AncestryInfoOptions, BadPolicyIsToldAndLeavesNone) {
    LogCapture log;
    Zorvex::AncestryInfoOptions record;
    record.flags = AncestrySiblings;
    record.timeoutMilliseconds = 7;
    record.policy = L"[]";
    auto options = Zorvex::Generation::AncestryInfoOptions::ReadFromArchive(record);
    EXPECT_EQ(options.policy, nullptr);
    EXPECT_EQ(options.flags, static_cast<std::uint32_t>(AncestrySiblings));
    EXPECT_EQ(options.timeoutMilliseconds, 7u);
    EXPECT_TRUE(log.Contains("E [ReadFromArchive] AncestryInfoOptions::ReadFromArchive: failed to deserialize selector policy, error 2"));
    record.policy = L"{";
    EXPECT_EQ(Zorvex::Generation::AncestryInfoOptions::ReadFromArchive(record).policy, nullptr);
    EXPECT_TRUE(log.Contains("failed to deserialize selector policy, error 1"));
    record.policy.clear();
    EXPECT_NE(Zorvex::Generation::AncestryInfoOptions::ReadFromArchive(record).policy, nullptr);
}

}  // namespace
}  // namespace Zorvex::Testing
