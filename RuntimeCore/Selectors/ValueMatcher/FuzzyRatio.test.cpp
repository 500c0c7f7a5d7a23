#include "RuntimeCore/Selectors/ValueMatcher/FuzzyRatio.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {
namespace {

// ---- The slow way, one step after the other ----

std::wstring TrimSpace(std::wstring text) {
    while (!text.empty() && IsSpace(text.back())) text.pop_back();
    while (!text.empty() && IsSpace(text.front())) text.erase(0, 1);
    return text;
}

std::wstring SlowNormalize(const std::wstring& text) {
    std::wstring result = text;
    for (wchar_t& unit : result)
        if (unit != 0 && std::wstring_view(L"~!@#$%^&*()`;':\",./<>?").find(unit) != std::wstring_view::npos) unit = L' ';
    result = TrimSpace(result);
    for (wchar_t& unit : result) unit = ToLower(unit);
    return result;
}

std::wstring SlowSortWords(const std::wstring& text) {
    std::vector<std::wstring> words;
    std::wstring word;
    for (const wchar_t unit : text + L" ") {
        if (unit != L' ') {
            word += unit;
            continue;
        }
        if (!word.empty()) words.push_back(word);
        word.clear();
    }
    std::sort(words.begin(), words.end());
    std::wstring result;
    for (const std::wstring& each : words) result += each + L" ";
    while (!result.empty() && IsSpace(result.back())) result.pop_back();
    return result;
}

int SlowDistance(std::wstring_view x, std::wstring_view y) {
    while (!x.empty() && !y.empty() && x.front() == y.front()) x.remove_prefix(1), y.remove_prefix(1);
    while (!x.empty() && !y.empty() && x.back() == y.back()) x.remove_suffix(1), y.remove_suffix(1);
    if (x.empty() || y.empty()) return static_cast<int>(x.size() + y.size());
    if (x.size() > y.size()) std::swap(x, y);
    if (x.size() == 1) return static_cast<int>(y.size()) + 1 - (y.find(x[0]) == std::wstring_view::npos ? 0 : 2);
    std::vector<int> row(y.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        int diagonal = row[0]++;
        for (std::size_t j = 0; j < y.size(); ++j) {
            const int above = row[j + 1];
            row[j + 1] = std::min({above + 1, row[j] + 1, diagonal + (x[i] == y[j] ? 0 : 2)});
            diagonal = above;
        }
    }
    return row.back();
}

double SlowShare(const std::wstring& x, const std::wstring& y) {
    const int total = static_cast<int>(x.size() + y.size());
    const int distance = SlowDistance(x, y);
    if (total == 0) return 1.0;
    if (distance == total) return 0.0;
    return static_cast<double>(total - distance) / total;
}

double SlowRatio(const std::wstring& a, const std::wstring& b) {
    if (a == b) return 1.0;
    const std::wstring x = SlowNormalize(a), y = SlowNormalize(b);
    const double first = SlowShare(x, y) * 0.999;
    const double second = SlowShare(SlowSortWords(x), SlowSortWords(y)) * 0.95;
    return first >= second ? first : second;
}

std::wstring RandomText(std::mt19937& random, std::wstring_view units, std::size_t most) {
    std::wstring text;
    for (std::size_t length = random() % (most + 1); length > 0; --length) text += units[random() % units.size()];
    return text;
}

// ---- The told cases ----

TEST(FuzzyRatio, EqualTextsAloneReachOne) {
    EXPECT_EQ(1.0, FuzzyRatio(L"", L""));
    EXPECT_EQ(1.0, FuzzyRatio(L"Hello", L"Hello"));
    EXPECT_EQ(0.999, FuzzyRatio(L"Hello", L"hello"));
}

TEST(FuzzyRatio, TextsOfPunctuationAloneAreEmpty) {
    EXPECT_EQ(0.999, FuzzyRatio(L"...", L""));
    EXPECT_EQ(0.0, FuzzyRatio(L"...", L"a"));
    EXPECT_EQ(0.0, FuzzyRatio(L"abc", L"xyz"));
}

TEST(FuzzyRatio, WordsInAnotherOrderReachNinetyFive) {
    EXPECT_EQ(1.0 * 0.95, FuzzyRatio(L"New Document", L"document new"));
    EXPECT_EQ(0.95, FuzzyRatio(L"b,  a; c", L"C A B"));
}

TEST(FuzzyRatio, ADifferenceOfOneUnitCostsItsShare) {
    EXPECT_EQ(8.0 / 9.0 * 0.999, FuzzyRatio(L"abcd", L"abcde"));
    EXPECT_EQ(6.0 / 8.0 * 0.999, FuzzyRatio(L"abcd", L"abXd"));
}

TEST(FuzzyRatio, CaseIsFoldedInEveryScript) { EXPECT_EQ(0.999, FuzzyRatio(L"\u00c4PFEL", L"\u00e4pfel")); }

TEST(NormalizedText, TurnsPunctuationIntoBlanksAndTrims) {
    NormalizedText text;
    EXPECT_EQ(L"", text.Make(L""));
    EXPECT_EQ(L"", text.Make(L" .\t\u00a0!"));
    EXPECT_EQ(L"a b", text.Make(L"...A.B?"));
    EXPECT_EQ(L"a  b", text.Make(L"a~!b"));
    EXPECT_EQ(L"a-b_c[d]{e}|f\\g+h=i", text.Make(L"A-B_C[D]{E}|F\\G+H=I"));
    EXPECT_EQ(L"a" + std::wstring(22, L' ') + L"b", text.Make(L"A~!@#$%^&*()`;':\",./<>?B"));
    EXPECT_EQ(L"a\tb", text.Make(L"\na\tb\n"));
}

TEST(SortedWords, OrdersWordsByTheirUnits) {
    SortedWords words;
    EXPECT_EQ(L"", words.Make(L""));
    EXPECT_EQ(L"a b", words.Make(L"b a"));
    EXPECT_EQ(L"a b", words.Make(L"a   b"));
    EXPECT_EQ(L"1 a aa b", words.Make(L"b aa a 1"));
    EXPECT_EQ(L"a a", words.Make(L"a a"));
    EXPECT_EQ(L"a b", words.Make(L" a b "));
}

TEST(SortedWords, OnlyBlanksPartWordsButAllWhiteSpaceIsCutAtTheEnd) {
    SortedWords words;
    EXPECT_EQ(L"a z", words.Make(L"z\t a"));
    EXPECT_EQ(L"a\tc b", words.Make(L"b a\tc"));
    EXPECT_EQ(L"a b", words.Make(L"a b\t"));
}

// ---- Against the slow way ----

TEST(FuzzyRatio, EqualsTheSlowWayForEveryPairOfShortTexts) {
    std::vector<std::wstring> texts{L""};
    const std::wstring units = L"aB .";
    for (std::size_t first = 0, length = 1; length <= 4; ++length) {
        const std::size_t last = texts.size();
        for (; first < last; ++first)
            for (const wchar_t unit : units) texts.push_back(texts[first] + unit);
    }
    for (const std::wstring& a : texts) {
        FuzzyPattern pattern;
        for (const std::wstring& b : texts) ASSERT_EQ(SlowRatio(a, b), pattern.Ratio(a, b));
    }
}

TEST(FuzzyRatio, EqualsTheSlowWayAtRandomToTheLastBit) {
    std::mt19937 random(3);
    FuzzyPattern kept;
    for (int round = 0; round < 6000; ++round) {
        const std::size_t most = round % 3 == 0 ? 20 : round % 3 == 1 ? 80 : 300;
        const std::wstring_view units = round % 2 ? L"abcdeABC  .,-\u00c4\u00e4\u0416\u4e2d\t" : L"ab c";
        const std::wstring a = RandomText(random, units, most);
        std::wstring b = RandomText(random, units, most);
        if (round % 5 == 0) {
            // A near relative.
            b = a;
            for (int change = 0; change < 3 && !b.empty(); ++change) b[random() % b.size()] = units[random() % units.size()];
        }
        const double expected = SlowRatio(a, b);
        ASSERT_EQ(expected, FuzzyRatio(a, b));
        ASSERT_EQ(expected, kept.Ratio(a, b));
        ASSERT_EQ(SlowRatio(a, a + L"x"), kept.Ratio(a, a + L"x"));
    }
}

TEST(CommonSubsequence, EqualsTheSlowDistanceAroundTheSizesOfWords) {
    std::mt19937 random(4);
    CommonSubsequence common;
    for (const std::size_t length : {1u, 2u, 63u, 64u, 65u, 127u, 128u, 129u, 255u, 256u, 257u, 511u, 513u, 1000u}) {
        for (int round = 0; round < 12; ++round) {
            std::wstring a, b;
            for (std::size_t i = 0; i < length; ++i) a += static_cast<wchar_t>(round % 2 ? L'a' + random() % 3 : 0x3F0 + random() % 40);
            const std::size_t otherLength = round % 3 ? length : random() % 300;
            for (std::size_t i = 0; i < otherLength; ++i) b += static_cast<wchar_t>(round % 2 ? L'a' + random() % 4 : 0x3F0 + random() % 50);
            common.Assign(a);
            const auto distance = static_cast<std::size_t>(SlowDistance(a, b));
            ASSERT_EQ((a.size() + b.size() - distance) / 2, common.Length(b)) << length;
            ASSERT_EQ(a.size(), common.Length(a));
        }
    }
}

TEST(CommonSubsequence, LongTextsGoThroughInParts) {
    std::mt19937 random(5);
    for (const std::size_t length : {4095u, 4096u, 4097u, 8200u}) {
        std::wstring a, b;
        for (std::size_t i = 0; i < length; ++i) a += static_cast<wchar_t>(L'a' + random() % 4);
        for (std::size_t i = 0; i < 700; ++i) b += static_cast<wchar_t>(L'a' + random() % 5);
        CommonSubsequence common;
        common.Assign(a);
        const auto distance = static_cast<std::size_t>(SlowDistance(a, b));
        EXPECT_EQ((a.size() + b.size() - distance) / 2, common.Length(b));
        EXPECT_EQ((a.size() + b.size() - distance) / 2, common.Length(b));
    }
}

TEST(CommonSubsequence, ALongTextOfDifferentUnitsTakesLittleMemory) {
    std::wstring text;
    for (int i = 0; i < 60000; ++i) text += static_cast<wchar_t>(0x100 + i);
    CommonSubsequence common;
    common.Assign(text);
    EXPECT_EQ(500u, common.Length(text.substr(30000, 500)));
}

TEST(CommonSubsequence, TwoAtOnceAnswerAsOneAfterTheOther) {
    std::mt19937 random(6);
    for (int round = 0; round < 500; ++round) {
        const std::size_t most = round % 4 ? 64 : 90;
        CommonSubsequence a, b;
        a.Assign(RandomText(random, L"abcd\u0416", most));
        b.Assign(RandomText(random, L"abc\u0417", most));
        const std::wstring otherA = RandomText(random, L"abc\u0416", 100), otherB = RandomText(random, L"bcd\u0417", 100);
        const auto both = CommonSubsequence::LengthOfEach(a, otherA, b, otherB);
        EXPECT_EQ(a.Length(otherA), both.a);
        EXPECT_EQ(b.Length(otherB), both.b);
    }
}

}  // namespace
}  // namespace Zorvex
