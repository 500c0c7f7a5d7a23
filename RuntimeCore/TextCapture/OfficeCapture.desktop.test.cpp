#include "RuntimeCore/TextCapture/OfficeCapture.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/AutomationObject.h"
#include "Platform/Simulated/Desktop.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

using Capture = HRESULT (*)(HWND, CString&);

HRESULT result = E_UNEXPECTED;

// The text of a window with that object model.
std::wstring Text(Capture capture, const std::string& model) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "C", "nativeObject": )" + model + "}]}");
    CString text;
    result = capture(desktop.Window("w"), text);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
    return text;
}

TEST(OfficeCapture, DocumentGivesTheTextOfItsContentAsItStands) {
    EXPECT_EQ(Text(CaptureTextAA_Word, R"({"Document": {"Content": {"Text": "one\rtwo\r"}}})"), L"one\rtwo\r");
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(Text(CaptureTextAA_Word, R"({"Document": {"Content": {"Text": ""}}})"), L"");
    EXPECT_EQ(result, S_OK);
}

TEST(OfficeCapture, DocumentLongerThanAnyTextIsCut) {
    // Not in JSON, which would take its time.
    using Simulated::AutomationData;
    const auto with = [](const wchar_t* name, Simulated::AutomationValue value) {
        return std::make_shared<const AutomationData>(AutomationData{{{name, std::move(value)}}});
    };
    const auto content = with(L"Text", {std::wstring(LongestCapturedText + 3, L'x')});
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "C"}]})");
    desktop.Get().WindowById("w")->nativeObject = with(L"Document", {with(L"Content", {content})});
    CString text;
    EXPECT_EQ(CaptureTextAA_Word(desktop.Window("w"), text), S_OK);
    EXPECT_EQ(text.size(), LongestCapturedText);
}

TEST(OfficeCapture, AnythingMissingOnTheWayToTheTextGivesNothing) {
    for (const char* model : {"{}", R"({"Document": null})", R"({"Document": 3})", R"({"Document": {"$result": "0x80020009"}})",
                              R"({"Document": {}})", R"({"Document": {"Content": {}}})", R"({"Document": {"Content": {"Text": 5}}})",
                              R"({"Document": {"Content": {"Text": {"$result": "0x80020009"}}}})"}) {
        EXPECT_EQ(Text(CaptureTextAA_Word, model), L"") << model;
        EXPECT_EQ(result, S_FALSE) << model;
    }
}

TEST(OfficeCapture, WindowWithoutAnObjectModelGivesNothing) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "C"}]})");
    for (const Capture capture : {CaptureTextAA_Word, CaptureTextAA_Excel, CaptureTextAA_PowerPoint}) {
        CString text;
        EXPECT_EQ(capture(desktop.Window("w"), text), S_FALSE);
        EXPECT_EQ(capture(nullptr, text), S_FALSE);
        EXPECT_EQ(text, L"");
    }
}

std::string Sheet(const std::string& rows, const std::string& columns, const std::string& cells) {
    return R"({"ActiveSheet": {"UsedRange": {"Rows": {"Count": )" + rows + R"(}, "Columns": {"Count": )" + columns + R"(}, "Item": )" + cells + "}}}";
}

TEST(OfficeCapture, SpreadsheetBeginsWithALineEndAndGivesEachCellWithATextRowByRow) {
    const char* cells = R"([[{"Text": "a"}, {"Text": "b"}, {"Text": "c"}], [{"Text": "d"}, {"Text": ""}, {"Text": "f"}]])";
    EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("2", "3", cells)), L"\r\na\r\nb\r\nc\r\nd\r\nf");
    EXPECT_EQ(result, S_OK);
}

TEST(OfficeCapture, UnreadableCellsAreSkipped) {
    EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("2", "2", R"([[{"Text": "a"}, {"$result": "0x80020009"}], [{"Text": 5}, {"Text": "d"}]])")), L"\r\na\r\nd");
    EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("1", "2", R"([[{"Text": null}, 7]])")), L"");
    EXPECT_EQ(result, S_OK);
}

TEST(OfficeCapture, CountsOfAnyNumberTypeCount) {
    EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("1.0", "\"1\"", R"([[{"Text": "a"}]])")), L"\r\na");
}

TEST(OfficeCapture, SheetWithoutCellsSucceedsAndOneWithoutCountsDoesNot) {
    EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("0", "5", "[]")), L"");
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("-1", "-1", "[]")), L"");
    EXPECT_EQ(result, S_OK);
    for (const char* odd : {"null", "{}", "\"many\"", R"({"$result": "0x80020009"})"}) {
        EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet(odd, "1", R"([[{"Text": "a"}]])")), L"") << odd;
        EXPECT_EQ(result, S_FALSE) << odd;
        EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("1", odd, R"([[{"Text": "a"}]])")), L"") << odd;
        EXPECT_EQ(result, S_FALSE) << odd;
    }
    EXPECT_EQ(Text(CaptureTextAA_Excel, R"({"ActiveSheet": {}})"), L"");
    EXPECT_EQ(result, S_FALSE);
}

TEST(OfficeCapture, CountsThatNoSheetHasEnd) {
    LogCapture log(L"ERROR");
    EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("2147483647", "2147483647", R"([[{"Text": "a"}]])")), L"\r\na");
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(log.Contains("E [MayAsk] Text capture ends after 1000000 objects")) << log.Text();
    EXPECT_EQ(Text(CaptureTextAA_Excel, Sheet("2147483647", "0", "[]")), L"");
    EXPECT_EQ(result, S_OK);
}

TEST(OfficeCapture, PresentationGivesTheTextsOfShapesSlideBySlide) {
    EXPECT_EQ(Text(CaptureTextAA_PowerPoint, R"({"Presentation": {"Slides": {"Count": 2, "Item": [
                  {"Shapes": {"Count": 3, "Item": [{"TextFrame": {"TextRange": {"Text": "title"}}}, {"TextFrame": {"TextRange": {"Text": ""}}},
                                                   {"Picture": {}}]}},
                  {"Shapes": {"Count": 1, "Item": [{"TextFrame": {"TextRange": {"Text": "second"}}}]}}]}}})"),
              L"\r\ntitle\r\nsecond");
    EXPECT_EQ(result, S_OK);
}

TEST(OfficeCapture, SlidesAndShapesThatCannotBeReadAreSkipped) {
    EXPECT_EQ(Text(CaptureTextAA_PowerPoint, R"({"Presentation": {"Slides": {"Count": 4, "Item": [
                  {"$result": "0x80020009"}, {"Shapes": null}, {"Shapes": {"Item": [{"TextFrame": {"TextRange": {"Text": "uncounted"}}}]}},
                  {"Shapes": {"Count": 2, "Item": [{"TextFrame": {"$result": "0x80020009"}}, {"TextFrame": {"TextRange": {"Text": "text"}}}]}}]}}})"),
              L"\r\ntext");
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(Text(CaptureTextAA_PowerPoint, R"({"Presentation": {}})"), L"");
    EXPECT_EQ(result, S_FALSE);
    EXPECT_EQ(Text(CaptureTextAA_PowerPoint, R"({"Presentation": {"Slides": {}}})"), L"");
    EXPECT_EQ(result, S_FALSE);
}

TEST(OfficeCapture, CountsThatNoPresentationHasEnd) {
    LogCapture log(L"ERROR");
    EXPECT_EQ(Text(CaptureTextAA_PowerPoint, R"({"Presentation": {"Slides": {"Count": 2147483647, "Item": [{"Shapes": {"Count": 2147483647}}]}}})"), L"");
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(log.Contains("Text capture ends after 1000000 objects"));
}

TEST(OfficeCapture, ExceptionOfTheApplicationLeavesNoReference) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "C", "nativeObject": {"Document": {"Content": {"Text": {"$throw": true}}}}}]})");
    CString text;
    EXPECT_THROW(CaptureTextAA_Word(desktop.Window("w"), text), Simulated::ServerFailure);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace Zorvex
