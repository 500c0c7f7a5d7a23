#include "RuntimeCore/Interaction/DomAriaUtilities.h"

#include <gmock/gmock.h>
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

const CComVariant Self(CHILDID_SELF);

// A page in a browser window, and one that is embedded in Java.
constexpr char kDesktop[] = R"({"windows": [
  {"id": "browser", "class": "Chrome_WidgetWin_1", "objects": {"client": {"children": [{"id": "other", "state": ["focused"]}]}}},
  {"id": "java", "class": "CEFBrowserWindow", "children": [{"id": "embedded", "class": "Chrome_WidgetWin_0"}]}]})";

class DomAria : public Testing::FakeElementTest {
protected:
    ULONGLONG Slept() const { return Simulated::MillisecondsSlept() - m_before; }
    HRESULT Scroll() { return DomAriaUtilities::ScrollIntoView(element, Self); }
    bool Focus(const char* window = "browser") { return DomAriaSetFocus(desktop.Window(window), element, Self); }
    void TearDown() override {
        element.Release();
        FakeElementTest::TearDown();
    }

    DesktopFixture desktop{kDesktop};
    LogCapture log;
    CComPtr<FakeElement> element = FakeElement::Make();

private:
    ULONGLONG m_before = Simulated::MillisecondsSlept();
};

class DomAriaScroll : public DomAria {};
class DomAriaFocus : public DomAria {};

TEST_F(DomAriaScroll, ElementOnScreenIsNotScrolled) {
    EXPECT_EQ(Scroll(), S_OK);
    EXPECT_FALSE(element->scrolledTo);
    EXPECT_EQ(element->calls["accLocation"], 0);
    EXPECT_EQ(Slept(), 0u);
    EXPECT_EQ(log.Text(), "");
}

TEST_F(DomAriaScroll, ElementOffScreenIsScrolledAndWaitedForUntilItStandsStill) {
    element->stateAnswer = STATE_SYSTEM_OFFSCREEN;
    element->onAction = [this] { element->stateAnswer = LONG{0}; };
    EXPECT_EQ(Scroll(), S_OK);
    EXPECT_EQ(element->scrolledTo, 6);
    EXPECT_EQ(Slept(), 300u);
    EXPECT_TRUE(log.Contains("V [ScrollIntoView] WaitForState(STATE_SYSTEM_OFFSCREEN=off) hResult=0x0, bIsVisible=1")) << log.Text();
}

TEST_F(DomAriaScroll, ElementThatStaysOffScreenEndsTheWaitWithOne) {
    element->stateAnswer = STATE_SYSTEM_OFFSCREEN;
    EXPECT_EQ(Scroll(), S_FALSE);
    EXPECT_EQ(Slept(), 3'000u);
    EXPECT_TRUE(log.Contains("V [ScrollIntoView] WaitForState(STATE_SYSTEM_OFFSCREEN=off) hResult=0x1, bIsVisible=0")) << log.Text();
}

TEST_F(DomAriaScroll, ElementThatNeverStopsMovingEndsTheWaitWithOneToo) {
    element->stateAnswer = STATE_SYSTEM_OFFSCREEN;
    element->onAction = [this] { element->stateAnswer = LONG{0}; };
    element->onState = [this](int read) { element->location.top = read; };
    EXPECT_EQ(Scroll(), S_FALSE);
    EXPECT_EQ(Slept(), 3'000u);
    EXPECT_TRUE(log.Contains("WaitForState(STATE_SYSTEM_OFFSCREEN=off) hResult=0x1, bIsVisible=1")) << log.Text();
}

TEST_F(DomAriaScroll, UnreadableStateIsItsFailure) {
    element->stateAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(Scroll(), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("E [ScrollIntoView] AAUtil::HasAAState(pAA, varChild, 0, STATE_SYSTEM_OFFSCREEN, bIsVisible) | HRESULT 80070005 | "
                             "Error getting AA State STATE_SYSTEM_OFFSCREEN"))
        << log.Text();
    EXPECT_FALSE(element->scrolledTo);
    EXPECT_EQ(DomAriaUtilities::ScrollIntoView(nullptr, Self), E_INVALIDARG);
}

TEST_F(DomAriaScroll, FailedScrollIsAWarningAndItsFailure) {
    element->stateAnswer = STATE_SYSTEM_OFFSCREEN;
    element->scrollResult = E_NOTIMPL;
    EXPECT_EQ(Scroll(), E_NOTIMPL);
    EXPECT_TRUE(log.Contains("W [ScrollIntoView] IAccessible2::scrollTo() failed, hResult=0x80004001")) << log.Text();
    element->offersServices = false;
    EXPECT_EQ(Scroll(), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("W [ScrollIntoView] IAccessible2::scrollTo() failed, hResult=0x80004002")) << log.Text();
    EXPECT_EQ(Slept(), 0u);
}

TEST_F(DomAriaScroll, ElementThatDiesWhileItIsWaitedForIsTheWaitsFailure) {
    element->stateAnswer = STATE_SYSTEM_OFFSCREEN;
    element->onState = [this](int read) {
        if (read == 3) element->stateAnswer = VariantAnswer::Failure(CO_E_OBJNOTCONNECTED);
    };
    EXPECT_EQ(Scroll(), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(Slept(), 200u);
    EXPECT_TRUE(log.Contains("WaitForState(STATE_SYSTEM_OFFSCREEN=off) hResult=0x800401fd, bIsVisible=0")) << log.Text();
}

TEST_F(DomAriaFocus, IsTakenAndWaitedForUntilTheElementHasItAndStandsStill) {
    element->onAction = [this] { element->stateAnswer = STATE_SYSTEM_FOCUSED; };
    EXPECT_TRUE(Focus());
    EXPECT_EQ(element->selectedWith, SELFLAG_TAKEFOCUS);
    EXPECT_EQ(Slept(), 300u);
    EXPECT_THAT(desktop.Done(), testing::IsEmpty());
    EXPECT_FALSE(log.Contains("JCef"));
}

TEST_F(DomAriaFocus, ThatNeverArrivesIsFalse) {
    EXPECT_FALSE(Focus());
    EXPECT_EQ(Slept(), 3'000u);
    EXPECT_FALSE(log.Contains("Wait for AA state")) << log.Text();
}

TEST_F(DomAriaFocus, OfAnElementOffScreenIsFalse) {
    element->stateAnswer = STATE_SYSTEM_FOCUSED | STATE_SYSTEM_OFFSCREEN;
    EXPECT_FALSE(Focus());
}

// The answer is whether the state was there, not whether the wait ended well.
TEST_F(DomAriaFocus, OfAnElementThatNeverStopsMovingIsTrue) {
    element->stateAnswer = STATE_SYSTEM_FOCUSED;
    element->onState = [this](int read) { element->location.left = read; };
    EXPECT_TRUE(Focus());
    EXPECT_EQ(Slept(), 3'000u);
}

TEST_F(DomAriaFocus, ThatIsRefusedIsFalseWithoutAWait) {
    element->actionResult = E_ACCESSDENIED;
    EXPECT_FALSE(Focus());
    EXPECT_EQ(Slept(), 0u);
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"E [DomAriaSetFocus] accContainer->accSelect(SELFLAG_TAKEFOCUS, accChildId) | HRESULT "
                                                    "80070005 | DOM-ARIA accSelect(SELFLAG_TAKEFOCUS) failed"});
}

TEST_F(DomAriaFocus, WhoseStateCannotBeReadIsFalse) {
    element->stateAnswer = VariantAnswer::Failure(E_FAIL);
    EXPECT_FALSE(Focus());
    EXPECT_TRUE(log.Contains("E [DomAriaSetFocus] AAUtil::WaitForState(accContainer, accChildId, STATE_SYSTEM_FOCUSED , STATE_SYSTEM_OFFSCREEN , "
                             "out_isFocused) | HRESULT 80004005 | Wait for AA state FOCUSED & !OFFSCREEN failed"))
        << log.Text();
}

TEST_F(DomAriaFocus, OfAPageInJavaIsFetchedFromJavaFirst) {
    element->stateAnswer = STATE_SYSTEM_FOCUSED;
    EXPECT_TRUE(Focus("embedded"));
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("SetFocus java"));
    EXPECT_TRUE(log.Contains("V [DomAriaContainerSetFocus] JCef, do ::SetFocus() on CefBrowserWindow hWnd=0x")) << log.Text();
    EXPECT_TRUE(log.Contains(" to get focus from Java FocusManager"));
}

TEST_F(DomAriaFocus, ThatJavaDoesNotGiveIsFalse) {
    element->stateAnswer = STATE_SYSTEM_FOCUSED;
    desktop.AddFault("java", {.call = "SetFocus", .null = true});
    EXPECT_FALSE(Focus("embedded"));
    EXPECT_FALSE(element->selectedWith);
}

TEST_F(DomAriaFocus, OfNoElementIsFalse) { EXPECT_FALSE(DomAriaSetFocus(desktop.Window("browser"), nullptr, Self)); }

}  // namespace
}  // namespace Zorvex
