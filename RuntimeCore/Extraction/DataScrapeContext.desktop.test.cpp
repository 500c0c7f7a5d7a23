#include "RuntimeCore/Extraction/DataScrapeContext.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <iterator>
#include <string>

#include "RuntimeCore/Requests/RequestFlags.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

using namespace std::string_literals;

constexpr char kIncompatible[] = "DataScrapeSession for AA is not compatible with the current hWnd & sessionID.";

// Elements "1" to "5" with these unique ids, "none" without one.
std::string Desktop() {
    std::string elements;
    for (int id = 1; id <= 5; ++id)
        elements += R"({"id": ")" + std::to_string(id) + R"(", "role": "cell", "ia2": {"uniqueId": )" + std::to_string(id) + "}},";
    return R"({"processes": [{"id": 1000, "path": "C:\\firefox.exe", "current": true}, {"id": 7, "path": "C:\\Mail\\thunderbird.exe"}],
      "windows": [
      {"id": "chrome", "class": "Chrome_WidgetWin_1", "objects": {"client": {"children": [)" + elements + R"({"id": "none", "role": "cell"}]}}},
      {"id": "chrome0", "class": "Chrome_WidgetWin_0"}, {"id": "page", "class": "Chrome_RenderWidgetHostHWND"},
      {"id": "firefox", "class": "MozillaWindowClass"}, {"id": "compositor", "class": "MozillaCompositorWindowClass"},
      {"id": "mail", "class": "MozillaWindowClass", "process": 7},
      {"id": "notepad", "class": "Notepad"}]})";
}

class ScrapeTest : public ::testing::Test {
protected:
    DataScrapeSession Session(std::initializer_list<const char*> elements, const wchar_t* id = L"one", const char* window = "chrome") {
        DataScrapeSession session(desktop.Window(window), id);
        for (const char* element : elements) session.AddElementIdentifier(desktop.Element(element));
        return session;
    }
    std::uint32_t Add(std::initializer_list<const char*> elements, const wchar_t* id = L"one", const char* window = "chrome") {
        std::uint32_t flags = 0xDEAD;
        EXPECT_EQ(context.AddSession(Session(elements, id, window), flags), S_OK);
        return flags;
    }

    LogCapture log;
    DesktopFixture desktop{Desktop()};
    DataScrapeContext context;
};

TEST_F(ScrapeTest, WindowsOfChromiumAndFirefoxAreCompatible) {
    for (const char* window : {"chrome", "chrome0", "firefox", "compositor"}) EXPECT_TRUE(Session({}, L"s", window).IsCompatible()) << window;
    EXPECT_EQ(log.Count(kIncompatible), 0u);
    for (const char* window : {"page", "mail", "notepad"}) EXPECT_FALSE(Session({}, L"s", window).IsCompatible()) << window;
    EXPECT_EQ(log.Count("W [DataScrapeSession] "s + kIncompatible), 3u) << log.Text();
    EXPECT_FALSE(DataScrapeSession(nullptr, L"s").IsCompatible());
}

TEST_F(ScrapeTest, ANotepadWindowStoresNothingAndGivesNoFlagsWithOneWarning) {
    EXPECT_EQ(Add({"1"}, L"one", "notepad"), 0u);
    EXPECT_EQ(context.ValidCount() + context.InvalidCount(), 0u);
    EXPECT_EQ(log.Count(kIncompatible), 1u);
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"W [DataScrapeSession] "s + kIncompatible, "V [AddSession] Start",
                                                     "V [AddSession] Incompatible session data. Nothing to do."}));
    EXPECT_EQ(desktop.Calls("1", "get_uniqueID"), 0);
}

TEST_F(ScrapeTest, AnEmptySessionIdOnABrowserWindowStoresNothingEither) {
    EXPECT_EQ(Add({"1"}, L""), 0u);
    EXPECT_EQ(context.ValidCount() + context.InvalidCount(), 0u);
    EXPECT_EQ(log.Count(kIncompatible), 1u);
}

TEST_F(ScrapeTest, TheFirstExtractionWithAllIdsKnownMightBeDuringLoad) {
    EXPECT_EQ(Add({"1", "2"}), 0x2u);
    EXPECT_EQ(context.ValidCount(), 1u);
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"V [AddSession] Start", "V [AddFlag] Added MightBeDuringLoad to flags.", "V [AddSession] End"}));
}

TEST_F(ScrapeTest, TheSameExtractionAgainIsTheSameSession) {
    Add({"1", "2"});
    log.Clear();
    EXPECT_EQ(Add({"1", "2"}), 0xBu);
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"V [AddSession] Start", "V [AddFlag] Added PreviousValidSessionDataFound to flags.",
                                                     "V [AddFlag] Added SameSessionEncountered to flags.",
                                                     "V [AddFlag] Added MightBeDuringLoad to flags.", "V [AddSession] End"}));
}

TEST_F(ScrapeTest, DifferentDataWithTheSameIdIsAnotherSessionAndTakesItsPlace) {
    Add({"1", "2"});
    EXPECT_EQ(Add({"3", "4"}), 0xAu);
    EXPECT_EQ(Add({"3", "4"}), 0xBu);
    EXPECT_EQ(Add({"1", "2"}), 0xAu);
    EXPECT_EQ(context.ValidCount(), 1u);
}

TEST_F(ScrapeTest, AnElementWithoutAUniqueIdMakesTheSessionInvalidUntilAllAreKnown) {
    EXPECT_EQ(Add({"1", "none"}), 0x4u);
    EXPECT_EQ(context.InvalidCount(), 1u);
    EXPECT_EQ(context.ValidCount(), 0u);
    EXPECT_TRUE(log.Contains("W [AddElementIdentifier] could not get IA2 uniqueID for element. We will not be able to detect the session for "
                             "this extraction.")) << log.Text();
    EXPECT_TRUE(log.Contains("Added CannotDetermineSession to flags."));
    EXPECT_FALSE(log.Contains("[AddSession] End"));
    EXPECT_EQ(Add({"1", "2"}), 0x12u);
    EXPECT_TRUE(log.Contains("Added PreviousInvalidSessionDataFound to flags."));
    EXPECT_EQ(context.InvalidCount(), 0u);
    EXPECT_EQ(context.ValidCount(), 1u);
}

TEST_F(ScrapeTest, AnInvalidExtractionAfterAValidOneLeavesTheValidOne) {
    Add({"1", "2"});
    EXPECT_EQ(Add({"1", "none"}), 0xCu);
    EXPECT_EQ(context.ValidCount(), 1u);
    EXPECT_EQ(context.InvalidCount(), 1u);
    EXPECT_EQ(Add({"none"}), 0x1Cu);
    EXPECT_EQ(context.InvalidCount(), 1u);
    EXPECT_EQ(Add({"1", "2"}), 0x1Bu);
}

TEST_F(ScrapeTest, TheSameIdsInAnotherOrderAreTheSameSet) {
    Add({"1", "2", "3"});
    EXPECT_EQ(Add({"3", "1", "2"}), 0xBu);
    // A value that is there already changes nothing.
    EXPECT_EQ(Add({"3", "3", "1", "2", "1"}), 0xBu);
}

TEST_F(ScrapeTest, SetsOfTheSameSizeThatDifferInOneIdAreNotTheSame) {
    Add({"1", "2", "3"});
    EXPECT_EQ(Add({"1", "2", "4"}), 0xAu);
}

TEST_F(ScrapeTest, ASetThatBeginsLikeTheOtherIsNotTheSame) {
    Add({"1", "2", "3"});
    EXPECT_EQ(Add({"1", "2"}), 0xAu);
    EXPECT_EQ(Add({"1", "2", "3"}), 0xAu);
}

TEST_F(ScrapeTest, AnEmptyExtractionIsAsValidAsAnyOther) {
    EXPECT_EQ(Add({}), 0x2u);
    EXPECT_EQ(Add({}), 0xBu);
}

TEST_F(ScrapeTest, NegativeIdsAreIdsLikeAllOthers) {
    desktop.AddFault("1", {.call = "get_uniqueID", .count = -1});
    DataScrapeSession session = Session({"2", "1", "5"});
    EXPECT_EQ(session.ElementIds(), (std::vector<LONG>{-1, 2, 5}));
    EXPECT_TRUE(session.AllElementsIdentified());
}

TEST_F(ScrapeTest, SessionsOfDifferentIdsDoNotMeet) {
    Add({"1"}, L"a");
    EXPECT_EQ(Add({"1"}, L"b"), 0x2u);
    EXPECT_EQ(Add({"1"}, L"a"), 0xBu);
    EXPECT_EQ(context.ValidCount(), 2u);
}

TEST_F(ScrapeTest, IdsAreTakenWholeAndAsTheyAre) {
    const wchar_t half = 0xD800;
    const std::wstring ids[] = {L"a", {L'a', 0}, {L'a', 0, L'b'}, {half}, std::wstring(100'000, L'x'), std::wstring(100'001, L'x')};
    for (std::uint32_t flags : {0x2u, 0xBu})
        for (const std::wstring& id : ids) {
            std::uint32_t found = 0;
            EXPECT_EQ(context.AddSession(DataScrapeSession(desktop.Window("chrome"), CComBSTR(id)), found), S_OK);
            EXPECT_EQ(found, flags) << id.size();
        }
    EXPECT_EQ(context.ValidCount(), std::size(ids));
    for (const std::wstring& id : ids) EXPECT_EQ(context.Cleanup(DataScrapeSession(desktop.Window("chrome"), CComBSTR(id))), S_OK);
    EXPECT_EQ(context.ValidCount(), 0u);
}

TEST_F(ScrapeTest, CleanupForgetsBothKindsOfOneId) {
    Add({"1"}, L"a");
    Add({"none"}, L"a");
    Add({"1"}, L"b");
    log.Clear();
    EXPECT_EQ(context.Cleanup(Session({}, L"a")), S_OK);
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"V [Cleanup] Start", "V [Cleanup] End"}));
    EXPECT_EQ(context.ValidCount(), 1u);
    EXPECT_EQ(context.InvalidCount(), 0u);
    EXPECT_EQ(Add({"1"}, L"a"), 0x2u);
    EXPECT_EQ(Add({"1"}, L"b"), 0xBu);
}

TEST_F(ScrapeTest, CleanupOfAnUnknownIdIsASuccess) {
    EXPECT_EQ(context.Cleanup(Session({}, L"never seen")), S_OK);
}

TEST_F(ScrapeTest, CleanupOfAnIncompatibleSessionIsRefused) {
    Add({"1"});
    log.Clear();
    EXPECT_EQ(context.Cleanup(Session({}, L"one", "notepad")), E_INVALIDARG);
    EXPECT_EQ(log.Lines().back(), "E [Cleanup] Expectation not met: session.IsCompatible() | DataScrapeContext::Cleanup: Invalid input - "
                                  "currentScrapeData is not valid.");
    EXPECT_EQ(context.ValidCount(), 1u);
}

TEST_F(ScrapeTest, AFailingReadOfAnyKindMakesTheIdUnknown) {
    for (const char* call : {"QueryInterface", "QueryService", "get_uniqueID"}) {
        desktop.AddFault("1", {.call = call, .times = 1, .result = E_FAIL});
        DataScrapeSession session(desktop.Window("chrome"), L"s");
        session.AddElementIdentifier(desktop.Element("1"));
        EXPECT_FALSE(session.AllElementsIdentified()) << call;
        desktop.ClearFaults();
    }
    DataScrapeSession session(desktop.Window("chrome"), L"s");
    session.AddElementIdentifier(nullptr);
    EXPECT_FALSE(session.AllElementsIdentified());
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST_F(ScrapeTest, AThousandSessionsAreRememberedPackedUntilEachIsCleanedUp) {
    LogCapture quiet(L"ERROR");
    const CComPtr<IAccessible> element = desktop.Element("1");
    for (int round = 0; round < 2; ++round)
        for (int number = 0; number < 1'000; ++number) {
            DataScrapeSession session(desktop.Window("chrome"), L"session " + std::to_wstring(number));
            for (int i = 0; i < 200; ++i) session.AddElementIdentifier(element);
            std::uint32_t flags = 0;
            context.AddSession(std::move(session), flags);
            ASSERT_EQ(flags, round == 0 ? 0x2u : 0xBu);
        }
    EXPECT_EQ(context.ValidCount(), 1'000u);
    for (int number = 0; number < 1'000; ++number)
        context.Cleanup(DataScrapeSession(desktop.Window("chrome"), L"session " + std::to_wstring(number)));
    EXPECT_EQ(context.ValidCount(), 0u);
}

TEST_F(ScrapeTest, IdsArePackedBeforeTheyStay) {
    DataScrapeSession session = Session({"3", "1", "3", "3", "2", "3", "3"});
    EXPECT_EQ(session.ElementIds(), (std::vector<LONG>{1, 2, 3}));
    EXPECT_EQ(session.ElementIds().capacity(), 3u);
}

}  // namespace
}  // namespace Zorvex::Testing
