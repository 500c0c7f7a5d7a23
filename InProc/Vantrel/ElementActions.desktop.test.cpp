#include "InProc/Vantrel/ElementActions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/System.h"
#include "tests/Support/LogCapture.h"
#include "tests/Support/RegisteredElement.h"

namespace Zorvex::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kDesktop[] = R"({"windows": [
  {"id": "page", "class": "Chrome_WidgetWin_1", "rectangle": [0, 0, 200, 200], "objects": {"client": {"children": [
    {"id": "link", "role": "link", "state": ["focusable"], "rectangle": [10, 10, 50, 20]},
    {"id": "below", "role": "link", "state": ["focusable", "offscreen"], "rectangle": [10, 900, 50, 20], "ia2": {},
     "faults": [{"call": "scrollTo", "do": [{"clear": ["offscreen"], "rectangle": [10, 100, 50, 20]}]}]},
    {"id": "bar", "role": "tool bar", "ia2": {}, "faults": [{"call": "scrollTo", "do": [{"change": "tool", "clear": ["offscreen"]}]}], "children": [
      {"id": "tool", "role": "editable text", "simple": true, "state": ["focusable", "offscreen"], "rectangle": [10, 900, 50, 20]}]}]}}},
  {"id": "dialog", "class": "Dialog", "objects": {"client": {"children": [
    {"id": "edit", "role": "editable text", "value": "old", "state": ["focusable"]},
    {"id": "fixed", "role": "editable text", "value": "old", "state": ["readonly"]},
    {"id": "button", "role": "push button", "action": [{"change": "edit", "value": "clicked"}]},
    {"id": "label", "role": "text"},
    {"id": "list", "role": "list", "children": [{"id": "one", "role": "list item", "simple": true, "defaultAction": "open"}]}]}}}]})";

class ElementActions : public ::testing::Test {
protected:
    bool Focus(const AAObjectIdentifier& element) { return Call(SetFocusRequest{{element}}).success; }
    HRESULT Act(const AAObjectIdentifier& element) { return Call(DoDefaultActionRequest{{element}}).result; }
    HRESULT Scroll(const AAObjectIdentifier& element) { return Call(ScrollIntoViewRequest{{element}}).result; }
    bool Write(const AAObjectIdentifier& element, const wchar_t* text) { return Call(WriteTextRequest{element, text}).success; }
    AAObjectIdentifier Of(const char* element) { return Register(desktop, "dialog", element); }
    AAObjectIdentifier InPage(const char* element) { return Register(desktop, "page", element); }
    // Known by its window, unknown by its number.
    AAObjectIdentifier Unknown() {
        AAObjectIdentifier identifier = WindowIdentifier(desktop.Window("dialog"));
        identifier.containerId = 999'999;
        return identifier;
    }
    void TearDown() override {
        CacheCleaner::Release();
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }

    DesktopFixture desktop{kDesktop};
    LogCapture log;
};

TEST_F(ElementActions, FocusOfAWindowNeverTouchesAnObject) {
    EXPECT_TRUE(Focus(WindowIdentifier(desktop.Window("dialog"))));
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus dialog"));
    EXPECT_EQ(desktop.TotalCalls(), 0);
    EXPECT_TRUE(log.Contains("V [SetFocusImpl] calling LookupIdentifier"));
    EXPECT_TRUE(log.Contains("the focus has been set to the WND element"));
}

TEST_F(ElementActions, FocusOfAWindowThatNamesNoneBeforeItFails) {
    desktop.AddFault("dialog", {.call = "SetFocus", .null = true});
    EXPECT_FALSE(Focus(WindowIdentifier(desktop.Window("dialog"))));
    EXPECT_TRUE(log.Contains("] SetFocus(WND) failed")) << log.Text();
    EXPECT_FALSE(log.Contains("the focus has been set"));
    // So does one that is gone.
    log.Clear();
    const auto identifier = WindowIdentifier(desktop.Window("dialog"));
    desktop.DestroyWindow("dialog");
    EXPECT_FALSE(Focus(identifier));
    EXPECT_EQ(log.Count("SetFocus(WND) failed"), 1u);
}

TEST_F(ElementActions, FocusOfAnElementIsSelectedWithoutAWait) {
    const ULONGLONG before = Simulated::MillisecondsSlept();
    EXPECT_TRUE(Focus(Of("edit")));
    EXPECT_THAT(desktop.Done(), ElementsAre("accSelect edit 1"));
    EXPECT_EQ(desktop.Calls("edit", "get_accState"), 0);
    EXPECT_EQ(Simulated::MillisecondsSlept(), before);
    EXPECT_TRUE(log.Contains("] the focus has been set to the AA element")) << log.Text();
    EXPECT_FALSE(log.Contains("DomAria"));
}

TEST_F(ElementActions, FocusInABrowserOfAnElementThatIsNotOfThePageIsSelectedAlone) {
    const ULONGLONG before = Simulated::MillisecondsSlept();
    EXPECT_TRUE(Focus(Register(desktop, "page", "link", 0u)));
    EXPECT_EQ(desktop.Calls("link", "get_accState"), 0);
    EXPECT_EQ(desktop.Calls("link", "accLocation"), 0);
    EXPECT_EQ(Simulated::MillisecondsSlept(), before);
}

TEST_F(ElementActions, FocusInAPageIsWaitedFor) {
    const ULONGLONG before = Simulated::MillisecondsSlept();
    EXPECT_TRUE(Focus(InPage("link")));
    EXPECT_EQ(Simulated::MillisecondsSlept() - before, 300u);
    EXPECT_TRUE(log.Contains("] the focus has been set to the AA element using DomAria methods")) << log.Text();
}

// The container is asked, and about the simple element alone.
TEST_F(ElementActions, SimpleElementIsActedOnUnderItsChildId) {
    EXPECT_EQ(Scroll(InPage("tool")), S_OK);
    EXPECT_TRUE(Focus(InPage("tool")));
    EXPECT_TRUE(Focus(Register(desktop, "page", "tool", 0u)));
    EXPECT_TRUE(Write(InPage("tool"), L"new"));
    EXPECT_THAT(desktop.Done(), ElementsAre("scrollTo bar 6", "accSelect tool 1", "accSelect tool 1", "put_accValue tool new"));
}

TEST_F(ElementActions, FocusInAPageThatNeverComesFails) {
    EXPECT_FALSE(Focus(InPage("below")));
    EXPECT_TRUE(log.Contains("] Vantrel::DomAriaSetFocus failed")) << log.Text();
    EXPECT_FALSE(log.Contains("the focus has been set"));
}

TEST_F(ElementActions, FocusThatIsRefusedFailsWithItsCode) {
    desktop.AddFault("edit", {.call = "accSelect", .result = E_ACCESSDENIED});
    EXPECT_FALSE(Focus(Of("edit")));
    EXPECT_TRUE(log.Contains("] pAccElem->accSelect failed, hRes=0x80070005")) << log.Text();
}

TEST_F(ElementActions, FocusOfNothingFails) {
    for (const AAObjectIdentifier& nothing : {AAObjectIdentifier{}, Unknown()}) {
        log.Clear();
        EXPECT_FALSE(Focus(nothing));
        EXPECT_TRUE(log.Contains("E [SetFocusImpl] the target is not a valid HWND or AA element")) << log.Text();
    }
    EXPECT_THAT(desktop.Done(), IsEmpty());
}

TEST_F(ElementActions, DefaultActionIsTheElementsAnswer) {
    EXPECT_EQ(Act(Of("button")), S_OK);
    EXPECT_EQ(Act(Of("one")), S_OK);
    EXPECT_EQ(Act(Of("label")), DISP_E_MEMBERNOTFOUND);
    EXPECT_THAT(desktop.Done(), ElementsAre("accDoDefaultAction button", "accDoDefaultAction one"));
    desktop.AddFault("button", {.call = "accDoDefaultAction", .result = S_FALSE});
    EXPECT_EQ(Act(Of("button")), S_FALSE);
}

TEST_F(ElementActions, DefaultActionAndScrollingOfWhatIsNoElementFailWithoutALine) {
    for (const AAObjectIdentifier& nothing : {AAObjectIdentifier{}, Unknown(), WindowIdentifier(desktop.Window("dialog"))}) {
        log.Clear();
        EXPECT_EQ(Act(nothing), E_FAIL);
        EXPECT_EQ(Scroll(nothing), E_FAIL);
        EXPECT_EQ(log.Count("[DoDefaultActionImpl]"), 1u);
        EXPECT_EQ(log.Count("[ScrollIntoViewImpl]"), 1u);
    }
    EXPECT_EQ(desktop.TotalCalls(), 0);
}

TEST_F(ElementActions, ScrollingBringsWhatIsOffScreenIntoView) {
    EXPECT_EQ(Scroll(InPage("below")), S_OK);
    EXPECT_THAT(desktop.Done(), ElementsAre("scrollTo below 6"));
    EXPECT_EQ(Scroll(InPage("link")), S_OK);
    EXPECT_THAT(desktop.Done(), ElementsAre("scrollTo below 6"));
}

TEST_F(ElementActions, ScrollingThatDoesNotHelpIsOneAndThatIsNotOfferedAFailure) {
    desktop.ClearFaults();
    EXPECT_EQ(Scroll(InPage("below")), S_FALSE);
    desktop.AddFault("below", {.call = "scrollTo", .result = E_NOTIMPL});
    EXPECT_EQ(Scroll(InPage("below")), E_NOTIMPL);
}

TEST_F(ElementActions, TextIsWrittenAsItIs) {
    EXPECT_TRUE(Write(Of("edit"), L"two\r\nlines"));
    CComBSTR value;
    EXPECT_EQ(desktop.Element("edit")->get_accValue(CComVariant(CHILDID_SELF), &value), S_OK);
    EXPECT_EQ(value.ToString(), L"two\r\nlines");
    EXPECT_TRUE(log.Contains("V [WriteTextImpl] calling LookupIdentifier")) << log.Text();
    EXPECT_TRUE(Write(Of("edit"), L""));
    EXPECT_EQ(desktop.Element("edit")->get_accValue(CComVariant(CHILDID_SELF), &value), S_OK);
    EXPECT_TRUE(value.IsEmpty());
}

TEST_F(ElementActions, TextThatIsAnsweredWithAnotherSuccessIsNotWritten) {
    for (const HRESULT result : {S_FALSE, E_FAIL, static_cast<HRESULT>(2)}) {
        desktop.ClearFaults();
        desktop.AddFault("edit", {.call = "put_accValue", .result = result});
        EXPECT_FALSE(Write(Of("edit"), L"new"));
    }
    EXPECT_FALSE(Write(Of("fixed"), L"new"));
    EXPECT_FALSE(log.Contains("Invalid AA object"));
}

TEST_F(ElementActions, TextForWhatIsNoElementIsAnError) {
    for (const AAObjectIdentifier& nothing : {AAObjectIdentifier{}, Unknown(), WindowIdentifier(desktop.Window("dialog"))}) {
        log.Clear();
        EXPECT_FALSE(Write(nothing, L"new"));
        EXPECT_TRUE(log.Contains("E [WriteTextImpl] Invalid AA object")) << log.Text();
    }
}

}  // namespace
}  // namespace Zorvex::Testing
