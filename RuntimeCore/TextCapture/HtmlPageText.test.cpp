#include "RuntimeCore/TextCapture/HtmlPageText.h"

#include <gtest/gtest.h>

#include "RuntimeCore/TextCapture/HtmlFormFields.h"
#include "tests/Support/FakeDocument.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeCalls;
using Testing::FakeDocument;
using Testing::FakeHtmlObject;
using Testing::FakeObjects;
using Testing::LogCapture;

class HtmlPageText : public testing::Test {
protected:
    // Prepares, reads, and takes the markers out again.
    HRESULT Read(FakeDocument& page, const RECT* filter = nullptr) {
        HtmlMarkers markers;
        HtmlPage prepared;
        text = L"before";
        const HRESULT result = PreparePage(&page.document, filter, markers, prepared);
        return FAILED(result) ? result : ReadPageText(prepared, filter, text);
    }
    CString TextOf(FakeDocument& page, const RECT* filter = nullptr) {
        EXPECT_EQ(Read(page, filter), S_OK);
        EXPECT_EQ(page.MarkersLeft(), 0u);
        EXPECT_EQ(objects.OutstandingReferences(), 0);
        return text;
    }

    LogCapture log;
    FakeObjects objects;
    FakeDocument page{objects, {100, 200, 900, 800}};
    CString text;
};

TEST_F(HtmlPageText, TheTextOfTheBodyComesWithWindowsLineEnds) {
    page.AddText(L"one\ntwo\r\nthree\rfour");
    EXPECT_EQ(TextOf(page), L"one\r\ntwo\r\nthree\r\nfour");
    EXPECT_EQ(WithWindowsLineEnds(L"\r\r\n\n"), L"\r\n\r\n\r\n");
    EXPECT_EQ(page.markersPlaced, 0u);
}

TEST_F(HtmlPageText, FieldsShowTheirTextWhereTheyStand) {
    page.AddText(L"Name: ");
    page.AddInput(L"text", L"Ada");
    page.AddText(L"\r\nNotes:");
    page.AddTextArea(L"first\nsecond");
    page.AddText(L"end");
    EXPECT_EQ(TextOf(page), L"Name: Ada\r\nNotes: first\r\nsecond end");
    EXPECT_EQ(page.markersPlaced, 2u);
}

TEST_F(HtmlPageText, FieldsOfSeveralKindsComeInDocumentOrder) {
    page.AddTextArea(L"1");
    page.AddInput(L"text", L"2");
    page.AddSelect({L"x", L"3"}, 1);
    page.AddTextArea(L"4");
    page.AddInput(L"submit", L"5");
    EXPECT_EQ(TextOf(page), L"1 2 3 4 5");
}

TEST_F(HtmlPageText, FieldThatDoesNotKnowItsPlaceComesBehindTheLastThatDoes) {
    page.AddText(L"a ");
    page.AddInput(L"text", L"lost").methods.erase(L"sourceIndex");
    page.AddText(L"b ");
    page.AddInput(L"text", L"known");
    page.AddText(L"c");
    EXPECT_EQ(TextOf(page), L"a b known lost c") << "and no text is read twice";
}

TEST_F(HtmlPageText, InputsWithoutTextAreLeftAlone) {
    for (const wchar_t* type : {L"hidden", L"checkbox", L"radio", L"image", L"HIDDEN"}) page.AddInput(type, L"secret");
    page.AddText(L"text");
    EXPECT_EQ(TextOf(page), L"text");
    EXPECT_EQ(page.markersPlaced, 0u);
}

TEST_F(HtmlPageText, AMarkerIsASpanThatIsNotDisplayedAndCarriesTheAttribute) {
    FakeHtmlObject& input = page.AddInput(L"text", L"x");
    HtmlMarkers markers;
    CComPtr<IDispatch> marker;
    ASSERT_EQ(markers.PlaceBefore(&page.document, input.Dispatch(), marker), S_OK);
    ASSERT_EQ(page.MarkersLeft(), 1u);
    FakeHtmlObject& span = static_cast<FakeHtmlObject&>(*static_cast<IHTMLElement*>(marker.p));
    EXPECT_STREQ(span.values[L"tagName"].bstrVal, L"SPAN");
    EXPECT_TRUE(span.values.count(L"__zorvex_css_filter"));
    EXPECT_STREQ(span.objects[L"style"]()->values[L"display"].bstrVal, L"none");
}

TEST_F(HtmlPageText, APasswordShowsDotsAndAnEmptyFieldItsPlaceholder) {
    page.AddInput(L"password", L"abc");
    page.AddInput(L"text", L"").values[L"placeholder"] = CComVariant(L"you@example.org");
    page.AddInput(L"password", L"").values[L"placeholder"] = CComVariant(L"secret word");
    page.AddInput(L"range", L"3");
    page.AddInput(L"color", L"#102030");
    EXPECT_EQ(TextOf(page), L"\x25CF\x25CF\x25CF you@example.org secret word");
}

TEST_F(HtmlPageText, AListShowsItsSelectedOptionAndAnOpenOneAll) {
    page.AddText(L"Country ");
    page.AddSelect({L"Germany", L"France"}, 1);
    page.AddText(L" Extras ");
    page.AddSelect({L"Card", L"Crane"}, 0).values[L"multiple"] = CComVariant(true);
    page.AddText(L".");
    page.AddSelect({L"One", L"Two"}, 0).values[L"size"] = CComVariant(4);
    page.AddSelect({L"Nothing"}, -1);
    page.AddSelect({L"Nothing"}, 7);
    EXPECT_EQ(TextOf(page), L"Country France Extras Card\r\nCrane . One\r\nTwo");
}

TEST_F(HtmlPageText, FieldsThatAreNotDisplayedShowNothing) {
    page.AddInput(L"text", L"no size", {5, 5, 5, 5});
    page.AddInput(L"text", L"no width", {5, 5, 5, 15});
    page.AddInput(L"text", L"no height", {5, 5, 15, 5});
    page.AddInput(L"text", L"hidden").objects[L"currentStyle"]()->values[L"visibility"] = CComVariant(L"hidden");
    page.AddInput(L"text", L"collapsed").objects[L"currentStyle"]()->values[L"visibility"] = CComVariant(L"collapse");
    FakeHtmlObject& silent = page.AddInput(L"text", L"silent");
    silent.objects.erase(L"currentStyle");
    silent.values.erase(L"offsetWidth");
    EXPECT_EQ(TextOf(page), L"no width no height silent");
}

TEST_F(HtmlPageText, FramesComeInTheirPlaceOnLinesOfTheirOwn) {
    FakeDocument first(objects, {0, 0, 10, 10}), second(objects, {0, 0, 10, 10}), inner(objects, {0, 0, 10, 10});
    inner.AddText(L"inner");
    first.AddText(L"first ");
    first.AddFrame(inner);
    first.AddText(L"after inner");
    second.AddInput(L"text", L"field of second");
    page.AddText(L"above ");
    page.AddFrame(first);
    page.AddFrame(second);
    page.AddText(L"\r\nbelow");
    EXPECT_EQ(TextOf(page), L"above\r\nfirst\r\ninner\r\nafter inner\r\nfield of second\r\nbelow");
    for (const FakeDocument* document : {&first, &second, &inner}) EXPECT_EQ(document->MarkersLeft(), 0u);
    EXPECT_EQ(second.markersPlaced, 1u);
}

TEST_F(HtmlPageText, BlanksBehindAFrameAreNoLine) {
    FakeDocument frame(objects, {0, 0, 10, 10});
    frame.AddText(L"frame");
    page.AddText(L"above");
    page.AddFrame(frame);
    page.AddText(L" \r\n");
    EXPECT_EQ(TextOf(page), L"above\r\nframe");
}

TEST_F(HtmlPageText, WhatWasReadOfAFrameBeforeItFailedIsDropped) {
    FakeDocument frame(objects, {0, 0, 10, 10});
    frame.AddText(L"read ");
    frame.AddInput(L"text", L"read too");
    frame.AddText(L"not any more");
    frame.AddInput(L"text", L"neither");
    // The range of the whole frame, which is made first, compares itself with the first field alone.
    auto& createRange = frame.body.methods[L"createTextRange"];
    createRange = [original = createRange, compared = 0, made = 0](const auto& arguments, VARIANT* result) mutable {
        const HRESULT answer = original(arguments, result);
        if (made++) return answer;
        auto& compare =
            static_cast<FakeHtmlObject&>(*static_cast<IHTMLElement*>(result->pdispVal)).methods[L"compareEndPoints"];
        compare = [original = compare, compared](const auto& with, VARIANT* number) mutable {
            return compared++ < 2 ? original(with, number) : E_ACCESSDENIED;
        };
        return answer;
    };
    page.AddText(L"above ");
    page.AddFrame(frame);
    page.AddText(L"below");
    EXPECT_EQ(TextOf(page), L"above\r\nbelow");
    EXPECT_TRUE(log.Contains("ReadPageText: the text of a frame can't be read, hResult=0x80070005")) << log.Text();
}

TEST_F(HtmlPageText, ASetOfFramesIsTheTextOfItsFrames) {
    FakeDocument left(objects, {0, 0, 10, 10}), right(objects, {0, 0, 10, 10});
    left.AddText(L"left");
    right.AddText(L"right");
    page.MakeFrameSet();
    page.AddFrame(left, L"FRAME");
    page.AddFrame(right, L"FRAME");
    EXPECT_EQ(TextOf(page), L"left\r\nright");
    EXPECT_EQ(page.markersPlaced, 0u);
}

TEST_F(HtmlPageText, AFrameThatIsHiddenOrOfAnotherSiteIsLeftOut) {
    FakeDocument hidden(objects, {0, 0, 10, 10}), foreign(objects, {0, 0, 10, 10}), broken(objects, {0, 0, 10, 10}), silent(objects, {0, 0, 10, 10});
    for (FakeDocument* frame : {&hidden, &foreign, &broken, &silent}) frame->AddText(L"not to be seen");
    page.AddText(L"a");
    page.AddFrame(hidden, L"IFRAME", {});
    page.AddFrame(foreign).objects[L"contentWindow"] = [] { return nullptr; };
    broken.document.objects.erase(L"body");
    page.AddFrame(broken);
    silent.body.methods.erase(L"createTextRange");
    page.AddFrame(silent);
    page.AddText(L"b");
    EXPECT_EQ(TextOf(page), L"a\r\nb");
    EXPECT_TRUE(log.Contains("PreparePage: the document of a frame can't be had, hResult=0x80004005"));
    EXPECT_TRUE(log.Contains("PreparePage: the document has no body, hResult=0x80020006"));
    EXPECT_TRUE(log.Contains("ReadPageText: the text of a frame can't be read, hResult=0x80020006")) << log.Text();
}

TEST_F(HtmlPageText, ADocumentThatIsItsOwnFrameEnds) {
    page.AddText(L"x");
    page.AddFrame(page);
    TextOf(page);
    EXPECT_EQ(std::count(text.begin(), text.end(), L'x'), 17);
    // Several ways into itself: the frames are counted.
    page.AddFrame(page);
    page.AddFrame(page);
    EXPECT_EQ(Read(page), S_OK);
    EXPECT_LE(std::count(text.begin(), text.end(), L'x'), 257);
    EXPECT_EQ(page.MarkersLeft(), 0u);
}

TEST_F(HtmlPageText, UnderAFilterOnlyTheWordsInItCome) {
    page.AddText(L"one ", {0, 0, 40, 20});
    page.AddText(L"two ", {40, 0, 80, 20});
    page.AddText(L"three\r\n", {80, 0, 120, 20});
    page.AddText(L"four ", {0, 20, 40, 40});
    page.AddText(L"five ", {40, 20, 80, 40});
    page.AddText(L"six", {80, 20, 120, 40});
    page.AddText(L"unseen");
    const RECT all{100, 200, 900, 800}, column{140, 200, 180, 800}, row{0, 200, 2000, 220}, none{0, 0, 50, 50}, two{120, 200, 180, 240};
    EXPECT_EQ(TextOf(page, &all), L"one two three\r\nfour five six");
    EXPECT_EQ(TextOf(page, &column), L"two\r\nfive ");
    EXPECT_EQ(TextOf(page, &row), L"one two three\r\n");
    EXPECT_EQ(TextOf(page, &none), L"");
    EXPECT_EQ(TextOf(page, &two), L"one two\r\nfour five ");
}

TEST_F(HtmlPageText, WordsThatLieHigherThanTheLastBeginALine) {
    page.AddText(L"low ", {0, 40, 40, 60});
    page.AddText(L"outside ", {0, 400, 40, 420});
    page.AddText(L"high", {40, 0, 80, 20});
    const RECT top{100, 200, 900, 300};
    EXPECT_EQ(TextOf(page, &top), L"low\r\nhigh");
}

TEST_F(HtmlPageText, AFilterIsInScreenPixelsAlsoOfAZoomedPage) {
    page.window.innerWidth = 400;  // 800 on the screen
    page.window.innerHeight = 300;
    page.AddText(L"one ", {0, 0, 40, 20});
    page.AddText(L"two ", {40, 0, 80, 20});
    const RECT first{100, 200, 180, 800}, second{180, 200, 900, 800};
    EXPECT_EQ(TextOf(page, &first), L"one ");
    EXPECT_EQ(TextOf(page, &second), L"two ");
}

TEST_F(HtmlPageText, UnderAFilterFieldsComeByTheirOwnPlace) {
    page.AddText(L"Name ", {0, 0, 40, 20});
    page.AddInput(L"text", L"Ada", {40, 0, 80, 20});
    page.AddText(L"Town ", {0, 20, 40, 40});
    page.AddInput(L"text", L"Rome", {40, 20, 80, 40});
    const RECT row{100, 200, 900, 220}, column{140, 200, 180, 800}, all{100, 200, 900, 800};
    EXPECT_EQ(TextOf(page, &row), L"Name Ada");
    EXPECT_EQ(TextOf(page, &column), L"Ada\r\nRome");
    EXPECT_EQ(TextOf(page, &all), L"Name Ada\r\nTown Rome");
}

TEST_F(HtmlPageText, AFrameOutsideTheFilterIsNotTouched) {
    FakeDocument inside(objects, {100, 300, 200, 400}), outside(objects, {500, 500, 600, 600});
    inside.AddText(L"inside", {0, 0, 50, 20});
    inside.AddText(L"beyond", {0, 150, 50, 170});
    outside.AddText(L"outside", {0, 0, 50, 20});
    outside.AddInput(L"text", L"field");
    page.AddFrame(inside);
    page.AddFrame(outside);
    const RECT filter{100, 200, 400, 400};
    EXPECT_EQ(TextOf(page, &filter), L"inside");
    EXPECT_EQ(outside.markersPlaced, 0u);
}

TEST_F(HtmlPageText, CollectionsThatSayAnyNumberAreBounded) {
    page.AddText(L"text ");
    page.AddInput(L"hidden", L"x");
    for (const LONG length : {-1, static_cast<int>(0x80000000), 0x7FFFFFFF}) {
        page.lengthOfCollections = length;
        EXPECT_EQ(TextOf(page), L"text ") << length;
    }
    page.lengthOfCollections = {};
    FakeDocument select(objects, {0, 0, 10, 10});
    select.lengthOfCollections = 0x7FFFFFFF;
    select.AddSelect({L"o"}, 0x7FFFFFFE).values[L"size"] = CComVariant(2);
    FakeHtmlObject& field = select.AddSelect({L"o"}, 0);
    field.values[L"size"] = CComVariant(5);
    EXPECT_EQ(GetShownText(field.Dispatch(), L"select").size(), 10'000u + 2 * 9'999u);
}

TEST_F(HtmlPageText, APageWithoutAnEndOfWordsIsAFailure) {
    LogCapture quiet(L"ERROR");
    page.AddText(L"x", {0, 0, 10, 10});
    page.endlessWords = true;
    const RECT filter{500, 500, 600, 600};
    EXPECT_EQ(Read(page, &filter), E_FAIL);
    EXPECT_EQ(text, L"");
    EXPECT_TRUE(quiet.Contains("ReadPageText: the page has more than 200000 words"));
    EXPECT_TRUE(quiet.Contains("ReadPageText: the text of the document can't be read, hResult=0x80004005"));
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST_F(HtmlPageText, AFieldWhoseMarkerHasNoRangeIsReadBeforeTheText) {
    page.rangesOfMarkers = false;
    page.AddText(L"text");
    page.AddInput(L"text", L"field");
    EXPECT_EQ(TextOf(page), L"field text");
}

TEST_F(HtmlPageText, ItemsThatAreNullAreSkipped) {
    page.AddText(L"text");
    page.document.methods[L"getElementsByTagName"] = [](const auto&, VARIANT* result) {
        result->vt = VT_DISPATCH;
        result->pdispVal = nullptr;
        return S_OK;
    };
    EXPECT_EQ(TextOf(page), L"text");
    page.document.objects[L"body"] = [] { return nullptr; };
    EXPECT_EQ(Read(page), E_FAIL);
}

TEST_F(HtmlPageText, EveryCallMayFailAndNothingIsLeftInTheDocumentOrHeld) {
    LogCapture quiet(L"FATAL");
    for (const bool filtered : {false, true})
        for (const FakeCalls::Spoil spoil : {FakeCalls::Spoil::Fail, FakeCalls::Spoil::NullWithSuccess, FakeCalls::Spoil::Throw})
            for (int nth = 1;; ++nth) {
                FakeObjects all;
                FakeDocument frame(all, {100, 300, 300, 400}), document(all, {100, 200, 900, 800});
                frame.AddText(L"frame ", {0, 0, 40, 20});
                frame.AddInput(L"text", L"inner", {40, 0, 80, 20});
                document.AddText(L"one ", {0, 0, 40, 20});
                document.AddInput(L"text", L"field", {40, 0, 80, 20});
                document.AddSelect({L"x", L"y"}, 1, {80, 0, 99, 20});
                document.AddFrame(frame, L"IFRAME", {0, 100, 200, 200});
                document.AddText(L"two", {0, 210, 40, 230});
                const RECT filter{0, 0, 1000, 1000};
                FakeCalls::Instance().Reset(spoil, nth);
                HRESULT result = E_FAIL;
                try {
                    result = Read(document, filtered ? &filter : nullptr);
                } catch (const FakeCalls::Thrown&) {
                    // Nobody gets a text then.
                    text.clear();
                }
                const bool wasSpoilt = FakeCalls::Instance().total >= nth;
                FakeCalls::Instance().Reset();
                EXPECT_TRUE(SUCCEEDED(result) || text.empty() || text == L"before") << nth;
                EXPECT_EQ(document.MarkersLeft(), 0u) << nth;
                EXPECT_EQ(frame.MarkersLeft(), 0u) << nth;
                EXPECT_EQ(all.OutstandingReferences(), 0) << nth;
                if (!wasSpoilt) {
                    EXPECT_EQ(text, L"one field y\r\nframe inner\r\ntwo");
                    EXPECT_GT(nth, 200);
                    break;
                }
                ASSERT_LT(nth, 5000);
            }
}

TEST_F(HtmlPageText, AMarkerThatCanOnlyRemoveItselfGoesToo) {
    page.AddInput(L"text", L"x");
    page.body.methods.erase(L"removeChild");
    EXPECT_EQ(TextOf(page), L"x");
    EXPECT_EQ(page.markersPlaced, 1u);
}

TEST_F(HtmlPageText, AMarkerThatCanOnlyBeRemovedByItsParentGoesToo) {
    FakeHtmlObject& input = page.AddInput(L"text", L"x");
    {
        HtmlMarkers markers;
        CComPtr<IDispatch> marker;
        ASSERT_EQ(markers.PlaceBefore(&page.document, input.Dispatch(), marker), S_OK);
        static_cast<FakeHtmlObject&>(*static_cast<IHTMLElement*>(marker.p)).methods.erase(L"removeNode");
    }
    EXPECT_EQ(page.MarkersLeft(), 0u);
    {
        HtmlMarkers markers;
        CComPtr<IDispatch> marker;
        ASSERT_EQ(markers.PlaceBefore(&page.document, input.Dispatch(), marker), S_OK);
        static_cast<FakeHtmlObject&>(*static_cast<IHTMLElement*>(marker.p)).methods.erase(L"removeNode");
        page.body.methods.erase(L"removeChild");
    }
    EXPECT_TRUE(log.Contains("HtmlMarkers: a marker can't be removed from its document"));
}

}  // namespace
}  // namespace Zorvex
