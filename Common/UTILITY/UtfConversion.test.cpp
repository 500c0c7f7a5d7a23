#include "Common/include/UtfConversion.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

const std::wstring c_smile = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
const std::wstring c_halfCharacter(1, static_cast<wchar_t>(0xD83D));

TEST(UtfConversion, EmptyTextConvertsToEmptyTextWithoutALine) {
    Testing::LogCapture log;
    std::string narrow = "old";
    std::wstring wide = L"old";
    EXPECT_TRUE(Utf16ToUtf8(L"", narrow));
    EXPECT_TRUE(Utf8ToUtf16("", wide));
    EXPECT_EQ(narrow, "");
    EXPECT_EQ(wide, L"");
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(UtfConversion, SurrogatePairsAreOneCharacter) {
    std::string narrow;
    std::wstring wide;
    EXPECT_TRUE(Utf16ToUtf8(c_smile, narrow));
    EXPECT_EQ(narrow, "\xF0\x9F\x98\x80");
    EXPECT_TRUE(Utf8ToUtf16(narrow, wide));
    EXPECT_EQ(wide, c_smile);
}

TEST(UtfConversion, EmbeddedNulIsKept) {
    std::string narrow;
    EXPECT_TRUE(Utf16ToUtf8(std::wstring(L"a\0b", 3), narrow));
    EXPECT_EQ(narrow, std::string("a\0b", 3));
}

TEST(UtfConversion, UnpairedSurrogateFailsWithItsLineAndAnEmptyText) {
    Testing::LogCapture log;
    std::string narrow = "old";
    EXPECT_FALSE(Utf16ToUtf8(L"ab" + c_halfCharacter, narrow));
    EXPECT_EQ(narrow, "");
    EXPECT_TRUE(log.Contains("UTF16_UTF8Size(ab\xEF\xBF\xBD) failed with last err 1113")) << log.Text();
    EXPECT_TRUE(log.Lines().at(0).starts_with("E "));
}

TEST(UtfConversion, BrokenUtf8FailsWithItsLineAndAnEmptyText) {
    Testing::LogCapture log;
    std::wstring wide = L"old";
    EXPECT_FALSE(Utf8ToUtf16("ab\xC3", wide));
    EXPECT_EQ(wide, L"");
    EXPECT_TRUE(log.Contains("UTF8_UTF16Size(ab\xC3) failed with last err 1113")) << log.Text();
}

TEST(UtfConversion, NullSourcesNameTheOtherType) {
    Testing::LogCapture log;
    std::string narrow = "old";
    std::wstring wide = L"old";
    EXPECT_FALSE(Utf16ToUtf8(static_cast<const wchar_t*>(nullptr), narrow));
    EXPECT_EQ(log.Count("Atempt to convert nullptr char*"), 1u);
    EXPECT_FALSE(Utf8ToUtf16(static_cast<const char*>(nullptr), wide));
    EXPECT_EQ(log.Count("Atempt to convert nullptr wchar_t*"), 1u);
    EXPECT_EQ(narrow, "");
    EXPECT_EQ(wide, L"");
}

TEST(UtfConversion, TolerantFormsReplaceWhatIsNotValidAndLogNothing) {
    Testing::LogCapture log;
    EXPECT_EQ(NarrowText(L"a" + c_halfCharacter + L"b"), "a\xEF\xBF\xBD" "b");
    EXPECT_EQ(WideText("a\xFF" "b"), L"a\xFFFD" L"b");
    EXPECT_EQ(WideText(NarrowText(c_smile)), c_smile);
    EXPECT_EQ(NarrowText({}), "");
    EXPECT_EQ(WideText({}), L"");
    EXPECT_TRUE(log.Lines().empty());
}

TEST(UtfConversion, RandomValidTextMakesTheRoundTrip) {
    std::mt19937 random(1);
    for (int round = 0; round < 2'000; ++round) {
        std::wstring text;
        for (unsigned i = random() % 20; i > 0; --i) {
            unsigned point = random() % (random() % 2 ? 0x110000 : 0x900);
            if (point >= 0xD800 && point <= 0xDFFF) point = 'x';
            if (point >= 0x10000) {
                text += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
                text += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
            } else {
                text += static_cast<wchar_t>(point);
            }
        }
        std::string narrow;
        std::wstring again;
        ASSERT_TRUE(Utf16ToUtf8(text, narrow));
        ASSERT_TRUE(Utf8ToUtf16(narrow, again));
        ASSERT_EQ(again, text);
    }
}

}  // namespace
}  // namespace Zorvex
