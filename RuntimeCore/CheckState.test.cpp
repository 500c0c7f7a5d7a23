#include "RuntimeCore/CheckState.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::FakeElement;
using Testing::LogCapture;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

using CheckState = Testing::FakeElementTest;

TEST_F(CheckState, OfCheckBoxesAndRadioButtonsIsTheCheckedBit) {
    for (const LONG role : {ROLE_SYSTEM_CHECKBUTTON, ROLE_SYSTEM_RADIOBUTTON}) {
        auto element = FakeElement::Make();
        element->roleAnswer = role;
        bool checked = false;
        element->stateAnswer = LONG{0x30};
        EXPECT_EQ(GetIsChecked(element, Self, checked), S_OK);
        EXPECT_TRUE(checked);
        element->stateAnswer = LONG{0x20};
        EXPECT_EQ(GetIsChecked(element, Self, checked), S_OK);
        EXPECT_FALSE(checked);
    }
}

TEST_F(CheckState, OfAnotherRoleIsTheCodeOfANonCheckableTarget) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->stateAnswer = LONG{0x10};
    bool checked = true;
    EXPECT_EQ(GetIsChecked(element, Self, checked), static_cast<HRESULT>(0x80040221u));
    EXPECT_FALSE(checked);
    EXPECT_TRUE(log.Contains("Element is not checkable"));
    EXPECT_FALSE(log.Contains("spAcc->get_accRole failed"));
}

TEST_F(CheckState, WithAnUnreadableRoleIsNotCheckableEither) {
    for (const VariantAnswer& role : {VariantAnswer::Failure(E_FAIL), VariantAnswer(CComVariant(L"check box"))}) {
        LogCapture log;
        auto element = FakeElement::Make();
        element->roleAnswer = role;
        bool checked = false;
        EXPECT_EQ(GetIsChecked(element, Self, checked), NotCheckable);
        EXPECT_TRUE(log.Contains("spAcc->get_accRole failed"));
        EXPECT_TRUE(log.Contains("Element is not checkable"));
    }
}

TEST_F(CheckState, NeedsAnElementAndALongChildId) {
    LogCapture log;
    auto element = FakeElement::Make();
    bool checked = true;
    EXPECT_EQ(GetIsChecked(nullptr, Self, checked), E_INVALIDARG);
    EXPECT_EQ(GetIsChecked(element, CComVariant(), checked), E_INVALIDARG);
    EXPECT_FALSE(checked);
    EXPECT_EQ(log.Count("AAUtil::GetIsChecked: Invalid arguments in CWin32BaseElement::GetIsCheckedUsingAA"), 2u);
}

TEST_F(CheckState, LogsAFailedStateAndAStateOfAnotherType) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_CHECKBUTTON;
    element->stateAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    bool checked = true;
    EXPECT_EQ(GetIsChecked(element, Self, checked), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("AAUtil::GetIsChecked: spAcc->get_accState in CWin32BaseElement::GetIsCheckedUsingAA"));
    element->stateAnswer = CComVariant();
    EXPECT_EQ(GetIsChecked(element, Self, checked), E_UNEXPECTED);
    EXPECT_TRUE(log.Contains("AAUtil::GetIsChecked: Invalid variant type in CWin32BaseElement::GetIsCheckedUsingAA"));
}

}  // namespace
}  // namespace Zorvex::AAUtil
