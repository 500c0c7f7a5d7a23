#include "Platform/Simulated/AccessibleElement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Simulated/DesktopFile.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/DesktopFixture.h"

using Zorvex::Testing::DesktopFixture;

namespace Simulated {
namespace {

std::string Tree(const std::string& children, const std::string& more = "") {
    return R"({"windows":[{"id":"w","class":"C","title":"T","rectangle":[0,0,100,100],"objects":{"client":{"id":"root","children":[)" +
           children + "]" + more + "}}}]}";
}

const CComVariant Self(CHILDID_SELF);

HRESULT NameOf(IAccessible* object, const VARIANT& child, std::wstring& name) {
    CComBSTR text;
    const HRESULT result = object->get_accName(child, &text);
    name = text.ToString();
    return result;
}

TEST(AccessibleElement, AbsentNameIsFalseWithANullStringAndAnEmptyOneIsThere) {
    DesktopFixture desktop(Tree(R"({"id":"a"},{"id":"b","name":""},{"id":"c","name":"x"})"));
    CComBSTR text;
    EXPECT_EQ(desktop.Element("a")->get_accName(Self, &text), S_FALSE);
    EXPECT_EQ(text.m_str, nullptr);
    EXPECT_EQ(desktop.Element("b")->get_accName(Self, &text), S_OK);
    EXPECT_NE(text.m_str, nullptr);
    EXPECT_EQ(desktop.Element("c")->get_accName(Self, &text), S_OK);
    EXPECT_EQ(text.ToString(), L"x");
    EXPECT_EQ(desktop.Element("c")->get_accValue(Self, &text), S_FALSE);
}

TEST(AccessibleElement, SimpleChildIsAnsweredByItsContainerAndCountedOnItself) {
    DesktopFixture desktop(Tree(R"({"id":"a"},{"id":"s","simple":true,"name":"S","role":"list item"})"));
    const CComPtr<IAccessible> root = desktop.Element("s");
    EXPECT_EQ(desktop.ChildId("s"), 2);
    std::wstring name;
    EXPECT_EQ(NameOf(root, desktop.Child("s"), name), S_OK);
    EXPECT_EQ(name, L"S");
    CComVariant role;
    EXPECT_EQ(root->get_accRole(desktop.Child("s"), &role), S_OK);
    EXPECT_EQ(role.lVal, 34);
    CComPtr<IDispatch> object;
    EXPECT_EQ(root->get_accChild(desktop.Child("s"), &object), S_FALSE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(desktop.Calls("s", "get_accName"), 1);
    EXPECT_EQ(desktop.Calls("root", "get_accName"), 0);
    // A child with an object of its own isn't answered for, nor one that isn't there.
    EXPECT_EQ(NameOf(root, CComVariant(1), name), E_INVALIDARG);
    EXPECT_EQ(NameOf(root, CComVariant(3), name), E_INVALIDARG);
    EXPECT_EQ(NameOf(root, CComVariant(-1), name), E_INVALIDARG);
    EXPECT_EQ(NameOf(root, CComVariant(L"1"), name), E_INVALIDARG);
}

TEST(AccessibleElement, ReferencesAreCountedPerElementAndOverall) {
    DesktopFixture desktop(Tree(R"({"id":"a"})"));
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
    {
        const CComPtr<IAccessible> a = desktop.Element("a");
        const CComPtr<IAccessible> again = desktop.Element("a");
        EXPECT_EQ(a.p, again.p) << "one object an element";
        EXPECT_EQ(desktop.OutstandingReferences("a"), 2);
        EXPECT_EQ(desktop.OutstandingReferences(), 2);
        CComPtr<IDispatch> parent;
        ASSERT_EQ(a->get_accParent(&parent), S_OK);
        EXPECT_EQ(desktop.OutstandingReferences(), 3);
    }
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(AccessibleElement, ProxiesAreNewObjectsWithOtherIdentitiesEachTime) {
    DesktopFixture desktop(Tree(R"({"id":"a","proxies":true,"uia":{"runtimeId":[42,7]}})"));
    const CComPtr<IAccessible> first = desktop.Element("a");
    const CComPtr<IAccessible> second = desktop.Element("a");
    CComPtr<IUnknown> firstUnknown, secondUnknown, firstAgain;
    ASSERT_EQ(first.QueryInterface(firstUnknown), S_OK);
    ASSERT_EQ(first.QueryInterface(firstAgain), S_OK);
    ASSERT_EQ(second.QueryInterface(secondUnknown), S_OK);
    EXPECT_NE(firstUnknown.p, secondUnknown.p);
    EXPECT_EQ(firstUnknown.p, firstAgain.p);
}

TEST(AccessibleElement, HtmlElementIsGivenByTheServiceProviderAlone) {
    DesktopFixture desktop(Tree(R"({"id":"html","html":true},{"id":"ia2","ia2":{}})"));
    const auto services = [&](const char* id) {
        CComPtr<IServiceProvider> provider;
        EXPECT_EQ(desktop.Element(id).QueryInterface(provider), S_OK);
        return provider;
    };
    CComPtr<IUnknown> html;
    const auto out = reinterpret_cast<void**>(&html);
    EXPECT_EQ(services("html")->QueryService(IidOf<IHTMLElement>(), IidOf<IHTMLElement>(), out), S_OK);
    EXPECT_TRUE(html);
    html.Release();
    EXPECT_EQ(services("ia2")->QueryService(IidOf<IHTMLElement>(), IidOf<IHTMLElement>(), out), E_NOINTERFACE);
    EXPECT_EQ(desktop.Element("html")->QueryInterface(IidOf<IHTMLElement>(), out), E_NOINTERFACE);
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(AccessibleElement, OffersOnlyTheInterfacesThatTheFileTells) {
    DesktopFixture desktop(Tree(R"({"id":"plain"},{"id":"ia2","ia2":{}},{"id":"text","ia2":{"text":""}},{"id":"uia","uia":{}},
        {"id":"identity","identity":"x"},{"id":"denied","ia2":{},"serviceProvider":false},{"id":"bare","serviceProvider":true})"));
    const auto offers = [&]<class Interface>(const char* id, Interface*) {
        CComPtr<Interface> found;
        const HRESULT result = desktop.Element(id).QueryInterface(found);
        EXPECT_EQ(SUCCEEDED(result), found != nullptr);
        return SUCCEEDED(result);
    };
    IServiceProvider* provider = nullptr;
    IAccessible2* ia2 = nullptr;
    IAccessibleText* text = nullptr;
    IAccessibleEx* ex = nullptr;
    IAccIdentity* identity = nullptr;
    IEnumVARIANT* enumerator = nullptr;
    EXPECT_FALSE(offers("plain", provider) || offers("plain", ia2) || offers("plain", ex) || offers("plain", identity) || offers("plain", enumerator));
    EXPECT_TRUE(offers("ia2", provider) && offers("ia2", ia2));
    EXPECT_FALSE(offers("ia2", text));
    EXPECT_TRUE(offers("text", text));
    EXPECT_TRUE(offers("uia", provider) && offers("uia", ex));
    EXPECT_TRUE(offers("identity", identity));
    EXPECT_FALSE(offers("denied", provider));
    EXPECT_TRUE(offers("bare", provider));
}

TEST(AccessibleElement, FaultsAnswerAsPlannedAtTheirCalls) {
    DesktopFixture desktop(Tree(R"({"id":"a","name":"N","role":9,"state":["focusable"],"faults":[
        {"call":"get_accName","at":2,"times":1,"result":"0x80004005"},{"call":"get_accName","at":3,"times":1,"null":true},
        {"call":"get_accName","at":4,"times":1,"text":"other","result":1},{"call":"get_accRole","type":"VT_I2"},
        {"call":"get_accState","type":"VT_DISPATCH"},{"call":"get_accChildCount","count":-1}]})"));
    const CComPtr<IAccessible> a = desktop.Element("a");
    std::wstring name;
    EXPECT_EQ(NameOf(a, Self, name), S_OK);
    EXPECT_EQ(NameOf(a, Self, name), E_FAIL);
    EXPECT_EQ(NameOf(a, Self, name), S_OK);
    EXPECT_EQ(name, L"");
    EXPECT_EQ(NameOf(a, Self, name), S_FALSE);
    EXPECT_EQ(name, L"other");
    EXPECT_EQ(NameOf(a, Self, name), S_OK);
    EXPECT_EQ(name, L"N");
    CComVariant role, state;
    EXPECT_EQ(a->get_accRole(Self, &role), S_OK);
    EXPECT_EQ(role.vt, VT_I2);
    EXPECT_EQ(a->get_accState(Self, &state), S_OK);
    EXPECT_EQ(state.vt, VT_DISPATCH);
    EXPECT_EQ(state.pdispVal, nullptr);
    LONG count = 0;
    EXPECT_EQ(a->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, -1);
    EXPECT_EQ(desktop.Calls("a", "get_accName"), 5);
}

TEST(AccessibleElement, ChildCountMayLieByAnyNumber) {
    for (const LONG lie : {-1, 999999, 1000000, INT_MAX}) {
        DesktopFixture desktop(Tree(R"({"id":"a"})"));
        desktop.AddFault("root", {.call = "get_accChildCount", .count = lie});
        LONG count = 0;
        const CComPtr<IAccessible> root = desktop.Element("root");
        EXPECT_EQ(root->get_accChildCount(&count), S_OK);
        EXPECT_EQ(count, lie);
        CComPtr<IDispatch> beyond;
        EXPECT_EQ(root->get_accChild(CComVariant(INT_MAX), &beyond), E_INVALIDARG);
    }
}

TEST(AccessibleElement, ExceptionLeavesTheCallAndTheDesktopStaysUsable) {
    DesktopFixture desktop(Tree(R"({"id":"a","name":"N"})"));
    desktop.AddFault("a", {.call = "get_accName", .times = 1, .raise = true});
    const CComPtr<IAccessible> a = desktop.Element("a");
    std::wstring name;
    EXPECT_THROW(NameOf(a, Self, name), ServerFailure);
    EXPECT_EQ(NameOf(a, Self, name), S_OK);
}

TEST(AccessibleElement, StallMovesTheClockAndThenAnswers) {
    DesktopFixture desktop(Tree(R"({"id":"a","name":"N"})"));
    desktop.AddFault("a", {.call = "get_accName", .stall = 700});
    const ULONGLONG before = ClockMilliseconds();
    std::wstring name;
    EXPECT_EQ(NameOf(desktop.Element("a"), Self, name), S_OK);
    EXPECT_EQ(name, L"N");
    EXPECT_EQ(ClockMilliseconds() - before, 700u);
    EXPECT_EQ(MillisecondsSlept(), 0u) << "a stall isn't the caller's sleep";
}

TEST(AccessibleElement, EveryCallOfTheDesktopCanBeTheOneThatFails) {
    DesktopFixture desktop(Tree(R"({"id":"a","name":"N"},{"id":"b","name":"M"})"));
    const CComPtr<IAccessible> a = desktop.Element("a");
    const CComPtr<IAccessible> b = desktop.Element("b");
    for (unsigned nth = 1; nth <= 4; ++nth) {
        desktop.ClearFaults();
        desktop.AddFault({.at = nth, .times = 1, .result = E_ACCESSDENIED});
        unsigned failed = 0;
        for (unsigned call = 1; call <= 4; ++call) {
            std::wstring name;
            if (NameOf(call % 2 ? a : b, Self, name) == E_ACCESSDENIED) failed = call;
        }
        EXPECT_EQ(failed, nth);
    }
    desktop.ClearFaults();
    desktop.AddFault({.at = 2, .every = 3, .result = E_FAIL});
    std::string pattern;
    std::wstring name;
    for (int i = 0; i < 9; ++i) pattern += FAILED(NameOf(a, Self, name)) ? 'x' : '.';
    EXPECT_EQ(pattern, ".x..x..x.");
}

TEST(AccessibleElement, FaultOnOneInterfaceLeavesTheOthers) {
    DesktopFixture desktop(Tree(R"({"id":"a","ia2":{},"faults":[{"call":"QueryInterface","interface":"IServiceProvider","null":true}]})"));
    CComPtr<IServiceProvider> provider;
    EXPECT_EQ(desktop.Element("a").QueryInterface(provider), S_OK);
    EXPECT_EQ(provider, nullptr);
    CComPtr<IAccessible2> ia2;
    EXPECT_EQ(desktop.Element("a").QueryInterface(ia2), S_OK);
    EXPECT_NE(ia2, nullptr);
}

TEST(AccessibleElement, RemovedElementAnswersThatItIsNotConnected) {
    DesktopFixture desktop(Tree(R"({"id":"a","name":"N","children":[{"id":"b"}]},{"id":"c","removedResult":"0x80010108"})"));
    const CComPtr<IAccessible> b = desktop.Element("b");
    const CComPtr<IAccessible> c = desktop.Element("c");
    desktop.RemoveElement("a");
    desktop.RemoveElement("c");
    std::wstring name;
    EXPECT_EQ(NameOf(b, Self, name), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(NameOf(c, Self, name), RPC_E_DISCONNECTED);
    LONG count = -1;
    EXPECT_EQ(desktop.Element("root")->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 0);
}

TEST(AccessibleElement, TreeChangesInTheMiddleOfACall) {
    DesktopFixture desktop(Tree(R"({"id":"a","name":"N","faults":[{"call":"get_accName","at":2,"times":1,"do":[
        {"insert":{"id":"new","name":"X","children":[{"id":"below"}]},"into":"root","at":0},{"remove":"self"}]}]})"));
    const CComPtr<IAccessible> a = desktop.Element("a");
    std::wstring name;
    EXPECT_EQ(NameOf(a, Self, name), S_OK);
    EXPECT_EQ(NameOf(a, Self, name), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(NameOf(desktop.Element("new"), Self, name), S_OK);
    EXPECT_EQ(name, L"X");
    CComPtr<IDispatch> parent;
    EXPECT_EQ(desktop.Element("below")->get_accParent(&parent), S_OK);
}

TEST(AccessibleElement, InsertingTheSamePlanTwiceGivesTwoElementsOneOfThemWithoutId) {
    DesktopFixture desktop(Tree(R"({"id":"a","action":[{"insert":{"id":"new"},"into":"root"}]})"));
    desktop.Element("a")->accDoDefaultAction(Self);
    desktop.Element("a")->accDoDefaultAction(Self);
    LONG count = 0;
    desktop.Element("root")->get_accChildCount(&count);
    EXPECT_EQ(count, 3);
}

TEST(AccessibleElement, ObjectsOutliveTheirDesktop) {
    CComPtr<IAccessible> kept;
    {
        DesktopFixture desktop(Tree(R"({"id":"a","name":"N"})"));
        kept = desktop.Element("a");
    }
    std::wstring name;
    EXPECT_EQ(NameOf(kept, Self, name), S_OK);
    CComPtr<IDispatch> parent;
    EXPECT_EQ(kept->get_accParent(&parent), S_OK);
}

TEST(AccessibleElement, EndlessTreeGoesAsDeepAsAnybodyWalksAndEndsWithoutRecursion) {
    DesktopFixture desktop(Tree("", R"(,"endless":true,"name":"again")"));
    {
        CComPtr<IAccessible> at = desktop.Element("root");
        for (int depth = 0; depth < 20'000; ++depth) {
            LONG count = 0;
            ASSERT_EQ(at->get_accChildCount(&count), S_OK);
            ASSERT_EQ(count, 1);
            CComPtr<IDispatch> child;
            ASSERT_EQ(at->get_accChild(CComVariant(1), &child), S_OK);
            CComPtr<IAccessible> below;
            ASSERT_EQ(child.QueryInterface(below), S_OK);
            at = below;
        }
        CComPtr<IDispatch> parent;
        EXPECT_EQ(at->get_accParent(&parent), S_OK);
        std::wstring name;
        EXPECT_EQ(NameOf(at, Self, name), S_OK);
        EXPECT_EQ(name, L"again");
    }
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
}

TEST(AccessibleElement, RingOfReferencesLeadsBackToTheSameObject) {
    DesktopFixture desktop(Tree(R"({"id":"a","children":[{"element":"root"}]})"));
    CComPtr<IDispatch> child;
    ASSERT_EQ(desktop.Element("a")->get_accChild(CComVariant(1), &child), S_OK);
    EXPECT_EQ(child.p, desktop.Element("root").p);
    CComVariant hit;
    EXPECT_EQ(desktop.Element("root")->accHitTest(5, 5, &hit), S_OK);
}

TEST(AccessibleElement, FocusIsFollowedFromTheStateUnlessTheFileTells) {
    DesktopFixture desktop(Tree(R"({"id":"a","children":[{"id":"x"},{"id":"s","simple":true,"state":["focused"]}]},{"id":"b"},{"id":"c","focus":"b"})"));
    CComVariant focus;
    EXPECT_EQ(desktop.Element("root")->get_accFocus(&focus), S_OK);
    ASSERT_EQ(focus.vt, VT_DISPATCH);
    EXPECT_EQ(focus.pdispVal, desktop.Element("a").p);
    EXPECT_EQ(desktop.Element("a")->get_accFocus(&focus), S_OK);
    EXPECT_EQ(focus.vt, VT_I4);
    EXPECT_EQ(focus.lVal, 2);
    EXPECT_EQ(desktop.Element("b")->get_accFocus(&focus), S_FALSE);
    EXPECT_EQ(focus.vt, VT_EMPTY);
    EXPECT_EQ(desktop.Element("c")->get_accFocus(&focus), S_OK);
    EXPECT_EQ(focus.pdispVal, desktop.Element("b").p);
    focus.Clear();
    EXPECT_EQ(desktop.Element("b")->accSelect(SELFLAG_TAKEFOCUS, Self), S_OK);
    EXPECT_EQ(desktop.Element("b")->get_accFocus(&focus), S_OK);
    EXPECT_EQ(focus.vt, VT_I4);
    EXPECT_EQ(focus.lVal, CHILDID_SELF);
}

TEST(AccessibleElement, SelectionIsEmptyOneOrAnEnumerator) {
    DesktopFixture desktop(Tree(R"({"id":"l","selection":[],"children":[{"id":"x"},{"id":"y","simple":true},{"id":"z","simple":true}]},{"id":"none"})"));
    const CComPtr<IAccessible> list = desktop.Element("l");
    CComVariant selection;
    EXPECT_EQ(desktop.Element("none")->get_accSelection(&selection), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(list->get_accSelection(&selection), S_OK);
    EXPECT_EQ(selection.vt, VT_EMPTY);
    EXPECT_EQ(list->accSelect(SELFLAG_TAKESELECTION, desktop.Child("y")), S_OK);
    EXPECT_EQ(list->get_accSelection(&selection), S_OK);
    EXPECT_EQ(selection.vt, VT_I4);
    EXPECT_EQ(selection.lVal, 2);
    EXPECT_EQ(desktop.Element("x")->accSelect(SELFLAG_TAKESELECTION, Self), S_OK);
    EXPECT_EQ(list->get_accSelection(&selection), S_OK);
    EXPECT_EQ(selection.vt, VT_DISPATCH);
    EXPECT_EQ(list->accSelect(SELFLAG_ADDSELECTION, desktop.Child("z")), S_OK);
    EXPECT_EQ(list->get_accSelection(&selection), S_OK);
    ASSERT_EQ(selection.vt, VT_UNKNOWN);
    CComPtr<IEnumVARIANT> items;
    ASSERT_EQ(CComPtr<IUnknown>(selection.punkVal).QueryInterface(items), S_OK);
    CComVariant item;
    ULONG fetched = 0;
    EXPECT_EQ(items->Next(1, &item, &fetched), S_OK);
    EXPECT_EQ(item.vt, VT_DISPATCH);
    EXPECT_EQ(items->Next(1, &item, &fetched), S_OK);
    EXPECT_EQ(item.vt, VT_I4);
    EXPECT_EQ(item.lVal, 3);
    EXPECT_EQ(items->Next(1, &item, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(items->Reset(), S_OK);
    EXPECT_EQ(items->Skip(3), S_FALSE);
    EXPECT_EQ(list->accSelect(SELFLAG_REMOVESELECTION, desktop.Child("z")), S_OK);
    selection.Clear();
    EXPECT_EQ(list->get_accSelection(&selection), S_OK);
    EXPECT_EQ(selection.vt, VT_DISPATCH);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accSelect y 2", "accSelect x 2", "accSelect z 8", "accSelect z 16"));
}

TEST(AccessibleElement, SelectedStateOfChildrenIsASelectionAsWell) {
    DesktopFixture desktop(Tree(R"({"id":"l","children":[{"simple":true,"state":["selectable"]},{"simple":true,"state":["selected"]}]},
        {"id":"m","selectionAsEnumerator":true,"children":[{"state":["selected"]}]})"));
    CComVariant selection;
    EXPECT_EQ(desktop.Element("l")->get_accSelection(&selection), S_OK);
    EXPECT_EQ(selection.vt, VT_I4);
    EXPECT_EQ(selection.lVal, 2);
    EXPECT_EQ(desktop.Element("m")->get_accSelection(&selection), S_OK);
    EXPECT_EQ(selection.vt, VT_UNKNOWN);
}

TEST(AccessibleElement, HitTestGivesTheChildUnlessTheFileTells) {
    DesktopFixture desktop(Tree(R"({"id":"a","rectangle":[10,10,20,20],"children":[{"id":"b","rectangle":[10,10,5,5]}]},
        {"simple":true,"rectangle":[40,40,5,5]},{"rectangle":[60,60,9,9],"state":["invisible"]})"));
    const CComPtr<IAccessible> root = desktop.Element("root");
    CComVariant hit;
    EXPECT_EQ(root->accHitTest(12, 12, &hit), S_OK);
    EXPECT_EQ(hit.pdispVal, desktop.Element("a").p);
    EXPECT_EQ(root->accHitTest(41, 41, &hit), S_OK);
    EXPECT_EQ(hit.vt, VT_I4);
    EXPECT_EQ(hit.lVal, 2);
    EXPECT_EQ(root->accHitTest(61, 61, &hit), S_OK);
    EXPECT_EQ(hit.lVal, CHILDID_SELF);
    EXPECT_EQ(root->accHitTest(100, 5, &hit), S_FALSE);
    EXPECT_EQ(hit.vt, VT_EMPTY);
    desktop.Get().ElementById("root")->EditDetails().hitTest = HitTest::Deepest;
    EXPECT_EQ(root->accHitTest(12, 12, &hit), S_OK);
    EXPECT_EQ(hit.pdispVal, desktop.Element("b").p);
    desktop.Get().ElementById("root")->EditDetails().hitTarget = "b";
    EXPECT_EQ(root->accHitTest(99, 99, &hit), S_OK);
    EXPECT_EQ(hit.pdispVal, desktop.Element("b").p);
}

TEST(AccessibleElement, NavigationKnowsChildrenAndSiblings) {
    DesktopFixture desktop(Tree(R"({"id":"a"},{"id":"s","simple":true},{"id":"c"})"));
    const CComPtr<IAccessible> root = desktop.Element("root");
    CComVariant end;
    EXPECT_EQ(root->accNavigate(NAVDIR_FIRSTCHILD, Self, &end), S_OK);
    EXPECT_EQ(end.pdispVal, desktop.Element("a").p);
    EXPECT_EQ(root->accNavigate(NAVDIR_LASTCHILD, Self, &end), S_OK);
    EXPECT_EQ(end.pdispVal, desktop.Element("c").p);
    EXPECT_EQ(desktop.Element("a")->accNavigate(NAVDIR_NEXT, Self, &end), S_OK);
    EXPECT_EQ(end.vt, VT_I4);
    EXPECT_EQ(end.lVal, 2);
    EXPECT_EQ(root->accNavigate(NAVDIR_NEXT, desktop.Child("s"), &end), S_OK);
    EXPECT_EQ(end.pdispVal, desktop.Element("c").p);
    EXPECT_EQ(root->accNavigate(NAVDIR_PREVIOUS, desktop.Child("s"), &end), S_OK);
    EXPECT_EQ(end.pdispVal, desktop.Element("a").p);
    EXPECT_EQ(desktop.Element("c")->accNavigate(NAVDIR_NEXT, Self, &end), S_FALSE);
    EXPECT_EQ(desktop.Element("a")->accNavigate(NAVDIR_PREVIOUS, Self, &end), S_FALSE);
    EXPECT_EQ(desktop.Element("a")->accNavigate(NAVDIR_FIRSTCHILD, Self, &end), S_FALSE);
    EXPECT_EQ(root->accNavigate(NAVDIR_FIRSTCHILD, desktop.Child("s"), &end), E_INVALIDARG);
    EXPECT_EQ(root->accNavigate(99, Self, &end), E_INVALIDARG);
}

TEST(AccessibleElement, DefaultActionIsRecordedAndBringsItsEffectAbout) {
    DesktopFixture desktop(Tree(R"({"id":"a","role":"check box","defaultAction":"Check","action":[{"toggle":["checked"]}]},{"id":"b"},{"id":"c","defaultAction":"Press"})"));
    EXPECT_EQ(desktop.Element("a")->accDoDefaultAction(Self), S_OK);
    CComVariant state;
    desktop.Element("a")->get_accState(Self, &state);
    EXPECT_EQ(state.lVal, STATE_SYSTEM_CHECKED);
    EXPECT_EQ(desktop.Element("b")->accDoDefaultAction(Self), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(desktop.Element("c")->accDoDefaultAction(Self), S_OK);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction a", "accDoDefaultAction c"));
}

TEST(AccessibleElement, TheDefaultActionOfAnUnavailableElementComesToNothing) {
    DesktopFixture desktop(Tree(R"({"id":"a","state":["unavailable"],"action":[{"change":"a","name":"done"}]})"));
    EXPECT_EQ(desktop.Element("a")->accDoDefaultAction(Self), S_OK);
    CComBSTR name;
    desktop.Element("a")->get_accName(Self, &name);
    EXPECT_EQ(name.ToString(), L"");
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction a"));
}

TEST(AccessibleElement, ValueIsSetUnlessTheElementIsReadOnly) {
    DesktopFixture desktop(Tree(R"({"id":"a","value":"old"},{"id":"b","value":"old","state":["read only"]})"));
    EXPECT_EQ(desktop.Element("a")->put_accValue(Self, CComBSTR(L"new")), S_OK);
    CComBSTR value;
    desktop.Element("a")->get_accValue(Self, &value);
    EXPECT_EQ(value.ToString(), L"new");
    EXPECT_EQ(desktop.Element("b")->put_accValue(Self, CComBSTR(L"new")), E_ACCESSDENIED);
    EXPECT_EQ(desktop.Element("a")->put_accName(Self, CComBSTR(L"new")), DISP_E_MEMBERNOTFOUND);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("put_accValue a new"));
}

TEST(AccessibleElement, ANewValueIsWhatTheElementShows) {
    DesktopFixture desktop(R"({"windows":[{"id":"edit","class":"Edit","title":"old","objects":{"client":{"id":"field","value":"old"}}},
                                          {"class":"C","objects":{"client":{"children":[{"id":"line","value":"old","ia2":{"text":"old"}}]}}}]})");
    EXPECT_EQ(desktop.Element("field")->put_accValue(Self, CComBSTR(L"new")), S_OK);
    EXPECT_EQ(desktop.Get().WindowById("edit")->title, L"new");
    EXPECT_EQ(desktop.Element("line")->put_accValue(Self, CComBSTR(L"new")), S_OK);
    EXPECT_EQ(desktop.Get().ElementById("line")->Details().ia2->text, L"new");
}

TEST(AccessibleElement, AccessibleTwoAnswersRoleStatesIdAttributesAndScrolling) {
    DesktopFixture desktop(Tree(R"({"id":"a","ia2":{"role":1029,"states":12,"uniqueId":-7,"attributes":"tag:p;"}},{"id":"b","ia2":{}})"));
    CComPtr<IServiceProvider> provider;
    ASSERT_EQ(desktop.Element("a").QueryInterface(provider), S_OK);
    CComPtr<IAccessible2> ia2;
    IAccessible2** target = &ia2;
    ASSERT_EQ(provider->QueryService(IidOf<IAccessible>(), IidOf<IAccessible2>(), reinterpret_cast<void**>(target)), S_OK);
    LONG number = 0;
    EXPECT_EQ(ia2->role(&number), S_OK);
    EXPECT_EQ(number, 1029);
    EXPECT_EQ(ia2->get_states(&number), S_OK);
    EXPECT_EQ(number, 12);
    EXPECT_EQ(ia2->get_uniqueID(&number), S_OK);
    EXPECT_EQ(number, -7);
    HWND window = nullptr;
    EXPECT_EQ(ia2->get_windowHandle(&window), S_OK);
    EXPECT_EQ(window, desktop.Window("w"));
    CComBSTR attributes;
    EXPECT_EQ(ia2->get_attributes(&attributes), S_OK);
    EXPECT_EQ(attributes.ToString(), L"tag:p;");
    EXPECT_EQ(ia2->scrollTo(IA2_SCROLL_TYPE_ANYWHERE), S_OK);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("scrollTo a 6"));
    CComPtr<IAccessible2> bare;
    ASSERT_EQ(desktop.Element("b").QueryInterface(bare), S_OK);
    EXPECT_EQ(bare->get_attributes(&attributes), S_FALSE);
    EXPECT_EQ(bare->get_uniqueID(&number), E_FAIL);
    EXPECT_EQ(bare->get_nRelations(&number), E_NOTIMPL);
}

TEST(AccessibleElement, TextHasCharactersAndExtents) {
    DesktopFixture desktop(Tree(R"({"id":"a","rectangle":[10,20,40,16],"ia2":{"text":"abcd","characters":[[11,21,9,9]]}})"));
    CComPtr<IAccessibleText> text;
    ASSERT_EQ(desktop.Element("a").QueryInterface(text), S_OK);
    LONG count = 0;
    EXPECT_EQ(text->get_nCharacters(&count), S_OK);
    EXPECT_EQ(count, 4);
    CComBSTR part;
    EXPECT_EQ(text->get_text(0, -1, &part), S_OK);
    EXPECT_EQ(part.ToString(), L"abcd");
    EXPECT_EQ(text->get_text(3, 1, &part), S_OK);
    EXPECT_EQ(part.ToString(), L"bc");
    EXPECT_EQ(text->get_text(0, 5, &part), E_INVALIDARG);
    LONG x = 0, y = 0, w = 0, h = 0;
    EXPECT_EQ(text->get_characterExtents(0, IA2_COORDTYPE_SCREEN_RELATIVE, &x, &y, &w, &h), S_OK);
    EXPECT_THAT((std::vector<LONG>{x, y, w, h}), testing::ElementsAre(11, 21, 9, 9));
    EXPECT_EQ(text->get_characterExtents(2, IA2_COORDTYPE_SCREEN_RELATIVE, &x, &y, &w, &h), S_OK);
    EXPECT_THAT((std::vector<LONG>{x, y, w, h}), testing::ElementsAre(30, 20, 10, 16));
    EXPECT_EQ(text->get_characterExtents(5, IA2_COORDTYPE_SCREEN_RELATIVE, &x, &y, &w, &h), E_INVALIDARG);
    EXPECT_EQ(text->get_offsetAtPoint(35, 25, IA2_COORDTYPE_SCREEN_RELATIVE, &count), S_OK);
    EXPECT_EQ(count, 2);
}

TEST(AccessibleElement, AutomationGivesRuntimeIdsAndPropertiesAlsoOfSimpleChildren) {
    DesktopFixture desktop(Tree(R"({"id":"s","simple":true,"uia":{"runtimeId":[42,-5],"automationId":"auto","30099":true}},{"id":"t","simple":true})"));
    CComPtr<IAccessibleEx> ex, child;
    ASSERT_EQ(desktop.Element("root").QueryInterface(ex), S_OK);
    ASSERT_EQ(ex->GetObjectForChild(1, &child), S_OK);
    SAFEARRAY* id = nullptr;
    EXPECT_EQ(ex->GetRuntimeId(&id), E_NOTIMPL) << "the container has none";
    ASSERT_EQ(child->GetRuntimeId(&id), S_OK);
    LONG upper = -1, part = 0, index = 1;
    EXPECT_EQ(SafeArrayGetUBound(id, 1, &upper), S_OK);
    EXPECT_EQ(upper, 1);
    EXPECT_EQ(SafeArrayGetElement(id, &index, &part), S_OK);
    EXPECT_EQ(part, -5);
    SafeArrayDestroy(id);
    CComPtr<IRawElementProviderSimple> provider;
    ASSERT_EQ(child.QueryInterface(provider), S_OK);
    CComVariant value;
    EXPECT_EQ(provider->GetPropertyValue(30011, &value), S_OK);
    EXPECT_EQ(std::wstring(value.bstrVal), L"auto");
    EXPECT_EQ(provider->GetPropertyValue(30099, &value), S_OK);
    EXPECT_EQ(value.vt, VT_BOOL);
    EXPECT_EQ(provider->GetPropertyValue(30018, &value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
    CComPtr<IAccessible> pair;
    LONG pairChild = 0;
    EXPECT_EQ(child->GetIAccessiblePair(&pair, &pairChild), S_OK);
    EXPECT_EQ(pairChild, 1);
    CComPtr<IAccessible> none;
    EXPECT_EQ(child.QueryInterface(none), E_NOINTERFACE) << "a simple element is no accessible object";
    EXPECT_EQ(ex->GetObjectForChild(2, &child), S_OK);
    EXPECT_EQ(child, nullptr);
    EXPECT_EQ(ex->GetObjectForChild(3, &child), E_INVALIDARG);
}

TEST(AccessibleElement, IdentityIsGivenAsTaskMemory) {
    DesktopFixture desktop(Tree(R"({"id":"a","identity":"ab\u0000c"})"));
    CComPtr<IAccIdentity> identity;
    ASSERT_EQ(desktop.Element("a").QueryInterface(identity), S_OK);
    BYTE* bytes = nullptr;
    DWORD length = 0;
    ASSERT_EQ(identity->GetIdentityString(0, &bytes, &length), S_OK);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), length), std::string("ab\0c", 4));
    CoTaskMemFree(bytes);
}

TEST(AccessibleElement, AHundredThousandElementsLoadQuicklyAndAreMadeOnDemand) {
    std::string children;
    for (int i = 0; i < 100'000; ++i) children += (i ? ",{\"role\":43,\"name\":\"Button " : "{\"role\":43,\"name\":\"Button ") + std::to_string(i) + "\",\"rectangle\":[1,2,3,4]}";
    const DesktopFixture desktop(Tree(children));
    EXPECT_EQ(desktop.OutstandingReferences(), 0);
    LONG count = 0;
    EXPECT_EQ(desktop.Element("root")->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 100'000);
    EXPECT_LE(sizeof(Element), 400u) << "an element without details stays small";
}

}  // namespace
}  // namespace Simulated
