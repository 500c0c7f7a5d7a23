#include "RuntimeCore/TextCapture/TreeLevel.h"

#include <gtest/gtest.h>

namespace Zorvex {
namespace {

TEST(TreeLevel, NumberIsReadAsFarAsItGoes) {
    EXPECT_EQ(ParseTreeLevel(L"3"), 3);
    EXPECT_EQ(ParseTreeLevel(L" \t12 of 20"), 12);
    EXPECT_EQ(ParseTreeLevel(L"+7"), 7);
    EXPECT_EQ(ParseTreeLevel(L"-7"), -7);
    EXPECT_EQ(ParseTreeLevel(L"007"), 7);
}

TEST(TreeLevel, TextWithoutANumberIsLevelZero) {
    for (const wchar_t* text : {L"", L" ", L"-", L"+", L"x1", L"--1", L"\x0663"}) EXPECT_EQ(ParseTreeLevel(text), 0);
}

TEST(TreeLevel, NumberThatDoesNotFitIsTheNearestOne) {
    EXPECT_EQ(ParseTreeLevel(L"2147483647"), 0x7FFFFFFF);
    EXPECT_EQ(ParseTreeLevel(L"2147483648"), 0x7FFFFFFF);
    EXPECT_EQ(ParseTreeLevel(std::wstring(1000, L'9')), 0x7FFFFFFF);
    EXPECT_EQ(ParseTreeLevel(L"-99999999999999999999"), static_cast<LONG>(0x80000000));
}

TEST(TreeLevel, IndentationHasATabALevelUpToABound) {
    EXPECT_EQ(TreeIndentation(-1), L"");
    EXPECT_EQ(TreeIndentation(0), L"");
    EXPECT_EQ(TreeIndentation(2), L"\t\t");
    EXPECT_EQ(TreeIndentation(1024).size(), 1024u);
    EXPECT_EQ(TreeIndentation(0x7FFFFFFF).size(), 1024u);
}

}  // namespace
}  // namespace Zorvex
