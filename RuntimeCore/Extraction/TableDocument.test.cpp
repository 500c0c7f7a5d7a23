// On Windows these ask the system's own XML library.
#include "RuntimeCore/Extraction/TableDocument.h"

#include <gtest/gtest.h>

#include "Common/UTILITY/XmlDocument.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::LogCapture;

class TableDocumentTest : public ::testing::Test {
protected:
    TableDocumentTest() { ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~TableDocumentTest() override { ::CoUninitialize(); }

    // Without what lies between the elements: some XML libraries indent.
    static std::wstring OnOneLine(TableDocument& document) {
        CComBSTR xml;
        EXPECT_EQ(document.GetXml(xml), S_OK);
        std::wstring text = xml.ToString();
        if (text.starts_with(L"<?xml")) text.erase(0, text.find(L"?>") + 2);
        std::wstring result;
        for (std::size_t i = 0; i < text.size();) {
            if (result.empty() || result.back() == L'>') {
                const std::size_t next = text.find_first_not_of(L" \t\r\n", i);
                if (next == text.npos) break;
                if (text[next] == L'<') i = next;
            }
            result += text[i++];
        }
        return result;
    }

    LogCapture log;
};

TEST_F(TableDocumentTest, CellsStandInRowsInTheirOrder) {
    TableDocument document;
    ASSERT_EQ(document.Create(), S_OK);
    for (const wchar_t* text : {L"a", L"b"}) {
        EXPECT_EQ(document.BeginRow(), S_OK);
        EXPECT_EQ(document.BeginColumn(), S_OK);
        EXPECT_EQ(document.PutText(text), S_OK);
        EXPECT_EQ(document.EndColumn(L"Column-0"), S_OK);
        EXPECT_EQ(document.BeginColumn(), S_OK);
        EXPECT_EQ(document.PutText(L"1 < 2 & \"3\""), S_OK);
        EXPECT_EQ(document.EndColumn(L"\"<Name>\" & more"), S_OK);
        EXPECT_EQ(document.EndRow(), S_OK);
    }
    const std::wstring second = L"<column name=\"&quot;&lt;Name&gt;&quot; &amp; more\">1 &lt; 2 &amp; \"3\"</column></row>";
    EXPECT_EQ(OnOneLine(document), L"<extract><row><column name=\"Column-0\">a</column>" + second + L"<row><column name=\"Column-0\">b</column>" +
                                       second + L"</extract>");
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST_F(TableDocumentTest, ARowThatIsNotEndedIsLeftOut) {
    TableDocument document;
    ASSERT_EQ(document.Create(), S_OK);
    EXPECT_EQ(document.BeginRow(), S_OK);
    EXPECT_EQ(document.BeginRow(), S_OK);
    EXPECT_EQ(document.BeginColumn(), S_OK);
    EXPECT_EQ(document.PutText(L"x"), S_OK);
    EXPECT_EQ(document.EndColumn(L"n"), S_OK);
    EXPECT_EQ(document.EndRow(), S_OK);
    EXPECT_EQ(document.BeginRow(), S_OK);
    EXPECT_EQ(OnOneLine(document), L"<extract><row><column name=\"n\">x</column></row></extract>");
}

TEST_F(TableDocumentTest, WithoutRowsTheRootStandsAlone) {
    TableDocument document;
    ASSERT_EQ(document.Create(), S_OK);
    const std::wstring text = OnOneLine(document);
    EXPECT_TRUE(text == L"<extract></extract>" || text == L"<extract/>") << CComBSTR(text).Length();
    EXPECT_EQ(GetEmptyExtractXml().View(), L"<extract></extract>");
    EXPECT_EQ(GetEmptyExtractXml().m_str, GetEmptyExtractXml().m_str);
}

TEST_F(TableDocumentTest, WhatXmlCannotHoldIsReplacedInTextsAndNames) {
    TableDocument document;
    ASSERT_EQ(document.Create(), S_OK);
    const std::wstring odd = {L'a', 0, 0x1B, wchar_t(0xD800), wchar_t(0xDC00), wchar_t(0xDC00), wchar_t(0xFFFF), L'z'};
    EXPECT_EQ(document.BeginRow(), S_OK);
    EXPECT_EQ(document.BeginColumn(), S_OK);
    EXPECT_EQ(document.PutText(odd), S_OK);
    EXPECT_EQ(document.EndColumn(odd), S_OK);
    EXPECT_EQ(document.EndRow(), S_OK);
    const std::wstring even = {L'a', wchar_t(0xFFFD), wchar_t(0xFFFD), wchar_t(0xD800), wchar_t(0xDC00), wchar_t(0xFFFD), wchar_t(0xFFFD), L'z'};
    EXPECT_EQ(OnOneLine(document), L"<extract><row><column name=\"" + even + L"\">" + even + L"</column></row></extract>");
}

TEST_F(TableDocumentTest, ADocumentLargerThanAnyTableIsRefused) {
    TableDocument document;
    ASSERT_EQ(document.Create(), S_OK);
    EXPECT_EQ(document.BeginRow(), S_OK);
    const std::wstring text(std::size_t(1) << 24, L'x');
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(document.BeginColumn(), S_OK);
        EXPECT_EQ(document.PutText(text), S_OK);
        EXPECT_EQ(document.EndColumn(L"n"), S_OK);
    }
    EXPECT_EQ(document.BeginColumn(), S_OK);
    EXPECT_EQ(document.PutText(text), E_FAIL);
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"E [HasRoom] Vantrel::ExtractTableImpl: The table is too large"});
}

TEST_F(TableDocumentTest, TheDocumentIsTheOneOfThePublishedId) {
    CComPtr<IXMLDOMDocument> document;
    ASSERT_EQ(N_COM::CreateXMLDocument(document), S_OK);
    ASSERT_TRUE(document);
    CComPtr<IXMLDOMDocument> same;
    EXPECT_EQ(document.QueryInterface(same), S_OK);
    CComPtr<IAccessible> other;
    EXPECT_EQ(document.QueryInterface(other), E_NOINTERFACE);
}

}  // namespace
}  // namespace Zorvex
