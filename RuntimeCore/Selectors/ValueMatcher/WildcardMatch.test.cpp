#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {
namespace {

// The method in its plainest form: copies in lower case, a table for each segment, one unit at a time.
std::ptrdiff_t PlainFind(const std::wstring& segment, const std::wstring& text) {
    std::vector<std::int32_t> table(segment.size());
    table[0] = -1;
    for (std::int32_t i = 0, k = -1; i < static_cast<std::int32_t>(segment.size()) - 1;) {
        if (k == -1 || segment[i] == segment[k] || segment[i] == L'?' || segment[k] == L'?') table[++i] = ++k;
        else k = table[k];
    }
    std::int32_t j = 0;
    std::size_t i = 0;
    while (i < text.size() && j < static_cast<std::int32_t>(segment.size())) {
        if (j == -1 || segment[j] == L'?' || segment[j] == text[i]) ++i, ++j;
        else j = table[j];
    }
    return j == static_cast<std::int32_t>(segment.size()) ? static_cast<std::ptrdiff_t>(i) : -1;
}

bool PlainMatch(std::wstring pattern, std::wstring text, bool caseSensitive) {
    if (pattern.empty()) return text.empty();
    if (pattern == std::wstring(pattern.size(), L'*')) return true;
    if (text.empty()) return false;
    if (!caseSensitive) {
        for (wchar_t& unit : pattern) unit = ToLower(unit);
        for (wchar_t& unit : text) unit = ToLower(unit);
    }
    while (!pattern.empty() && !text.empty() && pattern[0] != L'*') {
        if (pattern[0] != L'?' && pattern[0] != text[0]) return false;
        pattern.erase(0, 1);
        text.erase(0, 1);
    }
    while (!pattern.empty() && !text.empty() && pattern.back() != L'*') {
        if (pattern.back() != L'?' && pattern.back() != text.back()) return false;
        pattern.pop_back();
        text.pop_back();
    }
    if (pattern.empty()) return text.empty();
    if (pattern.front() != L'*' || pattern.back() != L'*') return false;
    for (;;) {
        while (!pattern.empty() && pattern[0] == L'*') pattern.erase(0, 1);
        if (pattern.empty()) return true;
        const std::wstring segment = pattern.substr(0, pattern.find(L'*'));
        const std::ptrdiff_t end = PlainFind(segment, text);
        if (end < 0) return false;
        pattern.erase(0, segment.size());
        text.erase(0, static_cast<std::size_t>(end));
    }
}

// What wildcards mean.
bool TrueMatch(std::wstring_view pattern, std::wstring_view text) {
    if (pattern.empty()) return text.empty();
    if (pattern[0] == L'*') return TrueMatch(pattern.substr(1), text) || (!text.empty() && TrueMatch(pattern, text.substr(1)));
    return !text.empty() && (pattern[0] == L'?' || pattern[0] == text[0]) && TrueMatch(pattern.substr(1), text.substr(1));
}

TEST(WildcardMatch, SegmentsAreFoundInTheirOrder) {
    EXPECT_TRUE(WildcardMatch(L"a*b*c", L"aXbYbZc", true));
    EXPECT_FALSE(WildcardMatch(L"a*b*c", L"acb", true));
    EXPECT_TRUE(WildcardMatch(L"*ab*cd*", L"xxabyycdzz", true));
    EXPECT_FALSE(WildcardMatch(L"*cd*ab*", L"xxabyycdzz", true));
    EXPECT_FALSE(WildcardMatch(L"*ab*ab*", L"xaby", true));
}

TEST(WildcardMatch, EmptyTextFitsNothingButStars) {
    EXPECT_FALSE(WildcardMatch(L"?", L"", true));
    EXPECT_TRUE(WildcardMatch(L"*", L"", true));
    EXPECT_TRUE(WildcardMatch(L"***", L"", true));
    EXPECT_TRUE(WildcardMatch(L"", L"", true));
    EXPECT_FALSE(WildcardMatch(L"*?*", L"", true));
    EXPECT_FALSE(WildcardMatch(L"a", L"", true));
}

TEST(WildcardMatch, TheEmptyPatternFitsTheEmptyTextAlone) { EXPECT_FALSE(WildcardMatch(L"", L"a", true)); }

TEST(WildcardMatch, HeadAndTailThatMeetWithTextLeftOverFail) {
    EXPECT_FALSE(WildcardMatch(L"ab", L"abab", true));
    EXPECT_FALSE(WildcardMatch(L"abab", L"ab", true));
    EXPECT_TRUE(WildcardMatch(L"ab*ab", L"abab", true));
    EXPECT_FALSE(WildcardMatch(L"aba*aba", L"ababa", true));
}

TEST(WildcardMatch, QuestionMarkStandsForExactlyOneUnit) {
    EXPECT_TRUE(WildcardMatch(L"a?c", L"abc", true));
    EXPECT_FALSE(WildcardMatch(L"a?c", L"ac", true));
    EXPECT_TRUE(WildcardMatch(L"?*?", L"ab", true));
    EXPECT_FALSE(WildcardMatch(L"?*?", L"a", true));
    EXPECT_TRUE(WildcardMatch(L"*b?d*", L"abcde", true));
}

TEST(WildcardMatch, CaseIsFoldedInEveryPart) {
    EXPECT_FALSE(WildcardMatch(L"A*b*C", L"a.B.c", true));
    EXPECT_TRUE(WildcardMatch(L"A*b*C", L"a.B.c", false));
    EXPECT_TRUE(WildcardMatch(L"*\u00c4PFEL*", L"drei \u00e4pfel und", false));
    EXPECT_TRUE(WildcardMatch(L"\u041f*\u0422", L"\u043f\u0440\u0438\u0432\u0435\u0442", false));
}

// The table takes ? for equal to anything, so the search jumps over the occurrence at 1.
TEST(WildcardMatch, SomeOccurrencesOfSegmentsWithQuestionMarksAreMissed) {
    bool missed = false;
    for (int bits = 0; bits < 1 << 10 && !missed; ++bits) {
        std::wstring text;
        for (int i = 0; i < 10; ++i) text += bits >> i & 1 ? L'b' : L'a';
        missed = TrueMatch(L"*a?ba*", text) != WildcardMatch(L"*a?ba*", text, true);
    }
    for (int bits = 0; bits < 1 << 10 && !missed; ++bits) {
        std::wstring text;
        for (int i = 0; i < 10; ++i) text += bits >> i & 1 ? L'b' : L'a';
        missed = TrueMatch(L"*?aab*", text) != WildcardMatch(L"*?aab*", text, true);
    }
    EXPECT_TRUE(missed);
}

TEST(WildcardMatch, EqualsThePlainMethodForEveryShortPatternAndText) {
    const std::wstring units = L"ab?*";
    for (int patternLength = 0; patternLength <= 5; ++patternLength) {
        for (int p = 0; p < 1 << (2 * patternLength); ++p) {
            std::wstring pattern;
            for (int i = 0; i < patternLength; ++i) pattern += units[p >> (2 * i) & 3];
            for (int textLength = 0; textLength <= 6; ++textLength) {
                for (int t = 0; t < 1 << textLength; ++t) {
                    std::wstring text;
                    for (int i = 0; i < textLength; ++i) text += t >> i & 1 ? L'b' : L'a';
                    const bool expected = PlainMatch(pattern, text, true);
                    ASSERT_EQ(expected, WildcardMatch(pattern, text, true));
                    if (pattern.find(L'?') == std::wstring::npos) {
                        ASSERT_EQ(expected, TrueMatch(pattern, text));
                    }
                }
            }
        }
    }
}

TEST(WildcardMatch, EqualsThePlainMethodAtRandom) {
    std::mt19937 random(7);
    for (int round = 0; round < 30000; ++round) {
        const auto make = [&random](std::wstring_view units, unsigned most) {
            std::wstring made;
            for (unsigned length = random() % (most + 1); length > 0; --length) made += units[random() % units.size()];
            return made;
        };
        const std::wstring pattern = L"*" + make(round % 2 ? L"aAb?" : L"aab?*", 12) + L"*" + make(L"aB?*", 4);
        const std::wstring text = make(L"aaabAB", 40);
        for (const bool caseSensitive : {false, true})
            ASSERT_EQ(PlainMatch(pattern, text, caseSensitive), WildcardMatch(pattern, text, caseSensitive));
    }
}

TEST(WildcardMatch, LongSegmentsEqualThePlainMethod) {
    std::mt19937 random(8);
    for (int round = 0; round < 100; ++round) {
        std::wstring text;
        for (int i = 0; i < 2000; ++i) text += random() % 40 ? L'a' : L'b';
        std::wstring segment = text.substr(random() % 1000, 65 + random() % 500);
        if (round % 2) segment[random() % segment.size()] = L'?';
        if (round % 3) segment[random() % segment.size()] = L'b';
        ASSERT_EQ(PlainMatch(L"*" + segment + L"*", text, true), WildcardMatch(L"*" + segment + L"*", text, true));
    }
}

TEST(WildcardMatch, TakesLinearTimeWhereOthersBacktrack) {
    const std::wstring text(100000, L'a');
    std::wstring pattern = L"*";
    for (int i = 0; i < 30; ++i) pattern += L"aaaaaaaa*";
    EXPECT_FALSE(WildcardMatch(pattern + L"b*", text, true));
    EXPECT_FALSE(WildcardMatch(L"*" + std::wstring(50000, L'a') + L"b*", text, true));
}

TEST(LowerCase, FoldsEveryScriptTheSameOnEverySystem) {
    EXPECT_EQ(L'a', ToLower(L'A'));
    EXPECT_EQ(L'[', ToLower(L'['));
    EXPECT_EQ(L'\u00e9', ToLower(L'\u00c9'));
    EXPECT_EQ(L'\u00d7', ToLower(L'\u00d7'));
    EXPECT_EQ(L'\u00ff', ToLower(L'\u0178'));
    EXPECT_EQ(L'\u03b1', ToLower(L'\u0391'));
    EXPECT_EQ(L'\u0436', ToLower(L'\u0416'));
    EXPECT_EQ(L'\u4e2d', ToLower(L'\u4e2d'));
    EXPECT_EQ(wchar_t{0xD83D}, ToLower(wchar_t{0xD83D}));
    EXPECT_EQ(L'\uff41', ToLower(L'\uff21'));
}

TEST(LowerCase, KnowsSpacesAndLetters) {
    for (const wchar_t unit : std::wstring(L" \t\n\v\f\r\u0085\u00a0\u2003\u2028\u202f\u3000")) EXPECT_TRUE(IsSpace(unit));
    for (const wchar_t unit : std::wstring(L"a0_\u200b\b\u000e")) EXPECT_FALSE(IsSpace(unit));
    for (const wchar_t unit : std::wstring(L"azAZ\u00e9\u0416\u4e2d\uac00\u05d0")) EXPECT_TRUE(IsLetter(unit));
    for (const wchar_t unit : std::wstring(L"@[`{0_ \u00d7\u2013")) EXPECT_FALSE(IsLetter(unit));
    EXPECT_TRUE(IsUpperCase(L'\u0416'));
    EXPECT_TRUE(IsLowerCase(L'\u0436'));
    EXPECT_FALSE(IsLowerCase(L'\u4e2d'));
}

}  // namespace
}  // namespace Zorvex
