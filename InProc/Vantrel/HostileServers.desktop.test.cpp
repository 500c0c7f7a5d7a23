// Servers that fail, lie, throw or never end: every request ends well and leaves no reference behind.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Common/include/ComException.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "Platform/Simulated/Desktop.h"
#include "Platform/Simulated/System.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Chrome_WidgetWin_1", "title": "Main", "rectangle": [0, 0, 100, 100], "objects": {"window": {
    "id": "root", "role": "window", "name": "Main", "rectangle": [0, 0, 100, 100], "focus": "edit", "children": [
      {"id": "list", "role": "list", "name": "List", "rectangle": [0, 0, 50, 50], "selection": ["one", "two"], "children": [
        {"id": "one", "role": "list item", "name": "One", "simple": true, "rectangle": [0, 0, 50, 10]},
        {"id": "two", "role": "list item", "name": "Two", "simple": true, "rectangle": [0, 10, 50, 10]}]},
      {"id": "edit", "role": "editable text", "name": "Edit", "value": "Text", "focus": "self", "rectangle": [0, 50, 50, 20],
       "ia2": {"attributes": "tag:input;", "text": "Text", "uniqueId": 5}, "uia": {"automationId": "edit", "runtimeId": [1, 2]}},
      {"id": "row", "role": "row", "rectangle": [0, 70, 50, 10], "children": [{"id": "cell", "role": "cell", "name": "Cell"}]}]}}}]})";

std::vector<std::pair<std::string, std::function<void(DesktopFixture&)>>> Requests() {
    const auto element = [](DesktopFixture& desktop, const char* id) {
        return AAContainerCache::Instance().RegisterObject(
            {kClientPid, desktop.Window("main")}, AAElement{desktop.Window("main"), desktop.Element(id), desktop.Child(id)});
    };
    std::vector<std::pair<std::string, std::function<void(DesktopFixture&)>>> requests;
    for (const std::uint32_t flags : {1u, 2u, 7u, 11u})
        requests.emplace_back("FindElemFromPoint " + std::to_string(flags), [flags](DesktopFixture& desktop) {
            FindElemFromPointRequest request;
            request.clientPid = kClientPid;
            request.window = desktop.Window("main");
            request.point = {5, 55};
            request.flags = flags;
            request.relatedElement = RelatedElementKind::ClosestComboBox;
            TryCall(request);
        });
    requests.emplace_back("AreEqual", [element](DesktopFixture& desktop) {
        AreEqualRequest request;
        request.first = element(desktop, "edit");
        request.second = element(desktop, "row");
        TryCall(request);
    });
    for (const wchar_t* name : {L"name", L"text", L"aastate", L"automationid", L"labeledby", L"screenRect", L"rowName", L"virtualname"})
        requests.emplace_back("GetElemAttr", [element, name](DesktopFixture& desktop) {
            GetElemAttrRequest request;
            request.element = element(desktop, "edit");
            request.attributeName = name;
            TryCall(request);
        });
    for (const wchar_t* name : {L"accName", L"accState", L"accLocation", L"states", L"attributes", L"attributes.tag", L"uniqueID"})
        requests.emplace_back("GetNativeAttribute", [element, name](DesktopFixture& desktop) {
            GetNativeAttributeRequest request;
            request.element = element(desktop, "edit");
            request.attributeName = name;
            TryCall(request);
        });
    requests.emplace_back("GetSibling", [element](DesktopFixture& desktop) {
        GetSiblingRequest request;
        request.element = element(desktop, "edit");
        request.offset = 1;
        TryCall(request);
    });
    requests.emplace_back("GetFocusedElem", [](DesktopFixture& desktop) {
        GetFocusedElemRequest request;
        request.clientPid = kClientPid;
        request.window = desktop.Window("main");
        TryCall(request);
    });
    requests.emplace_back("FindSelectors", [](DesktopFixture& desktop) {
        FindSelectorsRequest request;
        request.root.hWnd = desktop.Window("main");
        request.root.clientPid = kClientPid;
        request.timeoutMilliseconds = 5000;
        auto first = std::make_shared<AaTag>();
        first->SetAttribute(L"role", std::make_shared<StringValue>(L"*"));
        auto second = std::make_shared<AaTag>();
        second->SetAttribute(L"name", std::make_shared<StringValue>(L"Tow", 3u, 0.1));
        second->SetAttribute(L"aastate", std::make_shared<StringValue>(L"*", 2u));
        request.selectors.emplace_back();
        request.selectors.back().tags = {first, second};
        request.selectors.back().options.acceptHidden = false;
        TryCall(request);
    });
    requests.emplace_back("GetAttrForElements", [element](DesktopFixture& desktop) {
        GetAttrForElementsRequest request;
        request.elements = {element(desktop, "one"), element(desktop, "edit")};
        request.attributeName = L"name";
        TryCall(request);
    });
    for (const std::uint32_t kind : {0u, 5u, 8u, 14u})
        requests.emplace_back("Scrape " + std::to_string(kind), [kind](DesktopFixture& desktop) {
            ScrapeRequest request;
            request.window = desktop.Window("main");
            request.windowKind = kind;
            request.rectangle = {0, 0, 100, 100};
            request.flags = CaptureClipped | CaptureHighlightInfo | CaptureIgnoreHidden;
            TryCall(request);
        });
    requests.emplace_back("GetFullText", [element](DesktopFixture& desktop) {
        GetFullTextRequest request;
        request.element = element(desktop, "list");
        request.flags = CaptureHighlightInfo | CaptureIgnoreOffscreen;
        TryCall(request);
        GetFullTextFromElementsRequest several;
        several.elements = {element(desktop, "one"), element(desktop, "row")};
        TryCall(several);
    });
    requests.emplace_back("GetWndsByAaName", [](DesktopFixture&) {
        GetWndsByAaNameRequest request;
        request.accessibleName = std::make_shared<StringValue>(L"*");
        TryCall(request);
    });
    for (const std::uint32_t flags : {AncestryKeepAllNodes | AncestryAllAttributes | AncestrySiblings | AncestryComputeIndex | AncestryCheckUniqueIndex,
                                      AncestryAaOnlyMode | AncestryStrictOwner | AncestryOwnerFallback | AncestryComputeIndex})
        requests.emplace_back("GetAncestryInfo " + std::to_string(flags), [element, flags](DesktopFixture& desktop) {
            GetAncestryInfoRequest request;
            request.target = element(desktop, flags & AncestryAaOnlyMode ? "cell" : "one");
            request.options.flags = flags;
            TryCall(request);
        });
    requests.emplace_back("selector", [element](DesktopFixture& desktop) {
        GetSelectorAttrListRequest attributes;
        attributes.element = element(desktop, "edit");
        TryCall(attributes);
        GetNextParentForAAHierarchyRequest parent;
        parent.element = element(desktop, "edit");
        TryCall(parent);
        GetElementIndexRequest index;
        index.ancestorWindow = desktop.Window("main");
        index.target = element(desktop, "edit");
        index.attributes[L"role"] = L"list";
        TryCall(index);
    });
    requests.emplace_back("FindElementWithRole", [](DesktopFixture& desktop) {
        FindElementWithRoleRequest request;
        request.window = desktop.Window("main");
        request.role = ROLE_SYSTEM_CELL;
        request.maximumDepth = 5;
        TryCall(request);
    });
    requests.emplace_back("windows", [element](DesktopFixture& desktop) {
        AaNameFromWindowRequest name;
        name.window = desktop.Window("main");
        TryCall(name);
        ShouldAddTitleToWndSelectorRequest title;
        title.window = desktop.Window("main");
        TryCall(title);
        GetObjectIdFromEventRequest event;
        event.clientPid = kClientPid;
        event.window = desktop.Window("main");
        event.childId = 1;
        TryCall(event);
        GetObjectIdFromWindowRequest fromWindow;
        fromWindow.clientPid = kClientPid;
        fromWindow.window = desktop.Window("main");
        TryCall(fromWindow);
        IsListViewItemRequest item;
        item.element = element(desktop, "one");
        TryCall(item);
        IsValidIdentifierRequest valid;
        valid.element = element(desktop, "one");
        TryCall(valid);
    });
    return requests;
}

// What may leave the export by its contract, and what a foreign object threw.
void RunGuarded(const std::function<void(DesktopFixture&)>& request, DesktopFixture& desktop) {
    try {
        request(desktop);
    } catch (const ComException&) {
    } catch (const Simulated::ServerFailure&) {
    }
}

TEST(HostileServers, AnyFaultAtAnyCallEndsWellAndLeavesNoReference) {
    std::vector<Simulated::Fault> kinds(8);
    kinds[0].result = E_FAIL;
    kinds[1].null = true;
    kinds[2].type = VT_I2;
    kinds[3].raise = true;
    kinds[4].count = -1;
    kinds[5].count = 0x7FFFFFFF;
    kinds[6].result = S_FALSE;
    kinds[7].type = VT_DISPATCH;
    for (const auto& [name, request] : Requests())
        for (std::size_t kind = 0; kind < kinds.size(); ++kind)
            for (unsigned at = 1; at < 400; ++at) {
                DesktopFixture desktop(kDesktop);
                Simulated::Fault fault = kinds[kind];
                fault.at = at;
                fault.times = 1;
                desktop.AddFault(fault);
                const int before = desktop.TotalCalls();
                RunGuarded(request, desktop);
                const int calls = desktop.TotalCalls() - before;
                desktop.ClearFaults();
                CacheCleaner::Release();
                ASSERT_EQ(desktop.OutstandingReferences(), 0) << name << ", kind " << kind << ", call " << at;
                if (calls < static_cast<int>(at)) break;
            }
}

TEST(HostileServers, EveryCallFailingEndsWell) {
    for (const HRESULT result : {E_FAIL, E_NOTIMPL, E_INVALIDARG, S_FALSE, S_OK}) {
        for (const auto& [name, request] : Requests()) {
            DesktopFixture desktop(kDesktop);
            Simulated::Fault fault;
            if (result == S_OK) fault.null = true;
            else fault.result = result;
            desktop.AddFault(fault);
            RunGuarded(request, desktop);
            desktop.ClearFaults();
            CacheCleaner::Release();
            ASSERT_EQ(desktop.OutstandingReferences(), 0) << name;
        }
    }
}

TEST(HostileServers, TreeThatIsARingEndsEveryRequest) {
    std::string ring = kDesktop;
    const std::string last = R"("name": "Cell")";
    ring.insert(ring.find(last) + last.size(), R"(, "children": [{"element": "root"}])");
    Simulated::SetClockTick(1);
    for (const auto& [name, request] : Requests()) {
        DesktopFixture desktop(ring);
        RunGuarded(request, desktop);
        CacheCleaner::Release();
        EXPECT_EQ(desktop.OutstandingReferences(), 0) << name;
    }
    DesktopFixture desktop(ring);
    FindElementWithRoleRequest absent;
    absent.window = desktop.Window("main");
    absent.role = ROLE_SYSTEM_CLOCK;
    absent.maximumDepth = -1;
    EXPECT_FALSE(Call(absent).found);
    Simulated::SetClockTick(0);
}

TEST(HostileServers, LyingCountsEndWell) {
    for (const LONG count : {-1, 999'999, 1'000'000, 0x7FFFFFFF})
        for (const auto& [name, request] : Requests()) {
            // A count just below the limit is believed, and costs its memory: one request of each road is enough.
            if (count == 999'999 && name != "FindSelectors" && name != "FindElemFromPoint 1") continue;
            DesktopFixture desktop(kDesktop);
            desktop.AddFault("root", {.call = "get_accChildCount", .count = count});
            RunGuarded(request, desktop);
            desktop.ClearFaults();
            CacheCleaner::Release();
            ASSERT_EQ(desktop.OutstandingReferences(), 0) << name << " with count " << count;
        }
}

FindSelectorsRequest SearchFor(DesktopFixture& desktop, const wchar_t* name, std::uint32_t timeout) {
    FindSelectorsRequest request;
    request.root.hWnd = desktop.Window("main");
    request.root.clientPid = kClientPid;
    request.timeoutMilliseconds = timeout;
    auto tag = std::make_shared<AaTag>();
    tag->SetAttribute(L"name", std::make_shared<StringValue>(name));
    request.selectors.emplace_back();
    request.selectors.back().tags = {tag};
    return request;
}

TEST(HostileServers, SearchOfAnEndlessTreeEndsByItsDeadlinePlusOneCall) {
    DesktopFixture desktop(R"({"windows": [{"id": "main", "class": "Main", "objects": {"window": {
        "id": "root", "role": "window", "children": [{"id": "deep", "role": "pane", "name": "deep", "endless": true}]}}}]})");
    desktop.AddFault("deep", {.call = "get_accName", .stall = 10});
    Simulated::SetClockTick(1);
    const ULONGLONG before = Simulated::ClockMilliseconds();
    const auto response = TryCall(SearchFor(desktop, L"nobody", 3000));
    EXPECT_LE(Simulated::ClockMilliseconds() - before, 3000u + 200u);
    Simulated::SetClockTick(0);
    ASSERT_TRUE(response && response->success);
    EXPECT_NE(response->results[0].error, nullptr);
    CacheCleaner::Release();
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(HostileServers, StallingCallMakesASearchLateByThatCallAlone) {
    DesktopFixture desktop(kDesktop);
    desktop.AddFault("edit", {.call = "get_accName", .stall = 60'000});
    const ULONGLONG before = Simulated::ClockMilliseconds();
    TryCall(SearchFor(desktop, L"nobody", 1000));
    EXPECT_LE(Simulated::ClockMilliseconds() - before, 61'000u);
    CacheCleaner::Release();
}

TEST(HostileServers, ElementRemovedInTheMiddleOfASearchIsSurvived) {
    DesktopFixture desktop(kDesktop);
    desktop.AddFault("list", {.call = "get_accName",
                              .actions = {{.kind = Simulated::Action::Kind::Remove, .target = "row"},
                                          {.kind = Simulated::Action::Kind::Remove, .target = "self"}}});
    TryCall(SearchFor(desktop, L"*", 1000));
    CacheCleaner::Release();
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(HostileServers, WindowDestroyedInTheMiddleOfASearchIsSurvived) {
    DesktopFixture desktop(kDesktop);
    desktop.AddFault("list", {.call = "get_accName", .actions = {{.kind = Simulated::Action::Kind::DestroyWindow, .target = "main"}}});
    const auto response = TryCall(SearchFor(desktop, L"*", 1000));
    ASSERT_TRUE(response);
    EXPECT_TRUE(response->results.empty() || response->results[0].results.empty());
    CacheCleaner::Release();
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

}  // namespace
}  // namespace Zorvex::Testing
