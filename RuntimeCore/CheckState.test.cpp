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

TEST_F(CheckState, IsSetByTheDefaultActionWhereItDiffers) {
    for (const LONG role : {ROLE_SYSTEM_CHECKBUTTON, ROLE_SYSTEM_RADIOBUTTON}) {
        auto element = FakeElement::Make();
        element->roleAnswer = role;
        element->stateAnswer = LONG{0x20};
        EXPECT_EQ(SetIsChecked(element, Self, true), S_OK);
        EXPECT_EQ(element->calls["accDoDefaultAction"], 1);
        // The toggle is taken for granted: no second read, and a state that stays is no failure.
        EXPECT_EQ(element->calls["get_accState"], 1);
    }
    auto box = FakeElement::Make();
    box->roleAnswer = ROLE_SYSTEM_CHECKBUTTON;
    box->stateAnswer = LONG{0x30};
    EXPECT_EQ(SetIsChecked(box, Self, false), S_OK);
    EXPECT_EQ(box->calls["accDoDefaultAction"], 1);
}

TEST_F(CheckState, ThatIsAsWantedNeedsNoAction) {
    for (const LONG role : {ROLE_SYSTEM_CHECKBUTTON, ROLE_SYSTEM_RADIOBUTTON}) {
        auto element = FakeElement::Make();
        element->roleAnswer = role;
        element->stateAnswer = LONG{0x10};
        EXPECT_EQ(SetIsChecked(element, Self, true), S_OK);
        EXPECT_EQ(element->calls["accDoDefaultAction"], 0);
    }
    auto box = FakeElement::Make();
    box->roleAnswer = ROLE_SYSTEM_CHECKBUTTON;
    EXPECT_EQ(SetIsChecked(box, Self, false), S_OK);
    EXPECT_EQ(box->calls["accDoDefaultAction"], 0);
}

TEST_F(CheckState, OfARadioButtonCannotBeTakenAwayWhateverItIs) {
    LogCapture log;
    for (const LONG state : {LONG{0}, LONG{0x10}}) {
        auto radio = FakeElement::Make();
        radio->roleAnswer = ROLE_SYSTEM_RADIOBUTTON;
        radio->stateAnswer = state;
        EXPECT_EQ(SetIsChecked(radio, Self, false), static_cast<HRESULT>(0x80040221u));
        EXPECT_EQ(radio->calls["get_accState"], 0);
        EXPECT_EQ(radio->calls["accDoDefaultAction"], 0);
    }
    EXPECT_EQ(log.Count("E [SetIsChecked] Cannot un-check a radio; check another radio in the same group instead;"), 2u) << log.Text();
}

TEST_F(CheckState, OfAnotherRoleCannotBeSetEither) {
    for (const bool wanted : {false, true}) {
        LogCapture log;
        auto button = FakeElement::Make();
        EXPECT_EQ(SetIsChecked(button, Self, wanted), static_cast<HRESULT>(0x80040221u));
        EXPECT_EQ(log.Lines(), std::vector<std::string>{"E [SetIsChecked] Not a checkable element"});
        EXPECT_EQ(button->calls["accDoDefaultAction"], 0);
    }
}

TEST_F(CheckState, ThatCannotBeSetSaysWhatFailed) {
    LogCapture log;
    const auto said = [&log](const char* text) {
        const bool found = log.Lines() == std::vector<std::string>{std::string("E [SetIsChecked] ") + text};
        log.Clear();
        return found;
    };
    EXPECT_EQ(SetIsChecked(nullptr, Self, true), E_FAIL);
    EXPECT_TRUE(said("spAcc is NULL"));
    for (const VariantAnswer& role : {VariantAnswer::Failure(E_ACCESSDENIED), VariantAnswer(CComVariant(L"check box"))}) {
        auto element = FakeElement::Make();
        element->roleAnswer = role;
        EXPECT_EQ(SetIsChecked(element, Self, true), E_FAIL);
        EXPECT_TRUE(said("spAcc->get_accRole failed"));
    }
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_CHECKBUTTON;
    element->stateAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(SetIsChecked(element, Self, true), E_ACCESSDENIED);
    EXPECT_TRUE(said("spAcc->get_accState"));
    element->stateAnswer = CComVariant();
    EXPECT_EQ(SetIsChecked(element, Self, true), E_FAIL);
    EXPECT_TRUE(said("Invalid variant type"));
    EXPECT_EQ(element->calls["accDoDefaultAction"], 0);
    element->stateAnswer = LONG{0};
    element->actionResult = DISP_E_MEMBERNOTFOUND;
    EXPECT_EQ(SetIsChecked(element, Self, true), DISP_E_MEMBERNOTFOUND);
    EXPECT_TRUE(said("spAcc->accDoDefaultAction failed"));
    // Another success of the action counts as done.
    element->actionResult = S_FALSE;
    EXPECT_EQ(SetIsChecked(element, Self, true), S_OK);
}

}  // namespace
}  // namespace Zorvex::AAUtil
