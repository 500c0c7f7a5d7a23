#include "RuntimeCore/Selectors/Policy/SelectorPolicyConditions.h"

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

std::shared_ptr<SelectorPolicyConditionBase> Condition(const std::string& json) {
    const auto value = ReadJson(json);
    EXPECT_NE(nullptr, value) << json;
    return value ? SelectorPolicyConditionBase::FromJson(*value) : nullptr;
}

template <class T>
bool Parses(const std::string& json) {
    const auto value = ReadJson(json);
    EXPECT_NE(nullptr, value) << json;
    return value && T().ParseJson(*value);
}

bool Holds(const std::string& json, FakePolicyNode& node) {
    const auto condition = Condition(json);
    EXPECT_NE(nullptr, condition) << json;
    return condition && condition->Evaluate({}, node);
}

bool HoldsForName(const std::string& json, std::wstring name) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = std::move(name);
    return Holds(json, node);
}

// ---- Emptiness ----

TEST(SelectorPolicyAttributeEmptyCondition, IsEmptyAndIsNotEmptyAskForTheElementsValue) {
    EXPECT_TRUE(HoldsForName(R"(["name", "isEmpty"])", L""));
    EXPECT_FALSE(HoldsForName(R"(["name", "isNotEmpty"])", L""));
    EXPECT_FALSE(HoldsForName(R"(["name", "isEmpty"])", L"OK"));
    EXPECT_TRUE(HoldsForName(R"(["name", "isNotEmpty"])", L"OK"));
    EXPECT_TRUE(HoldsForName(R"(["name", "isNotEmpty"])", std::wstring(1, L'\0')));
    EXPECT_TRUE(HoldsForName(R"(["unknown", "isEmpty"])", L"OK"));
}

TEST(SelectorPolicyAttributeEmptyCondition, FailuresAreLogged) {
    using T = SelectorPolicyAttributeEmptyCondition;
    const std::string start = "V [ParseJson] SelectorPolicyAttributeEmptyCondition::ParseJson: ";
    LogCapture log;
    EXPECT_FALSE(Parses<T>("5"));
    EXPECT_FALSE(Parses<T>(R"("isEmpty")"));
    EXPECT_FALSE(Parses<T>(R"(["name", 1])"));
    EXPECT_FALSE(Parses<T>(R"(["name"])"));
    EXPECT_FALSE(Parses<T>(R"(["name", "isEmpty", "x"])"));
    EXPECT_FALSE(Parses<T>(R"(["", "isEmpty"])"));
    EXPECT_FALSE(Parses<T>(R"(["", "x"])"));
    EXPECT_FALSE(Parses<T>(R"(["name", "isempty"])"));
    const Lines expected = {
        start + "JSON condition rule has an invalid type '2', expected '7'",
        start + "JSON condition rule has an invalid type '4', expected '7'",
        start + "JSON condition rule has an invalid type '7', expected '7'",
        start + "JSON array has 1 elements, expected 2",
        start + "JSON array has 3 elements, expected 2",
        "E [ParseJson] SelectorPolicyAttributeEmptyCondition::ParseJson: the target attribute name is empty",
        "E [ParseJson] SelectorPolicyAttributeEmptyCondition::ParseJson: the target attribute name is empty",
        start + "JSON condition rule is invalid: 'isempty'",
    };
    EXPECT_EQ(expected, log.Lines());
}

// ---- Level ----

TEST(SelectorPolicyHierarchyLevelCondition, AsksForTheBitOfTheLevel) {
    for (const std::uint32_t level : {0u, 1u, 2u, 3u, 7u}) {
        FakePolicyNode node(level);
        EXPECT_EQ((level & 1) != 0, Holds(R"("isTopLevelNode")", node)) << level;
        EXPECT_EQ((level & 2) != 0, Holds(R"("isLeafNode")", node)) << level;
    }
}

TEST(SelectorPolicyHierarchyLevelCondition, FailuresAreLogged) {
    using T = SelectorPolicyHierarchyLevelCondition;
    const std::string start = "V [ParseJson] SelectorPolicyHierarchyLevelCondition::ParseJson: JSON condition rule ";
    LogCapture log;
    EXPECT_FALSE(Parses<T>("null"));
    EXPECT_FALSE(Parses<T>(R"(["isLeafNode"])"));
    EXPECT_FALSE(Parses<T>(R"("isleafnode")"));
    EXPECT_FALSE(Parses<T>(R"("")"));
    const Lines expected = {
        start + "has an invalid type '0', expected '4'",
        start + "has an invalid type '7', expected '4'",
        start + "is invalid: 'isleafnode'",
        start + "is invalid: ''",
    };
    EXPECT_EQ(expected, log.Lines());
}

// ---- Regular expression ----

TEST(SelectorPolicyRegexMatcher, MatchesTheWholeValue) {
    EXPECT_FALSE(HoldsForName(R"(["name", "matches_regex", "a"])", L"abc"));
    EXPECT_TRUE(HoldsForName(R"(["name", "matches_regex", "a.*"])", L"abc"));
    EXPECT_TRUE(HoldsForName(R"(["name", "matches_regex", "pane|group"])", L"group"));
    EXPECT_TRUE(HoldsForName(R"(["name", "matches_regex", ""])", L""));
    EXPECT_FALSE(HoldsForName(R"(["name", "matches_regex", ""])", L"a"));
}

TEST(SelectorPolicyRegexMatcher, CaseCounts) { EXPECT_FALSE(HoldsForName(R"(["name", "matches_regex", "a"])", L"A")); }

TEST(SelectorPolicyRegexMatcher, TakesTheValueUpToItsFirstNul) {
    EXPECT_TRUE(HoldsForName(R"(["name", "matches_regex", "ab"])", std::wstring(L"ab\0cd", 5)));
    EXPECT_FALSE(HoldsForName(R"(["name", "matches_regex", "ab.cd"])", std::wstring(L"ab\0cd", 5)));
    EXPECT_TRUE(HoldsForName(R"(["name", "matches_regex", ""])", std::wstring(L"\0x", 2)));
}

TEST(SelectorPolicyRegexMatcher, FailuresAreLogged) {
    using T = SelectorPolicyRegexMatcher;
    const std::string start = "V [ParseJson] SelectorPolicyRegexMatcher::ParseJson: JSON ";
    LogCapture log;
    EXPECT_FALSE(Parses<T>("1.5"));
    EXPECT_FALSE(Parses<T>(R"(["name", "matches_regex", null])"));
    EXPECT_FALSE(Parses<T>(R"(["name", "matches_regex"])"));
    EXPECT_FALSE(Parses<T>(R"(["name", "matches", "a"])"));
    EXPECT_FALSE(Parses<T>(R"(["", "matches", "a"])"));
    EXPECT_FALSE(Parses<T>(R"(["", "matches_regex", "a"])"));
    EXPECT_FALSE(Parses<T>(R"(["name", "matches_regex", "(a"])"));
    const Lines expected = {
        start + "condition rule has an invalid type '3', expected '7'",
        start + "condition rule has an invalid type '7', expected '7'",
        start + "array has 2 elements, expected 3",
        start + "invalid operator 'matches', expected 'matches_regex'",
        start + "invalid operator 'matches', expected 'matches_regex'",
        "E [ParseJson] SelectorPolicyRegexMatcher::ParseJson: the target attribute name is empty",
        "E [ParseJson] SelectorPolicyRegexMatcher::ParseJson Cannot compile regex pattern \"(a\", error_code=5, error_msg=\"opening "
        "parenthesis without a closing one\"",
    };
    EXPECT_EQ(expected, log.Lines());
}

TEST(SelectorPolicyRegexMatcher, AnExpressionThatWouldRunAwayDoesNotMatchAndIsAnError) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = std::wstring(100, L'a');
    LogCapture log;
    EXPECT_FALSE(Holds(R"(["name", "matches_regex", "(a+)+\\1$b"])", node));
    ASSERT_EQ(3u, log.Lines().size()) << log.Text();  // the first two are of the forms tried before
    EXPECT_EQ(
        "E [Evaluate] SelectorPolicyRegexMatcher::Evaluate: cannot match the value of 'name', error_code=11, error_msg=\"match takes too "
        "many steps\"",
        log.Lines()[2]);
}

TEST(SelectorPolicyRegexMatcher, ABadExpressionFailsTheConditionAtPositionZeroOfTheConjunction) {
    LogCapture log;
    EXPECT_EQ(nullptr, Condition(R"(["name", "matches_regex", "[a"])"));
    EXPECT_EQ(1u, log.Count("E [ParseJson] SelectorPolicyRegexMatcher::ParseJson Cannot compile regex pattern \"[a\"")) << log.Text();
    EXPECT_EQ("E [ParseJson] SelectorPolicyMatchAllCondition::ParseJson: JSON invalid condition at position 0", log.Lines().back());
}

// ---- Conjunction ----

TEST(SelectorPolicyMatchAllCondition, HoldsWhereAllOfItsConditionsDo) {
    for (const std::uint32_t level : {0u, 1u, 2u, 3u}) {
        FakePolicyNode node(level);
        EXPECT_EQ(level == 3, Holds(R"(["isLeafNode", "and", "isTopLevelNode"])", node)) << level;
    }
}

TEST(SelectorPolicyMatchAllCondition, AnOperatorAtTheEndIsAcceptedFromFourElementsOn) {
    EXPECT_EQ(nullptr, Condition(R"(["and", "isLeafNode"])"));
    EXPECT_EQ(nullptr, Condition(R"(["isLeafNode", "and"])"));
    for (const std::uint32_t level : {0u, 1u, 2u, 3u}) {
        FakePolicyNode node(level);
        EXPECT_EQ(level == 3, Holds(R"(["isLeafNode", "and", "isTopLevelNode", "and"])", node)) << level;
    }
}

TEST(SelectorPolicyMatchAllCondition, TwoElementsAreRejectedByTheirCount) {
    LogCapture log;
    EXPECT_EQ(nullptr, Condition(R"(["and", "isLeafNode"])"));
    EXPECT_EQ("V [ParseJson] SelectorPolicyMatchAllCondition::ParseJson: JSON array has 2 elements, expected at least 3", log.Lines().back());
}

TEST(SelectorPolicyMatchAllCondition, StopsAtTheFirstThatDoesNotHold) {
    FakePolicyNode node;
    EXPECT_FALSE(Holds(R"([["a", "isEmpty"], "and", ["b", "isNotEmpty"], "and", ["c", "isEmpty"]])", node));
    EXPECT_EQ(1, node.m_reads[L"a"]);
    EXPECT_EQ(1, node.m_reads[L"b"]);
    EXPECT_EQ(0, node.m_reads[L"c"]);
}

TEST(SelectorPolicyMatchAllCondition, SeveralConditionsOnOneAttributeReadItOnce) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"ab";
    EXPECT_TRUE(Holds(R"([["name", "isNotEmpty"], "and", ["name", "matches_regex", "a."], "and", ["name", "matches_regex", ".b"]])", node));
    EXPECT_EQ(1, node.m_reads[L"name"]);
}

TEST(SelectorPolicyMatchAllCondition, ElementsMayBeOfAnyForm) {
    FakePolicyNode node(LevelLeaf);
    node.m_elementAttributes[L"name"] = L"ab";
    EXPECT_TRUE(Holds(R"(["isLeafNode", "and", [["name", "matches_regex", "ab"], "and", ["x", "isEmpty"], "and", "isLeafNode"]])", node));
    EXPECT_FALSE(Holds(R"(["isLeafNode", "and", [["name", "matches_regex", "ab"], "and", ["x", "isNotEmpty"], "and", "isLeafNode"]])", node));
}

TEST(SelectorPolicyMatchAllCondition, WithoutConditionsHolds) {
    FakePolicyNode node;
    EXPECT_TRUE(SelectorPolicyMatchAllCondition().Evaluate({}, node));
}

TEST(SelectorPolicyMatchAllCondition, FailuresAreLogged) {
    using T = SelectorPolicyMatchAllCondition;
    const std::string start = "V [ParseJson] SelectorPolicyMatchAllCondition::ParseJson: JSON ";
    const std::string error = "E [ParseJson] SelectorPolicyMatchAllCondition::ParseJson: JSON invalid ";
    LogCapture log;
    EXPECT_FALSE(Parses<T>("{}"));
    EXPECT_FALSE(Parses<T>("[]"));
    EXPECT_FALSE(Parses<T>(R"(["isLeafNode", "and"])"));
    EXPECT_EQ((Lines{start + "condition rule has an invalid type 6, expected 7", start + "array has 0 elements, expected at least 3",
                     start + "array has 2 elements, expected at least 3"}),
              log.Lines());
    const auto lastLine = [&log](const std::string& json) {
        log.Clear();
        EXPECT_FALSE(Parses<T>(json)) << json;
        return log.Lines().back();
    };
    EXPECT_EQ(error + "condition at position 0", lastLine(R"([1, "and", "isLeafNode"])"));
    EXPECT_EQ(error + "condition at position 2", lastLine(R"(["isLeafNode", "and", "x"])"));
    EXPECT_EQ(error + "condition at position 4", lastLine(R"(["isLeafNode", "and", "isLeafNode", "and", null])"));
    EXPECT_EQ(error + "operator 'or' of type '4', expected 'and'", lastLine(R"(["isLeafNode", "or", "isLeafNode"])"));
    EXPECT_EQ(error + "operator '' of type '2', expected 'and'", lastLine(R"(["isLeafNode", 1, "isLeafNode"])"));
    EXPECT_EQ(error + "operator 'And' of type '4', expected 'and'", lastLine(R"(["isLeafNode", "and", "isLeafNode", "And"])"));
}

// ---- The trial of forms ----

TEST(SelectorPolicyConditionBase, FormsAreTriedInTheirOrderAndLeaveTheirLines) {
    LogCapture log;
    EXPECT_NE(nullptr, Condition(R"(["a", "isEmpty"])"));
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
    EXPECT_NE(nullptr, Condition(R"([["a", "isEmpty"], "and", ["b", "isEmpty"]])"));
    const Lines expected = {
        "V [ParseJson] SelectorPolicyAttributeEmptyCondition::ParseJson: JSON condition rule has an invalid type '7', expected '7'",
        "V [ParseJson] SelectorPolicyHierarchyLevelCondition::ParseJson: JSON condition rule has an invalid type '7', expected '4'",
        "V [ParseJson] SelectorPolicyRegexMatcher::ParseJson: JSON condition rule has an invalid type '7', expected '7'",
    };
    EXPECT_EQ(expected, log.Lines());
    log.Clear();
    EXPECT_EQ(nullptr, Condition("true"));
    ASSERT_EQ(4u, log.Lines().size()) << log.Text();
    EXPECT_NE(std::string::npos, log.Lines()[0].find("SelectorPolicyAttributeEmptyCondition"));
    EXPECT_NE(std::string::npos, log.Lines()[1].find("SelectorPolicyHierarchyLevelCondition"));
    EXPECT_NE(std::string::npos, log.Lines()[2].find("SelectorPolicyRegexMatcher"));
    EXPECT_NE(std::string::npos, log.Lines()[3].find("SelectorPolicyMatchAllCondition"));
}

TEST(SelectorPolicyConditionBase, ConjunctionsNestedDeeplyAreTriedOnceALevel) {
    constexpr int depth = 199;  // no text can nest deeper
    std::string good = R"("isLeafNode")";
    std::string bad = R"("isNothing")";
    for (int i = 0; i < depth; ++i) {
        good = R"(["isLeafNode", "and", )" + good + "]";
        bad = R"(["isLeafNode", "and", )" + bad + "]";
    }
    LogCapture log;
    FakePolicyNode leaf(LevelLeaf);
    EXPECT_TRUE(Holds(good, leaf));
    // One for each conjunction, but the innermost, which is told apart by its last string; one for each "isLeafNode".
    EXPECT_EQ(std::size_t{depth + depth + 1}, log.Count("SelectorPolicyAttributeEmptyCondition")) << log.Lines().size();
    log.Clear();
    EXPECT_EQ(nullptr, Condition(bad));
    EXPECT_EQ(std::size_t{depth}, log.Count("JSON invalid condition at position 2"));
    EXPECT_LT(log.Lines().size(), 9u * depth);
}

TEST(SelectorPolicyConditionBase, ConditionsAreNotWritten) {
    const JsonSerializer<std::shared_ptr<SelectorPolicyConditionBase>> serializer;
    std::unique_ptr<Value> out;
    EXPECT_FALSE(serializer.Serialize(Condition(R"("isLeafNode")"), out));
    EXPECT_FALSE(serializer.Serialize(nullptr, out));
    EXPECT_EQ(nullptr, out);
}

TEST(SelectorPolicyConditionBase, WhatIsNoConditionFailsWithAnErrorLine) {
    const JsonSerializer<std::shared_ptr<SelectorPolicyConditionBase>> serializer;
    std::shared_ptr<SelectorPolicyConditionBase> condition;
    LogCapture log(L"ERROR");
    EXPECT_FALSE(serializer.Deserialize(nullptr, condition));
    const Value none;
    EXPECT_FALSE(serializer.Deserialize(&none, condition));
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyConditionBase: deserialize failed",
                     "E [Deserialize] SelectorPolicyConditionBase: deserialize failed"}),
              log.Lines());
    const Value leaf("isLeafNode");
    EXPECT_TRUE(serializer.Deserialize(&leaf, condition));
    EXPECT_NE(nullptr, condition);
}

}  // namespace
}  // namespace Zorvex::Generation
