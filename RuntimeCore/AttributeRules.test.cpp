#include "RuntimeCore/AttributeRules.h"

#include <gtest/gtest.h>

#include "RuntimeCore/AaAttrHandler.h"
#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AttributeRules {
namespace {

using Testing::FakeElement;
using Testing::LogCapture;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

using AttributeRule = Testing::FakeElementTest;
using AttrHandler = Testing::FakeElementTest;

struct Answer {
    HRESULT status;
    CString text;
    bool operator==(const Answer&) const = default;
};


Answer RoleOf(FakeElement* element) {
    Answer answer{0, L"left over"};
    answer.status = ReadRole(element, Self, answer.text);
    return answer;
}

TEST_F(AttributeRule, NameOfAnEditBoxThatRepeatsItsValueIsEmpty) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_TEXT;
    element->name = L"abc";
    element->value = L"abc";
    CString text;
    EXPECT_EQ(ReadName(element, Self, text), AttributeEmpty);
    EXPECT_EQ(text, L"");
}

TEST_F(AttributeRule, NameOfAReadOnlyTextIsItsValue) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_TEXT;
    element->stateAnswer = STATE_SYSTEM_READONLY;
    element->name = L"";
    element->value = L"Total";
    CString text;
    EXPECT_EQ(ReadName(element, Self, text), AttributeProduced);
    EXPECT_EQ(text, L"Total");
}

TEST_F(AttributeRule, NameHasBlanksInThePlaceOfLineBreaks) {
    auto element = FakeElement::Make();
    element->name = L"first\r\nsecond";
    CString text;
    EXPECT_EQ(ReadName(element, Self, text), AttributeProduced);
    EXPECT_EQ(text, L"first  second");
}

TEST_F(AttributeRule, RoleOfAReadOnlyTextIsStaticText) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_TEXT;
    EXPECT_EQ(RoleOf(element), (Answer{AttributeProduced, L"editable text"}));
    element->stateAnswer = STATE_SYSTEM_READONLY;
    EXPECT_EQ(RoleOf(element), (Answer{AttributeProduced, L"text"}));
    element->stateAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_EQ(RoleOf(element), (Answer{AttributeProduced, L"editable text"}));
    element->stateAnswer = CComVariant(L"read only");
    EXPECT_EQ(RoleOf(element), (Answer{AttributeProduced, L"editable text"}));
}

TEST_F(AttributeRule, RoleGivenAsATextStandsAsItIs) {
    auto element = FakeElement::Make();
    element->roleAnswer = CComVariant(L"Gadget");
    EXPECT_EQ(RoleOf(element), (Answer{AttributeProduced, L"Gadget"}));
    element->roleAnswer = VariantAnswer::NullText();
    EXPECT_EQ(RoleOf(element), (Answer{AttributeEmpty, L""}));
}

TEST_F(AttributeRule, RoleOfAnotherTypeOrUnreadableIsEmpty) {
    auto element = FakeElement::Make();
    element->roleAnswer = CComVariant();
    EXPECT_EQ(RoleOf(element), (Answer{AttributeEmpty, L""}));
    element->roleAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(RoleOf(element), (Answer{E_ACCESSDENIED, L""}));
    EXPECT_EQ(RoleOf(nullptr), (Answer{AttributeEmpty, L""}));
}

TEST_F(AttributeRule, AutomationIdAndLabeledByComeFromUiAutomation) {
    auto element = FakeElement::Make();
    element->uiaProperty = CComVariant(L"okButton");
    CString text;
    EXPECT_EQ(ReadAutomationId(element, Self, text), AttributeProduced);
    EXPECT_EQ(text, L"okButton");
    EXPECT_EQ(element->askedProperty, 30011);
    EXPECT_EQ(ReadLabeledBy(element, Self, text), AttributeProduced);
    EXPECT_EQ(element->askedProperty, 30018);
}

TEST_F(AttributeRule, AutomationIdIsEmptyWithoutAProvider) {
    auto element = FakeElement::Make();
    element->offersProvider = false;
    element->uiaProperty = CComVariant(L"okButton");
    CString text = L"left over";
    EXPECT_LT(ReadAutomationId(element, Self, text), 0);
    EXPECT_EQ(text, L"");
    EXPECT_LT(ReadAutomationId(element, CComVariant(), text), 0);
}

TEST_F(AttributeRule, TextOfACheckBoxIsItsCheckedState) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_CHECKBUTTON;
    element->value = L"x";
    CString text;
    EXPECT_EQ(ReadText(nullptr, element, Self, IA2Use::Ignore, text), AttributeProduced);
    EXPECT_EQ(text, L"unchecked");
    element->stateAnswer = STATE_SYSTEM_CHECKED;
    ReadText(nullptr, element, Self, IA2Use::Ignore, text);
    EXPECT_EQ(text, L"checked");
}

TEST_F(AttributeRule, TextOfAnOutlineItemIsItsName) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_OUTLINEITEM;
    element->value = L"2";
    element->name = L"Folder";
    CString text;
    ReadText(nullptr, element, Self, IA2Use::Ignore, text);
    EXPECT_EQ(text, L"Folder");
}

TEST_F(AttributeRule, TextReadsIA2OnlyWhereToldTo) {
    auto element = FakeElement::Make();
    element->name = L"accessible";
    element->ia2Text = L"web";
    CString text;
    ReadText(nullptr, element, Self, IA2Use::Ignore, text);
    EXPECT_EQ(text, L"accessible");
    ReadText(nullptr, element, Self, IA2Use::Read, text);
    EXPECT_EQ(text, L"web");
    element->name = {};
    EXPECT_EQ(ReadText(nullptr, element, Self, IA2Use::Ignore, text), AttributeEmpty);
}

TEST_F(AttributeRule, HelpTextIsTheHelp) {
    auto element = FakeElement::Make();
    CString text;
    EXPECT_EQ(ReadHelpText(element, Self, text), AttributeEmpty);
    element->help = L"Press it";
    EXPECT_EQ(ReadHelpText(element, Self, text), AttributeProduced);
    EXPECT_EQ(text, L"Press it");
}

TEST_F(AttributeRule, StateReadsIA2StatesOnlyWhereToldTo) {
    auto element = FakeElement::Make();
    element->ia2States = {S_OK, 0x40001};
    CString text;
    EXPECT_EQ(ReadAaState(element, Self, IA2Use::Ignore, StateFailure::Silent, text), AttributeEmpty);
    EXPECT_EQ(element->calls["get_states"], 0);
    EXPECT_EQ(ReadAaState(element, Self, IA2Use::Read, StateFailure::Silent, text), AttributeProduced);
    EXPECT_EQ(text, L"active, chekable");
}

TEST_F(AttributeRule, StateCountsUnreadableIA2StatesAsNone) {
    auto element = FakeElement::Make();
    element->ia2States = {E_FAIL, 0x40001};
    CString text;
    EXPECT_EQ(ReadAaState(element, Self, IA2Use::Read, StateFailure::Silent, text), AttributeEmpty);
    EXPECT_EQ(text, L"");
}

TEST_F(AttributeRule, StateFailureIsWarnedOfOnlyForSearch) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->stateAnswer = VariantAnswer::Failure(E_FAIL);
    CString text;
    EXPECT_EQ(ReadAaState(element, Self, IA2Use::Ignore, StateFailure::Silent, text), E_FAIL);
    EXPECT_EQ(log.Count("GetAAState failed."), 0u);
    EXPECT_EQ(ReadAaState(element, Self, IA2Use::Ignore, StateFailure::Warn, text), E_FAIL);
    EXPECT_EQ(log.Count("GetAAState failed."), 1u);
    EXPECT_TRUE(log.Contains("W [ReadAaState] GetAAState failed.")) << log.Text();
}

TEST_F(AttrHandler, TableHoldsTheNineAttributesInNameOrder) {
    const wchar_t* const expected[] = {L"aastate", L"automationid", L"helpText", L"labeledby", L"name", L"role", L"rowName", L"text", L"virtualname"};
    const auto& handlers = AaAttrHandler::Instance().Handlers();
    ASSERT_EQ(handlers.size(), std::size(expected));
    const wchar_t* const* next = expected;
    for (const auto& [name, handler] : handlers) {
        EXPECT_EQ(name, *next++);
        EXPECT_TRUE(handler);
    }
}

TEST_F(AttrHandler, IsFoundByTheExactNameOnly) {
    EXPECT_TRUE(AaAttrHandler::Instance().Find(L"helpText"));
    EXPECT_FALSE(AaAttrHandler::Instance().Find(L"helptext"));
    EXPECT_FALSE(AaAttrHandler::Instance().Find(L"idx"));
    EXPECT_FALSE(AaAttrHandler::Instance().Find(L""));
    EXPECT_EQ(&AaAttrHandler::Instance(), &AaAttrHandler::Instance());
}

Answer Handle(const wchar_t* name, FakeElement* element, DWORD useIA2 = 0) {
    CComBSTR text(L"left over");
    const HRESULT status = (*AaAttrHandler::Instance().Find(name))(nullptr, *element, Self, useIA2, text);
    return {status, text.ToString()};
}

TEST_F(AttrHandler, AnswersAsTheRulesDo) {
    auto element = FakeElement::Make();
    element->name = L"OK";
    element->help = L"Press it";
    element->ia2Text = L"web";
    element->ia2States = {S_OK, 1};
    element->uiaProperty = CComVariant(L"okButton");
    EXPECT_EQ(Handle(L"name", element), (Answer{0, L"OK"}));
    EXPECT_EQ(Handle(L"role", element), (Answer{0, L"push button"}));
    EXPECT_EQ(Handle(L"helpText", element), (Answer{0, L"Press it"}));
    EXPECT_EQ(Handle(L"automationid", element), (Answer{0, L"okButton"}));
    EXPECT_EQ(Handle(L"labeledby", element), (Answer{0, L"okButton"}));
    EXPECT_EQ(element->askedProperty, 30018);
    EXPECT_EQ(Handle(L"text", element), (Answer{0, L"OK"}));
    EXPECT_EQ(Handle(L"text", element, 1), (Answer{0, L"web"}));
    EXPECT_EQ(Handle(L"aastate", element), (Answer{1, L""}));
    EXPECT_EQ(Handle(L"aastate", element, 1), (Answer{0, L"active"}));
}

TEST_F(AttrHandler, PassesFailuresOnWithAnEmptyText) {
    auto element = FakeElement::Make();
    element->stateAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(Handle(L"aastate", element), (Answer{E_ACCESSDENIED, L""}));
    EXPECT_EQ(Handle(L"automationid", element), (Answer{E_UNEXPECTED, L""}));
}

}  // namespace
}  // namespace Zorvex::AttributeRules
