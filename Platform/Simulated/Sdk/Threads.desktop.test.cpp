#include "Platform/Simulated/Threads.h"

#include <gtest/gtest.h>

#include <atomic>

#include "Platform/Simulated/Sdk/System.h"
#include "Platform/Simulated/System.h"

namespace Simulated {
namespace {

constexpr DWORD kLong = 10'000;

struct Shared {
    HANDLE go = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE done = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::atomic<DWORD> id{0};
    std::atomic<int> messages{0};
    ~Shared() {
        CloseHandle(go);
        CloseHandle(done);
    }
};

class SimulatedThreads : public ::testing::Test {
protected:
    void TearDown() override {
        ResetThreadFailures();
        EXPECT_TRUE(LiveThreads().empty());
    }
    ULONGLONG Elapsed() const { return ClockMilliseconds() - start; }
    ULONGLONG start = ClockMilliseconds();
};

DWORD WINAPI WaitForGo(LPVOID parameter) {
    Shared& shared = *static_cast<Shared*>(parameter);
    shared.id = GetCurrentThreadId();
    WaitForSingleObject(shared.go, INFINITE);
    SetEvent(shared.done);
    return 0;
}

TEST_F(SimulatedThreads, ThreadIsSignalledWhenItEnds) {
    Shared shared;
    DWORD id = 0;
    const HANDLE thread = CreateThread(nullptr, 0, &WaitForGo, &shared, 0, &id);
    EXPECT_EQ(LiveThreads(), std::vector<DWORD>{id});
    EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_TIMEOUT);
    EXPECT_TRUE(SetEvent(shared.go));
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(shared.id, id);
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_FALSE(CloseHandle(thread));
    EXPECT_EQ(Elapsed(), 0u);
}

TEST_F(SimulatedThreads, WaitTimesOutOnTheClockOnceNobodyCanEndIt) {
    Shared shared;
    const HANDLE thread = CreateThread(nullptr, 0, &WaitForGo, &shared, 0, nullptr);
    EXPECT_EQ(WaitForSingleObject(shared.done, kLong), WAIT_TIMEOUT);
    EXPECT_EQ(Elapsed(), kLong);
    SetEvent(shared.go);
    const HANDLE handles[] = {shared.done, thread};
    EXPECT_LE(WaitForMultipleObjects(2, handles, FALSE, kLong), WAIT_OBJECT_0 + 1);
    EXPECT_EQ(WaitForSingleObject(thread, kLong), WAIT_OBJECT_0);
    EXPECT_EQ(Elapsed(), kLong);
    CloseHandle(thread);
}

DWORD WINAPI SleepLong(LPVOID parameter) {
    WaitForSingleObject(static_cast<Shared*>(parameter)->go, kLong);
    return 0;
}

TEST_F(SimulatedThreads, EarlierWaitEndsFirst) {
    Shared shared;
    const HANDLE thread = CreateThread(nullptr, 0, &SleepLong, &shared, 0, nullptr);
    EXPECT_EQ(WaitForSingleObject(thread, 1000), WAIT_TIMEOUT);
    EXPECT_EQ(Elapsed(), 1000u);
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    EXPECT_GE(Elapsed(), kLong);
    CloseHandle(thread);
}

DWORD WINAPI Pump(LPVOID parameter) {
    Shared& shared = *static_cast<Shared*>(parameter);
    while (MsgWaitForMultipleObjects(1, &shared.go, FALSE, INFINITE, 0xFF) == WAIT_OBJECT_0 + 1) {
        MSG message;
        EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) return 0;
            ++shared.messages;
        }
    }
    return 1;
}

TEST_F(SimulatedThreads, MessagesReachTheThreadInOrder) {
    Shared shared;
    DWORD id = 0;
    const HANDLE thread = CreateThread(nullptr, 0, &Pump, &shared, 0, &id);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(PostThreadMessageW(id, WM_USER, 0, 0));
    EXPECT_TRUE(PostThreadMessageW(id, WM_QUIT, 0, 0));
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(shared.messages, 3);
    EXPECT_FALSE(PostThreadMessageW(id, WM_USER, 0, 0));
    EXPECT_EQ(GetLastError(), 1444u);
    CloseHandle(thread);
}

TEST_F(SimulatedThreads, EventOfAutomaticResetEndsOneWait) {
    const HANDLE once = CreateEventW(nullptr, FALSE, TRUE, nullptr);
    EXPECT_EQ(WaitForSingleObject(once, 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(once, 0), WAIT_TIMEOUT);
    CloseHandle(once);
    EXPECT_EQ(WaitForSingleObject(once, 0), WAIT_FAILED);
    EXPECT_FALSE(SetEvent(once));
}

void CALLBACK Ignore(HWINEVENTHOOK, DWORD, HWND, LONG, LONG, DWORD, DWORD) {}
DWORD WINAPI SetHookAndLeave(LPVOID hook) {
    *static_cast<HWINEVENTHOOK*>(hook) = SetWinEventHook(EVENT_MIN, EVENT_MAX, reinterpret_cast<HMODULE>(hook), &Ignore, 1, 1, WINEVENT_INCONTEXT);
    return 0;
}

TEST_F(SimulatedThreads, HookEndsWithItsThreadAndOnlyItsThreadUnsetsIt) {
    int module = 0;
    const auto own = SetWinEventHook(EVENT_MIN, EVENT_MAX, reinterpret_cast<HMODULE>(&module), &Ignore, 1, 1, WINEVENT_INCONTEXT);
    ASSERT_TRUE(own);
    EXPECT_EQ(StandingHooks(), 1u);
    EXPECT_FALSE(SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, &Ignore, 1, 1, WINEVENT_INCONTEXT));
    const unsigned before = AbandonedHooks();
    HWINEVENTHOOK other = nullptr;
    const HANDLE thread = CreateThread(nullptr, 0, &SetHookAndLeave, &other, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    EXPECT_EQ(AbandonedHooks(), before + 1);
    EXPECT_FALSE(UnhookWinEvent(other));
    EXPECT_TRUE(UnhookWinEvent(own));
    EXPECT_FALSE(UnhookWinEvent(own));
    EXPECT_EQ(StandingHooks(), 0u);
}

}  // namespace
}  // namespace Simulated
