#include "RuntimeCore/TextCapture/HtmlText.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "RuntimeCore/TextCapture/TextCollectorHtml.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

// One element of a page: its text at a place, further keys in `more`.
std::string Piece(const std::string& id, const std::string& text, int x, int y, int height = 10, const std::string& more = "",
                  const std::string& ia2 = "") {
    const std::string place = "[" + std::to_string(x) + "," + std::to_string(y) + ",";
    return R"({"id": ")" + id + R"(", "role": "grouping", "rectangle": )" + place + "50," + std::to_string(height) + "]" + more +
           R"(, "ia2": {"text": ")" + text + R"(", "characters": [)" + place + "5," + std::to_string(height) + "]]" + ia2 + "}}";
}

std::string Page(const std::string& pieces) {
    return R"({"windows": [{"id": "page", "class": "Chrome_WidgetWin_1", "rectangle": [0,0,800,600], "objects": {"client":
        {"id": "root", "role": "document", "rectangle": [0,0,800,600], "ia2": {}, "children": [)" +
           pieces + "]}}}]}";
}

std::wstring TextOf(const std::string& pieces, bool ignoreHidden = false, bool ignoreOffscreen = false, std::optional<RECT> filter = {}) {
    DesktopFixture desktop(Page(pieces));
    CString text = L"before";
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("root"), ignoreHidden, ignoreOffscreen, filter ? &*filter : nullptr, text), S_OK);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
    return text;
}

TEST(HtmlText, PiecesOfOneLineAreJoinedByABlank) { EXPECT_EQ(TextOf(Piece("a", "a", 0, 10) + "," + Piece("b", "b", 60, 10)), L"a b"); }

TEST(HtmlText, PiecesOfTwoLinesAreJoinedByALineEnd) { EXPECT_EQ(TextOf(Piece("a", "a", 0, 10) + "," + Piece("b", "b", 0, 30)), L"a\r\nb"); }

TEST(HtmlText, TheFirstPieceBeginsWithNoSeparator) {
    EXPECT_EQ(TextOf(Piece("a", "a", 0, 0)), L"a");
    EXPECT_EQ(TextOf(Piece("a", "", 0, 0) + "," + Piece("b", "b", 0, 90)), L"b");
}

TEST(HtmlText, ACheckBoxOrRadioButtonBeginsALineAndWhatFollowsGoesByTheUsualTest) {
    for (const char* role : {"check box", "radio button"}) {
        std::string box = Piece("box", "box", 60, 10);
        box.replace(box.find("grouping"), 8, role);
        LogCapture log;
        EXPECT_EQ(TextOf(Piece("a", "a", 0, 10) + "," + box + "," + Piece("b", "b", 90, 10) + "," + Piece("c", "c", 0, 40)), L"a\r\nbox b\r\nc");
        EXPECT_EQ(log.Count("IA2Tools::GetHtmlTextContent Force new line due to Chromium bug: Text coordinates are wrong for checkboxes and "
                            "radio buttons"),
                  1u);
    }
}

TEST(HtmlText, ACheckBoxWithoutTextForcesTheLineOfTheNextElementWithText) {
    std::string box = Piece("box", "", 60, 10);
    box.replace(box.find("grouping"), 8, "check box");
    EXPECT_EQ(TextOf(Piece("a", "a", 0, 10) + "," + box + "," + Piece("none", "", 70, 10) + "," + Piece("b", "b", 80, 10) + "," +
                     Piece("c", "c", 90, 10)),
              L"a\r\nb c");
}

TEST(HtmlText, PlaceholdersOfEmbeddedObjectsAreLeftOut) {
    LogCapture log;
    EXPECT_EQ(TextOf(Piece("a", "\\uFFFC", 0, 10) + "," + Piece("b", " \\uFFFC\\t\\uFFFD\\n", 0, 10)), L"");
    EXPECT_TRUE(log.Contains("IA2Tools::GetText Return empty text for element composed of replacement and spacing characters only. Original "
                             "length: 5")) << log.Text();
    EXPECT_EQ(TextOf(Piece("a", "a \\uFFFC b", 0, 10)), L"a  b");
    EXPECT_EQ(TextOf(Piece("a", " a\\uFFFC ", 0, 10)), L" a ");
    EXPECT_EQ(TextOf(Piece("a", "a", 0, 10) + "," + Piece("blank", " ", 0, 10)), L"a  ");
}

TEST(HtmlText, ALineEndsAtFourFifthsOfTheHeightOfItsFirstCharacter) {
    EXPECT_EQ(TextOf(Piece("a", "a", 0, 100, 5) + "," + Piece("b", "b", 0, 104, 5)), L"a b");
    EXPECT_EQ(TextOf(Piece("a", "a", 0, 100, 5) + "," + Piece("b", "b", 0, 105, 5)), L"a\r\nb");
    // What stays on the line doesn't move its end, what lies above is on the line as well, however far to the left.
    EXPECT_EQ(TextOf(Piece("a", "a", 90, 100, 5) + "," + Piece("b", "b", 60, 104, 50) + "," + Piece("c", "c", 0, 105) + "," +
                     Piece("d", "d", 0, 3)),
              L"a b\r\nc d");
}

class TextCollectorHtml : public testing::Test {
protected:
    // The line's lower limit after a first character of this place and height.
    static LONG Limit(const std::string& y, const std::string& height) {
        const std::string place = "[0," + y + ",5," + height + "]";
        DesktopFixture desktop(Page(R"({"id": "a", "ia2": {"text": "a", "characters": [)" + place + "]}}"));
        CTextCollectorHtml collector;
        bool changed = false;
        EXPECT_EQ(collector.LineUpdate(desktop.Element("a"), changed), S_OK);
        EXPECT_TRUE(changed);
        EXPECT_FALSE(collector.m_bLineForceNew);
        return collector.m_nLineBootom;
    }
};

TEST_F(TextCollectorHtml, TheLimitOfALineIsTruncatedTowardZero) {
    EXPECT_EQ(Limit("100", "5"), 104);
    EXPECT_EQ(Limit("100", "9"), 107);
    EXPECT_EQ(Limit("100", "-9"), 93);
    EXPECT_EQ(Limit("100", "-1"), 100);
    EXPECT_EQ(Limit("0", "2147483647"), 1717986917);
    EXPECT_EQ(Limit("2147483647", "2147483647"), static_cast<LONG>(0x7FFFFFFFu + 1717986917u));
    EXPECT_EQ(Limit("-2147483648", "-2147483648"), static_cast<LONG>(0x80000000u - 1717986918u));
}

TEST_F(TextCollectorHtml, StartsWithAForcedLineAtTheTop) {
    const CTextCollectorHtml collector;
    EXPECT_TRUE(collector.m_bLineForceNew);
    EXPECT_EQ(collector.m_nLineBootom, 0);
    EXPECT_EQ(collector.m_strText, L"");
}

TEST_F(TextCollectorHtml, TellsInTheLogWhatItDid) {
    LogCapture log;
    DesktopFixture desktop(Page(Piece("a", "abc", 3, 100, 5) + "," + Piece("b", "de", 7, 102, 5)));
    CTextCollectorHtml collector;
    EXPECT_EQ(collector.Append(desktop.Element("a"), false), S_OK);
    EXPECT_EQ(collector.Append(desktop.Element("b"), false), S_OK);
    EXPECT_TRUE(log.Contains("CTextCollectorHtml::LineUpdate End S_OK, bLineChanged=1, m_nLineBootom=104, (x,y,w,h)=(3,100,5,5)"));
    EXPECT_TRUE(log.Contains("CTextCollectorHtml::Append End, bLineChanged=1 nTextLenCrt=3 nTextLenAll=3"));
    EXPECT_TRUE(log.Contains("CTextCollectorHtml::LineUpdate End S_OK, bLineChanged=0, m_nLineBootom=104, (x,y,w,h)=(7,102,5,5)"));
    EXPECT_TRUE(log.Contains("CTextCollectorHtml::Append End, bLineChanged=0 nTextLenCrt=2 nTextLenAll=6")) << log.Text();
}

TEST_F(TextCollectorHtml, AnElementWhosePlaceCantBeReadBeginsALineAndSoDoesTheNext) {
    LogCapture log;
    const std::string fault = R"(, "faults": [{"call": "get_characterExtents", "result": "0x80004005"}])";
    EXPECT_EQ(TextOf(Piece("a", "a", 0, 10) + "," + Piece("b", "b", 20, 10, 10, fault) + "," + Piece("c", "c", 30, 10) + "," +
                     Piece("d", "d", 40, 10)),
              L"a\r\nb\r\nc d");
    EXPECT_TRUE(log.Contains("W [Append] CTextCollectorHtml::Append failed to update current line coordinates, insert new line, hResult=0x80004005"));
    EXPECT_TRUE(log.Contains("spIATextElem->get_characterExtents(0, IA2_COORDTYPE_SCREEN_RELATIVE, &x, &y, &w, &h) | HRESULT 80004005 | "
                             "CTextCollectorHtml::LineUpdate failed to get first character screen coordinate")) << log.Text();
}

TEST_F(TextCollectorHtml, InterfacesThatAreGoneAtTheSecondAskingFailTheLine) {
    struct Case {
        const char* fault;
        HRESULT result;
        const char* line;
    };
    const Case cases[] = {
        {R"({"call": "QueryService", "at": 1, "result": "0x80004002"})", E_NOINTERFACE,
         "IA2Tools::GetIA2FromAccElem(spAccElem, spIA2Elem) | HRESULT 80004002 | CTextCollectorHtml::LineUpdate failed to get IAccessible2"},
        {R"({"call": "QueryService", "at": 1, "null": true})", E_FAIL,
         "IA2Tools::GetIA2FromAccElem(spAccElem, spIA2Elem) | HRESULT 0 | CTextCollectorHtml::LineUpdate failed to get IAccessible2"},
        {R"({"call": "QueryInterface", "interface": "IAccessibleText", "result": "0x80004002"})", E_NOINTERFACE,
         "spIA2Elem->QueryInterface(&spIATextElem) | HRESULT 80004002 | CTextCollectorHtml::LineUpdate failed to get IAccessibleText"},
        {R"({"call": "QueryInterface", "interface": "IAccessibleText", "null": true})", E_FAIL,
         "spIA2Elem->QueryInterface(&spIATextElem) | HRESULT 0 | CTextCollectorHtml::LineUpdate failed to get IAccessibleText"}};
    for (const Case& failure : cases) {
        LogCapture log;
        DesktopFixture desktop(Page(Piece("a", "a", 0, 10, 10, std::string(R"(, "faults": [)") + failure.fault + "]")));
        CTextCollectorHtml collector;
        bool changed = true;
        EXPECT_EQ(collector.LineUpdate(desktop.Element("a"), changed), failure.result);
        EXPECT_FALSE(changed);
        EXPECT_TRUE(collector.m_bLineForceNew);
        EXPECT_TRUE(log.Contains(failure.line)) << log.Text();
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }
}

TEST(HtmlText, ANullElementIsRefused) {
    LogCapture log;
    CString text;
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(nullptr, false, false, nullptr, text), E_INVALIDARG);
    EXPECT_TRUE(log.Contains("Param Condition not met: pAccElem | IA2Tools::GetHtmlTextContent IAccessible pointer is NULL"));
}

TEST(HtmlText, TheWalkIsInDocumentOrder) {
    const std::string nested = R"({"id": "div", "ia2": {}, "children": [)" + Piece("b", "b", 0, 10) + R"(,{"id": "in", "ia2": {}, "children": [)" +
                               Piece("c", "c", 0, 10) + "]}," + Piece("d", "d", 0, 10) + "]}";
    EXPECT_EQ(TextOf(Piece("a", "a", 0, 10) + "," + nested + "," + Piece("e", "e", 0, 10)), L"a b c d e");
}

TEST(HtmlText, TheContainersTextComesBeforeThatOfItsChildren) {
    EXPECT_EQ(TextOf(Piece("p", "see \\uFFFC here", 0, 10, 10, R"(, "children": [)" + Piece("a", "link", 0, 10) + "]")), L"see  here link");
}

TEST(HtmlText, StaticTextBelowTheRootGivesNothingAndIsNotAsked) {
    std::string run = Piece("run", "run", 0, 10, 10, R"(, "children": [)" + Piece("in", "in", 0, 10) + "]");
    run.replace(run.find("grouping"), 8, "text");
    DesktopFixture desktop(Page(run));
    CString text;
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("root"), false, false, nullptr, text), S_OK);
    EXPECT_EQ(text, L"in");
    EXPECT_EQ(desktop.Calls("run", "get_text"), 0);
    EXPECT_EQ(desktop.Calls("accLocation"), 0);  // without a filter no place is read
}

TEST(HtmlText, StaticTextAsTheRootGivesItsText) {
    std::string run = Piece("run", "run", 0, 10);
    run.replace(run.find("grouping"), 8, "text");
    DesktopFixture desktop(Page(run));
    CString text;
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("run"), false, false, nullptr, text), S_OK);
    EXPECT_EQ(text, L"run");
}

TEST(HtmlText, HiddenAndOffscreenElementsAreLeftOutOnWishAndTheirChildrenStillWalked) {
    const std::string inner = R"(, "children": [)" + Piece("in", "in", 0, 10) + "]";
    const std::string hidden = Piece("h", "hidden", 0, 10, 10, R"(, "state": ["invisible"])" + inner);
    EXPECT_EQ(TextOf(hidden, true, false), L"in");
    EXPECT_EQ(TextOf(hidden, false, true), L"hidden in");
    const std::string offscreen = Piece("o", "offscreen", 0, 10, 10, R"(, "state": ["offscreen"])" + inner);
    EXPECT_EQ(TextOf(offscreen, true, false), L"offscreen in");
    EXPECT_EQ(TextOf(offscreen, false, true), L"in");
}

// Has the text of another element.
class WithTextOf : public Testing::FakeAccessible {
public:
    explicit WithTextOf(const CComPtr<IAccessible>& other) {
        hasAccessibleEx = true;  // so that it is a service provider
        other.QueryInterface(m_other);
    }

    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID riid, void** object) override {
        return m_other->QueryService(service, riid, object);
    }

private:
    CComPtr<IServiceProvider> m_other;
};

// A number that is no VT_I4.
CComVariant Unsigned(ULONG number) {
    CComVariant variant;
    variant.vt = VT_UI4;
    variant.ulVal = number;
    return variant;
}

TEST(HtmlText, RolesAndStatesOfAnotherTypeSayNothing) {
    DesktopFixture desktop(Page(Piece("a", "a", 0, 10) + "," + Piece("b", "b", 0, 10)));
    Testing::FakeAccessible root(ROLE_SYSTEM_DOCUMENT);
    WithTextOf text(desktop.Element("a")), box(desktop.Element("b"));
    text.role = Unsigned(ROLE_SYSTEM_STATICTEXT);
    text.state = Unsigned(STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN);
    box.role = Unsigned(ROLE_SYSTEM_CHECKBUTTON);
    root.AddChild(text);
    root.AddChild(box);
    CString whole;
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(&root, true, true, nullptr, whole), S_OK);
    EXPECT_EQ(whole, L"a b");
    root.ReturnChildren();
}

TEST(HtmlText, AFrameOutsideTheFilterIsLeftOutWithAllItHolds) {
    const std::string inside = R"(, "children": [)" + Piece("in", "in", 0, 10) + "]";
    const std::string frame = Piece("frame", "frame", 400, 400, 10, inside, R"(, "role": 1048)");
    LogCapture log;
    EXPECT_EQ(TextOf(frame, false, false, RECT{0, 0, 100, 100}), L"");
    EXPECT_EQ(log.Count("IA2Tools::GetHtmlTextContent Filter-out by rectangle IFRAME element and contents"), 1u);
    EXPECT_EQ(TextOf(Piece("frame", "frame", 20, 20, 10, inside, R"(, "role": 1048)"), false, false, RECT{0, 0, 100, 100}), L"frame in");
    // Without a filter the role isn't asked, and nothing is left out.
    EXPECT_EQ(TextOf(frame), L"frame in");
}

TEST(HtmlText, FramesInFramesAreEachHeldAgainstTheFilter) {
    const std::string frame = R"(, "role": 1048)";
    const auto holding = [](const std::string& pieces) { return R"(, "children": [)" + pieces + "]"; };
    const RECT filter{0, 0, 100, 100};
    const std::string reachesIn = Piece("in", "in", 0, 10);
    EXPECT_EQ(TextOf(Piece("outer", "outer", 20, 20, 10,
                           holding(Piece("inner", "inner", 20, 300, 10, holding(reachesIn), frame) + "," +
                                   Piece("b", "b", 60, 20)),
                           frame),
                     false, false, filter),
              L"outer b")
        << "the inner one is outside";
    EXPECT_EQ(TextOf(Piece("outer", "outer", 20, 300, 10,
                           holding(Piece("inner", "inner", 20, 20, 10, holding(reachesIn), frame)), frame),
                     false, false, filter),
              L"")
        << "what the outer one holds is never looked at";
    EXPECT_EQ(TextOf(Piece("outer", "outer", 100, 0, 10, holding(reachesIn), frame), false, false, filter), L"")
        << "edges that only touch share nothing";
    EXPECT_EQ(TextOf(Piece("outer", "outer", 0, 0, 0, holding(reachesIn), frame), false, false, filter), L"")
        << "neither does an empty one";
}

TEST(HtmlText, UnderAFilterAnElementWithoutIAccessible2EndsTheCapture) {
    LogCapture log;
    DesktopFixture desktop(Page(Piece("a", "a", 0, 10) + R"(, {"id": "plain", "rectangle": [0, 10, 5, 5]})"));
    CString text = L"before";
    const RECT filter{0, 0, 800, 600};
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("root"), false, false, &filter, text), E_NOINTERFACE);
    EXPECT_EQ(text, L"");
    EXPECT_TRUE(log.Contains("IA2Tools::GetHtmlTextContent failed to get IAccessible2 Role"));
}

TEST(HtmlText, AContainerOutsideTheFilterGivesNoTextButItsChildrenInsideDo) {
    const std::string children = R"(, "children": [)" + Piece("in", "in", 0, 10) + "," + Piece("out", "out", 300, 300) + "]";
    EXPECT_EQ(TextOf(Piece("div", "div", 400, 400, 10, children, R"(, "role": 1054)"), false, false, RECT{0, 0, 100, 100}), L"in");
    // Edges that only touch share nothing.
    EXPECT_EQ(TextOf(Piece("div", "div", 100, 0), false, false, RECT{0, 0, 100, 100}), L"");
    EXPECT_EQ(TextOf(Piece("div", "div", 99, 0), false, false, RECT{0, 0, 100, 100}), L"div");
}

TEST(HtmlText, ElementsWithoutIAccessible2OrTextGiveNothing) {
    EXPECT_EQ(TextOf(R"({"id": "plain", "name": "plain"},{"id": "ia2", "ia2": {"role": 5}},{"id": "simple", "simple": true},)" + Piece("a", "a", 0, 10)),
              L"a");
}

// A page of `count` elements, the document included, in rows of 64.
std::string PageOfElements(int count) {
    std::string rows;
    int made = 1;
    while (made < count) {
        rows += std::string(rows.empty() ? "" : ",") + R"({"ia2": {}, "children": [)";
        ++made;
        for (int i = 0; i < 63 && made < count; ++i, ++made) rows += i ? ",{}" : "{}";
        rows += "]}";
    }
    const std::size_t last = rows.rfind("{}");
    rows.replace(last, 2, R"({"id": "last", "ia2": {"text": "end"}})");
    return Page(rows);
}

TEST(HtmlText, TenThousandTwoHundredAndFortyElementsAreRead) {
    DesktopFixture desktop(PageOfElements(10240));
    CString text;
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("root"), false, false, nullptr, text), S_OK);
    EXPECT_EQ(text, L"end");
    EXPECT_EQ(desktop.Calls("get_accRole"), 10240);
}

TEST(HtmlText, OneElementMoreMakesTheCaptureFailWithoutText) {
    LogCapture log(L"ERROR");
    DesktopFixture desktop(PageOfElements(10241));
    CString text = L"before";
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("root"), false, false, nullptr, text), E_FAIL);
    EXPECT_EQ(text, L"");
    EXPECT_EQ(desktop.Calls("get_accRole"), 10240);
    EXPECT_TRUE(log.Contains("IA2Tools::GetHtmlTextContent Elements browsing counter limit exceeded, nBrowseCounter=10240"));
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(HtmlText, TheLimitIsTheSameForOneElementWithAllTheOthers) {
    const auto capture = [](int children, CString& text) {
        std::string pieces = R"({"ia2": {"text": "first"}})";
        for (int i = 1; i < children; ++i) pieces += ",{}";
        DesktopFixture desktop(Page(pieces));
        return IA2Tools::GetHtmlTextContent(desktop.Element("root"), false, false, nullptr, text);
    };
    LogCapture log(L"FATAL");
    CString text;
    EXPECT_EQ(capture(10239, text), S_OK);
    EXPECT_EQ(text, L"first");
    for (const int children : {10240, 10241, 30000}) {
        EXPECT_EQ(capture(children, text), E_FAIL) << children;
        EXPECT_EQ(text, L"") << children;
    }
}

TEST(HtmlText, AFrameLeftOutCountsAsOneElement) {
    // The frame holds more than the page may have, and none of it is taken.
    std::string inFrame = "{}";
    for (int i = 1; i < 10240; ++i) inFrame += ",{}";
    const std::string frame =
        Piece("frame", "frame", 400, 400, 10, R"(, "children": [)" + inFrame + "]", R"(, "role": 1048)");
    LogCapture log(L"FATAL");
    EXPECT_EQ(TextOf(frame + "," + Piece("a", "a", 0, 10), false, false, RECT{0, 0, 100, 100}), L"a");
}

TEST(HtmlText, AnEndlessPageEndsAtTheLimit) {
    LogCapture log(L"FATAL");
    DesktopFixture desktop(Page(R"({"id": "deep", "endless": true, "ia2": {"text": "x"}})"));
    CString text;
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("root"), false, false, nullptr, text), E_FAIL);
    EXPECT_EQ(desktop.Calls("get_accRole"), 10240);
}

TEST(HtmlText, AFailedReadEndsTheCaptureWithItsResultAndNoText) {
    struct Case {
        const char* fault;
        HRESULT result;
        const char* line;
    };
    const Case cases[] = {
        {R"({"call": "get_accRole", "result": "0x80070005"})", E_ACCESSDENIED,
         "spAccCrt->get_accRole(varChildSelf, &varRole) | HRESULT 80070005 | IA2Tools::GetHtmlTextContent current IAccessible::get_accRole() failed"},
        {R"({"call": "get_accState", "result": "0x80070005"})", E_ACCESSDENIED,
         "spAccCrt->get_accState(varChildSelf, &varState) | HRESULT 80070005 | IA2Tools::GetHtmlTextContent current IAccessible::get_accState() failed"},
        {R"({"call": "accLocation", "result": "0x80070005"})", E_ACCESSDENIED,
         "AAUtil::GetAALocation(spAccCrt, varChildSelf, rcScreen) | HRESULT 80070005 | IA2Tools::GetHtmlTextContent failed to get current "
         "IAccessible screen location"},
        {R"({"call": "role", "result": "0x80070005"})", E_ACCESSDENIED,
         "IA2Tools::GetRole(spAccCrt, lIA2Role) | HRESULT 80070005 | IA2Tools::GetHtmlTextContent failed to get IAccessible2 Role"},
        {R"({"call": "get_accChildCount", "result": "0x80070005"})", E_ACCESSDENIED,
         "IA2Tools::GetAccChildList(spAccCrt, lstCrtChildren) | HRESULT 80070005 | IA2Tools::GetHtmlTextContent failed to get IAccessible "
         "Children List"},
        {R"({"call": "get_accChildCount", "count": -1})", E_FAIL,
         "IA2Tools::GetAccChildList(spAccCrt, lstCrtChildren) | HRESULT 80004005 | IA2Tools::GetHtmlTextContent failed to get IAccessible "
         "Children List"},
        {R"({"call": "get_accChildCount", "count": 2147483647})", E_FAIL, "IA2Tools::GetHtmlTextContent failed to get IAccessible Children List"},
        {R"({"call": "get_nCharacters", "result": "0x80070005"})", E_ACCESSDENIED,
         "spIAText->get_nCharacters(&nLen) | HRESULT 80070005 | IA2Tools::GetText IAccessibleText::get_nCharacters(...) failed"},
        {R"({"call": "get_text", "result": "0x80070005"})", E_ACCESSDENIED,
         "spIAText->get_text(0, nLen, &bstrText) | HRESULT 80070005 | IA2Tools::GetText IAccessibleText::get_text(...) failed"}};
    for (const Case& failure : cases) {
        SCOPED_TRACE(failure.fault);
        LogCapture log;
        DesktopFixture desktop(Page(Piece("a", "a", 0, 10) + "," + Piece("b", "b", 20, 10, 10, std::string(R"(, "faults": [)") + failure.fault + "]")));
        CString text = L"before";
        const RECT filter{0, 0, 800, 600};
        EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("root"), false, false, &filter, text), failure.result);
        EXPECT_EQ(text, L"");
        EXPECT_TRUE(log.Contains(failure.line)) << log.Text();
        EXPECT_FALSE(log.Contains("End OK"));
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }
    LogCapture log;
    TextOf("");
    EXPECT_FALSE(log.Contains("failed"));
}

TEST(HtmlText, AFailedTextIsNamedAtEachLevel) {
    LogCapture log;
    DesktopFixture desktop(Page(Piece("b", "b", 20, 10, 10, R"(, "faults": [{"call": "get_text", "result": "0x80070005"}])")));
    CString text;
    EXPECT_EQ(IA2Tools::GetHtmlTextContent(desktop.Element("root"), false, false, nullptr, text), E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("IA2Tools::GetText(spAccElem, bstrCrt) | HRESULT 80070005 | CTextCollectorHtml::Append failed to get element text"));
    EXPECT_TRUE(log.Contains("textCollector.Append(spAccCrt, bLineForceNew) | HRESULT 80070005 | IA2Tools::GetHtmlTextContent failed to append "
                             "current element text to result")) << log.Text();
}

TEST(HtmlText, StartAndEndAreInTheLog) {
    LogCapture log;
    TextOf(Piece("a", "abc", 0, 10), true);
    EXPECT_TRUE(log.Contains("IA2Tools::GetHtmlTextContent Start bIgnoreHidden=1"));
    EXPECT_TRUE(log.Contains("IA2Tools::GetHtmlTextContent End OK, result text length: 3"));
}

TEST(HtmlText, EveryCallMayFailAndNoReferenceIsLeft) {
    LogCapture log(L"FATAL");
    const std::string page = Page(Piece("a", "a", 0, 10, 10, R"(, "children": [)" + Piece("c", "c", 0, 10) + "]") + "," + Piece("b", "b", 20, 10));
    const RECT filter{0, 0, 800, 600};
    for (const bool null : {false, true})
        for (int nth = 1; nth < 1000; ++nth) {
            DesktopFixture desktop(page);
            Simulated::Fault fault;
            fault.at = nth;
            fault.times = 1;
            fault.null = null;
            if (!null) fault.result = E_FAIL;
            desktop.AddFault(fault);
            CString text = L"before";
            CaptureContext context;
            const HRESULT result = CaptureTextAA_IA2Html(context, desktop.Window("page"), &filter, text, false);
            EXPECT_TRUE(SUCCEEDED(result) || text.empty()) << nth;
            EXPECT_EQ(desktop.OutstandingReferences(), 0) << nth;
            if (desktop.TotalCalls() < nth) {
                EXPECT_EQ(text, L"a c b");
                EXPECT_GT(nth, 40);
                break;
            }
            ASSERT_LT(nth, 999);
        }
}

class WidgetCapture : public testing::Test {
protected:
    DesktopFixture desktop{Page(Piece("a", "a", 0, 10) + "," + Piece("div", "div", 20, 40, 30, R"(, "children": [)" + Piece("c", "c", 20, 40) + R"(,
        {"id": "leaf", "simple": true, "role": "text", "rectangle": [7,7,7,7]}])"))};
    CaptureContext context;
    CString text = L"before";
    HRESULT Capture(const RECT* filter, bool identify) { return CaptureTextAA_IA2Html(context, desktop.Window("page"), filter, text, identify); }
};

TEST_F(WidgetCapture, TakesTheClientAreaOfTheWidget) {
    LogCapture log;
    EXPECT_EQ(Capture(nullptr, false), S_OK);
    EXPECT_EQ(text, L"a\r\ndiv c");
    EXPECT_TRUE(log.Contains("CaptureTextAA_IA2Html start"));
    EXPECT_EQ(desktop.Calls("page", "AccessibleObjectFromWindow"), 1);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST_F(WidgetCapture, ARectangleClips) {
    const RECT filter{0, 0, 800, 20};
    EXPECT_EQ(Capture(&filter, false), S_OK);
    EXPECT_EQ(text, L"a");
}

TEST_F(WidgetCapture, ARectangleThatNamesAnElementMakesItTheRootAndIsGivenUp) {
    LogCapture log;
    const RECT filter{20, 40, 70, 70};
    EXPECT_EQ(Capture(&filter, true), S_OK);
    EXPECT_EQ(text, L"div c");
    EXPECT_TRUE(log.Contains("CaptureTextAA_IA2Html: identify AA Element by rectangle (l,t,r,b)=(20,40,70,70)"));
    EXPECT_EQ(desktop.Calls("role"), 0);
}

TEST_F(WidgetCapture, ARectangleThatNamesNothingOrASimpleElementGivesTheWholePage) {
    const RECT none{1, 2, 3, 4}, simple{7, 7, 14, 14};
    EXPECT_EQ(Capture(&none, true), S_OK);
    EXPECT_EQ(text, L"a\r\ndiv c");
    EXPECT_EQ(Capture(&simple, true), S_OK);
    EXPECT_EQ(text, L"a\r\ndiv c");
}

TEST_F(WidgetCapture, PassesTheWishesOn) {
    context.m_bIgnoreHidden = true;
    desktop.Do({.kind = Simulated::Action::Kind::Change, .target = "a", .state = STATE_SYSTEM_INVISIBLE});
    EXPECT_EQ(Capture(nullptr, false), S_OK);
    EXPECT_EQ(text, L"div c");
    context.m_bIgnoreOffscreen = true;
    desktop.Do({.kind = Simulated::Action::Kind::Change, .target = "c", .state = STATE_SYSTEM_OFFSCREEN});
    EXPECT_EQ(Capture(nullptr, false), S_OK);
    EXPECT_EQ(text, L"div");
}

TEST_F(WidgetCapture, AWindowWithoutAnObjectIsAFailure) {
    for (const bool null : {false, true}) {
        LogCapture log;
        Simulated::Fault fault;
        fault.call = Simulated::Call::AccessibleObjectFromWindow;
        fault.at = null ? 2 : 1;  // the second round makes the second call
        fault.times = 1;
        fault.null = null;
        if (!null) fault.result = E_ACCESSDENIED;
        desktop.AddFault("page", fault);
        text = L"before";
        EXPECT_EQ(Capture(nullptr, false), null ? E_FAIL : E_ACCESSDENIED);
        EXPECT_EQ(text, L"");
        EXPECT_TRUE(log.Contains(null ? "CaptureTextAA_IA2Html: failed to get IAccessible of Widget client area, hResult=0x0 hWnd=0x"
                                      : "CaptureTextAA_IA2Html: failed to get IAccessible of Widget client area, hResult=0x80070005 hWnd=0x"))
            << log.Text();
        desktop.ClearFaults();
    }
}

TEST(HtmlText, ATextBeyondAllBoundsEndsTheCapture) {
    LogCapture log(L"FATAL");
    DesktopFixture desktop(Page(Piece("a", "a", 0, 10)));
    CTextCollectorHtml collector;
    collector.m_strText.assign(LongestCapturedText - 2, L'x');
    collector.m_bLineForceNew = false;
    collector.m_nLineBootom = 1000;
    EXPECT_EQ(collector.Append(desktop.Element("a"), false), S_OK);
    EXPECT_EQ(collector.Append(desktop.Element("a"), false), E_OUTOFMEMORY);
    EXPECT_EQ(collector.m_strText.size(), LongestCapturedText);
}

}  // namespace
}  // namespace Zorvex
