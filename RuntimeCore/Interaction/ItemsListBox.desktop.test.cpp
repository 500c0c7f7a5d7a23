#include "RuntimeCore/Interaction/ItemsListBox.h"

#include <gmock/gmock.h>

#include <string>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using AAUtil::SelectionExtent;
using Testing::DesktopFixture;
using Testing::LogCapture;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<CString>;

class ItemsListBox : public testing::Test {
protected:
    // `messages`: answers that go before those of the box.
    static std::string Desktop(const std::string& messages) {
        return R"({"windows": [
          {"id": "single", "class": "ListBox", "listBox": ["apple", "apricot", "banana", ""], "messages": {)" + messages + R"(}},
          {"id": "multiple", "class": "WindowsForms10.LISTBOX.app.0.1", "listBox": {"items": ["apple", "apricot", "banana", "Apple", ""],
            "multiple": true, "selection": [2]}, "messages": {)" + messages + R"(}}]})";
    }
    void Answer(const std::string& messages) {
        desktop.reset();
        desktop = std::make_unique<DesktopFixture>(Desktop(messages));
    }
    HWND Single() { return desktop->Window("single"); }
    HWND Multiple() { return desktop->Window("multiple"); }
    Texts Selected(HWND window) {
        Texts items;
        EXPECT_EQ(GetSelectedItemsImpl_ListBox(window, items, SelectionExtent::All), SelectionResult::Success) << log.Text();
        return items;
    }

    LogCapture log;
    std::unique_ptr<DesktopFixture> desktop = std::make_unique<DesktopFixture>(Desktop(""));
};

TEST_F(ItemsListBox, PatternInAMultiSelectBoxSelectsEveryMatchAndOnlyTheFirstUnderFirstMatchOnly) {
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"a*"}, true, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Multiple()), ElementsAre(L"apple", L"apricot"));
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"a*"}, true, true), SelectionResult::Success);
    EXPECT_THAT(Selected(Multiple()), ElementsAre(L"apple"));
    EXPECT_TRUE(HasWildcard(L"a?"));
    EXPECT_TRUE(HasWildcard(L"*"));
    EXPECT_FALSE(HasWildcard(L"a[b]"));
}

TEST_F(ItemsListBox, PatternInASingleSelectBoxSelectsTheFirstMatch) {
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Single(), {L"a*t"}, true, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Single()), ElementsAre(L"apricot"));
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Single(), {L"*"}, false, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Single()), ElementsAre(L"apple"));
}

TEST_F(ItemsListBox, SingleSelectBoxGetsTheFirstItemOfTheListAlone) {
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Single(), {L"banana", L"nobody"}, false, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Single()), ElementsAre(L"banana"));
}

TEST_F(ItemsListBox, ItemsJoinTheSelectionUnlessItIsClearedFirst) {
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"apple", L"Apple"}, false, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Multiple()), ElementsAre(L"apple", L"banana", L"Apple"));
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"apricot"}, true, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Multiple()), ElementsAre(L"apricot"));
}

TEST_F(ItemsListBox, ItemThatIsNotThereIsNothingFoundAndEndsTheList) {
    for (const HWND window : {Single(), Multiple()}) {
        log.Clear();
        EXPECT_EQ(SetSelectedItemsImpl_ListBox(window, {L"nobody", L"apple"}, false, false), SelectionResult::NothingFound);
        EXPECT_EQ(log.Count("Could not find item: 'nobody'"), 1u) << log.Text();
    }
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"n?body*"}, false, false), SelectionResult::NothingFound);
    EXPECT_TRUE(log.Contains("Could not find item: 'n?body*'")) << log.Text();
    EXPECT_THAT(Selected(Multiple()), ElementsAre(L"banana"));
    EXPECT_THAT(Selected(Single()), IsEmpty());
}

TEST_F(ItemsListBox, ComparisonIsCaseSensitive) {
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"A*"}, true, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Multiple()), ElementsAre(L"Apple"));
}

TEST_F(ItemsListBox, NoItemsAreASuccessThatOnlyClearsWhatCanBeCleared) {
    ::SendMessageW(Single(), LB_SETCURSEL, 1, 0);
    for (const HWND window : {Single(), Multiple()})
        EXPECT_EQ(SetSelectedItemsImpl_ListBox(window, {}, false, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Multiple()), ElementsAre(L"banana"));
    for (const HWND window : {Single(), Multiple()})
        EXPECT_EQ(SetSelectedItemsImpl_ListBox(window, {}, true, false), SelectionResult::Success);
    EXPECT_THAT(Selected(Single()), ElementsAre(L"apricot"));
    EXPECT_THAT(Selected(Multiple()), IsEmpty());
}

TEST_F(ItemsListBox, ItemWithoutTextCannotBeReadAndIsPassedOver) {
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"z*"}, false, false), SelectionResult::NothingFound);
    EXPECT_EQ(log.Count("GetListBoxItem: Could not find retrieve text length for item index: 4"), 1u) << log.Text();
    EXPECT_TRUE(log.Contains("Could not find retrieve text for item index: 4"));
    // Selected it spoils the whole answer: the list is as long as the selection, with nothing behind the bad one.
    ::SendMessageW(Multiple(), LB_SETSEL, TRUE, 4);
    Texts items{L"old"};
    EXPECT_EQ(GetSelectedItemsImpl_ListBox(Multiple(), items, SelectionExtent::All), SelectionResult::Failure);
    EXPECT_THAT(items, ElementsAre(L"banana", L""));
    EXPECT_TRUE(log.Contains("GetSelectedItemsImpl_ListBox: Could not find retrieve selected item index: 4"));
    ::SendMessageW(Single(), LB_SETCURSEL, 3, 0);
    EXPECT_EQ(GetSelectedItemsImpl_ListBox(Single(), items, SelectionExtent::All), SelectionResult::Failure);
    EXPECT_TRUE(log.Contains("GetSelectedItemsImpl_ListBox: Could not find retrieve selected item index: 3"));
}

TEST_F(ItemsListBox, FirstOnlyFillsOneTextAndLeavesTheOthersEmpty) {
    ::SendMessageW(Multiple(), LB_SETSEL, TRUE, 0);
    Texts items;
    EXPECT_EQ(GetSelectedItemsImpl_ListBox(Multiple(), items, SelectionExtent::FirstOnly), SelectionResult::Success);
    EXPECT_THAT(items, ElementsAre(L"apple", L""));
}

TEST_F(ItemsListBox, ClearingTakesAllAwayInBothKinds) {
    ::SendMessageW(Single(), LB_SETCURSEL, 1, 0);
    ::SendMessageW(Multiple(), LB_SETSEL, TRUE, 0);
    for (const HWND window : {Single(), Multiple()}) {
        EXPECT_EQ(ClearSelectedItemsImpl_ListBox(window), SelectionResult::Success);
        EXPECT_THAT(Selected(window), IsEmpty());
    }
    EXPECT_FALSE(log.Contains("clear"));
}

TEST_F(ItemsListBox, BoxOfSingleSelectionWithoutOneIsLeftAlone) {
    EXPECT_EQ(ClearSelectedItemsImpl_ListBox(Single()), SelectionResult::Success);
    EXPECT_EQ(desktop->Calls("single", "SendMessage"), 2) << "how many, and which";
    ::SendMessageW(Single(), LB_SETCURSEL, 1, 0);
    EXPECT_EQ(ClearSelectedItemsImpl_ListBox(Single()), SelectionResult::Success);
    EXPECT_EQ(desktop->Calls("single", "SendMessage"), 3 + 3);
}

TEST_F(ItemsListBox, RefusedSelectionIsAFailure) {
    Answer(R"("389": -1, "390": -1)");
    for (const HWND window : {Single(), Multiple()}) {
        log.Clear();
        EXPECT_EQ(SetSelectedItemsImpl_ListBox(window, {L"apple", L"banana"}, false, false), SelectionResult::Failure);
        EXPECT_EQ(log.Count("Could not set selection for item: 'apple'"), 1u) << log.Text();
    }
    log.Clear();
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"a*"}, false, false), SelectionResult::Failure);
    EXPECT_EQ(log.Count("Could not set selection for item: 'a*'"), 1u) << log.Text();
}

TEST_F(ItemsListBox, IndexThatCannotBeClearedIsToldToTheLogAlone) {
    Answer(R"("389": -1)");
    EXPECT_EQ(ClearSelectedItemsImpl_ListBox(Multiple()), SelectionResult::Success);
    EXPECT_EQ(log.Count("Could not clear selection for item index: 2"), 1u) << log.Text();
}

TEST_F(ItemsListBox, SelectedIndexesThatCannotBeReadAreAFailureButForClearing) {
    Answer(R"("401": -1)");
    Texts items{L"old"};
    EXPECT_EQ(GetSelectedItemsImpl_ListBox(Multiple(), items, SelectionExtent::All), SelectionResult::Failure);
    EXPECT_THAT(items, ElementsAre(L"")) << "as many as are selected";
    EXPECT_EQ(log.Count("GetSelectedItemsImpl_ListBox: Could not retrieve current selected items for WinForms List Box"), 1u) << log.Text();
    log.Clear();
    EXPECT_EQ(ClearSelectedItemsImpl_ListBox(Multiple()), SelectionResult::Success);
    EXPECT_TRUE(log.Contains("Could not retrieve current selected items for WinForms List Box"));
}

TEST_F(ItemsListBox, LyingCountsSizeNothing) {
    Texts items;
    Answer(R"("400": 2147483647)");
    EXPECT_EQ(GetSelectedItemsImpl_ListBox(Multiple(), items, SelectionExtent::All), SelectionResult::Failure);
    EXPECT_THAT(items, IsEmpty());
    Answer(R"("400": -5)");
    EXPECT_EQ(GetSelectedItemsImpl_ListBox(Multiple(), items, SelectionExtent::All), SelectionResult::Success);
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"apple"}, false, false), SelectionResult::Success) << "only -1 says single";
    // More indexes than were asked for are no indexes.
    Answer(R"("401": 1000000)");
    EXPECT_EQ(GetSelectedItemsImpl_ListBox(Multiple(), items, SelectionExtent::All), SelectionResult::Success);
    EXPECT_THAT(items, ElementsAre(L"apple")) << "what the box wrote is zero";
    Answer(R"("395": -1)");
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"apple"}, false, false), SelectionResult::NothingFound);
}

TEST_F(ItemsListBox, BoxThatGoesAwayEndsTheReading) {
    Answer(R"("395": 1000000000)");
    Simulated::Fault fault;
    fault.call = "SendMessage";
    fault.at = 5;
    fault.actions = {{.kind = Simulated::Action::Kind::DestroyWindow, .target = "multiple"}};
    desktop->AddFault("multiple", fault);
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(Multiple(), {L"nobody"}, false, false), SelectionResult::NothingFound);
    EXPECT_LT(desktop->Calls("multiple", "SendMessage"), 20);
    EXPECT_LT(log.Lines().size(), 20u) << "it went on with a window that is none";
}

TEST_F(ItemsListBox, DeadWindowHasNothing) {
    const HWND gone = Single();
    desktop->DestroyWindow("single");
    Texts items;
    EXPECT_EQ(GetSelectedItemsImpl_ListBox(gone, items, SelectionExtent::All), SelectionResult::Success);
    EXPECT_THAT(items, IsEmpty());
    EXPECT_EQ(SetSelectedItemsImpl_ListBox(gone, {L"apple"}, true, false), SelectionResult::NothingFound);
    EXPECT_EQ(ClearSelectedItemsImpl_ListBox(gone), SelectionResult::Success);
}

TEST_F(ItemsListBox, SelectionBehindAnAnswerOfMinusOneIsTheOneCurrentItem) {
    ::SendMessageW(Single(), LB_SETCURSEL, 2, 0);
    EXPECT_THAT(Selected(Single()), ElementsAre(L"banana"));
    ::SendMessageW(Single(), LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    EXPECT_THAT(Selected(Single()), IsEmpty());
}

}  // namespace
}  // namespace Zorvex
