#include "InProc/Vantrel/TextCaptureRequests.h"

#include <gtest/gtest.h>

#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [{"id": "main", "class": "Main", "rectangle": [0, 0, 200, 200],
    "objects": {"client": {"id": "client", "rectangle": [0, 0, 200, 200], "children": [
      {"id": "hello", "role": "text", "name": "Hello", "rectangle": [10, 10, 50, 20]},
      {"id": "pane", "role": "pane", "name": "pane", "rectangle": [10, 50, 100, 100], "children": [
        {"id": "link", "role": "link", "name": "link", "simple": true, "rectangle": [20, 60, 10, 10]},
        {"id": "hidden", "role": "link", "name": "hidden", "state": ["invisible"]}]}]}}}]})";

class TextCaptureRequestsTest : public testing::Test {
protected:
    AAObjectIdentifier Identify(const char* id) {
        return AAContainerCache::Instance().RegisterObject({kClientPid, desktop.Window("main")},
                                                           AAElement{desktop.Window("main"), desktop.Element(id), desktop.Child(id)});
    }
    AAObjectIdentifier Unknown() {
        AAObjectIdentifier identifier = Identify("hello");
        identifier.containerId += 1000;
        return identifier;
    }
    CaptureResponse Scrape(std::uint32_t kind, std::uint32_t flags, RECT rectangle = {}) {
        ScrapeRequest request;
        request.window = desktop.Window("main");
        request.windowKind = kind;
        request.rectangle = rectangle;
        request.flags = flags;
        return Call(request);
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    CacheCleaner cleaner;
};

TEST_F(TextCaptureRequestsTest, WindowGivesItsTextAndOnWishItsLines) {
    const CaptureResponse plain = Scrape(0, 0);
    EXPECT_TRUE(plain.success);
    EXPECT_EQ(plain.text, L"Hello\r\npane\r\nlink\r\nhidden\r\n");
    EXPECT_TRUE(plain.lines.empty());
    const CaptureResponse lines = Scrape(0, CaptureHighlightInfo | CaptureIgnoreHidden);
    EXPECT_EQ(lines.text, L"Hello\r\npane\r\nlink\r\n");
    ASSERT_EQ(lines.lines.size(), 3u);
    EXPECT_EQ(lines.lines[0].text, L"Hello");
    EXPECT_EQ(lines.lines[0].rectangle.right, 60);
    EXPECT_FALSE(log.Contains("DoCaptureAA failed"));
}

TEST_F(TextCaptureRequestsTest, RectangleOfTheRequestClipsOrNamesAnElement) {
    EXPECT_EQ(Scrape(0, CaptureClipped, {5, 5, 100, 40}).text, L"Hello\r\n");
    EXPECT_EQ(Scrape(0, CaptureByExactRectangle, {10, 50, 110, 150}).text, L"pane\r\nlink\r\nhidden\r\n");
}

TEST_F(TextCaptureRequestsTest, FailedCaptureIsLoggedAndAnswersWithoutSuccess) {
    for (const std::uint32_t kind : {11u, 12u, 13u, 0xFFFFFFFFu}) {
        log.Clear();
        const CaptureResponse response = Scrape(kind, CaptureHighlightInfo);
        EXPECT_FALSE(response.success) << kind;
        EXPECT_EQ(response.text, L"");
        EXPECT_TRUE(log.Contains("E [ScrapeImpl] DoCaptureAA failed")) << log.Text();
    }
    ScrapeRequest noWindow;
    EXPECT_FALSE(Call(noWindow).success);
}

TEST_F(TextCaptureRequestsTest, ElementGivesItsTextAndOnWishItsLines) {
    GetFullTextRequest request;
    request.element = Identify("pane");
    request.flags = CaptureHighlightInfo;
    const CaptureResponse response = Call(request);
    EXPECT_TRUE(response.success);
    EXPECT_EQ(response.text, L"pane\r\nlink\r\nhidden\r\n");
    EXPECT_EQ(response.lines.size(), 3u);
}

TEST_F(TextCaptureRequestsTest, UnknownElementIsLoggedAndAnswersWithoutSuccess) {
    GetFullTextRequest request;
    request.element = Unknown();
    const CaptureResponse response = Call(request);
    EXPECT_FALSE(response.success);
    EXPECT_EQ(response.text, L"");
    EXPECT_TRUE(log.Contains("E [GetFullTextFromAAElementImpl] AAGetFullTextFromElementImpl failed")) << log.Text();
}

TEST_F(TextCaptureRequestsTest, SeveralElementsAnswerInOrderWithAnEmptyTextForAFailedOne) {
    GetFullTextFromElementsRequest request;
    request.elements = {Identify("link"), Unknown(), Identify("hello"), Identify("hello"), Identify("pane")};
    request.flags = CaptureIgnoreHidden;
    const std::vector<CString> expected = {L"link\r\n", L"", L"Hello\r\n", L"Hello\r\n", L"pane\r\nlink\r\n"};
    EXPECT_EQ(Call(request).texts, expected);
    EXPECT_TRUE(log.Contains("V [GetFullTextFromMultipleAAElementsImpl] AAGetFullTextFromMultipleElementsImpl Start"));
    EXPECT_FALSE(log.Contains("AAGetFullTextFromElementImpl failed"));
}

TEST_F(TextCaptureRequestsTest, NoElementsAnswerNoTexts) { EXPECT_TRUE(Call(GetFullTextFromElementsRequest{}).texts.empty()); }

TEST_F(TextCaptureRequestsTest, NothingOfACaptureStaysBehind) {
    {
        GetFullTextRequest request;
        request.element = Identify("pane");
        Call(request);
        Scrape(0, CaptureHighlightInfo);
    }
    AAContainerCache::Instance().UnregisterAllContainersByClientPid(kClientPid);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace Zorvex::Testing
