#include "RuntimeCore/RowName.h"

#include <gtest/gtest.h>

#include "Common/include/CComBSTR.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeCalls;
using Testing::FakeObjects;
using Testing::LogCapture;

const CComVariant Self(CHILDID_SELF);
const HWND Window = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x100));

// A reader that answers the cell's own name, for the length of a scope.
class NameReader {
public:
    NameReader() : m_previous(SetCellTextReader(&Read)) {}
    ~NameReader() { SetCellTextReader(m_previous); }

private:
    static bool Read(HWND hWnd, const AAObjectWrapper& cell, CString& out_text) {
        EXPECT_EQ(hWnd, Window);
        CComBSTR name;
        if (FAILED(cell.container->get_accName(cell.childId, &name))) return false;
        out_text = name.ToString();
        return true;
    }
    CellTextReader m_previous;
};

class RowNameTest : public ::testing::Test {
protected:
    RowNameTest() : row(objects.Add(ROLE_SYSTEM_ROW, L"row")) {}

    void AddCell(LONG role, const wchar_t* name) { row.AddChild(objects.Add(role, name)); }
    // The name, or "none".
    std::wstring Name() {
        CComVariant name(L"none");
        const bool found = GetRowName(Window, &row, Self, name);
        EXPECT_EQ(name.vt, VT_BSTR);
        EXPECT_EQ(objects.OutstandingReferences(), 0);
        EXPECT_EQ(found, std::wstring(name.bstrVal) != L"none");
        return name.bstrVal;
    }

    LogCapture log;
    NameReader reader;
    FakeObjects objects;
    FakeAccessible& row;
};

TEST_F(RowNameTest, ARowWithoutHeaderCellsIsNamedByItsFirstCell) {
    AddCell(ROLE_SYSTEM_PUSHBUTTON, L"button");
    AddCell(ROLE_SYSTEM_CELL, L"first");
    AddCell(ROLE_SYSTEM_CELL, L"second");
    EXPECT_EQ(Name(), L"first");
    EXPECT_EQ(log.Count("GetRowName: Start"), 1u);
    EXPECT_EQ(log.Count("GetRowName: End"), 1u);
}

TEST_F(RowNameTest, TheFirstRowHeaderCountsBeforeAnyCell) {
    AddCell(ROLE_SYSTEM_CELL, L"cell");
    AddCell(ROLE_SYSTEM_ROWHEADER, L"header");
    AddCell(ROLE_SYSTEM_ROWHEADER, L"another");
    EXPECT_EQ(Name(), L"header");
}

TEST_F(RowNameTest, ARowWithoutCellsIsLogged) {
    row.AddOddChild(CComVariant());
    EXPECT_EQ(Name(), L"none");
    EXPECT_EQ(log.Count("GetRowName: No row header/cell found"), 1u);
    EXPECT_EQ(log.Lines().back().substr(0, 1), "E");
    EXPECT_FALSE(log.Contains("GetRowName: End"));
}

TEST_F(RowNameTest, InvalidArgumentsAreLogged) {
    CComVariant name;
    EXPECT_FALSE(GetRowName(nullptr, &row, Self, name));
    EXPECT_FALSE(GetRowName(Window, nullptr, Self, name));
    EXPECT_FALSE(GetRowName(Window, &row, CComVariant(L"0"), name));
    // Two blanks.
    EXPECT_EQ(log.Count("GetRowName: Invalid  arguments"), 3u);
    EXPECT_EQ(name.vt, VT_EMPTY);
    EXPECT_EQ(row.calls, 0);
}

TEST_F(RowNameTest, AnElementThatIsNoRowHasNoNameAndNoMessage) {
    row.role = CComVariant(ROLE_SYSTEM_LISTITEM);
    AddCell(ROLE_SYSTEM_CELL, L"cell");
    EXPECT_EQ(Name(), L"none");
    EXPECT_EQ(log.Lines().size(), 1u) << log.Text();
    EXPECT_EQ(row.countCalls, 0);
}

TEST_F(RowNameTest, ASimpleRowHasNoCells) {
    AddCell(ROLE_SYSTEM_CELL, L"a cell of the container");
    CComVariant name;
    EXPECT_FALSE(GetRowName(Window, &row, CComVariant(1), name));
    EXPECT_TRUE(log.Contains("GetRowName: No row header/cell found"));
}

TEST_F(RowNameTest, WithoutAReaderThereIsNoName) {
    AddCell(ROLE_SYSTEM_CELL, L"cell");
    const CellTextReader previous = SetCellTextReader(nullptr);
    EXPECT_EQ(Name(), L"none");
    SetCellTextReader(previous);
    EXPECT_FALSE(log.Contains("GetRowName: End"));
}

TEST_F(RowNameTest, ATextThatCantBeReadIsNoName) {
    FakeAccessible& cell = objects.Add(ROLE_SYSTEM_CELL, L"cell");
    cell.nameResult = E_FAIL;
    row.AddChild(cell);
    EXPECT_EQ(Name(), L"none");
    EXPECT_FALSE(log.Contains("GetRowName: End"));
}

TEST_F(RowNameTest, AnyCallThatFailsOrAnswersNullLeavesNoReference) {
    AddCell(ROLE_SYSTEM_CELL, L"cell");
    AddCell(ROLE_SYSTEM_CELL, L"x");
    for (const auto spoil : {FakeCalls::Spoil::Fail, FakeCalls::Spoil::NullWithSuccess}) {
        int nth = 1;
        for (;; ++nth) {
            FakeCalls::Instance().Reset(spoil, nth);
            CComVariant name;
            const bool found = GetRowName(Window, &row, Self, name);
            const bool wasSpoilt = FakeCalls::Instance().total >= nth;
            EXPECT_EQ(name.vt, found ? VT_BSTR : VT_EMPTY) << nth;
            EXPECT_EQ(objects.OutstandingReferences(), 0) << nth;
            if (!wasSpoilt) break;
        }
        EXPECT_GT(nth, 5);
        FakeCalls::Instance().Reset();
    }
}

}  // namespace
}  // namespace Zorvex
