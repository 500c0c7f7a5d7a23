#include <gtest/gtest.h>

#include "RuntimeCore/Selectors/ValueMatcher/StringFuzzyMatcher.h"
#include "RuntimeCore/Selectors/ValueMatcher/StringNormalMatcher.h"
#include "RuntimeCore/Selectors/ValueMatcher/StringRegexMatcher.h"
#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::LogCapture;

TEST(StringMatchers, KindsAreThoseOfTheirTypes) {
    EXPECT_EQ(1u, StringNormalMatcher().GetKind());
    EXPECT_EQ(2u, StringRegexMatcher().GetKind());
    EXPECT_EQ(3u, StringFuzzyMatcher().GetKind());
}

TEST(StringMatchers, NoneKnowsNumbers) {
    LogCapture log;
    const StringValue value(L"1");
    EXPECT_FALSE(StringNormalMatcher().Matches(&value, std::int64_t{1}, nullptr));
    EXPECT_FALSE(StringRegexMatcher().Matches(&value, std::int64_t{1}, nullptr));
    EXPECT_FALSE(StringFuzzyMatcher().Matches(&value, std::int64_t{1}, nullptr));
    EXPECT_EQ(3u, log.Count("Value Matcher not implemented for int64_t values"));
}

// ---- Normal ----

TEST(StringNormalMatcher, ScoresOneOrNothing) {
    ScoreStatistics stats;
    StringNormalMatcher matcher;
    const StringValue value(L"Doc*.txt");
    EXPECT_TRUE(matcher.Matches(&value, L"Document.txt", &stats));
    EXPECT_TRUE(matcher.Matches(&value, CString(L"Doc.txt"), &stats));
    EXPECT_TRUE(matcher.Matches(&value, CComVariant(L"Doc1.txt"), &stats));
    EXPECT_FALSE(matcher.Matches(&value, L"doc.txt", &stats));
    EXPECT_EQ(4u, stats.count);
    EXPECT_EQ(3.0, stats.sum);
    EXPECT_EQ(0.0, stats.min);
}

TEST(StringNormalMatcher, HonoursTheCaseFlag) {
    const StringValue value(L"DOC*", 1, 1.0, true, false);
    EXPECT_TRUE(StringNormalMatcher().Matches(&value, L"doc.txt", nullptr));
}

TEST(StringNormalMatcher, ALevelOfNothingAcceptsAMismatch) {
    const StringValue value(L"a", 1, 0.0);
    EXPECT_TRUE(StringNormalMatcher().Matches(&value, L"b", nullptr));
    EXPECT_TRUE(StringNormalMatcher().Matches(&value, CComVariant(1), nullptr));
}

TEST(StringNormalMatcher, AVariantThatIsNoTextScoresNothing) {
    ScoreStatistics stats;
    const StringValue value(L"*");
    EXPECT_FALSE(StringNormalMatcher().Matches(&value, CComVariant(1), &stats));
    EXPECT_EQ(1u, stats.count);
    EXPECT_EQ(0.0, stats.sum);
}

TEST(StringNormalMatcher, ANullTextIsEmpty) {
    const StringValue value(L"");
    CComVariant null(L"");
    ::SysFreeString(null.bstrVal);
    null.bstrVal = nullptr;
    EXPECT_TRUE(StringNormalMatcher().Matches(&value, null, nullptr));
    EXPECT_TRUE(StringNormalMatcher().Matches(&value, static_cast<const wchar_t*>(nullptr), nullptr));
}

TEST(StringNormalMatcher, WithoutAValueLogsAndLeavesTheStatistics) {
    LogCapture log;
    ScoreStatistics stats;
    EXPECT_FALSE(StringNormalMatcher().Matches(nullptr, L"x", &stats));
    EXPECT_FALSE(StringNormalMatcher().Matches(nullptr, CComVariant(1), &stats));
    EXPECT_EQ(0u, stats.count);
    EXPECT_EQ(2u, log.Count("Expectation not met: attrValue != nullptr | attrValue parameter is null"));
    EXPECT_EQ('E', log.Lines().at(0).at(0));
}

TEST(StringNormalMatcher, SeesNothingBehindAnEmbeddedNul) {
    const StringValue value(L"ab");
    EXPECT_TRUE(StringNormalMatcher().Matches(&value, CString(std::wstring_view(L"ab\0cd", 5)), nullptr));
}

// ---- Regular expressions ----

TEST(StringRegexMatcher, MatchesTheWholeTargetAlone) {
    StringRegexMatcher matcher;
    const StringValue part(L"abc", 2), whole(L".*abc.*", 2);
    EXPECT_FALSE(matcher.Matches(&part, L"xabcx", nullptr));
    EXPECT_TRUE(matcher.Matches(&part, L"abc", nullptr));
    EXPECT_TRUE(matcher.Matches(&whole, L"xabcx", nullptr));
}

TEST(StringRegexMatcher, CompilesOncePerPatternAndCaseFlag) {
    LogCapture log;
    StringRegexMatcher matcher;
    StringValue value(L"a+", 2);
    EXPECT_TRUE(matcher.Matches(&value, L"aaa", nullptr));
    EXPECT_TRUE(matcher.Matches(&value, L"a", nullptr));
    constexpr auto kCompiled = "StringRegexMatcher::StringRegexMatcher Successfully compiled regex pattern \"a+\", caseSensitive=";
    EXPECT_EQ(1u, log.Count(kCompiled));
    EXPECT_TRUE(log.Contains("Successfully compiled regex pattern \"a+\", caseSensitive=1"));
    value.SetCaseSensitive(false);
    EXPECT_TRUE(matcher.Matches(&value, L"AAA", nullptr));
    EXPECT_TRUE(log.Contains("Successfully compiled regex pattern \"a+\", caseSensitive=0"));
    EXPECT_EQ(2u, log.Count(kCompiled));
    EXPECT_EQ('V', log.Lines().at(0).at(0));
}

TEST(StringRegexMatcher, LogsEachResultVerbosely) {
    LogCapture log;
    StringRegexMatcher matcher;
    const StringValue value(L"a+", 2);
    matcher.Matches(&value, L"aa", nullptr);
    matcher.Matches(&value, L"ab", nullptr);
    EXPECT_EQ(1u, log.Count("StringRegexMatcher::Matches RegEx match result for target \"aa\" = true"));
    EXPECT_EQ(1u, log.Count("StringRegexMatcher::Matches RegEx match result for target \"ab\" = false"));
}

TEST(StringRegexMatcher, ABadPatternIsLoggedOnceAndMatchesNothing) {
    LogCapture log;
    StringRegexMatcher matcher;
    ScoreStatistics stats;
    const StringValue value(L"(", 2);
    EXPECT_FALSE(matcher.Matches(&value, L"(", &stats));
    EXPECT_FALSE(matcher.Matches(&value, L"", &stats));
    EXPECT_EQ(2u, stats.count);
    EXPECT_EQ(1u, log.Count("StringRegexMatcher::StringRegexMatcher Cannot compile regex pattern \"(\", error_code=5, error_msg=\""));
    EXPECT_EQ(2u, log.Count("= false"));
    const StringValue good(L"x", 2);
    EXPECT_TRUE(matcher.Matches(&good, L"x", &stats));
}

TEST(StringRegexMatcher, ABadPatternForgetsTheGoodOneBefore) {
    LogCapture log;
    StringRegexMatcher matcher;
    const StringValue good(L"x", 2), bad(L"x)", 2);
    EXPECT_TRUE(matcher.Matches(&good, L"x", nullptr));
    EXPECT_FALSE(matcher.Matches(&bad, L"x", nullptr));
}

TEST(StringRegexMatcher, NestedParenthesesBeyondReasonAreABadPattern) {
    LogCapture log;
    StringRegexMatcher matcher;
    const StringValue value(CString(30000, L'(') + L"a" + CString(30000, L')'), 2);
    EXPECT_FALSE(matcher.Matches(&value, L"a", nullptr));
    EXPECT_EQ(1u, log.Count("StringRegexMatcher::StringRegexMatcher Cannot compile regex pattern"));
}

TEST(StringRegexMatcher, AMatchThatTakesTooLongIsLoggedAndCountsAsNone) {
    LogCapture log;
    StringRegexMatcher matcher;
    ScoreStatistics stats;
    const StringValue value(L"(a+)+\\1b", 2);
    EXPECT_FALSE(matcher.Matches(&value, CString(60, L'a'), &stats));
    EXPECT_EQ(1u, stats.count);
    EXPECT_EQ(1u, log.Count("StringRegexMatcher::Matches Error while testing regex match on target \"aaaa"));
    EXPECT_EQ(1u, log.Count("error_code=11, error_msg=\"match takes too many steps\""));
    EXPECT_EQ(1u, log.Count("StringRegexMatcher::Matches RegEx match result for target"));
}

TEST(StringRegexMatcher, ALevelOfNothingAcceptsAMismatch) {
    const StringValue value(L"a", 2, 0.0);
    EXPECT_TRUE(StringRegexMatcher().Matches(&value, L"b", nullptr));
}

TEST(StringRegexMatcher, AVariantThatIsNoTextLeavesTheStatisticsAlone) {
    ScoreStatistics stats;
    const StringValue value(L".*", 2, 0.0);
    StringRegexMatcher matcher;
    EXPECT_FALSE(matcher.Matches(&value, CComVariant(1), &stats));
    EXPECT_EQ(0u, stats.count);
    EXPECT_TRUE(matcher.Matches(&value, CComVariant(L"x"), &stats));
    EXPECT_EQ(1.0, stats.sum);
}

TEST(StringRegexMatcher, WithoutAValueLogsAndAnswersFalse) {
    LogCapture log;
    ScoreStatistics stats;
    EXPECT_FALSE(StringRegexMatcher().Matches(nullptr, L"x", &stats));
    EXPECT_EQ(0u, stats.count);
    EXPECT_EQ(1u, log.Count("Expectation not met: attrValue != nullptr | attrValue parameter is null"));
}

// A fresh matcher takes the empty pattern without case for one that it holds already, and holds no program.
TEST(StringRegexMatcher, TheEmptyPatternWithoutCaseMatchesNothingInAFreshMatcher) {
    StringRegexMatcher matcher;
    const StringValue insensitive(L"", 2, 1.0, true, false), sensitive(L"", 2);
    EXPECT_FALSE(matcher.Matches(&insensitive, L"", nullptr));
    EXPECT_TRUE(matcher.Matches(&sensitive, L"", nullptr));
    EXPECT_TRUE(matcher.Matches(&insensitive, L"", nullptr));
}

// ---- Fuzzy ----

TEST(StringFuzzyMatcher, ComparesTheRatioWithTheLevel) {
    StringFuzzyMatcher matcher;
    ScoreStatistics stats;
    StringValue value(L"Hello", 3, 0.999);
    EXPECT_TRUE(matcher.Matches(&value, L"hello", &stats));
    EXPECT_EQ(0.999, stats.sum);
    value.SetFuzzyLevel(1.0);
    EXPECT_FALSE(matcher.Matches(&value, CString(L"hello"), &stats));
    EXPECT_TRUE(matcher.Matches(&value, CComVariant(L"Hello"), &stats));
    EXPECT_EQ(1.0, stats.max);
    EXPECT_EQ(3u, stats.count);
}

TEST(StringFuzzyMatcher, TheCaseFlagHasNoEffect) {
    ScoreStatistics sensitive, insensitive;
    const StringValue a(L"Hello", 3, 0.5, true, true), b(L"Hello", 3, 0.5, true, false);
    StringFuzzyMatcher().Matches(&a, L"HELLO you", &sensitive);
    StringFuzzyMatcher().Matches(&b, L"HELLO you", &insensitive);
    EXPECT_EQ(sensitive.sum, insensitive.sum);
}

TEST(StringFuzzyMatcher, WhatItKeepsBetweenCallsChangesNoAnswer) {
    StringFuzzyMatcher matcher;
    for (const wchar_t* pattern : {L"New Document", L"", L"new document", L"x", L"New Document", L"..."}) {
        for (const wchar_t* target : {L"document new", L"", L"NEW", L"x", L"...", L"New Document"}) {
            ScoreStatistics kept, fresh;
            const StringValue value(pattern, 3);
            matcher.Matches(&value, target, &kept);
            StringFuzzyMatcher().Matches(&value, target, &fresh);
            EXPECT_EQ(fresh.sum, kept.sum);
        }
    }
}

TEST(StringFuzzyMatcher, AVariantThatIsNoTextIsLoggedAndScoresNothing) {
    LogCapture log;
    ScoreStatistics stats;
    const StringValue value(L"1", 3, 0.0);
    EXPECT_FALSE(StringFuzzyMatcher().Matches(&value, CComVariant(1), &stats));
    EXPECT_FALSE(StringFuzzyMatcher().Matches(&value, CComVariant(1), nullptr));
    EXPECT_EQ(1u, stats.count);
    EXPECT_EQ(0.0, stats.sum);
    EXPECT_EQ(2u, log.Count("Parameter ComVariant is not BSTR"));
    EXPECT_EQ('E', log.Lines().at(0).at(0));
}

TEST(StringFuzzyMatcher, WithoutAValueTheLevelIsOne) {
    LogCapture log;
    EXPECT_FALSE(StringFuzzyMatcher().Matches(nullptr, L"x", nullptr));
    EXPECT_EQ(1u, log.Count("AttrVal parameter is null. Failed to retrieve minimum fuzzy level, default to 1.000000"));
}

}  // namespace
}  // namespace Zorvex
