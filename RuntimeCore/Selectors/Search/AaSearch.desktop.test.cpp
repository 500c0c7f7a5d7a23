#include "RuntimeCore/Selectors/Search/AaSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Platform/Simulated/System.h"
#include "RuntimeCore/Selectors/Search/AaAttributeAccessPolicy.h"
#include "RuntimeCore/Selectors/Search/OwnerWindow.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Search {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

HWND RenewOwnerWindow(HWND current, IAccessible* accessible) {
    OwnerWindow owner(current);
    owner.Renew(accessible);
    return owner;
}

constexpr const char* kDialog = R"({ "windows": [ { "id": "main", "class": "Dialog", "title": "Settings", "objects": { "client": {
  "id": "client", "children": [
    { "id": "page", "role": "property page", "name": "General", "rectangle": [0,0,300,200], "children": [
      { "id": "ok", "role": "push button", "name": "OK", "rectangle": [10,10,80,20], "state": ["focusable"], "help": "Closes" },
      { "id": "cancel", "role": "push button", "name": "Cancel", "rectangle": [100,10,80,20] },
      { "id": "label", "role": "text", "name": "Name:", "simple": true, "rectangle": [10,40,80,20] } ] },
    { "id": "off", "role": "push button", "name": "Far", "state": ["offscreen"], "rectangle": [5000,0,80,20] },
    { "id": "flat", "role": "push button", "name": "Flat", "rectangle": [10,10,0,0] } ] } } } ] })";

std::shared_ptr<AaTag> Tag(const wchar_t* role, const wchar_t* name = nullptr) {
    auto tag = std::make_shared<AaTag>();
    if (role) tag->SetAttribute(L"role", std::make_shared<StringValue>(role));
    if (name) tag->SetAttribute(L"name", std::make_shared<StringValue>(name));
    return tag;
}

SelectorEntry Entry(std::initializer_list<std::shared_ptr<ISelectorTag>> tags) {
    SelectorEntry entry;
    entry.tags = tags;
    return entry;
}

// From the client object of the window "main".
std::vector<AaSelectorResult> SearchDialog(const DesktopFixture& desktop, const std::vector<SelectorEntry>& entries, std::uint32_t timeoutMs = 10'000) {
    std::vector<AaSelectorResult> results;
    const AaSearchResult root(desktop.ClientObject("main"), CComVariant(CHILDID_SELF), desktop.Window("main"));
    Search(results, root, entries, timeoutMs);
    return results;
}

AaSearchResult ResultOf(const DesktopFixture& desktop, const char* id) {
    return AaSearchResult(desktop.Element(id), desktop.Child(id), desktop.Window("main"));
}

// ---- The search as a whole ----

TEST(AaSearch, FindsAnElementByAChainOfTags) {
    const DesktopFixture desktop(kDialog);
    const auto results = SearchDialog(desktop, {Entry({Tag(L"property page", L"Gen*"), Tag(L"push button", L"Cancel")})});
    ASSERT_EQ(results.size(), 1u);
    ASSERT_EQ(results[0].results.size(), 1u);
    const AaSearchResult& found = results[0].results[0];
    EXPECT_EQ(found.accessible.p, desktop.Element("cancel").p);
    EXPECT_EQ(found.ownerWindow, desktop.Window("main"));
    EXPECT_EQ(found.rectangle.left, 100);
    EXPECT_EQ(found.rectangle.right, 180);
    EXPECT_EQ(found.score, 1.0);
    EXPECT_EQ(found.stats.count, 4u);
    EXPECT_EQ(results[0].error, nullptr);
}

TEST(AaSearch, ASimpleElementIsFoundUnderItsChildIdAndNotEntered) {
    const DesktopFixture desktop(kDialog);
    const auto results = SearchDialog(desktop, {Entry({Tag(L"static text"), Tag(L"*")}), Entry({Tag(nullptr, L"Name:")})});
    EXPECT_NE(results[0].error, nullptr);
    ASSERT_EQ(results[1].results.size(), 1u);
    EXPECT_EQ(results[1].results[0].accessible.p, desktop.Element("page").p);
    EXPECT_EQ(results[1].results[0].child.lVal, 3);
    EXPECT_EQ(results[1].results[0].rectangle.top, 40);
}

TEST(AaSearch, ABadRegularExpressionIsLoggedOnceFindsNothingAndStopsNoOtherSelector) {
    const DesktopFixture desktop(kDialog);
    LogCapture log;
    auto bad = Tag(nullptr, L"(");
    bad->GetAttribute(L"name")->SetMatchingType(MatchingTypeRegex);
    const auto results = SearchDialog(desktop, {Entry({bad}), Entry({Tag(nullptr, L"Flat")})});
    ASSERT_EQ(results.size(), 2u);
    EXPECT_TRUE(results[0].results.empty());
    EXPECT_NE(results[0].error, nullptr);
    ASSERT_EQ(results[1].results.size(), 1u);
    EXPECT_EQ(results[1].results[0].accessible.p, desktop.Element("flat").p);
    EXPECT_EQ(log.Count("Cannot compile regex pattern"), 1u);
    EXPECT_GT(log.Count("RegEx match result for target"), 5u);
}

TEST(AaSearch, AnAttributeThatTwoSelectorsTestIsReadOnceForEachElement) {
    const DesktopFixture desktop(kDialog);
    SearchDialog(desktop, {Entry({Tag(L"nowhere")})});
    const int once = desktop.Calls("get_accRole");
    SearchDialog(desktop, {Entry({Tag(L"nowhere")}), Entry({Tag(L"nowhere else")}), Entry({Tag(L"nothing")})});
    EXPECT_EQ(desktop.Calls("get_accRole"), 2 * once);
}

TEST(AaSearch, OnlyTheAttributesThatAreTestedAreRead) {
    const DesktopFixture desktop(kDialog);
    SearchDialog(desktop, {Entry({Tag(L"push button", L"OK")})});
    EXPECT_EQ(desktop.Calls("page", "get_accName"), 0);
    EXPECT_EQ(desktop.Calls("cancel", "get_accName"), 1);
    EXPECT_EQ(desktop.Calls("cancel", "get_accValue"), 0);
    EXPECT_EQ(desktop.Calls("cancel", "accLocation"), 0);
    EXPECT_EQ(desktop.Calls("cancel", "get_accState"), 0);
    EXPECT_EQ(desktop.Calls("ok", "accLocation"), 1);
}

TEST(AaSearch, LetsGoOfEveryReference) {
    const DesktopFixture desktop(kDialog);
    {
        auto entry = Entry({Tag(L"*"), Tag(L"*")});
        entry.options.keepIntermediateAlways = true;
        const auto results = SearchDialog(desktop, {entry, Entry({Tag(L"nowhere")})});
        EXPECT_GT(desktop.OutstandingReferences(), 0);
    }
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(AaSearch, ADestroyedWindowLeavesTheSearchWithoutResultsButNotWithoutAnEnd) {
    DesktopFixture desktop(kDialog);
    std::vector<AaSelectorResult> results;
    {
        const AaSearchResult root(desktop.ClientObject("main"), CComVariant(CHILDID_SELF), desktop.Window("main"));
        desktop.DestroyWindow("main");
        Search(results, root, {Entry({Tag(L"push button")})}, 1000);
    }
    ASSERT_EQ(results.size(), 1u);
    EXPECT_TRUE(results[0].results.empty());
    EXPECT_NE(results[0].error, nullptr);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

// ---- The deadline ----

TEST(AaSearch, WithNoTimeTheChildrenAreListedButNoneIsRead) {
    const DesktopFixture desktop(kDialog);
    const auto results = SearchDialog(desktop, {Entry({Tag(L"push button")})}, 0);
    EXPECT_NE(results[0].error, nullptr);
    EXPECT_EQ(desktop.Calls("get_accRole"), 0);
}

TEST(AaSearch, WhatWasFoundBeforeTheDeadlineIsTheAnswer) {
    DesktopFixture desktop(kDialog);
    desktop.AddFault(Simulated::Fault{.call = "get_accRole", .stall = 100});
    // The third of the client's children is fetched at 200 ms; the next level would begin at 300.
    const auto results = SearchDialog(desktop, {Entry({Tag(L"push button")})}, 250);
    ASSERT_EQ(results[0].results.size(), 2u);
    EXPECT_EQ(results[0].results[0].accessible.p, desktop.Element("off").p);
    EXPECT_EQ(results[0].error, nullptr);
    EXPECT_EQ(desktop.Calls("ok", "get_accRole"), 0);
}

TEST(AaSearch, TheAnswerComesByTheDeadlinePlusOneVisit) {
    for (const unsigned timeout : {1u, 99u, 100u, 101u, 450u}) {
        DesktopFixture desktop(kDialog);
        desktop.AddFault(Simulated::Fault{.call = "get_accRole", .stall = 100});
        const ULONGLONG start = Simulated::ClockMilliseconds();
        SearchDialog(desktop, {Entry({Tag(L"nowhere")})}, timeout);
        EXPECT_LE(Simulated::ClockMilliseconds() - start, timeout + 100) << timeout;
    }
}

TEST(AaSearch, AfterTheDeadlineNothingThatIsLeftIsListed) {
    DesktopFixture desktop(kDialog);
    desktop.AddFault(Simulated::Fault{.call = "get_accRole", .stall = 100});
    desktop.AddFault(Simulated::Fault{.call = "AccessibleChildren", .stall = 1000});
    const ULONGLONG start = Simulated::ClockMilliseconds();
    SearchDialog(desktop, {Entry({Tag(L"nowhere")})}, 1050);
    // Listing the root takes 1000; one child is read, the second isn't fetched.
    EXPECT_EQ(Simulated::ClockMilliseconds() - start, 1100u);
    EXPECT_EQ(desktop.Calls("AccessibleChildren"), 1);
}

constexpr const char* kEndless = R"({ "windows": [ { "id": "main", "class": "Dialog", "objects": { "client": {
  "children": [ { "id": "deep", "role": "grouping", "name": "again", "endless": true } ] } } } ] })";

TEST(AaSearch, AnEndlessTreeEndsByTheDeadline) {
    DesktopFixture desktop(kEndless);
    desktop.AddFault(Simulated::Fault{.call = "get_accRole", .stall = 1});
    const ULONGLONG start = Simulated::ClockMilliseconds();
    {
        auto entry = Entry({Tag(L"grouping"), Tag(L"nowhere")});
        const auto results = SearchDialog(desktop, {entry}, 3000);
        EXPECT_NE(results[0].error, nullptr);
    }
    EXPECT_LE(Simulated::ClockMilliseconds() - start, 3001u);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

constexpr const char* kCycle = R"({ "windows": [ { "id": "main", "class": "Dialog", "objects": { "client": {
  "children": [ { "id": "a", "role": "grouping", "children": [
    { "id": "b", "role": "grouping", "children": [ { "element": "a" }, { "element": "b" } ] } ] } ] } } } ] })";

TEST(AaSearch, ACyclicTreeEndsByTheDeadline) {
    DesktopFixture desktop(kCycle);
    desktop.AddFault(Simulated::Fault{.call = "get_accRole", .stall = 1});
    const ULONGLONG start = Simulated::ClockMilliseconds();
    SearchDialog(desktop, {Entry({Tag(L"nowhere")})}, 1000);
    EXPECT_LE(Simulated::ClockMilliseconds() - start, 1001u);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

// ---- Failing elements ----

TEST(AaSearch, EveryFailureOfEveryCallEndsInAnAnswerAndABalance) {
    auto entry = Entry({Tag(L"property page"), Tag(L"push button", L"OK")});
    entry.options.acceptHidden = false;
    entry.options.keepIntermediateAlways = true;
    int calls = 0;
    {
        const DesktopFixture desktop(kDialog);
        SearchDialog(desktop, {entry});
        calls = desktop.TotalCalls();
    }
    ASSERT_GT(calls, 10);
    const Simulated::Fault kinds[] = {{.times = 1, .result = E_FAIL}, {.times = 1, .null = true}, {.times = 1, .type = VT_I2}, {.times = 1, .count = -1},
                                      {.times = 1, .count = 999'999}, {.times = 1, .count = 1'000'000}, {.times = 1, .count = INT_MAX}};
    for (int at = 1; at <= calls; ++at)
        for (Simulated::Fault fault : kinds) {
            DesktopFixture desktop(kDialog);
            fault.at = static_cast<unsigned>(at);
            desktop.AddFault(fault);
            EXPECT_EQ(SearchDialog(desktop, {entry}).size(), 1u);
            EXPECT_EQ(desktop.OutstandingReferences(), 0) << "call " << at;
        }
}

TEST(AaSearch, AnExceptionOutOfAReadLeavesNoReferenceBehind) {
    const auto entry = Entry({Tag(L"property page"), Tag(L"push button", L"OK")});
    for (unsigned at = 1; at <= 20; ++at) {
        DesktopFixture desktop(kDialog);
        desktop.AddFault(Simulated::Fault{.at = at, .times = 1, .raise = true});
        try {
            SearchDialog(desktop, {entry});
        } catch (const Simulated::ServerFailure&) {
        }
        EXPECT_EQ(desktop.OutstandingReferences(), 0) << "call " << at;
    }
}

TEST(AaSearch, AChildThatCannotBeListedEndsOnlyItsOwnBranch) {
    DesktopFixture desktop(kDialog);
    desktop.AddFault("page", Simulated::Fault{.call = "get_accChildCount", .result = E_FAIL});
    LogCapture log;
    const auto results = SearchDialog(desktop, {Entry({Tag(L"push button")})});
    EXPECT_EQ(results[0].results.size(), 2u);
    EXPECT_EQ(log.Count("AaChildIterationPolicy: AAObjectWrapper::GetChildren failed"), 1u);
}

// ---- Location and visibility of a result ----

TEST(AaSearchResult, ItsLocationIsReadOnlyWhenAskedFor) {
    const DesktopFixture desktop(kDialog);
    AaSearchResult result = ResultOf(desktop, "ok");
    result.UpdateLocation(false);
    EXPECT_EQ(desktop.Calls("ok", "accLocation"), 0);
    EXPECT_EQ(desktop.Calls("ok", "get_accState"), 0);
    result.UpdateLocation(true);
    EXPECT_EQ(result.rectangle.left, 10);
    EXPECT_EQ(result.rectangle.top, 10);
    EXPECT_EQ(result.rectangle.right, 90);
    EXPECT_EQ(result.rectangle.bottom, 30);
}

TEST(AaSearchResult, AnElementOffTheScreenKeepsAZeroRectangleAndIsStillReported) {
    const DesktopFixture desktop(kDialog);
    LogCapture log;
    const auto results = SearchDialog(desktop, {Entry({Tag(L"push button", L"Far")})});
    ASSERT_EQ(results[0].results.size(), 1u);
    const RECT& rectangle = results[0].results[0].rectangle;
    EXPECT_TRUE(rectangle.left == 0 && rectangle.top == 0 && rectangle.right == 0 && rectangle.bottom == 0);
    EXPECT_EQ(log.Count("AaSearchResult::UpdateLocation: Offscreen"), 1u);
    EXPECT_EQ(std::ranges::count_if(log.Lines(), [](const auto& line) { return line.starts_with("E") && line.ends_with("Offscreen"); }), 1);
    EXPECT_EQ(desktop.Calls("off", "accLocation"), 0);
}

TEST(AaSearchResult, AnElementWhoseStateCannotBeReadCountsAsOffTheScreen) {
    for (const Simulated::Fault& fault : {Simulated::Fault{.call = "get_accState", .result = E_FAIL},
                                          Simulated::Fault{.call = "get_accState", .type = VT_BSTR}}) {
        DesktopFixture desktop(kDialog);
        desktop.AddFault("ok", fault);
        LogCapture log;
        AaSearchResult result = ResultOf(desktop, "ok");
        result.UpdateLocation(true);
        EXPECT_EQ(result.rectangle.right, 0);
        EXPECT_TRUE(log.Contains("AaSearchResult::UpdateLocation: Offscreen"));
    }
}

TEST(AaSearchResult, TheStateOfASimpleElementIsNotLookedAtForItsLocation) {
    DesktopFixture desktop(kDialog);
    AaSearchResult result = ResultOf(desktop, "label");
    ASSERT_FALSE(result.IsSelf());
    result.UpdateLocation(true);
    EXPECT_EQ(result.rectangle.top, 40);
    EXPECT_EQ(desktop.Calls("get_accState"), 0);
}

TEST(AaSearchResult, WithoutAnAccessibleNothingIsReadAndItIsNotValid) {
    AaSearchResult result;
    result.UpdateLocation(true);
    EXPECT_EQ(result.rectangle.right, 0);
    EXPECT_FALSE(result.IsValid());
    EXPECT_TRUE(result.IsVisible());
}

TEST(AaSearchResult, InvisibleAndOffscreenElementsAreNotVisible) {
    const DesktopFixture desktop(kDialog);
    LogCapture log;
    EXPECT_TRUE(ResultOf(desktop, "ok").IsVisible());
    EXPECT_FALSE(ResultOf(desktop, "off").IsVisible());
    EXPECT_EQ(log.Count("AaSearchResult is invisible or offscreen"), 1u);
    EXPECT_EQ(desktop.Calls("off", "accLocation"), 0);
}

TEST(AaSearchResult, ASimpleElementIsJudgedByItsOwnStateAndNotItsContainers) {
    for (const std::string hidden : {R"("id": "page",)", R"("id": "label",)"}) {
        std::string text = kDialog;
        const DesktopFixture desktop(text.replace(text.find(hidden), hidden.size(), hidden + R"( "state": ["invisible"],)"));
        const AaSearchResult label = ResultOf(desktop, "label");
        ASSERT_FALSE(label.IsSelf());
        EXPECT_EQ(label.IsVisible(), hidden.find("page") != std::string::npos) << hidden;
    }
}

TEST(AaSearchResult, AnElementThatCannotSayWhereItIsCountsAsVisible) {
    DesktopFixture desktop(kDialog);
    desktop.AddFault("ok", Simulated::Fault{.call = "accLocation", .result = E_FAIL});
    EXPECT_TRUE(ResultOf(desktop, "ok").IsVisible());
}

TEST(AaSearchResult, AnElementWithAnEmptyRectangleIsNotVisible) {
    const DesktopFixture desktop(kDialog);
    LogCapture log;
    EXPECT_FALSE(ResultOf(desktop, "flat").IsVisible());
    EXPECT_TRUE(log.Contains("AaSearchResult is not visible, hres=0")) << log.Text();
}

TEST(AaSearchResult, AStateThatCannotBeReadLeavesTheDecisionToTheLocation) {
    DesktopFixture desktop(kDialog);
    desktop.AddFault("off", Simulated::Fault{.call = "get_accState", .result = E_FAIL});
    EXPECT_TRUE(ResultOf(desktop, "off").IsVisible());
}

// ---- Owner windows ----

constexpr const char* kBrowser = R"({ "windows": [
  { "id": "browser", "class": "CLASS", "children": [
    { "id": "inner", "class": "Inner", "objects": { "client": { "id": "innerClient", "children": [ { "id": "inside", "role": "link", "name": "in" } ] } } } ] },
  { "id": "hidden", "class": "Helper", "visible": false, "objects": { "client": { "id": "hiddenClient" } } },
  { "id": "other", "class": "Other", "objects": { "client": { "id": "otherClient" } } } ] })";

std::string BrowserOfClass(const char* name) {
    std::string text = kBrowser;
    return text.replace(text.find("CLASS"), 5, name);
}

TEST(SearchOwnerWindow, BelowABrowserItsWindowStaysTheOwnerOfChildrenAndHiddenHelpers) {
    for (const char* name : {"Chrome_WidgetWin_1", "MozillaWindowClass", "MozillaCompositorWindowClass"}) {
        const DesktopFixture desktop(BrowserOfClass(name));
        const HWND browser = desktop.Window("browser");
        EXPECT_EQ(RenewOwnerWindow(browser, desktop.Element("innerClient").p), browser) << name;
        EXPECT_EQ(RenewOwnerWindow(browser, desktop.Element("hiddenClient").p), browser) << name;
        EXPECT_EQ(RenewOwnerWindow(browser, desktop.Element("otherClient").p), desktop.Window("other")) << name;
    }
}

TEST(SearchOwnerWindow, BelowAnyOtherWindowTheElementsOwnWindowIsTheOwner) {
    const DesktopFixture desktop(BrowserOfClass("Notepad"));
    const HWND window = desktop.Window("browser");
    LogCapture log;
    EXPECT_EQ(RenewOwnerWindow(window, desktop.Element("innerClient").p), desktop.Window("inner"));
    EXPECT_TRUE(log.Contains("hInitialOwnerWnd: ")) << log.Text();
    EXPECT_TRUE(log.Contains("bAllowFallbackToInitialOwner: 0")) << log.Text();
    EXPECT_EQ(RenewOwnerWindow(window, desktop.Element("hiddenClient").p), desktop.Window("hidden"));
    EXPECT_EQ(RenewOwnerWindow(nullptr, desktop.Element("innerClient").p), desktop.Window("inner"));
}

TEST(SearchOwnerWindow, WithoutAnAccessibleTheOwnerStays) {
    const DesktopFixture desktop(kDialog);
    EXPECT_EQ(RenewOwnerWindow(desktop.Window("main"), nullptr), desktop.Window("main"));
    EXPECT_EQ(RenewOwnerWindow(nullptr, nullptr), nullptr);
}

TEST(SearchOwnerWindow, ResultsCarryTheWindowThatTheIteratorRenewed) {
    const DesktopFixture desktop(BrowserOfClass("Notepad"));
    std::vector<AaSelectorResult> results;
    const AaSearchResult root(desktop.Element("innerClient"), CComVariant(CHILDID_SELF), desktop.Window("browser"));
    auto entry = Entry({Tag(L"link")});
    Search(results, root, {entry}, 1000);
    ASSERT_EQ(results[0].results.size(), 1u);
    EXPECT_EQ(results[0].results[0].ownerWindow, desktop.Window("inner"));
}

// ---- Reading attributes ----

TEST(AaAttributeAccessPolicy, WithoutAnAccessibleEveryAttributeIsEmptyAndThatIsLogged) {
    LogCapture log;
    const AaSearchResult empty;
    AaAttributeAccessPolicy reader(empty);
    EXPECT_EQ(reader.GetValue(L"name"), L"");
    EXPECT_TRUE(log.Contains("AaAttributeAccessor::GetValue: Invalid element state. m_accessible is null"));
}

TEST(AaAttributeAccessPolicy, AnUnknownNameIsEmptyAndLoggedOnce) {
    const DesktopFixture desktop(kDialog);
    LogCapture log;
    const AaSearchResult element = ResultOf(desktop, "ok");
    AaAttributeAccessPolicy reader(element);
    EXPECT_EQ(reader.GetValue(L"colour"), L"");
    EXPECT_EQ(reader.GetValue(L"colour"), L"");
    EXPECT_EQ(log.Count("AaAttributeAccessor::GetValue: Invalid attribute name 'colour'"), 1u) << log.Text();
}

TEST(AaAttributeAccessPolicy, NoAttributeIsANumber) {
    const DesktopFixture desktop(kDialog);
    LogCapture log;
    const AaSearchResult element = ResultOf(desktop, "ok");
    AaAttributeAccessPolicy reader(element);
    EXPECT_EQ(reader.GetNumberValue(L"role"), -1);
    EXPECT_TRUE(log.Contains("AaAttributeAccessor::GetValue: Invalid attribute name 'role'"));
}

TEST(AaAttributeAccessPolicy, ReadsTheNineAttributes) {
    const DesktopFixture desktop(kDialog);
    const AaSearchResult element = ResultOf(desktop, "ok");
    AaAttributeAccessPolicy reader(element);
    EXPECT_EQ(reader.GetValue(L"role"), L"push button");
    EXPECT_EQ(reader.GetValue(L"name"), L"OK");
    EXPECT_EQ(reader.GetValue(L"text"), L"OK");
    EXPECT_EQ(reader.GetValue(L"helpText"), L"Closes");
    EXPECT_EQ(reader.GetValue(L"aastate"), L"focusable");
    EXPECT_EQ(reader.GetValue(L"automationid"), L"");
    EXPECT_EQ(reader.GetValue(L"labeledby"), L"");
    EXPECT_EQ(reader.GetValue(L"virtualname"), L"");
    EXPECT_EQ(reader.GetValue(L"rowName"), L"");
}

constexpr const char* kPage = R"({ "windows": [ { "id": "main", "class": "CLASS", "objects": { "client": { "children": [
  { "id": "text", "role": "editable text", "value": "plain", "ia2": { "text": "rich", "states": 8 } } ] } } } ] })";

TEST(AaAttributeAccessPolicy, TextComesThroughAccessible2InABrowsersWindowOnly) {
    for (const auto& [name, expected] : {std::pair{"Chrome_WidgetWin_1", L"rich"}, {"MozillaWindowClass", L"rich"}, {"Notepad", L"plain"}}) {
        std::string text = kPage;
        const DesktopFixture desktop(text.replace(text.find("CLASS"), 5, name));
        const AaSearchResult element = ResultOf(desktop, "text");
        AaAttributeAccessPolicy reader(element);
        EXPECT_EQ(reader.GetValue(L"text"), expected) << name;
        // States are read from it in any window.
        EXPECT_NE(reader.GetValue(L"aastate").find(L"editable"), CString::npos) << name;
    }
}

TEST(AaAttributeAccessPolicy, AStateThatCannotBeReadIsAWarning) {
    DesktopFixture desktop(kDialog);
    desktop.AddFault("ok", Simulated::Fault{.call = "get_accState", .result = E_FAIL});
    LogCapture log;
    const AaSearchResult element = ResultOf(desktop, "ok");
    AaAttributeAccessPolicy reader(element);
    EXPECT_EQ(reader.GetValue(L"aastate"), L"");
    EXPECT_TRUE(log.Contains("GetAAState failed.")) << log.Text();
}

}  // namespace
}  // namespace Zorvex::Search
