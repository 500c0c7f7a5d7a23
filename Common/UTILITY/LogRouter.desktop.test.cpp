#include "Common/UTILITY/LogRouter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

#include "Common/include/DTCounter.h"
#include "Common/include/SafeObject.h"
#include "Common/include/Timer.h"
#include "Platform/Simulated/System.h"

namespace Zorvex {
namespace {

// The system's platform, apart from the process's logger, with settings from the simulated registry.
class LogRouterTest : public testing::Test {
protected:
    LogRouterTest() { Simulated::ResetSystem(); }
    ~LogRouterTest() override {
        m_router.Shutdown();
        Simulated::ResetSystem();
        std::filesystem::remove_all(Folder());
    }

    std::filesystem::path Folder() const {
        return std::filesystem::temp_directory_path() / ("vantrel-log-" + std::to_string(::getpid()));
    }
    void UseFolder() {
        std::filesystem::create_directories(Folder());
        Simulated::SetKnownFolder(Folder().wstring());
    }
    std::string FileText() const {
        std::ifstream file(Folder() / "ZorvexLogs-1.txt", std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    void SetLevel(std::wstring_view level) { Simulated::SetUserEnvironment(L"ZORVEX_LOG_LEVEL", level); }
    void Emit(Severity severity, std::string_view message = "message") {
        const std::string line = "prefix " + std::string(message) + "\n";
        m_router.Emit(severity, "Common\\Some.cpp", 12, 7, line);
    }
    std::size_t DebugLines() const { return Simulated::DebugOutput().size(); }

    std::unique_ptr<LogPlatform> m_platform = LogPlatform::CreateOfSystem();
    LogRouter m_router{*m_platform};
};

TEST_F(LogRouterTest, WithTheLevelAbsentOnlyFatalGoesToTheDebugOutput) {
    for (const Severity severity : {Severity::Verbose, Severity::Info, Severity::Warning, Severity::Error}) Emit(severity);
    EXPECT_EQ(DebugLines(), 0u);
    EXPECT_FALSE(m_router.ShouldLog(Severity::Error));
    EXPECT_TRUE(m_router.ShouldLog(Severity::Fatal));
    Emit(Severity::Fatal);
    EXPECT_EQ(Simulated::DebugOutput(), std::vector<std::string>{"prefix message\n"});
}

TEST_F(LogRouterTest, BeforeTheFirstLineTheFacilitysOwnMinimumCounts) {
    EXPECT_TRUE(m_router.ShouldLog(Severity::Info));
    EXPECT_FALSE(m_router.ShouldLog(Severity::Verbose));
    Emit(Severity::Info);
    EXPECT_FALSE(m_router.ShouldLog(Severity::Info));
}

TEST_F(LogRouterTest, NamesOfLevelsCountWithoutCaseAndNothingElseDoes) {
    const std::pair<const wchar_t*, int> c_cases[] = {{L"VERBOSE", -1}, {L"verbose", -1}, {L"Info", 0},  {L"WARNING", 1}, {L"ERROR", 2}, {L"FATAL", 3},
                                                      {L"2", 3},        {L"", 3},         {L"VERB", 3}, {L"VERBOSE ", 3}};
    for (const auto& [text, level] : c_cases) {
        SetLevel(text);
        m_router.ForgetSettings();
        EXPECT_EQ(m_router.Level(), level) << testing::PrintToString(std::wstring(text));
    }
    SetLevel(std::wstring(5'000, L'x'));
    m_router.ForgetSettings();
    EXPECT_EQ(m_router.Level(), 3);
}

TEST_F(LogRouterTest, MachineSettingCountsOnlyWithoutTheUsers) {
    Simulated::SetMachineEnvironment(L"ZORVEX_LOG_LEVEL", L"ERROR");
    EXPECT_EQ(m_router.Level(), 2);
    SetLevel(L"INFO");
    m_router.ForgetSettings();
    EXPECT_EQ(m_router.Level(), 0);
}

TEST_F(LogRouterTest, SettingStoredAsExpandableTextCountsAndANumberDoesNot) {
    constexpr DWORD c_number = 4;
    Simulated::SetRegistryText(HKEY_CURRENT_USER, L"Environment", L"ZORVEX_LOG_LEVEL", L"WARNING", Simulated::TypeExpandText);
    EXPECT_EQ(m_router.Level(), 1);
    // A value that can't be read as text is as good as absent: the machine's is next.
    Simulated::SetRegistryText(HKEY_CURRENT_USER, L"Environment", L"ZORVEX_LOG_LEVEL", L"WARNING", c_number);
    Simulated::SetMachineEnvironment(L"ZORVEX_LOG_LEVEL", L"INFO");
    m_router.ForgetSettings();
    EXPECT_EQ(m_router.Level(), 0);
}

TEST_F(LogRouterTest, ChangeTakesEffectAfterThreeSecondsAndNoReadHappensBefore) {
    EXPECT_EQ(m_router.Level(), 3);
    const unsigned reads = Simulated::RegistryReads();
    SetLevel(L"VERBOSE");
    Simulated::AdvanceClock(2'999);
    EXPECT_EQ(m_router.Level(), 3);
    EXPECT_EQ(Simulated::RegistryReads(), reads);
    Simulated::AdvanceClock(1);
    EXPECT_EQ(m_router.Level(), -1);
}

TEST_F(LogRouterTest, UnwantedLineReadsTheRegistryOnlyOnceInThreeSeconds) {
    Emit(Severity::Verbose);
    const unsigned reads = Simulated::RegistryReads();
    for (int i = 0; i < 1'000; ++i) EXPECT_FALSE(m_router.ShouldLog(Severity::Error));
    EXPECT_EQ(Simulated::RegistryReads(), reads);
}

TEST_F(LogRouterTest, InsideTheDebugViewerNothingIsEmitted) {
    for (const wchar_t* path : {L"C:\\Tools\\Dbgview.exe", L"C:\\Tools\\DBGVIEW64.EXE", L"dbgview.exe"}) {
        Simulated::ResetSystem();
        UseFolder();
        SetLevel(L"VERBOSE");
        Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"1");
        Simulated::EnableEvents(c_logEventProvider, 5, 0);
        Simulated::SetProcess({1000, path, 1, false, false});
        const auto platform = LogPlatform::CreateOfSystem();
        LogRouter router(*platform);
        router.Emit(Severity::Fatal, "a.cpp", 1, 0, "x\n");
        EXPECT_EQ(DebugLines(), 0u);
        EXPECT_TRUE(Simulated::Events().empty());
        EXPECT_EQ(FileText(), "");
    }
}

TEST_F(LogRouterTest, ProcessWithASimilarNameIsNoViewer) {
    Simulated::SetProcess({1000, L"C:\\Dbgview.exe\\myDbgview.exe", 1, false, false});
    Emit(Severity::Fatal);
    EXPECT_EQ(DebugLines(), 1u);
    EXPECT_EQ(Simulated::OpenHandles(), 0);
}

TEST_F(LogRouterTest, FileLoggingIsOnOnlyWithExactlyOne) {
    UseFolder();
    for (const wchar_t* text : {L"true", L"11", L"1 ", L"0", L""}) {
        Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", text);
        m_router.ForgetSettings();
        Emit(Severity::Error);
        EXPECT_FALSE(std::filesystem::exists(Folder() / "ZorvexLogs-1.txt"));
    }
    Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"1");
    m_router.ForgetSettings();
    Emit(Severity::Verbose, "to the file");
    EXPECT_EQ(FileText(), "2024-01-01T00:01:40.000Z [1000:" + std::to_string(::GetCurrentThreadId()) + "] V Some.cpp:12 to the file\r\n");
}

TEST_F(LogRouterTest, TurningFileLoggingOffStopsTheWritesAndOnAgainGoesOn) {
    UseFolder();
    Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"1");
    Emit(Severity::Error, "one");
    Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"0");
    Simulated::AdvanceClock(3'000);
    Emit(Severity::Error, "two");
    // The file stayed open: it is found again under the path that it had, without a second set-up.
    Simulated::SetKnownFolder(L"/nowhere");
    Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"1");
    Simulated::AdvanceClock(3'000);
    Emit(Severity::Error, "three");
    EXPECT_NE(FileText().find(" one\r\n"), std::string::npos);
    EXPECT_EQ(FileText().find(" two\r\n"), std::string::npos);
    EXPECT_NE(FileText().find(" three\r\n"), std::string::npos);
}

TEST_F(LogRouterTest, FileIsNamedAfterTheSessionAndAppendedTo) {
    UseFolder();
    std::ofstream(Folder() / "ZorvexLogs-1.txt") << "old\n";
    Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"1");
    Emit(Severity::Error, "new");
    EXPECT_TRUE(FileText().starts_with("old\n"));
    EXPECT_NE(FileText().find(" new\r\n"), std::string::npos);

    Simulated::SetProcess({1000, L"C:\\a.exe", 7, false, false});
    const auto platform = LogPlatform::CreateOfSystem();
    LogRouter other(*platform);
    other.Emit(Severity::Error, "a.cpp", 0, 0, "x\n");
    EXPECT_TRUE(std::filesystem::exists(Folder() / "ZorvexLogs-7.txt"));
    std::ifstream file(Folder() / "ZorvexLogs-7.txt");
    std::string line;
    std::getline(file, line);
    EXPECT_TRUE(line.ends_with("E a.cpp x\r")) << line;
}

TEST_F(LogRouterTest, FolderThatCannotBeFoundIsLoggedOnce) {
    SetLevel(L"ERROR");
    Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"1");
    Emit(Severity::Error);
    Simulated::AdvanceClock(5'000);
    Emit(Severity::Error);
    const auto lines = Simulated::DebugOutput();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_NE(lines[1].find("GetKnownFolder with ID {B4BFCC3A-DB2C-424C-B029-7FE99A87C641} failed with hr 0x80070002"), std::string::npos) << lines[1];
}

TEST_F(LogRouterTest, EventsGoToASessionThatWantsTheirLevel) {
    Simulated::EnableEvents(c_logEventProvider, 3, 0);
    Emit(Severity::Verbose, "verbose");
    Emit(Severity::Warning, "warning");
    Emit(Severity::Fatal, "fatal");
    const auto events = Simulated::Events();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].level, 3);
    EXPECT_EQ(events[0].text, L"Common\\Some.cpp(12) warning");
    EXPECT_EQ(events[1].level, 1);
}

TEST_F(LogRouterTest, WithFlagTwoAnEventCarriesTheMessageAlone) {
    Simulated::EnableEvents(c_logEventProvider, 5, 2);
    Emit(Severity::Verbose, "alone");
    ASSERT_EQ(Simulated::Events().size(), 1u);
    EXPECT_EQ(Simulated::Events()[0].text, L"alone");
    EXPECT_EQ(Simulated::Events()[0].level, 5);
}

TEST_F(LogRouterTest, SessionLowersTheMinimumLevelWhileItRuns) {
    Emit(Severity::Fatal);
    EXPECT_FALSE(m_router.ShouldLog(Severity::Info));
    Simulated::EnableEvents(c_logEventProvider, 4, 0);
    EXPECT_TRUE(m_router.ShouldLog(Severity::Info));
    EXPECT_FALSE(m_router.ShouldLog(Severity::Verbose));
    Simulated::EnableEvents(c_logEventProvider, 0, 0);
    EXPECT_TRUE(m_router.ShouldLog(Severity::Verbose));
    Simulated::DisableEvents(c_logEventProvider);
    EXPECT_FALSE(m_router.ShouldLog(Severity::Error));
}

TEST_F(LogRouterTest, SessionDoesNotBringLinesToTheDebugOutput) {
    Simulated::EnableEvents(c_logEventProvider, 5, 0);
    Emit(Severity::Error);
    EXPECT_EQ(DebugLines(), 0u);
}

TEST_F(LogRouterTest, HandlerOfTheBaseSeesTheMessageWithoutPrefixAndLetsItPass) {
    static std::string s_seen;
    UseFolder();
    Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"1");
    Emit(Severity::Error, "one");
    m_router.Base().SetHandler([](Severity, const char*, unsigned, std::string_view message) {
        s_seen = message;
        return true;
    });
    Emit(Severity::Error, "two");
    EXPECT_EQ(s_seen, "two");
    EXPECT_EQ(FileText().find(" two"), std::string::npos);
}

TEST_F(LogRouterTest, ProviderIsGoneAfterShutdownAndLinesStillComeOut) {
    Emit(Severity::Fatal);
    const unsigned registered = Simulated::EventRegistrations(c_logEventProvider);
    m_router.Shutdown();
    EXPECT_EQ(Simulated::EventRegistrations(c_logEventProvider), registered - 1);
    Emit(Severity::Fatal);
    EXPECT_EQ(DebugLines(), 2u);
}

TEST_F(LogRouterTest, ManyThreadsLogAtOnce) {
    UseFolder();
    SetLevel(L"VERBOSE");
    Simulated::SetUserEnvironment(L"ZORVEX_FILE_LOGGING", L"1");
    Simulated::SetClockTick(500);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([this] {
            for (int line = 0; line < 100; ++line) Emit(Severity::Info, "line of a thread");
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(DebugLines(), 400u);
    std::istringstream file(FileText());
    std::size_t whole = 0;
    for (std::string line; std::getline(file, line);) whole += line.ends_with("line of a thread\r");
    EXPECT_EQ(whole, 400u);
}

// File logging is on; a line of the debug output can be lent to the test.
class ListeningPlatform : public LogPlatform {
public:
    std::optional<std::wstring> ReadSetting(const wchar_t* name) override {
        return std::wstring_view(name) == L"ZORVEX_FILE_LOGGING" ? L"1" : L"ERROR";
    }
    void DebugOutput(const char* line) override { onLine(line); }
    std::wstring ProcessPath() override { return {}; }
    void RegisterEvents(EventListener, void*) override {}
    void UnregisterEvents() override {}
    bool EventWanted(BYTE) override { return false; }
    void WriteEvent(BYTE, const std::wstring&) override {}

    std::function<void(std::string_view)> onLine;
};

TEST_F(LogRouterTest, LineOfAnotherThreadWaitsUntilTheFileIsSetUp) {
    // A folder that can't be found makes the set-up log, so that the test gets a word in the middle of it.
    ListeningPlatform platform;
    LogRouter router(platform);
    std::thread other;
    std::atomic<bool> otherIsThrough{false};
    bool wasThroughInTheMiddle = true;
    platform.onLine = [&](std::string_view line) {
        if (line.find("GetKnownFolder") == std::string_view::npos) return;
        other = std::thread([&] {
            router.Emit(Severity::Info, "a.cpp", 2, 0, "second\n");
            otherIsThrough = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        wasThroughInTheMiddle = otherIsThrough;
    };
    router.Emit(Severity::Info, "a.cpp", 1, 0, "first\n");
    ASSERT_TRUE(other.joinable());
    other.join();
    EXPECT_FALSE(wasThroughInTheMiddle);
    EXPECT_TRUE(otherIsThrough);
}

TEST_F(LogRouterTest, EventsComeFromTheProviderThatSessionsAskFor) {
    constexpr GUID c_published = {0x204DE76A, 0x126E, 0x4673, {0xB3, 0x49, 0x5A, 0x5D, 0x11, 0xD1, 0x80, 0xD7}};
    Simulated::EnableEvents(c_published, 5, 2);
    const std::pair<Severity, int> c_levels[] = {
        {Severity::Verbose, 5}, {Severity::Info, 4}, {Severity::Warning, 3}, {Severity::Error, 2}, {Severity::Fatal, 1}};
    for (const auto& [severity, level] : c_levels) Emit(severity);
    const auto events = Simulated::Events();
    ASSERT_EQ(events.size(), std::size(c_levels));
    for (std::size_t i = 0; i < events.size(); ++i) EXPECT_EQ(events[i].level, c_levels[i].second) << i;
}

TEST_F(LogRouterTest, LineHasThreadLetterVersionPlaceAndFunction) {
    SetLevel(L"VERBOSE");
    LogRouter::OfProcess().ForgetSettings();
    const std::string thread = "{" + std::to_string(::GetCurrentThreadId()) + "}";
    LogStream("InProc\\Vantrel/aa_impls.cpp", "DoIt", 34, Severity::Verbose) << "text";
    LogStream("InProc\\Vantrel\\aa_impls.cpp", nullptr, 34, Severity::Info) << "text";
    // Without a line number the bracket stays open, on purpose.
    LogStream("aa_impls.cpp", "DoIt", 0, Severity::Warning) << "text";
    EXPECT_EQ(Simulated::DebugOutput(), (std::vector<std::string>{thread + "[V][(v" VANTREL_VERSION ") aa_impls.cpp:34][DoIt] text\n",
                                                                  thread + "[I][(v" VANTREL_VERSION ") aa_impls.cpp:34]text\n",
                                                                  thread + "[W][(v" VANTREL_VERSION ") aa_impls.cpp[DoIt] text\n"}));
    Simulated::ResetSystem();
    LogRouter::OfProcess().ForgetSettings();
}

TEST_F(LogRouterTest, FunctionBelongsToTheMessageOfEvents) {
    LogRouter::OfProcess().ForgetSettings();
    LogStream("a.cpp", "First", 1, Severity::Fatal) << "registers the provider";
    Simulated::EnableEvents(c_logEventProvider, 5, 2);
    LogStream("a.cpp", "DoIt", 3, Severity::Verbose) << "text";
    ASSERT_EQ(Simulated::Events().size(), 1u);
    EXPECT_EQ(Simulated::Events()[0].text, L"[DoIt] text");
    LogRouter::OfProcess().ForgetSettings();
}

TEST_F(LogRouterTest, LineWithoutMemoryForItsFormattingIsNoMatterOfTheLevel) {
    // Arguments of a line that isn't wanted are not formatted.
    LogRouter::OfProcess().ForgetSettings();
    LogAt<char>(Severity::Fatal, "sets up");
    const std::size_t before = DebugLines();
    LogVerbose("%*d", 60'000, 1);
    EXPECT_EQ(DebugLines(), before);
}

TEST(TimerOnTheSimulatedClock, EachCallChargesOnlyTheTimeSinceThePreviousOne) {
    Simulated::ResetSystem();
    Timer timer(1'000);
    EXPECT_EQ(timer.Remaining(), 1'000);
    Simulated::AdvanceClock(300);
    EXPECT_EQ(timer.Remaining(), 700);
    EXPECT_EQ(timer.Remaining(), 700);
    Simulated::AdvanceClock(699);
    EXPECT_EQ(timer.Remaining(), 1);
    EXPECT_FALSE(timer.IsOver());
    Simulated::AdvanceClock(5'000'000'000);
    EXPECT_EQ(timer.Remaining(), 0);
    EXPECT_EQ(timer.Remaining(), 0);
}

TEST(SafeObjectOnTheSimulatedSystem, ClosesItsHandleOnce) {
    Simulated::ResetSystem();
    const int open = Simulated::OpenHandles();
    {
        SafeObject process(::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, 1000));
        EXPECT_TRUE(process);
        EXPECT_EQ(Simulated::OpenHandles(), open + 1);
    }
    EXPECT_EQ(Simulated::OpenHandles(), open);
}

TEST(DTCounterOnTheSimulatedClock, CountsTheClocksMilliseconds) {
    Simulated::ResetSystem();
    Simulated::SetUserEnvironment(L"ZORVEX_LOG_LEVEL", L"INFO");
    LogRouter::OfProcess().ForgetSettings();
    {
        DTCounter counter("wait");
        Simulated::AdvanceClock(1'234);
    }
    const auto lines = Simulated::DebugOutput();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("[Log] Counter wait - 1234 miliseconds\n"), std::string::npos) << lines[0];
    Simulated::ResetSystem();
    LogRouter::OfProcess().ForgetSettings();
}

}  // namespace
}  // namespace Zorvex
