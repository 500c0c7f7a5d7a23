// The requests that act on elements, against servers that fail, lie or throw at any of their calls.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Common/include/ComException.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/RegisteredElement.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [
  {"id": "java", "class": "CefBrowserWindow", "children": [
    {"id": "page", "class": "Chrome_WidgetWin_1", "objects": {"client": {"children": [
      {"id": "combo", "role": "combo box", "defaultAction": "open", "state": ["collapsed", "offscreen"], "ia2": {},
       "action": [{"clear": ["collapsed"], "add": ["expanded"]}],
       "faults": [{"call": "scrollTo", "do": [{"clear": ["offscreen"]}]}],
       "children": [{"role": "list"}]},
      {"id": "open", "role": "combo box", "defaultAction": "open", "state": ["expanded"], "children": [
        {"role": "list", "children": [{"role": "list item", "name": "One"}]}]},
      {"id": "edit", "role": "editable text", "value": "Text"}]}}}]},
  {"id": "box", "class": "Button", "objects": {"client": {"id": "check", "role": "check box", "action": [{"toggle": ["checked"]}]}}}]})";

using Requests = std::vector<std::pair<std::string, std::function<void(DesktopFixture&)>>>;

Requests AllRequests() {
    const auto page = [](DesktopFixture& desktop, const char* id) { return Register(desktop, "page", id); };
    const auto box = [](DesktopFixture& desktop) { return WindowIdentifier(desktop.Window("box")); };
    return {{"SetFocus", [=](auto& desktop) { TryCall(SetFocusRequest{{page(desktop, "edit")}}); }},
            {"SetFocus, window", [=](auto& desktop) { TryCall(SetFocusRequest{{box(desktop)}}); }},
            {"DoDefaultAction", [=](auto& desktop) { TryCall(DoDefaultActionRequest{{page(desktop, "combo")}}); }},
            {"ScrollIntoView", [=](auto& desktop) { TryCall(ScrollIntoViewRequest{{page(desktop, "combo")}}); }},
            {"WriteText", [=](auto& desktop) { TryCall(WriteTextRequest{page(desktop, "edit"), L"New"}); }},
            {"GetIsChecked", [=](auto& desktop) { TryCall(GetIsCheckedRequest{{box(desktop)}}); }},
            {"SetIsChecked", [=](auto& desktop) { TryCall(SetIsCheckedRequest{box(desktop), true}); }},
            {"ExpandDomAriaCombo", [=](auto& desktop) { TryCall(ExpandDomAriaComboRequest{page(desktop, "combo"), true}); }},
            {"ExpandDomAriaCombo, open", [=](auto& desktop) { TryCall(ExpandDomAriaComboRequest{page(desktop, "open"), true}); }},
            {"ExpandDomAriaCombo, collapse", [=](auto& desktop) { TryCall(ExpandDomAriaComboRequest{page(desktop, "open"), false}); }}};
}

// What may leave the export by its contract, and what a foreign object threw.
void RunGuarded(const std::function<void(DesktopFixture&)>& request, DesktopFixture& desktop) {
    try {
        request(desktop);
    } catch (const ComException&) {
    } catch (const Simulated::ServerFailure&) {
    }
}

std::vector<Simulated::Fault> Kinds() {
    std::vector<Simulated::Fault> kinds(9);
    kinds[0].result = E_FAIL;
    kinds[1].null = true;
    kinds[2].type = VT_I2;
    kinds[3].raise = true;
    kinds[4].count = -1;
    kinds[5].count = 0x7FFFFFFF;
    kinds[6].result = S_FALSE;
    kinds[7].type = VT_DISPATCH;
    kinds[8].type = VT_BSTR;
    return kinds;
}

TEST(HostileActions, AnyFaultAtAnyCallEndsWellAndInTimeAndLeavesNoReference) {
    const std::vector<Simulated::Fault> kinds = Kinds();
    for (const auto& [name, request] : AllRequests())
        for (std::size_t kind = 0; kind < kinds.size(); ++kind)
            for (unsigned at = 1; at < 400; ++at) {
                DesktopFixture desktop(kDesktop);
                Simulated::Fault fault = kinds[kind];
                fault.at = at;
                fault.times = 1;
                desktop.AddFault(fault);
                const int before = desktop.TotalCalls();
                const ULONGLONG slept = Simulated::MillisecondsSlept();
                RunGuarded(request, desktop);
                const int calls = desktop.TotalCalls() - before;
                // Two waits, one behind the other.
                EXPECT_LE(Simulated::MillisecondsSlept() - slept, 6'000u) << name << ", kind " << kind << ", call " << at;
                desktop.ClearFaults();
                CacheCleaner::Release();
                ASSERT_EQ(desktop.OutstandingReferences(), 0) << name << ", kind " << kind << ", call " << at;
                if (calls < static_cast<int>(at)) break;
            }
}

TEST(HostileActions, FaultsOfWindowsEndWellAndLeaveNoReference) {
    for (const char* window : {"java", "page", "box"})
        for (const auto& kind : Kinds())
            for (const auto& [name, request] : AllRequests()) {
                if (kind.raise) continue;  // a window's own calls are the platform's
                DesktopFixture desktop(kDesktop);
                desktop.AddFault(window, kind);
                RunGuarded(request, desktop);
                desktop.ClearFaults();
                CacheCleaner::Release();
                ASSERT_EQ(desktop.OutstandingReferences(), 0) << name;
            }
}

TEST(HostileActions, EveryCallFailingEndsWell) {
    for (const auto& kind : Kinds())
        for (const auto& [name, request] : AllRequests()) {
            DesktopFixture desktop(kDesktop);
            desktop.AddFault(kind);
            RunGuarded(request, desktop);
            desktop.ClearFaults();
            CacheCleaner::Release();
            ASSERT_EQ(desktop.OutstandingReferences(), 0) << name;
        }
}

}  // namespace
}  // namespace Zorvex::Testing
