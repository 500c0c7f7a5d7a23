#include "RuntimeCore/AAUtilitiesStates.h"

#include <gtest/gtest.h>

#include "RuntimeCore/AAUtilitiesLocation.h"
#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::FakeElement;
using Testing::LogCapture;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

using Location = Testing::FakeElementTest;
using ElementState = Testing::FakeElementTest;
using DisabledElement = Testing::FakeElementTest;

bool Has(LONG state, LONG on, LONG off) {
    auto element = FakeElement::Make();
    element->stateAnswer = state;
    bool result = false;
    EXPECT_EQ(HasAAState(element, Self, on, off, result), S_OK);
    return result;
}

TEST_F(Location, IsLeftTopAndTheSumsWithWidthAndHeight) {
    auto element = FakeElement::Make();
    element->location = {-5, 20, 30, 40};
    RECT rectangle{};
    EXPECT_EQ(GetAALocation(element, Self, rectangle), S_OK);
    EXPECT_EQ(rectangle.left, -5);
    EXPECT_EQ(rectangle.top, 20);
    EXPECT_EQ(rectangle.right, 25);
    EXPECT_EQ(rectangle.bottom, 60);
}

TEST_F(Location, OfHugeNumbersDoesNotOverflow) {
    auto element = FakeElement::Make();
    element->location = {0x7FFFFFFF, 0, 1, 0};
    RECT rectangle{};
    EXPECT_EQ(GetAALocation(element, Self, rectangle), S_OK);
    EXPECT_EQ(rectangle.right, static_cast<LONG>(0x80000000u));
}

TEST_F(Location, OfNoElementIsAnInvalidArgument) {
    LogCapture log;
    RECT rectangle{1, 2, 3, 4};
    EXPECT_EQ(GetAALocation(nullptr, Self, rectangle), E_INVALIDARG);
    EXPECT_TRUE(log.Contains("Param Condition not met: pAA | IAccessible pointer is invalid")) << log.Text();
    EXPECT_EQ(rectangle.left, 1);
}

TEST_F(Location, PassesTheCodeOfAFailedReadOn) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->locationResult = E_ACCESSDENIED;
    RECT rectangle{1, 2, 3, 4};
    EXPECT_EQ(GetAALocation(element, Self, rectangle), E_ACCESSDENIED);
    EXPECT_EQ(rectangle.right, 3);
    EXPECT_TRUE(log.Contains("pAA->accLocation(&x, &y, &cx, &cy, varChild) | HRESULT 80070005 | AA Object accLocation failed")) << log.Text();
}

TEST_F(ElementState, WithoutMasksIsTrueForAnyReadableState) {
    EXPECT_TRUE(Has(0, 0, 0));
    EXPECT_TRUE(Has(-1, 0, 0));
}

TEST_F(ElementState, NeedsAllBitsThatShallBeOnAndNoneThatShallBeOff) {
    EXPECT_TRUE(Has(0x204, 0x204, 0x400));
    EXPECT_FALSE(Has(0x200, 0x204, 0));
    EXPECT_FALSE(Has(0x604, 0x204, 0x400));
    EXPECT_FALSE(Has(0x400, 0, 0x401));
    EXPECT_TRUE(Has(0x2, 0, 0x401));
}

TEST_F(ElementState, OfNoElementIsAnInvalidArgument) {
    LogCapture log;
    bool result = true;
    EXPECT_EQ(HasAAState(nullptr, Self, 0, 0, result), E_INVALIDARG);
    EXPECT_FALSE(result);
    EXPECT_TRUE(log.Contains("Param Condition not met: pAA | IAccessible pointer is invalid"));
}

TEST_F(ElementState, WarnsOfAFailedReadAndOfAnotherType) {
    LogCapture log;
    auto element = FakeElement::Make();
    bool result = true;
    element->stateAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(HasAAState(element, Self, 0, 0, result), E_ACCESSDENIED);
    EXPECT_FALSE(result);
    EXPECT_TRUE(log.Contains("AAUtilities::HasState() IAccessible::get_accState() failed or state type is not VT_I4, "
                             "hResult=x0x80070005 varState.vt=0")) << log.Text();
    element->stateAnswer = CComVariant(L"focused");
    EXPECT_EQ(HasAAState(element, Self, 0, 0, result), E_FAIL);
    EXPECT_TRUE(log.Contains("hResult=x0x0 varState.vt=8")) << log.Text();
}

TEST_F(DisabledElement, LooksAtTheUnavailableBit) {
    auto element = FakeElement::Make();
    element->stateAnswer = LONG{0x3};
    EXPECT_TRUE(IsDisabledElement(element, Self));
    element->stateAnswer = LONG{0x2};
    EXPECT_FALSE(IsDisabledElement(element, Self));
}

TEST_F(DisabledElement, IsFalseWithALineOnEveryFailure) {
    LogCapture log;
    auto element = FakeElement::Make();
    EXPECT_FALSE(IsDisabledElement(nullptr, Self));
    EXPECT_FALSE(IsDisabledElement(element, CComVariant()));
    EXPECT_EQ(log.Count("AAUtil::IsDisabledElement: Invalid arguments"), 2u) << log.Text();
    element->stateAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_FALSE(IsDisabledElement(element, Self));
    EXPECT_EQ(log.Count("IsDisabledElement: spAcc->get_accState failed!"), 1u);
    element->stateAnswer = CComVariant(true);
    EXPECT_FALSE(IsDisabledElement(element, Self));
    EXPECT_EQ(log.Count("IsDisabledElement: Invalid variant type!"), 1u);
}

}  // namespace
}  // namespace Zorvex::AAUtil
