// What it costs to tell the ancestry of a leaf, against the bare walk that lists every element of its window and reads
// its role and name.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <memory>
#include <string>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "InProc/Vantrel/AncestryRequest.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "bench/BenchWindow.h"

namespace {

using namespace Zorvex;

constexpr std::uint32_t kClient = 4711;
constexpr int kLevels = 12;

// 12 panes one inside the other, each with 840 items beside the next; every third pane has a name. The leaf lies in the
// innermost, last of all: 10,093 elements.
class DeepDesktop {
public:
    DeepDesktop() {
        AAObjectWrapper::WalkDescendantsBfs(Root(), [&](const AAObjectWrapper& element) {
            ++m_elements;
            m_leaf = element;
            return AATreeVisitResult::Continue;
        });
        if (m_elements < 10'000) std::abort();
    }

    static DeepDesktop& Instance() {
        static DeepDesktop desktop;
        return desktop;
    }
    IAccessible* Root() const { return m_bench.Root(); }
    AAElement Leaf() const { return {m_bench.Window(), m_leaf.container, m_leaf.childId}; }
    std::size_t Elements() const { return m_elements; }
    unsigned Calls() const { return m_bench.Calls(); }

private:
    static Simulated::ElementPtr Tree() {
        auto root = Bench::NewElement(ROLE_SYSTEM_WINDOW);
        Simulated::ElementPtr level = root;
        for (int i = 0; i < kLevels; ++i) {
            for (int item = 0; item < 840; ++item) Bench::AddElement(*level, ROLE_SYSTEM_LISTITEM, L"Item number " + std::to_wstring(item));
            level = Bench::AddElement(*level, ROLE_SYSTEM_PANE, i % 3 == 0 ? L"Pane " + std::to_wstring(i) : std::wstring());
        }
        Bench::AddElement(*level, ROLE_SYSTEM_PUSHBUTTON, L"Save");
        return root;
    }

    Bench::BenchWindow m_bench{L"Dialog", {{OBJID_WINDOW, Tree()}}};
    AAObjectWrapper m_leaf;
    std::size_t m_elements = 0;
};

void Report(benchmark::State& state, unsigned callsBefore) {
    const unsigned calls = DeepDesktop::Instance().Calls() - callsBefore;
    state.counters["calls"] = static_cast<double>(calls) / static_cast<double>(state.iterations());
}

void BareWalkOfTheDeepTree(benchmark::State& state) {
    const DeepDesktop& desktop = DeepDesktop::Instance();
    const unsigned before = desktop.Calls();
    for (auto _ : state) {
        if (Bench::BareWalk(desktop.Root()) != desktop.Elements()) state.SkipWithError("the tree is another");
    }
    Report(state, before);
}
BENCHMARK(BareWalkOfTheDeepTree)->Unit(benchmark::kMillisecond);

void AncestryOfTheLeaf(benchmark::State& state, std::uint32_t flags) {
    const DeepDesktop& desktop = DeepDesktop::Instance();
    const AAObjectIdentifier leaf = AAContainerCache::Instance().RegisterObject({kClient, nullptr}, desktop.Leaf());
    const unsigned before = desktop.Calls();
    std::size_t nodes = 0;
    for (auto _ : state) {
        GetAncestryInfoRequest request;
        request.target = leaf;
        request.options.flags = flags;
        const auto response = GetAncestryInfoAAImpl(request);
        if (FAILED(response.result)) state.SkipWithError("the ancestry failed");
        nodes = response.nodes.size();
    }
    Report(state, before);
    state.counters["nodes"] = static_cast<double>(nodes);
}
BENCHMARK_CAPTURE(AncestryOfTheLeaf, Plain, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AncestryOfTheLeaf, Index, AncestryComputeIndex)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AncestryOfTheLeaf, IndexAndUniqueness, AncestryComputeIndex | AncestryCheckUniqueIndex)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AncestryOfTheLeaf, EveryNodeWithEverything,
                  AncestryComputeIndex | AncestryCheckUniqueIndex | AncestryKeepAllNodes | AncestryAllAttributes | AncestrySiblings)
    ->Unit(benchmark::kMillisecond);

// What the cache keeps of one registered container, beyond the object itself. One round: in a second one the allocator
// would use again what the first gave back.
void MemoryOfARegisteredContainer(benchmark::State& state) {
    const DeepDesktop& desktop = DeepDesktop::Instance();
    constexpr std::uint32_t client = kClient + 1;
    std::vector<CComPtr<IAccessible>> containers;
    AAObjectWrapper::WalkDescendantsBfs(desktop.Root(), [&](const AAObjectWrapper& element) {
        containers.push_back(element.container);
        return AATreeVisitResult::Continue;
    });
    std::size_t held = 0;
    for (auto _ : state) {
        const std::size_t before = ::mallinfo2().uordblks;
        for (const auto& container : containers) AAContainerCache::Instance().RegisterContainerObject(client, container);
        held = ::mallinfo2().uordblks - before;
        AAContainerCache::Instance().UnregisterAllContainersByClientPid(client);
    }
    state.counters["bytes/container"] = static_cast<double>(held) / static_cast<double>(containers.size());
}
BENCHMARK(MemoryOfARegisteredContainer)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
