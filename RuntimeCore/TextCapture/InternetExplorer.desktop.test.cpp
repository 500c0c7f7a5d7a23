#include "RuntimeCore/TextCapture/InternetExplorer.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/Desktop.h"
#include "Platform/Simulated/Element.h"
#include "RuntimeCore/HTMLTools.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/TextCapture/ElementCapture.h"
#include "RuntimeCore/TextCapture/WindowCapture.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeDocument.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::FakeCalls;
using Testing::FakeDocument;
using Testing::FakeHtmlObject;
using Testing::FakeObjects;
using Testing::LogCapture;

// A window with a page of text, a field, and a frame in its lower left corner.
class InternetExplorerTest : public testing::Test {
protected:
    InternetExplorerTest() {
        page.AddText(L"Name ", {0, 0, 40, 20});
        page.AddInput(L"text", L"Ada", {40, 0, 80, 20});
        page.AddFrame(frame, L"IFRAME", {0, 300, 400, 600});
        frame.AddText(L"frame", {0, 0, 50, 20});
        page.body.values[L"innerText"] = CComVariant(L"Name\nframe");
        Serve("root", page.window);
        Serve("pane", frame.body);
    }
    ~InternetExplorerTest() override {
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        EXPECT_EQ(objects.OutstandingReferences(), 0);
        EXPECT_EQ(page.MarkersLeft() + frame.MarkersLeft(), 0u);
    }

    void Serve(const char* id, FakeHtmlObject& html) { desktop.Get().ElementById(id)->EditDetails().services = html.Dispatch(); }
    void Break(const char* id, Simulated::Call call, std::optional<HRESULT> result, std::optional<VARTYPE> type = {}) {
        Simulated::Fault fault;
        fault.call = call;
        fault.result = result;
        fault.null = !result && !type;
        fault.type = type;
        desktop.AddFault(id, fault);
    }
    HRESULT Capture(const RECT* filter) { return CaptureDocumentTextIE(context, desktop.Window("ie"), filter, text); }
    HRESULT Fallback() { return CaptureTextAA_IE(desktop.Window("ie"), text); }

    DesktopFixture desktop{R"({"windows": [{"id": "frame", "class": "IEFrame", "children": [
        {"id": "ie", "class": "Internet Explorer_Server", "rectangle": [0,0,800,600], "objects": {
          "window": {"id": "window", "role": "window", "children": [{"clientObject": "ie"}]},
          "client": {"id": "root", "role": "pane", "rectangle": [0,0,800,600], "children": [
            {"id": "pane", "role": "pane", "rectangle": [0,300,400,300]},
            {"id": "leaf", "role": "text", "simple": true, "rectangle": [0,0,80,20]}]}}}]}]})"};
    FakeObjects objects;
    FakeDocument page{objects, {0, 0, 800, 600}};
    FakeDocument frame{objects, {0, 300, 400, 600}};
    CaptureContext context;
    CString text = L"before";
    LogCapture log;
};

using InternetExplorer = InternetExplorerTest;
using InternetExplorerFallback = InternetExplorerTest;
using InternetExplorerKind = InternetExplorerTest;
using HtmlPoints = InternetExplorerTest;

TEST_F(InternetExplorer, WithoutAFilterTheDocumentOfTheWindowIsRead) {
    const RECT empty{};
    for (const RECT* filter : {static_cast<const RECT*>(nullptr), &empty}) {
        EXPECT_EQ(Capture(filter), S_OK);
        EXPECT_EQ(text, L"Name Ada\r\nframe");
    }
}

TEST_F(InternetExplorer, AFilterInsideAFrameReadsTheFramesDocument) {
    const RECT filter{0, 300, 100, 340};
    EXPECT_EQ(Capture(&filter), S_OK);
    EXPECT_EQ(text, L"frame");
    EXPECT_EQ(page.markersPlaced, 0u);
    EXPECT_EQ(desktop.Calls("root", "accHitTest"), 2);
}

TEST_F(InternetExplorer, AFilterOverTwoDocumentsReadsTheWindows) {
    const RECT filter{0, 0, 100, 340};
    EXPECT_EQ(Capture(&filter), S_OK);
    EXPECT_EQ(text, L"Name Ada\r\nframe");
}

TEST_F(InternetExplorer, AFilterThatBeginsInAFrameAndEndsOutsideReadsTheWindows) {
    page.AddText(L"beside", {500, 300, 560, 320});
    page.AddText(L"below", {0, 580, 60, 600});
    const RECT filter{0, 300, 600, 340};
    EXPECT_EQ(Capture(&filter), S_OK);
    EXPECT_EQ(text, L"frame\r\nbeside");
}

TEST_F(InternetExplorer, AFilterThatNoDocumentLiesUnderFallsBackOnTheWindows) {
    const RECT filter{0, 0, 5000, 5000};
    EXPECT_EQ(Capture(&filter), S_OK);
    EXPECT_EQ(text, L"Name Ada\r\nframe");
}

TEST_F(InternetExplorer, AWindowWithoutADocumentIsAFailure) {
    desktop.Get().ElementById("root")->EditDetails().services = nullptr;
    EXPECT_TRUE(FAILED(Capture(nullptr)));
    EXPECT_EQ(text, L"");
    EXPECT_TRUE(FAILED(CaptureDocumentTextIE(context, nullptr, nullptr, text)));
    EXPECT_TRUE(log.Contains("HTMLTools::GetDocumentFromWindow: AccessibleObjectFromWindow failed"));
}

TEST_F(InternetExplorer, EveryCallMayFailAndTheDocumentIsLeftAsItWas) {
    LogCapture quiet(L"FATAL");
    const RECT filter{0, 0, 100, 340};
    for (int nth = 1;; ++nth) {
        FakeCalls::Instance().Reset(FakeCalls::Spoil::Fail, nth);
        const HRESULT result = Capture(&filter);
        const bool wasSpoilt = FakeCalls::Instance().total >= nth;
        FakeCalls::Instance().Reset();
        EXPECT_TRUE(SUCCEEDED(result) || text.empty());
        EXPECT_EQ(page.MarkersLeft() + frame.MarkersLeft(), 0u) << nth;
        EXPECT_EQ(objects.OutstandingReferences(), 0) << nth;
        EXPECT_EQ(desktop.OutstandingReferences(), 0) << nth;
        if (!wasSpoilt) break;
        ASSERT_LT(nth, 5000);
    }
    EXPECT_EQ(text, L"Name Ada\r\nframe");
}

TEST_F(InternetExplorerFallback, ReadsTheTextOfTheBody) {
    Serve("root", page.body);
    EXPECT_EQ(Fallback(), S_OK);
    EXPECT_EQ(text, L"Name\r\nframe");
    for (const char* line : {"CaptureTextAA_IE: AccessibleObjectFromWindow succeeded", "CaptureTextAA_IE: spServiceProvider succeeded",
                             "CaptureTextAA_IE: spBodyElement succeeded", "CaptureTextAA_IE: return S_OK"})
        EXPECT_EQ(log.Count(line), 1u) << line;
}

TEST_F(InternetExplorerFallback, AWindowWithoutAnObjectAnswersFalse) {
    for (const bool null : {false, true}) {
        Break("ie", Simulated::Call::AccessibleObjectFromWindow, null ? std::nullopt : std::optional<HRESULT>(E_FAIL));
        EXPECT_EQ(Fallback(), S_FALSE);
        EXPECT_EQ(text, L"");
        desktop.ClearFaults();
    }
    EXPECT_EQ(log.Count("CaptureTextAA_IE: AccessibleObjectFromWindow failed"), 2u);
}

TEST_F(InternetExplorerFallback, EachStepSaysWhereItFailed) {
    Serve("root", page.body);
    Break("window", Simulated::Call::AccNavigate, E_ACCESSDENIED);
    EXPECT_EQ(Fallback(), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("CaptureTextAA_IE: spAccIE->accNavigate failed"));
    desktop.ClearFaults();
    Break("window", Simulated::Call::AccNavigate, {}, static_cast<VARTYPE>(VT_I4));
    EXPECT_EQ(Fallback(), E_FAIL);
    desktop.ClearFaults();
    Break("window", Simulated::Call::AccNavigate, {}, static_cast<VARTYPE>(VT_DISPATCH));
    EXPECT_EQ(Fallback(), E_FAIL);
    EXPECT_EQ(log.Count("CaptureTextAA_IE: spAccIE->accNavigate succeeded but VT_DISPATCH != varFirstChild.vt"), 2u);
    desktop.ClearFaults();

    page.body.values.erase(L"innerText");
    EXPECT_EQ(Fallback(), DISP_E_UNKNOWNNAME);
    EXPECT_TRUE(log.Contains("CaptureTextAA_IE: the text of the body can't be read"));
    page.body.objects[L"document"] = [this] { return &page.window; };
    EXPECT_EQ(Fallback(), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("CaptureTextAA_IE: spDoc2 failed"));
    page.body.objects[L"document"] = [] { return nullptr; };
    EXPECT_EQ(Fallback(), E_FAIL);
    EXPECT_TRUE(log.Contains("CaptureTextAA_IE: spDocDisp failed"));
    page.body.interfaces.clear();
    EXPECT_EQ(Fallback(), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("CaptureTextAA_IE: spBodyElement failed"));
    desktop.Get().ElementById("root")->EditDetails().services = nullptr;
    EXPECT_EQ(Fallback(), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("CaptureTextAA_IE: spServiceProvider failed")) << log.Text();
    EXPECT_EQ(text, L"");
}

TEST_F(InternetExplorerFallback, ATextLongerThanAnyIsCut) {
    Serve("root", page.body);
    page.body.values[L"innerText"] = CComVariant(std::wstring(LongestCapturedText + 3, L'x'));
    EXPECT_EQ(Fallback(), S_OK);
    EXPECT_EQ(text.size(), LongestCapturedText);
}

TEST_F(InternetExplorerKind, AWindowIsReadThroughItsDocumentUnderTheFilterOfTheFlags) {
    std::vector<HighlightInfo> lines;
    const RECT filter{0, 300, 100, 340};
    const auto capture = [&](DWORD flags) {
        text = L"before";
        EXPECT_TRUE(DoCaptureAA(desktop.Window("ie"), AA_TYPE_IE, filter, flags, lines, text));
        return text;
    };
    EXPECT_EQ(capture(0), L"Name Ada\r\nframe");
    EXPECT_EQ(desktop.Calls("root", "accHitTest"), 0);
    EXPECT_EQ(capture(CaptureClipped), L"frame");
    EXPECT_EQ(capture(CaptureByExactRectangle), L"frame");
    EXPECT_FALSE(log.Contains("CaptureTextAA_IE"));
}

TEST_F(InternetExplorerKind, AnElementIsReadAsTheWholeDocumentWhateverTheFlags) {
    std::vector<HighlightInfo> lines;
    EXPECT_TRUE(AAGetFullTextFromElement(desktop.Window("ie"), desktop.Element("leaf"), desktop.Child("leaf"),
                                         CaptureClipped | CaptureByExactRectangle, lines, text));
    EXPECT_EQ(text, L"Name Ada\r\nframe");
    EXPECT_EQ(desktop.Calls("root", "accHitTest"), 0);
}

TEST_F(InternetExplorerKind, ADocumentThatCannotBeReadLeavesTheTextOfTheBody) {
    std::vector<HighlightInfo> lines;
    Serve("root", page.body);
    page.body.methods.erase(L"createTextRange");
    EXPECT_TRUE(DoCaptureAA(desktop.Window("ie"), AA_TYPE_IE, {}, 0, lines, text));
    EXPECT_EQ(text, L"Name\r\nframe");
    EXPECT_TRUE(log.Contains("CaptureTextAA_IE: return S_OK"));
    page.body.values.erase(L"innerText");
    EXPECT_FALSE(DoCaptureAA(desktop.Window("ie"), AA_TYPE_IE, {}, 0, lines, text));
    EXPECT_EQ(text, L"");
}

TEST_F(HtmlPoints, TheInnermostDocumentIsThatOfTheHitObject) {
    CComPtr<IHTMLDocument2> doc;
    EXPECT_EQ(HTMLTools::GetMostInnerDocFromPoint(desktop.Window("ie"), {10, 310}, doc), S_OK);
    EXPECT_EQ(doc.p, static_cast<IHTMLDocument2*>(&frame.document));
    // A child without an object of its own belongs to the object that was asked.
    EXPECT_EQ(HTMLTools::GetMostInnerDocFromPoint(desktop.Window("ie"), {10, 10}, doc), S_OK);
    EXPECT_EQ(doc.p, static_cast<IHTMLDocument2*>(&page.document));
    EXPECT_EQ(log.Count("HTMLTools::GetMostInnerDocFromPoint: enter"), 2u);
    EXPECT_EQ(log.Count("HTMLTools::GetMostInnerDocFromPoint: return spDoc"), 2u);
}

TEST_F(HtmlPoints, EachStepOfTheInnermostDocumentSaysWhereItFailed) {
    CComPtr<IHTMLDocument2> doc;
    const auto ask = [&] { return HTMLTools::GetMostInnerDocFromPoint(desktop.Window("ie"), {10, 310}, doc); };
    EXPECT_EQ(HTMLTools::GetMostInnerDocFromPoint(desktop.Window("ie"), {9000, 9000}, doc), E_FAIL);
    EXPECT_TRUE(log.Contains("NULL value in vAccChild HTMLTools::GetMostInnerDocFromPoint"));
    Break("root", Simulated::Call::AccHitTest, E_ACCESSDENIED);
    EXPECT_EQ(ask(), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("HTMLTools::GetMostInnerDocFromPoint: accHitTest failed"));
    desktop.ClearFaults();
    desktop.Get().ElementById("pane")->EditDetails().services = nullptr;
    EXPECT_EQ(ask(), E_NOINTERFACE);
    EXPECT_TRUE(log.Contains("HTMLTools::GetMostInnerDocFromPoint: Cannot get spDoc"));
    Break("ie", Simulated::Call::AccessibleObjectFromWindow, E_ACCESSDENIED);
    EXPECT_EQ(ask(), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("HTMLTools::GetMostInnerDocFromPoint: AccessibleObjectFromWindow failed"));
    EXPECT_FALSE(doc);
}

TEST_F(HtmlPoints, AnElementIsFoundInTheInnermostDocument) {
    FakeHtmlObject& button = frame.AddElement(L"BUTTON", {100, 100, 200, 120});
    CComPtr<IDispatch> element;
    EXPECT_EQ(HTMLTools::GetElementFromPoint(desktop.Window("ie"), {110, 410}, element), S_OK);
    EXPECT_EQ(element.p, button.Dispatch());
    EXPECT_TRUE(log.Contains("HTMLTools::GetElementFromPoint: enter hWnd=0x"));
    EXPECT_TRUE(log.Contains("pt=(110 410)"));
}

TEST_F(HtmlPoints, AnElementThatIsNotFoundSaysWhy) {
    CComPtr<IDispatch> element;
    EXPECT_EQ(HTMLTools::GetElementFromPoint(desktop.Window("frame"), {1, 1}, element), E_INVALIDARG);
    EXPECT_TRUE(log.Contains("HTMLTools::GetElementFromPoint: not an IE window"));
    EXPECT_EQ(HTMLTools::GetElementFromPoint(desktop.Window("ie"), {9000, 1}, element), E_FAIL);
    EXPECT_TRUE(log.Contains("HTMLTools::GetElementFromPoint: GetMostInnerDocFromPoint failed"));
    page.document.methods.erase(L"elementFromPoint");
    EXPECT_EQ(HTMLTools::GetElementFromPoint(desktop.Window("ie"), {10, 10}, element), DISP_E_UNKNOWNNAME);
    EXPECT_TRUE(log.Contains("HTMLTools::GetElementFromPoint: GetElementFromPoint failed"));
    EXPECT_FALSE(element);
}

}  // namespace
}  // namespace Zorvex
