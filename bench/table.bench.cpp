// What a table costs to extract: one request for 1,000 rows of 20 columns, against the bare walk that lists every element
// of the table and reads its role and name; and how time grows from 100 to 10,000 rows.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "InProc/Vantrel/ExtractTable.h"
#include "bench/BenchWindow.h"

namespace {

using namespace Zorvex;

constexpr int kColumns = 20;
constexpr std::uint32_t kClient = 4711;

// A browser's page with a table: a row of headers, then rows of cells, each with a text of its own below it.
class TableDesktop {
public:
    explicit TableDesktop(int rows) : m_bench(L"MozillaWindowClass", {{OBJID_CLIENT, Tree(rows)}}) {
        m_request.element = AAContainerCache::Instance().RegisterObject(
            {kClient, m_bench.Window()}, AAElement{m_bench.Window(), CComPtr<IAccessible>(Table()), CComVariant(CHILDID_SELF)});
        m_request.maxRows = rows;
    }
    ~TableDesktop() { AAContainerCache::Instance().UnregisterAllContainersByClientPid(kClient); }

    IAccessible* Table() const { return m_bench.Root(); }
    const ExtractTableRequest& Request() const { return m_request; }
    unsigned Calls() const { return m_bench.Calls(); }

private:
    static Simulated::ElementPtr Tree(int rows) {
        auto table = Bench::NewElement(ROLE_SYSTEM_TABLE);
        for (int row = 0; row <= rows; ++row) {
            const auto rowElement = Bench::AddElement(*table, ROLE_SYSTEM_ROW, L"");
            for (int column = 0; column < kColumns; ++column) {
                const std::wstring text = L"Text " + std::to_wstring(row) + L", " + std::to_wstring(column);
                const auto cell = Bench::AddElement(*rowElement, row == 0 ? ROLE_SYSTEM_COLUMNHEADER : ROLE_SYSTEM_CELL, text);
                Bench::AddElement(*cell, ROLE_SYSTEM_STATICTEXT, text);
            }
        }
        return table;
    }

    Bench::BenchWindow m_bench;
    ExtractTableRequest m_request;
};

std::size_t ExtractWhole(const TableDesktop& desktop) {
    const ExtractTableResponse response = ExtractTableImpl(desktop.Request());
    if (!response.success) std::abort();
    return response.xml.size();
}

void TableBareWalk(benchmark::State& state) {
    const TableDesktop desktop(static_cast<int>(state.range(0)));
    const unsigned before = desktop.Calls();
    for (auto _ : state) benchmark::DoNotOptimize(Bench::BareWalk(desktop.Table()));
    state.counters["calls"] = static_cast<double>(desktop.Calls() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(TableBareWalk)->Arg(1'000)->Unit(benchmark::kMillisecond);

void TableToXml(benchmark::State& state) {
    const TableDesktop desktop(static_cast<int>(state.range(0)));
    const unsigned before = desktop.Calls();
    std::size_t units = 0;
    for (auto _ : state) units = ExtractWhole(desktop);
    state.counters["calls"] = static_cast<double>(desktop.Calls() - before) / static_cast<double>(state.iterations());
    state.counters["ns/unit"] = benchmark::Counter(static_cast<double>(units) * static_cast<double>(state.iterations()),
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(TableToXml)->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

double CpuSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

// Both in turn on the same desktop, so that what else the machine does meets both alike.
void TableAgainstTheBareWalk(benchmark::State& state) {
    const TableDesktop desktop(1'000);
    double walk = 0, table = 0;
    for (auto _ : state) {
        const double start = CpuSeconds();
        benchmark::DoNotOptimize(Bench::BareWalk(desktop.Table()));
        const double middle = CpuSeconds();
        benchmark::DoNotOptimize(ExtractWhole(desktop));
        walk += middle - start;
        table += CpuSeconds() - middle;
    }
    state.counters["times_the_walk"] = table / walk;
}
BENCHMARK(TableAgainstTheBareWalk)->Unit(benchmark::kMillisecond);

// 1 means that a hundred times the rows take a hundred times as long.
void TableGrowth(benchmark::State& state) {
    double small = 0, large = 0;
    {
        const TableDesktop desktop(100);
        const double start = CpuSeconds();
        for (int i = 0; i < 100; ++i) benchmark::DoNotOptimize(ExtractWhole(desktop));
        small = CpuSeconds() - start;
    }
    const TableDesktop desktop(10'000);
    for (auto _ : state) {
        const double start = CpuSeconds();
        benchmark::DoNotOptimize(ExtractWhole(desktop));
        large += CpuSeconds() - start;
    }
    state.counters["growth"] = large / static_cast<double>(state.iterations()) / small;
}
BENCHMARK(TableGrowth)->Unit(benchmark::kMillisecond);

}  // namespace
