#include "RuntimeCore/Selectors/Policy/SelectorPolicyRule.h"

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

SelectorPolicyRule Rule(const std::string& json) {
    const auto value = ReadJson(json);
    SelectorPolicyRule rule;
    EXPECT_TRUE(value && rule.ParseJson(*value)) << json;
    return rule;
}

// The error lines of a rule that can't be parsed.
Lines ErrorsOf(const std::string& json) {
    const auto value = ReadJson(json);
    EXPECT_NE(nullptr, value) << json;
    const LogCapture log(L"ERROR");
    SelectorPolicyRule rule;
    EXPECT_FALSE(JsonSerializer<SelectorPolicyRule>().Deserialize(value.get(), rule)) << json;
    return log.Lines();
}

const std::string c_notInterpreted = "E [ParseJson] SelectorPolicyRule::ParseJson: failed to interpret JSON policy";
const std::string c_failed = "E [Deserialize] SelectorPolicyRule: deserialize failed";

// ---- Parsing ----

TEST(SelectorPolicyRule, NeedsAnObject) {
    EXPECT_EQ((Lines{c_notInterpreted, c_failed}), ErrorsOf("[]"));
    EXPECT_EQ((Lines{c_notInterpreted, c_failed}), ErrorsOf("1"));
}

TEST(SelectorPolicyRule, NeedsAListOfActions) {
    EXPECT_EQ((Lines{c_notInterpreted, c_failed}), ErrorsOf("{}"));
    EXPECT_EQ((Lines{c_notInterpreted, c_failed}), ErrorsOf(R"({"actions": "include_in_hierarchy"})"));
    EXPECT_EQ((Lines{c_notInterpreted, c_failed}), ErrorsOf(R"({"actions": null})"));
    EXPECT_EQ((Lines{c_notInterpreted, c_failed}), ErrorsOf(R"({"condition": "isLeafNode"})"));
}

TEST(SelectorPolicyRule, NeedsAtLeastOneAction) {
    EXPECT_EQ((Lines{"E [ParseJson] SelectorPolicyRule::ParseJson: no 'actions' in JSON policy", c_failed}), ErrorsOf(R"({"actions": []})"));
}

TEST(SelectorPolicyRule, FailsAtTheFirstBadAction) {
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyActionBase: deserialize failed", c_notInterpreted, c_failed}),
              ErrorsOf(R"({"actions": ["include_in_hierarchy", ["foo", "x"], ["bar", "x"]]})"));
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyActionBase: deserialize failed: NULL JSON", c_notInterpreted, c_failed}),
              ErrorsOf(R"({"actions": [null, ["bar", "x"]]})"));
}

TEST(SelectorPolicyRule, FailsAtABadConditionBeforeItsActionsAreLookedAt) {
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyConditionBase: deserialize failed", c_notInterpreted, c_failed}),
              ErrorsOf(R"({"condition": "isRoot", "actions": [null]})"));
}

TEST(SelectorPolicyRule, AConditionOfJsonNullFailsButAMissingOneDoesNot) {
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyConditionBase: deserialize failed", c_notInterpreted, c_failed}),
              ErrorsOf(R"({"condition": null, "actions": ["include_in_hierarchy"]})"));
    Rule(R"({"actions": ["include_in_hierarchy"]})");
}

TEST(SelectorPolicyRule, OtherKeysAreIgnored) { Rule(R"({"actions": ["include_in_hierarchy"], "Condition": null, "comment": [1]})"); }

TEST(SelectorPolicyRule, NullFailsWithALineOfItsOwn) {
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyRule: deserialize failed: NULL JSON"}), ErrorsOf("null"));
    SelectorPolicyRule rule;
    const LogCapture log;
    EXPECT_FALSE(JsonSerializer<SelectorPolicyRule>().Deserialize(nullptr, rule));
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyRule: deserialize failed: NULL JSON"}), log.Lines());
}

TEST(SelectorPolicyRule, ListsOfRulesStopAtTheFirstBadOne) {
    const JsonSerializer<std::vector<SelectorPolicyRule>> serializer;
    std::vector<SelectorPolicyRule> rules(4);
    const LogCapture log(L"ERROR");
    EXPECT_FALSE(serializer.Deserialize(ReadJson(R"([{"actions": ["include_in_hierarchy"]}, null, {}])").get(), rules));
    EXPECT_EQ(1u, rules.size());
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyRule: deserialize failed: NULL JSON"}), log.Lines());
    EXPECT_FALSE(serializer.Deserialize(nullptr, rules));
    EXPECT_TRUE(rules.empty());
    EXPECT_FALSE(serializer.Deserialize(ReadJson("{}").get(), rules));
}

TEST(SelectorPolicyRule, RulesAreNotWrittenButAnEmptyListIs) {
    std::unique_ptr<Value> out;
    EXPECT_FALSE(JsonSerializer<SelectorPolicyRule>().Serialize(Rule(R"({"actions": ["include_in_hierarchy"]})"), out));
    std::vector<SelectorPolicyRule> rules(1);
    EXPECT_FALSE(JsonSerializer<std::vector<SelectorPolicyRule>>().Serialize(rules, out));
    EXPECT_EQ(nullptr, out);
    rules.clear();
    EXPECT_TRUE(JsonSerializer<std::vector<SelectorPolicyRule>>().Serialize(rules, out));
    EXPECT_EQ(Value(Value::Type::List), *out);
}

// ---- Application ----

TEST(SelectorPolicyRule, AppliesAlwaysWithoutACondition) {
    FakePolicyNode node;
    Rule(R"({"actions": [["set_attribute", "a", "b"]]})").Apply({}, node);
    EXPECT_EQ(L"b", node.Given(L"a"));
}

TEST(SelectorPolicyRule, WhereTheConditionFailsNothingIsDoneAndPresenceStaysUndecided) {
    FakePolicyNode node;
    Rule(R"({"condition": "isLeafNode", "actions": [["set_attribute", "a", "b"]]})").Apply({}, node);
    EXPECT_EQ(L"(none)", node.Given(L"a"));
    EXPECT_EQ(HierarchyPresence::Undecided, node.GetHierarchyPresence());
    EXPECT_EQ(0, node.m_defaultQuestions);
}

TEST(SelectorPolicyRule, ActionsBehindAnExclusionDoNotRun) {
    FakePolicyNode node;
    Rule(R"({"actions": ["exclude_from_hierarchy", ["set_attribute", "a", "b"]]})").Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Excluded, node.GetHierarchyPresence());
    EXPECT_EQ(L"(none)", node.Given(L"a"));
}

TEST(SelectorPolicyRule, OnALeafTheyDo) {
    FakePolicyNode node(LevelLeaf);
    Rule(R"({"actions": ["exclude_from_hierarchy", ["set_attribute", "a", "b"]]})").Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Included, node.GetHierarchyPresence());
    EXPECT_EQ(L"b", node.Given(L"a"));
}

TEST(SelectorPolicyRule, AfterAnActionThePresenceIsDecidedByTheDefaultRule) {
    FakePolicyNode node;
    node.m_isIncludedByDefault = false;
    Rule(R"({"actions": [["set_attribute", "a", "b"], ["set_attribute", "c", "d"]]})").Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Excluded, node.GetHierarchyPresence());
    EXPECT_EQ(L"b", node.Given(L"a"));
    EXPECT_EQ(L"(none)", node.Given(L"c"));  // the node has left the hierarchy
    EXPECT_EQ(1, node.m_defaultQuestions);
}

TEST(SelectorPolicyRule, AnExclusionIsNotTakenBackByALaterActionOfTheRule) {
    FakePolicyNode node;
    Rule(R"({"actions": ["exclude_from_hierarchy", "include_in_hierarchy"]})").Apply({}, node);
    EXPECT_EQ(HierarchyPresence::Excluded, node.GetHierarchyPresence());
    FakePolicyNode other;
    Rule(R"({"actions": ["include_in_hierarchy", "exclude_from_hierarchy"]})").Apply({}, other);
    EXPECT_EQ(HierarchyPresence::Excluded, other.GetHierarchyPresence());
}

TEST(SelectorPolicyRule, AffectsTheHierarchyIfOneOfItsActionsDoes) {
    EXPECT_TRUE(Rule(R"({"actions": [["set_attribute", "a", "b"], "include_in_hierarchy"]})").AffectsHierarchy());
    EXPECT_FALSE(Rule(R"({"actions": [["set_attribute", "a", "b"], ["exclude_attribute", "c"]]})").AffectsHierarchy());
    EXPECT_FALSE(SelectorPolicyRule().AffectsHierarchy());
}

}  // namespace
}  // namespace Zorvex::Generation
