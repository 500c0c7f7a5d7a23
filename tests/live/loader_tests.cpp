// The loader against live programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <stop_token>
#include <thread>

#include "Common/include/SafeObject.h"
#include "Controller/Loader/TargetChooser.h"
#include "tests/live/LiveTarget.h"

using namespace Zorvex;
using namespace Zorvex::Loader;
using namespace Zorvex::Testing;
using namespace std::chrono_literals;
using testing::HasSubstr;

namespace {

constexpr auto Ample = 20s;

LoadProblem ProblemOf(const LoadResult<Answer>& answer) { return answer ? static_cast<LoadProblem>(-1) : answer.Error().problem; }
std::string DetailOf(const LoadResult<Answer>& answer) { return answer ? "(an answer)" : answer.Error().detail; }

class Stopwatch {
public:
    std::chrono::milliseconds Elapsed() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_start);
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

// Runs `action` after `delay` beside the test, and is over when this is.
class After {
public:
    template <class Action>
    After(std::chrono::milliseconds delay, Action action)
        : m_thread([=] {
              std::this_thread::sleep_for(delay);
              action();
          }) {}
    ~After() { m_thread.join(); }

private:
    std::thread m_thread;
};

LoaderOptions Staying() {
    LoaderOptions options = EchoOptions();
    options.afterRequest = AfterRequest::Stay;
    return options;
}

}  // namespace

TEST(LoaderLive, RequestRunsOnTheThreadThatOwnsTheWindowOfAForeignProgram) {
    const LiveTarget notepad(L"notepad.exe");
    const auto answer = notepad.Open()->Execute(Order(EchoOrder::ThreadId), Ample);
    ASSERT_TRUE(answer) << answer.Error().ToString();
    EXPECT_EQ(AsNumber(answer->response), notepad.Window().threadId);
    EXPECT_EQ(answer->threadId, notepad.Window().threadId);
}

TEST(LoaderLive, RequestRunsOnTheThreadOfTheSecondWindowWhenThatIsTheTarget) {
    const LiveTarget program;
    SendMessageW(program.Window().window, WM_APP + 2, 0, 0);
    const auto system = CreateLoaderSystem();
    auto second = FindWindowByTitle(*system, program.Window().title + L" 2");
    for (int attempt = 0; !second && attempt < 100; ++attempt) {
        Sleep(20);
        second = FindWindowByTitle(*system, program.Window().title + L" 2");
    }
    ASSERT_TRUE(second) << second.Error().ToString();
    EXPECT_NE(second->threadId, program.Window().threadId);
    auto target = system->Open(second->window, EchoOptions());
    ASSERT_TRUE(target);
    const auto answer = (*target)->Execute(Order(EchoOrder::ThreadId), Ample);
    ASSERT_TRUE(answer) << answer.Error().ToString();
    EXPECT_EQ(AsNumber(answer->response), second->threadId);
}

TEST(LoaderLive, ResponseOfNoBytesIsNoResponse) {
    const LiveTarget program;
    const auto target = program.Open();
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::AnswerNothing), Ample)), LoadProblem::NoResponse);
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::Bytes, 0), Ample)), LoadProblem::NoResponse);
    EXPECT_EQ(ProblemOf(target->Execute({}, Ample)), LoadProblem::NoResponse);
}

TEST(LoaderLive, ResponsesOfEverySizeComeWhole) {
    const LiveTarget program;
    const auto target = program.Open();
    for (const std::uint32_t size : {1u, 4095u, 4096u, 65536u, 65537u, 10u * 1024 * 1024}) {
        const auto answer = target->Execute(Order(EchoOrder::Bytes, size), Ample);
        ASSERT_TRUE(answer) << size << ": " << answer.Error().ToString();
        ASSERT_EQ(answer->response.size(), size);
        std::size_t wrong = 0;
        for (std::size_t i = 0; i < size; ++i) wrong += answer->response[i] != static_cast<std::uint8_t>(i * 7 + i / 256);
        EXPECT_EQ(wrong, 0u) << size;
    }
}

TEST(LoaderLive, RequestsOfTenMegabytesArriveWhole) {
    const LiveTarget program;
    Bytes request(10 * 1024 * 1024 + 1);
    for (std::size_t i = 0; i < request.size(); ++i) request[i] = static_cast<std::uint8_t>(i * 31 + i / 128);
    request[0] = static_cast<std::uint8_t>(EchoOrder::Echo);
    const auto answer = program.Open()->Execute(request, Ample);
    ASSERT_TRUE(answer) << answer.Error().ToString();
    EXPECT_TRUE(std::equal(answer->response.begin(), answer->response.end(), request.begin() + 1, request.end()));
}

TEST(LoaderLive, HungWindowIsToldByTheDeadlineAndNothingRunsInItLater) {
    const LiveTarget program;
    const auto target = program.Open(Staying());
    program.Hang(1500);
    Sleep(100);
    const Stopwatch watch;
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::Count), 400ms)), LoadProblem::TargetHung);
    EXPECT_GE(watch.Elapsed(), 400ms);
    EXPECT_LT(watch.Elapsed(), 1200ms);
    const auto answer = target->Execute(Order(EchoOrder::Count), Ample);
    ASSERT_TRUE(answer) << answer.Error().ToString();
    EXPECT_EQ(AsNumber(answer->response), 1u) << "the request that was given up was run after all";
}

TEST(LoaderLive, LongRequestIsToldByTheDeadlineAndItsLateAnswerHarmsNobody) {
    const LiveTarget program;
    const auto target = program.Open();
    const Stopwatch watch;
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::Sleep, 1500), 400ms)), LoadProblem::DeadlinePassed);
    EXPECT_LT(watch.Elapsed(), 1200ms);
    const auto answer = target->Execute(Order(EchoOrder::Count), Ample);
    EXPECT_TRUE(answer) << DetailOf(answer);
    EXPECT_TRUE(program.ModuleGoes(L"echo_server.dll"));
}

TEST(LoaderLive, LateAnswerOfAControllerThatHasGoneIsDroppedAndTheLibrariesGo) {
    const LiveTarget program;
    EXPECT_EQ(ProblemOf(program.Open()->Execute(Order(EchoOrder::Sleep, 700), 200ms)), LoadProblem::DeadlinePassed);
    Sleep(700);
    EXPECT_TRUE(program.ModuleGoes(L"echo_server.dll"));
    EXPECT_TRUE(program.HostGoes());
    EXPECT_TRUE(program.Open()->Execute(Order(EchoOrder::Count), Ample));
}

TEST(LoaderLive, TargetKilledWhileItServesIsAnErrorAtOnce) {
    const LiveTarget program;
    const auto target = program.Open();
    const Stopwatch watch;
    const After killed(300ms, [&] { program.Kill(); });
    const auto answer = target->Execute(Order(EchoOrder::Sleep, 15000), Ample);
    EXPECT_EQ(ProblemOf(answer), LoadProblem::TargetGone);
    EXPECT_THAT(DetailOf(answer), HasSubstr("while it served"));
    EXPECT_LT(watch.Elapsed(), 5s);
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::Count), Ample)), LoadProblem::TargetGone);
}

TEST(LoaderLive, TargetKilledBeforeItTakesTheRequestIsAnErrorAtOnce) {
    const LiveTarget program;
    const auto target = program.Open();
    program.Hang(15000);
    Sleep(100);
    const Stopwatch watch;
    const After killed(300ms, [&] { program.Kill(); });
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::Count), Ample)), LoadProblem::TargetGone);
    EXPECT_LT(watch.Elapsed(), 5s);
}

TEST(LoaderLive, TargetThatEndsItselfInTheServerIsGone) {
    const LiveTarget program;
    EXPECT_EQ(ProblemOf(program.Open()->Execute(Order(EchoOrder::EndProcess), Ample)), LoadProblem::TargetGone);
}

TEST(LoaderLive, WindowThatHasGoneIsAnErrorAtOnce) {
    const LiveTarget program;
    const auto target = program.Open();
    SendMessageW(program.Window().window, WM_APP + 1, 0, 0);
    const Stopwatch watch;
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::Count), Ample)), LoadProblem::TargetGone);
    EXPECT_LT(watch.Elapsed(), 5s);
}

TEST(LoaderLive, HandleThatNamesNoWindowIsToldOnOpening) {
    const auto system = CreateLoaderSystem();
    const HWND none = reinterpret_cast<HWND>(static_cast<ULONG_PTR>(0x00F0F0F0));
    EXPECT_EQ(system->Open(none, EchoOptions()).Error().problem, LoadProblem::NoSuchWindow);
    EXPECT_EQ(system->Describe(none).Error().problem, LoadProblem::NoSuchWindow);
}

TEST(LoaderLive, MissingLibrariesAreToldOnOpening) {
    const LiveTarget program;
    const auto system = CreateLoaderSystem();
    LoaderOptions options = EchoOptions();
    options.serverPath = LiveFolder() + L"not_there.dll";
    EXPECT_EQ(system->Open(program.Window().window, options).Error().problem, LoadProblem::LibraryNotFound);
    options = EchoOptions();
    options.hostPath = LiveFolder() + L"not_there.dll";
    EXPECT_EQ(system->Open(program.Window().window, options).Error().problem, LoadProblem::LibraryNotFound);
    options = EchoOptions();
    options.besidePath = LiveFolder() + L"not_there.dll";
    const auto target = system->Open(program.Window().window, options);
    EXPECT_EQ(target.Error().problem, LoadProblem::LibraryNotFound);
    EXPECT_THAT(target.Error().detail, HasSubstr("not_there.dll"));
}

TEST(LoaderLive, FileThatIsNoLibraryFailsWithTheSystemsMessage) {
    const LiveTarget program;
    LoaderOptions options = EchoOptions();
    options.serverPath = LiveFolder() + L"no_library.dll";
    SafeObject file(CreateFileW(options.serverPath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.Get(), "no library", 10, &written, nullptr);
    file.Close();
    const auto answer = program.Open(options)->Execute(Order(EchoOrder::Count), Ample);
    EXPECT_EQ(ProblemOf(answer), LoadProblem::LibraryFailed);
    EXPECT_THAT(DetailOf(answer), HasSubstr("no_library.dll: "));
    DeleteFileW(options.serverPath.c_str());
}

TEST(LoaderLive, LibraryWithoutTheExportIsToldAndDoesNotStay) {
    const LiveTarget program;
    LoaderOptions options = Staying();
    options.serverPath = LiveFolder() + L"deaf_host.dll";
    const auto answer = program.Open(options)->Execute(Order(EchoOrder::Count), Ample);
    EXPECT_EQ(ProblemOf(answer), LoadProblem::LibraryFailed);
    EXPECT_THAT(DetailOf(answer), HasSubstr("doesn't export ExecuteAa"));
    EXPECT_FALSE(program.HasModule(L"deaf_host.dll"));
}

TEST(LoaderLive, HostThatIsNotThereWhenTheMessageArrivesIsToldWithoutWaiting) {
    const LiveTarget program;
    LoaderOptions options = EchoOptions();
    options.hostPath = LiveFolder() + L"deaf_host.dll";
    const auto target = program.Open(options);
    const Stopwatch watch;
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::Count), Ample)), LoadProblem::HostNotLoaded);
    EXPECT_LT(watch.Elapsed(), 5s);
}

TEST(LoaderLive, LibraryThatIsNoHostIsRefused) {
    const LiveTarget program;
    LoaderOptions options = EchoOptions();
    options.hostPath = options.serverPath;
    EXPECT_EQ(ProblemOf(program.Open(options)->Execute(Order(EchoOrder::Count), Ample)), LoadProblem::LibraryFailed);
}

TEST(LoaderLive, ExceptionsOutOfTheServerAreNamedAndTheTargetLivesOn) {
    const LiveTarget program;
    const auto target = program.Open();
    const std::pair<EchoOrder, const char*> thrown[] = {
        {EchoOrder::ThrowArchive, "ArchiveException: Invalid vBuffer in ctor"},
        {EchoOrder::ThrowCom, "ComException: 0x8007000E"},
        {EchoOrder::ThrowStandard, "std::exception: thrown on request"},
        {EchoOrder::ThrowMemory, "std::bad_alloc"},
        {EchoOrder::ThrowNumber, "an exception of unknown type"},
    };
    for (const auto& [order, text] : thrown) {
        const auto answer = target->Execute(Order(order), Ample);
        EXPECT_EQ(ProblemOf(answer), LoadProblem::ServerException) << text;
        EXPECT_EQ(DetailOf(answer), text);
    }
    EXPECT_TRUE(target->Execute(Order(EchoOrder::Count), Ample));
}

TEST(LoaderLive, FaultsInTheServerAreNamedAndTheTargetLivesOn) {
    const LiveTarget program;
    const auto target = program.Open();
    const std::pair<EchoOrder, const char*> faults[] = {
        {EchoOrder::ReadNull, "access violation (0xC0000005) at 0x"},
        {EchoOrder::DivideByZero, "integer division by zero (0xC0000094) at 0x"},
        {EchoOrder::RaiseForeign, "a C++ exception of another compiler (0xE06D7363) at 0x"},
    };
    for (const auto& [order, text] : faults) {
        const auto answer = target->Execute(Order(order), Ample);
        EXPECT_EQ(ProblemOf(answer), LoadProblem::ServerFault) << text;
        EXPECT_THAT(DetailOf(answer), HasSubstr(text));
    }
    const auto answer = target->Execute(Order(EchoOrder::ThreadId), Ample);
    ASSERT_TRUE(answer) << DetailOf(answer);
    EXPECT_EQ(AsNumber(answer->response), program.Window().threadId);
}

TEST(LoaderLive, StackOverflowInTheServerIsAFaultLikeAnyOtherAndCanHappenAgain) {
    // In notepad: Wine leaves one page for the handling, whatever was asked for, and that is enough only in a program
    // that has no vectored handlers of its own.
    const LiveTarget notepad(L"notepad.exe");
    const auto target = notepad.Open();
    for (int i = 0; i < 3; ++i) {
        const auto answer = target->Execute(Order(EchoOrder::OverflowStack), Ample);
        EXPECT_EQ(ProblemOf(answer), LoadProblem::ServerFault);
        EXPECT_THAT(DetailOf(answer), HasSubstr("stack overflow (0xC00000FD) at 0x"));
    }
    EXPECT_TRUE(target->Execute(Order(EchoOrder::Count), Ample));
}

TEST(LoaderLive, FaultThatIsHandledWhereItBelongsIsNotTakenAway) {
    const LiveTarget program;
    const auto answer = program.Open()->Execute(Order(EchoOrder::HandledFault), Ample);
    ASSERT_TRUE(answer) << DetailOf(answer);
    EXPECT_EQ(answer->response, Bytes{1});
}

TEST(LoaderLive, ServerThatStaysKeepsItsStateAndGoUnloadsIt) {
    const LiveTarget program;
    const auto target = program.Open(Staying());
    EXPECT_EQ(AsNumber(target->Execute(Order(EchoOrder::Count), Ample)->response), 1u);
    EXPECT_EQ(AsNumber(target->Execute(Order(EchoOrder::Count), Ample)->response), 2u);
    EXPECT_TRUE(*target->ServerStays(Ample));
    EXPECT_TRUE(program.HasModule(L"echo_server.dll"));

    target->SetAfterRequest(AfterRequest::AsFound);
    EXPECT_EQ(AsNumber(target->Execute(Order(EchoOrder::Count), Ample)->response), 3u);
    EXPECT_TRUE(program.HasModule(L"echo_server.dll")) << "what was found loaded stays";

    target->SetAfterRequest(AfterRequest::Go);
    EXPECT_EQ(AsNumber(target->Execute(Order(EchoOrder::Count), Ample)->response), 4u);
    EXPECT_FALSE(*target->ServerStays(Ample));
    EXPECT_FALSE(program.HasModule(L"echo_server.dll"));
    EXPECT_TRUE(program.HostGoes());

    EXPECT_EQ(AsNumber(target->Execute(Order(EchoOrder::Count), Ample)->response), 1u);
}

TEST(LoaderLive, ServerThatStaysIsFoundByTheNextController) {
    const LiveTarget program;
    EXPECT_EQ(AsNumber(program.Open(Staying())->Execute(Order(EchoOrder::Count), Ample)->response), 1u);
    EXPECT_EQ(AsNumber(program.Open()->Execute(Order(EchoOrder::Count), Ample)->response), 2u);
}

TEST(LoaderLive, UnloadTakesTheStayingServerAwayAndMindsNoneBeingThere) {
    const LiveTarget program;
    const auto target = program.Open(Staying());
    ASSERT_TRUE(target->Execute(Order(EchoOrder::Count), Ample));
    EXPECT_FALSE(target->Unload(Ample));
    EXPECT_FALSE(program.HasModule(L"echo_server.dll"));
    EXPECT_TRUE(program.HostGoes());
    EXPECT_FALSE(target->Unload(Ample));
}

TEST(LoaderLive, LibraryBesideTheServerIsStartedBeforeItAndStoppedWithIt) {
    const LiveTarget program;
    LoaderOptions options = Staying();
    options.besidePath = LiveFolder() + L"beside_library.dll";
    const auto target = program.Open(options);
    EXPECT_EQ(target->Execute(Order(EchoOrder::Beside), Ample)->response, (Bytes{1, 1, 0}));
    EXPECT_EQ(target->Execute(Order(EchoOrder::Beside), Ample)->response, (Bytes{1, 1, 0})) << "it is started once as long as it stays";
    EXPECT_FALSE(target->Unload(Ample));
    EXPECT_FALSE(program.HasModule(L"beside_library.dll"));
    EXPECT_EQ(program.Open()->Execute(Order(EchoOrder::Beside), Ample)->response, (Bytes{0, 1, 1}));
    target->SetAfterRequest(AfterRequest::Go);
    EXPECT_EQ(target->Execute(Order(EchoOrder::Beside), Ample)->response, (Bytes{1, 2, 1}));
    EXPECT_EQ(program.Open()->Execute(Order(EchoOrder::Beside), Ample)->response, (Bytes{0, 2, 2}));
}

TEST(LoaderLive, TwoControllersAtOnceAreServedOneAfterTheOther) {
    const LiveTarget program;
    std::atomic<int> answered{0};
    const auto run = [&] {
        const auto target = program.Open();
        for (int i = 0; i < 15; ++i) {
            // The message loop within the request lets the other controller's message in.
            const auto answer = target->Execute(Order(EchoOrder::Pump, 20), Ample);
            if (answer && AsText(answer->response) == "pumped") ++answered;
        }
    };
    std::thread first(run);
    std::thread second(run);
    first.join();
    second.join();
    EXPECT_EQ(answered, 30);
    EXPECT_TRUE(program.ModuleGoes(L"echo_server.dll"));
    EXPECT_TRUE(program.HostGoes());
}

TEST(LoaderLive, TargetBusyWithAnotherControllersRequestIsToldByTheDeadline) {
    const LiveTarget program;
    std::thread other([&] { EXPECT_TRUE(program.Open()->Execute(Order(EchoOrder::Pump, 1500), Ample)); });
    Sleep(300);
    const Stopwatch watch;
    EXPECT_EQ(ProblemOf(program.Open()->Execute(Order(EchoOrder::Count), 400ms)), LoadProblem::TargetBusy);
    EXPECT_LT(watch.Elapsed(), 1100ms);
    other.join();
}

TEST(LoaderLive, WaitingCanBeInterrupted) {
    const LiveTarget program;
    std::stop_source source;
    LoaderOptions options = EchoOptions();
    options.stop = source.get_token();
    const auto target = program.Open(options);
    const Stopwatch watch;
    const After stopped(300ms, [&] { source.request_stop(); });
    EXPECT_EQ(ProblemOf(target->Execute(Order(EchoOrder::Sleep, 5000), 0ms)), LoadProblem::Cancelled);
    EXPECT_LT(watch.Elapsed(), 3s);
}

TEST(LoaderLive, WindowListTellsWhatAPersonNeedsToChoose) {
    const LiveTarget program;
    const auto system = CreateLoaderSystem();
    const auto found = FindWindowByTitle(*system, program.Window().title);
    ASSERT_TRUE(found) << found.Error().ToString();
    EXPECT_EQ(found->window, program.Window().window);
    EXPECT_EQ(found->windowClass, L"VantrelTestWindow");
    EXPECT_EQ(found->processName, L"test_window.exe");
    EXPECT_EQ(found->bitness, OwnBitness());
    EXPECT_EQ(found->rectangle.right - found->rectangle.left, 300);
    EXPECT_TRUE(found->visible);
    EXPECT_EQ(FindWindowByProcess(*system, program.Window().processId)->window, program.Window().window);
    EXPECT_TRUE(system->ProcessExists(program.Window().processId));
    program.Kill();
    EXPECT_FALSE(system->ProcessExists(program.Window().processId));
    EXPECT_EQ(FindWindowByProcess(*system, program.Window().processId).Error().problem, LoadProblem::NoSuchProcess);
}

TEST(LoaderLive, WindowListIsNotHeldUpByAHungWindow) {
    const LiveTarget program;
    program.Hang(3000);
    Sleep(100);
    const Stopwatch watch;
    EXPECT_TRUE(FindWindowByTitle(*CreateLoaderSystem(), program.Window().title));
    EXPECT_LT(watch.Elapsed(), 2s);
}

TEST(LoaderLive, LaunchTellsACommandThatIsNoneFromOneWithoutAWindow) {
    const auto system = CreateLoaderSystem();
    EXPECT_EQ(system->Launch(L"vantrel_no_such_program.exe", 5s, {}).Error().problem, LoadProblem::LaunchFailed);
    const auto windowless = system->Launch(L"cmd.exe /c exit 0", 1s, {});
    ASSERT_FALSE(windowless);
    EXPECT_EQ(windowless.Error().problem, LoadProblem::NoWindowInTime);
    EXPECT_THAT(windowless.Error().detail, HasSubstr("it has ended"));
}
