#include "RuntimeCore/Selectors/Policy/SelectorPolicyActions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Common/include/JsonSerializer/JsonText.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "tests/Support/FakePolicyNode.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Generation {
namespace {

using Testing::FakePolicyNode;
using Testing::LogCapture;
using Lines = std::vector<std::string>;

std::shared_ptr<SelectorPolicyActionBase> Action(const std::string& json) {
    const auto value = ReadJson(json);
    EXPECT_NE(nullptr, value) << json;
    return value ? SelectorPolicyActionBase::FromJson(*value) : nullptr;
}

template <class T>
bool Parses(const std::string& json) {
    const auto value = ReadJson(json);
    EXPECT_NE(nullptr, value) << json;
    return value && T().ParseJson(*value);
}

void Perform(const std::string& json, FakePolicyNode& node) {
    const auto action = Action(json);
    ASSERT_NE(nullptr, action) << json;
    action->Perform({}, node);
}

// ---- Presence ----

TEST(SelectorPolicyHierarchyPresenceSetter, SetsThePresenceOfAnOrdinaryNode) {
    FakePolicyNode node;
    Perform(R"("exclude_from_hierarchy")", node);
    EXPECT_EQ(HierarchyPresence::Excluded, node.GetHierarchyPresence());
    Perform(R"("include_in_hierarchy")", node);
    EXPECT_EQ(HierarchyPresence::Included, node.GetHierarchyPresence());
    EXPECT_EQ(0, node.m_defaultQuestions);
}

TEST(SelectorPolicyHierarchyPresenceSetter, LeavesAndTopLevelNodesCanNotBeExcluded) {
    for (const std::uint32_t level : {1u, 2u, 3u}) {
        FakePolicyNode node(level);
        Perform(R"("exclude_from_hierarchy")", node);
        EXPECT_EQ(HierarchyPresence::Included, node.GetHierarchyPresence()) << level;
    }
}

TEST(SelectorPolicyHierarchyPresenceSetter, FailuresAreLogged) {
    using T = SelectorPolicyHierarchyPresenceSetter;
    const std::string start = "V [ParseJson] SelectorPolicyHierarchyPresenceSetter::ParseJson: JSON condition rule ";
    LogCapture log;
    EXPECT_FALSE(Parses<T>("false"));
    EXPECT_FALSE(Parses<T>(R"("include")"));
    EXPECT_EQ((Lines{start + "has an invalid type '1', expected '4'", start + "is invalid: 'include'"}), log.Lines());
}

// ---- Inclusion of attributes ----

TEST(SelectorPolicyIncludeOrExcludeAttributeAction, IncludeGivesTheElementsOwnValue) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"OK";
    Perform(R"(["include_attribute", "name"])", node);
    EXPECT_EQ(L"OK", node.Given(L"name"));
    const auto& value = *node.GetAttributeValues().at(L"name");
    EXPECT_EQ(AttributeValueKind::String, value.GetValueKind());
    EXPECT_EQ(StringValue().GetMatchingType(), value.GetMatchingType());
}

TEST(SelectorPolicyIncludeOrExcludeAttributeAction, IncludeOfAnAttributeWithoutValueLeavesTheNodeAsItIs) {
    FakePolicyNode node;
    node.SetAttr(L"name", std::make_shared<StringValue>(L"before"));
    Perform(R"(["include_attribute", "name"])", node);
    EXPECT_EQ(L"before", node.Given(L"name"));
}

TEST(SelectorPolicyIncludeOrExcludeAttributeAction, ExcludeBarsTheNameWithoutReadingIt) {
    FakePolicyNode node;
    node.m_elementAttributes[L"x"] = L"y";
    Perform(R"(["exclude_attribute", "x"])", node);
    Perform(R"(["set_attribute", "x", "y"])", node);
    Perform(R"(["include_attribute", "x"])", node);
    Perform(R"(["set_attribute_regex", "x", "y", "z"])", node);
    EXPECT_EQ(L"(none)", node.Given(L"x"));
    FakePolicyNode other;
    Perform(R"(["exclude_attribute", "x"])", other);
    EXPECT_TRUE(other.m_reads.empty());
}

TEST(SelectorPolicyIncludeOrExcludeAttributeAction, FailuresAreLoggedButForAnUnknownOperator) {
    using T = SelectorPolicyIncludeOrExcludeAttributeAction;
    LogCapture log;
    EXPECT_FALSE(Parses<T>(R"("include_attribute")"));
    EXPECT_FALSE(Parses<T>(R"(["include_attribute", []])"));
    EXPECT_FALSE(Parses<T>(R"(["include_attribute"])"));
    EXPECT_FALSE(Parses<T>(R"(["foo", "x"])"));
    EXPECT_FALSE(Parses<T>(R"(["foo", ""])"));
    EXPECT_FALSE(Parses<T>(R"(["exclude_attribute", ""])"));
    const Lines expected = {
        "V [ParseJson] JSON content has an invalid type: 4, expected: 7",
        "V [ParseJson] JSON content has an invalid type: 7, expected: 7",
        "V [ParseJson] JSON arg count is 1, expected: 2",
        "E [ParseJson] The target attribute name is empty",
    };
    EXPECT_EQ(expected, log.Lines());
}

// ---- Value ----

TEST(SelectorPolicyAttributeValueSetter, StoresTheValueAsGivenAnEmptyOneToo) {
    FakePolicyNode node;
    Perform(R"(["set_attribute", "cls", "x*"])", node);
    EXPECT_EQ(L"x*", node.Given(L"cls"));
    Perform(R"(["set_attribute", "cls", ""])", node);
    EXPECT_EQ(L"", node.Given(L"cls"));
    EXPECT_TRUE(node.m_reads.empty());
}

TEST(SelectorPolicyAttributeValueSetter, FailuresAreLoggedButForAnUnknownOperator) {
    using T = SelectorPolicyAttributeValueSetter;
    LogCapture log;
    EXPECT_FALSE(Parses<T>("7"));
    EXPECT_FALSE(Parses<T>(R"(["set_attribute", "a", 1])"));
    EXPECT_FALSE(Parses<T>(R"(["set_attribute", "a"])"));
    EXPECT_FALSE(Parses<T>(R"(["set", "", "b"])"));
    EXPECT_FALSE(Parses<T>(R"(["set_attribute", "", "b"])"));
    const std::string start = "V [ParseJson] SelectorPolicyAttributeValueSetter::ParseJson: JSON ";
    const Lines expected = {
        start + "content has an invalid type '2', expected '7'",
        start + "content has an invalid type '7', expected '7'",
        start + "arg count is 2, expected 3",
        "E [ParseJson] SelectorPolicyAttributeValueSetter::ParseJson: the target attribute name is empty",
    };
    EXPECT_EQ(expected, log.Lines());
}

// ---- Regular replacement ----

TEST(SelectorPolicyRegexSetter, ReplacesEveryMatchInTheElementsOwnValue) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"Page 1 of 20";
    node.SetAttr(L"name", std::make_shared<StringValue>(L"given"));
    Perform(R"(["set_attribute_regex", "name", "[0-9]+", "*"])", node);
    EXPECT_EQ(L"Page * of *", node.Given(L"name"));
    Perform(R"json(["set_attribute_regex", "name", "(\\w+) (\\d+)", "$2 $1"])json", node);
    EXPECT_EQ(L"1 Page 20 of", node.Given(L"name"));
}

TEST(SelectorPolicyRegexSetter, WithoutAMatchTheValueIsTakenAsItIs) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"OK";
    Perform(R"(["set_attribute_regex", "name", "ok", "*"])", node);  // case counts
    EXPECT_EQ(L"OK", node.Given(L"name"));
}

TEST(SelectorPolicyRegexSetter, AnEmptyResultLeavesTheAttributeAsItWas) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = L"OK";
    Perform(R"(["set_attribute_regex", "name", ".*", ""])", node);
    EXPECT_EQ(L"(none)", node.Given(L"name"));
    node.SetAttr(L"name", std::make_shared<StringValue>(L"before"));
    Perform(R"(["set_attribute_regex", "name", ".*", ""])", node);
    EXPECT_EQ(L"before", node.Given(L"name"));
    Perform(R"(["set_attribute_regex", "nothing", "a", "b"])", node);
    EXPECT_EQ(L"(none)", node.Given(L"nothing"));
}

TEST(SelectorPolicyRegexSetter, AnEmptyValueMayGetOne) {
    FakePolicyNode node;
    Perform(R"(["set_attribute_regex", "nothing", "^$", "unnamed"])", node);
    EXPECT_EQ(L"unnamed", node.Given(L"nothing"));
}

TEST(SelectorPolicyRegexSetter, TakesTheWholeValueWithItsNuls) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = std::wstring(L"a\0a", 3);
    Perform(R"(["set_attribute_regex", "name", "a", "b"])", node);
    EXPECT_EQ(std::wstring(L"b\0b", 3), node.Given(L"name"));
}

TEST(SelectorPolicyRegexSetter, FailuresAreLoggedButForAnUnknownOperator) {
    using T = SelectorPolicyRegexSetter;
    LogCapture log;
    EXPECT_FALSE(Parses<T>("7.0"));
    EXPECT_FALSE(Parses<T>(R"(["set_attribute_regex", "a", "b", {}])"));
    EXPECT_FALSE(Parses<T>(R"(["set_attribute_regex", "a", "b"])"));
    EXPECT_FALSE(Parses<T>(R"(["set_regex", "", "(", "b"])"));
    EXPECT_FALSE(Parses<T>(R"(["set_attribute_regex", "", "(", "b"])"));
    EXPECT_FALSE(Parses<T>(R"(["set_attribute_regex", "a", "*", "b"])"));
    const Lines expected = {
        "V [ParseJson] SelectorPolicyRegexSetter: JSON content has an invalid type '3', expected '7'",
        "V [ParseJson] SelectorPolicyRegexSetter: JSON content has an invalid type '7', expected '7'",
        "V [ParseJson] SelectorPolicyRegexSetter: JSON arg count is 3, expected 4",
        "E [ParseJson] SelectorPolicyRegexSetter::ParseJson: the target attribute name is empty",
        "E [ParseJson] SelectorPolicyRegexSetter::ParseJson Cannot compile regex pattern \"*\", error_code=10, error_msg=\"nothing to "
        "repeat\"",
    };
    EXPECT_EQ(expected, log.Lines());
}

TEST(SelectorPolicyRegexSetter, AReplacementThatWouldRunAwayLeavesTheAttributeAsItWasAndIsAnError) {
    FakePolicyNode node;
    node.m_elementAttributes[L"name"] = std::wstring(100, L'a');
    node.m_elementAttributes[L"long"] = std::wstring(100000, L'a');
    node.SetAttr(L"name", std::make_shared<StringValue>(L"before"));
    LogCapture log(L"ERROR");
    Perform(R"(["set_attribute_regex", "name", "(a+)+\\1$b", "x"])", node);
    Perform(R"(["set_attribute_regex", "long", "a", "$'"])", node);
    EXPECT_EQ(L"before", node.Given(L"name"));
    EXPECT_EQ(L"(none)", node.Given(L"long"));
    const Lines expected = {
        "E [Perform] SelectorPolicyRegexSetter::Perform: cannot replace in the value of 'name', error_code=11, error_msg=\"match takes too "
        "many steps\"",
        "E [Perform] SelectorPolicyRegexSetter::Perform: cannot replace in the value of 'long', error_code=9, error_msg=\"result is too "
        "long\"",
    };
    EXPECT_EQ(expected, log.Lines());
}

// ---- The trial of forms ----

TEST(SelectorPolicyActionBase, OnlyThePresenceSetterAffectsTheHierarchy) {
    EXPECT_TRUE(Action(R"("include_in_hierarchy")")->AffectsHierarchy());
    EXPECT_TRUE(Action(R"("exclude_from_hierarchy")")->AffectsHierarchy());
    EXPECT_FALSE(SelectorPolicyHierarchyPresenceSetter().AffectsHierarchy());
    EXPECT_FALSE(Action(R"(["include_attribute", "a"])")->AffectsHierarchy());
    EXPECT_FALSE(Action(R"(["set_attribute", "a", "b"])")->AffectsHierarchy());
    EXPECT_FALSE(Action(R"(["set_attribute_regex", "a", "b", "c"])")->AffectsHierarchy());
}

TEST(SelectorPolicyActionBase, FormsAreTriedInTheirOrderAndLeaveTheirLines) {
    LogCapture log;
    EXPECT_NE(nullptr, Action(R"(["set_attribute_regex", "a", "b", "c"])"));
    const Lines expected = {
        "V [ParseJson] SelectorPolicyHierarchyPresenceSetter::ParseJson: JSON condition rule has an invalid type '7', expected '4'",
        "V [ParseJson] JSON arg count is 4, expected: 2",
        "V [ParseJson] SelectorPolicyAttributeValueSetter::ParseJson: JSON arg count is 4, expected 3",
    };
    EXPECT_EQ(expected, log.Lines());
}

TEST(SelectorPolicyActionBase, AnUnknownOperatorFailsSilentlyInItsFormAndThenAltogether) {
    const JsonSerializer<std::shared_ptr<SelectorPolicyActionBase>> serializer;
    std::shared_ptr<SelectorPolicyActionBase> action;
    LogCapture log;
    EXPECT_FALSE(serializer.Deserialize(ReadJson(R"(["foo", "x"])").get(), action));
    const Lines expected = {
        "V [ParseJson] SelectorPolicyHierarchyPresenceSetter::ParseJson: JSON condition rule has an invalid type '7', expected '4'",
        "V [ParseJson] SelectorPolicyAttributeValueSetter::ParseJson: JSON arg count is 2, expected 3",
        "V [ParseJson] SelectorPolicyRegexSetter: JSON arg count is 2, expected 4",
        "E [Deserialize] SelectorPolicyActionBase: deserialize failed",
    };
    EXPECT_EQ(expected, log.Lines());
    EXPECT_EQ(nullptr, action);
}

TEST(SelectorPolicyActionBase, NullFailsWithALineOfItsOwn) {
    const JsonSerializer<std::shared_ptr<SelectorPolicyActionBase>> serializer;
    std::shared_ptr<SelectorPolicyActionBase> action;
    LogCapture log;
    const Value none;
    EXPECT_FALSE(serializer.Deserialize(nullptr, action));
    EXPECT_FALSE(serializer.Deserialize(&none, action));
    EXPECT_EQ((Lines{"E [Deserialize] SelectorPolicyActionBase: deserialize failed: NULL JSON",
                     "E [Deserialize] SelectorPolicyActionBase: deserialize failed: NULL JSON"}),
              log.Lines());
}

TEST(SelectorPolicyActionBase, ListsOfActionsStopAtTheFirstBadOne) {
    const JsonSerializer<SelectorPolicyActions> serializer;
    SelectorPolicyActions actions(5);
    LogCapture log(L"ERROR");
    EXPECT_FALSE(serializer.Deserialize(ReadJson(R"(["include_in_hierarchy", "foo", "bar"])").get(), actions));
    EXPECT_EQ(1u, actions.size());
    EXPECT_EQ(1u, log.Lines().size()) << log.Text();
    EXPECT_FALSE(serializer.Deserialize(nullptr, actions));
    EXPECT_TRUE(actions.empty());
    EXPECT_FALSE(serializer.Deserialize(ReadJson(R"("include_in_hierarchy")").get(), actions));
    EXPECT_TRUE(serializer.Deserialize(ReadJson("[]").get(), actions));
}

TEST(SelectorPolicyActionBase, ActionsAreNotWrittenButAnEmptyListIs) {
    std::unique_ptr<Value> out;
    EXPECT_FALSE(JsonSerializer<std::shared_ptr<SelectorPolicyActionBase>>().Serialize(Action(R"("include_in_hierarchy")"), out));
    EXPECT_FALSE(JsonSerializer<SelectorPolicyActions>().Serialize({Action(R"("include_in_hierarchy")")}, out));
    EXPECT_EQ(nullptr, out);
    EXPECT_TRUE(JsonSerializer<SelectorPolicyActions>().Serialize({}, out));
    EXPECT_EQ(Value(Value::Type::List), *out);
}

}  // namespace
}  // namespace Zorvex::Generation
