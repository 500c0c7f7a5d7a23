#include <gtest/gtest.h>

#include "RuntimeCore/Selectors/ValueMatcher/MatcherTools.h"
#include "RuntimeCore/Selectors/ValueMatcher/NumberFuzzyMatcher.h"
#include "RuntimeCore/Selectors/ValueMatcher/NumberNormalMatcher.h"
#include "RuntimeCore/Selectors/ValueMatcher/VariantNormalMatcher.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/VariantValue.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::LogCapture;

constexpr std::int64_t kBeyond = 4294967296;

CComVariant Boolean(VARIANT_BOOL value) {
    CComVariant variant(false);
    variant.boolVal = value;
    return variant;
}
CComVariant OfType(VARTYPE type) {
    CComVariant variant(7);
    variant.vt = type;
    return variant;
}

template <class Matcher>
bool Matches(std::int64_t wanted, const CComVariant& target) {
    const NumberValue value(wanted);
    ScoreStatistics stats;
    const bool answer = Matcher().Matches(&value, target, &stats);
    EXPECT_EQ(1u, stats.count);
    EXPECT_EQ(answer ? 1.0 : 0.0, stats.sum);
    return answer;
}

template <class Matcher>
class EveryNumberMatcher : public testing::Test {};
using NumberMatchers = testing::Types<NumberNormalMatcher, NumberFuzzyMatcher>;
TYPED_TEST_SUITE(EveryNumberMatcher, NumberMatchers);

TYPED_TEST(EveryNumberMatcher, ComparesNumbersIn64Bits) {
    ScoreStatistics stats;
    const NumberValue value(kBeyond);
    EXPECT_TRUE(TypeParam().Matches(&value, kBeyond, &stats));
    EXPECT_FALSE(TypeParam().Matches(&value, std::int64_t{0}, &stats));
    EXPECT_TRUE(TypeParam().Matches(&value, kBeyond, nullptr));
    EXPECT_EQ(2u, stats.count);
    EXPECT_EQ(1.0, stats.sum);
}

TYPED_TEST(EveryNumberMatcher, ComparesVariantsByTheirType) {
    EXPECT_TRUE(Matches<TypeParam>(-3, CComVariant(-3)));
    EXPECT_FALSE(Matches<TypeParam>(3, CComVariant(-3)));
    EXPECT_TRUE(Matches<TypeParam>(12, CComVariant(L" +12px")));
    EXPECT_TRUE(Matches<TypeParam>(-12, CComVariant(L"-12")));
    EXPECT_TRUE(Matches<TypeParam>(0, CComVariant(L"none")));
    EXPECT_FALSE(Matches<TypeParam>(12, CComVariant(L"1 2")));
    EXPECT_TRUE(Matches<TypeParam>(5, Boolean(VARIANT_TRUE)));
    EXPECT_TRUE(Matches<TypeParam>(0, Boolean(VARIANT_FALSE)));
    EXPECT_FALSE(Matches<TypeParam>(1, Boolean(VARIANT_FALSE)));
    EXPECT_TRUE(Matches<TypeParam>(kBeyond, Boolean(VARIANT_TRUE)));
}

TYPED_TEST(EveryNumberMatcher, OnlyTheOneTrueIsTrue) {
    EXPECT_TRUE(Matches<TypeParam>(0, Boolean(1)));
    EXPECT_FALSE(Matches<TypeParam>(1, Boolean(1)));
}

TYPED_TEST(EveryNumberMatcher, ALevelOfNothingAcceptsAMismatch) {
    const NumberValue value(1, 1, 0.0);
    EXPECT_TRUE(TypeParam().Matches(&value, std::int64_t{2}, nullptr));
    EXPECT_TRUE(TypeParam().Matches(&value, CComVariant(2), nullptr));
}

TYPED_TEST(EveryNumberMatcher, ALevelAboveOneAcceptsNothing) {
    const NumberValue value(1, 1, 1.5);
    EXPECT_FALSE(TypeParam().Matches(&value, std::int64_t{1}, nullptr));
}

TEST(NumberNormalMatcher, LooksAtTheLow32BitsForVariants) {
    EXPECT_TRUE(Matches<NumberNormalMatcher>(kBeyond, CComVariant(0)));
    EXPECT_TRUE(Matches<NumberNormalMatcher>(kBeyond + 7, CComVariant(L"7")));
    EXPECT_TRUE(Matches<NumberNormalMatcher>(4294967295, CComVariant(-1)));
}

TEST(NumberFuzzyMatcher, WidensVariantsTo64Bits) {
    EXPECT_FALSE(Matches<NumberFuzzyMatcher>(kBeyond, CComVariant(0)));
    EXPECT_FALSE(Matches<NumberFuzzyMatcher>(kBeyond + 7, CComVariant(L"7")));
    EXPECT_FALSE(Matches<NumberFuzzyMatcher>(4294967295, CComVariant(-1)));
    EXPECT_TRUE(Matches<NumberFuzzyMatcher>(-1, CComVariant(-1)));
}

TEST(NumberNormalMatcher, AnotherTypeOfVariantScoresNothing) {
    EXPECT_FALSE(Matches<NumberNormalMatcher>(7, OfType(VT_UI4)));
    EXPECT_FALSE(Matches<NumberNormalMatcher>(0, CComVariant()));
    const NumberValue lenient(7, 1, 0.0);
    ScoreStatistics stats;
    EXPECT_TRUE(NumberNormalMatcher().Matches(&lenient, OfType(VT_UI4), &stats));
    EXPECT_EQ(1u, stats.count);
}

TEST(NumberFuzzyMatcher, AnotherTypeOfVariantLeavesTheStatisticsAlone) {
    const NumberValue lenient(7, 3, 0.0);
    ScoreStatistics stats;
    EXPECT_FALSE(NumberFuzzyMatcher().Matches(&lenient, OfType(VT_UI4), &stats));
    EXPECT_FALSE(NumberFuzzyMatcher().Matches(&lenient, CComVariant(), &stats));
    EXPECT_EQ(0u, stats.count);
}

TEST(NumberNormalMatcher, WithoutAValueLogsAndAnswersFalse) {
    LogCapture log;
    ScoreStatistics stats;
    EXPECT_FALSE(NumberNormalMatcher().Matches(nullptr, std::int64_t{0}, &stats));
    EXPECT_FALSE(NumberNormalMatcher().Matches(nullptr, CComVariant(0), &stats));
    EXPECT_EQ(0u, stats.count);
    EXPECT_EQ(2u, log.Count("Expectation not met: attrValue != nullptr | attrValue parameter is null"));
}

TEST(NumberFuzzyMatcher, WithoutAValueTheLevelIsOne) {
    LogCapture log;
    ScoreStatistics stats;
    EXPECT_FALSE(NumberFuzzyMatcher().Matches(nullptr, std::int64_t{5}, &stats));
    EXPECT_FALSE(NumberFuzzyMatcher().Matches(nullptr, CComVariant(5), &stats));
    EXPECT_EQ(2u, log.Count("AttrVal parameter is null. Failed to retrieve minimum fuzzy level, default to 1.000000"));
    EXPECT_EQ('E', log.Lines().at(0).at(0));
}

TEST(NumberMatchers, KindsAreThoseOfTheirTypes) {
    EXPECT_EQ(1u, NumberNormalMatcher().GetKind());
    EXPECT_EQ(3u, NumberFuzzyMatcher().GetKind());
    EXPECT_EQ(1u, VariantNormalMatcher().GetKind());
}

TEST(MatcherTools, ParseDecimalReadsAsTheCLibraryDoes) {
    using MatcherTools::ParseDecimal;
    EXPECT_EQ(0, ParseDecimal(L""));
    EXPECT_EQ(0, ParseDecimal(L"-"));
    EXPECT_EQ(0, ParseDecimal(L"+-5"));
    EXPECT_EQ(5, ParseDecimal(L"\t\n 5"));
    EXPECT_EQ(2147483647, ParseDecimal(L"2147483647"));
    EXPECT_EQ(2147483647, ParseDecimal(L"2147483648"));
    EXPECT_EQ(INT32_MIN, ParseDecimal(L"-2147483648"));
    EXPECT_EQ(INT32_MIN, ParseDecimal(L"-99999999999999999999999999"));
    EXPECT_EQ(2147483647, ParseDecimal(L"99999999999999999999999999"));
}

// ---- Variants ----

TEST(VariantNormalMatcher, ComparesAsAWhole) {
    const VariantValue value(CComVariant(7));
    ScoreStatistics stats;
    EXPECT_TRUE(VariantNormalMatcher().Matches(&value, CComVariant(7), &stats));
    EXPECT_FALSE(VariantNormalMatcher().Matches(&value, CComVariant(8), &stats));
    EXPECT_FALSE(VariantNormalMatcher().Matches(&value, CComVariant(L"7"), &stats));
    EXPECT_EQ(3u, stats.count);
    EXPECT_EQ(1.0, stats.sum);
}

TEST(VariantNormalMatcher, ALevelOfNothingStillRefusesAMismatch) {
    const VariantValue value(CComVariant(7), 1, 0.0);
    EXPECT_FALSE(VariantNormalMatcher().Matches(&value, CComVariant(8), nullptr));
}

TEST(VariantNormalMatcher, ALevelAboveOneStillAcceptsAMatch) {
    const VariantValue value(CComVariant(7), 1, 2.0);
    EXPECT_TRUE(VariantNormalMatcher().Matches(&value, CComVariant(7), nullptr));
}

TEST(VariantNormalMatcher, KnowsNoOtherKindOfTarget) {
    LogCapture log;
    const VariantValue value(CComVariant(7));
    EXPECT_FALSE(VariantNormalMatcher().Matches(&value, std::int64_t{7}, nullptr));
    EXPECT_FALSE(VariantNormalMatcher().Matches(&value, L"7", nullptr));
    EXPECT_FALSE(VariantNormalMatcher().Matches(&value, CString(L"7"), nullptr));
    EXPECT_EQ(3u, log.Count("Value Matcher not implemented for "));
}

TEST(VariantNormalMatcher, WithoutAValueIsNoMatch) {
    LogCapture log;
    EXPECT_FALSE(VariantNormalMatcher().Matches(nullptr, CComVariant(7), nullptr));
}

// What only a matcher that doesn't override the overload for variants would say.
class BareMatcher final : public IValueMatcher {
public:
    std::uint32_t GetKind() const override { return 9; }
};

TEST(IValueMatcher, TheBaseLogsAndRefusesEachKindOfTarget) {
    LogCapture log;
    BareMatcher matcher;
    EXPECT_FALSE(matcher.Matches(nullptr, CComVariant(), nullptr));
    EXPECT_FALSE(matcher.Matches(nullptr, std::int64_t{0}, nullptr));
    EXPECT_FALSE(matcher.Matches(nullptr, L"", nullptr));
    EXPECT_FALSE(matcher.Matches(nullptr, CString(), nullptr));
    EXPECT_EQ(1u, log.Count("Value Matcher not implemented for CComVariant values"));
    EXPECT_EQ(1u, log.Count("Value Matcher not implemented for int64_t values"));
    EXPECT_EQ(1u, log.Count("Value Matcher not implemented for TCHAR* values"));
    EXPECT_EQ(1u, log.Count("Value Matcher not implemented for CString values"));
}

}  // namespace
}  // namespace Zorvex
