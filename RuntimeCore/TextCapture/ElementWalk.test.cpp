#include "RuntimeCore/TextCapture/ElementWalk.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "RuntimeCore/TextCapture/CaptureRoles.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/FaultingAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeCalls;
using Testing::FakeObjects;
using Testing::FaultingAccessible;
using Testing::LogCapture;

const CComVariant Self(CHILDID_SELF);

class ElementWalkTest : public ::testing::Test {
protected:
    FakeAccessible& Add(FakeAccessible& parent, LONG role, const wchar_t* name) {
        FakeAccessible& child = objects.Add(role, name);
        child.left = child.top = 10;
        child.width = child.height = 10;
        parent.AddChild(child);
        return child;
    }
    std::wstring Text(std::span<const LONG> roles = CaptureRoles::Window) {
        CString text;
        result = ParseAccObjectAndGetText(context, &root, filter, text, roles, parse, AA_TYPE_GENERIC);
        EXPECT_EQ(objects.OutstandingReferences(), 0);
        return text;
    }

    FakeObjects objects;
    FakeAccessible& root = objects.Add(ROLE_SYSTEM_WINDOW, L"root");
    CaptureContext context;
    CaptureParseContext parse;
    const RECT* filter = nullptr;
    bool result = false;
};

TEST_F(ElementWalkTest, LinesStandInTheOrderOfTheTree) {
    FakeAccessible& pane = Add(root, ROLE_SYSTEM_PANE, L"1");
    FakeAccessible& group = Add(pane, ROLE_SYSTEM_CLIENT, L"not in the list");
    Add(group, ROLE_SYSTEM_LINK, L"2");
    Add(pane, ROLE_SYSTEM_LINK, L"3");
    Add(root, ROLE_SYSTEM_LINK, L"4");
    EXPECT_EQ(Text(), L"1\r\n2\r\n3\r\n4\r\n");
    EXPECT_TRUE(result);
    EXPECT_EQ(root.locationCalls + pane.locationCalls, 0) << "without a filter no location is read";
}

// The text of a tree as its definition says it, by recursion.
std::wstring ByRecursion(FakeAccessible& object) {
    std::wstring text;
    for (CComVariant& raw : object.children) {
        auto& child = *static_cast<FakeAccessible*>(static_cast<IAccessible*>(raw.pdispVal));
        if (child.role.lVal == ROLE_SYSTEM_LINK) text += child.name + L"\r\n";
        if (child.role.lVal != ROLE_SYSTEM_SCROLLBAR) text += ByRecursion(child);
    }
    return text;
}

TEST_F(ElementWalkTest, RandomTreesReadAsByRecursion) {
    std::mt19937 random(3);
    for (int round = 0; round < 40; ++round) {
        FakeObjects own;
        std::vector<FakeAccessible*> all{&own.Add(ROLE_SYSTEM_WINDOW, L"")};
        constexpr LONG roles[] = {ROLE_SYSTEM_LINK, ROLE_SYSTEM_CLIENT, ROLE_SYSTEM_SCROLLBAR};
        for (int i = 0; i < 60; ++i) {
            FakeAccessible& child = own.Add(roles[random() % 3], std::to_wstring(i).c_str());
            all[random() % all.size()]->AddChild(child);
            all.push_back(&child);
        }
        CString text;
        EXPECT_TRUE(ParseAccObjectAndGetText(context, all[0], nullptr, text, CaptureRoles::Window, {}, AA_TYPE_GENERIC));
        EXPECT_EQ(text, ByRecursion(*all[0]));
    }
}

TEST_F(ElementWalkTest, NullObjectAndUnreadableChildrenAreFailures) {
    LogCapture log;
    CString text;
    EXPECT_FALSE(ParseAccObjectAndGetText(context, nullptr, nullptr, text, CaptureRoles::Window, {}, AA_TYPE_GENERIC));
    EXPECT_TRUE(log.Contains("E [Enter] ParseAccObjectAndGetText: !pObject"));
    root.countResult = E_FAIL;
    EXPECT_EQ(Text(), L"");
    EXPECT_FALSE(result);
    EXPECT_TRUE(log.Contains("E [Enter] ParseAccObjectAndGetText: !bRes"));
}

TEST_F(ElementWalkTest, UnreadableElementGivesNoLineAndItsSiblingsGoOn) {
    FakeAccessible& first = Add(root, ROLE_SYSTEM_PANE, L"first");
    Add(first, ROLE_SYSTEM_LINK, L"below");
    first.roleResult = E_FAIL;
    FakeAccessible& second = Add(root, ROLE_SYSTEM_PANE, L"second");
    second.nameResult = E_FAIL;
    Add(second, ROLE_SYSTEM_LINK, L"below second");
    Add(root, ROLE_SYSTEM_LINK, L"last").countResult = E_FAIL;
    EXPECT_EQ(Text(), L"below second\r\nlast\r\n");
    EXPECT_TRUE(result) << "only the root's own children count";
}

TEST_F(ElementWalkTest, RoleResultOtherThanSuccessLeavesTheElementOut) {
    FakeAccessible& child = Add(root, ROLE_SYSTEM_LINK, L"name");
    child.roleResult = S_FALSE;
    EXPECT_EQ(Text(), L"");
}

TEST_F(ElementWalkTest, TextThatRepeatsItsParentGivesNoSecondLine) {
    FakeAccessible& cell = Add(root, ROLE_SYSTEM_CELL, L"cell");
    cell.value = L"text";
    FakeAccessible& text = Add(cell, ROLE_SYSTEM_STATICTEXT, L"label");
    text.value = L"text";
    EXPECT_EQ(Text(), L"text\r\n");
    FakeAccessible& row = Add(root, ROLE_SYSTEM_ROW, L"row");
    row.value = L"same";
    Add(row, ROLE_SYSTEM_STATICTEXT, L"label").value = L"same";
    EXPECT_EQ(Text(), L"text\r\nsame\r\n") << "a parent that isn't in the list has given no text";
}

TEST_F(ElementWalkTest, ValueThatComesWithAFailureIsNotRepeated) {
    FakeAccessible& cell = Add(root, ROLE_SYSTEM_CELL, L"cell");
    cell.value = L"text";
    cell.valueResult = E_FAIL;
    Add(cell, ROLE_SYSTEM_STATICTEXT, L"label").value = L"text";
    EXPECT_EQ(Text(), L"cell\r\ntext\r\n");
}

TEST_F(ElementWalkTest, OnlyTheParentItselfIsRepeated) {
    FakeAccessible& cell = Add(root, ROLE_SYSTEM_CELL, L"cell");
    cell.value = L"text";
    FakeAccessible& row = Add(cell, ROLE_SYSTEM_ROW, L"row");
    Add(row, ROLE_SYSTEM_STATICTEXT, L"label").value = L"text";
    EXPECT_EQ(Text(), L"text\r\ntext\r\n");
}

TEST_F(ElementWalkTest, UnavailableMenuItemGivesItsLineAndItsChildrenAreSkipped) {
    LogCapture log;
    FakeAccessible& item = Add(root, ROLE_SYSTEM_MENUITEM, L"File");
    Add(item, ROLE_SYSTEM_MENUITEM, L"Open");
    EXPECT_EQ(Text(), L"File\r\nOpen\r\n");
    item.state = CComVariant(STATE_SYSTEM_UNAVAILABLE);
    EXPECT_EQ(Text(), L"File\r\n");
    EXPECT_TRUE(log.Contains("V [Enter] ParseAccObjectAndGetText: Ignore children for unavailable menu item."));
}

TEST_F(ElementWalkTest, TitleBarsScrollBarsAndEditableTextsAreNeverEntered) {
    for (const LONG role : {ROLE_SYSTEM_TITLEBAR, ROLE_SYSTEM_SCROLLBAR, ROLE_SYSTEM_TEXT})
        Add(Add(root, role, L"own"), ROLE_SYSTEM_PUSHBUTTON, L"inside");
    EXPECT_EQ(Text(), L"own\r\nown\r\n") << "a scroll bar has no line of its own";
}

TEST_F(ElementWalkTest, ListItemsOfAWpfWindowGiveNoLineButTheirChildrenDo) {
    parse.bIsWpf = true;
    FakeAccessible& list = Add(root, ROLE_SYSTEM_LIST, L"list");
    FakeAccessible& row = Add(list, ROLE_SYSTEM_LISTITEM, L"row");
    Add(row, ROLE_SYSTEM_STATICTEXT, L"cell");
    Add(row, ROLE_SYSTEM_PUSHBUTTON, L"button in a row");
    Add(root, ROLE_SYSTEM_PUSHBUTTON, L"button");
    EXPECT_EQ(Text(), L"cell\r\nbutton\r\n");
    parse.bIsWpf = false;
    EXPECT_EQ(Text(), L"row\r\ncell\r\nbutton in a row\r\nbutton\r\n");
}

TEST_F(ElementWalkTest, ButtonRightInAListAndInAnItemWithoutAListGivesNoLineInAWpfWindow) {
    parse.bIsWpf = true;
    for (const LONG role : {ROLE_SYSTEM_LIST, ROLE_SYSTEM_LISTITEM}) {
        FakeAccessible& rows = Add(root, role, L"rows");
        FakeAccessible& group = Add(rows, ROLE_SYSTEM_CLIENT, L"");
        Add(rows, ROLE_SYSTEM_PUSHBUTTON, L"right below");
        Add(group, ROLE_SYSTEM_PUSHBUTTON, L"deeper");
    }
    EXPECT_EQ(Text(), L"");
    parse.bIsWpf = false;
    EXPECT_EQ(Text(), L"deeper\r\nright below\r\nrows\r\ndeeper\r\nright below\r\n");
}

TEST_F(ElementWalkTest, ChildOfAButtonInWpfRowsRepeatsNothing) {
    parse.bIsWpf = true;
    FakeAccessible& list = Add(root, ROLE_SYSTEM_LIST, L"list");
    FakeAccessible& button = Add(list, ROLE_SYSTEM_PUSHBUTTON, L"Save");
    Add(button, ROLE_SYSTEM_STATICTEXT, L"Save");
    EXPECT_EQ(Text(), L"Save\r\n") << "the button gave no line, so its text does";
    parse.bIsWpf = false;
    EXPECT_EQ(Text(), L"Save\r\n");
}

TEST_F(ElementWalkTest, HiddenElementsAreLeftOutWithAllBelowOnWish) {
    FakeAccessible& hidden = Add(root, ROLE_SYSTEM_PANE, L"hidden");
    hidden.state = CComVariant(STATE_SYSTEM_INVISIBLE);
    Add(hidden, ROLE_SYSTEM_LINK, L"in hidden");
    FakeAccessible& client = Add(root, ROLE_SYSTEM_CLIENT, L"");
    client.state = CComVariant(STATE_SYSTEM_INVISIBLE);
    Add(client, ROLE_SYSTEM_LINK, L"in client");
    FakeAccessible& unknown = Add(root, ROLE_SYSTEM_PANE, L"unknown");
    unknown.stateResult = E_FAIL;
    Add(root, ROLE_SYSTEM_LINK, L"shown");
    EXPECT_EQ(Text(), L"hidden\r\nin hidden\r\nin client\r\nunknown\r\nshown\r\n");
    context.m_bIgnoreHidden = true;
    LogCapture log;
    EXPECT_EQ(Text(), L"shown\r\n");
    EXPECT_TRUE(log.Contains("ParseAccObjectAndGetText: m_bIgnoreHidden"));
    EXPECT_TRUE(log.Contains("ParseAccObjectAndGetText: IsParrentValid(varRole) m_bIgnoreHidden branch"));
    EXPECT_TRUE(log.Contains("ParseAccObjectAndGetText: bParseObj=0"));
    EXPECT_TRUE(log.Contains("ParseAccObjectAndGetText: bParseObj=1"));
}

TEST_F(ElementWalkTest, ElementThatEnclosesTheFilterGivesNoLineButItsChildrenDo) {
    const RECT inside{10, 10, 20, 20};
    filter = &inside;
    FakeAccessible& pane = Add(root, ROLE_SYSTEM_PANE, L"around");
    pane.left = pane.top = 0;
    pane.width = pane.height = 100;
    Add(pane, ROLE_SYSTEM_LINK, L"in");
    FakeAccessible& out = Add(pane, ROLE_SYSTEM_PANE, L"out");
    out.left = 50;
    Add(out, ROLE_SYSTEM_LINK, L"not entered");
    EXPECT_EQ(Text(), L"in\r\n");
}

TEST_F(ElementWalkTest, WalkIsLogged) {
    LogCapture log;
    root.name = L"Root";
    root.role = CComVariant(ROLE_SYSTEM_PANE);
    root.value = L"v";
    Add(root, ROLE_SYSTEM_LINK, L"a");
    Text();
    for (const char* line :
         {"ParseAccObjectAndGetText start", "bstrCrntParentName='Root'", "ParseAccObjectAndGetText: bstrCrntParentValue='v'",
          "ParseAccObjectAndGetText: nChildCount=1", "ParseAccObjectAndGetText: VT_DISPATCH branch, i=0",
          "ParseAccObjectAndGetText: child OK and rect intersection condition, varRole=30, ric=1", "ParseAccObjectAndGetText: IsRole OK",
          "ParseAccObjectAndGetText: NOT m_bIgnoreHidden call appendFormatedText", "ParseAccObjectAndGetText: After IsRole check",
          "IParseAccObjectAndGetText: sParrentValid(varRole)",
          "ParseAccObjectAndGetText: bParseObj branch, calling ParseAccObjectAndGetText for child i=0", "ParseAccObjectAndGetText: nChildCount=0"})
        EXPECT_TRUE(log.Contains(line)) << line;
    EXPECT_EQ(log.Count("ParseAccObjectAndGetText end"), 2u);
    EXPECT_FALSE(log.Contains("E [")) << log.Text();
}

TEST_F(ElementWalkTest, SimpleChildIsLoggedAndHiddenOnWish) {
    LogCapture log;
    root.role = CComVariant(ROLE_SYSTEM_LINK);
    root.AddSimpleChild(1);
    EXPECT_EQ(Text(), L"root\r\n");
    for (const char* line :
         {"V [VisitSimple] ParseAccObjectAndGetText: VT_I4 branch, i=0",
          "V [VisitSimple] ParseAccObjectAndGetText: IsRole and rect OK, i=0",
          "V [VisitSimple] ParseAccObjectAndGetText: NOT m_bIgnoreHidden calling AppendFormatedText"})
        EXPECT_TRUE(log.Contains(line)) << line;
    log.Clear();
    context.m_bIgnoreHidden = true;
    EXPECT_EQ(Text(), L"root\r\n");
    EXPECT_TRUE(log.Contains("V [VisitSimple] ParseAccObjectAndGetText: m_bIgnoreHidden branch"));
    EXPECT_TRUE(log.Contains("V [VisitSimple] ParseAccObjectAndGetText: state OK, calling AppendFormatedText"));
    log.Clear();
    root.state = CComVariant(STATE_SYSTEM_INVISIBLE);
    EXPECT_EQ(Text(), L"");
    root.state = CComVariant(L"shown");
    EXPECT_EQ(Text(), L"") << "a state that is no number is none";
    root.state = CComVariant(0);
    root.stateResult = E_FAIL;
    EXPECT_EQ(Text(), L"");
    EXPECT_FALSE(log.Contains("state OK, calling AppendFormatedText"));
}

TEST_F(ElementWalkTest, SimpleChildOfAnotherRoleOrWithAnUnreadableOneGivesNoLine) {
    root.AddSimpleChild(1);
    EXPECT_EQ(Text(), L"") << "a window";
    root.role = CComVariant(ROLE_SYSTEM_LINK);
    root.roleResult = S_FALSE;
    EXPECT_EQ(Text(), L"");
}

TEST_F(ElementWalkTest, ServerThatFaultsOverANameLosesThatLineAlone) {
    LogCapture log(L"ERROR");
    FaultingAccessible faulting(ROLE_SYSTEM_PANE, L"faulting");
    Add(root, ROLE_SYSTEM_LINK, L"before");
    root.AddChild(faulting);
    Add(faulting, ROLE_SYSTEM_LINK, L"below");
    Add(root, ROLE_SYSTEM_LINK, L"behind");
    EXPECT_EQ(Text(), L"before\r\nbelow\r\nbehind\r\n");
    EXPECT_TRUE(result);
    EXPECT_EQ(log.Count("Access violation"), 2u) << "once for its line, once for what its children are compared with";
    root.ReturnChildren();
    faulting.ReturnChildren();
}

TEST_F(ElementWalkTest, OddChildrenAreSkipped) {
    root.AddOddChild(CComVariant(L"text"));
    root.AddOddChild(CComVariant(static_cast<IDispatch*>(nullptr)));
    root.AddOddChild(CComVariant());
    Add(root, ROLE_SYSTEM_LINK, L"good");
    EXPECT_EQ(Text(), L"good\r\n");
}

TEST_F(ElementWalkTest, RingEndsAtTheDeepestLevelWithWhatWasGathered) {
    LogCapture log(L"ERROR");
    Add(root, ROLE_SYSTEM_LINK, L"once a round");
    root.AddChild(root);
    const std::wstring text = Text();
    EXPECT_FALSE(result);
    EXPECT_EQ(text.size(), 100'000u * 14);
    EXPECT_TRUE(log.Contains("E [VisitObject] ParseAccObjectAndGetText: the walk ends below level 100000")) << log.Text();
}

TEST_F(ElementWalkTest, TreeThatGrowsTooWideEndsAtTheMostElements) {
    LogCapture log(L"ERROR");
    FakeAccessible& wide = Add(root, ROLE_SYSTEM_CLIENT, L"");
    for (LONG child = 1; child <= 1000; ++child) wide.AddSimpleChild(child);
    for (int copy = 0; copy < 1100; ++copy) root.AddChild(wide);
    Text();
    EXPECT_FALSE(result);
    EXPECT_TRUE(log.Contains("ParseAccObjectAndGetText: the walk ends after 99")) << log.Text();
}

TEST_F(ElementWalkTest, AnyCallFailingLeavesNoReference) {
    context = CaptureContext(0x1C);
    // No list: the platform itself isn't ready for bad answers when it is asked for an object's window.
    FakeAccessible& list = Add(root, ROLE_SYSTEM_TABLE, L"table");
    Add(list, ROLE_SYSTEM_LISTITEM, L"item");
    list.AddSimpleChild(2);
    FakeAccessible& pane = Add(root, ROLE_SYSTEM_PANE, L"pane");
    Add(pane, ROLE_SYSTEM_TEXT, L"text").value = L"typed";
    const RECT everything{0, 0, 1000, 1000};
    filter = &everything;
    FakeCalls::Instance().Reset();
    const std::wstring whole = Text();
    EXPECT_EQ(whole, L"item\r\npane\r\ntyped\r\n");
    const int calls = FakeCalls::Instance().total;
    ASSERT_GT(calls, 20);
    for (const auto spoil : {FakeCalls::Spoil::Fail, FakeCalls::Spoil::NullWithSuccess})
        for (int nth = 1; nth <= calls; ++nth) {
            FakeCalls::Instance().Reset(spoil, nth);
            CString text;
            ParseAccObjectAndGetText(context, &root, filter, text, CaptureRoles::Window, {}, AA_TYPE_GENERIC);
            EXPECT_LE(text.size(), whole.size() + 6) << nth;
            EXPECT_EQ(objects.OutstandingReferences(), 0) << nth;
        }
}

}  // namespace
}  // namespace Zorvex
