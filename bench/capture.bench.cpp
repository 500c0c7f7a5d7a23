// What the text of a window costs: one capture of 10,000 elements, against the bare walk that lists every element and
// reads its role, name and location.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ctime>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/TextCapture/WindowCapture.h"
#include "bench/BenchWindow.h"

namespace {

using namespace Zorvex;

constexpr int kGroups = 100, kItems = 99;
constexpr std::size_t kElements = kGroups * (kItems + 1);
// Meets every element and lies in none of them.
constexpr RECT kEverything{1, 1, 5'000, 5'000};

// A browser's window with 100 groups of 99 elements of the roles that windows are made of, each with a text on a line
// of its own, for a capture by roles as well as for one by IAccessible2.
class TextDesktop {
public:
    TextDesktop() {
        if (Walk() != kElements) std::abort();
    }

    static TextDesktop& Instance() {
        static TextDesktop desktop;
        return desktop;
    }

    unsigned Calls() const { return m_bench.Calls(); }

    std::size_t Walk() const {
        std::size_t elements = 0;
        AAObjectWrapper::WalkDescendantsBfs(m_bench.Root(), [&](const AAObjectWrapper& element) {
            CComVariant role;
            CComBSTR name;
            LONG left = 0, top = 0, width = 0, height = 0;
            element.container->get_accRole(element.childId, &role);
            element.container->get_accName(element.childId, &name);
            element.container->accLocation(&left, &top, &width, &height, element.childId);
            benchmark::DoNotOptimize(name.m_str);
            benchmark::DoNotOptimize(left);
            ++elements;
            return AATreeVisitResult::Continue;
        });
        return elements;
    }

    // The units of text.
    std::size_t Capture(enAAType type, DWORD flags) const {
        std::vector<HighlightInfo> lines;
        CString text;
        if (!DoCaptureAA(m_bench.Window(), type, kEverything, flags, lines, text)) std::abort();
        benchmark::DoNotOptimize(lines.data());
        return text.size();
    }

private:
    static void AddGroup(Simulated::Element& root, int group) {
        static constexpr LONG roles[] = {ROLE_SYSTEM_STATICTEXT, ROLE_SYSTEM_PUSHBUTTON,  ROLE_SYSTEM_LINK,
                                         ROLE_SYSTEM_LISTITEM,   ROLE_SYSTEM_CELL,        ROLE_SYSTEM_TEXT,
                                         ROLE_SYSTEM_CLIENT,     ROLE_SYSTEM_OUTLINEITEM, ROLE_SYSTEM_CHECKBUTTON};
        const auto groupElement =
            Add(root, ROLE_SYSTEM_GROUPING, L"Group " + std::to_wstring(group), {1, 1 + group * 40, 4'000, 40});
        for (int item = 0; item < kItems; ++item)
            Add(*groupElement, roles[item % std::size(roles)], L"Item number " + std::to_wstring(item),
                {1 + item * 40, 1 + group * 40, 40, 20});
    }

    static Simulated::ElementPtr Add(Simulated::Element& parent, LONG role, const std::wstring& name, const Simulated::Rectangle& place) {
        auto element = Bench::AddElement(parent, role, name);
        element->rectangle = place;
        element->EditDetails().ia2.emplace().text = name;
        return element;
    }

    static Simulated::ElementPtr Tree() {
        auto root = Bench::NewElement(ROLE_SYSTEM_WINDOW);
        root->rectangle = {1, 1, 4'000, 4'000};
        root->EditDetails().ia2.emplace();
        for (int group = 0; group < kGroups; ++group) AddGroup(*root, group);
        return root;
    }

    // The same tree behind both objects: captures by roles begin at the window, those of pages at the client area.
    Bench::BenchWindow m_bench{L"Chrome_WidgetWin_1", {{OBJID_WINDOW, Tree()}, {OBJID_CLIENT, Tree()}}};
};

double CpuSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

void BareWalkOfTheWindow(benchmark::State& state) {
    const TextDesktop& desktop = TextDesktop::Instance();
    const unsigned before = desktop.Calls();
    for (auto _ : state) benchmark::DoNotOptimize(desktop.Walk());
    state.counters["calls"] = static_cast<double>(desktop.Calls() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(BareWalkOfTheWindow)->Unit(benchmark::kMillisecond);

// Both in turn on the same desktop, so that what else the machine does meets both alike.
void CaptureAgainstTheBareWalk(benchmark::State& state, enAAType type, DWORD flags) {
    const TextDesktop& desktop = TextDesktop::Instance();
    double walk = 0, capture = 0;
    unsigned calls = 0;
    std::size_t units = 0;
    for (auto _ : state) {
        const double start = CpuSeconds();
        benchmark::DoNotOptimize(desktop.Walk());
        const double middle = CpuSeconds();
        const unsigned before = desktop.Calls();
        units = desktop.Capture(type, flags);
        calls += desktop.Calls() - before;
        walk += middle - start;
        capture += CpuSeconds() - middle;
    }
    state.counters["calls"] = static_cast<double>(calls) / static_cast<double>(state.iterations());
    state.counters["units"] = static_cast<double>(units);
    state.counters["times_the_walk"] = capture / walk;
}
BENCHMARK_CAPTURE(CaptureAgainstTheBareWalk, ByRoles, AA_TYPE_GENERIC, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CaptureAgainstTheBareWalk, ByRolesWithEverything, AA_TYPE_GENERIC,
                  CaptureClipped | CaptureHighlightInfo | CaptureIgnoreHidden | CaptureIgnoreOffscreen)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CaptureAgainstTheBareWalk, Page, AA_TYPE_CHROME_WIDGET, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CaptureAgainstTheBareWalk, PageClipped, AA_TYPE_CHROME_WIDGET, CaptureClipped)
    ->Unit(benchmark::kMillisecond);

}  // namespace
