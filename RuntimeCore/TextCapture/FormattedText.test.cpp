#include "RuntimeCore/TextCapture/FormattedText.h"

#include <gtest/gtest.h>

#include "RuntimeCore/Requests/RequestFlags.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeCalls;
using Testing::FakeObjects;
using Testing::LogCapture;

const CComVariant Self(CHILDID_SELF);

class FormattedTextTest : public ::testing::Test {
protected:
    // The text that the element appends.
    std::wstring Line(LONG role, enAAType type = AA_TYPE_GENERIC) {
        CString text;
        result = AppendFormatedText(context, &element, Self, role, text, type, withParent ? &parent : nullptr);
        EXPECT_EQ(objects.OutstandingReferences(), 0);
        return text;
    }
    bool Logged(const char* line) const { return log.Contains(line); }

    LogCapture log;
    FakeObjects objects;
    FakeAccessible& element = objects.Add(0, L"name");
    CaptureContext context;
    CaptureParseContext parent;
    bool withParent = true;
    HRESULT result = E_UNEXPECTED;
};

TEST_F(FormattedTextTest, OtherRolesGiveTheirName) {
    EXPECT_EQ(Line(ROLE_SYSTEM_LINK), L"name\r\n");
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(Logged("V [AppendTo] AppendFormatedText varRole=30")) << log.Text();
    EXPECT_TRUE(Logged("before switch"));
    EXPECT_TRUE(Logged("AppendFormatedText: default->break"));
    EXPECT_TRUE(Logged("AppendFormatedText: appending 'name'"));
    EXPECT_EQ(element.locationCalls, 0);
}

TEST_F(FormattedTextTest, NamelessElementEndsWithTheResultOfItsName) {
    element.nullName = true;
    element.nameResult = S_FALSE;
    EXPECT_EQ(Line(ROLE_SYSTEM_LINK), L"");
    EXPECT_EQ(result, S_FALSE);
    EXPECT_TRUE(Logged("AppendFormatedText exit, hr=1"));
    element.nameResult = E_ACCESSDENIED;
    EXPECT_EQ(Line(ROLE_SYSTEM_CELL), L"") << "its value isn't asked";
    EXPECT_EQ(result, E_ACCESSDENIED);
    EXPECT_TRUE(Logged("AppendFormatedText exit, hr=80070005"));
    EXPECT_FALSE(Logged("before switch"));
}

TEST_F(FormattedTextTest, ValueGoesBeforeTheNameInCellsHeadersAndTexts) {
    element.value = L"value";
    for (const LONG role : {ROLE_SYSTEM_COLUMNHEADER, ROLE_SYSTEM_CELL, ROLE_SYSTEM_STATICTEXT, ROLE_SYSTEM_TEXT})
        EXPECT_EQ(Line(role), L"value\r\n") << role;
    EXPECT_TRUE(Logged("NOT AA_TYPE_CHROME branch"));
    EXPECT_TRUE(Logged("bUseName=0"));
    EXPECT_TRUE(Logged("NOT bUseName branch"));
    EXPECT_TRUE(Logged("pObject->get_accValue returned hr=0, bstrVal='value'"));
    EXPECT_EQ(Line(ROLE_SYSTEM_ROWHEADER), L"name\r\n") << "row headers have no rule of their own";
}

TEST_F(FormattedTextTest, NameStandsInForAValueThatIsMissingOrFails) {
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT), L"name\r\n");
    EXPECT_TRUE(Logged("FAILED(hr) || !bstrVal calling CAATools::GetSafeAccName"));
    element.value = L"value";
    element.valueResult = E_FAIL;
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT), L"name\r\n");
}

TEST_F(FormattedTextTest, EditableTextWithoutNameStillGivesItsValue) {
    element.nullName = true;
    element.value = L"typed";
    EXPECT_EQ(Line(ROLE_SYSTEM_TEXT), L"typed\r\n");
    EXPECT_TRUE(Logged("ROLE_SYSTEM_TEXT == varRole.lVal"));
    EXPECT_FALSE(Logged("state OK"));
}

TEST_F(FormattedTextTest, EditableTextWithNeitherIsAnErrorWithTheResultOfTheName) {
    element.nullName = true;
    element.nameResult = S_FALSE;
    EXPECT_EQ(Line(ROLE_SYSTEM_TEXT), L"");
    EXPECT_EQ(result, S_FALSE);
    EXPECT_TRUE(Logged("E [ValueRule] GetSafeAccName failed with hr=1")) << log.Text();
}

TEST_F(FormattedTextTest, LinkedEditableTextGivesItsName) {
    element.value = L"value";
    element.state = CComVariant(STATE_SYSTEM_LINKED);
    EXPECT_EQ(Line(ROLE_SYSTEM_TEXT), L"name\r\n");
    EXPECT_TRUE(Logged("state OK"));
    EXPECT_TRUE(Logged("bUseName=1"));
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT), L"value\r\n") << "that is for editable texts alone";
}

TEST_F(FormattedTextTest, TextThatRepeatsItsParentGivesNoSecondLine) {
    parent.bstrCrntParentValue = L"value";
    parent.bstrCrntParentName = L"name";
    element.value = L"value";
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT), L"");
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(log.Count("Avoid text duplicates, exit!!!"), 1u);
    element.value = L"";
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT), L"");
    EXPECT_EQ(log.Count("Avoid text duplicates, exit!!!"), 2u);
    element.value = L"other";
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT), L"other\r\n");
    withParent = false;
    element.value = L"value";
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT), L"value\r\n");
}

TEST_F(FormattedTextTest, ChromeTextIsTheNameWhereItIsReadOnlyOrTheStateIsUnknown) {
    element.value = L"value";
    element.state = CComVariant(STATE_SYSTEM_READONLY);
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT, AA_TYPE_CHROME), L"name\r\n");
    EXPECT_TRUE(Logged("ROLE_SYSTEM_TEXT and ROLE_SYSTEM_CELL case"));
    element.stateResult = E_FAIL;
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT, AA_TYPE_CHROME), L"name\r\n");
    element.stateResult = S_OK;
    element.state = CComVariant(0);
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT, AA_TYPE_CHROME), L"value\r\n");
    element.valueResult = DISP_E_MEMBERNOTFOUND;
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT, AA_TYPE_CHROME), L"") << "no name stands in";
    EXPECT_EQ(result, DISP_E_MEMBERNOTFOUND);
}

TEST_F(FormattedTextTest, ChromeTextThatRepeatsItsParentGivesNoLine) {
    parent.bstrCrntParentName = L"name";
    parent.bstrCrntParentValue = L"value";
    element.value = L"value";
    EXPECT_EQ(Line(ROLE_SYSTEM_CELL, AA_TYPE_CHROME), L"");
    EXPECT_EQ(result, S_OK);
    element.state = CComVariant(STATE_SYSTEM_READONLY);
    EXPECT_EQ(Line(ROLE_SYSTEM_CELL, AA_TYPE_CHROME), L"");
    EXPECT_EQ(result, S_OK);
}

TEST_F(FormattedTextTest, EmptyChromeValueGivesNoLineAndNullTheResultOfTheRead) {
    element.nullName = true;
    EXPECT_EQ(Line(ROLE_SYSTEM_TEXT, AA_TYPE_CHROME), L"");
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(Logged("NOT bVis branch"));
    log.Clear();
    FakeCalls::Instance().Reset(FakeCalls::Spoil::NullWithSuccess, 3);
    element.valueResult = S_FALSE;
    EXPECT_EQ(Line(ROLE_SYSTEM_TEXT, AA_TYPE_CHROME), L"");
    EXPECT_EQ(result, S_FALSE);
    EXPECT_FALSE(Logged("NOT bVis branch"));
}

TEST_F(FormattedTextTest, ValueThatComesWithAFailureRepeatsNothing) {
    parent.bstrCrntParentValue = L"value";
    element.value = L"value";
    element.valueResult = E_FAIL;
    EXPECT_EQ(Line(ROLE_SYSTEM_STATICTEXT), L"name\r\n");
}

TEST_F(FormattedTextTest, OutlineItemIsIndentedByItsLevelAndItsRecordIsNot) {
    context.m_bExtractHighlightInfo = true;
    element.name = L"x";
    element.value = L"2";
    EXPECT_EQ(Line(ROLE_SYSTEM_OUTLINEITEM), L"\t\tx\r\n");
    ASSERT_EQ(context.highlights.size(), 1u);
    EXPECT_EQ(context.highlights[0].text, L"x");
}

TEST_F(FormattedTextTest, RadioButtonAndCheckBoxAreIndentedByTheirValueToo) {
    element.value = L"3";
    EXPECT_EQ(Line(ROLE_SYSTEM_RADIOBUTTON), L"\t\t\tname\r\n");
    EXPECT_EQ(Line(ROLE_SYSTEM_CHECKBUTTON), L"\t\t\tname\r\n");
}

TEST_F(FormattedTextTest, NothingIsIndentedWithoutALevelAStateOrAPermission) {
    for (const wchar_t* level : {L"", L"0", L"-4", L"x"}) {
        element.value = level;
        EXPECT_EQ(Line(ROLE_SYSTEM_OUTLINEITEM), L"name\r\n") << level;
    }
    element.value = L"2";
    element.valueResult = E_FAIL;
    EXPECT_EQ(Line(ROLE_SYSTEM_OUTLINEITEM), L"name\r\n");
    element.valueResult = S_OK;
    element.stateResult = E_FAIL;
    EXPECT_EQ(Line(ROLE_SYSTEM_OUTLINEITEM), L"name\r\n");
    element.stateResult = S_OK;
    EXPECT_EQ(Line(ROLE_SYSTEM_OUTLINEITEM), L"\t\tname\r\n");
    context.m_bNoIndent = true;
    EXPECT_EQ(Line(ROLE_SYSTEM_OUTLINEITEM), L"name\r\n");
}

TEST_F(FormattedTextTest, LevelThatNoTreeHasIsIndentedByTheBoundAlone) {
    element.value = L"2147483648";
    EXPECT_EQ(Line(ROLE_SYSTEM_OUTLINEITEM), std::wstring(1024, L'\t') + L"name\r\n");
}

TEST_F(FormattedTextTest, ListItemInAWpfWindowGivesNoLine) {
    parent.bIsWpf = true;
    EXPECT_EQ(Line(ROLE_SYSTEM_LISTITEM), L"");
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(Logged("Ignore rows in WPF grid"));
    EXPECT_EQ(element.calls, 0);
    withParent = false;
    EXPECT_EQ(Line(ROLE_SYSTEM_LISTITEM), L"name\r\n");
}

TEST_F(FormattedTextTest, ButtonInRowsOfAWpfWindowGivesNoLineAndOneElsewhereDoes) {
    parent.bIsWpf = true;
    EXPECT_EQ(Line(ROLE_SYSTEM_PUSHBUTTON), L"name\r\n");
    parent.bInWpfRows = true;
    EXPECT_EQ(Line(ROLE_SYSTEM_PUSHBUTTON), L"");
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(Logged("Ignore buttons inside WPF grids"));
    parent.bIsWpf = false;
    EXPECT_EQ(Line(ROLE_SYSTEM_PUSHBUTTON), L"name\r\n");
}

TEST_F(FormattedTextTest, HiddenButtonIsLeftOutOnWish) {
    element.state = CComVariant(STATE_SYSTEM_INVISIBLE);
    EXPECT_EQ(Line(ROLE_SYSTEM_PUSHBUTTON), L"name\r\n");
    context.m_bIgnoreHidden = true;
    EXPECT_EQ(Line(ROLE_SYSTEM_PUSHBUTTON), L"");
    EXPECT_EQ(result, S_OK);
    element.state = CComVariant(0);
    EXPECT_EQ(Line(ROLE_SYSTEM_PUSHBUTTON), L"name\r\n");
    element.stateResult = E_FAIL;
    EXPECT_EQ(Line(ROLE_SYSTEM_PUSHBUTTON), L"name\r\n") << "an unknown state hides nothing here";
}

TEST_F(FormattedTextTest, ListItemsAreLeftOutByEachWishForItself) {
    const LONG hidden = STATE_SYSTEM_INVISIBLE, offscreen = STATE_SYSTEM_OFFSCREEN;
    const struct {
        bool ignoreHidden, ignoreOffscreen;
        LONG state;
        bool shown;
    } cases[] = {{false, false, hidden | offscreen, true}, {true, false, offscreen, true}, {true, false, hidden, false},
                 {false, true, hidden, true},              {false, true, offscreen, false}, {true, true, 0, true}};
    for (const auto& one : cases) {
        context.m_bIgnoreHidden = one.ignoreHidden;
        context.m_bIgnoreOffscreen = one.ignoreOffscreen;
        element.state = CComVariant(one.state);
        EXPECT_EQ(Line(ROLE_SYSTEM_LISTITEM), one.shown ? L"name\r\n" : L"");
        EXPECT_EQ(result, S_OK);
    }
    EXPECT_EQ(log.Count("NOT bVis branch"), 2u);
    element.stateResult = E_FAIL;
    EXPECT_EQ(Line(ROLE_SYSTEM_LISTITEM), L"name\r\n");
}

TEST_F(FormattedTextTest, RecordHoldsTheNormalisedRectangleOfTheLine) {
    context = CaptureContext(CaptureHighlightInfo);
    element.left = 50;
    element.top = 60;
    element.width = -20;
    element.height = 10;
    EXPECT_EQ(Line(ROLE_SYSTEM_LINK), L"name\r\n");
    ASSERT_EQ(context.highlights.size(), 1u);
    EXPECT_EQ(context.highlights[0].text, L"name");
    const RECT& place = context.highlights[0].rectangle;
    EXPECT_EQ(place.left, 30);
    EXPECT_EQ(place.right, 50);
    EXPECT_EQ(place.top, 60);
    EXPECT_EQ(place.bottom, 70);
    EXPECT_TRUE(Logged("m_bExtractHighlightInfo branch"));
    element.left = 0x7FFFFFFF;
    element.width = 1;
    element.height = -100;
    Line(ROLE_SYSTEM_LINK);
    EXPECT_LE(context.highlights[1].rectangle.left, context.highlights[1].rectangle.right);
    EXPECT_EQ(context.highlights[1].rectangle.top, -40);
}

TEST_F(FormattedTextTest, LineStandsWithoutARecordWhereThereIsNoLocation) {
    context.m_bExtractHighlightInfo = true;
    element.locationResult = E_FAIL;
    EXPECT_EQ(Line(ROLE_SYSTEM_LINK), L"name\r\n");
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(context.highlights.empty());
}

TEST_F(FormattedTextTest, EmbeddedNulsAndLoneSurrogatesAreKept) {
    element.name = std::wstring(L"a\0\xD800z", 4);
    EXPECT_EQ(Line(ROLE_SYSTEM_LINK), element.name + L"\r\n");
}

TEST_F(FormattedTextTest, LineThatDoesNotFitEndsTheTextWithOneError) {
    CString text(LongestCapturedText - 6, L'.');
    EXPECT_EQ(AppendFormatedText(context, &element, Self, ROLE_SYSTEM_LINK, text, AA_TYPE_GENERIC, nullptr), S_OK);
    EXPECT_EQ(text.size(), LongestCapturedText);
    EXPECT_FALSE(context.IsFull());
    EXPECT_EQ(AppendFormatedText(context, &element, Self, ROLE_SYSTEM_LINK, text, AA_TYPE_GENERIC, nullptr), S_FALSE);
    EXPECT_TRUE(context.IsFull());
    EXPECT_EQ(AppendFormatedText(context, &element, Self, ROLE_SYSTEM_LINK, text, AA_TYPE_GENERIC, nullptr), S_FALSE);
    EXPECT_EQ(text.size(), LongestCapturedText);
    EXPECT_EQ(log.Count("E [HasRoom] Text capture ends: the text would have more than 33554432 characters"), 1u);
}

TEST_F(FormattedTextTest, AnyCallFailingLeavesNoReferenceAndAWholeLine) {
    context = CaptureContext(CaptureHighlightInfo | CaptureIgnoreHidden | CaptureIgnoreOffscreen);
    element.value = L"2";
    for (const LONG role : {ROLE_SYSTEM_TEXT, ROLE_SYSTEM_LISTITEM, ROLE_SYSTEM_OUTLINEITEM, ROLE_SYSTEM_PUSHBUTTON, ROLE_SYSTEM_LINK})
        for (const auto spoil : {FakeCalls::Spoil::Fail, FakeCalls::Spoil::NullWithSuccess})
            for (const enAAType type : {AA_TYPE_GENERIC, AA_TYPE_CHROME})
                for (int nth = 1; nth <= 6; ++nth) {
                    FakeCalls::Instance().Reset(spoil, nth);
                    const std::wstring line = Line(role, type);
                    if (line.empty()) continue;
                    EXPECT_EQ(line.substr(line.size() - 2), L"\r\n");
                    EXPECT_NE(line.find_last_not_of(L"\t\r\n"), std::wstring::npos);
                }
}

}  // namespace
}  // namespace Zorvex
