#include "RuntimeCore/AAUtilitiesSelection.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::FakeElement;
using Testing::FakeEnumerator;
using Testing::LogCapture;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

using Selection = Testing::FakeElementTest;
using SelectSupport = Testing::FakeElementTest;

struct Selected {
    SelectionResult result;
    CComPtr<IAccessible> container;
    std::vector<CComVariant> children;
};

Selected Read(IAccessible* element, SelectionExtent extent = SelectionExtent::All) {
    Selected selected;
    selected.result = GetSelectedChildren(element, selected.container, selected.children, extent);
    return selected;
}

CComVariant UnknownOf(IUnknown* object) {
    CComVariant variant;
    variant.vt = VT_UNKNOWN;
    variant.punkVal = object;
    if (object) object->AddRef();
    return variant;
}

CComVariant DispatchOf(FakeElement* object) { return CComVariant(object->AsDispatch()); }

TEST_F(Selection, WithoutSupportIsToldApartFromAFailure) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->selection = VariantAnswer::Failure(DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Read(element).result, SelectionResult::NotSupported);
    EXPECT_TRUE(log.Contains("GetSelectedChildren: pAccElem has no selection support"));
    element->selection = VariantAnswer::Failure(E_FAIL);
    EXPECT_EQ(Read(element).result, SelectionResult::Failure);
    EXPECT_TRUE(log.Contains("GetSelectedChildren: get_accSelection returns hRes: 2147500037")) << log.Text();
    element->selection = VariantAnswer::Failure(S_FALSE);
    EXPECT_EQ(Read(element).result, SelectionResult::Failure);
    EXPECT_TRUE(log.Contains("GetSelectedChildren: get_accSelection returns hRes: 1")) << log.Text();
    EXPECT_EQ(Read(nullptr).result, SelectionResult::Failure);
}

TEST_F(Selection, OfNothingIsSuccess) {
    auto element = FakeElement::Make();
    const Selected selected = Read(element);
    EXPECT_EQ(selected.result, SelectionResult::Success);
    EXPECT_TRUE(selected.children.empty());
}

TEST_F(Selection, OfOneSimpleChildIsThatChildOfTheElement) {
    auto element = FakeElement::Make();
    element->selection = LONG{3};
    const Selected selected = Read(element);
    EXPECT_EQ(selected.result, SelectionResult::Success);
    EXPECT_EQ(selected.container.p, static_cast<IAccessible*>(element.p));
    ASSERT_EQ(selected.children.size(), 1u);
    EXPECT_EQ(selected.children[0].lVal, 3);
}

TEST_F(Selection, OfOneObjectIsThatObject) {
    auto item = FakeElement::Make();
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_LIST;
    element->selection = DispatchOf(item);
    const Selected selected = Read(element);
    EXPECT_EQ(selected.result, SelectionResult::Success);
    EXPECT_EQ(selected.container.p, static_cast<IAccessible*>(element.p));
    ASSERT_EQ(selected.children.size(), 1u);
    EXPECT_EQ(selected.children[0].vt, VT_DISPATCH);
    EXPECT_EQ(selected.children[0].pdispVal, item->AsDispatch());
}

TEST_F(Selection, OfAnObjectThatIsNotAccessibleOrNullIsNothing) {
    auto item = FakeElement::Make();
    item->isAccessible = false;
    auto element = FakeElement::Make();
    element->selection = DispatchOf(item);
    EXPECT_EQ(Read(element).result, SelectionResult::Success);
    EXPECT_TRUE(Read(element).children.empty());
    CComVariant null;
    null.vt = VT_DISPATCH;
    null.pdispVal = nullptr;
    element->selection = null;
    EXPECT_EQ(Read(element).result, SelectionResult::Success);
    EXPECT_TRUE(Read(element).children.empty());
}

TEST_F(Selection, OfAnEnumeratorKeepsChildIdsAndAccessibleObjects) {
    auto item = FakeElement::Make();
    auto stranger = FakeElement::Make();
    stranger->isAccessible = false;
    auto element = FakeElement::Make();
    CComPtr<FakeEnumerator> items(new FakeEnumerator(
        {CComVariant(LONG{2}), CComVariant(L"not a child"), DispatchOf(item), DispatchOf(stranger), CComVariant(LONG{5})}));
    element->selection = UnknownOf(items);
    const Selected selected = Read(element);
    EXPECT_EQ(selected.result, SelectionResult::Success);
    EXPECT_EQ(selected.container.p, static_cast<IAccessible*>(element.p));
    ASSERT_EQ(selected.children.size(), 3u);
    EXPECT_EQ(selected.children[0].lVal, 2);
    EXPECT_EQ(selected.children[1].pdispVal, item->AsDispatch());
    EXPECT_EQ(selected.children[2].lVal, 5);
}

TEST_F(Selection, FirstOnlyStopsAfterTheFirstRoundWhateverItBrought) {
    auto element = FakeElement::Make();
    CComPtr<FakeEnumerator> items(new FakeEnumerator({CComVariant(LONG{2}), CComVariant(LONG{5})}));
    element->selection = UnknownOf(items);
    EXPECT_EQ(Read(element, SelectionExtent::FirstOnly).children.size(), 1u);
    CComPtr<FakeEnumerator> useless(new FakeEnumerator({CComVariant(L"?"), CComVariant(LONG{5})}));
    element->selection = UnknownOf(useless);
    EXPECT_TRUE(Read(element, SelectionExtent::FirstOnly).children.empty());
}

TEST_F(Selection, OfAnEndlessEnumeratorEndsAtTheBound) {
    auto element = FakeElement::Make();
    CComPtr<FakeEnumerator> items(new FakeEnumerator({CComVariant(LONG{1})}, true));
    element->selection = UnknownOf(items);
    EXPECT_EQ(Read(element).children.size(), MaximumSelectedChildren);
    CComPtr<FakeEnumerator> useless(new FakeEnumerator({CComVariant()}, true));
    element->selection = UnknownOf(useless);
    EXPECT_TRUE(Read(element).children.empty());
}

TEST_F(Selection, OfAnUnknownThatIsNoEnumeratorOrNullIsNothing) {
    auto element = FakeElement::Make();
    element->selection = UnknownOf(element->AsDispatch());
    EXPECT_EQ(Read(element).result, SelectionResult::Success);
    element->selection = CComVariant();
    CComVariant null;
    null.vt = VT_UNKNOWN;
    null.punkVal = nullptr;
    element->selection = null;
    EXPECT_EQ(Read(element).result, SelectionResult::Success);
}

TEST_F(Selection, OfAnotherTypeIsLoggedAndNothing) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->selection = CComVariant(L"all of it");
    const Selected selected = Read(element);
    EXPECT_EQ(selected.result, SelectionResult::Success);
    EXPECT_TRUE(selected.children.empty());
    EXPECT_TRUE(log.Contains("GetSelectedChildren: Invalid vSel.vt in GetSelectedChildren"));
}

TEST_F(SelectSupport, FollowsTheRole) {
    const struct { LONG role; bool supported; const wchar_t* item; } cases[] = {
        {ROLE_SYSTEM_LIST, true, L"list item"},      {ROLE_SYSTEM_COMBOBOX, true, L"list item"},
        {ROLE_SYSTEM_OUTLINE, true, L"outline item"}, {ROLE_SYSTEM_TABLE, true, L"cell"},
        {ROLE_SYSTEM_PAGETABLIST, true, L"page tab"}, {ROLE_SYSTEM_PUSHBUTTON, false, L"list item"}};
    for (const auto& expected : cases) {
        auto element = FakeElement::Make();
        element->roleAnswer = expected.role;
        CString item;
        EXPECT_EQ(HasSelectSupport(element, Self, item), expected.supported) << expected.role;
        EXPECT_EQ(item, expected.item);
    }
}

TEST_F(SelectSupport, IsFalseForAnUnreadableRole) {
    auto element = FakeElement::Make();
    CString item;
    element->roleAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_FALSE(HasSelectSupport(element, Self, item));
    element->roleAnswer = CComVariant(L"list");
    EXPECT_FALSE(HasSelectSupport(element, Self, item));
    EXPECT_FALSE(HasSelectSupport(nullptr, Self, item));
    EXPECT_EQ(item, L"list item");
}

TEST_F(SelectSupport, LogsRoleAndAnswer) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->roleAnswer = ROLE_SYSTEM_OUTLINE;
    CString item;
    HasSelectSupport(element, Self, item);
    EXPECT_TRUE(log.Contains("HasSelectSupport, element with role 0x23")) << log.Text();
    EXPECT_TRUE(log.Contains("HasSelectSupport: 1, expectedItemRole outline item")) << log.Text();
}

}  // namespace
}  // namespace Zorvex::AAUtil
