#include "Controller/CommandLine/Output.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace Zorvex::Controller {
namespace {

TEST(JsonWriter, WritesNestedValues) {
    std::ostringstream out;
    JsonWriter json(out);
    json.BeginObject().Key("a").BeginArray().Number(1).Number(-2).EndArray().Key("b").BeginObject().EndObject();
    json.Key("c").Text(L"x\"\\\n\x01").Key("d").Flag(true).Key("e").Null().Key("f").Fraction(0.25).EndObject().Finish();
    EXPECT_EQ(out.str(), "{\n \"a\": [\n  1,\n  -2\n ],\n \"b\": {},\n \"c\": \"x\\\"\\\\\\n\\u0001\",\n \"d\": true,\n \"e\": null,\n"
                         " \"f\": 0.25\n}\n");
}

TEST(JsonWriter, NumbersThatJsonHasNotAreNull) {
    std::ostringstream out;
    JsonWriter(out).BeginArray().Fraction(std::numeric_limits<double>::infinity()).Fraction(std::nan("")).EndArray();
    EXPECT_EQ(out.str(), "[\n null,\n null\n]");
}

TEST(Output, TextsForAPerson) {
    EXPECT_EQ(HandleText(reinterpret_cast<HWND>(static_cast<UINT_PTR>(0x10102))), "0x10102");
    EXPECT_EQ(RectangleText({-5, 6, 10, 8}), "-5,6 15x2");
    EXPECT_EQ(RectangleText({-2147483647 - 1, 0, 2147483647, 0}), "-2147483648,0 4294967295x0");
    EXPECT_EQ(QuotedText(L"a\tb\x7f\u00e9"), "\"a\\tb\\u007f\xC3\xA9\"");
    EXPECT_EQ(ScoreText(2.0 / 3), "0.67");
}

}  // namespace
}  // namespace Zorvex::Controller
