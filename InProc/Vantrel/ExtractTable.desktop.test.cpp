#include "InProc/Vantrel/ExtractTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "InProc/Vantrel/AAContainerCache.h"
#include "Platform/Simulated/Desktop.h"
#include "Platform/Simulated/XmlDocuments.h"
#include "RuntimeCore/Extraction/DataScrapeContext.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/Selectors/Search/AaAttributeAccessPolicy.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

using namespace std::string_literals;

// Counts on, so that each cell has an id of its own.
std::string Cell(const std::string& role, const std::string& text) {
    static int number = 100;
    return R"({"role": ")" + role + R"(", "name": ")" + text + R"(", "ia2": {"uniqueId": )" + std::to_string(++number) + "}}";
}
std::string Row(const std::string& cells) { return R"({"role": "row", "children": [)" + cells + "]}"; }
std::string Table(const std::string& rows) { return R"({"id": "table", "role": "table", "children": [)" + rows + "]}"; }

const std::string kHeader = Row(Cell("column header", "A") + "," + Cell("column header", "B"));
const std::string kTwoRows = Row(Cell("cell", "1") + "," + Cell("cell", "2")) + "," + Row(Cell("cell", "3") + "," + Cell("cell", "4"));

class Browser {
public:
    explicit Browser(const std::string& elements, const std::string& windowClass = "MozillaWindowClass")
        : desktop(R"({"windows": [{"id": "main", "class": ")" + windowClass + R"(", "objects": {"client": {"id": "page", "role": "document",
          "children": [)" + elements + "]}}}]}") {
        Simulated::ClearXmlFaults();
    }
    ~Browser() {
        CacheCleaner::Release();
        EXPECT_EQ(Simulated::XmlReferences(), 0);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        Simulated::ClearXmlFaults();
        for (const wchar_t* id : {L"one", L"two"}) DataScrapeContext::Instance().Cleanup(DataScrapeSession(desktop.Window("main"), id));
    }

    AAObjectIdentifier Identify(const char* id) {
        return AAContainerCache::Instance().RegisterObject({kClientPid, desktop.Window("main")},
                                                           AAElement{desktop.Window("main"), desktop.Element(id), desktop.Child(id)});
    }
    ExtractTableRequest Request(const char* id = "table", std::int32_t maxRows = 100) {
        ExtractTableRequest request;
        request.element = Identify(id);
        request.maxRows = maxRows;
        return request;
    }
    std::wstring Xml(const char* id = "table", std::int32_t maxRows = 100) {
        const ExtractTableResponse response = Call(Request(id, maxRows));
        EXPECT_TRUE(response.success);
        return response.xml;
    }

    LogCapture log;
    DesktopFixture desktop;
};

// A row of the result from its names and texts.
std::wstring XmlRow(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> cells) {
    std::wstring row = L"<row>";
    for (const auto& [name, text] : cells) row += L"<column name=\""s + name + L"\">" + text + L"</column>";
    return row + L"</row>";
}
std::wstring Extract(const std::wstring& rows) { return L"<extract>" + rows + L"</extract>"; }

void ExpectFailure(Browser& browser, const ExtractTableRequest& request, const std::string& line) {
    const ExtractTableResponse response = Call(request);
    EXPECT_FALSE(response.success);
    EXPECT_EQ(response.xml, L"");
    EXPECT_EQ(response.sessionFlags, 0u);
    EXPECT_TRUE(browser.log.Contains(line)) << line << "\n" << browser.log.Text();
}

TEST(ExtractTable, NamesComeFromTheFirstRowsHeadersAndCellsFollowOnOneLine) {
    Browser browser(Table(kHeader + "," + kTwoRows));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"A", L"1"}, {L"B", L"2"}}) + XmlRow({{L"A", L"3"}, {L"B", L"4"}})));
    EXPECT_EQ(browser.log.Count("V [ExtractTableImpl] Vantrel::ExtractTableImpl: Start"), 1u);
    EXPECT_EQ(browser.log.Count("V [ExtractTableImpl] Vantrel::ExtractTableImpl: End"), 1u);
    EXPECT_TRUE(browser.log.Contains("V [ExtractTableImpl] Calling LookupIdentifier"));
}

TEST(ExtractTable, ATableWithNoRowsGivesTheRootElementAlone) {
    Browser browser(Table(""));
    EXPECT_EQ(browser.Xml(), L"<extract></extract>");
}

TEST(ExtractTable, ARowWithOnlyARowHeaderGivesAColumn) {
    Browser browser(Table(Row(Cell("row header", "only"))));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Column-0", L"only"}})));
}

TEST(ExtractTable, ARowWithOnlyButtonsGivesNothingAndDoesNotCountForMaxRows) {
    Browser browser(Table(Row(Cell("push button", "x")) + "," + kTwoRows));
    EXPECT_EQ(browser.Xml("table", 1), Extract(XmlRow({{L"Column-0", L"1"}, {L"Column-1", L"2"}})));
}

TEST(ExtractTable, ChildrenThatAreNoCellsDoNotMoveTheColumns) {
    Browser browser(Table(Row(Cell("push button", "x") + "," + Cell("cell", "1") + "," + Cell("link", "y") + "," + Cell("row header", "2"))));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Column-0", L"1"}, {L"Column-1", L"2"}})));
}

TEST(ExtractTable, AHeaderWithNoTextIsNamedByTheCountOfNamesSoFar) {
    for (const char* nothing : {"", " ", "\\u00A0"}) {
        Browser browser(Table(Row(Cell("column header", "A") + "," + Cell("column header", nothing)) + "," + kTwoRows));
        EXPECT_EQ(browser.Xml("table", 1), Extract(XmlRow({{L"A", L"1"}, {L"Column-1", L"2"}}))) << nothing;
    }
}

TEST(ExtractTable, AHeaderOfTwoLinesIsANameOfOneLine) {
    Browser browser(Table(Row(Cell("column header", " first\\r\\nsecond ")) + "," + Row(Cell("cell", "1"))));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"first  second", L"1"}})));
}

TEST(ExtractTable, CellsBeyondTheNamesAreNamedByTheirIndex) {
    Browser browser(Table(Row(Cell("column header", "A") + "," + Cell("column header", "B") + "," + Cell("column header", "C")) + "," +
                          Row(Cell("cell", "1") + "," + Cell("cell", "2") + "," + Cell("cell", "3") + "," + Cell("cell", "4"))));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"A", L"1"}, {L"B", L"2"}, {L"C", L"3"}, {L"Column-3", L"4"}})));
}

TEST(ExtractTable, WithoutNamesFromTheHeaderColumnsAreNumbered) {
    Browser browser(Table(kHeader + "," + kTwoRows));
    ExtractTableRequest request = browser.Request();
    request.columnNamesFromHeader = 0;
    EXPECT_EQ(Call(request).xml, Extract(XmlRow({{L"Column-0", L"1"}, {L"Column-1", L"2"}}) + XmlRow({{L"Column-0", L"3"}, {L"Column-1", L"4"}})));
}

TEST(ExtractTable, AFirstRowThatMixesHeadersWithCellsGivesThoseCells) {
    Browser browser(Table(Row(Cell("column header", "A") + "," + Cell("cell", "x") + "," + Cell("column header", "B") + "," + Cell("cell", "y"))));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"A", L"x"}, {L"B", L"y"}})));
}

TEST(ExtractTable, HeadersOfLaterRowsNameNothing) {
    Browser browser(Table(kTwoRows + "," + kHeader));
    EXPECT_EQ(browser.Xml("table", 1), Extract(XmlRow({{L"Column-0", L"1"}, {L"Column-1", L"2"}})));
}

TEST(ExtractTable, MaxRowsOfZeroOrLessStopsAfterTheFirstRowWithCells) {
    Browser browser(Table(kHeader + "," + kTwoRows));
    for (const std::int32_t maxRows : {0, -1, static_cast<std::int32_t>(0x80000000), 1})
        EXPECT_EQ(browser.Xml("table", maxRows), Extract(XmlRow({{L"A", L"1"}, {L"B", L"2"}}))) << maxRows;
    EXPECT_EQ(browser.Xml("table", 2), Extract(XmlRow({{L"A", L"1"}, {L"B", L"2"}}) + XmlRow({{L"A", L"3"}, {L"B", L"4"}})));
    EXPECT_EQ(browser.Xml("table", 0x7FFFFFFF), browser.Xml("table", 2));
}

TEST(ExtractTable, AStartInsideACellClimbsToTheTable) {
    Browser browser(Table(R"({"role": "row", "children": [{"role": "cell", "name": "go", "children": [{"id": "link", "role": "link"}]}]})"));
    EXPECT_EQ(browser.Xml("link"), Extract(XmlRow({{L"Column-0", L"go"}})));
}

TEST(ExtractTable, AStartWithoutATableAboveFails) {
    Browser browser(Table("") + R"(,{"id": "other", "role": "link"})");
    ExpectFailure(browser, browser.Request("other"),
                  "E [ExtractTableImpl] Expectation not met: tableElem.m_accElem | Vantrel::ExtractTableImpl: Object is not a table");
    EXPECT_FALSE(browser.log.Contains(": End"));
}

TEST(ExtractTable, AnEmptyOrUnknownIdentifierFails) {
    Browser browser(Table(kTwoRows));
    ExtractTableRequest request = browser.Request();
    request.element = {};
    ExpectFailure(browser, request, "E [ExtractTableImpl] Expectation not met: targetAa.m_hWnd | Vantrel::ExtractTableImpl: Invalid input - elem.m_hWnd");
    request = browser.Request();
    request.element.containerId = 0;
    ExpectFailure(browser, request, "E [ExtractTableImpl] Expectation not met: targetAa.m_accElem | Vantrel::ExtractTableImpl: Invalid input - elem.m_accElem");
}

TEST(ExtractTable, ACellOfOneLineLosesItsLineEndAndOneOfSeveralKeepsThem) {
    Browser browser(Table(R"({"role": "row", "children": [{"role": "cell", "name": "abc"},
        {"role": "cell", "children": [{"role": "text", "name": "a"}, {"role": "text", "name": "b"}]}]})"));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Column-0", L"abc"}, {L"Column-1", L"a\r\nb\r\n"}})));
}

// A cell of a Chromium page: text has a place there, and lines are told by it.
std::string ChromiumCell(const std::string& role, const std::string& lines, int x, int y) {
    static int number = 1'000;
    std::string pieces;
    std::size_t start = 0;
    for (int line = 0; start <= lines.size(); ++line) {
        const std::size_t end = std::min(lines.find('|', start), lines.size());
        const std::string place = "[" + std::to_string(x) + "," + std::to_string(y + 20 * line) + ",";
        pieces += std::string(line ? "," : "") + R"({"role": "grouping", "rectangle": )" + place + R"(50,10], "ia2": {"uniqueId": )" +
                  std::to_string(++number) + R"(, "text": ")" + lines.substr(start, end - start) + R"(", "characters": [)" + place + "5,10]]}}";
        start = end + 1;
    }
    return R"({"role": ")" + role + R"(", "ia2": {"uniqueId": )" + std::to_string(++number) + R"(, "text": "\uFFFC"}, "children": [)" + pieces + "]}";
}

TEST(ExtractTable, ChromiumCellsAreReadByThePlacesOfTheirTexts) {
    Browser browser(Table(Row(ChromiumCell("column header", "Line", 0, 0) + "," + ChromiumCell("column header", "To|by way of", 60, 0)) + "," +
                          Row(ChromiumCell("row header", "5", 0, 50) + "," + ChromiumCell("cell", "Harbour|Market", 60, 50) + "," +
                              ChromiumCell("cell", "", 120, 50))),
                    "Chrome_WidgetWin_1");
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Line", L"5"}, {L"To  by way of", L"Harbour\r\nMarket"}, {L"Column-2", L""}})));
    ExtractTableRequest request = browser.Request();
    request.sessionId = L"one";
    EXPECT_EQ(Call(request).sessionFlags, 0x2u);
    EXPECT_EQ(Call(request).sessionFlags, 0xBu);
}

TEST(ExtractTable, ACellWithoutTextIsAnEmptyColumnAndTheRowStands) {
    Browser browser(Table(Row(Cell("cell", "") + "," + Cell("cell", "2"))));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Column-0", L""}, {L"Column-1", L"2"}})));
}

TEST(ExtractTable, RowsOfGroupsAndOfTheTableStandInTheOrderOfTheDocument) {
    const auto group = [](const std::string& rows) { return R"({"role": "grouping", "children": [)" + rows + "]}"; };
    Browser browser(Table(group(kHeader) + "," + group(kTwoRows) + "," + Row(Cell("cell", "5"))));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"A", L"1"}, {L"B", L"2"}}) + XmlRow({{L"A", L"3"}, {L"B", L"4"}}) + XmlRow({{L"A", L"5"}})));
}

TEST(ExtractTable, ATableInACellIsTextOfThatCellAndATableOfItsOwn) {
    const std::string inner = R"({"id": "inner", "role": "table", "children": [)" + Row(Cell("cell", "in 1") + "," + Cell("cell", "in 2")) + "]}";
    Browser browser(Table(R"({"role": "row", "children": [{"role": "cell", "children": [)" + inner + "]}, " + Cell("cell", "out") + "]}"));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Column-0", L"in 1\r\nin 2\r\n"}, {L"Column-1", L"out"}})));
    EXPECT_EQ(browser.Xml("inner"), Extract(XmlRow({{L"Column-0", L"in 1"}, {L"Column-1", L"in 2"}})));
}

TEST(ExtractTable, SimpleCellsAreReadUnderTheirChildIds) {
    Browser browser(Table(R"({"role": "row", "children": [{"role": "cell", "name": "1", "simple": true}, {"id": "start", "role": "cell", "name": "2", "simple": true}]})"));
    EXPECT_EQ(browser.Xml("start"), Extract(XmlRow({{L"Column-0", L"1"}, {L"Column-1", L"2"}})));
}

TEST(ExtractTable, ASimpleRowHasNoCellsOfItsOwn) {
    Browser browser(Table(R"({"role": "row", "name": "simple", "simple": true}, )" + Cell("cell", "of the table")));
    EXPECT_EQ(browser.Xml(), L"<extract></extract>");
}

TEST(ExtractTable, WhatXmlCannotHoldIsReplacedAndTheRestIsEscaped) {
    Browser browser(Table(Row(Cell("column header", "<A>&\\\"\\u0007")) + "," + Row(R"({"id": "cell", "role": "cell", "name": "x"})")));
    browser.desktop.Do({.target = "cell", .name = std::wstring{L'a', 0, L'&', wchar_t(0xD800), L'b'}});
    const std::wstring text = {L'a', wchar_t(0xFFFD), L'&', L'a', L'm', L'p', L';', wchar_t(0xFFFD), L'b'};
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"&lt;A&gt;&amp;&quot;\xFFFD", text.c_str()}})));
}

TEST(ExtractTable, NamesOfColumnsAreReplacedAndEscapedAlike) {
    Browser browser(Table(Row(R"({"id": "header", "role": "column header", "name": "x"})") + "," + Row(Cell("cell", "1"))));
    browser.desktop.Do({.target = "header", .name = std::wstring{L'a', 0, wchar_t(0xDC00), L'\n', wchar_t(0xD83D), wchar_t(0xDE00)}});
    const std::wstring name = {L'a', wchar_t(0xFFFD), wchar_t(0xFFFD), L' ', wchar_t(0xD83D), wchar_t(0xDE00)};
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{name.c_str(), L"1"}})));
}

TEST(ExtractTable, ACellOfAMillionUnitsComesWhole) {
    Browser browser(Table(Row(R"({"id": "cell", "role": "cell", "name": "x"})")));
    browser.desktop.Do({.target = "cell", .name = std::wstring(1'000'000, L'x')});
    EXPECT_EQ(browser.Xml().size(), 1'000'000 + Extract(XmlRow({{L"Column-0", L""}})).size());
}

TEST(ExtractTable, CleanupAnswersAnEmptyExtractAndLooksForNoTable) {
    Browser browser(Table(kTwoRows) + R"(,{"id": "other", "role": "link"})");
    ExtractTableRequest request = browser.Request("other");
    request.cleanup = 1;
    request.sessionId = L"one";
    const int calls = browser.desktop.Calls("other", "get_accRole");
    const ExtractTableResponse response = Call(request);
    EXPECT_TRUE(response.success);
    EXPECT_EQ(response.xml, L"<extract></extract>");
    EXPECT_EQ(response.sessionFlags, 0u);
    EXPECT_EQ(browser.desktop.Calls("other", "get_accRole"), calls);
    EXPECT_EQ(Simulated::XmlCalls(), 0u);
}

TEST(ExtractTable, CleanupOfASessionThatCannotBeFails) {
    Browser browser(Table(kTwoRows));
    ExtractTableRequest request = browser.Request();
    request.cleanup = 1;
    ExpectFailure(browser, request,
                  "E [EndSession] dsContext.Cleanup(currentSessionData) | HRESULT 80070057 | Vantrel::ExtractTableImpl: Session cleanup failed");
}

std::uint32_t Flags(Browser& browser, const wchar_t* session = L"one", bool cleanup = false) {
    ExtractTableRequest request = browser.Request();
    request.sessionId = session;
    request.cleanup = cleanup;
    const ExtractTableResponse response = Call(request);
    EXPECT_TRUE(response.success);
    return response.sessionFlags;
}

TEST(ExtractTable, SessionFlagsTellTheSamePageFromANewOne) {
    Browser browser(Table(kHeader + "," + kTwoRows + "," + Row(R"({"id": "cell", "role": "cell", "name": "5", "ia2": {"uniqueId": 9}})")));
    EXPECT_EQ(Flags(browser), 0x2u);
    EXPECT_EQ(Flags(browser), 0xBu);
    browser.desktop.AddFault("cell", {.call = "get_uniqueID", .at = 3, .times = 1, .count = 10});
    EXPECT_EQ(Flags(browser), 0xAu);
    browser.desktop.ClearFaults();
    browser.desktop.AddFault("cell", {.call = "get_uniqueID", .at = 4, .times = 1, .result = E_FAIL});
    EXPECT_EQ(Flags(browser), 0xCu);
    browser.desktop.ClearFaults();
    // The last complete one had the id 10.
    EXPECT_EQ(Flags(browser), 0x1Au);
    EXPECT_EQ(Flags(browser, L"two"), 0x2u);
    EXPECT_EQ(Flags(browser, L"one", true), 0u);
    EXPECT_EQ(Flags(browser), 0x2u);
}

TEST(ExtractTable, AFailureAfterTheSessionWasRememberedHasNoFlags) {
    Browser browser(Table(kTwoRows));
    ExtractTableRequest request = browser.Request();
    request.sessionId = L"one";
    Simulated::AddXmlFault({.call = "get_xml", .result = E_FAIL});
    ExpectFailure(browser, request, "Cannot get xml text");
    EXPECT_EQ(Flags(browser), 0xBu);
}

TEST(ExtractTable, HeadersWithTextAreElementsOfTheSessionAndThoseWithoutAreNot) {
    Browser browser(Table(R"({"role": "row", "children": [{"id": "named", "role": "column header", "name": "A", "ia2": {"uniqueId": 1}},
        {"id": "empty", "role": "column header"}]})"));
    EXPECT_EQ(Flags(browser), 0x2u);
    EXPECT_EQ(browser.desktop.Calls("named", "get_uniqueID"), 1);
    EXPECT_EQ(browser.desktop.Calls("empty", "QueryService"), 0);
}

TEST(ExtractTable, WithoutASessionIdFlagsAreZeroWithOneWarning) {
    Browser browser(Table(kTwoRows));
    EXPECT_EQ(Flags(browser, L""), 0u);
    EXPECT_EQ(browser.log.Count("W [DataScrapeSession] DataScrapeSession for AA is not compatible with the current hWnd & sessionID."), 1u);
}

// What each XML call that fails says, in the order of the first calls.
TEST(ExtractTable, EveryFailingXmlCallEndsTheRequestWithItsLine) {
    struct Case {
        const char* call;
        unsigned at;
        bool null;
        const char* line;
    };
    const Case cases[] = {
        {"CLSIDFromProgID", 1, false, "E [CreateEmptyExtractResult] N_COM::CreateXMLDocument(outXmlDoc) | HRESULT 80004005 | Vantrel::CreateEmptyExtractResult: Failed to create the base XML document"},
        {"CoCreateInstance", 1, false, "Failed to create the base XML document"},
        {"CoCreateInstance", 1, true, "Failed to create the base XML document"},
        {"put_resolveExternals", 1, false, "Failed to create the base XML document"},
        {"put_validateOnParse", 1, false, "E [Create] CreateEmptyExtractResult(xmlDoc, spRoot) | HRESULT 80004005 | Vantrel::ExtractTableImpl: Could not create the extract xml result"},
        {"loadXML", 1, false, "outXmlDoc->loadXML(GetEmptyExtractXml(), &vbRet) | HRESULT 80004005 | Vantrel::CreateEmptyExtractResult: Cannot load XML document"},
        {"loadXML", 1, true, "outXmlDoc->loadXML(GetEmptyExtractXml(), &vbRet) | HRESULT 0 | Vantrel::CreateEmptyExtractResult: Cannot load XML document"},
        {"get_documentElement", 1, false, "outXmlDoc->get_documentElement(&outXmlDocRoot) | HRESULT 80004005 | Vantrel::CreateEmptyExtractResult: Cannot get root XML element"},
        {"get_documentElement", 1, true, "Cannot get root XML element"},
        {"createElement", 1, false, "xmlDoc->createElement(CComBSTR(\"row\"), &spRow) | HRESULT 80004005 | Vantrel::ExtractTableImpl: Cannot create xml row"},
        {"createElement", 1, true, "Expectation not met: spRow | Vantrel::ExtractTableImpl: Cannot create xml row - result is null"},
        {"createElement", 2, false, "xmlDoc->createElement(CComBSTR(\"column\"), &spCol) | HRESULT 80004005 | Vantrel::ExtractTableImpl: Cannot create xml column"},
        {"createElement", 2, true, "Expectation not met: spCol | Vantrel::ExtractTableImpl: Cannot create xml column - result is null"},
        {"put_text", 1, false, "spCol->put_text(bstrColTxt) | HRESULT 80004005 | Vantrel::ExtractTableImpl: Cannot set column text"},
        {"setAttribute", 1, false, "spCol->setAttribute(CComBSTR(\"name\"), CComVariant(bstrColName)) | HRESULT 80004005 | Vantrel::ExtractTableImpl: Cannot set column name"},
        {"appendChild", 1, false, "spRow->appendChild(spCol, nullptr) | HRESULT 80004005 | Vantrel::ExtractTableImpl: Cannot add XML column"},
        {"appendChild", 3, false, "spRoot->appendChild(spRow, nullptr) | HRESULT 80004005 | Vantrel::ExtractTableImpl: Cannot add xml row"},
        {"get_xml", 1, false, "xmlDoc->get_xml(&out_resultData) | HRESULT 80004005 | Vantrel::ExtractTableImpl: Cannot get xml text"},
        {"get_xml", 1, true, "Expectation not met: out_resultData.Length() | Vantrel::ExtractTableImpl: Cannot get xml text - empty"},
    };
    for (const Case& item : cases) {
        Browser browser(Table(kTwoRows));
        Simulated::AddXmlFault({.call = item.call, .at = item.at, .result = item.null ? std::nullopt : std::optional<HRESULT>(E_FAIL)});
        ExpectFailure(browser, browser.Request(), item.line);
        EXPECT_EQ(Simulated::XmlReferences(), 0) << item.line;
    }
}

TEST(ExtractTable, AnyXmlCallThatFailsLeavesNoReferenceAndNoPartOfTheTable) {
    Browser browser(Table(kHeader + "," + kTwoRows));
    const std::wstring whole = browser.Xml();
    const unsigned calls = Simulated::XmlCalls();
    EXPECT_GT(calls, 20u);
    for (unsigned nth = 1; nth <= calls; ++nth) {
        Simulated::AddXmlFault({.at = nth, .result = E_OUTOFMEMORY});
        const ExtractTableResponse response = Call(browser.Request());
        EXPECT_FALSE(response.success) << nth;
        EXPECT_EQ(response.xml, L"") << nth;
        ASSERT_EQ(Simulated::XmlReferences(), 0) << nth;
    }
    EXPECT_EQ(browser.Xml(), whole);
}

TEST(ExtractTable, AnyReadOfTheTargetThatFailsAnswersNullOrThrowsLeavesNoReference) {
    Browser browser(Table(kHeader + "," + kTwoRows));
    browser.Xml();
    const int before = browser.desktop.TotalCalls();
    browser.Xml();
    const int calls = browser.desktop.TotalCalls() - before;
    LogCapture quiet(L"ERROR");
    enum class Spoil { Fail, Null, Throw };
    for (const Spoil spoil : {Spoil::Fail, Spoil::Null, Spoil::Throw})
        for (int nth = 1; nth <= calls; ++nth) {
            Simulated::Fault fault{.at = static_cast<unsigned>(nth), .times = 1, .raise = spoil == Spoil::Throw, .null = spoil == Spoil::Null};
            if (spoil == Spoil::Fail) fault.result = E_FAIL;
            ExtractTableRequest request = browser.Request();
            browser.desktop.AddFault(fault);
            request.sessionId = L"one";
            try {
                TryCall(request);
            } catch (const Simulated::ServerFailure&) {
                // What a server throws is the caller's to see.
            }
            browser.desktop.ClearFaults();
            CacheCleaner::Release();
            ASSERT_EQ(browser.desktop.OutstandingReferences(), 0) << nth << ' ' << int(spoil);
            ASSERT_EQ(Simulated::XmlReferences(), 0) << nth << ' ' << int(spoil);
        }
}

TEST(ExtractTable, RowsThatChangeUnderTheReaderAreReadAsTheyAreFound) {
    Browser browser(Table(R"({"role": "row", "children": [{"id": "first", "role": "cell", "name": "1"}]},
        {"id": "second", "role": "row", "children": [{"role": "cell", "name": "2"}]},
        {"id": "third", "role": "row", "children": [{"id": "last", "role": "cell", "name": "3"}]})"));
    auto grown = std::make_shared<Simulated::Element>();
    grown->role = ROLE_SYSTEM_CELL;
    grown->name = L"grown";
    browser.desktop.AddFault("first", {.call = "get_accName", .times = 1,
                                       .actions = {{.kind = Simulated::Action::Kind::Remove, .target = "second"},
                                                   {.kind = Simulated::Action::Kind::Insert, .target = "third", .element = grown}}});
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Column-0", L"1"}}) + XmlRow({{L"Column-0", L"3"}, {L"Column-1", L"grown"}})));
}

TEST(ExtractTable, ATableThatGoesWhileItIsReadAnswersWhatWasRead) {
    Browser browser(Table(kTwoRows + R"(,{"role": "row", "children": [{"id": "end", "role": "cell", "name": "5"}, {"role": "cell", "name": "6"}]})"));
    browser.desktop.AddFault("end", {.call = "get_accRole", .actions = {{.kind = Simulated::Action::Kind::DestroyWindow, .target = "main"}}});
    const ExtractTableResponse response = Call(browser.Request());
    EXPECT_TRUE(response.success);
    // What goes while it is asked gives neither its cell nor the ones after it.
    EXPECT_EQ(response.xml, Extract(XmlRow({{L"Column-0", L"1"}, {L"Column-1", L"2"}}) + XmlRow({{L"Column-0", L"3"}, {L"Column-1", L"4"}})));
}

TEST(ExtractTable, ATableThatIsItsOwnCellEnds) {
    Browser browser(Table(R"({"role": "row", "children": [{"role": "cell", "name": "1"}, {"element": "table"}]}, {"element": "table"})"));
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Column-0", L"1"}})));
}

TEST(ExtractTable, ACellThatHoldsItsOwnTableEnds) {
    Browser browser(Table(R"({"role": "row", "children": [{"role": "cell", "name": "1", "children": [{"element": "table"}]}]})"));
    const LogCapture quiet(L"ERROR");
    const std::wstring xml = browser.Xml();
    EXPECT_TRUE(xml.starts_with(L"<extract><row><column name=\"Column-0\">1\r\n1\r\n")) << xml.size();
    EXPECT_LT(xml.size(), 1'000'000u);
    EXPECT_TRUE(quiet.Contains("ParseAccObjectAndGetText: the walk ends below level 100000")) << quiet.Text().substr(0, 1'000);
}

TEST(ExtractTable, ARowThatAlwaysHasOneMoreBelowIsLeftOut) {
    Browser browser(Table(R"({"role": "row", "children": [{"role": "cell", "name": "1"}]}, {"role": "row", "endless": true})"));
    const LogCapture quiet(L"ERROR");
    EXPECT_EQ(browser.Xml(), Extract(XmlRow({{L"Column-0", L"1"}})));
}

TEST(ExtractTable, ARowNameIsTheTextOfItsFirstCellForEveryRequest) {
    Browser browser(Table(R"({"id": "row", "role": "row", "children": [{"role": "cell", "name": "first"}, {"role": "row header", "name": "header\r\nline"}]})"));
    GetElemAttrRequest request;
    request.element = browser.Identify("row");
    request.attributeName = L"rowName";
    const GetElemAttrRequest::Response response = Call(request);
    ASSERT_EQ(response.value.vt, VT_BSTR);
    EXPECT_EQ(std::wstring(response.value.bstrVal), L"header  line");

    const Search::AaSearchResult found(browser.desktop.Element("row"), browser.desktop.Child("row"), browser.desktop.Window("main"));
    Search::AaAttributeAccessPolicy search(found);
    EXPECT_EQ(search.GetValue(L"rowName"), L"header  line");
}

}  // namespace
}  // namespace Zorvex::Testing
