#include "Common/include/JsonSerializer/JsonText.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

JsonReadError ErrorOf(std::string_view text, TrailingCommas commas = TrailingCommas::Allowed) {
    JsonReadError error;
    EXPECT_EQ(ReadJson(text, &error, commas), nullptr) << text;
    return error;
}

std::string Rewritten(std::string_view text) {
    const auto value = ReadJson(text);
    std::string out;
    if (!value || !WriteJson(*value, JsonLayout::Compact, out)) return "failed";
    return out;
}

std::string Nested(int depth) { return std::string(static_cast<std::size_t>(depth), '[') + std::string(static_cast<std::size_t>(depth), ']'); }

TEST(JsonReader, TrailingCommaIsAcceptedInListAndDictionary) {
    const auto list = ReadJson("[1,2,]");
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(list->IsList());
    EXPECT_EQ(list->AsList()->size(), 2u);
    EXPECT_EQ(Rewritten("{\"a\":1, }"), "{\"a\":1}");
}

TEST(JsonReader, TrailingCommaIsRefusedWhereTheCallerSaysSo) {
    const JsonReadError error = ErrorOf("[1,2,]", TrailingCommas::Refused);
    EXPECT_EQ(error.code, JsonError::TrailingComma);
    EXPECT_EQ(error.message, "Line: 1, column: 6, Trailing comma not allowed.");
}

TEST(JsonReader, UnquotedKeyFailsWithCode8AndItsPosition) {
    const JsonReadError error = ErrorOf("{a:1}");
    EXPECT_EQ(static_cast<int>(error.code), 8);
    EXPECT_EQ(error.line, 1);
    EXPECT_EQ(error.column, 2);
    EXPECT_EQ(error.message, "Line: 1, column: 2, Dictionary keys must be quoted.");
}

TEST(JsonReader, TwoHundredNestedBracketsFailAnd199AreRead) {
    EXPECT_NE(ReadJson(Nested(199)), nullptr);
    const JsonReadError error = ErrorOf(Nested(200));
    EXPECT_EQ(error.code, JsonError::TooMuchNesting);
    EXPECT_TRUE(error.message.ends_with("Too much nesting."));
    EXPECT_EQ(error.column, 200);
    EXPECT_EQ(ErrorOf(std::string(1'000'000, '[')).code, JsonError::TooMuchNesting);
    std::string dictionaries;
    for (int i = 0; i < 200; ++i) dictionaries += "{\"a\":";
    EXPECT_EQ(ErrorOf(dictionaries).code, JsonError::TooMuchNesting);
}

TEST(JsonReader, SecondValueAfterTheRootFailsWithCode6) {
    const JsonReadError error = ErrorOf("1 2");
    EXPECT_EQ(static_cast<int>(error.code), 6);
    EXPECT_EQ(error.message, "Line: 1, column: 3, Unexpected data after root element.");
    EXPECT_NE(ReadJson("1 // end"), nullptr);
    EXPECT_NE(ReadJson("1 /* end */ "), nullptr);
}

TEST(JsonReader, CommentsAreWhiteSpace) {
    EXPECT_EQ(Rewritten("// first\n[1, /* two\r\n */ 2 // three\r, 3]/**/"), "[1,2,3]");
    EXPECT_EQ(Rewritten("{/**/\"a\"/**/:/**/1/**/,/**/}"), "{\"a\":1}");
    EXPECT_EQ(ErrorOf("1 /* open").code, JsonError::UnexpectedDataAfterRoot);
    EXPECT_EQ(ErrorOf("/* open").code, JsonError::UnexpectedToken);
    EXPECT_EQ(ErrorOf("1 /*/").code, JsonError::UnexpectedDataAfterRoot);
}

TEST(JsonReader, LeadingByteOrderMarkIsSkippedAndNotCounted) {
    EXPECT_EQ(Rewritten("\xEF\xBB\xBF[1]"), "[1]");
    EXPECT_EQ(ErrorOf("\xEF\xBB\xBFx").column, 1);
    EXPECT_EQ(ErrorOf("\xEF\xBB\xBF\xEF\xBB\xBF" "1").code, JsonError::UnexpectedToken);
}

TEST(JsonReader, CarriageReturnAndLineFeedCountAsOneLineEnd) {
    const JsonReadError error = ErrorOf("\r\n\r\n  x");
    EXPECT_EQ(error.line, 3);
    EXPECT_EQ(error.column, 3);
    EXPECT_EQ(ErrorOf("\n\nx").line, 3);
    EXPECT_EQ(ErrorOf("\r\rx").line, 3);
    EXPECT_EQ(ErrorOf("\n\r\nx").line, 3);
}

TEST(JsonReader, ColumnsCountCharactersNotBytes) { EXPECT_EQ(ErrorOf("[\"\xC3\xA4\xF0\x9F\x98\x80\" x").column, 7); }

TEST(JsonReader, TextThatIsNotUtf8FailsWithoutPosition) {
    const JsonReadError error = ErrorOf("\"\xC3(\"");
    EXPECT_EQ(static_cast<int>(error.code), 7);
    EXPECT_EQ(error.message, "Unsupported encoding. JSON must be UTF-8.");
    EXPECT_EQ(error.line, 0);
    EXPECT_EQ(error.column, 0);
    EXPECT_EQ(ErrorOf("\"\xED\xA0\x80\"").code, JsonError::UnsupportedEncoding);
}

TEST(JsonReader, NumberIsAnIntegerOnlyWithoutFractionAndWithin32Bits) {
    const auto typeOf = [](std::string_view text) { return ReadJson(text)->GetType(); };
    EXPECT_EQ(typeOf("2147483647"), Value::Type::Integer);
    EXPECT_EQ(typeOf("2147483648"), Value::Type::Double);
    EXPECT_EQ(typeOf("-2147483648"), Value::Type::Integer);
    EXPECT_EQ(typeOf("-2147483649"), Value::Type::Double);
    EXPECT_EQ(typeOf("1.0"), Value::Type::Double);
    EXPECT_EQ(typeOf("1e2"), Value::Type::Double);
    EXPECT_EQ(typeOf("-0"), Value::Type::Integer);
    EXPECT_EQ(*ReadJson("1E+2")->AsDouble(), 100.0);
}

TEST(JsonReader, NumberBeyondADoubleFailsAndOneBelowIsZero) {
    EXPECT_EQ(ErrorOf("1e999").code, JsonError::SyntaxError);
    EXPECT_EQ(ErrorOf(std::string(400, '9')).code, JsonError::SyntaxError);
    EXPECT_EQ(ErrorOf("1" + std::string(400, '0') + "e-1").code, JsonError::SyntaxError);
    EXPECT_EQ(ErrorOf("1e99999999999999999999").code, JsonError::SyntaxError);
    EXPECT_EQ(*ReadJson("1e-999")->AsDouble(), 0.0);
    EXPECT_EQ(*ReadJson("1e-99999999999999999999")->AsDouble(), 0.0);
    EXPECT_EQ(*ReadJson("0." + std::string(400, '0') + "1")->AsDouble(), 0.0);
    EXPECT_TRUE(std::signbit(*ReadJson("-1e-999")->AsDouble()));
}

TEST(JsonReader, MalformedTokensAreSyntaxErrors) {
    for (const char* text : {"01", "-", "1.", "1e", "1e+", "-a", "tru", "nulL", "[1", "[1 2]", "{\"a\" 1}", "{\"a\":1 \"b\":2}", "\"open",
                             "\"a\nb\"", "[1}", "{\"a\":1]", "\"a\tb\""})
        EXPECT_EQ(ErrorOf(text).code, JsonError::SyntaxError) << text;
}

TEST(JsonReader, AnythingElseWhereAValueIsExpectedIsAnUnexpectedToken) {
    for (const char* text : {"", " ", "]", "[1,,2]", "[,]", "{\"a\":}", "[", "[1,", "'a'", "+1", ".5", "NaN", "Infinity", "undefined"})
        EXPECT_EQ(ErrorOf(text).code, JsonError::UnexpectedToken) << text;
}

TEST(JsonReader, KeyOfAnyOtherKindIsAnUnquotedKey) {
    for (const char* text : {"{1:2}", "{,}", "{", "{\"a\":1,", "{\"a\":1,]", "{'a':1}"})
        EXPECT_EQ(ErrorOf(text).code, JsonError::UnquotedDictionaryKey) << text;
}

TEST(JsonReader, EscapesAreRead) {
    EXPECT_EQ(*ReadJson(R"("\"\\\/\b\f\n\r\t\u0041\u00e4\u20AC\ud83d\ude00")")->AsString(), "\"\\/\b\f\n\r\tA\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(*ReadJson(R"("a\u0000b")")->AsString(), std::string("a\0b", 3));
}

TEST(JsonReader, BadEscapesFailWithCode1) {
    for (const char* text : {R"("\x41")", R"("\v")", R"("\u12")", R"("\u12g4")", R"("\ud800")", R"("\udc00")", R"("\ud800\u0041")", R"("\ud800\n")",
                             R"("\u+123")", R"("\u)", R"("\)"}) {
        const JsonReadError error = ErrorOf(text);
        EXPECT_EQ(static_cast<int>(error.code), 1) << text;
        EXPECT_EQ(error.message, "Line: 1, column: 2, Invalid escape sequence.") << text;
    }
}

TEST(JsonReader, LastOfEqualKeysCountsAndKeysAreInByteOrder) {
    EXPECT_EQ(Rewritten("{\"b\":1,\"a\":2,\"b\":3}"), "{\"a\":2,\"b\":3}");
    EXPECT_EQ(Rewritten("{\"\xC3\xA4\":1,\"z\":2,\"\":3,\"Z\":4}"), "{\"\":3,\"Z\":4,\"z\":2,\"\xC3\xA4\":1}");
}

TEST(JsonReader, NulOutsideAStringIsNoWhiteSpace) {
    EXPECT_EQ(ErrorOf(std::string_view("1\0", 2)).code, JsonError::UnexpectedDataAfterRoot);
    EXPECT_EQ(ErrorOf(std::string_view("\0", 1)).code, JsonError::UnexpectedToken);
}

TEST(JsonReader, EveryCodeHasItsMessage) {
    EXPECT_STREQ(JsonErrorText(JsonError::InvalidEscape), "Invalid escape sequence.");
    EXPECT_STREQ(JsonErrorText(JsonError::SyntaxError), "Syntax error.");
    EXPECT_STREQ(JsonErrorText(JsonError::UnexpectedToken), "Unexpected token.");
    EXPECT_STREQ(JsonErrorText(JsonError::TrailingComma), "Trailing comma not allowed.");
    EXPECT_STREQ(JsonErrorText(JsonError::TooMuchNesting), "Too much nesting.");
    EXPECT_STREQ(JsonErrorText(JsonError::UnexpectedDataAfterRoot), "Unexpected data after root element.");
    EXPECT_STREQ(JsonErrorText(JsonError::UnsupportedEncoding), "Unsupported encoding. JSON must be UTF-8.");
    EXPECT_STREQ(JsonErrorText(JsonError::UnquotedDictionaryKey), "Dictionary keys must be quoted.");
    EXPECT_STREQ(JsonErrorText(JsonError::None), "");
}

TEST(JsonReader, SuccessLeavesNoError) {
    JsonReadError error{JsonError::SyntaxError, "old", 3, 4};
    EXPECT_NE(ReadJson("1", &error), nullptr);
    EXPECT_EQ(error.code, JsonError::None);
    EXPECT_EQ(error.message, "");
}

TEST(ParseJsonFromString, ReaderFailureIsLoggedWithCodeMessageLineAndColumn) {
    Testing::LogCapture log;
    EXPECT_EQ(ParseJsonFromString(L"{a:1}"), nullptr);
    EXPECT_TRUE(log.Contains("E [ParseJsonFromString] ParseJsonFromString: JSONReader::ReadAndReturnError failed, error 8 'Line: 1, column: 2, Dictionary keys must be "
                             "quoted.', line 1, column 2"))
        << log.Text();
    EXPECT_TRUE(log.Lines().at(0).starts_with("E ")) << log.Text();
}

TEST(ParseJsonFromString, UnpairedSurrogateIsAConversionFailure) {
    Testing::LogCapture log;
    const std::wstring text = {L'"', static_cast<wchar_t>(0xD800), L'"'};
    EXPECT_EQ(ParseJsonFromString(text), nullptr);
    EXPECT_TRUE(log.Contains("failed with last err 1113")) << log.Text();
    EXPECT_TRUE(log.Contains("E [ParseJsonFromString] ParseJsonFromString: failed to convert JSON policy string from Unicode to UTF8")) << log.Text();
}

TEST(ParseJsonFromString, NullTextIsAConversionFailure) {
    Testing::LogCapture log;
    EXPECT_EQ(ParseJsonFromString(static_cast<const wchar_t*>(nullptr)), nullptr);
    EXPECT_TRUE(log.Contains("Atempt to convert nullptr char*")) << log.Text();
    EXPECT_TRUE(log.Contains("failed to convert JSON policy string")) << log.Text();
}

TEST(ParseJsonFromString, CharactersBeyondTheFirstPlaneArrive) {
    const std::wstring text = {L'"', static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00), L'"'};
    const auto value = ParseJsonFromString(text);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(*value->AsString(), "\xF0\x9F\x98\x80");
}

}  // namespace
}  // namespace Zorvex
