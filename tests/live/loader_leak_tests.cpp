// Many loads and unloads in a row leave nothing behind.
#include <gtest/gtest.h>

#include "RuntimeCore/Requests/Catalogue.h"
#include "tests/live/LiveTarget.h"
#include "tests/live/OwnResources.h"

using namespace Zorvex::Loader;
using namespace Zorvex::Testing;
using namespace std::chrono_literals;

namespace {

constexpr int Rounds = 200;

struct Held {
    std::uint32_t targetHandles;
    std::uint32_t targetTlsSlotsLeft;
    std::uint32_t hostReferences;
    DWORD targetThreads;
    std::uint32_t ownHandles;
    std::uint32_t ownTlsSlotsLeft;
};

std::uint32_t Ask(ITarget& target, EchoOrder order) {
    const auto answer = target.Execute(Order(order), 20s);
    EXPECT_TRUE(answer) << (answer ? "" : answer.Error().ToString());
    return answer ? AsNumber(answer->response) : 0;
}

Held Measure(const LiveTarget& program, ITarget& target) {
    Held held{};
    // What goes away a moment after an answer has to be gone before it is counted.
    EXPECT_TRUE(program.HostGoes());
    held.targetHandles = Ask(target, EchoOrder::HandleCount);
    EXPECT_TRUE(program.HostGoes());
    held.hostReferences = Ask(target, EchoOrder::HostReferences);
    EXPECT_TRUE(program.HostGoes());
    held.targetTlsSlotsLeft = Ask(target, EchoOrder::TlsSlotsLeft);
    EXPECT_TRUE(program.HostGoes());
    held.targetThreads = program.ThreadCount();
    held.ownHandles = CountOwnHandles();
    held.ownTlsSlotsLeft = CountFreeTlsSlots();
    return held;
}

void RunRounds(const LiveTarget& program, const std::vector<Bytes>& requests, AfterRequest afterRequest) {
    LoaderOptions options = EchoOptions();
    options.afterRequest = afterRequest;
    const auto target = program.Open(options);
    // The first times, both processes set up what they keep for good.
    for (int i = 0; i < 5; ++i) {
        for (const Bytes& request : requests) target->Execute(request, 20s);
    }
    const Held before = Measure(program, *target);
    for (int i = 0; i < Rounds; ++i) {
        const auto answer = target->Execute(requests[static_cast<std::size_t>(i) % requests.size()], 20s);
        const bool served = answer || answer.Error().problem == LoadProblem::ServerException ||
                            answer.Error().problem == LoadProblem::ServerFault;
        ASSERT_TRUE(served) << i << ": " << answer.Error().ToString();
    }
    EXPECT_FALSE(program.HasModule(L"echo_server.dll"));
    const Held after = Measure(program, *target);
    // The asking itself holds a few handles for a moment; what leaks, leaks each time.
    EXPECT_NEAR(after.targetHandles, before.targetHandles, 3);
    EXPECT_EQ(after.targetTlsSlotsLeft, before.targetTlsSlotsLeft);
    EXPECT_EQ(after.hostReferences, before.hostReferences);
    EXPECT_EQ(after.targetThreads, before.targetThreads);
    EXPECT_NEAR(after.ownHandles, before.ownHandles, 3);
    EXPECT_EQ(after.ownTlsSlotsLeft, before.ownTlsSlotsLeft);
    EXPECT_TRUE(program.HostGoes());
}

}  // namespace

TEST(LoaderLeaksLive, TwoHundredLoadsAndUnloadsLeaveNoModuleThreadHandleOrSlot) {
    const LiveTarget notepad(L"notepad.exe");
    RunRounds(notepad, {Order(EchoOrder::Count)}, AfterRequest::AsFound);
}

TEST(LoaderLeaksLive, TwoHundredLoadsThatEndInExceptionsAndFaultsLeaveNothingEither) {
    const LiveTarget program;
    RunRounds(program, {Order(EchoOrder::ThrowStandard), Order(EchoOrder::ReadNull), Order(EchoOrder::ThrowNumber)},
              AfterRequest::Go);
}

TEST(LoaderLeaksLive, TwoHundredLoadsOfTheRealServerLeaveNothingOfItsRuntime) {
    const LiveTarget notepad(L"notepad.exe");
    const auto measuring = notepad.Open();
    LoaderOptions options = EchoOptions();
    options.serverPath = LiveFolder() + ServerLibraryName(OwnBitness());
    const auto target = notepad.Open(options);
    Zorvex::FindElemFromPointRequest fromPoint;
    fromPoint.clientPid = GetCurrentProcessId();
    fromPoint.window = notepad.Window().window;
    fromPoint.point = {notepad.Window().rectangle.left + 60, notepad.Window().rectangle.top + 80};
    const Zorvex::RequestBuffer good = Zorvex::EncodeRequest(fromPoint);
    const Zorvex::RequestBuffer bad{1, 2, 3};
    const auto run = [&](int rounds) {
        for (int i = 0; i < rounds; ++i) {
            const auto answer = target->Execute({good.data(), good.size()}, 20s);
            ASSERT_TRUE(answer) << i << ": " << answer.Error().ToString();
            if (i % 4 != 0) continue;
            const auto refused = target->Execute({bad.data(), bad.size()}, 20s);
            ASSERT_FALSE(refused);
            ASSERT_EQ(refused.Error().ToString(), "exception out of the server: ArchiveException: Invalid vBuffer in ctor");
        }
    };
    run(5);
    const Held before = Measure(notepad, *measuring);
    run(Rounds);
    const Held after = Measure(notepad, *measuring);
    EXPECT_FALSE(notepad.HasModule(ServerLibraryName(OwnBitness())));
    EXPECT_EQ(after.targetTlsSlotsLeft, before.targetTlsSlotsLeft);
    EXPECT_EQ(after.targetThreads, before.targetThreads);
    EXPECT_NEAR(after.targetHandles, before.targetHandles, 3);
}

TEST(LoaderLeaksLive, AHookDoesNotOutliveItsRequest) {
    const LiveTarget program;
    const auto target = program.Open();
    ASSERT_TRUE(target->Execute(Order(EchoOrder::Count), 20s));
    ASSERT_TRUE(program.HostGoes());
    // With a hook left on the thread any message would bring the host back in.
    DWORD_PTR result = 0;
    SendMessageTimeoutW(program.Window().window, WM_NULL, 0, 0, SMTO_NORMAL, 2000, &result);
    EXPECT_TRUE(program.HostGoes());
}
