#include "Common/include/JsonSerializer/JsonSerializer.h"

#include <gtest/gtest.h>

#include "Common/include/JsonSerializer/JsonText.h"
#include "Common/include/JsonSerializer/PackJsonArray.h"
#include "Common/include/JsonSerializer/UnpackJson.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

const std::wstring c_halfCharacter(1, static_cast<wchar_t>(0xD800));

template <class T>
bool Read(const char* json, T& target) {
    const auto value = ReadJson(json);
    return JsonSerializer<T>().Deserialize(value.get(), target);
}

template <class T>
std::string Written(const T& object) {
    std::unique_ptr<Value> value;
    std::string text;
    if (!JsonSerializer<T>().Serialize(object, value) || !WriteJson(*value, JsonLayout::Compact, text)) return "failed";
    return text;
}

TEST(JsonSerializer, IntegerTakesOnlyType2) {
    int number = 7;
    EXPECT_TRUE(Read("5", number));
    EXPECT_EQ(number, 5);
    for (const char* json : {"5.0", "\"5\"", "null", "true", "[5]"}) EXPECT_FALSE(Read(json, number)) << json;
    EXPECT_FALSE(JsonSerializer<int>().Deserialize(nullptr, number));
    EXPECT_EQ(Written(-3), "-3");
}

TEST(JsonSerializer, NarrowStringTakesOnlyType4) {
    std::string text;
    EXPECT_TRUE(Read("\"a\xC3\xA4\"", text));
    EXPECT_EQ(text, "a\xC3\xA4");
    EXPECT_FALSE(Read("1", text));
    EXPECT_FALSE(JsonSerializer<std::string>().Deserialize(nullptr, text));
    EXPECT_EQ(Written(std::string("x")), "\"x\"");
}

TEST(JsonSerializer, WideStringGoesThroughUtf8) {
    const std::wstring smile = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    EXPECT_EQ(Written(smile), "\"\xF0\x9F\x98\x80\"");
    std::wstring text;
    EXPECT_TRUE(Read("\"\xF0\x9F\x98\x80\"", text));
    EXPECT_EQ(text, smile);
    EXPECT_FALSE(Read("null", text));
    Testing::LogCapture log;
    EXPECT_EQ(Written(c_halfCharacter), "failed");
    EXPECT_TRUE(log.Contains("UTF16_UTF8Size(")) << log.Text();
    const Value broken("\xC3(");
    EXPECT_FALSE(JsonSerializer<std::wstring>().Deserialize(&broken, text));
    EXPECT_TRUE(log.Contains("UTF8_UTF16Size(")) << log.Text();
}

TEST(JsonSerializer, EmptyWideStringConvertsWithoutALine) {
    Testing::LogCapture log;
    EXPECT_EQ(Written(std::wstring()), "\"\"");
    std::wstring text = L"old";
    EXPECT_TRUE(Read("\"\"", text));
    EXPECT_EQ(text, L"");
    EXPECT_EQ(log.Lines().size(), 0u) << log.Text();
}

TEST(JsonSerializer, VectorOfWideStringsClearsTheTargetAndStopsAtTheFirstFailure) {
    std::vector<std::wstring> texts = {L"old"};
    EXPECT_TRUE(Read("[\"a\",\"b\"]", texts));
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"a", L"b"}));
    EXPECT_FALSE(Read("[\"c\",1,\"d\"]", texts));
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"c"}));
    EXPECT_FALSE(Read("\"a\"", texts));
    EXPECT_EQ(Written(std::vector<std::wstring>{L"a", L""}), "[\"a\",\"\"]");
    EXPECT_EQ(Written(std::vector<std::wstring>{}), "[]");
    EXPECT_EQ(Written(std::vector<std::wstring>{L"a", c_halfCharacter}), "failed");
}

TEST(JsonSerializer, PointerFormsReachTheTypedOperations) {
    const JsonSerializer<int> serializer;
    const IJsonSerializerByPointer& byPointer = serializer;
    int number = 4;
    std::unique_ptr<Value> value;
    ASSERT_TRUE(byPointer.Serialize(&number, value));
    number = 0;
    ASSERT_TRUE(byPointer.Deserialize(value.get(), &number));
    EXPECT_EQ(number, 4);
}

// Notes every value that it is offered.
class NotingSerializer : public IJsonSerializer<std::vector<std::string>> {
public:
    bool Serialize(const std::vector<std::string>&, std::unique_ptr<Value>&) const override { return false; }
    bool Deserialize(const Value* value, std::vector<std::string>& seen) const override {
        seen.push_back(value ? std::to_string(value->TypeNumber()) : "null");
        return !value || value->GetType() != Value::Type::Boolean;
    }
};

TEST(UnpackJson, RefusesAListBeforeItLooksAtAnyKey) {
    const NotingSerializer noting;
    std::vector<std::string> seen;
    const UnpackJson unpack = std::move(UnpackJson().Add("a", noting, seen));
    EXPECT_FALSE(unpack.Deserialize(ReadJson("[1]").get()));
    EXPECT_FALSE(unpack.Deserialize(nullptr));
    EXPECT_TRUE(seen.empty());
}

TEST(UnpackJson, OffersAMissingKeyAsNullAndStopsAtTheFirstRefusal) {
    const NotingSerializer noting;
    std::vector<std::string> seen;
    UnpackJson unpack;
    unpack.Add("missing", noting, seen).Add("number", noting, seen).Add("flag", noting, seen).Add("text", noting, seen);
    EXPECT_FALSE(unpack.Deserialize(ReadJson(R"({"text":"x","flag":true,"number":1,"other":2})").get()));
    EXPECT_EQ(seen, (std::vector<std::string>{"null", "2", "1"}));
}

TEST(UnpackJson, PlainSerialiserMakesItsKeyRequired) {
    const JsonSerializer<int> integer;
    int number = 0;
    UnpackJson unpack;
    unpack.Add("n", integer, number);
    EXPECT_FALSE(unpack.Deserialize(ReadJson("{}").get()));
    EXPECT_TRUE(unpack.Deserialize(ReadJson(R"({"n":3,"unknown":null})").get()));
    EXPECT_EQ(number, 3);
}

TEST(UnpackJson, CallbackDecidesAboutAMissingKey) {
    bool wasNull = false;
    UnpackJsonPtrByCallback callback([&](const Value* value) {
        wasNull = value == nullptr;
        return true;
    });
    const JsonSerializer<UnpackJsonPtrByCallback> serializer;
    UnpackJson unpack;
    unpack.Add("n", serializer, callback);
    EXPECT_TRUE(unpack.Deserialize(ReadJson("{}").get()));
    EXPECT_TRUE(wasNull);
    EXPECT_TRUE(unpack.Deserialize(ReadJson(R"({"n":null})").get()));
    EXPECT_FALSE(wasNull);
    EXPECT_FALSE(UnpackJsonPtrByCallback(nullptr).Deserialize(nullptr));
}

TEST(UnpackJson, NestsThroughItsOwnSerialiser) {
    const JsonSerializer<int> integer;
    const JsonSerializer<UnpackJson> nested;
    int number = 0;
    UnpackJson inner, outer;
    inner.Add("n", integer, number);
    outer.Add("inner", nested, inner);
    EXPECT_TRUE(outer.Deserialize(ReadJson(R"({"inner":{"n":9}})").get()));
    EXPECT_EQ(number, 9);
    std::unique_ptr<Value> value;
    EXPECT_FALSE(nested.Serialize(inner, value));
}

TEST(UnpackAnyJson, TakesTheFirstAlternativeThatFits) {
    const JsonSerializer<int> integer;
    const JsonSerializer<std::string> string;
    const NotingSerializer noting;
    int number = 0;
    std::string text;
    std::vector<std::string> seen;
    UnpackAnyJson any;
    any.Add(integer, number).Add(string, text).Add(noting, seen);
    EXPECT_FALSE(any.Deserialize(nullptr));
    EXPECT_TRUE(any.Deserialize(ReadJson("\"x\"").get()));
    EXPECT_EQ(text, "x");
    EXPECT_TRUE(seen.empty());
    EXPECT_FALSE(any.Deserialize(ReadJson("true").get()));
    UnpackAnyJson none;
    const JsonSerializer<UnpackAnyJson> serializer;
    EXPECT_FALSE(serializer.Deserialize(ReadJson("1").get(), none));
}

TEST(PackJsonArray, GivesCompactText) {
    PackJsonArray list;
    list.Add(L"a").Add(L"").Add(L"<\"");
    EXPECT_EQ(list.ToText(), L"[\"a\",\"\",\"\\u003C\\\"\"]");
    EXPECT_EQ(PackJsonArray().ToText(), L"[]");
}

TEST(PackJsonArray, FirstFailureDropsTheListForGood) {
    Testing::LogCapture log;
    PackJsonArray list;
    list.Add(L"a").Add(c_halfCharacter).Add(L"b");
    std::unique_ptr<Value> value;
    EXPECT_FALSE(JsonSerializer<PackJsonArray>().Serialize(list, value));
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(list.ToText(), L"");
    EXPECT_EQ(log.Count("UTF16_UTF8Size"), 1u);
}

TEST(PackJsonArray, SerialisingMovesTheListOut) {
    PackJsonArray list;
    list.Add(L"a");
    std::unique_ptr<Value> value;
    ASSERT_TRUE(JsonSerializer<PackJsonArray>().Serialize(list, value));
    EXPECT_EQ(value->AsList()->size(), 1u);
    EXPECT_FALSE(JsonSerializer<PackJsonArray>().Serialize(list, value));
    EXPECT_FALSE(JsonSerializer<PackJsonArray>().Deserialize(value.get(), list));
}

}  // namespace
}  // namespace Zorvex
