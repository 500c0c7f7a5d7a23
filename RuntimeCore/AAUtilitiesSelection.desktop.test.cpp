#include <gtest/gtest.h>

#include "RuntimeCore/AAUtilitiesSelection.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeElement.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::DesktopFixture;
using Testing::FakeElement;

// A table's selection is an object whose children are the selected ones.
class TableSelection : public Testing::FakeElementTest {
protected:
    SelectionResult Read(SelectionExtent extent = SelectionExtent::All) {
        children.clear();
        return GetSelectedChildren(table, container, children, extent);
    }
    void SetUp() override {
        table->roleAnswer = ROLE_SYSTEM_TABLE;
        CComPtr<IAccessible> list = desktop.Element("list");
        table->selection = CComVariant(static_cast<IDispatch*>(list.p));
    }
    void Spoil(const char* call, LONG count) {
        Simulated::Fault fault;
        fault.call = call;
        fault.count = count;
        desktop.AddFault("list", fault);
    }
    void TearDown() override {
        table.Release();
        container.Release();
        children.clear();
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        FakeElementTest::TearDown();
    }

    DesktopFixture desktop{R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame", "objects": { "client": {
      "id": "list", "role": "list", "children": [ { "id": "a", "role": "cell", "name": "A" }, { "id": "b", "role": "cell", "name": "B", "simple": true } ] } } } ] })"};
    CComPtr<FakeElement> table = FakeElement::Make();
    CComPtr<IAccessible> container;
    std::vector<CComVariant> children;
};

TEST_F(TableSelection, IsTheChildrenOfTheObject) {
    EXPECT_EQ(Read(), SelectionResult::Success);
    EXPECT_EQ(container.p, desktop.Element("list").p);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0].vt, VT_DISPATCH);
    EXPECT_EQ(children[1].vt, VT_I4);
    EXPECT_EQ(children[1].lVal, 2);
}

TEST_F(TableSelection, FirstOnlyReadsOneChild) {
    EXPECT_EQ(Read(SelectionExtent::FirstOnly), SelectionResult::Success);
    EXPECT_EQ(children.size(), 1u);
}

TEST_F(TableSelection, OfAnotherRoleIsTheObjectItself) {
    table->roleAnswer = ROLE_SYSTEM_LIST;
    EXPECT_EQ(Read(), SelectionResult::Success);
    ASSERT_EQ(children.size(), 1u);
    EXPECT_EQ(children[0].vt, VT_DISPATCH);
    EXPECT_EQ(container.p, static_cast<IAccessible*>(table.p));
}

TEST_F(TableSelection, WithACountThatLiesIsBounded) {
    for (const LONG count : {-1, 1'000'000, 0x7FFFFFFF}) {
        desktop.ClearFaults();
        Spoil("get_accChildCount", count);
        EXPECT_EQ(Read(), SelectionResult::Failure) << count;
        EXPECT_TRUE(children.empty());
    }
    desktop.ClearFaults();
    Spoil("get_accChildCount", 999'999);
    EXPECT_EQ(Read(), SelectionResult::Success);
    EXPECT_EQ(children.size(), 999'999u);
}

TEST_F(TableSelection, WithFewerChildrenThanCountedTakesThose) {
    Spoil("AccessibleChildren", 1);
    EXPECT_EQ(Read(), SelectionResult::Success);
    EXPECT_EQ(children.size(), 1u);
    desktop.ClearFaults();
    Spoil("AccessibleChildren", -5);
    EXPECT_EQ(Read(), SelectionResult::Success);
    EXPECT_TRUE(children.empty());
}

TEST_F(TableSelection, ThatClaimsMoreThanAskedForGrowsToTheClaimWithinTheBound) {
    Spoil("AccessibleChildren", 5);
    EXPECT_EQ(Read(), SelectionResult::Success);
    ASSERT_EQ(children.size(), 5u);
    EXPECT_EQ(children[4].vt, VT_EMPTY);
    desktop.ClearFaults();
    Spoil("AccessibleChildren", 0x7FFFFFFF);
    EXPECT_EQ(Read(), SelectionResult::Success);
    EXPECT_EQ(children.size(), 2u);
}

TEST_F(TableSelection, WhoseChildrenCanNotBeReadIsAFailure) {
    Simulated::Fault fault;
    fault.call = "get_accChildCount";
    fault.result = E_FAIL;
    desktop.AddFault("list", fault);
    EXPECT_EQ(Read(), SelectionResult::Failure);
    desktop.ClearFaults();
    fault.call = "AccessibleChildren";
    desktop.AddFault("list", fault);
    EXPECT_EQ(Read(), SelectionResult::Failure);
}

}  // namespace
}  // namespace Zorvex::AAUtil
