#include "RuntimeCore/Selectors/Policy/SelectorPolicyContext.h"

#include <gtest/gtest.h>

#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "tests/Support/FakePolicyNode.h"

namespace Zorvex::Generation {
namespace {

using Testing::FakePolicyNode;

std::shared_ptr<IAttrValue> Text(const wchar_t* text) { return std::make_shared<StringValue>(text); }

TEST(SelectorPolicyContext, StartsUndecidedAndWithoutAttributes) {
    const FakePolicyNode node(LevelLeaf);
    EXPECT_EQ(2u, node.GetHierarchyLevel());
    EXPECT_EQ(HierarchyPresence::Undecided, node.GetHierarchyPresence());
    EXPECT_TRUE(node.GetAttributeValues().empty());
    EXPECT_TRUE(node.GetExcludedAttributes().empty());
}

TEST(SelectorPolicyContext, NumbersOfLevelsAndPresencesAreFixed) {
    EXPECT_EQ(1u, static_cast<std::uint32_t>(LevelTopLevel));
    EXPECT_EQ(2u, static_cast<std::uint32_t>(LevelLeaf));
    EXPECT_EQ(0u, static_cast<std::uint32_t>(HierarchyPresence::Undecided));
    EXPECT_EQ(1u, static_cast<std::uint32_t>(HierarchyPresence::Included));
    EXPECT_EQ(2u, static_cast<std::uint32_t>(HierarchyPresence::Excluded));
}

TEST(SelectorPolicyContext, AnAttributeIsReadOnceAndItsFirstAnswerStays) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"OK";
    EXPECT_EQ(L"OK", node.GetAttr(L"name", {}));
    node.m_elementAttributes[L"name"] = L"Cancel";
    EXPECT_EQ(L"OK", node.GetAttr(L"name", {}));
    EXPECT_EQ(1, node.m_reads[L"name"]);
}

TEST(SelectorPolicyContext, AnEmptyAttributeIsReadOnceAsWell) {
    FakePolicyNode node;
    EXPECT_EQ(L"", node.GetAttr(L"name", {}));
    node.m_elementAttributes[L"name"] = L"late";
    EXPECT_EQ(L"", node.GetAttr(L"name", {}));
    EXPECT_EQ(1, node.m_reads[L"name"]);
}

TEST(SelectorPolicyContext, NamesOfAttributesAreComparedExactly) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"OK";
    EXPECT_EQ(L"OK", node.GetAttr(L"name", {}));
    EXPECT_EQ(L"", node.GetAttr(L"Name", {}));
}

TEST(SelectorPolicyContext, GivenValuesAreNotTheElementsOwn) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"OK";
    node.SetAttr(L"name", Text(L"given"));
    EXPECT_EQ(L"OK", node.GetAttr(L"name", {}));
}

TEST(SelectorPolicyContext, SetAttrReplacesAnEarlierValue) {
    FakePolicyNode node;
    node.SetAttr(L"a", Text(L"1"));
    node.SetAttr(L"a", Text(L"2"));
    EXPECT_EQ(L"2", node.Given(L"a"));
    EXPECT_EQ(1u, node.GetAttributeValues().size());
}

TEST(SelectorPolicyContext, ExcludeAttrDropsTheValueAndBarsTheNameForGood) {
    FakePolicyNode node;
    node.SetAttr(L"a", Text(L"1"));
    node.ExcludeAttr(L"a");
    EXPECT_EQ(L"(none)", node.Given(L"a"));
    node.SetAttr(L"a", Text(L"2"));
    EXPECT_EQ(L"(none)", node.Given(L"a"));
    EXPECT_EQ(1u, node.GetExcludedAttributes().count(L"a"));
    node.SetAttr(L"A", Text(L"3"));
    EXPECT_EQ(L"3", node.Given(L"A"));
}

TEST(SelectorPolicyContext, UndecidedPresenceIsResolvedByTheDefaultRule) {
    for (const bool included : {true, false}) {
        FakePolicyNode node;
        node.m_isIncludedByDefault = included;
        const auto expected = included ? HierarchyPresence::Included : HierarchyPresence::Excluded;
        EXPECT_EQ(expected, node.ResolveHierarchyPresence({}));
        EXPECT_EQ(expected, node.GetHierarchyPresence());
    }
}

TEST(SelectorPolicyContext, TopLevelNodesAndLeavesResolveToIncluded) {
    for (const std::uint32_t level : {LevelTopLevel + 0u, LevelLeaf + 0u, LevelTopLevel + 0u + LevelLeaf}) {
        FakePolicyNode node(level);
        node.m_isIncludedByDefault = false;
        EXPECT_EQ(HierarchyPresence::Included, node.ResolveHierarchyPresence({})) << level;
    }
}

TEST(SelectorPolicyContext, DecidedPresenceStaysAndAsksNobody) {
    for (const auto presence : {HierarchyPresence::Included, HierarchyPresence::Excluded}) {
        FakePolicyNode node;
        node.m_isIncludedByDefault = presence == HierarchyPresence::Excluded;
        node.SetHierarchyPresence(presence);
        EXPECT_EQ(presence, node.ResolveHierarchyPresence({}));
        EXPECT_EQ(0, node.m_defaultQuestions);
    }
}

}  // namespace
}  // namespace Zorvex::Generation
