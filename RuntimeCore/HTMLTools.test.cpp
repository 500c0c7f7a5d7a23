#include "RuntimeCore/HTMLTools.h"

#include <gtest/gtest.h>

#include "tests/Support/FakeDocument.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeDocument;
using Testing::FakeHtmlAccessible;
using Testing::FakeHtmlObject;
using Testing::FakeObjects;
using Testing::LogCapture;

class HtmlToolsTest : public testing::Test {
protected:
    ~HtmlToolsTest() override { EXPECT_EQ(objects.OutstandingReferences(), 0); }

    FakeObjects objects;
    FakeDocument page{objects, {100, 200, 500, 600}};
    LogCapture log;
};

using HtmlTools = HtmlToolsTest;
using ScreenToCssRatio = HtmlToolsTest;

TEST_F(HtmlTools, TheInterfacesHaveTheirPublishedIds) {
    const auto first = [](const IID& id) { return id.Data1; };
    EXPECT_EQ(first(IidOf<IHTMLDocument2>()), 0x332C4425u);
    EXPECT_EQ(first(IidOf<IHTMLBodyElement>()), 0x3050F1D8u);
    EXPECT_EQ(first(IidOf<IHTMLElement>()), 0x3050F1FFu);
    EXPECT_EQ(first(IidOf<IHTMLWindow7>()), 0x305104B7u);
}

TEST_F(HtmlTools, TheDocumentOfABodyAndOfAnyOtherElementIsThatOfTheElement) {
    FakeHtmlAccessible ofBody(page.body), ofElement(page.AddElement(L"P", {0, 0, 10, 10}));
    for (FakeHtmlAccessible* acc : {&ofBody, &ofElement}) {
        log.Clear();
        CComPtr<IHTMLDocument2> doc;
        EXPECT_EQ(HTMLTools::GetDocumentFromIAccessible(acc, doc), S_OK);
        EXPECT_EQ(doc.p, static_cast<IHTMLDocument2*>(&page.document));
        EXPECT_TRUE(log.Contains("HTMLTools::GetDocumentFromIAccessible: Get a new doc from an html element"));
    }
}

TEST_F(HtmlTools, TheDocumentOfAWindowIsThatOfTheWindow) {
    FakeHtmlAccessible ofWindow(page.window);
    CComPtr<IHTMLDocument2> doc;
    EXPECT_EQ(HTMLTools::GetDocumentFromIAccessible(&ofWindow, doc), S_OK);
    EXPECT_EQ(doc.p, static_cast<IHTMLDocument2*>(&page.document));
    EXPECT_TRUE(log.Contains("HTMLTools::GetDocumentFromIAccessible: Get a new doc from an html window"));
}

TEST_F(HtmlTools, AnElementWithoutADocumentIsAFailure) {
    FakeHtmlAccessible acc(page.body);
    page.body.objects[L"document"] = [] { return nullptr; };
    CComPtr<IHTMLDocument2> doc;
    EXPECT_EQ(HTMLTools::GetDocumentFromIAccessible(&acc, doc), E_FAIL);
    EXPECT_TRUE(log.Contains("HTMLTools::GetDocumentFromIAccessible: Cannot get spDoc from html element"));
    page.body.objects[L"document"] = [&] { return &page.window; };  // an object, but no document
    EXPECT_EQ(HTMLTools::GetDocumentFromIAccessible(&acc, doc), E_NOINTERFACE);
    EXPECT_FALSE(doc);
}

TEST_F(HtmlTools, AnObjectThatIsNeitherElementNorWindowIsAFailure) {
    FakeAccessible plain;
    CComPtr<IHTMLDocument2> doc;
    EXPECT_EQ(HTMLTools::GetDocumentFromIAccessible(&plain, doc), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("HTMLTools::GetDocumentFromIAccessible: neither an html element nor an html window, hResult=0x80004002")) << log.Text();
    EXPECT_EQ(HTMLTools::GetDocumentFromIAccessible(nullptr, doc), E_POINTER);
}

TEST_F(HtmlTools, AnElementLeadsToItsAccessibleObject) {
    CComPtr<IAccessible> acc;
    EXPECT_EQ(HTMLTools::HTMLToAccessible(page.window.Dispatch(), acc), S_OK);
    EXPECT_EQ(acc.p, static_cast<IAccessible*>(&page.windowAccessible));
    FakeHtmlObject without;
    EXPECT_EQ(HTMLTools::HTMLToAccessible(without.Dispatch(), acc), E_NOINTERFACE);
    EXPECT_FALSE(acc);
    EXPECT_TRUE(log.Contains("Failed to QueryInterface for IServiceProvider"));
    page.windowAccessible.isAccessible = false;
    EXPECT_EQ(HTMLTools::HTMLToAccessible(page.window.Dispatch(), acc), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("QueryService failed with 0x80004002")) << log.Text();
}

TEST_F(HtmlTools, AnObjectTagIsFoundByItsPlaceOnTheScreen) {
    FakeHtmlObject& player = page.AddElement(L"OBJECT", {10, 10, 20, 20});
    page.AddElement(L"P", {30, 30, 40, 40});
    CComPtr<IDispatch> element;
    EXPECT_EQ(GetObjectFromPoint(&page.document, {115, 215}, element), S_OK);
    EXPECT_EQ(element.p, player.Dispatch());
    EXPECT_EQ(GetObjectFromPoint(&page.document, {135, 235}, element), S_FALSE);
    EXPECT_FALSE(element);
    // 200 CSS pixels on 400 of the screen.
    page.window.innerWidth = page.window.innerHeight = 200;
    EXPECT_EQ(GetObjectFromPoint(&page.document, {130, 230}, element), S_OK);
    element.Release();
    page.document.methods.erase(L"elementFromPoint");
    EXPECT_EQ(GetObjectFromPoint(&page.document, {130, 230}, element), DISP_E_UNKNOWNNAME);
}

TEST_F(HtmlTools, ALocationIsThatOfTheObjectItself) {
    RECT place{};
    EXPECT_EQ(GetAccessibleLocation(&page.windowAccessible, place), S_OK);
    EXPECT_EQ(place.left, 100);
    EXPECT_EQ(place.bottom, 600);
    EXPECT_EQ(GetAccessibleLocation(nullptr, place), E_INVALIDARG);
}

TEST_F(ScreenToCssRatio, IsTheSmallerOfBothInPercentRounded) {
    LONG ratio = 0;
    EXPECT_TRUE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
    EXPECT_EQ(ratio, 100);
    page.window.innerWidth = 320;
    page.window.innerHeight = 267;  // 149.8
    log.Clear();
    EXPECT_TRUE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
    EXPECT_EQ(ratio, 125);
    EXPECT_TRUE(log.Contains("GetScreenToCssPxRatio: enter"));
    EXPECT_TRUE(log.Contains("GetScreenToCssPxRatio: return TRUE, pOutRatio = min(nRatioX=125 nRatioY=150)")) << log.Text();
}

TEST_F(ScreenToCssRatio, SizesBeyondAllBoundsStayWithinTheType) {
    page.windowAccessible.left = page.windowAccessible.top = 0;
    page.windowAccessible.width = page.windowAccessible.height = 0x7FFFFFFF;
    page.window.innerWidth = page.window.innerHeight = 1;
    LONG ratio = 0;
    EXPECT_TRUE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
    EXPECT_EQ(ratio, 0x7FFFFFFF);
    PagePlace place;
    EXPECT_EQ(GetPagePlace(&page.document, place), S_OK);
    EXPECT_EQ(place.ToScreen(0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF).right, 0x7FFFFFFF);
}

TEST_F(ScreenToCssRatio, SaysWhatIsMissing) {
    LONG ratio = 0;
    EXPECT_FALSE(GetScreenToCssPxRatio(nullptr, &ratio));
    EXPECT_FALSE(GetScreenToCssPxRatio(page.window.Dispatch(), nullptr));
    EXPECT_EQ(log.Count("GetScreenToCssPxRatio: Invalid arguments"), 2u);
    EXPECT_FALSE(GetScreenToCssPxRatio(page.body.Dispatch(), &ratio));
    EXPECT_TRUE(log.Contains("GetScreenToCssPxRatio: Cannot get IHTMLWindow7 interface"));
    page.window.innerHeight = 0;
    EXPECT_FALSE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
    EXPECT_TRUE(log.Contains("GetScreenToCssPxRatio: failed to get window innerHeight or it is zero (in CSS coordinates) hRes=0x0"));
    for (const LONG width : {0, -1}) {
        log.Clear();
        page.window.innerWidth = width;
        EXPECT_FALSE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
        EXPECT_TRUE(log.Contains("GetScreenToCssPxRatio: failed to get window innerWidth or it is zero (in CSS coordinates) hRes=0x0"));
    }
    page.window.innerWidth = page.window.innerHeight = 10;
    page.window.innerResult = E_ACCESSDENIED;
    EXPECT_FALSE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
    EXPECT_TRUE(log.Contains("innerWidth or it is zero (in CSS coordinates) hRes=0x80070005"));
    page.window.innerResult = S_OK;
    page.windowAccessible.width = 0;
    EXPECT_FALSE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
    page.windowAccessible.locationResult = E_FAIL;
    EXPECT_FALSE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
    page.window.accessible = nullptr;
    EXPECT_FALSE(GetScreenToCssPxRatio(page.window.Dispatch(), &ratio));
    EXPECT_EQ(log.Count("GetScreenToCssPxRatio: Cannot get window screen rectangle through AA or the rectangle is empty"), 3u);
}

}  // namespace
}  // namespace Zorvex
