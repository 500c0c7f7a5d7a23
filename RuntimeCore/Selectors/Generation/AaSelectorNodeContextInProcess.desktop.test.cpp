#include "RuntimeCore/Selectors/Generation/AaSelectorNodeContextInProcess.h"

#include <gtest/gtest.h>

#include "RuntimeCore/Selectors/Generation/AaContextData.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

using namespace Zorvex::Generation;
using Generation::AncestryInfoOptions;
using Node = AaSelectorNodeContextInProcess;

constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Main", "rectangle": [0, 0, 400, 300], "objects": {"window": {
    "id": "root", "role": "window", "rectangle": [0, 0, 400, 300], "children": [
      {"id": "panel", "role": "pane", "name": "Panel", "children": [
        {"id": "ok", "role": "push button", "name": "OK", "help": "Closes"},
        {"id": "item", "role": "list item", "name": "First", "simple": true},
        {"id": "nameless", "role": "push button"}]},
      {"id": "blank", "children": [{"id": "leaf", "role": "push button", "name": "Leaf"}]}]}},
   "children": [{"id": "inner", "class": "Inner", "objects": {"window": {"id": "innerRoot", "role": "window"}}}]},
  {"id": "wpf", "class": "HwndWrapper[App;;1]", "objects": {"window": {"id": "menu", "role": "menu item", "name": "File"}}}]})";

class NodeContextTest : public testing::Test {
protected:
    std::shared_ptr<Node> Make(const char* id, const char* window = "main", std::uint32_t level = LevelInner) {
        return std::make_shared<Node>(AAElement{desktop.Window(window), desktop.Element(id), desktop.Child(id)}, level);
    }
    std::shared_ptr<Node> Dead() { return std::make_shared<Node>(AAElement{desktop.Window("main"), nullptr, CComVariant(CHILDID_SELF)}, LevelLeaf); }
    AaContextData& Data() { return *GetSpecificContextData<AaContextData>(contextData, Node::kType); }
    const AAElement& ElementOf(const std::shared_ptr<SelectorNodeContext>& node) { return static_cast<Node&>(*node).GetElement(); }

    DesktopFixture desktop{kDesktop};
    LogCapture log;
    AncestryInfoOptions options;
    ContextData contextData;
};

TEST_F(NodeContextTest, SetupTakesFlagsAndTopLevelWindowOfTheFirstNode) {
    options.flags = AncestryStrictOwner | AncestryAaOnlyMode;
    options.timeoutMilliseconds = 1000;
    EXPECT_EQ(Make("innerRoot", "inner")->InitialSetup(options, contextData), S_OK);
    EXPECT_TRUE(Data().strictOwner);
    EXPECT_TRUE(Data().aaOnlyMode);
    EXPECT_EQ(Data().topLevelWindow, desktop.Window("main"));
    EXPECT_EQ(Data().aaWindow, nullptr);
    EXPECT_FALSE(Data().targetIsWpfMenuItem);
}

TEST_F(NodeContextTest, SecondSetupChangesNothingEvenWithOtherOptions) {
    Make("ok")->InitialSetup(options, contextData);
    options.flags = AncestryStrictOwner | AncestryAaOnlyMode;
    EXPECT_EQ(Make("menu", "wpf")->InitialSetup(options, contextData), S_OK);
    EXPECT_FALSE(Data().strictOwner);
    EXPECT_FALSE(Data().aaOnlyMode);
    EXPECT_FALSE(Data().targetIsWpfMenuItem);
    EXPECT_EQ(Data().topLevelWindow, desktop.Window("main"));
}

TEST_F(NodeContextTest, MenuItemOfAWpfWindowIsNotedOutsideAaOnlyMode) {
    Make("menu", "wpf")->InitialSetup(options, contextData);
    EXPECT_TRUE(Data().targetIsWpfMenuItem);
    contextData = {};
    options.flags = AncestryAaOnlyMode;
    Make("menu", "wpf")->InitialSetup(options, contextData);
    EXPECT_FALSE(Data().targetIsWpfMenuItem);
    contextData = {};
    options.flags = 0;
    Make("menu", "main")->InitialSetup(options, contextData);
    EXPECT_FALSE(Data().targetIsWpfMenuItem) << "another window's class";
    contextData = {};
    Make("ok", "wpf")->InitialSetup(options, contextData);
    EXPECT_FALSE(Data().targetIsWpfMenuItem) << "another role";
}

TEST_F(NodeContextTest, NodeWithoutAccessibleIsNotValid) {
    EXPECT_TRUE(Make("ok")->IsValid());
    EXPECT_FALSE(Dead()->IsValid());
    EXPECT_EQ(Dead()->GetNativeData(), nullptr);
    std::shared_ptr<SelectorNodeContext> parent = Make("ok");
    EXPECT_EQ(Dead()->GetParent(options, contextData, parent), AncestryInvalidNode);
    EXPECT_EQ(parent, nullptr);
    EXPECT_TRUE(log.Contains("E [GetParent] AaSelectorNodeContextInProcess::GetParent: NULL element"));
    AncestryElementNodeInfo info;
    EXPECT_EQ(Dead()->GetAncestryElementNodeInfo(nullptr, nullptr, options, contextData, info), AncestryInvalidNode);
    EXPECT_TRUE(log.Contains("E [GetAncestryElementNodeInfo] AaSelectorNodeContextInProcess::GetParent: NULL element"));
    EXPECT_FALSE(Dead()->IsIncludedInDefaultHierarchy(contextData));
    EXPECT_TRUE(log.Contains("E [IsIncludedInDefaultHierarchy] AaSelectorNodeContextInProcess::IsIncludedInDefaultHierarchy: NULL element"));
    EXPECT_EQ(Dead()->GetAttr(L"name", contextData), L"");
}

TEST_F(NodeContextTest, ChildIdThatIsNoIntegerIsNotValid) {
    AAElement element{desktop.Window("main"), desktop.Element("ok"), CComVariant()};
    EXPECT_FALSE(std::make_shared<Node>(element, LevelInner)->IsValid());
}

TEST_F(NodeContextTest, DefaultRuleBeforeAnySetupIsToldAndAnswersNo) {
    EXPECT_FALSE(Make("panel")->IsIncludedInDefaultHierarchy(contextData));
    EXPECT_TRUE(log.Contains("E [GetSpecificContextData] SelectorPolicyContext::GetSpecificContextData(AaContextData): the context data is NULL, "
                             "SelectorNodeContext::InitialSetup has not been called"));
    EXPECT_TRUE(log.Contains(
        "E [IsIncludedInDefaultHierarchy] AaSelectorNodeContextInProcess::IsIncludedInDefaultHierarchy: invalid AA context data"));
    EXPECT_EQ(Make("ok")->GetAttr(L"name", contextData), L"");
    EXPECT_TRUE(log.Contains("E [GetCurrentAttrValue] AaSelectorNodeContextInProcess::GetCurrentAttrValue: invalid AA context data"));
    std::shared_ptr<SelectorNodeContext> parent;
    EXPECT_EQ(Make("ok")->GetParent(options, contextData, parent), S_OK) << "the answer stands without it";
    EXPECT_NE(parent, nullptr);
    EXPECT_TRUE(log.Contains("E [UpdatePolicyContext] AaSelectorNodeContextInProcess::UpdatePolicyContext: invalid AA context data"));
}

TEST_F(NodeContextTest, NativeDataIsACopyOfTheElement) {
    const auto data = Make("item")->GetNativeData();
    ASSERT_NE(data, nullptr);
    ASSERT_EQ(data->GetTypeId(), typeid(AANativeWrapper));
    const auto& native = *static_cast<AANativeWrapper*>(data->Get());
    EXPECT_EQ(native.hWnd, desktop.Window("main"));
    EXPECT_EQ(native.spAcc, desktop.Element("item"));
    EXPECT_EQ(native.child.lVal, desktop.ChildId("item"));
}

TEST_F(NodeContextTest, SameElementBehindTwoObjectsIsTheSameNode) {
    EXPECT_TRUE(Make("ok")->IsSameNode(*Make("ok")));
    EXPECT_FALSE(Make("ok")->IsSameNode(*Make("nameless")));
    EXPECT_FALSE(Make("item")->IsSameNode(*Make("panel"))) << "one object, another child id";
}

TEST_F(NodeContextTest, ParentIsAnInnerNodeAndItsOwnerWindowIsLearntOnce) {
    const auto node = Make("ok");
    node->InitialSetup(options, contextData);
    std::shared_ptr<SelectorNodeContext> parent;
    EXPECT_EQ(node->GetParent(options, contextData, parent), S_OK);
    EXPECT_EQ(ElementOf(parent).spAcc, desktop.Element("panel"));
    EXPECT_EQ(ElementOf(parent).hWnd, desktop.Window("main"));
    EXPECT_EQ(parent->GetHierarchyLevel(), static_cast<std::uint32_t>(LevelInner));
    EXPECT_EQ(Data().aaWindow, desktop.Window("main"));
    Data().aaWindow = desktop.Window("wpf");
    EXPECT_EQ(node->GetParent(options, contextData, parent), S_OK);
    EXPECT_EQ(Data().aaWindow, desktop.Window("wpf"));
}

TEST_F(NodeContextTest, ParentOfASimpleChildIsItsContainerWithoutACall) {
    const auto node = Make("item");
    node->InitialSetup(options, contextData);
    std::shared_ptr<SelectorNodeContext> parent;
    const int calls = desktop.Calls("panel", "get_accParent");
    EXPECT_EQ(node->GetParent(options, contextData, parent), S_OK);
    EXPECT_EQ(ElementOf(parent).spAcc, desktop.Element("panel"));
    EXPECT_EQ(ElementOf(parent).child.lVal, CHILDID_SELF);
    EXPECT_EQ(desktop.Calls("panel", "get_accParent"), calls);
}

TEST_F(NodeContextTest, WindowRoleAboveEndsTheWalkAtItsWindow) {
    const auto node = Make("panel");
    node->InitialSetup(options, contextData);
    std::shared_ptr<SelectorNodeContext> parent;
    EXPECT_EQ(node->GetParent(options, contextData, parent), AncestryPaused);
    EXPECT_EQ(ElementOf(parent).spAcc, nullptr);
    EXPECT_EQ(ElementOf(parent).hWnd, desktop.Window("main"));
    EXPECT_EQ(parent->GetHierarchyLevel(), static_cast<std::uint32_t>(LevelLeaf));
    EXPECT_FALSE(parent->IsValid());
}

TEST_F(NodeContextTest, FailedParentPausesAtTheElementsOwnWindow) {
    const auto node = Make("ok", "inner");
    node->InitialSetup(options, contextData);
    desktop.AddFault("ok", {.call = "get_accParent", .result = E_FAIL});
    std::shared_ptr<SelectorNodeContext> parent;
    EXPECT_EQ(node->GetParent(options, contextData, parent), AncestryPaused);
    EXPECT_EQ(ElementOf(parent).hWnd, desktop.Window("inner"));
    EXPECT_EQ(ElementOf(parent).spAcc, nullptr);
}

class NodeInfoTest : public NodeContextTest {
protected:
    AncestryElementNodeInfo Info(const std::shared_ptr<Node>& node, const std::shared_ptr<SelectorNodeContext>& scope) {
        options.timeoutMilliseconds = 30'000;
        node->InitialSetup(options, contextData);
        Data().aaWindow = desktop.Window("main");
        AncestryElementNodeInfo info;
        EXPECT_EQ(node->GetAncestryElementNodeInfo(scope, nullptr, options, contextData, info), S_OK);
        EXPECT_EQ(info.node, node);
        return info;
    }
};

TEST_F(NodeInfoTest, IncludedNodeHasMinimalAttributesAndItsIndex) {
    options.flags = AncestryComputeIndex;
    const auto info = Info(Make("nameless", "main", LevelLeaf), Make("panel"));
    EXPECT_TRUE(info.included);
    EXPECT_EQ(info.minimalAttributes, (AttributeTexts{{L"role", L"push button"}}));
    EXPECT_EQ(info.index, 2);
    EXPECT_TRUE(info.allAttributes.empty());
    EXPECT_TRUE(info.siblings.empty());
}

TEST_F(NodeInfoTest, ExcludedNodeHasAttributesButNoIndex) {
    options.flags = AncestryComputeIndex;
    const auto info = Info(Make("nameless"), Make("panel"));
    EXPECT_FALSE(info.included);
    EXPECT_EQ(info.index, -1);
    EXPECT_FALSE(info.minimalAttributes.empty());
}

TEST_F(NodeInfoTest, AllAttributesLeaveTheMinimalOnesOut) {
    options.flags = AncestryAllAttributes;
    const auto info = Info(Make("ok", "main", LevelLeaf), Make("panel"));
    EXPECT_EQ(info.minimalAttributes, (AttributeTexts{{L"name", L"OK"}, {L"role", L"push button"}}));
    EXPECT_EQ(info.allAttributes.at(L"helpText"), L"Closes");
    EXPECT_FALSE(info.allAttributes.contains(L"name"));
    EXPECT_FALSE(info.allAttributes.contains(L"role"));
}

TEST_F(NodeInfoTest, FailureOfTheMinimalAttributesLeavesARecordWithoutThem) {
    options.flags = AncestryComputeIndex | AncestryAllAttributes | AncestrySiblings;
    const auto info = Info(Make("ok", "main", LevelLeaf), nullptr);  // no scope, no window to look in
    EXPECT_TRUE(info.included);
    EXPECT_EQ(info.index, -1);
    EXPECT_TRUE(info.minimalAttributes.empty());
    EXPECT_TRUE(info.allAttributes.empty());
    EXPECT_EQ(info.siblings.size(), 2u) << "the siblings are read all the same";
    EXPECT_TRUE(log.Contains(
        "E [GetAncestryElementNodeInfo] AaSelectorNodeContextInProcess::GetAncestryElementNodeInfo: GetMinimalSelectorAttributes failed"));
}

TEST_F(NodeInfoTest, SiblingsComeInTheirOrderWithThePlaceAmongThem) {
    options.flags = AncestrySiblings;
    const auto info = Info(Make("item"), Make("panel"));
    EXPECT_EQ(info.indexInSiblings, 1);
    ASSERT_EQ(info.siblings.size(), 2u);
    EXPECT_EQ(ElementOf(info.siblings[0]).spAcc, desktop.Element("ok"));
    EXPECT_EQ(ElementOf(info.siblings[1]).spAcc, desktop.Element("nameless"));
    EXPECT_EQ(info.siblings[0]->GetHierarchyLevel(), static_cast<std::uint32_t>(LevelInner));
}

TEST_F(NodeInfoTest, OnlyChildHasIndexZeroAndNoSiblings) {
    options.flags = AncestrySiblings;
    const auto info = Info(Make("leaf"), Make("root"));
    EXPECT_EQ(info.indexInSiblings, 0);
    EXPECT_TRUE(info.siblings.empty());
}

TEST_F(NodeInfoTest, SiblingsWithoutAParentAreAWarning) {
    options.flags = AncestrySiblings;
    desktop.AddFault("ok", {.call = "get_accParent", .null = true});
    EXPECT_TRUE(Info(Make("ok"), Make("panel")).siblings.empty());
    EXPECT_TRUE(log.Contains("W [GetAncestryElementNodeInfo] AaSelectorNodeContextInProcess::GetAncestryElementNodeInfo: invalid IAcc parent for getting siblings"));
}

TEST_F(NodeInfoTest, ElementThatIsNotAmongItsSiblingsIsAWarning) {
    options.flags = AncestrySiblings;
    // The parent has dropped it since.
    const auto node = Make("ok");
    desktop.AddFault("panel", {.call = "AccessibleChildren", .times = 100});
    const auto orphan = std::make_shared<Node>(AAElement{desktop.Window("main"), desktop.Element("panel"), CComVariant(LONG{77})}, LevelInner);
    EXPECT_TRUE(Info(orphan, Make("panel")).siblings.empty());
    EXPECT_TRUE(log.Contains(
        "W [GetAncestryElementNodeInfo] AaSelectorNodeContextInProcess::GetAncestryElementNodeInfo: current selector node not found among siblings"));
}

TEST_F(NodeContextTest, AttributesAreReadOnceByTheTableOfAttributes) {
    const auto node = Make("ok");
    node->InitialSetup(options, contextData);
    EXPECT_EQ(node->GetAttr(L"name", contextData), L"OK");
    const int calls = desktop.TotalCalls();
    EXPECT_EQ(node->GetAttr(L"name", contextData), L"OK");
    EXPECT_EQ(desktop.TotalCalls(), calls);
    EXPECT_EQ(node->GetAttr(L"helpText", contextData), L"Closes");
    EXPECT_EQ(node->GetAttr(L"cls", contextData), L"") << "no attribute of an accessible element";
    EXPECT_EQ(node->GetAttr(L"Name", contextData), L"") << "case counts";
    desktop.AddFault("ok", {.call = "get_accRole", .times = 100, .result = E_FAIL});
    EXPECT_EQ(node->GetAttr(L"role", contextData), L"");
}

}  // namespace
}  // namespace Zorvex::Testing
