#include "RuntimeCore/Selectors/ValueMatcher/RegexReplacer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <random>
#include <string>

#include "RuntimeCore/Selectors/ValueMatcher/RegexBacktracker.h"
#include "RuntimeCore/Selectors/ValueMatcher/RegexReach.h"

#if defined(__GNUC__) && !defined(__clang__)
// Under sanitizers GCC suspects the library's own automaton of reading what it didn't write.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <regex>

namespace Zorvex {
namespace {

std::wstring Replaced(std::wstring_view pattern, std::wstring_view text, std::wstring_view format) {
    return RegexReplacer::Compile(pattern, true).Replace(text, format);
}

std::optional<RegexErrorCode> ErrorOf(std::wstring_view pattern, std::wstring_view text, std::wstring_view format) {
    try {
        Replaced(pattern, text, format);
        return std::nullopt;
    } catch (const RegexError& error) {
        EXPECT_NE(nullptr, error.message);
        return error.code;
    }
}

std::string Shown(std::wstring_view text) { return std::string(text.begin(), text.end()); }

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count(); }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

// ---- Matches ----

TEST(RegexReplacer, ReplacesEveryMatchAndKeepsTheTextBetween) {
    EXPECT_EQ(L"a#b#c", Replaced(L"[0-9]+", L"a12b3c", L"#"));
    EXPECT_EQ(L"abc", Replaced(L"[0-9]+", L"abc", L"#"));
    EXPECT_EQ(L"", Replaced(L"[0-9]+", L"", L"#"));
    EXPECT_EQ(L"ac", Replaced(L"b", L"abbc", L""));
}

TEST(RegexReplacer, TakesTheFirstAlternativeThatMatchesNotTheLongest) {
    EXPECT_EQ(L"#b", Replaced(L"a|ab", L"ab", L"#"));
    EXPECT_EQ(L"#", Replaced(L"ab|a", L"ab", L"#"));
    EXPECT_EQ(L"##b", Replaced(L"a+?", L"aab", L"#"));
    EXPECT_EQ(L"#b", Replaced(L"a+", L"aab", L"#"));
}

TEST(RegexReplacer, EmptyMatchesStandBetweenTheUnits) {
    EXPECT_EQ(L"-a-b-", Replaced(L"", L"ab", L"-"));
    EXPECT_EQ(L"-b--", Replaced(L"a*", L"baa", L"-"));
    EXPECT_EQ(L"--b-", Replaced(L"a*", L"ab", L"-"));
    EXPECT_EQ(L"-", Replaced(L".*", L"", L"-"));
    EXPECT_EQ(L"--", Replaced(L".*", L"abc", L"-"));
    EXPECT_EQ(L"save As File", Replaced(L"\\B(?=[A-Z])", L"saveAsFile", L" "));
}

TEST(RegexReplacer, BehindAnEmptyMatchOneThatIsNotEmptyIsTriedAtTheSamePlace) {
    EXPECT_EQ(L"[][a][]b[]", Replaced(L"|a", L"ab", L"[$&]"));
}

TEST(RegexReplacer, BeginOfTextIsTheBeginOfTheWholeText) {
    EXPECT_EQ(L"#aa", Replaced(L"^a", L"aaa", L"#"));
    EXPECT_EQ(L"aa#", Replaced(L"a$", L"aaa", L"#"));
    EXPECT_EQ(L"#b #b b#", Replaced(L"\\ba|a\\b", L"ab ab ba", L"#"));
}

TEST(RegexReplacer, BehindAFirstMatchThatIsEmptyTheTextBeginsAnewOnPurpose) {
    EXPECT_EQ(L"a[][b][]b", Replaced(L"(?=b)|^b", L"abb", L"[$&]"));
    EXPECT_EQ(std::regex_replace(std::wstring(L"abb"), std::wregex(L"(?=b)|^b"), std::wstring(L"[$&]")),
              Replaced(L"(?=b)|^b", L"abb", L"[$&]"));
}

TEST(RegexReplacer, WithoutAProgramTheTextStays) { EXPECT_EQ(L"abc", RegexReplacer().Replace(L"abc", L"x")); }

TEST(RegexReplacer, CaseCountsOnlyWhereItIsAskedFor) {
    EXPECT_EQ(L"A#", Replaced(L"a", L"Aa", L"#"));
    EXPECT_EQ(L"##", RegexReplacer::Compile(L"a", false).Replace(L"Aa", L"#"));
}

TEST(RegexReplacer, NulIsAUnitLikeAnyOther) {
    EXPECT_EQ(std::wstring(L"x\0#", 3), Replaced(L"a", std::wstring_view(L"x\0a", 3), L"#"));
    EXPECT_EQ(std::wstring(L"\0", 1), Replaced(L"a", L"a", std::wstring_view(L"\0", 1)));
}

TEST(RegexReplacer, BackReferencesWork) {
    EXPECT_EQ(L"<ab> <a>b", Replaced(L"(a|b+)\\1|(ab)", L"ab aab", L"<$1$2>"));
    EXPECT_EQ(L"the cat", Replaced(L"(\\w+) \\1", L"the the cat", L"$1"));
}

// ---- Formats ----

TEST(RegexReplacer, GroupsByNumber) {
    EXPECT_EQ(L"Doe, John", Replaced(L"(\\w+) (\\w+)", L"John Doe", L"$2, $1"));
    EXPECT_EQ(L"[John Doe]", Replaced(L".+", L"John Doe", L"[$0]"));
    EXPECT_EQ(L"k", Replaced(L"(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)", L"abcdefghijk", L"$11"));
    EXPECT_EQ(L"a1", Replaced(L"(a)", L"a", L"$011"));
}

TEST(RegexReplacer, TwoDigitsAreOneNumberAlsoWhereThereIsNoSuchGroup) {
    EXPECT_EQ(L"[]", Replaced(L"(a)", L"a", L"[$12]"));
    EXPECT_EQ(L"[]", Replaced(L"(a)", L"a", L"[$2$99]"));
}

TEST(RegexReplacer, GroupsThatTookNoPartAreEmpty) {
    EXPECT_EQ(L"[a|][|b]", Replaced(L"(a)|(b)", L"ab", L"[$1|$2]"));
    EXPECT_EQ(L"[|b]", Replaced(L"(?:(a)|(b))+", L"ab", L"[$1|$2]"));  // each round forgets those of the round before
}

TEST(RegexReplacer, GroupsOfLookAheadsAreKnownBehindThem) {
    EXPECT_EQ(L"bab", Replaced(L"a(?=(b))", L"ab", L"$1a"));
    EXPECT_EQ(L"[]c", Replaced(L"a(?!(b))", L"ac", L"[$1]"));
}

TEST(RegexReplacer, TextBeforeIsThatBehindTheMatchBefore) {
    EXPECT_EQ(L"a[a]b[b]c", Replaced(L"1", L"a1b1c", L"[$`]"));
    EXPECT_EQ(L"a[b1c]b[c]c", Replaced(L"1", L"a1b1c", L"[$']"));
}

TEST(RegexReplacer, DollarSignsThatBeginNothingStandForThemselves) {
    EXPECT_EQ(L"$1", Replaced(L"(a)", L"a", L"$$1"));
    EXPECT_EQ(L"$", Replaced(L"a", L"a", L"$"));
    EXPECT_EQ(L"$x$ $", Replaced(L"a", L"a", L"$x$ $"));
    EXPECT_EQ(L"$$", Replaced(L"a", L"a", L"$$$"));
    EXPECT_EQ(L"\\1\\n", Replaced(L"(a)", L"a", L"\\1\\n"));
}

// ---- Against another engine ----

TEST(RegexReplacer, AgreesWithTheStandardLibraryAtRandom) {
    std::mt19937 random(4);
    const std::wstring pieces[] = {L"a", L"b", L".", L"(a)", L"(b|a)", L"(ab|b)", L"(?:ab)", L"[ab]", L"[^a]", L"\\b", L"\\B",
                                   L"(?=a)", L"(?!b)", L"(?=.*b)", L"(?:a|b*)", L"(a|)", L"^", L"$", L"|", L"\\w",
                                   L"((a)b|b)", L"(.*?)"};
    const std::wstring quantifiers[] = {L"", L"", L"", L"*", L"+", L"?", L"{2}", L"{0,2}", L"{1,}", L"*?", L"+?", L"??"};
    const std::wstring formats[] = {L"-", L"", L"[$&]", L"<$1$2>", L"$`|", L"'$'", L"$$", L"$", L"$3$x", L"$10$0"};
    int changed = 0;
    for (int round = 0; round < 6000; ++round) {
        std::wstring pattern;
        int groups = 0;
        for (unsigned count = 1 + random() % 5; count > 0; --count) {
            const std::wstring& piece = pieces[random() % std::size(pieces)];
            const bool repeats = piece != L"|" && piece != L"^" && piece != L"$" && piece != L"\\b" && piece != L"\\B" &&
                                 piece.substr(0, 3) != L"(?=" && piece.substr(0, 3) != L"(?!";
            // Repeated groups must take a unit, and must not hold others: otherwise the standard library keeps what
            // they held in a round before.
            const bool group = piece[0] == L'(' && piece[1] != L'?';
            const bool simpleGroup = piece == L"(a)" || piece == L"(b|a)" || piece == L"(ab|b)";
            pattern += piece;
            if (piece == L"((a)b|b)") groups += 2;
            else if (group) ++groups;
            if (group ? simpleGroup && random() % 2 : repeats) pattern += quantifiers[random() % std::size(quantifiers)];
            else if (group && piece[1] != L'(' && round % 3 == 0 && random() % 2) pattern += L"\\" + std::to_wstring(groups);
        }
        const RegexReplacer ours = RegexReplacer::Compile(pattern, true);
        const std::wregex theirs(pattern);
        for (int i = 0; i < 12; ++i) {
            std::wstring text;
            for (unsigned length = random() % 8; length > 0; --length) text += L"aab "[random() % 4];
            const std::wstring format = formats[random() % std::size(formats)] + formats[random() % std::size(formats)];
            const std::wstring expected = std::regex_replace(text, theirs, format);
            changed += expected != text;
            ASSERT_EQ(expected, ours.Replace(text, format)) << Shown(pattern) << " on '" << Shown(text) << "' with '" << Shown(format) << "'";
        }
    }
    EXPECT_GT(changed, 30000);
}

// What the reach says must agree with what following every way finds, and must not change which way is found.
TEST(RegexReach, AgreesWithBacktrackingAtRandom) {
    std::mt19937 random(5);
    const std::wstring pieces[] = {L"a", L"b", L"(a|b)", L"(ab|)", L"(?:a*b)*", L"\\b", L"(?=a)", L"(?!b*a)", L"(?=(?!ab)a|(?=b))",
                                   L"^", L"$", L"|", L"a*", L"(b+?)", L"(?:a|b?)*", L"(|a)*", L"(?:b?(?:|a))*"};
    int matches = 0;
    for (int round = 0; round < 3000; ++round) {
        std::wstring pattern;
        for (unsigned count = 1 + random() % 5; count > 0; --count) pattern += pieces[random() % std::size(pieces)];
        const RegexProgram program = CompileRegex(ParseRegex(pattern, true), true, RegexGroups::Kept, nullptr);
        std::wstring text;
        for (unsigned length = random() % 8; length > 0; --length) text += L"aab "[random() % 4];
        RegexReach reach;
        ASSERT_TRUE(reach.Find(program, text));
        RegexSteps steps(100'000'000);
        RegexBacktracker plain(program, text, steps);
        RegexBacktracker guided(program, text, steps, &reach);
        for (std::size_t position = 0; position <= text.size(); ++position) {
            for (const auto ending : {RegexBacktracker::Ending::Anywhere, RegexBacktracker::Ending::BehindItsBegin}) {
                const bool found = plain.MatchAt(position, ending);
                const std::string shown = Shown(pattern) + " on '" + Shown(text) + "' at " + std::to_string(position);
                ASSERT_EQ(found, guided.MatchAt(position, ending)) << shown;
                if (ending == RegexBacktracker::Ending::Anywhere) {
                    ASSERT_EQ(found, reach.Leads(0, position)) << shown;
                }
                if (!found) continue;
                ++matches;
                ASSERT_EQ(plain.GetEnd(), guided.GetEnd()) << shown;
                for (std::uint32_t group = 1; group <= program.groups; ++group)
                    ASSERT_EQ(plain.GetGroup(group), guided.GetGroup(group)) << shown;
            }
        }
    }
    EXPECT_GT(matches, 5000);
}

TEST(RegexReach, IsNotFoundForBackReferencesAndForTooMuchText) {
    RegexReach reach;
    EXPECT_FALSE(reach.Find(CompileRegex(ParseRegex(L"(a)\\1", true), true, RegexGroups::Kept, nullptr), L"aa"));
    EXPECT_FALSE(reach.Find(CompileRegex(ParseRegex(L"a", true), true, RegexGroups::Kept, nullptr), std::wstring(4000000, L'a')));
}

TEST(RegexReach, IsNotFoundWhereNestedLoopsWouldCostTooMuch) {
    const Stopwatch watch;
    std::wstring pattern = L"a{1000}";
    for (int i = 0; i < 45; ++i) pattern = L"(?:" + pattern + L"b?)*";
    for (int i = 0; i < 45; ++i) pattern = L"(?=" + pattern + L")a";
    RegexReach reach;
    EXPECT_FALSE(reach.Find(CompileRegex(ParseRegex(pattern, true), true, RegexGroups::Kept, nullptr), std::wstring(1000, L'a')));
    EXPECT_LT(watch.Seconds(), 5.0);  // far less without sanitizers
}

// ---- Hostile patterns, texts and formats ----

TEST(RegexReplacer, RoundsThatConsumeNothingGiveWayToThoseThatDo) {
    EXPECT_EQ(L"[ba][]", Replaced(L"(?:b?(?:|a))*", L"ba", L"[$&]"));
}

TEST(RegexReplacer, NestedRepetitionTakesLinearTime) {
    const Stopwatch watch;
    const std::wstring text(100000, L'a');
    EXPECT_EQ(text, Replaced(L"(a+)+b", text, L"#"));
    EXPECT_EQ(text, Replaced(L".*.*.*\\d", text, L"#"));
    EXPECT_EQ(L"##", Replaced(L"(?:a|a)*$", text, L"#"));
    EXPECT_EQ(text.size(), Replaced(L"(a*)*b|a", text, L"#").size());
    EXPECT_LT(watch.Seconds(), 20.0);  // far less without sanitizers
}

TEST(RegexReplacer, TextsTooLongForTheReachAreReplacedAllTheSame) {
    std::wstring text(1000000, L'x');
    text += L"12";
    EXPECT_EQ(std::wstring(1000000, L'x') + L"#", Replaced(L"[0-9]+", text, L"#"));
}

TEST(RegexReplacer, WorkWithoutEndIsAnError) {
    const Stopwatch watch;
    EXPECT_EQ(RegexErrorCode::Complexity, ErrorOf(L"(a+)+\\1$b", std::wstring(100, L'a'), L"#"));
    EXPECT_EQ(RegexErrorCode::Complexity, ErrorOf(L"(.*)(.*)(.*)(.*)\\1\\2\\3\\4x", std::wstring(5000, L'a'), L"#"));
    EXPECT_EQ(RegexErrorCode::Complexity, ErrorOf(L"a{100}b", std::wstring(3000000, L'a'), L"#"));
    EXPECT_EQ(RegexErrorCode::Stack, ErrorOf(L"(?:a|b)*c|", std::wstring(3000000, L'a'), L"#"));
    // Empty ways through one round of a loop, in the number of a power of two.
    std::wstring empty = L"(?:";
    for (int i = 0; i < 40; ++i) empty += L"(?:|)";
    EXPECT_EQ(RegexErrorCode::Complexity, ErrorOf(empty + L")*a", L"a", L"#"));
    EXPECT_LT(watch.Seconds(), 20.0);  // far less without sanitizers
}

TEST(RegexReplacer, ManyGroupsAtManyMatchesAreBounded) {
    std::wstring groups;
    for (int i = 0; i < 10000; ++i) groups += L"()";
    EXPECT_EQ(RegexErrorCode::Complexity, ErrorOf(groups, std::wstring(100000, L'a'), L"#"));
}

TEST(RegexReplacer, LongFormatsAtManyMatchesAreBounded) {
    std::wstring format;
    for (int i = 0; i < 100000; ++i) format += L"$9";
    EXPECT_EQ(RegexErrorCode::Complexity, ErrorOf(L"a", std::wstring(100000, L'a'), format));
}

TEST(RegexReplacer, ResultsMayExceedTheTextByFourMillionUnits) {
    EXPECT_EQ(RegexErrorCode::Space, ErrorOf(L"a", std::wstring(100000, L'a'), L"$'"));
    EXPECT_EQ(RegexErrorCode::Space, ErrorOf(L"", std::wstring(10, L'a'), std::wstring(1000000, L'b')));
    EXPECT_EQ(1u + 4194304u, Replaced(L"a", L"a", std::wstring(4194305, L'b')).size());
    EXPECT_EQ(RegexErrorCode::Space, ErrorOf(L"a", L"a", std::wstring(4194306, L'b')));
}

// ---- What expressions cost together ----

TEST(RegexBudget, IsSpentByEachExpressionAndEndsWithAnError) {
    RegexBudget budget{300'000};
    EXPECT_NO_THROW(RegexReplacer::Compile(L"a{20000}", true, &budget));
    const std::uint64_t left = budget.steps;
    EXPECT_LT(left, 280'000u);
    EXPECT_NO_THROW(Regex::Compile(L"a", true, &budget));
    EXPECT_LT(budget.steps, left);
    EXPECT_THROW(Regex::Compile(L"(){200000}", true, &budget), RegexError);
    try {
        Regex::Compile(L"(){99999}", true, &budget);
        Regex::Compile(L"(){99999}", true, &budget);
        Regex::Compile(L"(){99999}", true, &budget);
        ADD_FAILURE() << "no error";
    } catch (const RegexError& error) {
        EXPECT_EQ(RegexErrorCode::Complexity, error.code);
        EXPECT_STREQ("expressions are too complex together", error.message);
    }
}

TEST(RegexBudget, OrdinaryExpressionsTakeLessThanFourStepsAUnit) {
    for (const std::wstring pattern : {L"(a)*", L"a|b|c", L"abc", L"(?:a+)?b*"}) {
        std::wstring many;
        for (int i = 0; i < 1000; ++i) many += pattern;
        RegexBudget budget{4 * many.size()};
        EXPECT_NO_THROW(Regex::Compile(many, true, &budget)) << Shown(pattern);
    }
}

}  // namespace
}  // namespace Zorvex
