#include "RuntimeCore/Selectors/Values/AttrValue.h"

#include <gtest/gtest.h>

#include "Common/include/Archive.h"
#include "Common/include/ComException.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "RuntimeCore/Selectors/Values/VariantValue.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::LogCapture;

// Values are compared through their interface.
bool Equal(const IAttrValue& a, const IAttrValue& b) { return a == b; }
bool Unequal(const IAttrValue& a, const IAttrValue& b) { return a != b; }

CComVariant Bool(bool value) { return CComVariant(value); }

// A value class that nobody knows.
class StrangeValue final : public AttrValue<CString> {
public:
    AttributeValueKind GetValueKind() const override { return static_cast<AttributeValueKind>(3); }
    CString ToString() const override { return {}; }
    std::shared_ptr<IAttrValue> Clone() const override { return nullptr; }
    void InitializeMatcher() override { m_matcher.reset(); }
};

TEST(AttrValue, DefaultsAreNormalMatchingAtFullLevelEnabledAndCaseSensitive) {
    const StringValue text;
    EXPECT_EQ(L"", text.GetValue());
    EXPECT_EQ(1u, text.GetMatchingType());
    EXPECT_EQ(1.0, text.GetFuzzyLevel());
    EXPECT_TRUE(text.GetEnabled());
    EXPECT_TRUE(text.GetCaseSensitive());
    EXPECT_EQ(nullptr, text.GetMatcher());
    EXPECT_EQ(0, NumberValue().GetValue());
    EXPECT_EQ(VT_EMPTY, VariantValue().GetValue().vt);
}

TEST(AttrValue, KindsAndSerialisationIdsAreFixed) {
    EXPECT_EQ(AttributeValueKind::String, StringValue().GetValueKind());
    EXPECT_EQ(AttributeValueKind::Number, NumberValue().GetValueKind());
    EXPECT_EQ(AttributeValueKind::Variant, VariantValue().GetValueKind());
    EXPECT_EQ(10001u, StrangeValue().GetSerializationId());
    EXPECT_EQ(10002u, StringValue().GetSerializationId());
    EXPECT_EQ(10003u, NumberValue().GetSerializationId());
    EXPECT_EQ(10004u, VariantValue().GetSerializationId());
}

TEST(AttrValue, SettersChangeOneSettingEach) {
    NumberValue value(7);
    value.SetEnabled(false);
    value.SetCaseSensitive(false);
    value.SetMatchingType(77);
    value.SetFuzzyLevel(0.25);
    value.SetValue(8);
    EXPECT_FALSE(value.GetEnabled());
    EXPECT_FALSE(value.GetCaseSensitive());
    EXPECT_EQ(77u, value.GetMatchingType());
    EXPECT_EQ(0.25, value.GetFuzzyLevel());
    EXPECT_EQ(8, value.GetValue());
}

TEST(AttrValue, TravelsAsEnabledCaseTypeLevelAndValue) {
    const StringValue value(L"ab", 2, 0.5, false, true);
    Archive archive;
    value.WriteToArchive(archive);
    const std::uint8_t expected[] = {32, 0, 0, 0, 0, 1, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0,
                                     0, 0xE0, 0x3F, 2, 2, 0, 0, 0, 'a', 0, 'b', 0};
    ASSERT_EQ(sizeof expected, archive.buffer().size());
    for (std::size_t i = 4; i < sizeof expected; ++i) EXPECT_EQ(expected[i], archive.buffer().data()[i]) << i;

    Archive reader(archive.buffer());
    StringValue read(L"old");
    read.ReadFromArchive(reader);
    EXPECT_TRUE(Equal(read, value));
    EXPECT_EQ(L"ab", read.GetValue());
    EXPECT_EQ(0u, reader.remaining());
}

TEST(AttrValue, NumbersAndVariantsTravelToo) {
    Archive archive;
    NumberValue(-5000000000, 3, 0.75, true, false).WriteToArchive(archive);
    VariantValue(CComVariant(42), 4).WriteToArchive(archive);
    Archive reader(archive.buffer());
    NumberValue number;
    VariantValue variant;
    number.ReadFromArchive(reader);
    variant.ReadFromArchive(reader);
    EXPECT_EQ(-5000000000, number.GetValue());
    EXPECT_EQ(3u, number.GetMatchingType());
    EXPECT_FALSE(number.GetCaseSensitive());
    EXPECT_EQ(VT_I4, variant.GetValue().vt);
    EXPECT_EQ(42, variant.GetValue().lVal);
    EXPECT_EQ(4u, variant.GetMatchingType());
}

TEST(AttrValue, ReadingLeavesTheMatcherAlone) {
    StringValue value(L"x");
    value.Matches(L"x", nullptr);
    const IValueMatcher* matcher = value.GetMatcher();
    Archive archive;
    StringValue(L"y").WriteToArchive(archive);
    Archive reader(archive.buffer());
    value.ReadFromArchive(reader);
    EXPECT_EQ(matcher, value.GetMatcher());
    EXPECT_TRUE(value.Matches(L"y", nullptr));
}

TEST(AttrValue, EverySettingCountsInEquality) {
    const StringValue base(L"a", 1, 0.9);
    EXPECT_TRUE(Equal(base, StringValue(L"a", 1, 0.9)));
    EXPECT_FALSE(Unequal(base, StringValue(L"a", 1, 0.9)));
    EXPECT_FALSE(Equal(base, StringValue(L"a", 2, 0.9)));
    EXPECT_FALSE(Equal(base, StringValue(L"a", 1, 0.9, false)));
    EXPECT_FALSE(Equal(base, StringValue(L"a", 1, 0.9, true, false)));
    EXPECT_FALSE(Equal(base, StringValue(L"A", 1, 0.9)));
    EXPECT_TRUE(Unequal(base, StringValue(L"A", 1, 0.9)));
}

TEST(AttrValue, ValuesThatDifferOnlyInEnabledAreNotEqual) {
    StringValue a(L"a"), b(L"a");
    b.SetEnabled(false);
    EXPECT_FALSE(Equal(a, b));
}

TEST(AttrValue, FuzzyLevelsAreEqualUpToTheLastBits) {
    const StringValue value(L"a", 3, 0.9);
    EXPECT_TRUE(Equal(value, StringValue(L"a", 3, 0.9 + 1e-17)));
    EXPECT_FALSE(Equal(value, StringValue(L"a", 3, 0.9000001)));
}

TEST(AttrValue, EqualityOfNumbersAndVariantsLooksAtTheValue) {
    EXPECT_TRUE(Equal(NumberValue(4294967296), NumberValue(4294967296)));
    EXPECT_FALSE(Equal(NumberValue(4294967296), NumberValue(0)));
    EXPECT_TRUE(Equal(VariantValue(CComVariant(L"x")), VariantValue(CComVariant(L"x"))));
    EXPECT_FALSE(Equal(VariantValue(CComVariant(1)), VariantValue(CComVariant(2))));
    EXPECT_FALSE(Equal(VariantValue(CComVariant(1)), VariantValue(Bool(true))));
}

TEST(AttrValue, EqualityWithAnotherKindLogsAndIsFalse) {
    LogCapture log;
    const StringValue text(L"1");
    const NumberValue number(1);
    const IAttrValue& a = text;
    const IAttrValue& b = number;
    EXPECT_FALSE(Equal(a, b));
    EXPECT_EQ(1u, log.Count("Unexpected rhs parameter in AttrValue operator=="));
    EXPECT_EQ('E', log.Lines().at(0).at(0));
    EXPECT_TRUE(Unequal(a, b));
    EXPECT_TRUE(Unequal(b, a));
}

TEST(AttrValue, ToStringGivesTextsAndNumbersButNoVariants) {
    EXPECT_EQ(L"abc", StringValue(L"abc").ToString());
    EXPECT_EQ(L"-9223372036854775808", NumberValue(INT64_MIN).ToString());
    EXPECT_EQ(L"42", NumberValue(42).ToString());
    EXPECT_EQ(L"unexpected", VariantValue(CComVariant(L"abc")).ToString());
    EXPECT_EQ(L"unexpected", VariantValue().ToString());
}

template <class Value>
void ExpectClone(Value original) {
    original.Matches(std::make_shared<StringValue>(L"x"), nullptr);
    const std::shared_ptr<IAttrValue> clone = original.Clone();
    ASSERT_NE(nullptr, clone);
    EXPECT_NE(nullptr, dynamic_cast<Value*>(clone.get()));
    EXPECT_TRUE(Equal(*clone, original));
    EXPECT_EQ(nullptr, dynamic_cast<Value&>(*clone).GetMatcher());
    EXPECT_EQ(1, clone.use_count());
}

TEST(AttrValue, CloneHasTheSameClassSettingsAndValueAndNoMatcher) {
    ExpectClone(StringValue(L"abc", 3, 0.5, false, false));
    ExpectClone(NumberValue(7, 4, 0.25, false, true));
    ExpectClone(VariantValue(CComVariant(L"abc"), 1, 0.75, true, false));
}

TEST(AttrValue, CloneOfAVariantThatCantBeCopiedThrows) {
    CComVariant strange;
    strange.vt = 0x7F;
    VariantValue value(std::move(strange));
    try {
        value.Clone();
        FAIL() << "no exception";
    } catch (const ComException& exception) {
        EXPECT_EQ(exception.Error(), DISP_E_BADVARTYPE);
    }
}

// ---- The matcher ----

std::uint32_t MatcherKind(const auto& value) { return value.GetMatcher()->GetKind(); }

TEST(AttrValue, InitializeMatcherFollowsTheTableOfStrings) {
    for (const auto& [type, kind] : {std::pair{1u, 1u}, {2u, 2u}, {3u, 3u}, {4u, 3u}, {0u, 1u}, {5u, 1u}, {0xFFFFFFFFu, 1u}}) {
        LogCapture log;
        StringValue value(L"x", type);
        value.InitializeMatcher();
        EXPECT_EQ(kind, MatcherKind(value)) << type;
        const bool known = type >= 1 && type <= 4;
        EXPECT_EQ(known ? 0u : 1u,
                  log.Count("String Value doesn't implement the requested matching type => using default matcher"));
    }
}

TEST(AttrValue, InitializeMatcherFollowsTheTableOfNumbers) {
    for (const auto& [type, kind] : {std::pair{1u, 1u}, {2u, 1u}, {3u, 3u}, {4u, 3u}, {0u, 1u}, {5u, 1u}}) {
        LogCapture log;
        NumberValue value(1, type);
        value.InitializeMatcher();
        EXPECT_EQ(kind, MatcherKind(value)) << type;
        const bool known = type >= 1 && type <= 4;
        EXPECT_EQ(known ? 0u : 1u,
                  log.Count("Number Value doesn't implement the requested matching type => using default matcher"));
    }
}

TEST(AttrValue, InitializeMatcherFollowsTheTableOfVariants) {
    for (const std::uint32_t type : {0u, 1u, 2u, 3u, 4u, 5u}) {
        LogCapture log;
        VariantValue value(CComVariant(1), type);
        value.InitializeMatcher();
        EXPECT_EQ(1u, MatcherKind(value)) << type;
        const bool known = type >= 1 && type <= 4;
        EXPECT_EQ(known ? 0u : 1u,
                  log.Count("Variant Value doesn't implement the requested matching type => using default matcher"));
    }
}

TEST(AttrValue, TheMatcherIsKeptWhileItsKindFits) {
    StringValue value(L"a*");
    EXPECT_TRUE(value.Matches(L"abc", nullptr));
    const IValueMatcher* matcher = value.GetMatcher();
    EXPECT_FALSE(value.Matches(CString(L"xbc"), nullptr));
    EXPECT_TRUE(value.Matches(CComVariant(L"abc"), nullptr));
    EXPECT_EQ(matcher, value.GetMatcher());
}

TEST(AttrValue, SetMatchingTypeTakesEffectAtTheNextComparison) {
    StringValue value(L"a.c");
    EXPECT_FALSE(value.Matches(L"abc", nullptr));
    const IValueMatcher* matcher = value.GetMatcher();
    value.SetMatchingType(2);
    EXPECT_EQ(matcher, value.GetMatcher());
    EXPECT_TRUE(value.Matches(L"abc", nullptr));
    EXPECT_EQ(2u, MatcherKind(value));
}

TEST(AttrValue, ATypeWithoutAMatcherOfItsKindBuildsOneOnEachCall) {
    LogCapture log;
    StringValue value(L"a", 0);
    EXPECT_TRUE(value.Matches(L"a", nullptr));
    EXPECT_TRUE(value.Matches(L"a", nullptr));
    EXPECT_EQ(2u, log.Count("String Value doesn't implement the requested matching type => using default matcher"));
}

TEST(AttrValue, MatchesAnotherValueByItsClass) {
    ScoreStatistics stats;
    StringValue text(L"4?");
    EXPECT_TRUE(text.Matches(std::make_shared<StringValue>(L"42"), &stats));
    EXPECT_TRUE(text.Matches(std::make_shared<VariantValue>(CComVariant(L"42")), &stats));
    NumberValue number(42);
    EXPECT_TRUE(number.Matches(std::make_shared<NumberValue>(42), &stats));
    EXPECT_TRUE(number.Matches(std::make_shared<VariantValue>(CComVariant(42)), &stats));
    VariantValue variant(CComVariant(42));
    EXPECT_TRUE(variant.Matches(std::make_shared<VariantValue>(CComVariant(42)), &stats));
    EXPECT_EQ(5u, stats.count);
    EXPECT_EQ(5.0, stats.sum);
}

TEST(AttrValue, MatchesNeitherNullNorAnUnknownClass) {
    LogCapture log;
    ScoreStatistics stats;
    StringValue text(L"*");
    EXPECT_FALSE(text.Matches(std::shared_ptr<IAttrValue>(), &stats));
    EXPECT_FALSE(text.Matches(std::make_shared<StrangeValue>(), &stats));
    EXPECT_EQ(0u, stats.count);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(AttrValue, AKindOfTargetThatTheMatcherDoesNotKnowIsLogged) {
    LogCapture log;
    ScoreStatistics stats;
    StringValue text(L"42", 1, 0.0);
    EXPECT_FALSE(text.Matches(std::int64_t{42}, &stats));
    NumberValue number(42, 1, 0.0);
    EXPECT_FALSE(number.Matches(L"42", &stats));
    EXPECT_FALSE(number.Matches(CString(L"42"), &stats));
    EXPECT_EQ(0u, stats.count);
    EXPECT_EQ(1u, log.Count("Value Matcher not implemented for int64_t values"));
    EXPECT_EQ(1u, log.Count("Value Matcher not implemented for TCHAR* values"));
    EXPECT_EQ(1u, log.Count("Value Matcher not implemented for CString values"));
}

}  // namespace
}  // namespace Zorvex
