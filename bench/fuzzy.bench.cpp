// Resemblance of texts: ours against the plain method with one row of the distance table.
#include <benchmark/benchmark.h>

#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/CommonSubsequence.h"
#include "RuntimeCore/Selectors/ValueMatcher/FuzzyRatio.h"

namespace {

using namespace Zorvex;

// Insertion and deletion cost 1, substitution 2.
int PlainDistance(std::wstring_view x, std::wstring_view y) {
    while (!x.empty() && !y.empty() && x.front() == y.front()) x.remove_prefix(1), y.remove_prefix(1);
    while (!x.empty() && !y.empty() && x.back() == y.back()) x.remove_suffix(1), y.remove_suffix(1);
    if (x.empty() || y.empty()) return static_cast<int>(x.size() + y.size());
    if (x.size() > y.size()) std::swap(x, y);
    std::vector<int> row(y.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i + 1);
        for (std::size_t j = 0; j < y.size(); ++j) {
            const int above = row[j + 1];
            row[j + 1] = std::min({above + 1, row[j] + 1, diagonal + (x[i] == y[j] ? 0 : 2)});
            diagonal = above;
        }
    }
    return row.back();
}

std::wstring RandomName(std::mt19937& random, std::size_t length) {
    static const std::wstring s_units = L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLM0123456789    .-";
    std::wstring text;
    for (std::size_t i = 0; i < length; ++i) text += s_units[random() % s_units.size()];
    return text;
}

std::vector<std::wstring> RandomNames(std::size_t length) {
    std::mt19937 random(1);
    std::vector<std::wstring> names;
    for (int i = 0; i < 256; ++i) names.push_back(RandomName(random, length));
    return names;
}

void DistancePlain(benchmark::State& state) {
    const auto names = RandomNames(static_cast<std::size_t>(state.range(0)));
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(PlainDistance(names[0], names[++i & 255]));
}

// One text against many, its bit sets at hand.
void DistanceOurs(benchmark::State& state) {
    const auto names = RandomNames(static_cast<std::size_t>(state.range(0)));
    CommonSubsequence common;
    common.Assign(names[0]);
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(common.Length(names[++i & 255]));
}

// The bit sets made anew for each comparison.
void DistanceOursUnprepared(benchmark::State& state) {
    const auto names = RandomNames(static_cast<std::size_t>(state.range(0)));
    CommonSubsequence common;
    std::size_t i = 0;
    for (auto _ : state) {
        common.Assign(names[0]);
        benchmark::DoNotOptimize(common.Length(names[++i & 255]));
    }
}

// Normalise, sort words, both ratios.
void WholeComparison(benchmark::State& state) {
    const auto names = RandomNames(static_cast<std::size_t>(state.range(0)));
    FuzzyPattern pattern;
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(pattern.Ratio(names[0], names[++i & 255]));
}

BENCHMARK(DistancePlain)->Arg(8)->Arg(32)->Arg(64)->Arg(256)->Arg(2000);
BENCHMARK(DistanceOurs)->Arg(8)->Arg(32)->Arg(64)->Arg(256)->Arg(2000);
BENCHMARK(DistanceOursUnprepared)->Arg(8)->Arg(32)->Arg(64)->Arg(256)->Arg(2000);
BENCHMARK(WholeComparison)->Arg(8)->Arg(32)->Arg(64)->Arg(256)->Arg(2000);

}  // namespace
