#include "InProc/Vantrel/DomAriaComboRequest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/System.h"
#include "tests/Support/LogCapture.h"
#include "tests/Support/RegisteredElement.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [{"id": "page", "class": "Chrome_WidgetWin_1", "objects": {"client": {"children": [
  {"id": "closed", "role": "combo box", "defaultAction": "open", "state": ["collapsed"], "action": [
    {"clear": ["collapsed"], "add": ["expanded"]},
    {"insert": {"role": "list", "children": [{"role": "list item", "name": "One"}]}, "into": "closed"}]},
  {"id": "opened", "role": "combo box", "defaultAction": "close", "state": ["expanded"], "action": [
    {"clear": ["expanded"], "add": ["collapsed"]}]},
  {"id": "odd", "role": "combo box", "defaultAction": "open", "state": ["expanded"]},
  {"id": "slow", "role": "combo box", "defaultAction": "open", "state": ["collapsed"]},
  {"id": "button", "role": "push button", "defaultAction": "open"}]}}}],
  "schedule": [{"after": 1000, "window": "page", "do": [{"change": "slow", "clear": ["collapsed"], "add": ["expanded"]}]}]})";

class DomAriaComboRequest : public ::testing::Test {
protected:
    HRESULT Expand(const AAObjectIdentifier& element, bool expand = true) { return Call(ExpandDomAriaComboRequest{element, expand}).result; }
    AAObjectIdentifier Of(const char* element, std::optional<std::uint32_t> isDomAria = std::nullopt) {
        return Register(desktop, "page", element, isDomAria);
    }
    void TearDown() override {
        CacheCleaner::Release();
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }

    DesktopFixture desktop{kDesktop};
    LogCapture log;
};

TEST_F(DomAriaComboRequest, OpensAClosedBoxOnce) {
    EXPECT_EQ(Expand(Of("closed")), S_OK);
    EXPECT_EQ(Expand(Of("closed")), S_OK);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction closed"));
    EXPECT_TRUE(log.Contains("V [ExpandDomAriaComboImpl] calling LookupIdentifier"));
    EXPECT_TRUE(log.Contains("Chromium ComboBox with options already loaded detected. Will do nothing."));
}

TEST_F(DomAriaComboRequest, ClosesAnOpenBoxThatStillSaysOpen) {
    EXPECT_EQ(Expand(Of("odd"), false), S_OK);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction odd"));
}

// An open box says "close", and is then not known for what it is: the request succeeds and does nothing.
TEST_F(DomAriaComboRequest, LeavesAnOpenBoxThatSaysCloseAlone) {
    EXPECT_EQ(Expand(Of("opened"), false), S_OK);
    EXPECT_THAT(desktop.Done(), testing::IsEmpty());
    EXPECT_TRUE(log.Contains("Provided element could not be identified as a known ComboBox."));
}

TEST_F(DomAriaComboRequest, SucceedsOnWhatIsNoBoxOfAPage) {
    for (const bool expand : {false, true}) {
        EXPECT_EQ(Expand(Of("button"), expand), S_OK);
        EXPECT_EQ(Expand(Of("closed", 0u), expand), S_OK);
        EXPECT_EQ(Expand(WindowIdentifier(desktop.Window("page")), expand), S_OK);
        EXPECT_EQ(Expand({}, expand), S_OK);
    }
    EXPECT_THAT(desktop.Done(), testing::IsEmpty());
    EXPECT_FALSE(log.Contains("Provided IAccessible is null."));
}

// The box opens when the page has dispatched a message: the wait pumps it.
TEST_F(DomAriaComboRequest, WaitsWhileThePageOpensTheBoxFromItsOwnMessages) {
    const ULONGLONG before = Simulated::MillisecondsSlept();
    EXPECT_EQ(Expand(Of("slow")), S_OK);
    EXPECT_EQ(Simulated::MillisecondsSlept() - before, 1'000u);
}

TEST_F(DomAriaComboRequest, TakesABoxThatSaysOpenWithAnotherSuccess) {
    desktop.AddFault("closed", {.call = "get_accDefaultAction", .result = S_FALSE, .text = L"open"});
    EXPECT_EQ(Expand(Of("closed")), S_OK);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction closed"));
}

TEST_F(DomAriaComboRequest, GivesTheFailureOfTheBox) {
    desktop.AddFault("slow", {.call = "accDoDefaultAction", .result = E_ACCESSDENIED});
    EXPECT_EQ(Expand(Of("slow")), E_ACCESSDENIED);
    desktop.ClearFaults();
    desktop.AddFault("odd", {.call = "get_accState", .type = VT_BSTR});
    EXPECT_EQ(Expand(Of("odd"), false), E_FAIL);
}

}  // namespace
}  // namespace Zorvex::Testing
