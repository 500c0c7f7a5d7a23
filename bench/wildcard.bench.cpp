// Wildcards: ours against the textbook's table of all prefixes.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"

namespace {

using namespace Zorvex;

bool TextbookMatch(std::wstring_view pattern, std::wstring_view text) {
    std::vector<char> row(text.size() + 1, 0), next(text.size() + 1);
    row[0] = 1;
    for (const wchar_t unit : pattern) {
        next[0] = row[0] && unit == L'*';
        for (std::size_t j = 0; j < text.size(); ++j) {
            next[j + 1] = unit == L'*' ? row[j + 1] || next[j] : row[j] && (unit == L'?' || unit == text[j]);
        }
        row.swap(next);
    }
    return row.back();
}

// The method that goes back to the last star, quick on honest texts and quadratic on others.
bool BacktrackingMatch(std::wstring_view pattern, std::wstring_view text) {
    std::size_t p = 0, t = 0, star = std::wstring_view::npos, mark = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == L'*') {
            star = p++;
            mark = t;
        } else if (p < pattern.size() && (pattern[p] == L'?' || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (star != std::wstring_view::npos) {
            p = star + 1;
            t = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == L'*') ++p;
    return p == pattern.size();
}

struct Case {
    std::wstring pattern;
    std::vector<std::wstring> texts;
};

// 0: titles of windows, 1: a text of 2,000 units that nearly holds the segment everywhere.
Case MakeCase(std::int64_t which) {
    Case made;
    std::mt19937 random(2);
    if (which == 0) {
        made.pattern = L"*Docu?ent*.txt - *pad";
        for (int i = 0; i < 64; ++i) {
            std::wstring name(random() % 10, L'x');
            made.texts.push_back(L"Work " + name + (i % 2 ? L"Document" : L"Dokument") + name + L".txt - Notepad");
        }
    } else {
        made.pattern = L"*" + std::wstring(50, L'a') + L"b*c*";
        for (int i = 0; i < 64; ++i) made.texts.push_back(std::wstring(1950 + random() % 50, L'a') + L"b");
    }
    return made;
}

template <class Match>
void Run(benchmark::State& state, Match match) {
    const Case made = MakeCase(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(match(made.pattern, made.texts[++i & 63]));
}

void WildcardTextbook(benchmark::State& state) { Run(state, TextbookMatch); }
void WildcardBacktracking(benchmark::State& state) { Run(state, BacktrackingMatch); }
void WildcardOurs(benchmark::State& state) {
    Run(state, [](std::wstring_view pattern, std::wstring_view text) { return WildcardMatch(pattern, text, true); });
}
void WildcardOursAnyCase(benchmark::State& state) {
    Run(state, [](std::wstring_view pattern, std::wstring_view text) { return WildcardMatch(pattern, text, false); });
}

BENCHMARK(WildcardTextbook)->Arg(0)->Arg(1);
BENCHMARK(WildcardBacktracking)->Arg(0)->Arg(1);
BENCHMARK(WildcardOurs)->Arg(0)->Arg(1);
BENCHMARK(WildcardOursAnyCase)->Arg(0)->Arg(1);

}  // namespace
