#include "RuntimeCore/Enablement/AAEventHook.h"

#include <gtest/gtest.h>

#include <thread>

#include "Platform/Simulated/System.h"
#include "Platform/Simulated/Threads.h"
#include "RuntimeCore/Enablement/AAEventProc.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Simulated::ThreadCall;
using Testing::DesktopFixture;
using Testing::LogCapture;

constexpr DWORD kReady = 5000;
constexpr DWORD kError = 0x1234;

class EventHook : public ::testing::Test {
protected:
    void SetUp() override {
        handles = Simulated::OpenHandles();
        start = Simulated::ClockMilliseconds();
        abandoned = Simulated::AbandonedHooks();
    }
    void TearDown() override {
        Simulated::ResetThreadFailures();
        EXPECT_TRUE(Simulated::LiveThreads().empty());
        EXPECT_EQ(Simulated::StandingHooks(), 0u);
        EXPECT_EQ(Simulated::AbandonedHooks(), abandoned);
        EXPECT_EQ(Simulated::OpenHandles(), handles);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }
    std::unique_ptr<CAAEventHook> Create(const char* window = "page") { return CreateFor(desktop.Window(window)); }
    std::unique_ptr<CAAEventHook> CreateFor(HWND window) {
        return CAAEventHook::CreateInstance(module, window, CAAEventHook::EventProcedure::AdobeTrigger, kReady);
    }
    bool HasLine(const std::string& text) { return log.Contains(text); }
    ULONGLONG Elapsed() const { return Simulated::ClockMilliseconds() - start; }

    LogCapture log;
    DesktopFixture desktop{R"({ "windows": [
      { "id": "page", "class": "AVL_AVView", "title": "AVPageView", "thread": 7, "objects": { "client": { "id": "client", "role": "client" } } },
      { "id": "other", "class": "Frame", "thread": 8 } ] })"};
    int storage = 0;
    HINSTANCE module = reinterpret_cast<HINSTANCE>(&storage);
    int handles = 0;
    unsigned abandoned = 0;
    ULONGLONG start = 0;
};

TEST_F(EventHook, StandsWhenCreatedAndIsGoneWithItsThreadAfterwards) {
    {
        const auto hook = Create();
        ASSERT_TRUE(hook) << log.Text();
        EXPECT_EQ(Simulated::LiveThreads().size(), 1u);
        EXPECT_EQ(Simulated::StandingHooks(), 1u);
    }
    EXPECT_TRUE(Simulated::LiveThreads().empty());
    EXPECT_EQ(Simulated::StandingHooks(), 0u);
    EXPECT_EQ(Elapsed(), 0u);
    for (const char* text : {"V [CreateInstance] CAAEventHook::CreateInstance enter hDll=0x", "enProcId=1 dwTimeoutReady=5000",
                             "V [Start] CAAEventHook::Start enter hWndTarget=0x",
                             "CAAEventHook::Start Create Hook Thread, targetPID=0x3e8 targetTID=0x7",
                             "CAAEventHook::HookThreadProc start hDll=0x", "dwPID=0x3e8 dwTID=0x7",
                             "CAAEventHook::ThreadHookSet set event hook successfully, signaling hook ready event",
                             "CAAEventHook::Start return OK, Hook ThreadID=0x", "V [CreateInstance] CAAEventHook::CreateInstance return OK",
                             "V [Stop] CAAEventHook::Stop enter dwTimeoutMsgQuit=1000",
                             "CAAEventHook::Stop Try to stop the thread by posting a message in its queue",
                             "CAAEventHook::ThreadStopByMessage enter dwThreadId=0x", "CAAEventHook::HookThreadProc received WM_QUIT, exit",
                             "CAAEventHook::HookThreadProc exit",
                             "CAAEventHook::ThreadStopByMessage finish OK, hook thread stopped"})
        EXPECT_TRUE(HasLine(text)) << text << "\n" << log.Text();
    for (const std::string& line : log.Lines()) EXPECT_EQ(line.front(), 'V') << line;
}

TEST_F(EventHook, OfAWindowThatIsGoneIsNullAndStartsNoThread) {
    const HWND window = desktop.Window("page");
    desktop.DestroyWindow("page");
    EXPECT_FALSE(CreateFor(window));
    EXPECT_FALSE(CreateFor(nullptr));
    EXPECT_EQ(log.Count("E [CreateInstance] CAAEventHook::CreateInstance Error, invalid arguments"), 2u) << log.Text();
    EXPECT_FALSE(HasLine("HookThreadProc"));
}

TEST_F(EventHook, WithoutAModuleOrProcedureIsNull) {
    EXPECT_FALSE(CAAEventHook::CreateInstance(nullptr, desktop.Window("page"), CAAEventHook::EventProcedure::AdobeTrigger, kReady));
    EXPECT_FALSE(CAAEventHook::CreateInstance(module, desktop.Window("page"), static_cast<CAAEventHook::EventProcedure>(2), kReady));
    EXPECT_EQ(log.Count("CAAEventHook::CreateInstance Error, invalid arguments"), 2u) << log.Text();
}

TEST_F(EventHook, ThatCannotBeSetIsKnownAtOnce) {
    Simulated::FailThreadCall(ThreadCall::SetHook, 1, kError);
    EXPECT_FALSE(Create());
    EXPECT_EQ(Elapsed(), 0u);
    for (const char* text : {"E [ThreadHookSet] CAAEventHook::ThreadHookSet Failed to set event hook, dwPID=0x3e8 dwTID=0x7 lastError=0x1234",
                             "CAAEventHook::HookThreadProc failed to set event hook",
                             "E [Start] CAAEventHook::Start Error, failed to set event hook, dwWaitRes=0x0 lastError=0x",
                             "E [CreateInstance] CAAEventHook::CreateInstance failed to start event hook"})
        EXPECT_TRUE(HasLine(text)) << text << "\n" << log.Text();
    EXPECT_FALSE(HasLine("CAAEventHook::HookThreadProc exit"));
    EXPECT_FALSE(HasLine("Try to stop the thread"));
}

TEST_F(EventHook, ThatTakesTooLongIsGivenUpAndItsThreadIsWaitedFor) {
    Simulated::SetHookDelay(8000);
    EXPECT_FALSE(Create());
    EXPECT_EQ(Elapsed(), 8000u);
    for (const char* text : {"CAAEventHook::Start Error, failed to set event hook, dwWaitRes=0x102 lastError=0x",
                             "E [ThreadStopByMessage] CAAEventHook::ThreadStopByMessage failed to stop hook thread using WM_QUIT, timeout=1000 ms",
                             "CAAEventHook::Stop Failed to stop the hook thread by message, try to stop it by signaling the quit event",
                             "V [ThreadStopByEvent] CAAEventHook::ThreadStopByEvent enter dwThreadId=0x",
                             "CAAEventHook::HookThreadProc received Quit signal (hEventHookQuit), exit",
                             "CAAEventHook::ThreadStopByEvent finish OK, hook thread stopped"})
        EXPECT_TRUE(HasLine(text)) << text << "\n" << log.Text();
}

TEST_F(EventHook, WhoseReadyEventCannotBeSignalledIsUnset) {
    Simulated::FailThreadCall(ThreadCall::SetEvent, 1, kError);
    EXPECT_FALSE(Create());
    EXPECT_EQ(Elapsed(), 0u);
    EXPECT_TRUE(HasLine("CAAEventHook::ThreadHookSet Failed to signal the Hook Ready event, lastError=0x1234")) << log.Text();
    EXPECT_EQ(log.Count("CAAEventHook::HookThreadProc failed to set event hook"), 1u);
    EXPECT_FALSE(HasLine("CAAEventHook::HookThreadProc exit"));
}

TEST_F(EventHook, WithoutItsFirstEventLeavesNothing) {
    Simulated::FailThreadCall(ThreadCall::CreateEvent, 1, kError);
    EXPECT_FALSE(Create());
    EXPECT_TRUE(HasLine("E [InitEvents] CAAEventHook::InitEvents cannot create hEvtHookReady, lastError=0x1234")) << log.Text();
    EXPECT_TRUE(HasLine("E [Start] CAAEventHook::Start failed to initialize synchronization events"));
}

TEST_F(EventHook, WithoutItsSecondEventClosesTheFirst) {
    Simulated::FailThreadCall(ThreadCall::CreateEvent, 2, kError);
    EXPECT_FALSE(Create());
    EXPECT_TRUE(HasLine("E [InitEvents] CAAEventHook::InitEvents cannot create hEvtHookQuit, lastError=0x1234")) << log.Text();
    EXPECT_TRUE(HasLine("E [Start] CAAEventHook::Start failed to initialize synchronization events"));
}

TEST_F(EventHook, WithoutAThreadClosesItsEvents) {
    Simulated::FailThreadCall(ThreadCall::CreateThread, 1, kError);
    EXPECT_FALSE(Create());
    EXPECT_TRUE(HasLine("E [Start] CAAEventHook::Start Error, cannot create thread, lastError=0x1234")) << log.Text();
}

TEST_F(EventHook, ThreadIsStoppedByItsEventWhenNoMessageCanBePosted) {
    auto hook = Create();
    ASSERT_TRUE(hook);
    Simulated::FailThreadCall(ThreadCall::PostMessage, 1, kError);
    hook.reset();
    EXPECT_TRUE(HasLine("E [ThreadStopByMessage] CAAEventHook::ThreadStopByMessage failed to post WM_QUIT in thread queue, lastError=0x1234"))
        << log.Text();
    EXPECT_TRUE(HasLine("CAAEventHook::HookThreadProc received Quit signal (hEventHookQuit), exit"));
}

TEST_F(EventHook, WhoseThreadEndedOnItsOwnOnlyClosesHandles) {
    auto hook = Create();
    ASSERT_TRUE(hook);
    ASSERT_TRUE(::PostThreadMessageW(Simulated::LiveThreads().front(), WM_QUIT, 0, 0));
    while (!Simulated::LiveThreads().empty()) std::this_thread::yield();
    hook.reset();
    EXPECT_TRUE(HasLine("CAAEventHook::Stop enter"));
    EXPECT_FALSE(HasLine("Try to stop the thread")) << log.Text();
    EXPECT_FALSE(HasLine("ThreadStopBy"));
}

TEST_F(EventHook, ThreadWhoseWaitFailsUnsetsTheHookAndEnds) {
    Simulated::FailThreadCall(ThreadCall::MessageWait, 1, kError);
    const auto hook = Create();
    while (!Simulated::LiveThreads().empty()) std::this_thread::yield();
    EXPECT_TRUE(HasLine("E [WaitForQuit] CAAEventHook::HookThreadProc unhandled dwWaitRes=0xffffffff, lastError=0x1234")) << log.Text();
    EXPECT_TRUE(HasLine("CAAEventHook::HookThreadProc exit"));
}

TEST_F(EventHook, ThreadDispatchesOtherMessagesAndStays) {
    auto hook = Create();
    ASSERT_TRUE(hook);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(::PostThreadMessageW(Simulated::LiveThreads().front(), WM_USER, 0, 0));
    EXPECT_EQ(Simulated::LiveThreads().size(), 1u);
    hook.reset();
    EXPECT_TRUE(HasLine("CAAEventHook::HookThreadProc received WM_QUIT, exit"));
}

TEST_F(EventHook, EndsAlsoAfterItsWindowDied) {
    auto hook = Create();
    ASSERT_TRUE(hook);
    desktop.DestroyWindow("page");
    hook.reset();
    EXPECT_EQ(Elapsed(), 0u);
}

TEST_F(EventHook, HearsTheWindowsThreadAloneAndAsksForTheObject) {
    const auto hook = Create();
    ASSERT_TRUE(hook);
    ::NotifyWinEvent(0x8005, desktop.Window("other"), OBJID_CLIENT, CHILDID_SELF);
    EXPECT_FALSE(HasLine("N_AAEventProc::AdobeTrigger"));
    ::NotifyWinEvent(0x8005, desktop.Window("page"), OBJID_CLIENT, CHILDID_SELF);
    EXPECT_EQ(desktop.Calls("page", "AccessibleObjectFromEvent"), 1);
    EXPECT_TRUE(HasLine("V [AdobeTrigger] N_AAEventProc::AdobeTrigger start event=0x8005 hwnd=0x")) << log.Text();
    EXPECT_TRUE(HasLine("idObject=0xfffffffc idChild=0x0 dwEventThread=0x7 dwmsEventTime=0x"));
    EXPECT_TRUE(HasLine("V [AdobeTrigger] N_AAEventProc::AdobeTrigger end hResult=0x0"));
}

TEST_F(EventHook, ProcedureLetsNoExceptionOfAServerOut) {
    Simulated::Fault fault;
    fault.call = "AccessibleObjectFromEvent";
    fault.raise = true;
    desktop.AddFault("page", fault);
    EXPECT_NO_THROW(N_AAEventProc::AdobeTrigger(nullptr, 0x8005, desktop.Window("page"), OBJID_CLIENT, CHILDID_SELF, 7, 0));
    desktop.ClearFaults();
    fault.raise = false;
    fault.result = E_ACCESSDENIED;
    desktop.AddFault("page", fault);
    N_AAEventProc::AdobeTrigger(nullptr, 0x8005, desktop.Window("page"), OBJID_CLIENT, CHILDID_SELF, 7, 0);
    EXPECT_TRUE(HasLine("N_AAEventProc::AdobeTrigger end hResult=0x80070005")) << log.Text();
}

TEST_F(EventHook, TwoHundredInARowLeaveNothing) {
    for (int i = 0; i < 200; ++i) ASSERT_TRUE(Create());
}

TEST_F(EventHook, SeveralMayStandAtOnce) {
    const auto first = Create(), second = Create("other");
    EXPECT_EQ(Simulated::StandingHooks(), 2u);
}

}  // namespace
}  // namespace Zorvex
