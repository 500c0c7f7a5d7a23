#include "InProc/Vantrel/ItemRequests.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "InProc/Vantrel/AAContainerCache.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<CString>;

constexpr char kDesktop[] = R"({"windows": [
  {"id": "main", "class": "Main", "title": "Main", "objects": {"client": {"id": "client", "children": [
    {"id": "fruit", "role": "list", "name": "Fruit", "state": ["multiselectable"], "children": [
      {"id": "apple", "role": "list item", "name": "apple", "state": ["selectable"]},
      {"id": "apricot", "role": "list item", "name": "apricot", "state": ["selectable"]},
      {"id": "banana", "role": "list item", "name": "banana", "state": ["selectable", "selected"]},
      {"id": "anana", "role": "list item", "name": "anana", "state": ["selectable", "unavailable"]},
      {"id": "nameless", "role": "list item", "name": ""}]},
    {"id": "one", "role": "list", "name": "One", "children": [
      {"id": "red", "role": "list item", "name": "red", "simple": true, "state": ["selectable", "selected"]},
      {"id": "rose", "role": "list item", "name": "rose", "simple": true, "state": ["selectable"]}]},
    {"id": "tree", "role": "outline", "children": [
      {"id": "root", "role": "outline item", "name": "root", "state": ["selectable"], "children": [
        {"id": "leaf", "role": "outline item", "name": "leaf", "state": ["selectable"]}]}]},
    {"id": "table", "role": "table", "state": ["selectable"], "selection": [], "children": [
      {"id": "row1", "role": "row", "children": [{"id": "cell1", "role": "cell", "name": "A1", "value": "anna"}]},
      {"id": "row2", "role": "row", "children": [{"id": "cell2", "role": "cell", "name": "A2", "value": "bert"}]}]},
    {"id": "tabs", "role": "page tab list", "children": [
      {"id": "tab1", "role": "page tab", "name": "General", "state": ["selectable", "selected"]},
      {"id": "tab2", "role": "page tab", "name": "Details", "state": ["selectable"], "defaultAction": "Switch",
       "action": [{"change": "tab1", "clear": ["selected"]}, {"change": "tab2", "add": ["selected"]}]}]},
    {"id": "combo", "role": "combo box", "name": "Size", "value": "small", "children": [
      {"id": "sizes", "role": "list", "children": [
        {"id": "small", "role": "list item", "name": "small", "state": ["selectable"]},
        {"id": "large", "role": "list item", "name": "large", "state": ["selectable"]}]}]},
    {"id": "emptyCombo", "role": "combo box", "value": "typed", "children": [{"id": "blank", "role": "list item", "name": ""}]},
    {"id": "empty", "role": "list", "selection": []},
    {"id": "sheet", "role": "table", "selection": ["picked"], "children": [
      {"id": "picked", "role": "list", "children": [
        {"id": "picked1", "role": "row", "name": "n1", "value": "v1"},
        {"id": "picked2", "role": "row", "name": "n2", "value": "v2", "simple": true}]}]},
    {"id": "lone", "role": "outline", "children": [
      {"id": "fir", "role": "outline item", "name": "fir", "state": ["selectable", "selected"]}]},
    {"id": "twins", "role": "list", "state": ["multiselectable"], "selection": [], "children": [
      {"id": "twin1", "role": "list item", "name": "twin"}, {"id": "twin2", "role": "list item", "name": "twin"}]},
    {"id": "simpleTabs", "role": "page tab list", "children": [
      {"id": "simpleTab", "role": "page tab", "name": "Simple", "simple": true, "defaultAction": "Switch"}]},
    {"id": "branches", "role": "outline", "children": [
      {"id": "oak", "role": "outline item", "name": "oak", "state": ["selectable", "selected", "multiselectable"]},
      {"id": "elm", "role": "outline item", "name": "elm", "state": ["selectable", "multiselectable"]},
      {"id": "yew", "role": "outline item", "name": "yew", "state": ["selectable"]}]},
    {"id": "bar", "role": "tool bar", "children": [{"id": "button", "role": "push button", "name": "Go"}]}]}}},
  {"id": "page", "class": "Chrome_WidgetWin_1", "objects": {"client": {"children": [
    {"id": "webList", "role": "list", "children": [
      {"id": "web1", "role": "list item", "name": "w1", "state": ["selectable"], "defaultAction": "click"},
      {"id": "web2", "role": "list item", "name": "w2", "state": ["selectable", "selected"], "defaultAction": "click"}]},
    {"id": "simpleList", "role": "list", "state": ["multiselectable"], "defaultAction": "click", "children": [
      {"id": "simple1", "role": "list item", "name": "s1", "simple": true, "state": ["selectable", "selected"]}]},
    {"id": "webCombo", "role": "combo box", "value": "x", "state": ["collapsed"], "defaultAction": "open",
     "action": [{"change": "webCombo", "toggle": ["expanded", "collapsed"]},
                {"insert": {"id": "options", "role": "list", "children": [{"id": "option", "role": "list item", "name": "option"}]}, "into": "webCombo"}],
     "children": []},
    {"id": "webSize", "role": "combo box", "value": "s", "defaultAction": "press", "children": [
      {"id": "l", "role": "list item", "name": "l", "state": ["selectable"]}]}]}}},
  {"id": "news", "class": "MozillaWindowClass", "objects": {"client": {"children": [
    {"id": "newsSize", "role": "combo box", "value": "s", "defaultAction": "press", "children": [
      {"id": "m", "role": "list item", "name": "m", "state": ["selectable"]}]}]}}},
  {"id": "bare", "class": "Bare", "objects": {"window": {"id": "bareList", "role": "list", "children": [
    {"role": "list item", "name": "only"}]}}},
  {"id": "box", "class": "ListBox", "listBox": {"items": ["b1", "b2"], "selection": [0]},
   "objects": {"client": {"id": "boxList", "role": "list", "children": [{"id": "b1", "role": "list item", "name": "b1", "simple": true}]}}},
  {"id": "formsBox", "class": "WindowsForms10.LISTBOX.app", "listBox": {"items": ["f1", "f2", "f3"], "selection": [1], "multiple": true}}]})";

class ItemRequestsTest : public testing::Test {
protected:
    AAObjectIdentifier Identify(const char* id, const char* window = "main", bool isDomAria = false) {
        return AAContainerCache::Instance().RegisterObject({kClientPid, desktop.Window(window)},
                                                           AAElement{desktop.Window(window), desktop.Element(id), desktop.Child(id)}, isDomAria);
    }
    AAObjectIdentifier WindowOnly(const char* window) {
        AAObjectIdentifier identifier;
        identifier.hWnd = desktop.Window(window);
        identifier.clientPid = kClientPid;
        return identifier;
    }
    GetAllItemsResponse All(const AAObjectIdentifier& element) {
        GetAllItemsRequest request;
        request.element = element;
        return Call(request);
    }
    SelectionResult Select(const AAObjectIdentifier& element, Texts items, const std::function<void(SetSelectedItemsRequest&)>& change = {}) {
        SetSelectedItemsRequest request;
        request.element = element;
        request.items = std::move(items);
        if (change) change(request);
        return Call(request).status;
    }
    GetSelectedItemsResponse Selected(const AAObjectIdentifier& element) {
        GetSelectedItemsRequest request;
        request.element = element;
        return Call(request);
    }
    SelectionResult Clear(const AAObjectIdentifier& element) {
        ClearSelectedItemsRequest request;
        request.element = element;
        return Call(request).status;
    }
    bool HasState(const char* id, LONG state) {
        CComVariant actual;
        return desktop.Element(id)->get_accState(desktop.Child(id), &actual) == S_OK && (actual.lVal & state) == state;
    }
    static void ClearFirst(SetSelectedItemsRequest& request) { request.clearFirst = true; }
    static void FirstMatchOnly(SetSelectedItemsRequest& request) { request.firstMatchOnly = true; }
    static void AllowDisabled(SetSelectedItemsRequest& request) { request.allowDisabled = true; }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
    CacheCleaner cleaner;
};

// Reading all items.

TEST_F(ItemRequestsTest, GetAllItemsLeavesOutItemsWithEmptyNames) {
    const auto answer = All(Identify("fruit"));
    EXPECT_EQ(answer.status, SelectionResult::Success);
    EXPECT_THAT(answer.items, ElementsAre(L"apple", L"apricot", L"banana", L"anana"));
    EXPECT_EQ(answer.comboBoxResult, S_OK);
    EXPECT_TRUE(log.Contains("calling LookupIdentifier"));
}

TEST_F(ItemRequestsTest, ItemsAreThoseOfTheContainersRole) {
    EXPECT_THAT(All(Identify("tree")).items, ElementsAre(L"root", L"leaf"));
    EXPECT_THAT(All(Identify("table")).items, ElementsAre(L"anna", L"bert")) << "the values, in a table";
    EXPECT_THAT(All(Identify("tabs")).items, ElementsAre(L"General", L"Details"));
    EXPECT_THAT(All(Identify("combo")).items, ElementsAre(L"small", L"large"));
}

TEST_F(ItemRequestsTest, WithoutItemsTheStatusTellsWhetherThereCouldBeAny) {
    EXPECT_EQ(All(Identify("empty")).status, SelectionResult::NothingFound);
    EXPECT_EQ(All(Identify("bar")).status, SelectionResult::NothingFoundNoSelectSupport);
    EXPECT_EQ(All(Identify("emptyCombo")).status, SelectionResult::NothingFound) << "items without names are none in a combo box";
    EXPECT_EQ(All(Identify("client")).status, SelectionResult::Success) << "list items below anything else count as well";
}

TEST_F(ItemRequestsTest, ItemWhoseTextIsAnsweredWithAnotherSuccessIsLeftOut) {
    desktop.AddFault("apple", {.call = "get_accName", .result = S_FALSE, .text = L"apple"});
    EXPECT_THAT(All(Identify("fruit")).items, ElementsAre(L"apricot", L"banana", L"anana"));
}

TEST_F(ItemRequestsTest, AtMostAThousandItemsComeBack) {
    std::string many;
    for (int i = 0; i < 1100; ++i) many += (i ? "," : "") + std::string(R"({"role": "list item", "name": "i)") + std::to_string(i) + R"(", "simple": true})";
    CacheCleaner::Release();
    DesktopFixture large(R"({"windows": [{"id": "w", "class": "C", "objects": {"client": {"id": "l", "role": "list", "children": [)" + many + "]}}}]}");
    const auto identifier = AAContainerCache::Instance().RegisterObject(
        {kClientPid, large.Window("w")}, AAElement{large.Window("w"), large.Element("l"), large.Child("l")});
    const auto answer = All(identifier);
    EXPECT_EQ(answer.status, SelectionResult::Success);
    ASSERT_EQ(answer.items.size(), 1000u);
    EXPECT_EQ(answer.items.back(), L"i999");
    CacheCleaner::Release();
}

TEST_F(ItemRequestsTest, DeadWindowAndUnknownElementGiveFailures) {
    AAObjectIdentifier unknown = Identify("fruit");
    unknown.containerId += 1000;
    EXPECT_EQ(All(unknown).status, SelectionResult::Failure);
    EXPECT_EQ(Select(unknown, {L"apple"}), SelectionResult::Failure);
    EXPECT_EQ(Selected(unknown).status, SelectionResult::Failure);
    EXPECT_EQ(Clear(unknown), SelectionResult::Failure);
    EXPECT_EQ(log.Count("GetSelectableAccElementFromWindow: Invalid input param"), 3u) << log.Text();
    const AAObjectIdentifier stale = Identify("fruit");
    desktop.DestroyWindow("main");
    EXPECT_EQ(All(stale).status, SelectionResult::Failure);
    EXPECT_EQ(Select(stale, {}), SelectionResult::Failure);
    EXPECT_THAT(Selected(stale).items, IsEmpty());
    EXPECT_EQ(Clear(stale), SelectionResult::Failure);
}

TEST_F(ItemRequestsTest, WindowAloneStandsForItsClient) {
    const auto answer = All(WindowOnly("box"));
    EXPECT_EQ(answer.status, SelectionResult::Success) << log.Text();
    EXPECT_THAT(answer.items, ElementsAre(L"b1"));
    log.Clear();
    desktop.AddFault("box", {.call = "AccessibleObjectFromWindow", .result = E_FAIL});
    EXPECT_EQ(All(WindowOnly("box")).status, SelectionResult::Failure);
    EXPECT_TRUE(log.Contains("GetSelectableAccElementFromWindow: AccessibleObjectFromWindow failed"));
    desktop.AddFault("main", {.call = "AccessibleObjectFromWindow", .null = true});
    EXPECT_EQ(Clear(WindowOnly("main")), SelectionResult::Failure);
    EXPECT_TRUE(log.Contains("GetSelectableAccElementFromWindow: output pAccElem is null")) << log.Text();
}

TEST_F(ItemRequestsTest, ObjectOfAWindowStandsForItsClientAsWell) {
    const HWND box = desktop.Window("box");
    CComPtr<IAccessible> frame;
    ASSERT_EQ(::AccessibleObjectFromWindow(box, static_cast<DWORD>(OBJID_WINDOW), IidOf<IAccessible>(), reinterpret_cast<void**>(&frame)), S_OK);
    const auto identifier = AAContainerCache::Instance().RegisterObject({kClientPid, box}, AAElement{box, frame, CComVariant(CHILDID_SELF)});
    ASSERT_NE(identifier.containerId, 0u);
    EXPECT_THAT(All(identifier).items, ElementsAre(L"b1"));
    const int ofFrame = desktop.Calls("boxList", "WindowFromAccessibleObject");
    EXPECT_THAT(All(Identify("boxList", "box")).items, ElementsAre(L"b1"));
    EXPECT_EQ(ofFrame, desktop.Calls("boxList", "WindowFromAccessibleObject") - ofFrame + 1) << "the client is asked for its window";
}

TEST_F(ItemRequestsTest, ClientWhoseWindowIsGoneIsNothingToWorkOn) {
    EXPECT_THAT(All(WindowOnly("bare")).items, ElementsAre(L"only"));
    for (const char* object : {"boxList", "bareList"}) desktop.AddFault(object, {.call = "WindowFromAccessibleObject", .result = E_FAIL});
    EXPECT_EQ(Selected(WindowOnly("box")).status, SelectionResult::Failure);
    EXPECT_EQ(All(WindowOnly("bare")).status, SelectionResult::Failure) << "an object that is no frame belongs to a window as well";
}

TEST_F(ItemRequestsTest, WebComboBoxIsOpenedForItsItemsAndClosedAgain) {
    const auto answer = All(Identify("webCombo", "page", true));
    EXPECT_EQ(answer.status, SelectionResult::Success) << log.Text();
    EXPECT_THAT(answer.items, ElementsAre(L"option"));
    EXPECT_EQ(answer.comboBoxResult, S_OK);
    EXPECT_EQ(desktop.Calls("webCombo", "accDoDefaultAction"), 2);
    EXPECT_TRUE(HasState("webCombo", STATE_SYSTEM_COLLAPSED));
}

TEST_F(ItemRequestsTest, ComboBoxOfNoWebPageIsNeitherOpenedNorClosed) {
    EXPECT_EQ(All(Identify("webCombo", "page", false)).status, SelectionResult::NothingFound);
    EXPECT_EQ(desktop.Calls("webCombo", "accDoDefaultAction"), 0);
}

TEST_F(ItemRequestsTest, ComboBoxThatDoesNotOpenGivesItsResultAndNoItems) {
    desktop.AddFault("webCombo", {.call = "accDoDefaultAction", .result = E_ACCESSDENIED});
    const auto answer = All(Identify("webCombo", "page", true));
    EXPECT_EQ(answer.status, SelectionResult::Failure);
    EXPECT_THAT(answer.items, IsEmpty());
    EXPECT_EQ(answer.comboBoxResult, E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("Initial ComboBox expand failed."));
}

TEST_F(ItemRequestsTest, ComboBoxThatDoesNotCloseGivesItsItemsAndTheResult) {
    desktop.AddFault("webCombo", {.call = "accDoDefaultAction", .at = 2, .result = E_ACCESSDENIED});
    const auto answer = All(Identify("webCombo", "page", true));
    EXPECT_EQ(answer.status, SelectionResult::Success);
    EXPECT_THAT(answer.items, ElementsAre(L"option"));
    EXPECT_EQ(answer.comboBoxResult, E_ACCESSDENIED);
    EXPECT_TRUE(log.Contains("Could not close the ComboBox after expanding it."));
}

// Selecting.

TEST_F(ItemRequestsTest, PatternInAMultiSelectListSelectsEveryMatchAndOnlyTheFirstUnderFirstMatchOnly) {
    EXPECT_EQ(Select(Identify("fruit"), {L"ap*"}, ClearFirst), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("fruit")).items, ElementsAre(L"apple", L"apricot"));
    EXPECT_EQ(Select(Identify("fruit"), {L"ap*t"}, ClearFirst), SelectionResult::Success);
    EXPECT_EQ(Select(Identify("fruit"), {L"ap*"}, [](auto& request) { request.clearFirst = request.firstMatchOnly = true; }),
              SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("fruit")).items, ElementsAre(L"apple"));
}

TEST_F(ItemRequestsTest, PatternInASingleSelectListSelectsTheFirstMatch) {
    EXPECT_EQ(Select(Identify("one"), {L"r*"}), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("one")).items, ElementsAre(L"red"));
    EXPECT_EQ(Select(Identify("one"), {L"ro*"}), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("one")).items, ElementsAre(L"rose"));
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus main", "accSelect red 2", "SetFocus main", "accSelect rose 2"));
}

TEST_F(ItemRequestsTest, ItemJoinsAMultipleSelectionButTakesAnEmptyOne) {
    EXPECT_EQ(Select(Identify("fruit"), {L"apple"}), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("fruit")).items, ElementsAre(L"apple", L"banana"));
    EXPECT_EQ(Clear(Identify("fruit")), SelectionResult::Success);
    EXPECT_EQ(Select(Identify("fruit"), {L"apricot"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), testing::Contains("accSelect apple 8"));
    EXPECT_THAT(desktop.Done(), testing::Contains("accSelect apricot 2"));
}

TEST_F(ItemRequestsTest, ItemJoinsWhereItSaysItselfThatSeveralCanBeSelected) {
    EXPECT_EQ(Select(Identify("branches"), {L"elm"}), SelectionResult::Success);
    EXPECT_EQ(Select(Identify("branches"), {L"yew"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus main", "accSelect elm 8", "SetFocus main", "accSelect yew 2"));
}

TEST_F(ItemRequestsTest, SelectionThatIsAnsweredWithAnotherSuccessIsNone) {
    desktop.AddFault("fruit", {.call = "get_accSelection", .result = S_FALSE, .type = VT_I4});
    EXPECT_EQ(Select(Identify("fruit"), {L"apple"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), testing::Contains("accSelect apple 2"));
}

TEST_F(ItemRequestsTest, TableIsSearchedByTextAndItsRowIsSelectedNotTheCell) {
    EXPECT_EQ(Select(Identify("table"), {L"bert"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus main", "accSelect row2 8"));
    EXPECT_EQ(Select(Identify("table"), {L"A2"}), SelectionResult::NothingFound) << "the name of a cell is not its text";
}

TEST_F(ItemRequestsTest, CellWithoutAParentCountsAsDone) {
    for (const HRESULT result : {S_OK, S_FALSE, E_FAIL}) {
        desktop.ClearFaults();
        if (result == S_OK) desktop.AddFault("cell2", {.call = "get_accParent", .null = true});
        else desktop.AddFault("cell2", {.call = "get_accParent", .result = result});
        EXPECT_EQ(Select(Identify("table"), {L"bert"}), SelectionResult::Success);
    }
    EXPECT_THAT(desktop.Done(), testing::Each("SetFocus main"));
    desktop.ClearFaults();
    desktop.AddFault("row2", {.call = "accSelect", .result = E_FAIL});
    EXPECT_EQ(Select(Identify("table"), {L"bert"}), SelectionResult::Failure);
    EXPECT_TRUE(log.Contains("Acc selection failed"));
}

TEST_F(ItemRequestsTest, PageTabIsPressed) {
    EXPECT_EQ(Select(Identify("tabs"), {L"Details"}), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("tabs")).items, ElementsAre(L"Details"));
    EXPECT_EQ(Select(Identify("simpleTabs"), {L"Simple"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus main", "accDoDefaultAction tab2", "SetFocus main", "accDoDefaultAction simpleTab"));
}

TEST_F(ItemRequestsTest, ItemOfAListInAChromiumWindowIsPressed) {
    EXPECT_EQ(Select(Identify("webList", "page"), {L"w1"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus page", "accDoDefaultAction web1"));
    EXPECT_EQ(Clear(Identify("webList", "page")), SelectionResult::Success);
    EXPECT_EQ(desktop.Done().back(), "accDoDefaultAction web2");
}

// On purpose, though a simple item is then not what is pressed.
TEST_F(ItemRequestsTest, ContainerOfAnItemIsPressedInAChromiumWindow) {
    EXPECT_EQ(Select(Identify("simpleList", "page"), {L"s1"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus page", "accDoDefaultAction simpleList"));
}

TEST_F(ItemRequestsTest, NameWithoutWildcardsMeansOneItem) {
    EXPECT_EQ(Select(Identify("twins"), {L"twin"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus main", "accSelect twin1 2"));
}

TEST_F(ItemRequestsTest, DisabledItemFailsAndLeavesTheSelectionAsItWasUpToThere) {
    EXPECT_EQ(Select(Identify("fruit"), {L"apple", L"anana", L"apricot"}), SelectionResult::ItemDisabled);
    EXPECT_THAT(Selected(Identify("fruit")).items, ElementsAre(L"apple", L"banana"));
    EXPECT_TRUE(log.Contains("SetSelectedItemImpl: trying to select disable item"));
    EXPECT_TRUE(log.Contains("Failed to select item: anana"));
    EXPECT_EQ(Select(Identify("fruit"), {L"a*"}), SelectionResult::ItemDisabled) << "the matches before it are selected";
    EXPECT_THAT(Selected(Identify("fruit")).items, ElementsAre(L"apple", L"apricot", L"banana"));
}

TEST_F(ItemRequestsTest, DisabledItemIsSelectedWhereThatIsAllowed) {
    EXPECT_EQ(Select(Identify("fruit"), {L"anana"}, AllowDisabled), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), testing::Contains("accSelect anana 8"));
}

TEST_F(ItemRequestsTest, EmptyListOfItemsWithTheFirstByteSetClearsTheSelectionAndSucceeds) {
    EXPECT_EQ(Select(Identify("fruit"), {}, ClearFirst), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("fruit")).items, IsEmpty());
    EXPECT_EQ(Select(Identify("fruit"), {}), SelectionResult::Success);
}

TEST_F(ItemRequestsTest, ItemThatIsNotThereSaysWhetherThereCouldBeOne) {
    EXPECT_EQ(Select(Identify("fruit"), {L"nobody"}), SelectionResult::NothingFound);
    EXPECT_EQ(Select(Identify("bar"), {L"Go"}), SelectionResult::NothingFoundNoSelectSupport);
    EXPECT_EQ(log.Count("Item not found in SetSelectItemsImpl"), 2u);
    EXPECT_TRUE(log.Contains("Failed to select item: nobody"));
}

TEST_F(ItemRequestsTest, RefusedSelectionIsAFailure) {
    desktop.AddFault("apple", {.call = "accSelect", .result = E_FAIL});
    EXPECT_EQ(Select(Identify("fruit"), {L"apple"}), SelectionResult::Failure);
    EXPECT_TRUE(log.Contains("Acc selection failed"));
}

TEST_F(ItemRequestsTest, SelectionThatCannotBeClearedFirstIsTheAnswer) {
    desktop.AddFault("table", {.call = "get_accSelection", .result = E_FAIL});
    EXPECT_EQ(Select(Identify("table"), {L"bert"}, ClearFirst), SelectionResult::Failure);
    EXPECT_TRUE(log.Contains("Failed to clear previous selection"));
    EXPECT_EQ(Select(Identify("bar"), {}, ClearFirst), SelectionResult::NothingFoundNoSelectSupport);
}

TEST_F(ItemRequestsTest, ComboBoxGetsTheTextAsItsValue) {
    EXPECT_EQ(Select(Identify("combo"), {L"large"}), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("SetFocus main", "accSelect large 2", "put_accValue combo large"));
    EXPECT_THAT(Selected(Identify("combo")).items, ElementsAre(L"large"));
    EXPECT_EQ(Select(Identify("combo"), {L"large"}), SelectionResult::Success);
    EXPECT_EQ(desktop.Calls("combo", "put_accValue"), 1) << "it shows the text already";
}

TEST_F(ItemRequestsTest, ComboBoxWhoseItemRefusesIsPressedAndThatDecides) {
    desktop.AddFault("large", {.call = "accSelect", .result = E_FAIL});
    EXPECT_EQ(Select(Identify("combo"), {L"large"}), SelectionResult::Failure) << "it has no default action";
    EXPECT_EQ(desktop.Calls("combo", "accDoDefaultAction"), 1);
    EXPECT_EQ(desktop.Calls("combo", "put_accValue"), 0);
    desktop.AddFault("l", {.call = "accSelect", .result = E_FAIL});
    EXPECT_EQ(Select(Identify("webSize", "page"), {L"l"}), SelectionResult::Success) << "pressing helped";
    EXPECT_EQ(desktop.Done().back(), "accDoDefaultAction webSize");
}

TEST_F(ItemRequestsTest, ComboBoxThatRefusesItsTextIsPressedToo) {
    desktop.AddFault("webSize", {.call = "put_accValue", .result = E_FAIL});
    EXPECT_EQ(Select(Identify("webSize", "page"), {L"l"}), SelectionResult::Success);
    EXPECT_EQ(desktop.Calls("webSize", "accDoDefaultAction"), 1);
}

TEST_F(ItemRequestsTest, RefusalStaysWhereTheComboBoxCannotSayThatItShowsAnotherText) {
    desktop.AddFault("webSize", {.call = "put_accValue", .result = E_FAIL});
    desktop.AddFault("webSize", {.call = "get_accValue", .at = 2, .result = E_FAIL});
    EXPECT_EQ(Select(Identify("webSize", "page"), {L"l"}), SelectionResult::Failure);
    EXPECT_EQ(desktop.Calls("webSize", "accDoDefaultAction"), 0);
    EXPECT_TRUE(log.Contains("Acc selection failed"));
}

TEST_F(ItemRequestsTest, ComboBoxThatStillShowsAnotherTextIsPressedInABrowserAlone) {
    desktop.AddFault("webSize", {.call = "get_accValue", .text = L"other"});
    desktop.AddFault("combo", {.call = "get_accValue", .text = L"other"});
    desktop.AddFault("newsSize", {.call = "get_accValue", .text = L"other"});
    EXPECT_EQ(Select(Identify("webSize", "page"), {L"l"}), SelectionResult::Success);
    EXPECT_EQ(desktop.Calls("webSize", "accDoDefaultAction"), 1);
    EXPECT_EQ(Select(Identify("newsSize", "news"), {L"m"}), SelectionResult::Success);
    EXPECT_EQ(desktop.Calls("newsSize", "accDoDefaultAction"), 1);
    EXPECT_EQ(Select(Identify("combo"), {L"large"}), SelectionResult::Success);
    EXPECT_EQ(desktop.Calls("combo", "accDoDefaultAction"), 0);
}

// Clearing.

TEST_F(ItemRequestsTest, ClearSelectedItemsOnAComboBoxOrPageTabListDoesNothingAndSucceeds) {
    EXPECT_EQ(Clear(Identify("combo")), SelectionResult::Success);
    EXPECT_EQ(Clear(Identify("tabs")), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), IsEmpty());
    EXPECT_THAT(Selected(Identify("tabs")).items, ElementsAre(L"General"));
}

TEST_F(ItemRequestsTest, SingleSelectionIsClearedOnRequestButKeptBeforeSelecting) {
    EXPECT_EQ(Select(Identify("one"), {}, ClearFirst), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("one")).items, ElementsAre(L"red"));
    EXPECT_EQ(Clear(Identify("one")), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("accSelect red 16"));
    EXPECT_EQ(Clear(Identify("one")), SelectionResult::Success) << "nothing is selected any more";
    EXPECT_EQ(Select(Identify("lone"), {}, ClearFirst), SelectionResult::Success);
    EXPECT_EQ(desktop.Done().size(), 1u);
    EXPECT_EQ(Clear(Identify("lone")), SelectionResult::Success);
    EXPECT_EQ(desktop.Done().back(), "accSelect fir 16");
}

TEST_F(ItemRequestsTest, SelectionIsClearedBeforeSelectingWhereTheItemSaysThatSeveralCanBeSelected) {
    EXPECT_EQ(Select(Identify("branches"), {}, ClearFirst), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("accSelect oak 16"));
}

TEST_F(ItemRequestsTest, ItemWithoutAnObjectIsNotPressedInAChromiumWindow) {
    EXPECT_EQ(Clear(Identify("simpleList", "page")), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("accSelect simple1 16"));
}

TEST_F(ItemRequestsTest, TableIsClearedItemByItemOfTheObjectThatStandsForItsSelection) {
    EXPECT_EQ(Clear(Identify("sheet")), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("accSelect picked1 16", "accSelect picked2 16"));
}

TEST_F(ItemRequestsTest, ContainerWhoseRoleCannotBeReadIsCleared) {
    desktop.AddFault("tabs", {.call = "get_accRole", .result = E_FAIL});
    EXPECT_EQ(Clear(Identify("tabs")), SelectionResult::Success);
    EXPECT_THAT(desktop.Done(), ElementsAre("accSelect tab1 16"));
}

TEST_F(ItemRequestsTest, ItemThatCannotBeClearedIsIgnored) {
    desktop.AddFault("banana", {.call = "accSelect", .result = E_FAIL});
    EXPECT_EQ(Clear(Identify("fruit")), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("fruit")).items, ElementsAre(L"banana"));
}

TEST_F(ItemRequestsTest, ClearingWhatHasNoSelectionSaysSo) {
    EXPECT_EQ(Clear(Identify("bar")), SelectionResult::NothingFoundNoSelectSupport);
    EXPECT_EQ(Clear(Identify("empty")), SelectionResult::Success);
}

// Reading the selection.

TEST_F(ItemRequestsTest, GetSelectedItemsOnAComboBoxIsItsValueEvenIfNothingInItsListIsSelected) {
    EXPECT_THAT(Selected(Identify("combo")).items, ElementsAre(L"small"));
    const auto answer = Selected(Identify("emptyCombo"));
    EXPECT_EQ(answer.status, SelectionResult::Success);
    EXPECT_THAT(answer.items, ElementsAre(L"typed"));
    desktop.AddFault("combo", {.call = "get_accValue", .null = true});
    EXPECT_THAT(Selected(Identify("combo")).items, ElementsAre(L"")) << "a null text is an empty one";
}

TEST_F(ItemRequestsTest, ComboBoxWhoseValueCannotBeReadAnswersWithItsSelection) {
    desktop.AddFault("emptyCombo", {.call = "get_accValue", .result = E_FAIL});
    EXPECT_EQ(Selected(Identify("emptyCombo")).status, SelectionResult::NothingFoundNoSelectSupport) << log.Text();
}

TEST_F(ItemRequestsTest, SelectedItemsOfATableAreItsValues) {
    const auto answer = Selected(Identify("sheet"));
    EXPECT_EQ(answer.status, SelectionResult::Success);
    EXPECT_THAT(answer.items, ElementsAre(L"v1", L"v2"));
}

TEST_F(ItemRequestsTest, SelectedTextsNeedAnAnswerOfExactlyZero) {
    desktop.AddFault("banana", {.call = "get_accName", .result = S_FALSE});
    auto answer = Selected(Identify("fruit"));
    EXPECT_EQ(answer.status, SelectionResult::Success);
    EXPECT_THAT(answer.items, IsEmpty());
    desktop.ClearFaults();
    desktop.AddFault("banana", {.call = "get_accName", .null = true});
    EXPECT_THAT(Selected(Identify("fruit")).items, ElementsAre(L""));
}

TEST_F(ItemRequestsTest, NothingSelectedIsASuccessOnlyWhereSomethingCouldBe) {
    EXPECT_EQ(Selected(Identify("empty")).status, SelectionResult::Success);
    desktop.AddFault("bar", {.call = "get_accSelection", .null = true});
    EXPECT_EQ(Selected(Identify("bar")).status, SelectionResult::NothingFoundNoSelectSupport);
}

// List boxes.

TEST_F(ItemRequestsTest, ListBoxesAreAskedByMessages) {
    EXPECT_EQ(Select(Identify("boxList", "box"), {L"b2"}), SelectionResult::Success);
    EXPECT_THAT(Selected(Identify("boxList", "box")).items, ElementsAre(L"b2"));
    EXPECT_EQ(Select(WindowOnly("formsBox"), {L"f?"}), SelectionResult::Success);
    EXPECT_THAT(Selected(WindowOnly("formsBox")).items, ElementsAre(L"f1", L"f2", L"f3"));
    EXPECT_EQ(Select(WindowOnly("formsBox"), {L"f3"}, ClearFirst), SelectionResult::Success);
    EXPECT_THAT(Selected(WindowOnly("formsBox")).items, ElementsAre(L"f3"));
    EXPECT_THAT(desktop.Done(), IsEmpty()) << "no element was touched";
}

TEST_F(ItemRequestsTest, ItemThatIsNotInAListBoxIsNothingFound) {
    EXPECT_EQ(Select(WindowOnly("box"), {L"nobody"}), SelectionResult::NothingFound);
    EXPECT_EQ(Select(WindowOnly("formsBox"), {L"nobody"}), SelectionResult::NothingFound);
}

TEST_F(ItemRequestsTest, NoItemsClearAListBoxWithoutAskingForIt) {
    EXPECT_EQ(Select(WindowOnly("formsBox"), {}), SelectionResult::Success);
    EXPECT_EQ(Select(WindowOnly("box"), {}), SelectionResult::Success);
    EXPECT_EQ(Selected(WindowOnly("box")).status, SelectionResult::Success);
    EXPECT_THAT(Selected(WindowOnly("box")).items, IsEmpty());
    const auto forms = Selected(WindowOnly("formsBox"));
    EXPECT_EQ(forms.status, SelectionResult::NothingFoundNoSelectSupport) << "its client has no role of a list";
    EXPECT_THAT(forms.items, IsEmpty());
}

TEST_F(ItemRequestsTest, ListBoxThatDoesNotTellItsSelectionFailsWithAsManyEmptyTexts) {
    desktop.AddFault("formsBox", {.call = "SendMessage", .at = 2, .count = -1});
    const auto answer = Selected(WindowOnly("formsBox"));
    EXPECT_EQ(answer.status, SelectionResult::Failure) << "an empty text is no empty answer";
    EXPECT_THAT(answer.items, ElementsAre(L""));
    EXPECT_TRUE(log.Contains("E [GetSelectedItemsImpl_ListBox] GetSelectedItemsImpl_ListBox: Could not retrieve")) << log.Text();
}

// Servers that don't keep still.

TEST_F(ItemRequestsTest, RequestThatStopsAfterTheItemsGetsNoResponse) {
    SetSelectedItemsRequest request;
    request.element = WindowOnly("main");
    request.items = {L"a"};
    RequestBuffer bytes = EncodeRequest(request);
    bytes.resize(bytes.size() - 5);
    const auto size = static_cast<std::uint32_t>(bytes.size());
    std::copy_n(reinterpret_cast<const std::uint8_t*>(&size), sizeof size, bytes.begin());
    EXPECT_TRUE(CallRaw(bytes).empty());
    EXPECT_TRUE(log.Contains("Failed to dispatch request: "));
}

// An item whose selection runs a test's own code, as a server may.
class Reentrant final : public FakeAccessible {
public:
    Reentrant() : FakeAccessible(ROLE_SYSTEM_LISTITEM, L"item") {}
    std::function<void()> during;
    int selections = 0;

    HRESULT STDMETHODCALLTYPE accSelect(LONG, VARIANT) override {
        ++selections;
        if (const auto now = std::exchange(during, nullptr)) now();
        return S_OK;
    }
};

class ReentrantServer : public ItemRequestsTest {
protected:
    void SetUp() override {
        list.AddChild(item);
        identifier = AAContainerCache::Instance().RegisterObject({kClientPid, desktop.Window("main")},
                                                                 AAElement{desktop.Window("main"), CComPtr<IAccessible>(&list), CComVariant(CHILDID_SELF)});
    }
    void TearDown() override {
        CacheCleaner::Release();
        EXPECT_EQ(list.references, 0);
        EXPECT_EQ(item.references, 0);
        list.ReturnChildren();
    }

    FakeAccessible list{ROLE_SYSTEM_LIST, L"list"};
    Reentrant item;
    AAObjectIdentifier identifier;
};

TEST_F(ReentrantServer, MayAskTheServerAgainFromInsideAnAction) {
    item.during = [&] { EXPECT_EQ(Select(identifier, {L"item"}), SelectionResult::Success); };
    EXPECT_EQ(Select(identifier, {L"item"}), SelectionResult::Success) << log.Text();
    EXPECT_EQ(item.selections, 2);
}

TEST_F(ReentrantServer, MayHaveItsClientUnregisteredFromInsideAnAction) {
    item.during = [] { CacheCleaner::Release(); };
    EXPECT_EQ(Select(identifier, {L"item", L"item"}), SelectionResult::Success) << log.Text();
    EXPECT_EQ(Select(identifier, {L"item"}), SelectionResult::Failure) << "the identifier is forgotten now";
}

TEST_F(ReentrantServer, MayDestroyItsWindowFromInsideAnAction) {
    item.during = [&] { desktop.DestroyWindow("main"); };
    EXPECT_EQ(Select(identifier, {L"item", L"item"}), SelectionResult::Success) << "the objects still answer";
    EXPECT_EQ(item.selections, 2);
}

TEST_F(ItemRequestsTest, WindowDestroyedByAnActionIsSurvived) {
    const auto fruit = Identify("fruit");
    desktop.AddFault("apple", {.call = "accSelect", .actions = {{.kind = Simulated::Action::Kind::DestroyWindow, .target = "main"}}});
    EXPECT_NE(Select(fruit, {L"a*"}), SelectionResult::ItemDisabled);
    CacheCleaner::Release();
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST_F(ItemRequestsTest, EndlessListEndsByTheDeadline) {
    CacheCleaner::Release();
    DesktopFixture endless(R"({"windows": [{"id": "w", "class": "C", "objects": {"client": {"id": "l", "role": "list",
        "children": [{"id": "deep", "role": "pane", "endless": true}]}}}]})");
    const auto identifier = AAContainerCache::Instance().RegisterObject(
        {kClientPid, endless.Window("w")}, AAElement{endless.Window("w"), endless.Element("l"), endless.Child("l")});
    endless.AddFault("deep", {.call = "get_accRole", .stall = 100});
    Simulated::SetClockTick(1);
    const ULONGLONG before = Simulated::ClockMilliseconds();
    EXPECT_EQ(All(identifier).status, SelectionResult::NothingFound);
    const ULONGLONG taken = Simulated::ClockMilliseconds() - before;
    Simulated::SetClockTick(0);
    EXPECT_GE(taken, 30'000u);
    EXPECT_LE(taken, 31'000u);
    CacheCleaner::Release();
}

TEST_F(ItemRequestsTest, AnyFaultAtAnyCallEndsWellAndLeavesNoReference) {
    std::vector<Simulated::Fault> kinds(6);
    kinds[0].result = E_FAIL;
    kinds[1].null = true;
    kinds[2].type = VT_I2;
    kinds[3].count = -1;
    kinds[4].result = S_FALSE;
    kinds[5].raise = true;
    // Small ones: each is loaded anew for each call that fails.
    constexpr struct {
        const wchar_t* item;
        const char* windowClass;
        const char* container;
    } targets[] = {
        {L"a*", "Main", R"("role": "list", "state": ["multiselectable"], "children": [
            {"role": "list item", "name": "apple", "state": ["selectable"]},
            {"role": "list item", "name": "apricot", "state": ["selectable", "selected"]}])"},
        {L"rose", "Main", R"("role": "list", "children": [
            {"role": "list item", "name": "red", "simple": true, "state": ["selectable", "selected"]},
            {"role": "list item", "name": "rose", "simple": true, "state": ["selectable"]}])"},
        {L"bert", "Main", R"("role": "table", "selection": [], "children": [
            {"role": "row", "children": [{"role": "cell", "value": "anna"}]}, {"role": "row", "children": [{"role": "cell", "value": "bert"}]}])"},
        {L"v1", "Main", R"("role": "table", "selection": ["picked"], "children": [
            {"id": "picked", "role": "list", "children": [{"role": "cell", "value": "v1"}, {"role": "cell", "value": "v2", "simple": true}]}])"},
        {L"Details", "Main", R"("role": "page tab list", "children": [
            {"role": "page tab", "name": "General", "state": ["selectable", "selected"]},
            {"role": "page tab", "name": "Details", "state": ["selectable"], "defaultAction": "Switch"}])"},
        {L"large", "Main", R"("role": "combo box", "value": "small", "children": [
            {"role": "list", "children": [{"role": "list item", "name": "large", "state": ["selectable"]}]}])"},
        {L"option", "Chrome_WidgetWin_1", R"("role": "combo box", "value": "x", "state": ["collapsed"], "defaultAction": "open", "children": [],
            "action": [{"toggle": ["expanded", "collapsed"]},
              {"insert": {"role": "list", "children": [{"role": "list item", "name": "option"}]}, "into": "container"}])"}};
    for (const auto& target : targets) {
        const std::string text = std::string(R"({"windows": [{"id": "w", "class": ")") + target.windowClass +
                                 R"(", "objects": {"client": {"children": [{"id": "container", )" + target.container + "}]}}}]}";
        for (const auto& kind : kinds)
            for (unsigned at = 1; at < 600; ++at) {
                DesktopFixture faulty(text);
                const HWND window = faulty.Window("w");
                const auto identifier = AAContainerCache::Instance().RegisterObject(
                    {kClientPid, window}, AAElement{window, faulty.Element("container"), CComVariant(CHILDID_SELF)});
                Simulated::Fault fault = kind;
                fault.at = at;
                fault.times = 1;
                faulty.AddFault(fault);
                const int before = faulty.TotalCalls();
                try {
                    All(identifier);
                    Select(identifier, {target.item}, ClearFirst);
                    Selected(identifier);
                    Clear(identifier);
                } catch (const Simulated::ServerFailure&) {
                }
                const int calls = faulty.TotalCalls() - before;
                faulty.ClearFaults();
                CacheCleaner::Release();
                ASSERT_EQ(faulty.OutstandingReferences(), 0) << target.container << ", call " << at;
                if (calls < static_cast<int>(at)) break;
            }
    }
}

}  // namespace
}  // namespace Zorvex::Testing
