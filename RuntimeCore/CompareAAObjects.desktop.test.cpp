#include <gtest/gtest.h>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/TreeWalker/TreeWalker.h"
#include "RuntimeCore/CompareAAObjects.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

constexpr const char* Desktop = R"({"windows": [
    {"id": "main", "class": "Frame", "rectangle": [0,0,500,500], "objects": {"client": {"id": "client", "role": "client", "children": [
        {"id": "ok", "role": "push button", "name": "OK", "rectangle": [10,10,50,20]},
        {"id": "group", "role": "grouping", "children": [{"id": "item", "role": "list item", "name": "one", "simple": true}]}]}}},
    {"id": "other", "class": "Frame", "objects": {"client": {"id": "otherClient", "role": "client", "children": [
        {"id": "cancel", "role": "push button", "name": "Cancel", "rectangle": [10,10,50,20]}]}}}]})";

class IsDescendantOfWndTest : public ::testing::Test {
protected:
    DesktopFixture desktop{Desktop};
    LogCapture log;

    // 1 or 0 as found; -1 when the walk didn't run.
    int Find(const char* window, const char* element) {
        BOOL found = 2;
        const bool ran = IsDescendantOfWnd(desktop.Window(window), desktop.Element(element), desktop.Child(element), found);
        EXPECT_EQ(ran, found != 2);
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
        return ran ? found : -1;
    }
};

TEST_F(IsDescendantOfWndTest, FindsElementsOfTheWindowAlone) {
    EXPECT_EQ(Find("main", "ok"), 1);
    EXPECT_EQ(Find("main", "client"), 1);
    EXPECT_EQ(Find("main", "item"), 1);
    EXPECT_EQ(Find("main", "cancel"), 0);
    EXPECT_EQ(Find("other", "cancel"), 1);
    EXPECT_EQ(Find("other", "ok"), 0);
}

TEST_F(IsDescendantOfWndTest, InvalidArgumentsLeaveTheAnswerAlone) {
    BOOL found = 7;
    EXPECT_FALSE(IsDescendantOfWnd(nullptr, desktop.Element("ok"), CComVariant(0), found));
    EXPECT_FALSE(IsDescendantOfWnd(desktop.Window("main"), nullptr, CComVariant(0), found));
    EXPECT_FALSE(IsDescendantOfWnd(desktop.Window("main"), desktop.Element("ok"), CComVariant(L"0"), found));
    EXPECT_EQ(found, 7);
    EXPECT_EQ(log.Count("IsDescendantOfWnd: Invalid arguments"), 3u);
}

TEST_F(IsDescendantOfWndTest, AWindowWithoutAnObjectIsLogged) {
    for (const bool null : {false, true}) {
        log.Clear();
        desktop.ClearFaults();
        Simulated::Fault fault{.call = "AccessibleObjectFromWindow"};
        fault.null = null;
        if (!null) fault.result = E_FAIL;
        desktop.AddFault("main", fault);
        BOOL found = TRUE;
        EXPECT_FALSE(IsDescendantOfWnd(desktop.Window("main"), desktop.Element("ok"), desktop.Child("ok"), found));
        EXPECT_FALSE(found);
        EXPECT_EQ(log.Count("IsDescendantOfWnd: AccessibleObjectFromWindow failed"), 1u);
    }
}

TEST(IsDescendantOfWndInARing, GivesUpAfterAMillionElements) {
    // Each level has 20,000 elements, and the last of them leads to the next level.
    std::string simple;
    for (int id = 1; id < 20'000; ++id) simple += R"({"simple": true}, )";
    DesktopFixture desktop(R"({"windows": [{"id": "main", "class": "x", "objects": {"window": {"id": "ring", "children": [)" + simple +
                           R"({"element": "ring"}]}}}, {"id": "other", "class": "x"}]})");
    LogCapture log(L"ERROR");
    BOOL found = TRUE;
    EXPECT_TRUE(IsDescendantOfWnd(desktop.Window("main"), desktop.WindowObject("other"), CComVariant(30'000), found));
    EXPECT_FALSE(found);
    EXPECT_EQ(desktop.Calls("ring", "AccessibleChildren"), 51);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST_F(IsDescendantOfWndTest, AFaultAtAnyCallLeavesNoReference) {
    for (int kind = 0; kind < 3; ++kind)
        for (unsigned nth = 1; nth < 120; ++nth) {
            DesktopFixture fresh(Desktop);
            const CComPtr<IAccessible> target = fresh.Element("cancel");
            const long before = fresh.OutstandingReferences();
            Simulated::Fault fault{.at = nth, .times = 1};
            if (kind == 0) fault.result = E_FAIL;
            if (kind == 1) fault.null = true;
            if (kind == 2) fault.raise = true;
            fresh.AddFault(fault);
            BOOL found = FALSE;
            try {
                IsDescendantOfWnd(fresh.Window("main"), target, CComVariant(0), found);
            } catch (const Simulated::ServerFailure&) {
                EXPECT_EQ(kind, 2);
            }
            ASSERT_EQ(fresh.OutstandingReferences(), before) << "kind " << kind << " call " << nth;
        }
}

TEST(ElementWalksOnTheDesktop, AFaultAtAnyCallLeavesNoReference) {
    for (int kind = 0; kind < 3; ++kind)
        for (unsigned nth = 1; nth < 60; ++nth)
            for (int order = 0; order < 4; ++order) {
                DesktopFixture desktop(Desktop);
                const CComPtr<IAccessible> root = desktop.WindowObject("main");
                const long before = desktop.OutstandingReferences();
                Simulated::Fault fault{.at = nth, .times = 1};
                if (kind == 0) fault.result = E_FAIL;
                if (kind == 1) fault.null = true;
                if (kind == 2) fault.raise = true;
                desktop.AddFault(fault);
                try {
                    if (order == 3)
                        AAObjectWrapper::WalkDescendantsBfs(root, [](const AAObjectWrapper&) { return AATreeVisitResult::Continue; });
                    else
                        AATreeWalker(AANode{root}).FindFirst([](const AANode& node, unsigned) {
                            return node.childId.lVal == 1 ? AATreeWalker::Next::Stop : AATreeWalker::Next::Continue;
                        }, AATreeWalker::NoDepthLimit, static_cast<AATreeWalker::TraversalType>(order));
                } catch (const Simulated::ServerFailure&) {
                    EXPECT_EQ(kind, 2);
                }
                ASSERT_EQ(desktop.OutstandingReferences(), before) << "kind " << kind << " call " << nth << " order " << order;
            }
}

TEST(ElementChildrenOnTheDesktop, HostileCountsAreFailures) {
    for (LONG count : {-1, 1000000, 0x7FFFFFFF}) {
        DesktopFixture desktop(Desktop);
        desktop.AddFault("client", {.call = "get_accChildCount", .count = count});
        std::vector<AAObjectWrapper> children;
        EXPECT_FALSE(AAObjectWrapper::GetChildren(desktop.Element("client"), children));
        EXPECT_TRUE(children.empty());
    }
}

}  // namespace
}  // namespace Zorvex
