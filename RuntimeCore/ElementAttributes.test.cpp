#include "RuntimeCore/ElementAttributes.h"

#include <gtest/gtest.h>

#include "RuntimeCore/NativeAttributes.h"
#include "tests/Support/FakeElement.h"

namespace Zorvex {
namespace {

using Testing::FakeElement;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

using ElementAttribute = Testing::FakeElementTest;
using NativeAttribute = Testing::FakeElementTest;

HRESULT Read(FakeElement* element, const wchar_t* name, CComVariant& value) {
    value = CComVariant(L"left over");
    return GetElementAttribute(nullptr, element, Self, false, name, value);
}

HRESULT ReadNative(FakeElement* element, const wchar_t* name, CComVariant& value, LONG child = CHILDID_SELF) {
    value = CComVariant(L"left over");
    return GetNativeAttribute(element, CComVariant(child), name, value);
}

void ExpectRectangle(const CComVariant& value, const LONG (&edges)[4]) {
    ASSERT_EQ(value.vt, VT_ARRAY | VT_I4);
    for (LONG i = 0; i < 4; ++i) {
        LONG edge = 0;
        EXPECT_EQ(::SafeArrayGetElement(value.parray, &i, &edge), S_OK);
        EXPECT_EQ(edge, edges[i]);
    }
}

void ExpectText(const CComVariant& value, const wchar_t* text) {
    ASSERT_EQ(value.vt, VT_BSTR);
    EXPECT_EQ(std::wstring(value.bstrVal ? value.bstrVal : L"(null)"), text);
}

TEST_F(ElementAttribute, NamesAreTheNineOfTheTableThenValueAndScreenRect) {
    const std::vector<CString> names = ElementAttributeNames();
    ASSERT_EQ(names.size(), 11u);
    EXPECT_EQ(names[0], L"aastate");
    EXPECT_EQ(names[9], L"value");
    EXPECT_EQ(names[10], L"screenRect");
}

TEST_F(ElementAttribute, OfTheTableIsAText) {
    auto element = FakeElement::Make();
    element->name = L"OK";
    CComVariant value;
    EXPECT_EQ(Read(element, L"name", value), S_OK);
    ExpectText(value, L"OK");
    EXPECT_EQ(Read(element, L"role", value), S_OK);
    ExpectText(value, L"push button");
}

TEST_F(ElementAttribute, WithoutATextIsAnEmptyTextAndNoFailure) {
    auto element = FakeElement::Make();
    CComVariant value;
    EXPECT_EQ(Read(element, L"name", value), S_OK);
    ExpectText(value, L"");
    EXPECT_EQ(Read(element, L"value", value), S_OK);
    ExpectText(value, L"");
}

TEST_F(ElementAttribute, ThatFailedIsAnEmptyVariantWithTheCode) {
    auto element = FakeElement::Make();
    element->stateAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    element->value = DISP_E_MEMBERNOTFOUND;
    element->locationResult = E_FAIL;
    CComVariant value;
    EXPECT_EQ(Read(element, L"aastate", value), E_ACCESSDENIED);
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_EQ(Read(element, L"value", value), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_EQ(Read(element, L"screenRect", value), E_FAIL);
    EXPECT_EQ(value.vt, VT_EMPTY);
}

TEST_F(ElementAttribute, ValueAndScreenRectGoBeyondTheTable) {
    auto element = FakeElement::Make();
    element->value = L"50%";
    element->location = {10, 20, 30, 40};
    CComVariant value;
    EXPECT_EQ(Read(element, L"value", value), S_OK);
    ExpectText(value, L"50%");
    EXPECT_EQ(Read(element, L"screenRect", value), S_OK);
    ExpectRectangle(value, {10, 20, 40, 60});
}

TEST_F(ElementAttribute, OfAnUnknownNameOrNoElementIsAnInvalidArgument) {
    auto element = FakeElement::Make();
    CComVariant value;
    for (const wchar_t* name : {L"", L"Name", L"screenrect", L"accName"}) {
        EXPECT_EQ(Read(element, name, value), E_INVALIDARG);
        EXPECT_EQ(value.vt, VT_EMPTY);
    }
    EXPECT_EQ(Read(nullptr, L"name", value), E_INVALIDARG);
}

TEST_F(ElementAttribute, ReadsIA2WhereToldTo) {
    auto element = FakeElement::Make();
    element->ia2Text = L"web";
    CComVariant value;
    EXPECT_EQ(GetElementAttribute(nullptr, element, Self, true, L"text", value), S_OK);
    ExpectText(value, L"web");
}

TEST_F(NativeAttribute, TextsAreThoseOfThePlatform) {
    auto element = FakeElement::Make();
    element->name = L"a\nb";
    element->value = L"value";
    element->description = L"description";
    element->help = L"help";
    element->shortcut = L"Ctrl+S";
    element->defaultAction = L"Press";
    const struct { const wchar_t* name; const wchar_t* text; } cases[] = {
        {L"accName", L"a\nb"}, {L"accValue", L"value"}, {L"accDescription", L"description"}, {L"accHelp", L"help"},
        {L"accKeyboardShortcut", L"Ctrl+S"}, {L"accDefaultAction", L"Press"}};
    for (const auto& expected : cases) {
        CComVariant value;
        EXPECT_EQ(ReadNative(element, expected.name, value), S_OK);
        ExpectText(value, expected.text);
    }
}

TEST_F(NativeAttribute, ANullTextIsAnEmptyOneAndAFailureAnEmptyVariant) {
    auto element = FakeElement::Make();
    CComVariant value;
    EXPECT_EQ(ReadNative(element, L"accName", value), S_OK);
    ExpectText(value, L"");
    element->name = E_ACCESSDENIED;
    EXPECT_EQ(ReadNative(element, L"accName", value), E_ACCESSDENIED);
    EXPECT_EQ(value.vt, VT_EMPTY);
}

TEST_F(NativeAttribute, NumbersAreLongs) {
    auto element = FakeElement::Make();
    element->stateAnswer = LONG{0x100040};
    element->childCount = {S_OK, 7};
    element->ia2Role = {S_OK, 1025};
    element->ia2States = {S_OK, 0x40001};
    element->ia2UniqueId = {S_OK, -5};
    const struct { const wchar_t* name; LONG number; } cases[] = {
        {L"accRole", ROLE_SYSTEM_PUSHBUTTON}, {L"accState", 0x100040}, {L"accChildCount", 7},
        {L"role", 1025}, {L"states", 0x40001}, {L"uniqueID", -5}};
    for (const auto& expected : cases) {
        CComVariant value;
        EXPECT_EQ(ReadNative(element, expected.name, value), S_OK);
        EXPECT_EQ(value.vt, VT_I4);
        EXPECT_EQ(value.lVal, expected.number);
    }
}

TEST_F(NativeAttribute, ARoleOrStateThatIsNoNumberIsUnexpected) {
    auto element = FakeElement::Make();
    element->roleAnswer = CComVariant(L"gadget");
    element->stateAnswer = CComVariant();
    CComVariant value;
    EXPECT_EQ(ReadNative(element, L"accRole", value), E_UNEXPECTED);
    EXPECT_EQ(ReadNative(element, L"accState", value), E_UNEXPECTED);
    EXPECT_EQ(value.vt, VT_EMPTY);
    element->roleAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(ReadNative(element, L"accRole", value), E_ACCESSDENIED);
}

TEST_F(NativeAttribute, LocationIsLeftTopRightBottom) {
    auto element = FakeElement::Make();
    element->location = {-10, 20, 30, 40};
    CComVariant value;
    EXPECT_EQ(ReadNative(element, L"accLocation", value), S_OK);
    ExpectRectangle(value, {-10, 20, 20, 60});
    element->locationResult = E_FAIL;
    EXPECT_EQ(ReadNative(element, L"accLocation", value), E_FAIL);
}

TEST_F(NativeAttribute, ObjectAttributesComeAsOneStringOrOneByOne) {
    auto element = FakeElement::Make();
    element->ia2Attributes = L"class:Foo;tag:DIV;";
    CComVariant value;
    EXPECT_EQ(ReadNative(element, L"attributes", value), S_OK);
    ExpectText(value, L"class:Foo;tag:DIV;");
    EXPECT_EQ(ReadNative(element, L"attributes.TAG", value), S_OK);
    ExpectText(value, L"div");
    EXPECT_EQ(ReadNative(element, L"attributes.id", value), S_OK);
    ExpectText(value, L"");
    EXPECT_EQ(ReadNative(element, L"attributes.", value), E_INVALIDARG);
    EXPECT_EQ(value.vt, VT_EMPTY);
}

TEST_F(NativeAttribute, OfASimpleElementHasNoChildrenAndNoIA2) {
    auto element = FakeElement::Make();
    element->childCount = {S_OK, 7};
    element->ia2Attributes = L"tag:div;";
    CComVariant value;
    EXPECT_EQ(ReadNative(element, L"accChildCount", value, 3), S_OK);
    EXPECT_EQ(value.lVal, 0);
    for (const wchar_t* name : {L"role", L"states", L"uniqueID", L"attributes", L"attributes.tag"}) {
        EXPECT_EQ(ReadNative(element, name, value, 3), E_NOINTERFACE);
        EXPECT_EQ(value.vt, VT_EMPTY);
    }
}

TEST_F(NativeAttribute, WithoutIA2PassesTheCodeOn) {
    auto element = FakeElement::Make();
    element->offersIA2 = false;
    CComVariant value;
    EXPECT_EQ(ReadNative(element, L"states", value), E_NOINTERFACE);
    element->serviceResult = E_ACCESSDENIED;
    EXPECT_EQ(ReadNative(element, L"states", value), E_ACCESSDENIED);
    EXPECT_EQ(ReadNative(element, L"attributes.tag", value), E_ACCESSDENIED);
}

TEST_F(NativeAttribute, OfAnUnknownNameOrNoElementIsAnInvalidArgument) {
    auto element = FakeElement::Make();
    CComVariant value;
    for (const wchar_t* name : {L"", L"accname", L"name", L"attributesX"}) {
        EXPECT_EQ(ReadNative(element, name, value), E_INVALIDARG);
        EXPECT_EQ(value.vt, VT_EMPTY);
    }
    EXPECT_EQ(ReadNative(nullptr, L"accName", value), E_INVALIDARG);
    EXPECT_EQ(GetNativeAttribute(element, CComVariant(), L"accName", value), E_INVALIDARG);
}

TEST_F(NativeAttribute, EveryListedNameIsKnown) {
    auto element = FakeElement::Make();
    CComVariant value;
    for (const wchar_t* name : NativeAttributeNames()) EXPECT_NE(ReadNative(element, name, value), E_INVALIDARG);
    EXPECT_EQ(NativeAttributeNames().size(), 14u);
}

}  // namespace
}  // namespace Zorvex
