#include "InProc/Vantrel/GenerationRequests.h"

#include <gtest/gtest.h>

#include "InProc/Vantrel/AAContainerCache.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Frame", "thread": 1, "objects": {"window": {"id": "root", "role": "window", "children": [
    {"id": "pane", "role": "pane", "name": "Pane", "children": [
      {"id": "ok", "role": "push button", "name": "OK", "help": "Closes", "ia2": {"text": "IA2"}, "rectangle": [0, 0, 9, 9]},
      {"id": "item", "role": "list item", "name": "Item", "simple": true},
      {"id": "second", "role": "push button", "name": "OK", "rectangle": [9, 0, 9, 9], "uia": {"automationId": "id", "labeledBy": "label"}},
      {"id": "guest", "role": "push button", "name": "Guest", "window": "inner"}]},
    {"id": "abroad", "role": "pane", "window": "alien", "children": [{"id": "local", "role": "push button", "window": "main"}]},
    {"id": "dialog", "role": "dialog", "children": [{"id": "inDialog", "role": "push button", "name": "Yes"}]}]}},
   "children": [
     {"id": "inner", "class": "Inner", "objects": {"window": {"id": "innerRoot", "role": "window", "children": [
       {"id": "innerDialog", "role": "dialog", "children": [{"id": "inInnerDialog", "role": "push button", "name": "Yes"}]}]}}},
     {"id": "alien", "class": "Alien", "thread": 2}]}]})";

class GenerationRequestsTest : public testing::Test {
protected:
    AAObjectIdentifier Identify(const char* id, const char* window = "main") {
        return AAContainerCache::Instance().RegisterObject({kClientPid, desktop.Window("main")},
                                                           AAElement{desktop.Window(window), desktop.Element(id), desktop.Child(id)});
    }
    AAObjectIdentifier Unknown() {
        AAObjectIdentifier identifier = Identify("ok");
        identifier.containerId += 1000;
        return identifier;
    }
    GetNextParentForAAHierarchyResponse Next(const AAObjectIdentifier& element, HierarchyMode mode = HierarchyMode::Mixed) {
        GetNextParentForAAHierarchyRequest request;
        request.element = element;
        request.mode = mode;
        return Call(request);
    }
    std::int32_t Index(const AAObjectIdentifier& ancestor, const AAObjectIdentifier& target, const AttributeTexts& attributes,
                       const char* window = "main") {
        GetElementIndexRequest request;
        request.ancestorWindow = window ? desktop.Window(window) : nullptr;
        request.ancestor = ancestor;
        request.target = target;
        request.attributes = attributes;
        return Call(request).index;
    }
    GetSelectorAttrListResponse Attributes(const AAObjectIdentifier& element, std::vector<CString> excluded = {}) {
        GetSelectorAttrListRequest request;
        request.element = element;
        request.excludedNames = std::move(excluded);
        return Call(request);
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    CacheCleaner cleaner;
};

// ---- GetSelectorAttrList

TEST_F(GenerationRequestsTest, AttributesOfAnElementComeWithoutThoseToLeaveOut) {
    const auto all = Attributes(Identify("ok"));
    EXPECT_TRUE(all.success);
    EXPECT_EQ(all.attributes, (AttributeTexts{{L"name", L"OK"}, {L"role", L"push button"}, {L"helpText", L"Closes"}, {L"text", L"OK"}}));
    const auto some = Attributes(Identify("ok"), {L"name", L"text", L"other"});
    EXPECT_TRUE(some.success);
    EXPECT_EQ(some.attributes, (AttributeTexts{{L"role", L"push button"}, {L"helpText", L"Closes"}}));
}

TEST_F(GenerationRequestsTest, AttributesOfABrowserElementAreReadThroughIAccessible2) {
    AAObjectIdentifier element = Identify("ok");
    element.isDomAria = 1;
    EXPECT_EQ(Attributes(element).attributes.at(L"text"), L"IA2");
}

TEST_F(GenerationRequestsTest, ElementWithoutAttributesIsStillASuccess) {
    for (const char* call : {"get_accName", "get_accRole", "get_accHelp", "get_accState"}) {
        Simulated::Fault fault{.call = call};
        fault.result = E_FAIL;
        desktop.AddFault("ok", fault);
    }
    const auto none = Attributes(Identify("ok"));
    EXPECT_TRUE(none.success);
    EXPECT_TRUE(none.attributes.empty());
}

TEST_F(GenerationRequestsTest, AttributesOfWhatIsNoElementAreNoSuccess) {
    AAObjectIdentifier windowAlone;
    windowAlone.hWnd = desktop.Window("main");
    for (const AAObjectIdentifier& identifier : {Unknown(), windowAlone, AAObjectIdentifier()}) {
        const auto none = Attributes(identifier);
        EXPECT_FALSE(none.success);
        EXPECT_TRUE(none.attributes.empty());
    }
    EXPECT_EQ(log.Count("GetAllSelectorAttributes: null acc object, return FALSE"), 3u);
}

// ---- GetNextParentForAAHierarchy

TEST_F(GenerationRequestsTest, ParentIsRegisteredForTheClientOfTheElement) {
    AAObjectIdentifier element = Identify("ok");
    element.originalWnd = desktop.Window("inner");
    const auto next = Next(element);
    EXPECT_NE(next.success, 0);
    EXPECT_EQ(next.parentWindow, desktop.Window("main"));
    EXPECT_EQ(next.useWindow, 0);
    EXPECT_EQ(next.parent.hWnd, desktop.Window("main"));
    EXPECT_EQ(next.parent.clientPid, kClientPid);
    EXPECT_EQ(next.parent.originalWnd, desktop.Window("inner"));
    EXPECT_EQ(next.parent.containerId, Identify("pane").containerId);
    EXPECT_EQ(next.parent.childId, CHILDID_SELF);
}

TEST_F(GenerationRequestsTest, ParentOfASimpleElementIsItsContainer) {
    const auto next = Next(Identify("item"));
    EXPECT_EQ(next.parent.containerId, Identify("pane").containerId);
    EXPECT_EQ(next.parent.childId, CHILDID_SELF);
}

TEST_F(GenerationRequestsTest, ModeOtherThanZeroStaysInTheAccessibleTree) {
    EXPECT_NE(Next(Identify("inInnerDialog", "inner")).useWindow, 0);
    for (const auto mode : {HierarchyMode::AaOnly, static_cast<HierarchyMode>(0x80)})
        EXPECT_EQ(Next(Identify("inInnerDialog", "inner"), mode).useWindow, 0);
    EXPECT_NE(Next(Identify("inDialog"), HierarchyMode::AaOnly).useWindow, 0);
}

TEST_F(GenerationRequestsTest, OwnerWindowIsTakenAsItIsWithoutAFallback) {
    Next(Identify("guest"));
    EXPECT_TRUE(log.Contains("bAllowFallbackToInitialOwner: 0"));
    EXPECT_FALSE(log.Contains("bAllowFallbackToInitialOwner: 1"));
}

TEST_F(GenerationRequestsTest, ParentInAnotherThreadIsTheIdentifierOfItsWindow) {
    const auto next = Next(Identify("local"));
    EXPECT_NE(next.success, 0);
    EXPECT_NE(next.useWindow, 0);
    EXPECT_EQ(next.parentWindow, desktop.Window("alien"));
    EXPECT_EQ(next.parent.hWnd, desktop.Window("alien"));
    EXPECT_EQ(next.parent.containerId, 0u);
    EXPECT_EQ(next.parent.clientPid, kClientPid);
}

TEST_F(GenerationRequestsTest, WhatIsNoElementHasNoParent) {
    AAObjectIdentifier windowAlone;
    windowAlone.hWnd = desktop.Window("main");
    for (const AAObjectIdentifier& identifier : {Unknown(), windowAlone, AAObjectIdentifier()}) {
        const auto next = Next(identifier);
        EXPECT_EQ(next.success, 0);
        EXPECT_EQ(next.parent.hWnd, nullptr);
        EXPECT_EQ(next.parent.clientPid, 0u);
        EXPECT_EQ(next.parentWindow, nullptr);
        EXPECT_EQ(next.useWindow, 0);
    }
}

// ---- GetElementIndex

TEST_F(GenerationRequestsTest, IndexCountsMatchesBelowTheAncestor) {
    const AttributeTexts ok{{L"name", L"ok"}};
    EXPECT_EQ(Index(Identify("root"), Identify("ok"), ok), 1);
    EXPECT_EQ(Index(Identify("root"), Identify("second"), ok), 2);
    EXPECT_EQ(Index(Identify("pane"), Identify("second"), ok), 2);
    EXPECT_EQ(Index(Identify("pane"), Identify("item"), ok), 2) << "the target counts always";
}

TEST_F(GenerationRequestsTest, IndexLooksAtEachOfTheFiveAttributesAndNoOther) {
    const AAObjectIdentifier pane = Identify("pane"), guest = Identify("guest");
    EXPECT_EQ(Index(pane, guest, {}), 4);
    EXPECT_EQ(Index(pane, guest, {{L"other", L"nothing"}, {L"Name", L"nothing"}}), 4);
    EXPECT_EQ(Index(pane, guest, {{L"name", L"Item"}}), 2);
    EXPECT_EQ(Index(pane, guest, {{L"role", L"push button"}}), 3);
    EXPECT_EQ(Index(pane, guest, {{L"automationid", L"i?"}}), 2);
    EXPECT_EQ(Index(pane, guest, {{L"labeledby", L"*"}}), 2);
    EXPECT_EQ(Index(pane, guest, {{L"virtualname", L"*"}}), 1);
}

TEST_F(GenerationRequestsTest, IndexWithoutAnAncestorIsBelowItsWindow) {
    AAObjectIdentifier windowAlone;
    windowAlone.hWnd = desktop.Window("inner");
    for (const AAObjectIdentifier& ancestor : {AAObjectIdentifier(), windowAlone}) {
        EXPECT_EQ(Index(ancestor, Identify("second"), {{L"name", L"OK"}}), 2);
        EXPECT_EQ(Index(ancestor, Identify("inInnerDialog"), {{L"role", L"dialog"}}, "inner"), 2);
    }
}

TEST_F(GenerationRequestsTest, IndexOfAFailedLookupIsMinusOne) {
    const AttributeTexts ok{{L"name", L"OK"}};
    EXPECT_EQ(Index(Identify("root"), Unknown(), ok), -1);
    EXPECT_EQ(Index(Unknown(), Identify("ok"), ok), -1);
    EXPECT_EQ(Index(Identify("root"), AAObjectIdentifier(), ok), -1);
    EXPECT_EQ(Index(Identify("root"), Identify("ok"), ok, nullptr), -1);
    EXPECT_EQ(Index(Identify("dialog"), Identify("ok"), ok), -1) << "not below it";
    EXPECT_EQ(Index(Identify("root"), Identify("ok"), ok), 1);
}

TEST_F(GenerationRequestsTest, IndexBelowAnAncestorWhoseWindowIsGoneIsMinusOne) {
    const AAObjectIdentifier ancestor = Identify("innerDialog", "inner"), target = Identify("inDialog");
    desktop.DestroyWindow("inner");
    EXPECT_EQ(Index(ancestor, target, {}), -1);
}

// ---- Hostile servers

TEST(GenerationRequestsOnHostileServers, FaultAtAnyCallLeavesNoReference) {
    for (const int kind : {0, 1})
        for (unsigned nth = 1;; ++nth) {
            DesktopFixture desktop(kDesktop);
            {
                CacheCleaner cleaner;
                const auto identify = [&](const char* id) {
                    return AAContainerCache::Instance().RegisterObject(
                        {kClientPid, nullptr}, AAElement{desktop.Window("main"), desktop.Element(id), desktop.Child(id)});
                };
                GetSelectorAttrListRequest attributes;
                attributes.element = identify("second");
                GetNextParentForAAHierarchyRequest next;
                next.element = identify("guest");
                GetElementIndexRequest index;
                index.ancestorWindow = desktop.Window("main");
                index.ancestor = identify("root");
                index.target = identify("second");
                index.attributes = {{L"name", L"OK"}, {L"automationid", L"*"}};
                Simulated::Fault fault{.at = nth, .times = 1};
                if (kind == 0) fault.result = E_FAIL;
                if (kind == 1) fault.null = true;
                desktop.AddFault(fault);
                EXPECT_TRUE(TryCall(attributes).has_value());
                EXPECT_TRUE(TryCall(next).has_value());
                EXPECT_TRUE(TryCall(index).has_value());
                desktop.ClearFaults();
            }
            ASSERT_EQ(desktop.OutstandingReferences(), 0) << "kind " << kind << " call " << nth;
            if (desktop.TotalCalls() < static_cast<int>(nth)) break;
        }
}

}  // namespace
}  // namespace Zorvex::Testing
