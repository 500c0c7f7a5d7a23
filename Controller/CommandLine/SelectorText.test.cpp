#include "Controller/CommandLine/SelectorText.h"

#include <gtest/gtest.h>

#include <random>

#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex::Controller {
namespace {

Selector Parsed(std::wstring_view text) {
    Selector selector;
    SelectorTextError error;
    EXPECT_TRUE(ParseSelector(text, selector, error)) << std::string(error.message.begin(), error.message.end());
    return selector;
}

std::size_t ColumnOfMistake(std::wstring_view text) {
    Selector selector;
    SelectorTextError error;
    if (ParseSelector(text, selector, error)) return 0;
    EXPECT_FALSE(error.message.empty());
    return error.column;
}

std::wstring MessageOf(std::wstring_view text) {
    Selector selector;
    SelectorTextError error;
    return ParseSelector(text, selector, error) ? L"" : error.message;
}

const StringValue& Text(const Selector& selector, std::size_t tag, const wchar_t* name) {
    return dynamic_cast<const StringValue&>(*selector.tags.at(tag)->GetAttribute(name));
}

TEST(SelectorText, OneTagWithoutAttributes) {
    const Selector selector = Parsed(L"ctrl");
    ASSERT_EQ(selector.tags.size(), 1u);
    EXPECT_EQ(selector.tags[0]->GetTagKind(), TagKind::Aa);
    EXPECT_EQ(selector.tags[0]->GetAttributeCount(), 0u);
    EXPECT_EQ(selector.scope, Search::SearchScope::Descendants);
}

TEST(SelectorText, EveryTagNameIsKnown) {
    for (std::size_t i = 0; i < std::size(kTagNames); ++i)
        EXPECT_EQ(Parsed(kTagNames[i].tag).tags[0]->GetTagKind(), static_cast<TagKind>(i));
}

TEST(SelectorText, PlainValuesAreWildcards) {
    const Selector selector = Parsed(L"ctrl[name=\"Save*\" role=window]");
    EXPECT_EQ(Text(selector, 0, L"name").GetValue(), L"Save*");
    EXPECT_EQ(Text(selector, 0, L"name").GetMatchingType(), 1u);
    EXPECT_EQ(Text(selector, 0, L"name").GetFuzzyLevel(), 1.0);
    EXPECT_TRUE(Text(selector, 0, L"name").GetCaseSensitive());
    EXPECT_EQ(Text(selector, 0, L"role").GetValue(), L"window");
}

TEST(SelectorText, CommasAndSeveralBracketsReadTheSame) {
    for (const auto* text : {L"ctrl[name=a, role=b]", L"ctrl[name=a][role=b]", L"ctrl[ name = a   role = b ]"}) {
        const Selector selector = Parsed(text);
        EXPECT_EQ(Text(selector, 0, L"name").GetValue(), L"a");
        EXPECT_EQ(Text(selector, 0, L"role").GetValue(), L"b");
    }
}

TEST(SelectorText, SlashesMakeARegularExpression) {
    const Selector selector = Parsed(LR"(ctrl[name=/Save( as)?\/\d+ "x"]/])");
    EXPECT_EQ(Text(selector, 0, L"name").GetValue(), LR"(Save( as)?/\d+ "x"])");
    EXPECT_EQ(Text(selector, 0, L"name").GetMatchingType(), 2u);
}

TEST(SelectorText, TildeMakesAFuzzyValueWithItsLevel) {
    const Selector selector = Parsed(L"ctrl[name~\"Save as\" text~Total:0.85]");
    EXPECT_EQ(Text(selector, 0, L"name").GetMatchingType(), 3u);
    EXPECT_EQ(Text(selector, 0, L"name").GetFuzzyLevel(), kDefaultFuzzyLevel);
    EXPECT_EQ(Text(selector, 0, L"text").GetFuzzyLevel(), 0.85);
}

TEST(SelectorText, SuffixIgnoresCase) {
    const Selector selector = Parsed(L"ctrl[name=\"save\"i role=/w.*/i:0.5]");
    EXPECT_FALSE(Text(selector, 0, L"name").GetCaseSensitive());
    EXPECT_FALSE(Text(selector, 0, L"role").GetCaseSensitive());
    EXPECT_EQ(Text(selector, 0, L"role").GetFuzzyLevel(), 0.5);
}

TEST(SelectorText, ExclamationMarkDisables) {
    const Selector selector = Parsed(L"ctrl[!name=x !idx=2]");
    EXPECT_FALSE(selector.tags[0]->GetAttribute(L"name")->GetEnabled());
    EXPECT_FALSE(selector.tags[0]->GetAttribute(L"idx")->GetEnabled());
}

TEST(SelectorText, NumbersAreNumbers) {
    const Selector selector = Parsed(L"ctrl[idx=3]");
    EXPECT_EQ(dynamic_cast<const NumberValue&>(*selector.tags[0]->GetAttribute(L"idx")).GetValue(), 3);
    EXPECT_EQ(dynamic_cast<const NumberValue&>(*Parsed(L"ctrl[idx=\"-4\"]").tags[0]->GetAttribute(L"idx")).GetValue(), -4);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[idx=x]"), 10u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[idx=99999999999999999999]"), 10u);
    EXPECT_NE(MessageOf(L"ctrl[idx~3]").find(L"is a number"), std::wstring::npos);
}

TEST(SelectorText, ScopeFollowsTheChildSigns) {
    EXPECT_EQ(Parsed(L"ctrl ctrl").scope, Search::SearchScope::Descendants);
    EXPECT_EQ(Parsed(L"> ctrl > ctrl").scope, Search::SearchScope::ChildrenOnly);
    EXPECT_EQ(Parsed(L">ctrl>ctrl>ctrl").scope, Search::SearchScope::ChildrenOnly);
    EXPECT_EQ(Parsed(L"> ctrl ctrl").scope, Search::SearchScope::DescendantsOfTopLevel);
    EXPECT_EQ(Parsed(L"> ctrl").scope, Search::SearchScope::ChildrenOnly);
    EXPECT_EQ(ColumnOfMistake(L"ctrl > ctrl"), 6u);
    EXPECT_EQ(ColumnOfMistake(L"> ctrl > ctrl ctrl"), 15u);
    EXPECT_EQ(ColumnOfMistake(L"> ctrl >"), 9u);
}

TEST(SelectorText, WebTagsTakeAnyName) {
    const Selector selector = Parsed(L"webctrl[tag=A aria-label=\"x\" data-id=7]");
    EXPECT_EQ(Text(selector, 0, L"aria-label").GetValue(), L"x");
    EXPECT_EQ(Text(selector, 0, L"data-id").GetValue(), L"7");
}

TEST(SelectorText, EscapesInQuotes) {
    const Selector selector = Parsed(LR"(ctrl[name="a\"b\\c\n\u00e9" role='it"s'])");
    EXPECT_EQ(Text(selector, 0, L"name").GetValue(), L"a\"b\\c\n\u00e9");
    EXPECT_EQ(Text(selector, 0, L"role").GetValue(), L"it\"s");
    EXPECT_EQ(ColumnOfMistake(LR"(ctrl[name="\q"])"), 12u);
    EXPECT_EQ(ColumnOfMistake(LR"(ctrl[name="\u00g0"])"), 16u);
}

TEST(SelectorText, MistakesAreShownWithTheirColumn) {
    EXPECT_EQ(ColumnOfMistake(L""), 1u);
    EXPECT_EQ(ColumnOfMistake(L"   "), 4u);
    EXPECT_EQ(ColumnOfMistake(L"control[name=x]"), 1u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name=x"), 12u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[nmae=x]"), 6u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name]"), 10u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name=]"), 11u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name=\"x]"), 11u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name=/x]"), 11u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name~/x/]"), 11u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name=a name=b]"), 13u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name=a:2]"), 13u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name=a:]"), 13u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[name=\"a\"x]"), 14u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl;"), 5u);
    EXPECT_EQ(ColumnOfMistake(L"ctrl[=x]"), 6u);
}

TEST(SelectorText, MistakesNameWhatThereIs) {
    EXPECT_NE(MessageOf(L"ctrl[Name=x]").find(L"did you mean 'name'?"), std::wstring::npos);
    EXPECT_NE(MessageOf(L"ctrl[nmae=x]").find(L"helpText"), std::wstring::npos);
    EXPECT_NE(MessageOf(L"button").find(L"ctrl"), std::wstring::npos);
}

TEST(SelectorText, MistakeIsShownBelowItsPlace) {
    Selector selector;
    SelectorTextError error;
    const std::wstring text = L"ctrl[nmae=x]";
    ASSERT_FALSE(ParseSelector(text, selector, error));
    EXPECT_EQ(error.Show(text).find(L"ctrl[nmae=x]\n     ^\ncolumn 6: "), 0u);
}

TEST(SelectorText, FailedTextLeavesTheSelectorAsItWas) {
    Selector selector = Parsed(L"ctrl[name=x]");
    SelectorTextError error;
    EXPECT_FALSE(ParseSelector(L"ctrl ctrl[", selector, error));
    EXPECT_EQ(selector.tags.size(), 1u);
}

TEST(SelectorText, TooLongOrTooManyTagsAreRefused) {
    EXPECT_NE(ColumnOfMistake(std::wstring(kMaximumSelectorLength + 1, L' ')), 0u);
    std::wstring many;
    for (int i = 0; i < 1001; ++i) many += L"ctrl ";
    EXPECT_NE(ColumnOfMistake(many), 0u);
    EXPECT_NE(ColumnOfMistake(L"ctrl[name=\"" + std::wstring(500'000, L'(')), 0u);
}

bool Same(const Selector& a, const Selector& b) {
    if (a.scope != b.scope || a.tags.size() != b.tags.size()) return false;
    for (std::size_t i = 0; i < a.tags.size(); ++i)
        if (!a.tags[i]->Equals(*b.tags[i])) return false;
    return true;
}

TEST(SelectorText, WrittenTextReadsBackAsTheSameSelector) {
    std::mt19937 random(7);
    const std::wstring alphabet = L"ab \"'\\/[]=~:!*?.i,>\n\t\x01\x7f\u00e9\u4e2d\U0000ffff";
    for (int round = 0; round < 2000; ++round) {
        Selector selector;
        selector.scope = static_cast<Search::SearchScope>(random() % 3);
        // One tag says no more than that it is a child.
        const std::size_t count = selector.scope == Search::SearchScope::DescendantsOfTopLevel ? 2 : 1 + random() % 3;
        for (std::size_t i = 0; i < count; ++i) {
            auto tag = std::make_shared<AaTag>();
            tag->SetLimitsEveryLevel(false);  // flags have no text form; this is what a text means
            for (const auto* name : {L"name", L"role", L"text", L"helpText"}) {
                if (random() % 2) continue;
                std::wstring text;
                for (std::size_t k = random() % 8; k > 0; --k) text += alphabet[random() % alphabet.size()];
                const std::uint32_t type = 1 + random() % 3;
                if (type == 2) std::erase_if(text, [](wchar_t unit) { return unit == L'\\'; });
                tag->SetAttribute(name, std::make_shared<StringValue>(text, type, (random() % 101) / 100.0, random() % 2 == 0,
                                                                      random() % 2 == 0));
            }
            if (random() % 2) tag->SetAttribute(L"idx", std::make_shared<NumberValue>(static_cast<std::int64_t>(random() % 9)));
            selector.tags.push_back(tag);
        }
        const std::wstring text = WriteSelector(selector);
        EXPECT_TRUE(Same(Parsed(text), selector)) << std::string(text.begin(), text.end());
    }
}

TEST(SelectorText, IndexIsWrittenLast) {
    EXPECT_EQ(WriteSelector(Parsed(L"ctrl[idx=2 role=link name=x]")), L"ctrl[name=\"x\" role=\"link\" idx=2]");
    EXPECT_EQ(WriteSelector(Parsed(L">ctrl>ctrl[!name~x:0.9]")), L"> ctrl > ctrl[!name~\"x\":0.9]");
}

}  // namespace
}  // namespace Zorvex::Controller
