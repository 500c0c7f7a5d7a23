#include "InProc/Vantrel/EnablementRequests.h"

#include <gtest/gtest.h>

#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

class EnablementRequests : public ::testing::Test {
protected:
    FindBrowserDialogResponse Dialog(const char* window) { return Call(FindBrowserDialogRequest{{desktop.Window(window)}}); }
    void Spoil(const char* id, const char* call, bool raise = false) {
        Simulated::Fault fault;
        fault.call = call;
        fault.raise = raise;
        if (!raise) fault.result = E_ACCESSDENIED;
        desktop.AddFault(id, fault);
    }
    void TearDown() override { EXPECT_EQ(desktop.OutstandingReferences(), 0); }

    LogCapture log;
    DesktopFixture desktop{DesktopFixture::ShippedFile("dialogs.json")};
};

TEST_F(EnablementRequests, DialogWhosePlaceCannotBeReadIsFoundWithoutOne) {
    Spoil("leave", "accLocation");
    const auto answer = Dialog("shop");
    EXPECT_TRUE(answer.found);
    const RECT nowhere{};
    EXPECT_TRUE(::EqualRect(&answer.rectangle, &nowhere));
}

TEST_F(EnablementRequests, DialogIsLookedForByTheWindowsClass) {
    EXPECT_TRUE(Dialog("news").found);
    EXPECT_TRUE(log.Contains("FindFirefoxBrowserDialog for window"));
    EXPECT_FALSE(log.Contains("FindChromeBrowserDialog"));
    log.Clear();
    EXPECT_TRUE(Dialog("shop").found);
    EXPECT_FALSE(log.Contains("FindFirefoxBrowserDialog"));
    log.Clear();
    EXPECT_FALSE(Dialog("plain").found);
    EXPECT_FALSE(log.Contains("BrowserDialog for window"));
}

TEST_F(EnablementRequests, WindowThatIsNamedTwiceIsWalkedOnceAndAnInvalidOneNever) {
    const HWND gone = reinterpret_cast<HWND>(static_cast<UINT_PTR>(0x7FFF0001));
    const auto ids = Call(ExtractWindowIdFromBrowserMarkerTabRequest{{desktop.Window("news"), gone, desktop.Window("news")}}).windowIds;
    EXPECT_EQ(ids.size(), 2u);
    EXPECT_EQ(ids.at(desktop.Window("news")), 4242);
    EXPECT_EQ(ids.at(gone), -1);
    EXPECT_EQ(desktop.Calls("news", "AccessibleObjectFromWindow"), 1);
    EXPECT_FALSE(log.Contains("AccessibleObjectFromWindow failed"));
}

TEST_F(EnablementRequests, ChromiumThatRefusesAnAnswerWasNotWokenButIsRecognised) {
    Spoil("shopClient", "get_accState");
    EXPECT_FALSE(Call(Ia2TriggerChromiumRequest{{desktop.Window("shop")}}).success);
    EXPECT_TRUE(Call(TriggerAccessibilityRequest{desktop.Window("shop"), TriggerScope::Window}).success);
}

}  // namespace
}  // namespace Zorvex::Testing
