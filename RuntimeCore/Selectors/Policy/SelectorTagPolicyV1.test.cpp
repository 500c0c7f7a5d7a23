#include "RuntimeCore/Selectors/Policy/SelectorTagPolicyV1.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Common/include/JsonSerializer/JsonText.h"
#include "tests/Support/FakePolicyNode.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Generation {
namespace {

using Testing::FakePolicyNode;
using Testing::LogCapture;
using Lines = std::vector<std::string>;

std::shared_ptr<SelectorTagPolicyV1> TagPolicy(const std::string& json) {
    auto policy = SelectorTagPolicyV1::FromJson(ReadJson(json).get());
    EXPECT_NE(nullptr, policy) << json;
    return policy ? policy : std::make_shared<SelectorTagPolicyV1>();
}

// ---- Parsing ----

TEST(SelectorTagPolicyV1, AnEmptyListGivesAnEmptyPolicy) {
    EXPECT_TRUE(TagPolicy("[]")->IsEmpty());
    EXPECT_TRUE(SelectorTagPolicyV1().IsEmpty());
    EXPECT_FALSE(TagPolicy(R"([{"actions": ["include_in_hierarchy"]}])")->IsEmpty());
    EXPECT_FALSE(TagPolicy(R"([{"actions": [["exclude_attribute", "a"]]}])")->IsEmpty());
}

TEST(SelectorTagPolicyV1, WhatIsNoListFailsWithALineALevel) {
    const Lines expected = {
        "E [ParseJson] SelectorTagPolicyV1::ParseJson: failed to interpret JSON policy",
        "E [FromJson] SelectorTagPolicyV1::FromJson: ParseJson failed for version 1",
    };
    for (const char* json : {"{}", "1", "\"x\""}) {
        const LogCapture log;
        EXPECT_EQ(nullptr, SelectorTagPolicyV1::FromJson(ReadJson(json).get()));
        EXPECT_EQ(expected, log.Lines()) << json;
    }
    const LogCapture log;
    EXPECT_EQ(nullptr, SelectorTagPolicyV1::FromJson(nullptr));
    EXPECT_EQ((Lines{expected[1]}), log.Lines());
}

TEST(SelectorTagPolicyV1, ABadRuleLeavesThePolicyAsItWas) {
    SelectorTagPolicyV1 policy;
    EXPECT_TRUE(policy.ParseJson(*ReadJson("[]")));
    const CString before = policy.ToStringWithVersion();
    const LogCapture log(L"ERROR");
    EXPECT_FALSE(policy.ParseJson(*ReadJson(R"([{"actions": ["include_in_hierarchy"]}, {"actions": []}])")));
    EXPECT_TRUE(policy.IsEmpty());
    EXPECT_EQ(before, policy.ToStringWithVersion());
    const Lines expected = {
        "E [ParseJson] SelectorPolicyRule::ParseJson: no 'actions' in JSON policy",
        "E [Deserialize] SelectorPolicyRule: deserialize failed",
        "E [ParseJson] SelectorTagPolicyV1::ParseJson: failed to interpret JSON policy",
    };
    EXPECT_EQ(expected, log.Lines());
}

TEST(SelectorTagPolicyV1, ParsingAgainAddsToTheRules) {
    const auto policy = TagPolicy(R"([{"actions": [["set_attribute", "a", "1"]]}])");
    EXPECT_TRUE(policy->ParseJson(*ReadJson(R"([{"actions": [["set_attribute", "b", "2"]]}])")));
    FakePolicyNode node;
    policy->Apply({}, node);
    EXPECT_EQ(L"1", node.Given(L"a"));
    EXPECT_EQ(L"2", node.Given(L"b"));
}

// ---- Writing ----

TEST(SelectorTagPolicyV1, ToStringWithVersionHoldsTheListItselfOnPurpose) {
    EXPECT_EQ(
        L"{\r\n   \"tag_rules\": [\r\n      {\r\n         \"actions\": [\r\n            \"include_in_hierarchy\"\r\n         ]\r\n      }\r\n   ],\r\n"
        L"   \"version\": 1\r\n}\r\n",
        TagPolicy(R"([{"actions": ["include_in_hierarchy"]}])")->ToStringWithVersion());
}

TEST(SelectorTagPolicyV1, ToStringWithVersionKeepsWhatRulesIgnore) {
    const auto policy = TagPolicy(R"([{"actions": ["include_in_hierarchy"], "comment": 1.0}])");
    const auto document = ParseJsonFromString(policy->ToStringWithVersion());
    ASSERT_NE(nullptr, document);
    EXPECT_EQ(*document, *ReadJson(R"({"version": 1, "tag_rules": [{"actions": ["include_in_hierarchy"], "comment": 1.0}]})"));
}

TEST(SelectorTagPolicyV1, ToStringWithVersionOfAFreshPolicyHoldsNull) {
    const auto document = ParseJsonFromString(SelectorTagPolicyV1().ToStringWithVersion());
    ASSERT_NE(nullptr, document);
    EXPECT_EQ(*document, *ReadJson(R"({"version": 1, "tag_rules": null})"));
}

TEST(SelectorTagPolicyV1, ToStringWithVersionOfWhatJsonCanNotSayIsEmptyWithAnErrorLine) {
    auto list = ReadJson(R"([{"actions": ["include_in_hierarchy"]}])");
    (*list->AsList())[0].Set("comment", Value(Value::BinaryData{1, 2}));
    SelectorTagPolicyV1 policy;
    ASSERT_TRUE(policy.ParseJson(*list));
    const LogCapture log;
    EXPECT_EQ(L"", policy.ToStringWithVersion());
    EXPECT_EQ("E [ToStringWithVersion] SelectorTagPolicyV1::ToStringWithVersion: failed to convert JSON to string", log.Lines().back());
}

// ---- Serialisers ----

TEST(SelectorTagPolicyV1, NullFailsWithALineOfItsOwn) {
    const JsonSerializer<std::shared_ptr<SelectorTagPolicy>> serializer;
    std::shared_ptr<SelectorTagPolicy> policy;
    const LogCapture log;
    const Value none;
    EXPECT_FALSE(serializer.Deserialize(nullptr, policy));
    EXPECT_FALSE(serializer.Deserialize(&none, policy));
    EXPECT_EQ((Lines{"E [Deserialize] SelectorTagPolicyV1: deserialize failed: NULL JSON",
                     "E [Deserialize] SelectorTagPolicyV1: deserialize failed: NULL JSON"}),
              log.Lines());
}

TEST(SelectorTagPolicyV1, TagPoliciesAreNotWrittenButAnEmptyMapIs) {
    std::unique_ptr<Value> out;
    EXPECT_FALSE(JsonSerializer<std::shared_ptr<SelectorTagPolicy>>().Serialize(TagPolicy("[]"), out));
    SelectorTagPolicyMap map;
    EXPECT_TRUE(JsonSerializer<SelectorTagPolicyMap>().Serialize(map, out));
    EXPECT_EQ(Value(Value::Type::Dictionary), *out);
    out.reset();
    map[L"ctrl"] = TagPolicy("[]");
    EXPECT_FALSE(JsonSerializer<SelectorTagPolicyMap>().Serialize(map, out));
    EXPECT_EQ(nullptr, out);
}

TEST(SelectorTagPolicyV1, MapsAreClearedFirstAndStopAtTheFirstBadEntry) {
    const JsonSerializer<SelectorTagPolicyMap> serializer;
    SelectorTagPolicyMap map;
    map[L"old"] = nullptr;
    const LogCapture log(L"ERROR");
    EXPECT_FALSE(serializer.Deserialize(ReadJson(R"({"z": [], "b": 1, "a": []})").get(), map));
    EXPECT_EQ(1u, map.size());
    EXPECT_EQ(1u, map.count(L"a"));
    EXPECT_EQ("E [Deserialize] SelectorTagPolicyV1: deserialize failed", log.Lines().back());
    EXPECT_FALSE(serializer.Deserialize(nullptr, map));
    EXPECT_TRUE(map.empty());
    EXPECT_FALSE(serializer.Deserialize(ReadJson("[]").get(), map));
}

TEST(SelectorTagPolicyV1, NamesOfTagsAreWide) {
    SelectorTagPolicyMap map;
    EXPECT_TRUE(JsonSerializer<SelectorTagPolicyMap>().Deserialize(ReadJson("{\"\xC3\xA4\": []}").get(), map));
    EXPECT_EQ(1u, map.count(L"\u00e4"));
}

// ---- Application ----

TEST(SelectorTagPolicyV1, AttributeRulesRunAfterHierarchyRulesWhateverTheirPlace) {
    const auto policy = TagPolicy(R"([{"actions": [["set_attribute", "a", "first"]]},
                                      {"actions": ["include_in_hierarchy", ["set_attribute", "a", "second"]]}])");
    FakePolicyNode node;
    policy->Apply({}, node);
    EXPECT_EQ(L"first", node.Given(L"a"));
}

TEST(SelectorTagPolicyV1, AttributeRulesDoNotRunForAnExcludedNode) {
    const auto policy = TagPolicy(R"([{"actions": [["set_attribute", "a", "b"]]}, {"actions": ["exclude_from_hierarchy"]}])");
    FakePolicyNode node;
    policy->Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Excluded, node.GetHierarchyPresence());
    EXPECT_EQ(L"(none)", node.Given(L"a"));
}

TEST(SelectorTagPolicyV1, RulesOfEachKindRunInTheOrderOfTheDocument) {
    const auto policy = TagPolicy(R"([{"actions": [["set_attribute", "a", "1"]]}, {"actions": [["set_attribute", "a", "2"]]},
                                      {"actions": ["include_in_hierarchy", ["set_attribute", "b", "1"]]},
                                      {"actions": ["include_in_hierarchy", ["set_attribute", "b", "2"]]}])");
    FakePolicyNode node;
    policy->Apply({}, node);
    EXPECT_EQ(L"2", node.Given(L"a"));
    EXPECT_EQ(L"2", node.Given(L"b"));
}

TEST(SelectorTagPolicyV1, AHierarchyRuleWhoseConditionFailsLetsTheDefaultRuleDecide) {
    const auto policy = TagPolicy(R"([{"condition": "isLeafNode", "actions": ["include_in_hierarchy"]},
                                      {"actions": ["include_in_hierarchy"]}, {"actions": [["set_attribute", "a", "b"]]}])");
    FakePolicyNode node;
    node.m_isIncludedByDefault = false;
    policy->Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Excluded, node.GetHierarchyPresence());  // the second rule comes too late
    EXPECT_EQ(L"(none)", node.Given(L"a"));
    EXPECT_EQ(1, node.m_defaultQuestions);
}

TEST(SelectorTagPolicyV1, AnIncludedNodeMayBeExcludedByALaterHierarchyRule) {
    const auto policy = TagPolicy(R"([{"actions": ["include_in_hierarchy"]}, {"actions": ["exclude_from_hierarchy"]},
                                      {"actions": ["include_in_hierarchy"]}])");
    FakePolicyNode node;
    policy->Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Excluded, node.GetHierarchyPresence());
}

TEST(SelectorTagPolicyV1, ExcludingALeafLeavesItIncludedAndItsAttributeRulesRun) {
    const auto policy = TagPolicy(R"([{"actions": ["exclude_from_hierarchy"]}, {"actions": [["set_attribute", "a", "b"]]}])");
    FakePolicyNode node(LevelLeaf);
    policy->Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Included, node.GetHierarchyPresence());
    EXPECT_EQ(L"b", node.Given(L"a"));
}

TEST(SelectorTagPolicyV1, WithoutHierarchyRulesTheFirstActionResolvesThePresence) {
    const auto policy = TagPolicy(R"([{"actions": [["set_attribute", "a", "1"], ["set_attribute", "b", "2"]]},
                                      {"actions": [["set_attribute", "c", "3"], ["set_attribute", "d", "4"]]}])");
    FakePolicyNode node;
    node.m_isIncludedByDefault = false;
    policy->Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Excluded, node.GetHierarchyPresence());
    EXPECT_EQ(L"1", node.Given(L"a"));
    EXPECT_EQ(L"(none)", node.Given(L"b"));
    EXPECT_EQ(L"3", node.Given(L"c"));  // the attribute rules don't look at what became of the presence, but at each action
    EXPECT_EQ(L"(none)", node.Given(L"d"));
}

TEST(SelectorTagPolicyV1, AnEmptyPolicyLeavesTheNodeUntouched) {
    FakePolicyNode node;
    SelectorTagPolicyV1().Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Undecided, node.GetHierarchyPresence());
    EXPECT_EQ(0, node.m_defaultQuestions);
}

TEST(SelectorTagPolicyV1, ExclusionOfAnAttributeWinsInWhicheverRuleItComes) {
    const auto policy = TagPolicy(R"([{"actions": [["exclude_attribute", "x"]]}, {"actions": [["set_attribute", "x", "y"]]},
                                      {"actions": [["set_attribute", "z", "y"]]}, {"actions": [["exclude_attribute", "z"]]}])");
    FakePolicyNode node;
    policy->Apply({}, node);
    EXPECT_TRUE(node.GetAttributeValues().empty());
}

TEST(SelectorTagPolicyV1, RulesThatAskForOneAttributeReadItOnce) {
    const auto policy = TagPolicy(R"([{"condition": ["name", "isEmpty"], "actions": ["exclude_from_hierarchy"]},
                                      {"condition": ["name", "matches_regex", "O."], "actions": [["include_attribute", "name"]]},
                                      {"actions": [["set_attribute_regex", "name", "K", "*"]]}])");
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"OK";
    policy->Apply({}, node);
    EXPECT_EQ(L"O*", node.Given(L"name"));
    EXPECT_EQ(1, node.m_reads[L"name"]);
}

TEST(SelectorTagPolicyV1, ARuleWithoutActionsIsAnAttributeRule) {
    SelectorTagPolicyV1 policy;
    policy.AddRule(SelectorPolicyRule());
    EXPECT_FALSE(policy.IsEmpty());
    FakePolicyNode node;
    policy.Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Undecided, node.GetHierarchyPresence());  // a hierarchy rule would have resolved it
}

}  // namespace
}  // namespace Zorvex::Generation
