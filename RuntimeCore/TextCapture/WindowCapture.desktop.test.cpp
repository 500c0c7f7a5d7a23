#include "RuntimeCore/TextCapture/WindowCapture.h"

#include <gtest/gtest.h>

#include "RuntimeCore/Requests/RequestFlags.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

class WindowCaptureTest : public ::testing::Test {
protected:
    // The text of window "w" of a desktop.
    std::wstring Text(DesktopFixture& desktop, DWORD flags = 0, const RECT& filter = {}, int type = AA_TYPE_GENERIC) {
        CString text = L"replaced";
        success = DoCaptureAA(desktop.Window("w"), static_cast<enAAType>(type), filter, flags, lines, text);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        return text;
    }
    // A window whose client object has these children.
    static std::string Desktop(const std::string& children, const std::string& client = "", const std::string& more = "") {
        return R"({"windows": [{"id": "w", "class": "C", "rectangle": [0, 0, 500, 500])" + more + R"(, "objects": {"client": {"id": "client", )" + client +
               R"("children": [)" + children + "]}}}]}";
    }

    LogCapture log;
    std::vector<HighlightInfo> lines;
    bool success = false;
};

TEST_F(WindowCaptureTest, OneStaticTextGivesItsLineAndOnWishItsRecord) {
    DesktopFixture desktop(Desktop(R"({"role": "text", "name": "Hello", "rectangle": [10, 20, 30, 40]})"));
    EXPECT_EQ(Text(desktop), L"Hello\r\n");
    EXPECT_TRUE(success);
    EXPECT_TRUE(lines.empty());
    EXPECT_EQ(Text(desktop, CaptureHighlightInfo), L"Hello\r\n");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, L"Hello");
    EXPECT_EQ(lines[0].rectangle.left, 10);
    EXPECT_EQ(lines[0].rectangle.top, 20);
    EXPECT_EQ(lines[0].rectangle.right, 40);
    EXPECT_EQ(lines[0].rectangle.bottom, 60);
}

TEST_F(WindowCaptureTest, GroupingsGiveTextAndHeadersOfTablesDoNot) {
    DesktopFixture desktop(Desktop(R"({"role": "grouping", "name": "group"}, {"role": "column header", "name": "column"}, {"role": "row header", "name": "row"})"));
    EXPECT_EQ(Text(desktop), L"group\r\n");
}

TEST_F(WindowCaptureTest, StepsOfTheCaptureAreLogged) {
    DesktopFixture desktop(Desktop(R"({"role": "text", "name": "Hello", "rectangle": [10, 20, 30, 40]})"));
    Text(desktop, CaptureClipped | CaptureHighlightInfo, {1, 2, 300, 400});
    for (const char* line : {"V [CaptureTextFullTextInWindowAA] CaptureTextFullTextInWindowAA: enAAType=0, dwFlags=6, rcFilter=(1, 2, 300, 400)",
                             "V [CaptureTextFullTextInWindowAA] bUseRectangleForIdentification=0, prcFilter=", "CaptureTextAA_Generic start",
                             "CaptureTextAA_Generic m_bIsIETopFrame=0", "Before starting recursive ParseAccObjectAndGetText",
                             "ParseAccObjectAndGetText returned 1", "CaptureTextAA_Generic end"})
        EXPECT_TRUE(log.Contains(line)) << line;
}

TEST_F(WindowCaptureTest, KindsWithoutACaptureOfTheirOwnGiveNothing) {
    DesktopFixture desktop(Desktop(R"({"role": "text", "name": "Hello"})"));
    for (const int type : {12, 13, 11, 15, -1, 0x7FFFFFFF}) {
        EXPECT_EQ(Text(desktop, 0, {}, type), L"") << type;
        EXPECT_FALSE(success) << type;
    }
}

TEST_F(WindowCaptureTest, KindOfTheRequestPicksTheCaptureWhateverTheClassOfTheWindow) {
    DesktopFixture desktop(Desktop(R"({"role": "list item", "name": "item"}, {"role": "check box", "name": "check"}, {"role": "editable text", "name": "", "value": "typed"},
        {"role": "outline item", "name": "node"})", "", R"(, "title": "title")"));
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_LISTBOX), L"item\r\n");
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_LISTVIEW), L"item\r\ncheck\r\n");
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_COMBOBOX), L"item\r\ntyped\r\n");
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_TREEVIEW), L"check\r\nnode\r\n");
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_EDIT), L"title");
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_RICHEDIT), L"title");
    for (const int type : {AA_TYPE_WORD, AA_TYPE_EXCEL, AA_TYPE_POWERPOINT}) {
        EXPECT_EQ(Text(desktop, 0, {}, type), L"") << type;
        EXPECT_FALSE(success) << "no object model";
    }
}

TEST_F(WindowCaptureTest, ObjectModelsAreReadByKind) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "C", "nativeObject": {"Document": {"Content": {"Text": "words"}},
        "ActiveSheet": {"UsedRange": {"Rows": {"Count": 1}, "Columns": {"Count": 1}, "Item": [[{"Text": "cell"}]]}},
        "Presentation": {"Slides": {"Count": 1, "Item": [{"Shapes": {"Count": 1, "Item": [{"TextFrame": {"TextRange": {"Text": "shape"}}}]}}]}}}}]})");
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_WORD), L"words");
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_EXCEL), L"\r\ncell");
    EXPECT_EQ(Text(desktop, 0, {}, AA_TYPE_POWERPOINT), L"\r\nshape");
    EXPECT_TRUE(success);
}

TEST_F(WindowCaptureTest, ListViewInAWindowGivesItsColumnsAndTheyEndWithIt) {
    DesktopFixture desktop(
        R"({"windows": [{"id": "w", "class": "C", "children": [{"id": "files", "class": "SysListView32", "style": 1, "listView": {
        "columns": [{"text": "Name"}, {"text": "Size"}], "items": [["a", "1"]]}, "objects": {"client": {"role": "list", "children": [
            {"role": "list item", "name": "a", "simple": true}]}}},
        {"id": "box", "class": "ListBox", "objects": {"client": {"role": "list", "children": [{"role": "list item", "name": "plain", "simple": true}]}}}]}]})");
    EXPECT_EQ(Text(desktop, CaptureHighlightInfo), L"Name\tSize\r\na\t1\r\nplain\r\n");
    ASSERT_EQ(lines.size(), 2u) << "the header has no element";
    EXPECT_EQ(lines[0].text, L"a\t1");
}

TEST_F(WindowCaptureTest, ListViewInAListViewHasColumnsOfItsOwn) {
    DesktopFixture desktop(
        R"({"windows": [{"id": "w", "class": "C", "children": [{"id": "outer", "class": "SysListView32", "style": 1,
        "listView": {"columns": [{"text": "Outer"}], "items": [["a"]]}, "objects": {"client": {"role": "list", "children": [
            {"role": "list item", "name": "name", "simple": true}]}}, "children": [{"id": "inner", "class": "SysListView32", "style": 1,
            "listView": {"columns": [{"text": "Inner"}], "items": [["b"]]}, "objects": {"client": {"role": "list", "children": [
                {"role": "list item", "name": "name", "simple": true}]}}}]}]}]})");
    EXPECT_EQ(Text(desktop), L"Outer\r\na\r\nInner\r\nb\r\n");
}

TEST_F(WindowCaptureTest, ListOfAWindowThatIsNoListViewHasNoColumns) {
    DesktopFixture desktop(
        R"({"windows": [{"id": "w", "class": "Grid", "style": 1, "listView": {"columns": [{"text": "Name"}], "items": [["a"]]},
        "objects": {"client": {"role": "list", "children": [{"role": "list item", "name": "name", "simple": true}]}}}]})");
    EXPECT_EQ(Text(desktop), L"name\r\n");
}

TEST_F(WindowCaptureTest, FilterCountsUnderItsFlagsAlone) {
    DesktopFixture desktop(Desktop(R"({"role": "text", "name": "in", "rectangle": [10, 10, 20, 20]}, {"role": "text", "name": "out", "rectangle": [100, 10, 20, 20]})",
                                   R"("rectangle": [0, 0, 500, 500], )"));
    const RECT filter{5, 5, 50, 50};
    EXPECT_EQ(Text(desktop, CaptureClipped, filter), L"in\r\n");
    EXPECT_EQ(Text(desktop, 0, filter), L"in\r\nout\r\n");
}

TEST_F(WindowCaptureTest, SimpleChildWithANegativeEdgeIsLeftOutUnderAFilterAlone) {
    DesktopFixture desktop(Desktop(R"({"role": "text", "name": "left", "simple": true, "rectangle": [-10, 10, 40, 20]})", R"("rectangle": [0, 0, 500, 500], )"));
    EXPECT_EQ(Text(desktop), L"left\r\n");
    EXPECT_EQ(Text(desktop, CaptureClipped, {5, 5, 50, 50}), L"") << "and the window itself has no text to fall back on";
}

TEST_F(WindowCaptureTest, FilterInsideAnElementGivesTheLinesOfItsChildrenAndOfSimpleOnesThemselves) {
    DesktopFixture desktop(Desktop(R"({"role": "pane", "name": "around", "rectangle": [0, 0, 400, 400], "children": [
        {"role": "text", "name": "inside", "rectangle": [20, 20, 20, 20]},
        {"role": "text", "name": "simple around", "simple": true, "rectangle": [1, 1, 300, 300]}]})", R"("rectangle": [0, 0, 500, 500], )"));
    EXPECT_EQ(Text(desktop, CaptureClipped, {10, 10, 100, 100}), L"inside\r\nsimple around\r\n");
}

constexpr char Panes[] = R"({"role": "pane", "name": "pane", "rectangle": [10, 10, 100, 100], "children": [
    {"role": "text", "name": "in pane", "rectangle": [300, 300, 10, 10]},
    {"id": "simple", "role": "text", "name": "simple", "simple": true, "rectangle": [20, 20, 10, 10]}]},
    {"role": "text", "name": "beside", "rectangle": [200, 10, 10, 10]})";

TEST_F(WindowCaptureTest, ExactRectangleGivesTheElementAndAllBelowIt) {
    DesktopFixture desktop(Desktop(Panes));
    EXPECT_EQ(Text(desktop, CaptureByExactRectangle, {10, 10, 110, 110}), L"pane\r\nin pane\r\nsimple\r\n");
    EXPECT_TRUE(log.Contains("V [CaptureTextAA_Generic] prcFilter && bUseRectangleForIdentification branch"));
    EXPECT_TRUE(log.Contains("V [CaptureTextAA_Generic] GetAAChildWithRectangle succeeded branch"));
    EXPECT_TRUE(log.Contains("V [CaptureTextAA_Generic] Calling AppendFormatedText"));
}

TEST_F(WindowCaptureTest, ExactRectangleOfASimpleElementGivesItsLineAlone) {
    DesktopFixture desktop(Desktop(Panes));
    EXPECT_EQ(Text(desktop, CaptureByExactRectangle, {20, 20, 30, 30}), L"simple\r\n");
    EXPECT_TRUE(success);
    EXPECT_TRUE(log.Contains("E [CaptureTextAA_Generic] found object has no children, exit"));
}

TEST_F(WindowCaptureTest, ExactRectangleOfNoElementCapturesTheWholeWindowWithoutAFilter) {
    DesktopFixture desktop(Desktop(Panes));
    EXPECT_EQ(Text(desktop, CaptureByExactRectangle | CaptureClipped, {1, 2, 3, 4}), L"pane\r\nin pane\r\nsimple\r\nbeside\r\n");
    EXPECT_TRUE(success);
}

TEST_F(WindowCaptureTest, UnreadableRoleOfTheNamedElementEndsTheCapture) {
    DesktopFixture desktop(Desktop(Panes));
    Simulated::Fault fault;
    fault.call = Simulated::Call::AccRole;
    fault.result = E_ACCESSDENIED;
    desktop.AddFault("simple", fault);
    EXPECT_EQ(Text(desktop, CaptureByExactRectangle, {20, 20, 30, 30}), L"");
    EXPECT_FALSE(success);
    EXPECT_TRUE(log.Contains("E [CaptureTextAA_Generic] spChild->get_accRole failed, hResult=80070005"));
}

TEST_F(WindowCaptureTest, EmptyCaptureFallsBackOnTheRootsOwnText) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "C", "title": "Title"}]})");
    EXPECT_EQ(Text(desktop), L"Title\r\n");
    EXPECT_TRUE(success);
    EXPECT_TRUE(log.Contains("ParseAccObjectAndGetText no result; get pParent text"));
    EXPECT_TRUE(log.Contains("AppendFormatedText(pParent)"));
    EXPECT_TRUE(log.Contains("AppendFormatedText(pParent) end, hr=0"));
}

TEST_F(WindowCaptureTest, EmptyWindowWithoutANameIsNoSuccess) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "C", "objects": {"window": {"children": []}}}]})");
    EXPECT_EQ(Text(desktop), L"");
    EXPECT_FALSE(success) << "the missing name answers S_FALSE, and only S_OK counts";
}

TEST_F(WindowCaptureTest, RootWithoutARoleNumberEndsWithNothing) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "C", "objects": {"window": {"roleText": "own", "name": "x", "children": []}}}]})");
    EXPECT_EQ(Text(desktop), L"");
    EXPECT_TRUE(success);
    EXPECT_TRUE(log.Contains("CaptureTextAA_Generic end"));
}

TEST_F(WindowCaptureTest, WindowWithoutAnObjectIsNoSuccess) {
    DesktopFixture desktop(Desktop(""));
    Simulated::Fault fault;
    fault.call = Simulated::Call::AccessibleObjectFromWindow;
    fault.result = E_FAIL;
    desktop.AddFault("w", fault);
    EXPECT_EQ(Text(desktop), L"");
    EXPECT_FALSE(success);
    EXPECT_TRUE(log.Contains("E [CaptureTextAA_Generic] AccessibleObjectFromWindow failed, hResult=80004005"));
}

TEST_F(WindowCaptureTest, HiddenTextsAreLeftOutOnWish) {
    DesktopFixture desktop(Desktop(R"({"role": "text", "name": "shown"}, {"role": "text", "name": "hidden", "state": ["invisible"]},
        {"role": "list item", "name": "off", "state": ["offscreen"]}, {"role": "text", "name": "off too", "state": ["offscreen"]})"));
    EXPECT_EQ(Text(desktop), L"shown\r\nhidden\r\noff\r\noff too\r\n");
    EXPECT_EQ(Text(desktop, CaptureIgnoreHidden), L"shown\r\noff\r\noff too\r\n");
    EXPECT_EQ(Text(desktop, CaptureIgnoreOffscreen), L"shown\r\nhidden\r\noff too\r\n") << "that leaves out list items alone";
}

TEST_F(WindowCaptureTest, OldBrowserOnAnOldSystemIsMarkedForTheLengthOfTheCapture) {
    const auto marked = [&](const char* version, const char* frame) {
        DesktopFixture desktop(R"({"system": {"osVersion": )" + std::string(version) + R"(}, "windows": [{"id": "top", "class": ")" + frame +
                               R"(", "children": [{"id": "w", "class": "C", "objects": {"client": {"children": [{"role": "text", "name": "x"}]}}}]}]})");
        log.Clear();
        CaptureContext context;
        context.m_bIsIETopFrame = true;
        CString text;
        CaptureTextAA_Generic(context, desktop.Window("w"), nullptr, text, false);
        EXPECT_EQ(text, L"x\r\n");
        EXPECT_FALSE(context.m_bIsIETopFrame);
        return log.Contains("CaptureTextAA_Generic m_bIsIETopFrame=1");
    };
    EXPECT_TRUE(marked("[5, 1, 2600]", "IEFrame"));
    EXPECT_TRUE(marked("[0, 0, 0]", "IEFrame")) << "an unknown system may be an old one";
    EXPECT_FALSE(marked("[6, 0, 6000]", "IEFrame"));
    EXPECT_FALSE(marked("[5, 1, 2600]", "IEFrame2"));
}

TEST_F(WindowCaptureTest, EveryCallFailingOrThrowingOnceLeavesNoReference) {
    for (unsigned at = 1; at <= 60; ++at)
        for (const bool raise : {false, true}) {
            DesktopFixture desktop(Desktop(Panes));
            Simulated::Fault fault;
            fault.at = at;
            fault.times = 1;
            if (raise) fault.raise = true;
            else fault.result = E_FAIL;
            desktop.AddFault(fault);
            CString text;
            try {
                DoCaptureAA(desktop.Window("w"), AA_TYPE_GENERIC, {10, 10, 110, 110}, CaptureByExactRectangle | CaptureHighlightInfo | CaptureIgnoreHidden,
                            lines, text);
            } catch (const Simulated::ServerFailure&) {
            }
            EXPECT_EQ(desktop.OutstandingReferences(), 0) << at;
        }
}

}  // namespace
}  // namespace Zorvex
