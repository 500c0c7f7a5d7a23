// Comparison with another JSON library on random documents. Native only: the cross build has no such library.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <random>

#include "Common/include/JsonSerializer/JsonText.h"

namespace Zorvex {
namespace {

// The same document in both models.
bool Same(const Value& value, const nlohmann::json& other) {
    switch (value.GetType()) {
        case Value::Type::None: return other.is_null();
        case Value::Type::Boolean: return other.is_boolean() && other.get<bool>() == *value.AsBoolean();
        case Value::Type::Integer: return other.is_number_integer() && other.get<std::int64_t>() == *value.AsInteger();
        case Value::Type::Double: return other.is_number() && other.get<double>() == *value.AsDouble();
        case Value::Type::String: return other.is_string() && other.get<std::string>() == *value.AsString();
        case Value::Type::Binary: return false;
        case Value::Type::List: {
            if (!other.is_array() || other.size() != value.AsList()->size()) return false;
            for (std::size_t i = 0; i < other.size(); ++i)
                if (!Same((*value.AsList())[i], other[i])) return false;
            return true;
        }
        case Value::Type::Dictionary:
            if (!other.is_object() || other.size() != value.AsDictionary()->size()) return false;
            for (const auto& [key, child] : *value.AsDictionary())
                if (!other.contains(key) || !Same(child, other[key])) return false;
            return true;
    }
    return false;
}

std::string RandomText(std::mt19937& random) {
    static const char* const c_pieces[] = {"a", "<", "\"", "\\", "\n", "\x01", "\xC3\xA4", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xF0\x9F\x98\x80", "\x7F", "/", " "};
    std::string text;
    for (unsigned i = random() % 6; i > 0; --i) text += c_pieces[random() % std::size(c_pieces)];
    return text;
}

nlohmann::json RandomDocument(std::mt19937& random, int depth) {
    switch (random() % (depth > 0 ? 7 : 5)) {
        case 0: return nullptr;
        case 1: return random() % 2 == 0;
        case 2: return static_cast<std::int32_t>(random());
        case 3: return std::ldexp(static_cast<double>(static_cast<std::int32_t>(random())), static_cast<int>(random() % 200) - 100);
        case 4: return RandomText(random);
        case 5: {
            auto list = nlohmann::json::array();
            for (unsigned i = random() % 4; i > 0; --i) list.push_back(RandomDocument(random, depth - 1));
            return list;
        }
        default: {
            auto dictionary = nlohmann::json::object();
            for (unsigned i = random() % 4; i > 0; --i) dictionary[RandomText(random)] = RandomDocument(random, depth - 1);
            return dictionary;
        }
    }
}

TEST(JsonComparison, AgreesWithAnotherReaderOnRandomDocumentsInBothDirections) {
    std::mt19937 random(7);
    for (int round = 0; round < 3'000; ++round) {
        const nlohmann::json document = RandomDocument(random, 5);
        const auto value = ReadJson(document.dump(round % 3 == 0 ? 2 : -1, ' ', round % 2 == 0));
        ASSERT_NE(value, nullptr) << document.dump();
        ASSERT_TRUE(Same(*value, document)) << document.dump();
        for (const JsonLayout layout : {JsonLayout::Compact, JsonLayout::Pretty}) {
            std::string text;
            ASSERT_TRUE(WriteJson(*value, layout, text));
            ASSERT_EQ(nlohmann::json::parse(text), document) << text;
            const auto again = ReadJson(text);
            ASSERT_NE(again, nullptr) << text;
            ASSERT_TRUE(*again == *value) << text;
        }
    }
}

TEST(JsonComparison, AgreesWithAnotherReaderOnWhichMutilatedTextsAreJson) {
    std::mt19937 random(11);
    int accepted = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string text = RandomDocument(random, 3).dump();
        for (unsigned i = random() % 3; i > 0 && !text.empty(); --i) text[random() % text.size()] = "[]{},:\"\\ 019.-+eEtrufalsn\n\xC3\x80"[random() % 28];
        // Trailing commas are ours; comments can't arise from these letters.
        const bool ours = ReadJson(text, nullptr, TrailingCommas::Refused) != nullptr;
        accepted += ours;
        ASSERT_EQ(ours, nlohmann::json::accept(text)) << text;
    }
    EXPECT_GT(accepted, 2'000);
}

}  // namespace
}  // namespace Zorvex
