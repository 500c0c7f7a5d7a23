#include "RuntimeCore/AAUtilitiesText.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::FakeElement;
using Testing::LogCapture;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

using AccessibleText = Testing::FakeElementTest;
using AAOrIA2Text = Testing::FakeElementTest;
using HelpText = Testing::FakeElementTest;
using Parent = Testing::FakeElementTest;

CString TextOf(FakeElement* element) { return GetAccessibleText(nullptr, element, Self); }

TEST_F(AccessibleText, OfACheckBoxIsItsCheckedStateAndNotItsValue) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_CHECKBUTTON;
    element->value = L"x";
    element->name = L"Remember me";
    EXPECT_EQ(TextOf(element), L"unchecked");
    element->stateAnswer = STATE_SYSTEM_CHECKED;
    EXPECT_EQ(TextOf(element), L"checked");
    element->roleAnswer = ROLE_SYSTEM_RADIOBUTTON;
    EXPECT_EQ(TextOf(element), L"checked");
}

TEST_F(AccessibleText, OfACheckBoxWithAnUnreadableStateIsItsValueOrName) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_CHECKBUTTON;
    element->stateAnswer = VariantAnswer::Failure(E_FAIL);
    element->name = L"Remember me";
    EXPECT_EQ(TextOf(element), L"Remember me");
    element->value = L"x";
    EXPECT_EQ(TextOf(element), L"x");
}

TEST_F(AccessibleText, OfAnOutlineItemIsItsNameAlsoWithAValue) {
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_OUTLINEITEM;
    element->name = L"Folder";
    element->value = L"1";
    EXPECT_EQ(TextOf(element), L"Folder");
    EXPECT_EQ(element->calls["get_accValue"], 0);
}

TEST_F(AccessibleText, IsTheValueAndElseTheName) {
    auto element = FakeElement::Make();
    element->name = L"Volume\r\n";
    EXPECT_EQ(TextOf(element), L"Volume\r\n");
    element->value = L"";
    EXPECT_EQ(TextOf(element), L"Volume\r\n");
    element->value = L"50%";
    EXPECT_EQ(TextOf(element), L"50%");
}

TEST_F(AccessibleText, OfAListIsItsFirstSelectedItemOrNothing) {
    for (const LONG role : {ROLE_SYSTEM_LIST, ROLE_SYSTEM_COMBOBOX}) {
        auto element = FakeElement::Make();
        element->roleAnswer = role;
        element->name = L"Cities";
        element->childNames[2] = L"Turin";
        EXPECT_EQ(TextOf(element), L"");
        element->selection = LONG{2};
        EXPECT_EQ(TextOf(element), L"Turin");
        element->selection = VariantAnswer::Failure(DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(TextOf(element), L"");
        element->selection = VariantAnswer::Failure(E_FAIL);
        EXPECT_EQ(TextOf(element), L"");
        element->value = L"Rome";
        EXPECT_EQ(TextOf(element), L"Rome");
    }
}

TEST_F(AccessibleText, OfAListWithASelectedObjectIsThatObjectsName) {
    auto item = FakeElement::Make();
    item->name = L"Turin";
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_LIST;
    element->selection = CComVariant(item->AsDispatch());
    EXPECT_EQ(TextOf(element), L"Turin");
}

TEST_F(AccessibleText, IsEmptyWithoutAnElementOrARoleNumber) {
    EXPECT_EQ(GetAccessibleText(nullptr, nullptr, Self), L"");
    auto element = FakeElement::Make();
    element->name = L"abc";
    element->roleAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_EQ(TextOf(element), L"");
    element->roleAnswer = CComVariant(L"gadget");
    EXPECT_EQ(TextOf(element), L"");
}

TEST_F(AccessibleText, OfAnUnreadableNameIsEmpty) {
    auto element = FakeElement::Make();
    element->name = E_FAIL;
    EXPECT_EQ(TextOf(element), L"");
}

TEST_F(AAOrIA2Text, PrefersTheIA2TextWhereAskedFor) {
    auto element = FakeElement::Make();
    element->name = L"accessible";
    element->ia2Text = L"web";
    EXPECT_EQ(GetAAOrIA2Text(true, nullptr, element, Self), L"web");
    EXPECT_EQ(GetAAOrIA2Text(false, nullptr, element, Self), L"accessible");
}

TEST_F(AAOrIA2Text, FallsBackFromAnEmptyIA2TextWithoutALine) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->name = L"accessible";
    element->ia2Text = L"\xFFFC";
    EXPECT_EQ(GetAAOrIA2Text(true, nullptr, element, Self), L"accessible");
    EXPECT_FALSE(log.Contains("Failed to get text"));
}

TEST_F(AAOrIA2Text, WarnsAndFallsBackWhenTheIA2TextFails) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->name = L"accessible";
    element->ia2Text = E_ACCESSDENIED;
    EXPECT_EQ(GetAAOrIA2Text(true, nullptr, element, Self), L"accessible");
    EXPECT_TRUE(log.Contains("Failed to get text using IAccessibleText, hResult=0x80070005")) << log.Text();
}

TEST_F(HelpText, IsTheHelpOrEmptyWithALine) {
    LogCapture log;
    auto element = FakeElement::Make();
    EXPECT_EQ(GetAAHelpText(element, Self), L"");
    element->help = L"Press it";
    EXPECT_EQ(GetAAHelpText(element, Self), L"Press it");
    EXPECT_TRUE(log.Lines().empty());
    element->help = E_FAIL;
    EXPECT_EQ(GetAAHelpText(element, Self), L"");
    EXPECT_TRUE(log.Contains("spAcc->get_accHelp(vChild, &bstrResult) | HRESULT 80004005 | get_accHelp failed")) << log.Text();
    EXPECT_EQ(GetAAHelpText(nullptr, Self), L"");
    EXPECT_TRUE(log.Contains("Expectation not met: spAcc | spAcc is empty")) << log.Text();
}

TEST_F(Parent, IsTheParentOrNullWithALine) {
    LogCapture log;
    auto element = FakeElement::Make();
    auto parent = FakeElement::Make();
    element->parent = parent;
    EXPECT_EQ(GetParent(element).p, static_cast<IAccessible*>(parent.p));
    EXPECT_TRUE(log.Lines().empty());
    element->parent.Release();
    element->parentResult = S_FALSE;
    EXPECT_FALSE(GetParent(element));
    EXPECT_TRUE(log.Contains("Failed to get the parent: 0x1")) << log.Text();
    element->parentResult = S_OK;
    EXPECT_FALSE(GetParent(element));
    EXPECT_TRUE(log.Contains("Failed to get the parent: 0x0")) << log.Text();
    element->parentResult = E_FAIL;
    EXPECT_FALSE(GetParent(element));
    EXPECT_TRUE(log.Contains("Failed to get the parent: 0x80004005")) << log.Text();
    EXPECT_FALSE(GetParent(nullptr));
    EXPECT_TRUE(log.Contains("Invalid element")) << log.Text();
}

TEST_F(Parent, ThatIsNoAccessibleObjectIsNull) {
    auto element = FakeElement::Make();
    auto parent = FakeElement::Make();
    parent->isAccessible = false;
    element->parent = parent;
    EXPECT_FALSE(GetParent(element));
}

}  // namespace
}  // namespace Zorvex::AAUtil
