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
#include "Platform/Simulated/Desktop.h"
#include "Platform/Simulated/InstalledDesktop.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace {

using namespace Zorvex;

constexpr std::uint32_t kClient = 4711;
constexpr int kLevels = 12;

// 12 panes one inside the other, each with 840 items beside the next; every third pane has a name. The leaf lies in the
// innermost, last of all: 10,093 elements.
class DeepDesktop {
public:
    DeepDesktop() {
        auto window = std::make_shared<Simulated::Window>();
        window->id = "main";
        window->className = L"Dialog";
        auto root = std::make_shared<Simulated::Element>();
        root->role = ROLE_SYSTEM_WINDOW;
        std::shared_ptr<Simulated::Element> level = root;
        for (int i = 0; i < kLevels; ++i) {
            for (int item = 0; item < 840; ++item) Add(*level, ROLE_SYSTEM_LISTITEM, L"Item number " + std::to_wstring(item));
            level = Add(*level, ROLE_SYSTEM_PANE, i % 3 == 0 ? L"Pane " + std::to_wstring(i) : std::wstring());
        }
        const auto leaf = Add(*level, ROLE_SYSTEM_PUSHBUTTON, L"Save");
        leaf->id = "leaf";
        window->objects[OBJID_WINDOW] = root;
        Simulated::DesktopModel model;
        model.windows.push_back(window);
        m_desktop = Simulated::Desktop::Build(std::move(model));
        m_installed = std::make_unique<Simulated::InstalledDesktop>(m_desktop);
        m_window = m_desktop->WindowById("main")->hwnd;
        ::AccessibleObjectFromWindow(m_window, static_cast<DWORD>(OBJID_WINDOW), IidOf<IAccessible>(), reinterpret_cast<void**>(&m_root));
        AAObjectWrapper::WalkDescendantsBfs(m_root, [&](const AAObjectWrapper& element) {
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
    IAccessible* Root() const { return m_root.p; }
    AAElement Leaf() const { return {m_window, m_leaf.container, m_leaf.childId}; }
    std::size_t Elements() const { return m_elements; }
    unsigned Calls() const { return m_desktop->TotalCalls(); }

private:
    std::shared_ptr<Simulated::Element> Add(Simulated::Element& parent, LONG role, std::wstring name) {
        auto element = std::make_shared<Simulated::Element>();
        element->role = role;
        element->name = std::move(name);
        parent.Add(element);
        return element;
    }

    std::shared_ptr<Simulated::Desktop> m_desktop;
    std::unique_ptr<Simulated::InstalledDesktop> m_installed;
    HWND m_window = nullptr;
    CComPtr<IAccessible> m_root;
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
        std::size_t elements = 0;
        AAObjectWrapper::WalkDescendantsBfs(desktop.Root(), [&](const AAObjectWrapper& element) {
            CComVariant role;
            CComBSTR name;
            element.container->get_accRole(element.childId, &role);
            element.container->get_accName(element.childId, &name);
            benchmark::DoNotOptimize(name.m_str);
            ++elements;
            return AATreeVisitResult::Continue;
        });
        if (elements != desktop.Elements()) state.SkipWithError("the tree is another");
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

// What the cache keeps of one registered container, beyond the object itself.
void MemoryOfARegisteredContainer(benchmark::State& state) {
    const DeepDesktop& desktop = DeepDesktop::Instance();
    std::size_t registered = 0, held = 0;
    for (auto _ : state) {
        std::vector<AAObjectWrapper> elements;
        AAObjectWrapper::WalkDescendantsBfs(desktop.Root(), [&](const AAObjectWrapper& element) {
            elements.push_back(element);
            return AATreeVisitResult::Continue;
        });
        constexpr std::uint32_t client = kClient + 1;
        const std::size_t before = ::mallinfo2().uordblks;
        for (const AAObjectWrapper& element : elements)
            AAContainerCache::Instance().RegisterContainerObject(client, element.container);
        held = ::mallinfo2().uordblks - before;
        registered = elements.size();
        AAContainerCache::Instance().UnregisterAllContainersByClientPid(client);
    }
    state.counters["bytes/container"] = static_cast<double>(held) / static_cast<double>(registered);
}
BENCHMARK(MemoryOfARegisteredContainer)->Unit(benchmark::kMillisecond);

}  // namespace
