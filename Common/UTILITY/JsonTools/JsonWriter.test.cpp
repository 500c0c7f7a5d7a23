#include <gtest/gtest.h>

#include <limits>

#include "Common/include/JsonSerializer/JsonText.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

std::string Compact(const Value& value) {
    std::string text;
    EXPECT_TRUE(WriteJson(value, JsonLayout::Compact, text));
    return text;
}

TEST(JsonWriter, CompactFormHasNoWhiteSpace) {
    Value inner(Value::Type::List);
    inner.Append(Value(1));
    inner.Append(Value());
    inner.Append(Value(false));
    Value root(Value::Type::Dictionary);
    root.Set("b", std::move(inner));
    root.Set("a", Value("x"));
    EXPECT_EQ(Compact(root), R"({"a":"x","b":[1,null,false]})");
}

TEST(JsonWriter, PrettyFormIndentsByThreeBlanksWithCarriageReturnAndLineFeed) {
    const auto root = ReadJson(R"({"a":[1,{"b":true}],"c":{},"d":[]})");
    std::string text;
    ASSERT_TRUE(WriteJson(*root, JsonLayout::Pretty, text));
    EXPECT_EQ(text,
              "{\r\n"
              "   \"a\": [\r\n"
              "      1,\r\n"
              "      {\r\n"
              "         \"b\": true\r\n"
              "      }\r\n"
              "   ],\r\n"
              "   \"c\": {},\r\n"
              "   \"d\": []\r\n"
              "}\r\n");
}

TEST(JsonWriter, PrettyScalarEndsWithALineEnd) {
    std::string text;
    ASSERT_TRUE(WriteJson(Value(1), JsonLayout::Pretty, text));
    EXPECT_EQ(text, "1\r\n");
}

TEST(JsonWriter, DoubleWithoutFractionStaysADouble) {
    EXPECT_EQ(Compact(Value(3.0)), "3.0");
    EXPECT_EQ(Compact(Value(-0.0)), "-0.0");
    EXPECT_EQ(Compact(Value(0.1)), "0.1");
    EXPECT_EQ(ReadJson(Compact(Value(1e30)))->GetType(), Value::Type::Double);
    EXPECT_EQ(*ReadJson(Compact(Value(1e30)))->AsDouble(), 1e30);
    EXPECT_EQ(Compact(Value(3)), "3");
}

TEST(JsonWriter, LessThanSignIsEscapedAndReadBackUnchanged) {
    EXPECT_EQ(Compact(Value("a<b>")), "\"a\\u003Cb>\"");
    EXPECT_EQ(*ReadJson(Compact(Value("a<b>")))->AsString(), "a<b>");
}

TEST(JsonWriter, EscapesAreTheUsualLettersAndUpperCaseHexadecimal) {
    EXPECT_EQ(Compact(Value("\b\t\n\f\r\"\\/")), R"("\b\t\n\f\r\"\\/")");
    EXPECT_EQ(Compact(Value(std::string_view("\0\x1F\x7F", 3))), "\"\\u0000\\u001F\x7F\"");
    EXPECT_EQ(Compact(Value("\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xAA\xC3\xA4")), "\"\\u2028\\u2029\xE2\x80\xAA\xC3\xA4\"");
}

TEST(JsonWriter, WhatJsonCannotExpressFails) {
    std::string text = "old";
    EXPECT_FALSE(WriteJson(Value(Value::BinaryData{1}), JsonLayout::Compact, text));
    EXPECT_EQ(text, "");
    EXPECT_FALSE(WriteJson(Value(std::numeric_limits<double>::infinity()), JsonLayout::Compact, text));
    EXPECT_FALSE(WriteJson(Value(std::numeric_limits<double>::quiet_NaN()), JsonLayout::Compact, text));
    EXPECT_FALSE(WriteJson(Value("\xC3("), JsonLayout::Compact, text));
    Value badKey(Value::Type::Dictionary);
    badKey.Set("\xFF", Value(1));
    EXPECT_FALSE(WriteJson(badKey, JsonLayout::Compact, text));
}

Value Nested(int depth) {
    Value value(Value::Type::List);
    for (int i = 1; i < depth; ++i) {
        Value outer(Value::Type::List);
        outer.Append(std::move(value));
        value = std::move(outer);
    }
    return value;
}

TEST(JsonWriter, NestingThatTheReaderRefusesIsNotWritten) {
    std::string text;
    EXPECT_TRUE(WriteJson(Nested(199), JsonLayout::Compact, text));
    EXPECT_NE(ReadJson(text), nullptr);
    EXPECT_FALSE(WriteJson(Nested(200), JsonLayout::Compact, text));
}

TEST(ConvertJsonToString, GivesPrettyWideText) {
    std::wstring text;
    ASSERT_TRUE(ConvertJsonToString(*ReadJson("[\"\xF0\x9F\x98\x80\"]"), text));
    const std::wstring expected = std::wstring(L"[\r\n   \"") + static_cast<wchar_t>(0xD83D) + static_cast<wchar_t>(0xDE00) + L"\"\r\n]\r\n";
    EXPECT_EQ(text, expected);
}

TEST(ConvertJsonToString, WriterFailureIsLoggedAsAnError) {
    Testing::LogCapture log;
    std::wstring text = L"old";
    EXPECT_FALSE(ConvertJsonToString(Value(Value::BinaryData{}), text));
    EXPECT_EQ(text, L"");
    ASSERT_EQ(log.Lines().size(), 1u) << log.Text();
    EXPECT_EQ(log.Lines()[0], "E [ConvertJsonToString] ConvertJsonToString: failed to convert JSON policy to string");
}

TEST(JsonValue, DeepCopyIsEqualAndApart) {
    const auto value = ReadJson(R"({"a":[1,2.5,"x",null,true,{"b":{}}]})");
    auto copy = value->DeepCopy();
    EXPECT_TRUE(*copy == *value);
    copy->Set("a", Value(1));
    EXPECT_FALSE(*copy == *value);
    EXPECT_EQ(value->Find("a")->AsList()->size(), 6u);
    const Value binary(Value::BinaryData{1, 2});
    EXPECT_TRUE(*binary.DeepCopy() == binary);
}

TEST(JsonValue, ValueOfAMillionLevelsIsCopiedComparedAndDestroyed) {
    const Value deep = Nested(1'000'000);
    const auto copy = deep.DeepCopy();
    EXPECT_TRUE(*copy == deep);
}

TEST(JsonValue, TypesHaveTheNumbersThatMessagesShow) {
    EXPECT_EQ(Value().TypeNumber(), 0);
    EXPECT_EQ(Value(true).TypeNumber(), 1);
    EXPECT_EQ(Value(1).TypeNumber(), 2);
    EXPECT_EQ(Value(1.0).TypeNumber(), 3);
    EXPECT_EQ(Value("").TypeNumber(), 4);
    EXPECT_EQ(Value(Value::BinaryData{}).TypeNumber(), 5);
    EXPECT_EQ(Value(Value::Type::Dictionary).TypeNumber(), 6);
    EXPECT_EQ(Value(Value::Type::List).TypeNumber(), 7);
}

TEST(JsonValue, ElementCanReplaceTheListThatHoldsIt) {
    Value value(Value::Type::List);
    value.Append(Value("inner"));
    value = std::move((*value.AsList())[0]);
    EXPECT_EQ(*value.AsString(), "inner");
}

TEST(JsonValue, IntegerAndDoubleOfTheSameNumberDiffer) { EXPECT_FALSE(Value(1) == Value(1.0)); }

TEST(JsonValue, ElementsOfAListStaySmall) { EXPECT_LE(sizeof(Value), 16u); }

}  // namespace
}  // namespace Zorvex
