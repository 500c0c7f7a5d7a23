#include "Controller/CommandLine/TableXml.h"

#include <gtest/gtest.h>

#include <random>

namespace Zorvex::Controller {
namespace {

constexpr wchar_t kOneLine[] = L"<extract><row><column name=\"A\">1</column><column name=\"B\">2</column></row></extract>";
const Table kTable = {{{{L"A", L"1"}, {L"B", L"2"}}}};

TEST(TableXml, IsReadFromOneLineAndIndentedAlike) {
    EXPECT_EQ(ReadTableXml(kOneLine), kTable);
    EXPECT_EQ(ReadTableXml(L"<?xml version=\"1.0\"?>\r\n<extract>\r\n\t<row>\r\n\t\t<column name=\"A\">1</column>\r\n\t\t<column name=\"B\">2</column>"
                           L"\r\n\t</row>\r\n</extract>\r\n"), kTable);
    EXPECT_EQ(WriteTableXml(kTable), kOneLine);
}

TEST(TableXml, EmptyTablesRowsAndCellsMayBeWrittenEitherWay) {
    EXPECT_EQ(ReadTableXml(L"<extract></extract>"), Table{});
    EXPECT_EQ(ReadTableXml(L"<extract/>"), Table{});
    EXPECT_EQ(ReadTableXml(L"<extract><row/></extract>"), (Table{{{}}}));
    EXPECT_EQ(ReadTableXml(L"<extract><row><column name=\"A\"/><column name=\"\"></column></row></extract>"), (Table{{{{L"A", L""}, {L"", L""}}}}));
}

TEST(TableXml, ReferencesBecomeWhatTheyStandFor) {
    const auto table = ReadTableXml(L"<extract><row><column name=\"&lt;&gt;&amp;&quot;&apos;\">&#65;&#x42;&#x1F600;&#9;</column></row></extract>");
    ASSERT_TRUE(table);
    const std::wstring face = {wchar_t(0xD83D), wchar_t(0xDE00)};
    EXPECT_EQ(table->rows[0][0], (TableCell{L"<>&\"'", L"AB" + face + L"\t"}));
    EXPECT_EQ(ReadTableXml(WriteTableXml(*table)), table);
}

TEST(TableXml, LineEndsAreTheSameHoweverTheyAreWritten) {
    const std::wstring before = L"<extract><row><column name=\"A\">", after = L"</column></row></extract>";
    const auto read = [&](const wchar_t* text) {
        const auto table = ReadTableXml(before + text + after);
        return table ? table->rows.at(0).at(0).text : L"no table";
    };
    for (const wchar_t* text : {L"a\r\nb\n", L"a\nb\n", L"a&#13;\nb&#xD;", L"a\rb\r\n", L"a&#13;\r\nb&#13;\r\n", L"a&#13;&#10;b&#xA;"})
        EXPECT_EQ(read(text), L"a\nb\n") << text;
    for (const wchar_t* text : {L"a\r\n\r\nb", L"a\r\rb", L"a&#13;\r\n&#13;\r\nb", L"a&#13;&#13;b", L"a\r&#10;b", L"a\n&#13;b"})
        EXPECT_EQ(read(text), L"a\n\nb") << text;
    EXPECT_EQ(WriteTableCsv({{{{L"A", read(L"a&#13;\r\nb")}}}}), "A\r\n\"a\nb\"\r\n");
}

TEST(TableXml, AnythingElseIsNoTable) {
    for (const wchar_t* xml : {L"", L"<", L"<extract>", L"<extract><row></extract>", L"<other/>", L"<extract/>x", L"<?xml ", L"<extract>text</extract>",
                               L"<extract><row><column>1</column></row></extract>", L"<extract><row><column name=\"A\">1</row></extract>",
                               L"<extract><row><column name=\"A\">&nothing;</column></row></extract>",
                               L"<extract><row><column name=\"A\">&amp</column></row></extract>",
                               L"<extract><row><column name=\"A\">&#;</column></row></extract>", L"<extract><row><column name=\"A\">&#x;</column></row></extract>",
                               L"<extract><row><column name=\"A\">&#0;</column></row></extract>",
                               L"<extract><row><column name=\"A\">&#1114112;</column></row></extract>",
                               L"<extract><row><column name=\"A\">&#xFFFFFFFF;</column></row></extract>",
                               L"<extract><row><column name=\"A<B\">1</column></row></extract>", L"<extract><row><column name=\"A\">1"})
        EXPECT_FALSE(ReadTableXml(xml)) << std::string(xml, xml + std::char_traits<wchar_t>::length(xml));
}

TEST(TableXml, NoPartOfATableIsATable) {
    const std::wstring whole = kOneLine;
    for (std::size_t length = 0; length < whole.size(); ++length) EXPECT_FALSE(ReadTableXml(whole.substr(0, length))) << length;
}

TEST(TableXml, WhatIsWrittenIsReadAgain) {
    std::mt19937 random(4711);
    const std::wstring units = L"a<>&\"';#\t\n ,=/";
    const auto text = [&] {
        std::wstring result;
        for (unsigned i = random() % 6; i > 0; --i) result += units[random() % units.size()];
        return result;
    };
    for (int round = 0; round < 2'000; ++round) {
        Table table;
        table.rows.resize(random() % 4);
        for (auto& row : table.rows)
            for (unsigned i = random() % 4; i > 0; --i) row.push_back({text(), text()});
        EXPECT_EQ(ReadTableXml(WriteTableXml(table)), table);
    }
}

TEST(TableCsv, RecordsEndWithBothLineEndUnitsAndBeginWithTheNames) { EXPECT_EQ(WriteTableCsv(kTable), "A,B\r\n1,2\r\n"); }

TEST(TableCsv, FieldsWithCommasQuotesOrLineEndsAreQuoted) {
    EXPECT_EQ(WriteTableCsv({{{{L"a,b", L"\"x\""}, {L"c\nd", L" plain "}, {L"", L"\r"}}}}), "\"a,b\",\"c\nd\",\r\n\"\"\"x\"\"\", plain ,\"\r\"\r\n");
}

TEST(TableCsv, ShortRowsAreFilledUpAndTheLongestNamesTheColumns) {
    EXPECT_EQ(WriteTableCsv({{{{L"A", L"1"}}, {{L"A", L"2"}, {L"Column-1", L"3"}}, {}}}), "A,Column-1\r\n1,\r\n2,3\r\n,\r\n");
}

TEST(TableCsv, ColumnsOfTheSameNameStayApart) { EXPECT_EQ(WriteTableCsv({{{{L"A", L"1"}, {L"A", L"2"}}}}), "A,A\r\n1,2\r\n"); }

TEST(TableCsv, ATableWithoutRowsIsEmpty) { EXPECT_EQ(WriteTableCsv({}), ""); }

TEST(TableCsv, IsUtf8) { EXPECT_EQ(WriteTableCsv({{{{L"A", L"\xE9"}}}}), "A\r\n\xC3\xA9\r\n"); }

}  // namespace
}  // namespace Zorvex::Controller
