#include "RuntimeCore/Extraction/CellText.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/Desktop.h"
#include "RuntimeCore/RowName.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [{"id": "main", "class": "Main", "objects": {"client": {"children": [
  {"id": "one", "role": "cell", "name": "abc"},
  {"id": "two", "role": "cell", "children": [{"role": "text", "name": "a"}, {"role": "text", "name": "b"}]},
  {"id": "empty", "role": "cell"},
  {"id": "spaces", "role": "cell", "name": " \t x\r\ny \n"},
  {"id": "row", "role": "row", "children": [{"role": "cell", "name": "no"}, {"id": "header", "role": "row header", "name": "first\r\nline "}]},
  {"id": "cells", "role": "row", "children": [{"id": "a", "role": "cell", "name": "A"}, {"role": "cell", "name": "B"}]},
  {"id": "list", "role": "list", "children": [{"id": "simple", "role": "cell", "name": "s", "simple": true}]},
  {"id": "bare", "role": "row"}]}}}]})";

class CellTextTest : public ::testing::Test {
protected:
    CString Text(const char* id, bool flatten) {
        CString text = L"left over";
        GetCellText(text, desktop.Window("main"), desktop.Element(id), desktop.Child(id), flatten);
        return text;
    }
    std::wstring Name(const char* row) {
        CComVariant name(L"none");
        GetRowName(desktop.Window("main"), desktop.Element(row), desktop.Child(row), name);
        return name.bstrVal;
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
};

TEST_F(CellTextTest, ACellWithOneLineLosesItsLineEnd) {
    EXPECT_EQ(Text("one", false), L"abc");
    EXPECT_EQ(Text("one", true), L"abc");
    EXPECT_EQ(Text("simple", false), L"s");
}

TEST_F(CellTextTest, ACellWithSeveralLinesKeepsAllLineEnds) {
    EXPECT_EQ(Text("two", false), L"a\r\nb\r\n");
    EXPECT_EQ(Text("two", true), L"a  b");
}

TEST_F(CellTextTest, ACellWithoutTextIsEmpty) {
    EXPECT_EQ(Text("empty", false), L"");
    EXPECT_EQ(Text("empty", true), L"");
}

TEST_F(CellTextTest, FlatteningMakesOneTrimmedLineAndNotFlatteningLeavesWhiteSpace) {
    EXPECT_EQ(Text("spaces", true), L"x  y");
    // The first line end isn't the last one, so none is cut.
    EXPECT_EQ(Text("spaces", false), L" \t x\r\ny \n\r\n");
}

TEST_F(CellTextTest, SpacesOfAnyScriptAreWhiteSpace) {
    desktop.Do({.target = "one", .name = L"\xA0\x3000 total\xA0sum\x2003\xA0"});
    EXPECT_EQ(Text("one", true), L"total\xA0sum");
    desktop.Do({.target = "one", .name = L"\xA0"});
    EXPECT_EQ(Text("one", true), L"");
    EXPECT_EQ(Text("one", false), L"\xA0");
}

TEST_F(CellTextTest, AFailedCaptureIsEmpty) {
    CString text = L"left over";
    GetCellText(text, desktop.Window("main"), nullptr, CComVariant(CHILDID_SELF), false);
    EXPECT_EQ(text, L"");
    desktop.AddFault("one", {.call = "get_accRole", .result = E_FAIL});
    EXPECT_EQ(Text("one", false), L"");
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST_F(CellTextTest, HiddenTextsOfACellAreTextsOfTheCell) {
    DesktopFixture hidden(R"({"windows": [{"id": "main", "class": "Main", "objects": {"client": {"children": [
      {"id": "cell", "role": "cell", "children": [{"role": "text", "name": "a", "state": ["invisible"]},
        {"role": "list item", "name": "b", "state": ["offscreen"]}]}]}}}]})");
    CString text;
    GetCellText(text, hidden.Window("main"), hidden.Element("cell"), hidden.Child("cell"), false);
    EXPECT_EQ(text, L"a\r\nb\r\n");
}

TEST_F(CellTextTest, ACellOfAMillionUnitsIsReadWhole) {
    desktop.Do({.target = "one", .name = std::wstring(1'000'000, L'x')});
    EXPECT_EQ(Text("one", false).size(), 1'000'000u);
}

TEST_F(CellTextTest, ARowIsNamedByTheTextOfItsRowHeaderOnOneLine) {
    EXPECT_EQ(Name("row"), L"first  line");
    EXPECT_EQ(log.Count("GetRowName: End"), 1u);
}

TEST_F(CellTextTest, ARowWithoutRowHeaderIsNamedByItsFirstCell) { EXPECT_EQ(Name("cells"), L"A"); }

TEST_F(CellTextTest, ARowWhoseCellHasNoTextIsNamedByNothing) {
    desktop.Do({.target = "a", .name = L""});
    EXPECT_EQ(Name("cells"), L"");
    EXPECT_EQ(Name("bare"), L"none");
}

}  // namespace
}  // namespace Zorvex::Testing
