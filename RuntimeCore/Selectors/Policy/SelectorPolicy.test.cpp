#include "RuntimeCore/Selectors/Policy/SelectorPolicy.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "RuntimeCore/Selectors/Policy/PolicyRegexBudget.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyV1.h"
#include "tests/Support/FakePolicyNode.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Generation {
namespace {

using Testing::FakePolicyNode;
using Testing::LogCapture;
using Lines = std::vector<std::string>;

std::shared_ptr<SelectorPolicy> Policy(const CString& text) {
    auto [result, policy] = SelectorPolicy::FromString(text);
    EXPECT_EQ(SelectorPolicyParseResult::Success, result);
    EXPECT_NE(nullptr, policy);
    return policy ? policy : std::make_shared<SelectorPolicyV1>();
}

// The error lines of a text that can't be parsed.
Lines ErrorsOf(const CString& text, SelectorPolicyParseResult expected) {
    const LogCapture log(L"ERROR");
    const auto [result, policy] = SelectorPolicy::FromString(text);
    EXPECT_EQ(expected, result);
    EXPECT_EQ(nullptr, policy);
    return log.Lines();
}

const std::string c_invalid = "E [ParseString] SelectorPolicy::FromJson: JSON describes an invalid policy";
const std::string c_noSyntax = "E [ParseString] SelectorPolicy::FromJson: JSON syntax error";

constexpr wchar_t c_everyForm[] = LR"(
{
  "version": 1,
  "tag_rules": {
    "ctrl": [
      { "condition": "isLeafNode",
        "actions": [ ["include_attribute", "name"], ["exclude_attribute", "idx"] ] },
      { "condition": [ ["name", "isEmpty"], "and", ["role", "matches_regex", "pane|group"] ],
        "actions": [ "exclude_from_hierarchy" ] },
      { "actions": [ ["set_attribute", "cls", "x"], ["set_attribute_regex", "name", "[0-9]+", "*"] ] }
    ]
  }
})";

// ---- Good documents ----

TEST(SelectorPolicy, NumbersOfTheResultsAreFixed) {
    EXPECT_EQ(0, static_cast<int>(SelectorPolicyParseResult::Success));
    EXPECT_EQ(1, static_cast<int>(SelectorPolicyParseResult::SyntaxError));
    EXPECT_EQ(2, static_cast<int>(SelectorPolicyParseResult::InvalidPolicy));
}

TEST(SelectorPolicy, AnEmptyTextIsThePolicyWithoutTags) {
    const LogCapture log;
    const auto policy = Policy(L"");
    EXPECT_EQ(1, policy->GetVersion());
    EXPECT_EQ(L"", policy->ToString());
    EXPECT_TRUE(policy->GetTagPolicy(L"ctrl").IsEmpty());
    EXPECT_TRUE(policy->GetTagPolicy(L"").IsEmpty());
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(SelectorPolicy, AnEmptyObjectIsAPolicyAndItsTextIsKept) {
    EXPECT_EQ(L"{}", Policy(L"{}")->ToString());
    EXPECT_EQ(L" { \"x\" : [ ] , }  // y", Policy(L" { \"x\" : [ ] , }  // y")->ToString());
}

TEST(SelectorPolicy, VersionOneMayBeSaidOrNot) {
    EXPECT_EQ(1, Policy(LR"({"version": 1})")->GetVersion());
    Policy(LR"({"tag_rules": {}})");
}

TEST(SelectorPolicy, OtherKeysAreIgnored) { Policy(LR"({"Version": 2, "rules": [], "tag_rules": {"nonsense": []}})"); }

TEST(SelectorPolicy, CommentsAndTrailingCommasAreAccepted) {
    const auto policy = Policy(LR"(/* mine */ { "version": 1, // one
        "tag_rules": { "ctrl": [ { "actions": [ "include_in_hierarchy", ], }, ], }, })");
    EXPECT_FALSE(policy->GetTagPolicy(L"ctrl").IsEmpty());
}

TEST(SelectorPolicy, ATagWithoutRulesIsEmpty) {
    EXPECT_TRUE(Policy(LR"({"tag_rules": {"ctrl": []}})")->GetTagPolicy(L"ctrl").IsEmpty());
}

TEST(SelectorPolicy, NamesOfTagsAreComparedExactly) {
    const auto policy = Policy(LR"({"tag_rules": {"ctrl": [{"actions": ["include_in_hierarchy"]}]}})");
    EXPECT_FALSE(policy->GetTagPolicy(L"ctrl").IsEmpty());
    EXPECT_TRUE(policy->GetTagPolicy(L"Ctrl").IsEmpty());
    EXPECT_TRUE(policy->GetTagPolicy(L"ctrl ").IsEmpty());
}

TEST(SelectorPolicy, UnknownTagsShareOneEmptyPolicy) {
    EXPECT_EQ(&Policy(L"")->GetTagPolicy(L"a"), &Policy(L"{}")->GetTagPolicy(L"b"));
}

TEST(SelectorPolicy, GetOrAddTagPolicyAddsAnEmptyPolicyToAnUnknownTag) {
    const auto policy = Policy(LR"({"tag_rules": {"ctrl": []}})");
    EXPECT_EQ(&policy->GetTagPolicy(L"ctrl"), policy->GetOrAddTagPolicy(L"ctrl").get());
    const auto added = policy->GetOrAddTagPolicy(L"wnd");
    ASSERT_NE(nullptr, added);
    EXPECT_TRUE(added->IsEmpty());
    EXPECT_EQ(added, policy->GetOrAddTagPolicy(L"wnd"));
    EXPECT_EQ(&policy->GetTagPolicy(L"wnd"), added.get());
    SelectorPolicyRule rule;
    added->AddRule(std::move(rule));
    EXPECT_FALSE(policy->GetTagPolicy(L"wnd").IsEmpty());
    EXPECT_TRUE(policy->GetTagPolicy(L"html").IsEmpty());
}

TEST(SelectorPolicy, EveryFormInOneDocument) {
    const auto policy = Policy(c_everyForm);
    EXPECT_EQ(c_everyForm, policy->ToString());
    const SelectorTagPolicy& ctrl = policy->GetTagPolicy(L"ctrl");
    FakePolicyNode leaf(LevelLeaf);
    leaf.m_elementAttributes = {{L"name", L"Page 12"}, {L"idx", L"3"}, {L"role", L"pane"}};
    ctrl.Apply({}, leaf);
    EXPECT_EQ(HierarchyPresence::Included, leaf.GetHierarchyPresence());
    EXPECT_EQ(L"Page *", leaf.Given(L"name"));
    EXPECT_EQ(L"x", leaf.Given(L"cls"));
    EXPECT_EQ(1u, leaf.GetExcludedAttributes().count(L"idx"));

    FakePolicyNode pane;
    pane.m_elementAttributes = {{L"role", L"pane"}};
    ctrl.Apply({}, pane);
    EXPECT_EQ(HierarchyPresence::Excluded, pane.GetHierarchyPresence());
    EXPECT_TRUE(pane.GetAttributeValues().empty());

    FakePolicyNode button;
    button.m_elementAttributes = {{L"role", L"push button"}};
    ctrl.Apply({}, button);
    EXPECT_EQ(HierarchyPresence::Included, button.GetHierarchyPresence());
    EXPECT_EQ(L"x", button.Given(L"cls"));
    EXPECT_EQ(L"(none)", button.Given(L"name"));
}

TEST(SelectorPolicy, GoodDocumentsLeaveNoErrorLine) {
    const LogCapture log(L"INFO");
    Policy(c_everyForm);
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

// ---- Bad documents ----

TEST(SelectorPolicy, WhatIsNoJsonIsASyntaxError) {
    for (const wchar_t* text : {L"{", L" ", L"{}}", L"{a:1}", L"nothing", L"{\"version\": 01}"}) {
        const Lines lines = ErrorsOf(text, SelectorPolicyParseResult::SyntaxError);
        ASSERT_EQ(2u, lines.size()) << CString(text).size();
        EXPECT_EQ(0u, lines[0].find("E [ParseJsonFromString] ParseJsonFromString: JSONReader::ReadAndReturnError failed, error ")) << lines[0];
        EXPECT_EQ(c_noSyntax, lines[1]);
    }
}

TEST(SelectorPolicy, HalfACharacterIsASyntaxError) {
    const CString text = {L'"', static_cast<wchar_t>(0xD800), L'"'};
    EXPECT_EQ(c_noSyntax, ErrorsOf(text, SelectorPolicyParseResult::SyntaxError).back());
}

TEST(SelectorPolicy, JsonThatIsNoObjectIsAnInvalidPolicy) {
    for (const wchar_t* text : {L"[]", L"1", L"null", L"\"\"", L"true"})
        EXPECT_EQ(Lines{c_invalid}, ErrorsOf(text, SelectorPolicyParseResult::InvalidPolicy));
}

TEST(SelectorPolicy, VersionsOtherThanTheIntegerOneAreInvalid) {
    for (const wchar_t* text : {LR"({"version": 2})", LR"({"version": "1"})", LR"({"version": 1.0})", LR"({"version": null})",
                                LR"({"version": 0, "tag_rules": 5})", LR"({"version": true})", LR"({"version": 1e0})"})
        EXPECT_EQ(Lines{c_invalid}, ErrorsOf(text, SelectorPolicyParseResult::InvalidPolicy));
}

TEST(SelectorPolicy, TagRulesOtherThanAnObjectAreInvalid) {
    for (const wchar_t* text : {LR"({"version": 1, "tag_rules": []})", LR"({"tag_rules": null})", LR"({"tag_rules": "ctrl"})"})
        EXPECT_EQ(Lines{c_invalid}, ErrorsOf(text, SelectorPolicyParseResult::InvalidPolicy));
}

TEST(SelectorPolicy, EachLevelOfAFailureLogsItsLine) {
    const Lines expected = {
        "E [Deserialize] SelectorPolicyActionBase: deserialize failed",
        "E [ParseJson] SelectorPolicyRule::ParseJson: failed to interpret JSON policy",
        "E [Deserialize] SelectorPolicyRule: deserialize failed",
        "E [ParseJson] SelectorTagPolicyV1::ParseJson: failed to interpret JSON policy",
        "E [FromJson] SelectorTagPolicyV1::FromJson: ParseJson failed for version 1",
        "E [Deserialize] SelectorTagPolicyV1: deserialize failed",
        c_invalid,
    };
    EXPECT_EQ(expected, ErrorsOf(LR"({"tag_rules": {"ctrl": [{"actions": [["foo", "x"]]}]}})", SelectorPolicyParseResult::InvalidPolicy));
}

TEST(SelectorPolicy, ARuleWithoutActionsFailsTheWholePolicy) {
    const Lines expected = {
        "E [ParseJson] SelectorPolicyRule::ParseJson: no 'actions' in JSON policy",
        "E [Deserialize] SelectorPolicyRule: deserialize failed",
        "E [ParseJson] SelectorTagPolicyV1::ParseJson: failed to interpret JSON policy",
        "E [FromJson] SelectorTagPolicyV1::FromJson: ParseJson failed for version 1",
        "E [Deserialize] SelectorTagPolicyV1: deserialize failed",
        c_invalid,
    };
    EXPECT_EQ(expected, ErrorsOf(LR"({"tag_rules": {"ctrl": [{"actions": []}]}})", SelectorPolicyParseResult::InvalidPolicy));
}

TEST(SelectorPolicy, NullsInTheRulesFailWithLinesOfTheirOwn) {
    const Lines rule = ErrorsOf(LR"({"tag_rules": {"ctrl": [null]}})", SelectorPolicyParseResult::InvalidPolicy);
    ASSERT_EQ(5u, rule.size());
    EXPECT_EQ("E [Deserialize] SelectorPolicyRule: deserialize failed: NULL JSON", rule[0]);
    EXPECT_EQ((Lines{"E [Deserialize] SelectorTagPolicyV1: deserialize failed: NULL JSON", c_invalid}),
              ErrorsOf(LR"({"tag_rules": {"ctrl": null}})", SelectorPolicyParseResult::InvalidPolicy));
}

TEST(SelectorPolicy, OfTwoBadTagsOnlyTheFirstInTheAlphabetLeavesLines) {
    const Lines lines = ErrorsOf(LR"({"tag_rules": {"wnd": [null], "ctrl": [{"actions": []}]}})", SelectorPolicyParseResult::InvalidPolicy);
    ASSERT_EQ(6u, lines.size());
    EXPECT_EQ("E [ParseJson] SelectorPolicyRule::ParseJson: no 'actions' in JSON policy", lines[0]);
}

TEST(SelectorPolicyV1, AnInvalidPolicyKeepsTheTagsBeforeTheFailureAndItsFormerText) {
    SelectorPolicyV1 policy;
    EXPECT_EQ(SelectorPolicyParseResult::Success, policy.ParseString(L"{ }"));
    EXPECT_EQ(SelectorPolicyParseResult::InvalidPolicy,
              policy.ParseString(LR"({"tag_rules": {"b": 1, "a": [{"actions": ["include_in_hierarchy"]}]}})"));
    EXPECT_EQ(L"{ }", policy.ToString());
    EXPECT_FALSE(policy.GetTagPolicy(L"a").IsEmpty());
    EXPECT_EQ(SelectorPolicyParseResult::Success, policy.ParseString(L""));
    EXPECT_EQ(L"{ }", policy.ToString());
    EXPECT_FALSE(policy.GetTagPolicy(L"a").IsEmpty());
    EXPECT_EQ(SelectorPolicyParseResult::Success, policy.ParseString(LR"({"tag_rules": {}})"));
    EXPECT_TRUE(policy.GetTagPolicy(L"a").IsEmpty());
}

// ---- Hostile documents ----

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count(); }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

CString Repeat(const CString& text, std::size_t units) {
    CString result;
    result.reserve(units + text.size());
    while (result.size() < units) result += text;
    return result;
}

constexpr std::size_t c_tenMegabytes = 10'000'000;

TEST(SelectorPolicy, TenMegabytesOfGoodRulesAreParsedAndApplied) {
    const Stopwatch watch;
    const LogCapture log(L"ERROR");
    const auto policy = Policy(LR"({"tag_rules": {"ctrl": [)" +
                               Repeat(LR"({"condition": ["name", "matches_regex", "[a-z]+(x|y)*"], "actions": [["set_attribute", "a", "b"]]},)",
                                      c_tenMegabytes) +
                               L"]}}");
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"name";
    policy->GetTagPolicy(L"ctrl").Apply({}, node);
    EXPECT_EQ(L"b", node.Given(L"a"));
    EXPECT_EQ(1, node.m_reads[L"name"]);
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_LT(watch.Seconds(), 60.0);  // far less without sanitizers
}

TEST(SelectorPolicy, TenMegabytesInOneStringAreRefusedWithShortLines) {
    const LogCapture log;
    const auto [result, policy] =
        SelectorPolicy::FromString(LR"({"tag_rules": {"ctrl": [{"condition": ["a", ")" + CString(c_tenMegabytes, L'x') +
                                   LR"("], "actions": ["include_in_hierarchy"]}]}})");
    EXPECT_EQ(SelectorPolicyParseResult::InvalidPolicy, result);
    for (const std::string& line : log.Lines()) EXPECT_LT(line.size(), 5000u);
}

TEST(SelectorPolicy, TheLogGrowsWithTheTextAlone) {
    std::size_t lines[2] = {};
    for (const std::size_t size : {1u, 2u}) {
        const LogCapture log;
        Policy(LR"({"tag_rules": {"ctrl": [{"actions": [)" + Repeat(LR"(["set_attribute_regex","a","",""],)", size * 100'000) + L"]}]}}");
        lines[size - 1] = log.Lines().size();
    }
    EXPECT_NEAR(2.0, static_cast<double>(lines[1]) / static_cast<double>(lines[0]), 0.01);
    EXPECT_LT(lines[0], 3 * 100'000u / 30);
}

TEST(SelectorPolicy, ConditionsMayNestUpToTheLimitOfJson) {
    for (const int depth : {195, 196}) {
        CString condition = L"\"isLeafNode\"";
        for (int i = 0; i < depth; ++i) condition = L"[\"isLeafNode\",\"and\"," + condition + L"]";
        const Stopwatch watch;
        const LogCapture log;
        const auto [result, policy] =
            SelectorPolicy::FromString(LR"({"tag_rules": {"ctrl": [{"condition": )" + condition + LR"(, "actions": [["set_attribute", "a", "b"]]}]}})");
        EXPECT_EQ(depth == 195 ? SelectorPolicyParseResult::Success : SelectorPolicyParseResult::SyntaxError, result);
        EXPECT_LT(log.Lines().size(), 10u * 196);
        if (policy) {
            FakePolicyNode leaf(LevelLeaf);
            policy->GetTagPolicy(L"ctrl").Apply({}, leaf);
            EXPECT_EQ(L"b", leaf.Given(L"a"));
        }
        EXPECT_LT(watch.Seconds(), 5.0);
    }
}

TEST(SelectorPolicy, ShortPatternsOfLargeProgramsAreRefusedTogether) {
    const Stopwatch watch;
    const LogCapture log(L"ERROR");
    const auto [result, policy] = SelectorPolicy::FromString(
        LR"({"tag_rules": {"ctrl": [{"actions": [)" + Repeat(LR"(["set_attribute_regex","a","a{40000}",""],)", 100'000) + L"]}]}}");
    EXPECT_EQ(SelectorPolicyParseResult::InvalidPolicy, result);
    EXPECT_EQ(1u, log.Count("SelectorPolicyRegexSetter::ParseJson Cannot compile regex pattern \"a{40000}\", error_code=11, "
                            "error_msg=\"expressions are too complex together\""))
        << log.Text();
    EXPECT_LT(watch.Seconds(), 20.0);  // far less without sanitizers
    // The next policy begins with a budget of its own.
    Policy(LR"({"tag_rules": {"ctrl": [{"condition": ["a", "matches_regex", "a{40000}"], "actions": ["include_in_hierarchy"]}]}})");
}

TEST(PolicyRegexBudget, ScopesNestAndEnd) {
    EXPECT_EQ(nullptr, PolicyRegexBudget::Current());
    {
        const PolicyRegexBudget outer(10);
        RegexBudget* const budget = PolicyRegexBudget::Current();
        ASSERT_NE(nullptr, budget);
        EXPECT_EQ(1'000'040u, budget->steps);
        {
            const PolicyRegexBudget inner(0);
            EXPECT_NE(budget, PolicyRegexBudget::Current());
        }
        EXPECT_EQ(budget, PolicyRegexBudget::Current());
    }
    EXPECT_EQ(nullptr, PolicyRegexBudget::Current());
}

}  // namespace
}  // namespace Zorvex::Generation
