#include "InProc/Vantrel/AncestryRequest.h"

#include <gtest/gtest.h>

#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Requests/Catalogue20To39.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr HRESULT kMissed = static_cast<HRESULT>(0x80040215u);
constexpr HRESULT kTimeout = static_cast<HRESULT>(0x80040226u);

// ok, in a nameless pane, in a named group, in a nameless pane, in the window; and a window inside the window.
constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Main", "rectangle": [0, 0, 400, 300], "objects": {"window": {
    "id": "root", "role": "window", "name": "Main", "children": [
      {"id": "outerPane", "role": "pane", "children": [
        {"id": "group", "role": "grouping", "name": "Group", "children": [
          {"id": "innerPane", "role": "pane", "children": [
            {"id": "ok", "role": "push button", "name": "OK", "rectangle": [10, 10, 50, 20]},
            {"id": "ok2", "role": "push button", "name": "OK", "rectangle": [70, 10, 50, 20]},
            {"id": "third", "role": "push button", "name": "Third", "simple": true}]}]}]}]}},
   "children": [{"id": "inner", "class": "Inner", "rectangle": [0, 0, 10, 10], "objects": {"window": {
      "id": "innerRoot", "role": "window", "children": [{"id": "deep", "role": "push button", "name": "Deep"}]}}}]}]})";

class AncestryRequestTest : public testing::Test {
protected:
    AAObjectIdentifier Identify(const char* id, const char* window = "main") {
        return AAContainerCache::Instance().RegisterObject({kClientPid, desktop.Window("main")},
                                                           {desktop.Window(window), desktop.Element(id), desktop.Child(id)}, 0);
    }
    GetAncestryInfoResponse Ask(const char* id, std::uint32_t flags = 0, const AAObjectIdentifier& relativeAncestor = {}) {
        GetAncestryInfoRequest request;
        request.target = Identify(id);
        request.relativeAncestor = relativeAncestor;
        request.options.flags = flags;
        request.options.policy = policy;
        return Call(request);
    }
    // As a client that never saw the failure gets it, and with nothing held but what it was given.
    void ExpectTheNextRequestToAnswer() {
        policy.clear();
        EXPECT_EQ(Names(Ask("ok")), "ok group ");
        CacheCleaner::Release();
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }
    std::string Names(const GetAncestryInfoResponse& response) {
        std::string names;
        for (const AncestryNode& node : response.nodes) {
            for (const char* id : {"ok", "innerPane", "group", "outerPane", "root", "third", "deep", "innerRoot"}) {
                const AAElement element = AAContainerCache::Instance().LookupIdentifier(node.node);
                if (element.spAcc == desktop.Element(id) && element.child.lVal == desktop.ChildId(id)) names += id + std::string(" ");
            }
        }
        return names;
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    CacheCleaner cleaner;
    CString policy;
};

TEST_F(AncestryRequestTest, IncludedNodesComeFromTheTargetUpAndThePauseNamesTheNextWindow) {
    const auto response = Ask("ok");
    EXPECT_EQ(response.result, S_OK);
    EXPECT_EQ(Names(response), "ok group ");
    EXPECT_EQ(response.nextWindow, desktop.Window("main"));
    EXPECT_EQ(response.nodes[0].node, Identify("ok"));
    EXPECT_TRUE(response.nodes[0].included && response.nodes[1].included);
    EXPECT_EQ(response.nodes[0].minimalAttributes, (AttributeTexts{{L"name", L"OK"}, {L"role", L"push button"}}));
    EXPECT_TRUE(log.Contains("V [GetAncestryInfo] calling LookupIdentifier(targetAa)"));
    EXPECT_TRUE(log.Contains("V [GetAncestryInfo] calling LookupIdentifier(relativeAncestorAaIdentifier)"));
}

TEST_F(AncestryRequestTest, NodeExcludedByDefaultIsThereUnderKeepAllNodesWithoutAnIndex) {
    const auto response = Ask("ok", AncestryKeepAllNodes | AncestryComputeIndex);
    EXPECT_EQ(Names(response), "ok innerPane group outerPane ");
    EXPECT_FALSE(response.nodes[1].included);
    EXPECT_EQ(response.nodes[1].selectorIndex, -1);
    EXPECT_EQ(response.nodes[2].selectorIndex, 0);
}

TEST_F(AncestryRequestTest, IndexCountsAmongTheLikesBelowTheNextIncludedNode) {
    EXPECT_EQ(Ask("ok2", AncestryComputeIndex).nodes[0].selectorIndex, 2);
    EXPECT_EQ(Ask("ok", AncestryComputeIndex | AncestryCheckUniqueIndex).nodes[0].selectorIndex, 1);
    EXPECT_EQ(Ask("ok", AncestryComputeIndex).nodes[0].selectorIndex, 0) << "nobody asked whether there are more";
    EXPECT_EQ(Ask("third", AncestryComputeIndex | AncestryCheckUniqueIndex).nodes[0].selectorIndex, 0);
}

TEST_F(AncestryRequestTest, SiblingsAreIdentifiersOfTheSameClient) {
    const auto response = Ask("ok2", AncestrySiblings);
    ASSERT_EQ(response.nodes[0].siblings.size(), 2u);
    EXPECT_EQ(response.nodes[0].siblings[0], Identify("ok"));
    EXPECT_EQ(response.nodes[0].siblings[1], Identify("third"));
    EXPECT_EQ(response.nodes[0].indexInSiblings, 1);
}

TEST_F(AncestryRequestTest, StrictOwnerIsNotedInTheIdentifiers) {
    EXPECT_EQ(Ask("ok", AncestryStrictOwner).nodes[0].node.isDomAria, 1u);
    EXPECT_EQ(Ask("ok").nodes[0].node.isDomAria, 0u);
}

TEST_F(AncestryRequestTest, RelativeAncestorEndsTheWalkBelowIt) {
    const auto response = Ask("ok", 0, Identify("group"));
    EXPECT_EQ(response.result, S_OK);
    EXPECT_EQ(Names(response), "ok ");
    EXPECT_EQ(response.nextWindow, desktop.Window("main"));
}

TEST_F(AncestryRequestTest, TargetThatIsTheRelativeAncestorHasNoRecords) {
    const auto response = Ask("ok", 0, Identify("ok"));
    EXPECT_EQ(response.result, S_OK);
    EXPECT_TRUE(response.nodes.empty());
    EXPECT_EQ(response.nextWindow, desktop.Window("main"));
}

TEST_F(AncestryRequestTest, RelativeAncestorThatDoesNotResolveIsNone) {
    AAObjectIdentifier unknown = Identify("group");
    unknown.containerId += 1000;
    EXPECT_EQ(Names(Ask("ok", 0, unknown)), "ok group ");
}

TEST_F(AncestryRequestTest, RelativeAncestorAboveThePauseFailsAndTheRecordsAreDropped) {
    const auto response = Ask("ok", 0, Identify("root"));
    EXPECT_EQ(response.result, kMissed);
    EXPECT_TRUE(response.nodes.empty());
    EXPECT_TRUE(log.Contains("E [GetAncestryInfo] GetDefaultSelectorAncestry failed, hr=80040215"));
}

TEST_F(AncestryRequestTest, RelativeAncestorThatNeverWasOneFailsAndTheNextRequestAnswers) {
    for (const char* stranger : {"third", "ok2"}) {
        log.Clear();
        const auto response = Ask("ok", AncestryComputeIndex, Identify(stranger));
        EXPECT_EQ(response.result, kMissed);
        EXPECT_TRUE(response.nodes.empty());
        EXPECT_EQ(response.nextWindow, desktop.Window("main"));
        EXPECT_TRUE(log.Contains(
            "E [CheckRelativeAncestorReached] SelectorNodeContextAncestry::CheckRelativeAncestorReached: could not reach relative ancestor"));
    }
    ExpectTheNextRequestToAnswer();
}

TEST_F(AncestryRequestTest, AaOnlyModeGoesThroughChildWindowsUpToTheTopLevelOne) {
    GetAncestryInfoRequest request;
    request.target = Identify("deep", "inner");
    auto response = Call(request);
    EXPECT_EQ(Names(response), "deep ");
    EXPECT_EQ(response.nextWindow, desktop.Window("inner"));
    request.options.flags = AncestryAaOnlyMode | AncestryKeepAllNodes;
    response = Call(request);
    EXPECT_EQ(response.result, S_OK);
    EXPECT_GT(response.nodes.size(), 1u);
    EXPECT_EQ(response.nextWindow, desktop.Window("main"));
}

TEST_F(AncestryRequestTest, UnknownTargetIsABadArgument) {
    GetAncestryInfoRequest request;
    request.target = Identify("ok");
    request.target.containerId += 1000;
    const auto response = Call(request);
    EXPECT_EQ(response.result, E_INVALIDARG);
    EXPECT_TRUE(response.nodes.empty());
    EXPECT_EQ(response.nextWindow, nullptr);
    EXPECT_TRUE(log.Contains("E [GetAncestryInfo] AAInternalImpl::GetAncestryInfo: invalid target AA"));
}

TEST_F(AncestryRequestTest, BadPolicyIsToldAndTheWalkGoesOnWithout) {
    policy = L"[]";
    EXPECT_EQ(Names(Ask("ok")), "ok group ");
    EXPECT_TRUE(log.Contains("E [ReadFromArchive] AncestryInfoOptions::ReadFromArchive: failed to deserialize selector policy, error 2"));
}

TEST_F(AncestryRequestTest, GoodPolicyIsReadButTheDefaultRuleAloneDecides) {
    policy = LR"({"tag_rules": {"ctrl": [{"actions": ["exclude_from_hierarchy"]}]}})";
    EXPECT_EQ(Names(Ask("ok")), "ok group ");
    EXPECT_FALSE(log.Contains("failed to deserialize selector policy"));
}

TEST_F(AncestryRequestTest, PolicyOfTenMegabytesIsReadOrRefusedAndNothingMore) {
    policy = LR"({"tag_rules": {"ctrl": [)";
    while (policy.size() < 5'000'000) policy += LR"({"actions": [["set_attribute", "name", "a"]]},)";
    policy += L"]}}";
    EXPECT_EQ(Names(Ask("ok")), "ok group ");
    EXPECT_FALSE(log.Contains("failed to deserialize selector policy"));
    policy = CString(5'000'000, L'[');
    EXPECT_EQ(Names(Ask("ok")), "ok group ");
    EXPECT_TRUE(log.Contains("E [ReadFromArchive] AncestryInfoOptions::ReadFromArchive: failed to deserialize selector policy, error 1"));
    ExpectTheNextRequestToAnswer();
}

TEST_F(AncestryRequestTest, PolicyWithAnExpressionThatIsNoneOrTooLargeIsToldAndTheWalkGoesOnWithout) {
    CString large;
    for (int i = 0; i < 200; ++i) large += LR"({"condition": ["name", "matches_regex", "(a{900}){900}"], "actions": ["include_in_hierarchy"]},)";
    const CString rules[] = {
        LR"({"condition": ["name", "matches_regex", "("], "actions": ["include_in_hierarchy"]})",
        LR"({"actions": [["set_attribute_regex", "name", "[z-a]", "b"]]})",
        large,
    };
    for (const CString& rule : rules) {
        log.Clear();
        policy = LR"({"tag_rules": {"ctrl": [)" + rule + L"]}}";
        EXPECT_EQ(Names(Ask("ok")), "ok group ");
        EXPECT_TRUE(log.Contains("::ParseJson Cannot compile regex pattern \"")) << log.Text();
        EXPECT_TRUE(log.Contains("E [ReadFromArchive] AncestryInfoOptions::ReadFromArchive: failed to deserialize selector policy, error 2"));
    }
    ExpectTheNextRequestToAnswer();
}

TEST_F(AncestryRequestTest, PolicyWithAnExpressionThatWouldRunAwayCostsTheWalkNothing) {
    policy = LR"({"tag_rules": {"ctrl": [{"condition": ["name", "matches_regex", "(a+)+$"], "actions": ["exclude_from_hierarchy"]}]}})";
    desktop.Do({.target = "ok", .name = std::wstring(100'000, L'a') + L'b'});
    EXPECT_EQ(Ask("ok").nodes.size(), 2u);
    EXPECT_FALSE(log.Contains("failed to deserialize selector policy"));
    desktop.Do({.target = "ok", .name = L"OK"});
    ExpectTheNextRequestToAnswer();
}

TEST_F(AncestryRequestTest, TimeoutInTheMiddleGivesItsCodeAndTheNextRequestAnswers) {
    desktop.AddFault("innerPane", {.call = "get_accParent", .times = 1, .stall = 40'000});
    const auto response = Ask("ok");
    EXPECT_EQ(response.result, kTimeout);
    EXPECT_TRUE(response.nodes.empty());
    EXPECT_EQ(response.nextWindow, desktop.Window("main"));
    EXPECT_TRUE(log.Contains("E [GetPartialAncestryInfo] SelectorNodeContextInProcess::GetPartialAncestryInfo: the timeout of 0ms has expired"))
        << "nothing was left for the next stretch";
    EXPECT_TRUE(log.Contains("E [GetAncestryInfo] GetDefaultSelectorAncestry failed, hr=80040226"));
    ExpectTheNextRequestToAnswer();
}

TEST_F(AncestryRequestTest, ElementThatDiesInTheMiddlePausesWhereItWas) {
    // It takes all below it along while the pane below it is asked for it: the way ends at the window that was known, and
    // the target's record is there, with nothing that could be read of it.
    desktop.AddFault("innerPane", {.call = "get_accParent", .actions = {{.kind = Simulated::Action::Kind::Remove, .target = "group"}}});
    const auto response = Ask("ok", AncestryComputeIndex);
    EXPECT_EQ(response.result, S_OK);
    ASSERT_EQ(response.nodes.size(), 1u);
    EXPECT_TRUE(response.nodes[0].included);
    EXPECT_TRUE(response.nodes[0].minimalAttributes.empty());
    EXPECT_EQ(response.nodes[0].selectorIndex, -1);
    EXPECT_EQ(response.nextWindow, desktop.Window("main"));
    EXPECT_TRUE(log.Contains("E [GetNextParentForAAHierarchy] GetNextParentForAAHierarchy: m_accHandle->get_accParent failed in "
                             "GetNextParentForAAHierarchy"));
    EXPECT_TRUE(log.Contains("AaSelectorNodeContextInProcess::GetAncestryElementNodeInfo: GetMinimalSelectorAttributes failed"));
    CacheCleaner::Release();
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
    desktop.ClearFaults();
    EXPECT_EQ(Names(Ask("outerPane")), "outerPane ") << "what is left answers";
}

TEST_F(AncestryRequestTest, AnyFailingCallLeavesNoReferenceBehind) {
    Ask("ok", AncestryComputeIndex | AncestrySiblings | AncestryAllAttributes | AncestryKeepAllNodes);
    for (unsigned nth = 1; nth < 60; ++nth) {
        {
            desktop.AddFault({.at = nth, .result = E_FAIL});
            Ask("ok", AncestryComputeIndex | AncestrySiblings | AncestryAllAttributes | AncestryKeepAllNodes);
            desktop.ClearFaults();
        }
    }
    AAContainerCache::Instance().UnregisterAllContainersByClientPid(kClientPid);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace Zorvex::Testing
