#include <gtest/gtest.h>

#include "Platform/Simulated/Desktop.h"
#include "Platform/Simulated/System.h"
#include "RuntimeCore/AAUtilitiesStates.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::DesktopFixture;
using Testing::FakeElement;
using Testing::LogCapture;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

// The waits run on the simulated clock, and pump the messages of an empty desktop.
class WaitForStateTest : public Testing::FakeElementTest {
protected:
    HRESULT Wait(LONG on, LONG off) {
        const ULONGLONG before = Simulated::MillisecondsSlept();
        const HRESULT hresult = WaitForState(element, Self, on, off, reached);
        slept = Simulated::MillisecondsSlept() - before;
        return hresult;
    }
    void TearDown() override {
        element.Release();
        FakeElementTest::TearDown();
    }

    DesktopFixture desktop{R"({ "format": "vantrel-desktop/1", "windows": [ { "id": "main", "class": "Frame" } ] })"};
    LogCapture log;
    CComPtr<FakeElement> element = FakeElement::Make();
    bool reached = false;
    ULONGLONG slept = 0;
};

TEST_F(WaitForStateTest, EndsAtOnceWhenTheStateIsThere) {
    element->stateAnswer = STATE_SYSTEM_EXPANDED;
    EXPECT_EQ(Wait(STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED), S_OK);
    EXPECT_TRUE(reached);
    EXPECT_EQ(slept, 0u);
    EXPECT_EQ(element->calls["accLocation"], 0);
    EXPECT_TRUE(log.Contains("element reached expected state after 0 ms; stateOn=0x00000200 stateOff=0x00000400")) << log.Text();
    EXPECT_FALSE(log.Contains("element location is steady"));
}

TEST_F(WaitForStateTest, LooksEveryHundredMilliseconds) {
    element->onState = [this](int read) { element->stateAnswer = read < 3 ? LONG{0} : STATE_SYSTEM_EXPANDED; };
    EXPECT_EQ(Wait(STATE_SYSTEM_EXPANDED, 0), S_OK);
    EXPECT_EQ(slept, 300u);
    EXPECT_TRUE(log.Contains("element reached expected state after 300 ms; stateOn=0x00000200 stateOff=0x00000000")) << log.Text();
}

TEST_F(WaitForStateTest, GivesUpAfterThreeSeconds) {
    EXPECT_EQ(Wait(STATE_SYSTEM_EXPANDED, STATE_SYSTEM_COLLAPSED), S_FALSE);
    EXPECT_FALSE(reached);
    EXPECT_EQ(slept, 3000u);
    EXPECT_EQ(element->calls["get_accState"], 30);
    EXPECT_TRUE(log.Contains("timeout exceeded 3000 ms, the object didn't reach the expected state, "
                             "stateOn=0x00000200, stateOff=0x00000400")) << log.Text();
}

TEST_F(WaitForStateTest, OnAStillElementEndsWithTheFourthEqualLocation) {
    element->location = {1, 2, 3, 4};
    EXPECT_EQ(Wait(0, STATE_SYSTEM_OFFSCREEN), S_OK);
    EXPECT_EQ(slept, 300u);
    EXPECT_EQ(element->calls["accLocation"], 4);
    EXPECT_TRUE(log.Contains("V [WaitForState] element location is steady for 300 ms at lt(1, 2) br(4, 6)")) << log.Text();
    EXPECT_TRUE(log.Contains("element reached expected state after 300 ms")) << log.Text();
}

TEST_F(WaitForStateTest, OnAnElementThatMovesOnEachPollTimesOut) {
    element->onState = [this](int read) { element->location.top = read; };
    EXPECT_EQ(Wait(0, STATE_SYSTEM_OFFSCREEN), S_FALSE);
    EXPECT_EQ(slept, 3000u);
    EXPECT_EQ(element->calls["accLocation"], 30);
}

TEST_F(WaitForStateTest, StartsTheSteadyTimeAgainAfterAMove) {
    element->onState = [this](int read) { element->location.top = read < 2 ? 10 : 50; };
    EXPECT_EQ(Wait(0, STATE_SYSTEM_OFFSCREEN), S_OK);
    EXPECT_EQ(slept, 500u);
    EXPECT_EQ(element->calls["accLocation"], 6);
}

TEST_F(WaitForStateTest, KeepsTheSteadyTimeOverARoundWithoutTheState) {
    // Two good rounds, one offscreen, two good ones: the fourth good one ends it.
    element->onState = [this](int read) { element->stateAnswer = read == 2 ? STATE_SYSTEM_OFFSCREEN : LONG{0}; };
    EXPECT_EQ(Wait(0, STATE_SYSTEM_OFFSCREEN), S_OK);
    EXPECT_EQ(slept, 400u);
    EXPECT_EQ(element->calls["accLocation"], 4);
}

TEST_F(WaitForStateTest, EndsWithAFailedState) {
    element->onState = [this](int read) {
        if (read == 2) element->stateAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    };
    EXPECT_EQ(Wait(STATE_SYSTEM_EXPANDED, 0), E_ACCESSDENIED);
    EXPECT_EQ(slept, 200u);
    EXPECT_TRUE(log.Contains("HasAAState(pAA, varChild, lStateOn, lStateOff, out_bResult) | HRESULT 80070005 | ")) << log.Text();
}

TEST_F(WaitForStateTest, EndsWithAFailedLocation) {
    element->locationResult = E_FAIL;
    EXPECT_EQ(Wait(0, STATE_SYSTEM_OFFSCREEN), E_FAIL);
    EXPECT_TRUE(log.Contains("GetAALocation(pAA, varChild, rcLocCrt) | HRESULT 80004005 | AA Object GetLocation failed")) << log.Text();
}

TEST_F(WaitForStateTest, OfNoElementIsAnInvalidArgument) {
    EXPECT_EQ(WaitForState(nullptr, Self, 0, 0, reached), E_INVALIDARG);
    EXPECT_TRUE(log.Contains("HasAAState(pAA, varChild, lStateOn, lStateOff, out_bResult) | HRESULT 80070057 | ")) << log.Text();
}

// The element's own window procedure runs on the waiting thread: without the pump nothing would ever change.
DesktopFixture DesktopThatExpandsByMessage(UINT message, bool quitFirst = false) {
    Simulated::DesktopModel model;
    auto window = std::make_shared<Simulated::Window>();
    window->id = "main";
    window->className = L"Frame";
    auto client = std::make_shared<Simulated::Element>();
    client->id = "tree";
    client->role = ROLE_SYSTEM_OUTLINE;
    window->objects[OBJID_CLIENT] = client;
    model.windows.push_back(window);
    Simulated::Action expand;
    expand.target = "tree";
    expand.add = STATE_SYSTEM_EXPANDED;
    Simulated::ScheduledChange change;
    change.after = 250;
    change.window = "main";
    change.message = message;
    change.actions = {expand};
    if (quitFirst) {
        Simulated::ScheduledChange quit;
        quit.after = change.after;
        quit.window = "main";
        quit.message = WM_QUIT;
        model.schedule.push_back(quit);
    }
    model.schedule.push_back(change);
    return DesktopFixture(Simulated::Desktop::Build(std::move(model)));
}

TEST(WaitForStatePump, DispatchesTheMessagesOfTheThread) {
    DesktopFixture desktop = DesktopThatExpandsByMessage(WM_USER);
    bool reached = false;
    EXPECT_EQ(WaitForState(desktop.Element("tree"), Self, STATE_SYSTEM_EXPANDED, 0, reached), S_OK);
    EXPECT_TRUE(reached);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(WaitForStatePump, TakesARequestToQuitWithoutDispatchingIt) {
    DesktopFixture desktop = DesktopThatExpandsByMessage(WM_QUIT);
    bool reached = false;
    EXPECT_EQ(WaitForState(desktop.Element("tree"), Self, STATE_SYSTEM_EXPANDED, 0, reached), S_FALSE);
    MSG message{};
    EXPECT_FALSE(::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
}

TEST(WaitForStatePump, ARequestToQuitEndsTheRoundAndTheNextOneGoesOn) {
    LogCapture log;
    DesktopFixture desktop = DesktopThatExpandsByMessage(WM_USER, true);
    bool reached = false;
    EXPECT_EQ(WaitForState(desktop.Element("tree"), Self, STATE_SYSTEM_EXPANDED, 0, reached), S_OK);
    // Both are there at 300 ms; what stands behind the request to quit is dispatched a round later.
    EXPECT_TRUE(log.Contains("element reached expected state after 400 ms")) << log.Text();
}

}  // namespace
}  // namespace Zorvex::AAUtil
