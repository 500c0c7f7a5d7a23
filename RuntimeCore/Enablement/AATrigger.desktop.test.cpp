#include "RuntimeCore/Enablement/AATrigger.h"

#include <gtest/gtest.h>

#include "Common/UTILITY/ModuleHandle.h"
#include "Platform/Simulated/System.h"
#include "Platform/Simulated/Threads.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::N_AATrigger {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

constexpr char kDesktop[] = R"({ "processes": [
    { "id": 1000, "path": "C:\\App\\viewer.exe", "current": true }, { "id": 1001, "path": "C:\\B\\Chrome.exe" },
    { "id": 1002, "path": "C:\\B\\msedge.exe" }, { "id": 1003, "path": "C:\\B\\firefox.exe" }, { "id": 1004, "path": "C:\\B\\thunderbird.exe" },
    { "id": 1005, "path": "C:\\B\\vivaldi.exe" }, { "id": 1006, "path": "C:\\B\\brave.exe" } ],
  "windows": [
    { "id": "plain", "class": "Frame", "children": [
      { "id": "embedded", "class": "Chrome_WidgetWin_0", "objects": { "client": { "id": "embeddedClient", "role": "client", "ia2": {} } } } ] },
    { "id": "app", "class": "Chrome_WidgetWin_1" },
    { "id": "chrome", "class": "Chrome_WidgetWin_1", "process": 1001, "children": [
      { "id": "render", "class": "Chrome_RenderWidgetHostHWND", "process": 1001 },
      { "id": "d3d", "class": "Intermediate D3D Window", "process": 1001 } ] },
    { "id": "lost", "class": "Frame", "process": 1001, "children": [
      { "id": "orphan", "class": "Chrome_RenderWidgetHostHWND", "process": 1001 } ] },
    { "id": "vivaldi", "class": "Chrome_WidgetWin_1", "process": 1005 },
    { "id": "brave", "class": "Chrome_WidgetWin_1", "process": 1006 },
    { "id": "holder", "class": "Frame", "process": 1005, "children": [ { "id": "webView", "class": "Chrome_WidgetWin_0", "process": 1005 } ] },
    { "id": "edgeDialog", "class": "#32770", "process": 1002 },
    { "id": "firefox", "class": "MozillaWindowClass", "process": 1003, "objects": { "window": { "id": "firefoxRoot", "role": "window", "name": "Page" } },
      "children": [ { "id": "compositor", "class": "MozillaCompositorWindowClass", "process": 1003 } ] },
    { "id": "strayCompositor", "class": "MozillaCompositorWindowClass", "process": 1003 },
    { "id": "mail", "class": "MozillaWindowClass", "process": 1004 },
    { "id": "reader", "class": "AcrobatSDIWindow", "thread": 5, "objects": { "window": { "id": "readerRoot", "role": "window" } }, "children": [
      { "id": "view", "class": "AVL_AVView", "title": "AVSplitterView", "thread": 5, "children": [
        { "id": "page", "class": "AVL_AVView", "title": "AVPageView", "thread": 5,
          "objects": { "window": { "id": "pageRoot", "role": "window", "name": "Document", "children": [
            { "id": "pageClient", "role": "client", "children": [ { "id": "pane", "role": "pane" } ] } ] } } } ] } ] },
    { "id": "emptyReader", "class": "AcrobatSDIWindow", "objects": { "window": { "id": "emptyRoot", "role": "window", "children": [] } },
      "children": [ { "id": "side", "class": "AVL_AVView", "title": "AVTaskPane" } ] },
    { "id": "strayView", "class": "AVL_AVView", "title": "Other" } ] })";

class TriggerTest : public ::testing::Test {
protected:
    void SetUp() override {
        before = ModuleHandle();
        OnDllMain(reinterpret_cast<HINSTANCE>(&storage), 1, nullptr);
        handles = Simulated::OpenHandles();
    }
    void TearDown() override {
        Simulated::ResetThreadFailures();
        OnDllMain(before, 1, nullptr);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        EXPECT_TRUE(Simulated::LiveThreads().empty());
        EXPECT_EQ(Simulated::StandingHooks(), 0u);
        EXPECT_EQ(Simulated::OpenHandles(), handles);
    }
    int Trigger(const char* window, TriggerScope scope = TriggerScope::Window) {
        return TriggerAccessibility(desktop.Window(window), scope);
    }
    void Refuse(const char* id, const char* call, HRESULT result = E_ACCESSDENIED) {
        Simulated::Fault fault;
        fault.call = call;
        fault.result = result;
        desktop.AddFault(id, fault);
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    int storage = 0;
    HINSTANCE before = nullptr;
    int handles = 0;
};

TEST_F(TriggerTest, PlainWindowIsNobodys) {
    EXPECT_EQ(Trigger("plain"), 0);
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
    EXPECT_EQ(desktop.TotalCalls(), 0);
}

TEST_F(TriggerTest, ScopeThatThereIsNotIsLogged) {
    EXPECT_EQ(Trigger("chrome", static_cast<TriggerScope>(3)), 0);
    EXPECT_EQ(log.Lines().size(), 1u);
    EXPECT_TRUE(log.Contains("E [TriggerAccessibility] N_AATrigger::TriggerAccessibility Invalid scope nScope=0x3")) << log.Text();
}

TEST_F(TriggerTest, DescendantsNeedAWindow) {
    EXPECT_EQ(TriggerAccessibility(nullptr, TriggerScope::Descendants), 0);
    const HWND gone = desktop.Window("chrome");
    desktop.DestroyWindow("chrome");
    EXPECT_EQ(TriggerAccessibility(gone, TriggerScope::Descendants), 0);
    EXPECT_EQ(log.Count("E [TriggerAccessibility] Expectation not met: hWnd != NULL && ::IsWindow(hWnd) | N_AATrigger::TriggerAccessibility "
                        "Invalid HWND for nScope=AA_TRIGGER_DESCENDANTS, hWnd=0x"), 2u) << log.Text();
}

TEST_F(TriggerTest, TopLevelsTakeNoWindow) {
    EXPECT_EQ(Trigger("chrome", TriggerScope::TopLevels), 0);
    EXPECT_TRUE(log.Contains("E [TriggerAccessibility] Expectation not met: hWnd == NULL | N_AATrigger::TriggerAccessibility HWND must be NULL "
                             "for nScope=AA_TRIGGER_TOP_LEVELS, hWnd=0x")) << log.Text();
    EXPECT_EQ(desktop.Calls("AccessibleObjectFromWindow"), 0);
}

TEST_F(TriggerTest, TopLevelsAreEachOffered) {
    EXPECT_EQ(TriggerAccessibility(nullptr, TriggerScope::TopLevels), 1);
    EXPECT_EQ(desktop.Calls("chrome", "AccessibleObjectFromWindow"), 1);
    EXPECT_EQ(desktop.Calls("firefox", "AccessibleObjectFromWindow"), 1);
    EXPECT_EQ(desktop.Calls("page", "AccessibleObjectFromWindow"), 2);  // is it enabled, then the questions
    EXPECT_EQ(desktop.Calls("embedded", "AccessibleObjectFromWindow"), 0);
}

TEST_F(TriggerTest, DescendantsAnswerForTheWindowItselfAndForChildren) {
    EXPECT_EQ(Trigger("plain", TriggerScope::Descendants), 1);
    EXPECT_EQ(desktop.Calls("embeddedClient", "get_accRole"), 1);
    EXPECT_EQ(Trigger("app", TriggerScope::Descendants), 1);
}

TEST_F(TriggerTest, FortyRenderWindowsOfOneWidgetCostOneTrigger) {
    std::string text = R"({ "processes": [ { "id": 1000, "path": "C:\\B\\chrome.exe", "current": true } ],
      "windows": [ { "id": "main", "class": "Chrome_WidgetWin_1", "objects": { "client": { "id": "client", "role": "client", "ia2": {} } }, "children": [)";
    for (int i = 0; i < 40; ++i) text += std::string(i ? "," : "") + R"({ "class": "Chrome_RenderWidgetHostHWND" })";
    DesktopFixture many(text + "] } ] }");
    EXPECT_EQ(TriggerAccessibility(many.Window("main"), TriggerScope::Descendants), 1);
    EXPECT_EQ(many.Calls("client", "get_states"), 1);
    EXPECT_EQ(log.Count("N_AATrigger::ChromiumTrigger executed trigger"), 1u);
    EXPECT_EQ(log.Count("V [ChromiumTrigger] N_AATrigger::ChromiumTrigger Accessibility was already triggered for this window. Skip hWndMain=0x"), 40u);
    // The memory of windows ends with the call.
    EXPECT_EQ(TriggerAccessibility(many.Window("main"), TriggerScope::Descendants), 1);
    EXPECT_EQ(many.Calls("client", "get_states"), 2);
}

TEST_F(TriggerTest, EachWindowIsRememberedOnce) {
    TriggeredWindows memo;
    const HWND first = desktop.Window("plain"), second = desktop.Window("app");
    EXPECT_TRUE(AddIfNotTriggered(second, memo));
    EXPECT_TRUE(AddIfNotTriggered(first, memo));
    EXPECT_FALSE(AddIfNotTriggered(second, memo));
    EXPECT_EQ(memo, (TriggeredWindows{second, first}));
}

TEST_F(TriggerTest, PositionOfTheTriggerIsLogged) {
    EXPECT_EQ(Trigger("chrome"), 1);
    EXPECT_TRUE(log.Contains("V [TriggerWidgetAccessibility] N_AATrigger::TriggerWidgetAccessibility Found accessibility trigger at position #0 for hWnd=0x"));
    EXPECT_EQ(Trigger("reader"), 1);
    EXPECT_TRUE(log.Contains("Found accessibility trigger at position #1 for hWnd=0x"));
    EXPECT_EQ(Trigger("firefox"), 1);
    EXPECT_TRUE(log.Contains("Found accessibility trigger at position #2 for hWnd=0x")) << log.Text();
}

TEST_F(TriggerTest, ChromiumIsRecognisedByEmbeddingByBrowserAndByEdgesProcess) {
    for (const char* own : {"embedded", "app", "chrome", "render", "d3d", "edgeDialog", "webView"}) EXPECT_EQ(Trigger(own), 1) << own;
    // A browser of its own name, top level: its class alone isn't enough.
    for (const char* other : {"vivaldi", "brave", "plain", "lost"}) EXPECT_EQ(Trigger(other), 0) << other;
}

TEST_F(TriggerTest, ChromiumWindowWithoutAWidgetIsRecognisedWithAWarning) {
    for (const char* window : {"orphan", "edgeDialog"}) {
        log.Clear();
        EXPECT_EQ(Trigger(window), 1) << window;
        EXPECT_TRUE(log.Contains("W [ChromiumTrigger] N_AATrigger::ChromiumTrigger Detected a Chromium internal window hWnd=0x")) << log.Text();
        EXPECT_TRUE(log.Contains(", but cannot get Widget (Main) Window"));
    }
    EXPECT_EQ(desktop.Calls("AccessibleObjectFromWindow"), 0);
}

TEST_F(TriggerTest, ChromiumAnswersTrueWhateverTheOutcome) {
    EXPECT_EQ(Trigger("embedded"), 1);
    EXPECT_TRUE(log.Contains("V [ChromiumTrigger] N_AATrigger::ChromiumTrigger executed trigger, hWnd=0x")) << log.Text();
    EXPECT_TRUE(log.Contains("success=0"));
}

TEST_F(TriggerTest, FirefoxIsAskedForTheNameOfItsTopLevelWindow) {
    EXPECT_EQ(Trigger("compositor"), 1);
    EXPECT_EQ(desktop.Calls("firefoxRoot", "get_accName"), 1);
    EXPECT_TRUE(log.Contains("V [FirefoxTrigger] N_AATrigger::FirefoxTrigger IAccessible::get_accName() hResult=0x0")) << log.Text();
    EXPECT_EQ(Trigger("firefox", TriggerScope::Descendants), 1);
    EXPECT_EQ(desktop.Calls("firefoxRoot", "get_accName"), 2);
    EXPECT_EQ(log.Count("V [FirefoxTrigger] N_AATrigger::FirefoxTrigger Accessibility was already triggered for this window. Skip hWndMain=0x"), 1u);
}

TEST_F(TriggerTest, FirefoxThatRefusesItsNameOrObjectIsRecognisedAllTheSame) {
    Refuse("firefoxRoot", "get_accName");
    EXPECT_EQ(Trigger("firefox"), 1);
    EXPECT_TRUE(log.Contains("N_AATrigger::FirefoxTrigger IAccessible::get_accName() hResult=0x80070005")) << log.Text();
    log.Clear();
    Refuse("firefox", "AccessibleObjectFromWindow");
    EXPECT_EQ(Trigger("firefox"), 1);
    EXPECT_FALSE(log.Contains("get_accName"));
}

TEST_F(TriggerTest, CompositorWithoutAFirefoxWindowAboveIsRecognisedWithAWarning) {
    EXPECT_EQ(Trigger("strayCompositor"), 1);
    EXPECT_TRUE(log.Contains("W [FirefoxTrigger] N_AATrigger::FirefoxTrigger Detected a Firefox window hWnd=0x")) << log.Text();
    EXPECT_TRUE(log.Contains(", but cannot get TopLevel Firefox Window"));
}

TEST_F(TriggerTest, MailProgramOfTheSameClassIsNoFirefox) { EXPECT_EQ(Trigger("mail"), 0); }

TEST_F(TriggerTest, ReaderIsAskedUnderAHookOnItsPageView) {
    for (const char* window : {"page", "view", "reader"}) {
        log.Clear();
        const int names = desktop.Calls("pageRoot", "get_accName");
        EXPECT_EQ(Trigger(window), 1);
        EXPECT_EQ(desktop.Calls("pageRoot", "get_accName"), names + 1) << window;
        for (const char* text : {"V [AdobeTrigger] N_AATrigger::AdobeTrigger detected Adobe Reader window, hWnd=0x",
                                 "V [AdobeIsEnabled] N_AATrigger::AdobeIsEnabled end S_OK, bIsEnabled=0",
                                 "CAAEventHook::CreateInstance return OK", "targetTID=0x5", "dwTimeoutReady=5000",
                                 "V [AdobeTrigger] N_AATrigger::AdobeTrigger IAccessible::get_accName() hResult=0x0",
                                 "V [AdobeTrigger] N_AATrigger::AdobeTrigger IAccessible::get_accChildCount() hResult=0x0 nChildCount=1",
                                 "V [AdobeTrigger] N_AATrigger::AdobeTrigger end", "CAAEventHook::HookThreadProc exit"})
            EXPECT_TRUE(log.Contains(text)) << window << ": " << text << "\n" << log.Text();
    }
}

TEST_F(TriggerTest, ReaderWithoutAPageViewIsTriggeredByItsFrame) {
    EXPECT_EQ(Trigger("side"), 1);
    EXPECT_EQ(desktop.Calls("emptyRoot", "get_accName"), 1);
    EXPECT_EQ(Trigger("strayView"), 0);
}

TEST_F(TriggerTest, ReaderIsTriggeredOnceInACall) {
    EXPECT_EQ(Trigger("reader", TriggerScope::Descendants), 1);
    EXPECT_EQ(desktop.Calls("pageRoot", "get_accName"), 1);
    EXPECT_EQ(log.Count("V [AdobeTrigger] N_AATrigger::AdobeTrigger Accessibility was already triggered for this window. Skip hTriggerWnd=0x"), 2u);
}

TEST_F(TriggerTest, ReaderThatShowsItsStructureIsLeftAlone) {
    DesktopFixture awake(R"({ "windows": [ { "id": "page", "class": "AVL_AVView", "title": "AVPageView", "objects": { "window": { "id": "root", "role": "window",
      "children": [ { "role": "client", "children": [ { "role": "document", "children": [ { "role": "grouping" } ] } ] } ] } } } ] })");
    EXPECT_EQ(TriggerAccessibility(awake.Window("page"), TriggerScope::Window), 1);
    EXPECT_TRUE(log.Contains("V [AdobeTrigger] N_AATrigger::AdobeTrigger Accessibility is already enabled for hTriggerWnd=0x")) << log.Text();
    EXPECT_TRUE(log.Contains(", skip trigger"));
    EXPECT_FALSE(log.Contains("CAAEventHook"));
    EXPECT_EQ(awake.Calls("root", "get_accName"), 0);
    EXPECT_EQ(awake.OutstandingReferences(), 0);
}

TEST_F(TriggerTest, StructureOfTheReaderIsLookedForThreeLevelsDown) {
    DesktopFixture deep(R"({ "windows": [ { "id": "page", "class": "AVL_AVView", "title": "AVPageView", "objects": { "window": { "role": "grouping",
      "children": [ { "role": "client", "children": [ { "role": "document", "children": [ { "role": "pane", "children": [ { "role": "grouping" } ] } ] } ] } ] } } } ] })");
    bool isEnabled = true;
    EXPECT_EQ(AdobeIsEnabled(deep.Window("page"), isEnabled), S_OK);
    EXPECT_FALSE(isEnabled);
}

TEST_F(TriggerTest, UnreadableRoleInTheReaderIsNoMatch) {
    Refuse("pane", "get_accRole");
    bool isEnabled = true;
    EXPECT_EQ(AdobeIsEnabled(desktop.Window("page"), isEnabled), S_OK);
    EXPECT_FALSE(isEnabled);
    EXPECT_TRUE(log.Contains("E [AdobeIsEnabled] N_AATrigger::AdobeIsEnabled failed to get IAccessible child role, hResult=0x80070005")) << log.Text();
}

TEST_F(TriggerTest, ReaderWithoutAnObjectFails) {
    Refuse("page", "AccessibleObjectFromWindow");
    bool isEnabled = true;
    EXPECT_EQ(AdobeIsEnabled(desktop.Window("page"), isEnabled), E_ACCESSDENIED);
    EXPECT_FALSE(isEnabled);
    EXPECT_TRUE(log.Contains("E [AdobeIsEnabled] hRes | HRESULT 80070005 | N_AATrigger::AdobeIsEnabled failed to get trigger window IAccessible")) << log.Text();
    log.Clear();
    EXPECT_EQ(Trigger("page"), 1);
    EXPECT_TRUE(log.Contains("E [AdobeTrigger] N_AATrigger::AdobeTrigger failed to get IAccessible, hResult=0x80070005")) << log.Text();
    desktop.ClearFaults();
    Simulated::Fault fault;
    fault.call = "AccessibleObjectFromWindow";
    fault.null = true;
    desktop.AddFault("page", fault);
    EXPECT_EQ(AdobeIsEnabled(desktop.Window("page"), isEnabled), E_FAIL);
}

TEST_F(TriggerTest, ReaderWithoutAHookIsNotAsked) {
    Simulated::FailThreadCall(Simulated::ThreadCall::SetHook, 1, 5);
    EXPECT_EQ(Trigger("page"), 1);
    EXPECT_TRUE(log.Contains("E [AdobeTrigger] N_AATrigger::AdobeTrigger failed to create event hook")) << log.Text();
    EXPECT_EQ(desktop.Calls("pageRoot", "get_accName"), 0);
}

TEST_F(TriggerTest, FailureOfAnyCallLeavesNoReferenceThreadOrHook) {
    for (const char* window : {"embedded", "firefox", "page"}) {
        for (unsigned at = 1; at < 40; ++at) {
            for (const bool null : {false, true}) {
                Simulated::Fault fault;
                fault.at = at;
                fault.times = 1;
                if (null) fault.null = true;
                else fault.result = E_FAIL;
                desktop.AddFault(fault);
                EXPECT_EQ(Trigger(window), 1);
                desktop.ClearFaults();
                ASSERT_EQ(desktop.OutstandingReferences(), 0) << window << " " << at;
                ASSERT_EQ(Simulated::StandingHooks(), 0u);
            }
        }
    }
}

TEST_F(TriggerTest, ExceptionOfAServerPassesNoPlatformFrame) {
    Simulated::Fault fault;
    fault.call = "AccessibleObjectFromWindow";
    fault.raise = true;
    desktop.AddFault("embedded", fault);
    EXPECT_THROW(Trigger("plain", TriggerScope::Descendants), Simulated::ServerFailure);
}

}  // namespace
}  // namespace Zorvex::N_AATrigger
