#include "RuntimeCore/AAUtilitiesName.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeElement.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::FakeElement;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

using ElementName = Testing::FakeElementTest;

CComPtr<FakeElement> ElementWith(LONG role, Testing::TextAnswer name, Testing::TextAnswer value, LONG state = 0) {
    auto element = FakeElement::Make();
    element->roleAnswer = role;
    element->stateAnswer = state;
    element->name = std::move(name);
    element->value = std::move(value);
    return element;
}

CString NameOf(LONG role, Testing::TextAnswer name, Testing::TextAnswer value, LONG state = 0) {
    return GetAAElementName(ElementWith(role, std::move(name), std::move(value), state), Self);
}

TEST_F(ElementName, IsEmptyForAnEditableFieldThatRepeatsItsValue) {
    EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, L"abc", L"abc"), L"");
    EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, L"abc", L"ABC"), L"abc");
    EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, L"abc", L"abc", STATE_SYSTEM_READONLY), L"");
}

TEST_F(ElementName, OfAnotherRoleMayRepeatTheValue) { EXPECT_EQ(NameOf(ROLE_SYSTEM_PUSHBUTTON, L"abc", L"abc"), L"abc"); }

TEST_F(ElementName, OfAClientAreaDependsOnTheReadOnlyBit) {
    EXPECT_EQ(NameOf(ROLE_SYSTEM_CLIENT, L"abc", L"abc"), L"");
    EXPECT_EQ(NameOf(ROLE_SYSTEM_CLIENT, L"abc", L"abc", STATE_SYSTEM_READONLY), L"abc");
}

TEST_F(ElementName, OfAClientAreaWithAnUnreadableStateIsKept) {
    auto element = ElementWith(ROLE_SYSTEM_CLIENT, L"abc", L"abc");
    element->stateAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_EQ(GetAAElementName(element, Self), L"abc");
    element->stateAnswer = CComVariant(L"editable");
    EXPECT_EQ(GetAAElementName(element, Self), L"abc");
    EXPECT_EQ(element->calls["get_accValue"], 0);
}

TEST_F(ElementName, IsKeptWhenTheValueCanNotBeRead) { EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, L"abc", E_FAIL), L"abc"); }

TEST_F(ElementName, OfAReadOnlyTextWithoutOneIsItsValue) {
    EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, L"", L"Total", STATE_SYSTEM_READONLY), L"Total");
    EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, {}, L"Total", STATE_SYSTEM_READONLY), L"Total");
    EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, E_FAIL, L"To\r\ntal", STATE_SYSTEM_READONLY), L"To  tal");
    EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, L"", L"Total"), L"");
    EXPECT_EQ(NameOf(ROLE_SYSTEM_CLIENT, L"", L"Total", STATE_SYSTEM_READONLY), L"");
    EXPECT_EQ(NameOf(ROLE_SYSTEM_TEXT, L"", E_FAIL, STATE_SYSTEM_READONLY), L"");
}

TEST_F(ElementName, TakesTheReadOnlyBitFromTheContainerForASimpleElement) {
    auto element = ElementWith(ROLE_SYSTEM_TEXT, L"", L"Total", STATE_SYSTEM_READONLY);
    element->childStateAnswer = VariantAnswer(LONG{0});
    EXPECT_EQ(GetAAElementName(element, CComVariant(LONG{3})), L"Total");
}

TEST_F(ElementName, ComesWithBlanksInsteadOfLineEnds) { EXPECT_EQ(NameOf(ROLE_SYSTEM_PUSHBUTTON, L"a\r\nb\nc\rd", {}), L"a  b c d"); }

TEST_F(ElementName, IsEmptyWithoutAnElementAndWithoutARole) {
    EXPECT_EQ(GetAAElementName(nullptr, Self), L"");
    auto element = ElementWith(0, L"abc", {});
    element->roleAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_EQ(GetAAElementName(element, Self), L"");
    EXPECT_EQ(element->calls["get_accName"], 0);
}

TEST_F(ElementName, OfARoleGivenAsATextIsTheName) {
    auto element = ElementWith(0, L"abc", L"abc");
    element->roleAnswer = CComVariant(L"gadget");
    EXPECT_EQ(GetAAElementName(element, Self), L"abc");
}

TEST_F(ElementName, UnreadableEndsTheRuleWhereAskedTo) {
    auto element = ElementWith(ROLE_SYSTEM_TEXT, E_FAIL, L"Total", STATE_SYSTEM_READONLY);
    EXPECT_EQ(GetAAElementName(element, Self, UnreadableName::EndsTheRule), L"");
    EXPECT_EQ(GetAAElementName(element, Self, UnreadableName::IsEmpty), L"Total");
    element->name = {};
    EXPECT_EQ(GetAAElementName(element, Self, UnreadableName::EndsTheRule), L"Total");
}

TEST_F(ElementName, NormalizingReplacesEachCharacterByItsOwnBlank) {
    CString text = L"\r\n\r\n";
    NormalizeLineBreaks(text);
    EXPECT_EQ(text, L"    ");
}

}  // namespace
}  // namespace Zorvex::AAUtil
