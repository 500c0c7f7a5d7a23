#include "Controller/Host/BoundedText.h"

#include <gtest/gtest.h>

#include <string>

using Zorvex::Host::BoundedText;

TEST(BoundedText, PutsPiecesAfterEachOther) {
    wchar_t room[32];
    BoundedText(room, 32).Add(L"wide ").Add("narrow ").AddHex(0xBEEF, 8);
    EXPECT_EQ(std::wstring(room), L"wide narrow 0000BEEF");
}

TEST(BoundedText, CutsWhatDoesNotFitAndAlwaysEnds) {
    wchar_t room[5] = {L'x', L'x', L'x', L'x', L'x'};
    BoundedText(room, 4).Add(L"123456").Add("7").AddHex(0xF, 1);
    EXPECT_EQ(std::wstring(room), L"123");
    EXPECT_EQ(room[4], L'x');
}

TEST(BoundedText, ARoomOfOneHoldsOnlyTheEnd) {
    wchar_t room[1] = {L'x'};
    BoundedText text(room, 1);
    text.Add(L"abc");
    EXPECT_EQ(room[0], L'\0');
    EXPECT_EQ(text.Room(), 1u);
}

TEST(BoundedText, BytesAboveAsciiBecomeOneUnitEach) {
    wchar_t room[4];
    BoundedText(room, 4).Add("\xE4");
    EXPECT_EQ(room[0], static_cast<wchar_t>(0xE4));
    EXPECT_EQ(room[1], L'\0');
}
