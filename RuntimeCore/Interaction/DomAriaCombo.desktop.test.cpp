#include "RuntimeCore/Interaction/DomAriaCombo.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/System.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::FakeElement;
using Testing::LogCapture;
using Testing::VariantAnswer;

constexpr HWND kWindow = nullptr;

class DomAriaCombo : public Testing::FakeElementTest {
protected:
    DomAriaCombo() {
        combo->roleAnswer = ROLE_SYSTEM_COMBOBOX;
        combo->defaultAction = L"open";
        combo->stateAnswer = STATE_SYSTEM_COLLAPSED;
        list->roleAnswer = ROLE_SYSTEM_LIST;
    }
    std::optional<DomAriaComboBox> Create(bool isDomAria = true) {
        return DomAriaComboBox::CreateFromAccessible(kWindow, combo, isDomAria);
    }
    // The action opens the box.
    void OpensByItsAction() {
        combo->onAction = [this] { combo->stateAnswer = STATE_SYSTEM_EXPANDED; };
    }
    void HasList(LONG options) {
        combo->childCount.number = 1;
        combo->children = {CComVariant(list->AsDispatch())};
        list->childCount.number = options;
    }
    // Whether the one error that this operation logs is this one.
    bool Said(const std::string& line) const { return log.Contains("E " + line); }
    ULONGLONG Slept() const { return Simulated::MillisecondsSlept() - m_before; }
    void TearDown() override {
        combo->onAction = nullptr;
        combo.Release();
        list.Release();
        FakeElementTest::TearDown();
    }

    DesktopFixture desktop{R"({"windows": [{"id": "main", "class": "Chrome_WidgetWin_1"}]})"};
    LogCapture log;
    CComPtr<FakeElement> combo = FakeElement::Make(), list = FakeElement::Make();

private:
    ULONGLONG m_before = Simulated::MillisecondsSlept();
};

TEST_F(DomAriaCombo, IsKnownByItsWindowItsRoleAndTheActionOpen) {
    EXPECT_TRUE(Create());
    EXPECT_EQ(log.Text(), "");
    EXPECT_EQ(DomAriaComboBox::CreateFromAccessible(desktop.Window("main"), combo, true)->Window(), desktop.Window("main"));
}

TEST_F(DomAriaCombo, IsNoneInAWindowThatShowsNoPage) {
    EXPECT_FALSE(Create(false));
    EXPECT_EQ(combo->calls["get_accRole"], 0);
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"V [CreateFromAccessible] Provided element could not be identified as a known ComboBox."});
}

TEST_F(DomAriaCombo, WhoseActionIsCloseIsNone) {
    for (const wchar_t* action : {L"close", L"Open", L"", L"opened"}) {
        combo->defaultAction = action;
        log.Clear();
        EXPECT_FALSE(Create());
        EXPECT_TRUE(log.Contains("V [CreateFromAccessible] Provided element could not be identified as a known ComboBox."));
    }
    combo->defaultAction = E_NOTIMPL;
    EXPECT_FALSE(Create());
    combo->defaultAction = S_FALSE;
    EXPECT_FALSE(Create());
}

TEST_F(DomAriaCombo, OfAnotherRoleIsNone) {
    combo->roleAnswer = ROLE_SYSTEM_PUSHBUTTON;
    EXPECT_FALSE(Create());
    combo->roleAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_FALSE(Create());
    combo->roleAnswer = CComVariant(L"combo box");
    EXPECT_FALSE(Create());
}

TEST_F(DomAriaCombo, OfNoElementIsNoneAndAnError) {
    EXPECT_FALSE(DomAriaComboBox::CreateFromAccessible(kWindow, nullptr, true));
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"E [CreateFromAccessible] Provided IAccessible is null."});
}

TEST_F(DomAriaCombo, WithOptionsInItsListHasThem) {
    HasList(2);
    bool has = false;
    EXPECT_EQ(Create()->HasOptionsList(has), S_OK);
    EXPECT_TRUE(has);
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"V [HasOptionsList] Non-empty child list found. ComboBox has options list."});
}

TEST_F(DomAriaCombo, WithAnEmptyListOrNoneHasNoOptions) {
    for (const LONG children : {0, 1, 2}) {
        log.Clear();
        if (children > 0) HasList(0);
        // A server that answers nonsense has no options either.
        if (children == 2) list->childCount.number = -1;
        bool has = true;
        EXPECT_EQ(Create()->HasOptionsList(has), S_OK);
        EXPECT_FALSE(has);
        EXPECT_TRUE(log.Contains("V [HasOptionsList] ComboBox options list is missing."));
    }
}

TEST_F(DomAriaCombo, WithAListThatIsNoObjectCountsItsOwnChildren) {
    combo->childCount.number = 1;
    combo->children = {CComVariant(LONG{1})};
    // Every child id of the fake answers the role of its container.
    auto comboBox = Create();
    combo->roleAnswer = ROLE_SYSTEM_LIST;
    bool has = false;
    EXPECT_EQ(comboBox->HasOptionsList(has), S_OK);
    EXPECT_TRUE(has);
}

TEST_F(DomAriaCombo, WhoseListCannotBeCountedFailsToLoad) {
    HasList(2);
    list->childCount.result = E_ACCESSDENIED;
    bool has = true;
    EXPECT_EQ(Create()->HasOptionsList(has), E_ACCESSDENIED);
    EXPECT_FALSE(has);
    EXPECT_TRUE(Said("[HasOptionsList] children[0].GetContainer()->get_accChildCount(&n) | HRESULT 80070005 | "
                     "Zorvex::DomAriaComboBox::HasOptionsList: Child list found. Could not get its children count."))
        << log.Text();
    EXPECT_EQ(Create()->TriggerOptionsListLoad(), E_ACCESSDENIED);
    EXPECT_TRUE(Said("[TriggerOptionsListLoad] HasOptionsList(hasOptionsList) | HRESULT 80070005 | "
                     "Zorvex::DomAriaComboBox::TriggerOptionsListLoad: Testing for already loaded options list failed."))
        << log.Text();
    EXPECT_EQ(combo->calls["accDoDefaultAction"], 0);
}

TEST_F(DomAriaCombo, OpenWithOptionsIsLeftAsItIs) {
    HasList(3);
    combo->stateAnswer = STATE_SYSTEM_EXPANDED;
    EXPECT_EQ(Create()->TriggerOptionsListLoad(), S_OK);
    EXPECT_TRUE(log.Contains("V [TriggerOptionsListLoad] Chromium ComboBox with options already loaded detected. Will do nothing."));
    EXPECT_EQ(combo->calls["accDoDefaultAction"], 0);
    EXPECT_EQ(combo->calls["get_accState"], 0);
}

TEST_F(DomAriaCombo, ClosedIsExpandedForItsOptions) {
    OpensByItsAction();
    EXPECT_EQ(Create()->TriggerOptionsListLoad(), S_OK);
    EXPECT_EQ(combo->calls["accDoDefaultAction"], 1);
    EXPECT_FALSE(combo->scrolledTo);
    EXPECT_EQ(Slept(), 0u);
    EXPECT_TRUE(log.Contains("V [ExpandItems] start."));
    EXPECT_TRUE(log.Contains("V [ExpandItems] end. ComboBox was expanded!"));
}

TEST_F(DomAriaCombo, WithAnEmptyListThatIsNotCollapsedIsNotExpanded) {
    HasList(0);
    for (const LONG state : {LONG{0}, STATE_SYSTEM_EXPANDED, STATE_SYSTEM_EXPANDED | STATE_SYSTEM_COLLAPSED}) {
        log.Clear();
        combo->stateAnswer = state;
        EXPECT_EQ(Create()->TriggerOptionsListLoad(), S_OK);
        EXPECT_TRUE(log.Contains("V [ExpandItems] ComboBox already expanded - early exit."));
        EXPECT_EQ(combo->calls["accDoDefaultAction"], 0);
    }
}

TEST_F(DomAriaCombo, OffScreenIsScrolledToFirst) {
    combo->stateAnswer = STATE_SYSTEM_COLLAPSED | STATE_SYSTEM_OFFSCREEN;
    combo->onAction = [this] {
        combo->stateAnswer = combo->calls["accDoDefaultAction"] ? STATE_SYSTEM_EXPANDED : STATE_SYSTEM_COLLAPSED;
    };
    EXPECT_EQ(Create()->ExpandItems(), S_OK);
    EXPECT_EQ(combo->scrolledTo, 6);
    EXPECT_EQ(combo->calls["accDoDefaultAction"], 1);
}

// The end of the wait is no failure of the scrolling: the box is tried all the same.
TEST_F(DomAriaCombo, ThatCannotBeBroughtIntoViewInTimeIsExpandedAllTheSame) {
    combo->stateAnswer = STATE_SYSTEM_COLLAPSED | STATE_SYSTEM_OFFSCREEN;
    combo->onAction = [this] {
        if (combo->calls["accDoDefaultAction"]) combo->stateAnswer = STATE_SYSTEM_EXPANDED;
    };
    EXPECT_EQ(Create()->ExpandItems(), S_OK);
    EXPECT_EQ(Slept(), 3'000u);
}

TEST_F(DomAriaCombo, ThatStaysCollapsedFailsWhenTheWaitRanOut) {
    EXPECT_EQ(Create()->ExpandItems(), E_FAIL);
    EXPECT_EQ(Slept(), 3'000u);
    EXPECT_TRUE(Said("[ExpandItems] Expectation not met: isExpanded | Zorvex::DomAriaComboBox::ExpandItems: ComboBox state is still collapsed. Function failed."))
        << log.Text();
    EXPECT_FALSE(log.Contains("waiting for the expanded Chromium ComboBox failed."));
}

TEST_F(DomAriaCombo, ThatCannotBeExpandedSaysWhatFailed) {
    const std::string name = " | Zorvex::DomAriaComboBox::ExpandItems: ";
    combo->stateAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_EQ(Create()->ExpandItems(), E_FAIL);
    EXPECT_TRUE(Said("[ExpandItems] AAUtil::HasAAState(m_combobox, varSelf, STATE_SYSTEM_COLLAPSED, STATE_SYSTEM_EXPANDED, isCollapsed) | HRESULT 80004005" +
                     name + "could not get initial ComboBox state"))
        << log.Text();

    combo->stateAnswer = STATE_SYSTEM_COLLAPSED | STATE_SYSTEM_OFFSCREEN;
    combo->scrollResult = E_NOTIMPL;
    EXPECT_EQ(Create()->ExpandItems(), E_NOTIMPL);
    EXPECT_TRUE(Said("[ExpandItems] DomAriaUtilities::ScrollIntoView(m_combobox, varSelf) | HRESULT 80004001" + name + "ScrollIntoView ComboBox failed."))
        << log.Text();

    combo->stateAnswer = STATE_SYSTEM_COLLAPSED;
    combo->actionResult = DISP_E_MEMBERNOTFOUND;
    EXPECT_EQ(Create()->ExpandItems(), DISP_E_MEMBERNOTFOUND);
    EXPECT_TRUE(Said("[ExpandItems] m_combobox->accDoDefaultAction(varSelf) | HRESULT 80020003" + name + "could not trigger the ComboBox expand."))
        << log.Text();

    combo->actionResult = S_OK;
    combo->onAction = [this] { combo->stateAnswer = VariantAnswer::Failure(CO_E_OBJNOTCONNECTED); };
    EXPECT_EQ(Create()->ExpandItems(), CO_E_OBJNOTCONNECTED);
    EXPECT_TRUE(Said("[ExpandItems] AAUtil::WaitForState(m_combobox, varSelf, STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED, isExpanded) | HRESULT 800401FD" +
                     name + "waiting for the expanded Chromium ComboBox failed."))
        << log.Text();
}

TEST_F(DomAriaCombo, ExpandedIsCollapsedWithoutAWait) {
    combo->stateAnswer = STATE_SYSTEM_EXPANDED;
    EXPECT_EQ(Create()->CollapseItems(), S_OK);
    EXPECT_EQ(combo->calls["accDoDefaultAction"], 1);
    EXPECT_EQ(combo->calls["get_accState"], 1);
    EXPECT_EQ(Slept(), 0u);
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"V [CollapseItems] Chromium ComboBox still open. Will trigger the collapse."});
}

TEST_F(DomAriaCombo, CollapsedIsNotCollapsedAgain) {
    for (const LONG state : {LONG{0}, STATE_SYSTEM_COLLAPSED, STATE_SYSTEM_EXPANDED | STATE_SYSTEM_COLLAPSED}) {
        log.Clear();
        combo->stateAnswer = state;
        EXPECT_EQ(Create()->CollapseItems(), S_OK);
        EXPECT_EQ(log.Lines(), std::vector<std::string>{"V [CollapseItems] Chromium ComboBox already collapsed itself. Nothing to do."});
    }
    EXPECT_EQ(combo->calls["accDoDefaultAction"], 0);
}

TEST_F(DomAriaCombo, ThatCannotBeCollapsedSaysWhatFailed) {
    const std::string name = " | Zorvex::DomAriaComboBox::CollapseItems: ";
    combo->stateAnswer = CComVariant(L"expanded");
    EXPECT_EQ(Create()->CollapseItems(), E_FAIL);
    EXPECT_TRUE(Said("[CollapseItems] AAUtil::HasAAState(m_combobox, varSelf, STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED, isExpanded) | HRESULT 80004005" +
                     name + "could not get initial ComboBox state"))
        << log.Text();
    combo->stateAnswer = STATE_SYSTEM_EXPANDED;
    combo->actionResult = E_ACCESSDENIED;
    EXPECT_EQ(Create()->CollapseItems(), E_ACCESSDENIED);
    EXPECT_TRUE(Said("[CollapseItems] m_combobox->accDoDefaultAction(varSelf) | HRESULT 80070005" + name + "could not collapse previously expanded ComboBox."))
        << log.Text();
}

}  // namespace
}  // namespace Zorvex
