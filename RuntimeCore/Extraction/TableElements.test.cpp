#include "RuntimeCore/Extraction/TableElements.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeCalls;
using Testing::FakeObjects;
using Testing::LogCapture;

const HWND Window = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x100));

class TableElementsTest : public ::testing::Test {
protected:
    FakeAccessible& Below(FakeAccessible& parent, LONG role, const wchar_t* name = L"") {
        FakeAccessible& child = objects.Add(role, name);
        child.parent = &parent;
        parent.AddChild(child);
        return child;
    }
    static AAElement Element(FakeAccessible& object, LONG child = CHILDID_SELF) { return {Window, CComPtr<IAccessible>(&object), CComVariant(child)}; }
    // The names of the rows, with blanks between them.
    std::wstring Rows(FakeAccessible& table) {
        std::wstring names;
        for (const AAObjectWrapper& row : GetTableRows(Element(table)))
            names += (names.empty() ? L"" : L" ") + static_cast<FakeAccessible*>(row.container.p)->name;
        EXPECT_EQ(objects.OutstandingReferences(), 0);
        return names;
    }

    LogCapture log;
    FakeObjects objects;
};

TEST_F(TableElementsTest, ATableIsItsOwnTableAndKeepsItsChildId) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    const AAElement found = GetTableFromElement(Element(table, 3));
    EXPECT_EQ(found.spAcc.p, &table);
    EXPECT_EQ(found.child.lVal, 3);
    EXPECT_EQ(found.hWnd, Window);
}

TEST_F(TableElementsTest, AnElementInsideACellClimbsToTheTable) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    FakeAccessible& link = Below(Below(Below(table, ROLE_SYSTEM_ROW), ROLE_SYSTEM_CELL), ROLE_SYSTEM_LINK);
    const AAElement found = GetTableFromElement(Element(link));
    EXPECT_EQ(found.spAcc.p, &table);
    EXPECT_EQ(found.child.lVal, CHILDID_SELF);
    EXPECT_EQ(found.hWnd, Window);
}

TEST_F(TableElementsTest, ASimpleElementAsksItsContainerBeforeAnyParent) {
    FakeAccessible& outer = objects.Add(ROLE_SYSTEM_TABLE);
    // The container answers another role for the child than for itself.
    class TwoRoles : public FakeAccessible {
    public:
        HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* out) override {
            ++roleCalls;
            out->vt = VT_I4;
            out->lVal = child.lVal == CHILDID_SELF ? ROLE_SYSTEM_TABLE : ROLE_SYSTEM_CELL;
            return S_OK;
        }
    } table;
    table.parent = &outer;
    {
        const AAElement found = GetTableFromElement(Element(table, 7));
        EXPECT_EQ(found.spAcc.p, &table);
        EXPECT_EQ(found.child.lVal, CHILDID_SELF);
    }
    EXPECT_EQ(table.roleCalls, 2);
    EXPECT_EQ(table.references, 0);
}

TEST_F(TableElementsTest, TheInnerOneOfNestedTablesIsTaken) {
    FakeAccessible& outer = objects.Add(ROLE_SYSTEM_TABLE);
    FakeAccessible& inner = Below(Below(Below(outer, ROLE_SYSTEM_ROW), ROLE_SYSTEM_CELL), ROLE_SYSTEM_TABLE);
    FakeAccessible& cell = Below(Below(inner, ROLE_SYSTEM_ROW), ROLE_SYSTEM_CELL);
    EXPECT_EQ(GetTableFromElement(Element(cell)).spAcc.p, &inner);
}

TEST_F(TableElementsTest, WithoutATableAboveThereIsNone) {
    FakeAccessible& window = objects.Add(ROLE_SYSTEM_WINDOW);
    EXPECT_FALSE(GetTableFromElement(Element(Below(window, ROLE_SYSTEM_CELL))).spAcc);
    EXPECT_FALSE(GetTableFromElement({}).spAcc);
}

TEST_F(TableElementsTest, AParentThatCannotBeReadEndsTheClimb) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    FakeAccessible& cell = Below(table, ROLE_SYSTEM_CELL);
    cell.parentResult = E_FAIL;
    EXPECT_FALSE(GetTableFromElement(Element(cell)).spAcc);
    cell.parentResult = S_OK;
    table.isAccessible = false;
    EXPECT_FALSE(GetTableFromElement(Element(cell)).spAcc);
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST_F(TableElementsTest, AnUnreadableRoleIsNoTableAndTheClimbGoesOn) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    FakeAccessible& cell = Below(table, ROLE_SYSTEM_CELL);
    cell.roleResult = E_FAIL;
    EXPECT_EQ(GetTableFromElement(Element(cell)).spAcc.p, &table);
    EXPECT_TRUE(log.Contains("E [GetAccRole] GetAccRole: Cannot get role 80004005")) << log.Text();
}

TEST_F(TableElementsTest, AClimbInARingEnds) {
    FakeAccessible& a = objects.Add(ROLE_SYSTEM_CELL);
    FakeAccessible& b = Below(a, ROLE_SYSTEM_ROW);
    a.parent = &b;
    EXPECT_FALSE(GetTableFromElement(Element(a)).spAcc);
    EXPECT_TRUE(log.Contains("E [GetTableFromElement] GetTableFromElement: no table in 10000 levels"));
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST_F(TableElementsTest, RowsBelowTheTableAndInItsGroupsStandInTheOrderOfTheTree) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    Below(table, ROLE_SYSTEM_ROW, L"a");
    FakeAccessible& body = Below(table, ROLE_SYSTEM_GROUPING);
    Below(body, ROLE_SYSTEM_ROW, L"b");
    Below(body, ROLE_SYSTEM_STATICTEXT, L"x");
    Below(body, ROLE_SYSTEM_ROW, L"c");
    Below(table, ROLE_SYSTEM_PUSHBUTTON, L"y");
    Below(table, ROLE_SYSTEM_ROW, L"d");
    EXPECT_EQ(Rows(table), L"a b c d");
}

TEST_F(TableElementsTest, GroupsAreOpenedOneLevelDeep) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    FakeAccessible& group = Below(table, ROLE_SYSTEM_GROUPING);
    Below(Below(group, ROLE_SYSTEM_GROUPING), ROLE_SYSTEM_ROW, L"deep");
    Below(Below(table, ROLE_SYSTEM_PANE), ROLE_SYSTEM_ROW, L"inside");
    EXPECT_EQ(Rows(table), L"");
}

TEST_F(TableElementsTest, ChildrenThatAreNoElementsAreLeftOut) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    table.AddOddChild(CComVariant());
    table.AddOddChild(CComVariant(L"row"));
    Below(table, ROLE_SYSTEM_ROW, L"a");
    EXPECT_EQ(Rows(table), L"a");
}

TEST_F(TableElementsTest, ASimpleTableHasNoRows) {
    FakeAccessible& container = objects.Add(ROLE_SYSTEM_TABLE);
    Below(container, ROLE_SYSTEM_ROW, L"a row of the container");
    EXPECT_TRUE(GetTableRows(Element(container, 1)).empty());
    EXPECT_TRUE(GetTableRows({}).empty());
}

TEST_F(TableElementsTest, ATableWhoseChildrenCannotBeReadHasNoRowsAndIsLogged) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    table.countResult = E_FAIL;
    EXPECT_EQ(Rows(table), L"");
    EXPECT_TRUE(log.Contains("E [GetAccChildren] GetAccChildrenWithRole: AAObjectWrapper::GetChildren failed")) << log.Text();
}

TEST_F(TableElementsTest, ACountOfAMillionIsGarbage) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    Below(table, ROLE_SYSTEM_ROW, L"a");
    table.hasCount = true;
    for (const LONG count : {1'000'000, -1, 0x7FFFFFFF}) {
        table.count = count;
        EXPECT_EQ(Rows(table), L"") << count;
    }
    table.count = 999'999;
    EXPECT_EQ(Rows(table), L"a");
}

TEST_F(TableElementsTest, AnyCallThatFailsOrAnswersNullLeavesNoReference) {
    FakeAccessible& table = objects.Add(ROLE_SYSTEM_TABLE);
    FakeAccessible& body = Below(table, ROLE_SYSTEM_GROUPING);
    Below(table, ROLE_SYSTEM_ROW);
    FakeAccessible& cell = Below(Below(body, ROLE_SYSTEM_ROW), ROLE_SYSTEM_CELL);
    for (const auto spoil : {FakeCalls::Spoil::Fail, FakeCalls::Spoil::NullWithSuccess}) {
        int nth = 1;
        for (;; ++nth) {
            FakeCalls::Instance().Reset(spoil, nth);
            GetTableRows(GetTableFromElement(Element(cell)));
            ASSERT_EQ(objects.OutstandingReferences(), 0) << nth;
            if (FakeCalls::Instance().total < nth) break;
        }
        EXPECT_GT(nth, 10);
    }
}

}  // namespace
}  // namespace Zorvex
