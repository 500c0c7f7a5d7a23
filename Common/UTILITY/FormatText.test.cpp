#include "Common/include/FormatText.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "Common/include/CComBSTR.h"

namespace Zorvex {
namespace {

TEST(FormatText, IntegersKeepTheirWidthAndSign) {
    EXPECT_EQ(FormatText("%d %i %u", -5, 6, 7u), "-5 6 7");
    EXPECT_EQ(FormatText("%x %X %08X", 255, 255, 255), "ff FF 000000FF");
    EXPECT_EQ(FormatText("%X", static_cast<std::int32_t>(-2147467259)), "80004005");
    EXPECT_EQ(FormatText("%x", static_cast<std::int16_t>(-1)), "ffff");
    EXPECT_EQ(FormatText("%d", 0xFFFFFFFFu), "-1");
    EXPECT_EQ(FormatText("%u", -1), "4294967295");
    EXPECT_EQ(FormatText("%lu %llu %I64d %I32d %zu %hd", 1u, std::uint64_t{1} << 40, std::int64_t{-1} << 40, 3, std::size_t{4}, 5),
              "1 1099511627776 -1099511627776 3 4 5");
    EXPECT_EQ(FormatText("%+d|% d|%-5d|%5d|%05d|%.3d|%#x", 1, 1, 1, 1, 1, 1, 1), "+1| 1|1    |    1|00001|001|0x1");
    enum class Kind : int { Two = 2 };
    EXPECT_EQ(FormatText("%d", Kind::Two), "2");
    EXPECT_EQ(FormatText("%d", true), "1");
}

TEST(FormatText, ReturnCodeOfAFailedCallHasEightDigits) { EXPECT_EQ(FormatText("HRESULT %0X", E_FAIL), "HRESULT 80004005"); }

TEST(FormatText, BothKindsOfTextFitEitherFormat) {
    EXPECT_EQ(FormatText("%s %ls %hs %S", "a", L"b", "c", L"d"), "a b c d");
    EXPECT_EQ(FormatText(L"%s %ls %hs %S", L"a", L"b", "c", "d"), L"a b c d");
    EXPECT_EQ(FormatText("%s", std::wstring(L"\u00e4")), "\xC3\xA4");
    EXPECT_EQ(FormatText(L"%s", "\xC3\xA4"), L"\u00e4");
    EXPECT_EQ(FormatText("%s %s", std::string("x"), std::string_view("y")), "x y");
    EXPECT_EQ(FormatText("%s %s", static_cast<const char*>(nullptr), static_cast<const wchar_t*>(nullptr)), "(null) (null)");
    const CComBSTR text(L"bstr");
    EXPECT_EQ(FormatText("%s", text), "bstr");
}

TEST(FormatText, WidthAndPrecisionOfTexts) {
    EXPECT_EQ(FormatText("[%5s][%-5s][%.2s][%.*s][%*s]", "abc", "abc", "abc", 1, "abc", 4, "abc"), "[  abc][abc  ][ab][a][ abc]");
    EXPECT_EQ(FormatText("[%*s][%.*s][%.s]", -4, "a", -1, "abc", "abc"), "[a   ][abc][]");
    EXPECT_EQ(FormatText("[%*d]", 2'000'000'000, 1).size(), 65'538u);
}

TEST(FormatText, PointersShowAllDigits) {
    const std::string text = FormatText("0x%p", reinterpret_cast<void*>(std::uintptr_t{0xABC}));
    EXPECT_EQ(text, std::string("0x") + std::string(sizeof(void*) * 2 - 3, '0') + "ABC");
    EXPECT_EQ(FormatText("%p", nullptr), std::string(sizeof(void*) * 2, '0'));
}

TEST(FormatText, RealsAndCharacters) {
    EXPECT_EQ(FormatText("%f %.2f %g %e", 1.5, 2.345, 0.1, 1.0), "1.500000 2.35 0.1 1.000000e+00");
    EXPECT_EQ(FormatText("%c%C", 'a', L'b'), "ab");
    EXPECT_EQ(FormatText(L"%c", L'\u00e4'), L"\u00e4");
    EXPECT_EQ(FormatText("%d %f", 2.9, 3), "2 3.000000");
    EXPECT_EQ(FormatText("%s %s %s", 5, 1.5, 7u), "5 1.5 7");
}

TEST(FormatText, WhatHasNoArgumentOrNoMeaningStandsAsItIs) {
    EXPECT_EQ(FormatText("%d %s", 1), "1 %s");
    EXPECT_EQ(FormatText("%y %q%", 1), "%y %q%");
    EXPECT_EQ(FormatText("100%% %", 1), "100% %");
    EXPECT_EQ(FormatText("%5.2", 1), "%5.2");
    EXPECT_EQ(FormatText("plain"), "plain");
    EXPECT_EQ(FormatText("%d", "text"), "text");
    EXPECT_EQ(FormatText("surplus", 1, 2), "surplus");
}

TEST(FormatText, AgreesWithTheLibraryOnRandomIntegerFormats) {
    std::mt19937 random(3);
    for (int round = 0; round < 5'000; ++round) {
        std::string format = "%";
        for (const char flag : {'-', '+', ' ', '#', '0'})
            if (random() % 4 == 0 && !(flag == '#')) format += flag;
        if (random() % 2) format += std::to_string(1 + random() % 12);
        if (random() % 3 == 0) format += "." + std::to_string(random() % 12);
        const char letter = "diuxXo"[random() % 6];
        // Sign flags mean nothing to a conversion without a sign; the library's compiler checks would say so.
        format += letter;
        const int value = static_cast<int>(random());
        char expected[128];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
        std::snprintf(expected, sizeof expected, format.c_str(), value);
#pragma GCC diagnostic pop
        ASSERT_EQ(FormatText(format, value), expected) << format << " " << value;
    }
}

TEST(FormatText, RandomFormatsNeverReadBeyondTheirArguments) {
    std::mt19937 random(5);
    for (int round = 0; round < 20'000; ++round) {
        std::string format;
        for (unsigned i = random() % 12; i > 0; --i) format += "%%%*.0519-+ #dsxplhI64zcfgy"[random() % 27];
        FormatText(format, 1, "two", L"three", 4.0);
        FormatText(std::wstring(format.begin(), format.end()), 1, "two", L"three", 4.0);
    }
}

}  // namespace
}  // namespace Zorvex
