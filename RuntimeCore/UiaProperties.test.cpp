#include "RuntimeCore/UiaProperties.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeElement.h"

namespace Zorvex {
namespace {

using Testing::FakeElement;
using Testing::VariantAnswer;

using UiaProperty = Testing::FakeElementTest;

HRESULT Read(FakeElement* element, CString& text, LONG child = CHILDID_SELF) {
    text = L"left over";
    return GetUiaProperty(UiaAutomationIdProperty, element, child, text);
}

TEST_F(UiaProperty, IsTheTextOfTheAskedNumber) {
    auto element = FakeElement::Make();
    element->uiaProperty = CComVariant(L"okButton");
    CString text;
    EXPECT_EQ(Read(element, text), S_OK);
    EXPECT_EQ(text, L"okButton");
    EXPECT_EQ(element->askedProperty, 30011);
    EXPECT_EQ(GetUiaProperty(UiaLabeledByProperty, element, CHILDID_SELF, text), S_OK);
    EXPECT_EQ(element->askedProperty, 30018);
}

TEST_F(UiaProperty, OfASimpleElementIsAskedOfItsOwnObject) {
    auto element = FakeElement::Make();
    auto child = FakeElement::Make();
    element->uiaProperty = CComVariant(L"container");
    child->uiaProperty = CComVariant(L"child");
    element->exOfChild = child;
    CString text;
    EXPECT_EQ(Read(element, text, 3), S_OK);
    EXPECT_EQ(text, L"child");
    element->exOfChild.Release();
    EXPECT_EQ(Read(element, text, 3), E_NOINTERFACE);
    element->exOfChildResult = E_INVALIDARG;
    EXPECT_EQ(Read(element, text, 3), E_INVALIDARG);
    EXPECT_EQ(text, L"");
}

TEST_F(UiaProperty, OfAnotherTypeIsUnexpectedAndEmpty) {
    auto element = FakeElement::Make();
    CString text;
    EXPECT_EQ(Read(element, text), E_UNEXPECTED);
    EXPECT_EQ(text, L"");
    // A label given as an element.
    CComVariant label;
    label.vt = VT_UNKNOWN;
    label.punkVal = element->AsDispatch();
    label.punkVal->AddRef();
    element->uiaProperty = label;
    EXPECT_EQ(Read(element, text), static_cast<HRESULT>(0x8000FFFFu));
    element->uiaProperty = VariantAnswer::NullText();
    EXPECT_EQ(Read(element, text), E_UNEXPECTED);
}

TEST_F(UiaProperty, ThatIsEmptyButNotNullIsAnAnswer) {
    auto element = FakeElement::Make();
    element->uiaProperty = CComVariant(L"");
    CString text;
    EXPECT_EQ(Read(element, text), S_OK);
    EXPECT_EQ(text, L"");
}

TEST_F(UiaProperty, PassesFailuresOnAndNamesMissingInterfaces) {
    auto element = FakeElement::Make();
    CString text;
    element->uiaProperty = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(Read(element, text), E_ACCESSDENIED);
    element->offersProvider = false;
    EXPECT_EQ(Read(element, text), E_NOINTERFACE);
    element->offersEx = false;
    EXPECT_EQ(Read(element, text), E_NOINTERFACE);
    element->serviceResult = E_FAIL;
    EXPECT_EQ(Read(element, text), E_FAIL);
    element->offersServices = false;
    EXPECT_EQ(Read(element, text), E_NOINTERFACE);
    EXPECT_EQ(Read(nullptr, text), E_INVALIDARG);
}

}  // namespace
}  // namespace Zorvex
