// What the element search costs, against the bare walk that lists every element and reads its role and name. The
// simulated desktop answers fast, so that what is measured is mostly the search itself: in a live program each of
// these reads costs more, and the ratio comes closer to that of the calls made.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <ctime>
#include <deque>
#include <memory>
#include <string>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "RuntimeCore/Selectors/Search/AaSearch.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "bench/BenchWindow.h"

namespace {

using namespace Zorvex;
using Search::AaSearchResult;
using Search::SelectorEntry;

// 10 pages of 10 groups of 10 lists of 99 items: 100,110 elements.
class BigDesktop {
public:
    static BigDesktop& Instance() {
        static BigDesktop desktop;
        return desktop;
    }

    IAccessible* Client() const { return m_bench.Root(); }
    AaSearchResult Root() const { return AaSearchResult(CComPtr<IAccessible>(m_bench.Root()), CComVariant(CHILDID_SELF), m_bench.Window()); }
    unsigned Calls() const { return m_bench.Calls(); }

private:
    static Simulated::ElementPtr Add(Simulated::Element& parent, LONG role, const wchar_t* name, int number) {
        return Bench::AddElement(parent, role, name + std::to_wstring(number));
    }
    static Simulated::ElementPtr Tree() {
        auto client = Bench::NewElement(ROLE_SYSTEM_CLIENT);
        for (int page = 0; page < 10; ++page) {
            const auto pageElement = Add(*client, ROLE_SYSTEM_PROPERTYPAGE, L"Page ", page);
            for (int group = 0; group < 10; ++group) {
                const auto groupElement = Add(*pageElement, ROLE_SYSTEM_GROUPING, L"Group ", group);
                for (int list = 0; list < 10; ++list) {
                    const auto listElement = Add(*groupElement, ROLE_SYSTEM_LIST, L"List ", list);
                    for (int item = 0; item < 99; ++item) Add(*listElement, ROLE_SYSTEM_LISTITEM, L"Item number ", item);
                }
            }
        }
        return client;
    }

    Bench::BenchWindow m_bench{L"Dialog", {{OBJID_CLIENT, Tree()}}};
};

std::shared_ptr<ISelectorTag> Tag(const wchar_t* role, const wchar_t* name, std::uint32_t matchingType = MatchingTypeNormal, double level = 1.0) {
    auto tag = std::make_shared<AaTag>();
    tag->SetAttribute(L"role", std::make_shared<StringValue>(role));
    tag->SetAttribute(L"name", std::make_shared<StringValue>(name, matchingType, level));
    return tag;
}

SelectorEntry LastItem() {
    SelectorEntry entry;
    entry.tags = {Tag(L"property page", L"Page 9"), Tag(L"grouping", L"Group 9"), Tag(L"list", L"List 9"), Tag(L"list item", L"Item number 98")};
    return entry;
}

void Report(benchmark::State& state, unsigned callsBefore) {
    const unsigned calls = BigDesktop::Instance().Calls() - callsBefore;
    state.counters["calls"] = static_cast<double>(calls) / static_cast<double>(state.iterations());
}

void RunSearch(benchmark::State& state, const SelectorEntry& entry, std::size_t expected) {
    const BigDesktop& desktop = BigDesktop::Instance();
    const AaSearchResult root = desktop.Root();
    const unsigned before = desktop.Calls();
    for (auto _ : state) {
        std::vector<Search::AaSelectorResult> results;
        Search::Search(results, root, {entry}, 600'000);
        if (results[0].results.size() != expected) state.SkipWithError("the search found something else");
    }
    Report(state, before);
}

void BareWalk(benchmark::State& state) {
    const BigDesktop& desktop = BigDesktop::Instance();
    const unsigned before = desktop.Calls();
    for (auto _ : state)
        if (Bench::BareWalk(desktop.Client()) != 100'110) state.SkipWithError("the tree is another");
    Report(state, before);
}
BENCHMARK(BareWalk)->Unit(benchmark::kMillisecond);

// The element is the very last one, and every tag stays live to the end.
void FourTagsAllResults(benchmark::State& state) { RunSearch(state, LastItem(), 1); }
BENCHMARK(FourTagsAllResults)->Unit(benchmark::kMillisecond);

// With a limit of one each tag settles for its first match, and the other branches are not entered.
void FourTagsFirstResult(benchmark::State& state) {
    SelectorEntry entry = LastItem();
    entry.options.maxResults = 1;
    RunSearch(state, entry, 1);
}
BENCHMARK(FourTagsFirstResult)->Unit(benchmark::kMillisecond);

// Every element is accepted by some tag, 99,000 of them by the last.
void FourTagsThatFitEverything(benchmark::State& state) {
    SelectorEntry entry;
    entry.tags = {Tag(L"property page", L"Page *"), Tag(L"grouping", L"Group *"), Tag(L"list", L"List *"), Tag(L"list item", L"Item *")};
    entry.options.refreshLocation = false;
    RunSearch(state, entry, 99'000);
}
BENCHMARK(FourTagsThatFitEverything)->Unit(benchmark::kMillisecond);

// Fuzzy names, all candidates of all levels kept and ranked.
void FourFuzzyTags(benchmark::State& state) {
    SelectorEntry entry;
    entry.tags = {Tag(L"property page", L"Pge 9", MatchingTypeFuzzy, 0.3), Tag(L"grouping", L"Grup 9", MatchingTypeFuzzy, 0.3),
                  Tag(L"list", L"Lst 9", MatchingTypeFuzzy, 0.3), Tag(L"list item", L"Itm number 98", MatchingTypeFuzzy, 0.3)};
    entry.options.resultPolicy = Search::ResultPolicy::BestMatch;
    entry.options.maxResults = 1;
    RunSearch(state, entry, 1);
}
BENCHMARK(FourFuzzyTags)->Unit(benchmark::kMillisecond);

// Both in turn on the same desktop, so that what else the machine does meets both alike.
void SearchAgainstTheBareWalk(benchmark::State& state, const SelectorEntry& entry) {
    const BigDesktop& desktop = BigDesktop::Instance();
    const AaSearchResult root = desktop.Root();
    double walk = 0, search = 0;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        benchmark::DoNotOptimize(Bench::BareWalk(desktop.Client()));
        const std::clock_t middle = std::clock();
        std::vector<Search::AaSelectorResult> results;
        Search::Search(results, root, {entry}, 600'000);
        walk += static_cast<double>(middle - start);
        search += static_cast<double>(std::clock() - middle);
    }
    state.counters["times_the_walk"] = search / walk;
}
void FourTagsAgainstTheBareWalk(benchmark::State& state) { SearchAgainstTheBareWalk(state, LastItem()); }
BENCHMARK(FourTagsAgainstTheBareWalk)->Unit(benchmark::kMillisecond)->MinTime(2);

// The most that a search holds at once beyond the desktop itself, for an element.
void MemoryOfASearch(benchmark::State& state) {
    const BigDesktop& desktop = BigDesktop::Instance();
    const AaSearchResult root = desktop.Root();
    SelectorEntry entry;
    entry.tags = {Tag(L"*", L"*")};
    entry.options.refreshLocation = false;
    std::size_t held = 0;
    for (auto _ : state) {
        const std::size_t before = ::mallinfo2().uordblks;
        std::vector<Search::AaSelectorResult> results;
        Search::Search(results, root, {entry}, 600'000);
        held = ::mallinfo2().uordblks - before;
    }
    state.counters["bytes/result"] = static_cast<double>(held) / 100'110;
    state.counters["sizeof(AaSearchResult)"] = sizeof(AaSearchResult);
}
BENCHMARK(MemoryOfASearch)->Unit(benchmark::kMillisecond);

}  // namespace
