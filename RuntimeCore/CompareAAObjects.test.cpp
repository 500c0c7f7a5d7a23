#include "RuntimeCore/CompareAAObjects.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Common/include/CComVariant.h"
#include "tests/Support/FakeAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeCalls;
using Testing::FakeObjects;
using Testing::LogCapture;

const CComVariant Self(CHILDID_SELF);

// Two objects that agree in everything that can be read.
class Pair {
public:
    Pair() : first(objects.Add(ROLE_SYSTEM_PUSHBUTTON, L"OK")), second(objects.Add(ROLE_SYSTEM_PUSHBUTTON, L"OK")) {
        for (FakeAccessible* object : {&first, &second}) {
            object->value = L"v";
            object->width = 30;
            object->height = 20;
        }
    }
    BOOL Compare(BOOL compareParents = FALSE, const VARIANT& child = Self) {
        log.Clear();
        const BOOL equal = CompareAAObjects(CComPtr<IAccessible>(&first), child, CComPtr<IAccessible>(&second), child, compareParents);
        EXPECT_EQ(objects.OutstandingReferences(), 0);
        return equal;
    }
    // The messages of the last comparison, without severity and function.
    std::string LastMessage() const {
        const std::vector<std::string> lines = log.Lines();
        return lines.empty() ? std::string() : lines.back();
    }
    void GiveRuntimeIds(std::vector<LONG> id1, std::vector<LONG> id2) {
        first.hasAccessibleEx = second.hasAccessibleEx = true;
        first.runtimeId = std::move(id1);
        second.runtimeId = std::move(id2);
    }
    void GiveIdentities(std::string id1, std::string id2) {
        first.hasIdentity = second.hasIdentity = true;
        first.identity = std::move(id1);
        second.identity = std::move(id2);
    }

    LogCapture log;
    FakeObjects objects;
    FakeAccessible& first;
    FakeAccessible& second;
};

TEST(CompareAAObjects, TwoEmptyPointersAreTheSameWhateverTheChildIds) {
    LogCapture log;
    EXPECT_TRUE(CompareAAObjects(nullptr, Self, nullptr, CComVariant(5), TRUE));
    EXPECT_TRUE(CompareAAObjects(nullptr, CComVariant(L"x"), nullptr, CComVariant(), FALSE));
    EXPECT_EQ(log.Count("CompareAAObjects starts"), 2u);
    EXPECT_EQ(log.Count("CompareAAObjects: NULL objects, return TRUE"), 2u);
}

TEST(CompareAAObjects, OneEmptyPointerIsDifferent) {
    LogCapture log;
    FakeObjects objects;
    FakeAccessible& object = objects.Add();
    EXPECT_FALSE(CompareAAObjects(&object, Self, nullptr, Self, FALSE));
    EXPECT_FALSE(CompareAAObjects(nullptr, Self, &object, Self, FALSE));
    EXPECT_EQ(log.Count("CompareAAObjects: one NULL object, return FALSE"), 2u);
}

TEST(CompareAAObjects, TwoChildIdsOfOneContainerAreDifferentWithoutACall) {
    LogCapture log;
    FakeObjects objects;
    FakeAccessible& container = objects.Add();
    EXPECT_FALSE(CompareAAObjects(&container, CComVariant(1), &container, CComVariant(2), TRUE));
    EXPECT_EQ(container.calls, 0);
    EXPECT_TRUE(log.Contains("Compare AA child indexes"));
    EXPECT_TRUE(log.Contains("CompareAAObjects: vChild1 != vChild2, return FALSE"));
}

TEST(CompareAAObjects, ChildIdsOfDifferentTypesAreDifferent) {
    FakeObjects objects;
    FakeAccessible& container = objects.Add();
    CComVariant shortZero;
    shortZero.vt = VT_I2;
    shortZero.iVal = 0;
    EXPECT_FALSE(CompareAAObjects(&container, CComVariant(0), &container, shortZero, FALSE));
    EXPECT_EQ(container.calls, 0);
}

TEST(CompareAAObjects, OneObjectIsItself) {
    LogCapture log;
    FakeObjects objects;
    FakeAccessible& object = objects.Add();
    EXPECT_TRUE(CompareAAObjects(&object, CComVariant(3), &object, CComVariant(3), TRUE));
    EXPECT_TRUE(log.Contains("CompareAAObjects: Compare IUnknown pointers"));
    EXPECT_TRUE(log.Contains("CompareAAObjects: IsEqualObject, return TRUE"));
    EXPECT_EQ(object.calls, 2);
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST(CompareAAObjects, TwoProxiesOfOneUnknownAreTheSame) {
    Pair pair;
    pair.second.unknown = &pair.first;
    pair.second.name = L"another";
    EXPECT_TRUE(pair.Compare());
}

TEST(CompareAAObjects, TwoNullUnknownsSayNothing) {
    Pair pair;
    pair.first.nullInterfaces = pair.second.nullInterfaces = {IidOf<IUnknown>()};
    pair.second.name = L"another";
    EXPECT_FALSE(pair.Compare());
    EXPECT_FALSE(pair.log.Contains("IsEqualObject"));
}

TEST(CompareAAObjects, EqualRuntimeIdsDecideWhateverElseDiffers) {
    Pair pair;
    pair.GiveRuntimeIds({42, 7}, {42, 7});
    pair.second.name = L"another";
    pair.second.state = CComVariant(4);
    EXPECT_TRUE(pair.Compare());
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: Try IAccessibleEx Runtime ID"));
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: return AACompareRuntimeId=1"));
    EXPECT_FALSE(pair.log.Contains("Compare states"));
}

TEST(CompareAAObjects, DifferentRuntimeIdsDecideWhateverElseAgrees) {
    Pair pair;
    pair.GiveRuntimeIds({1, 2}, {12});
    EXPECT_FALSE(pair.Compare());
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: return AACompareRuntimeId=0"));
}

TEST(CompareAAObjects, AnElementWithARuntimeIdIsNeverOneWithout) {
    Pair pair;
    pair.GiveRuntimeIds({1}, {1});
    pair.second.hasAccessibleEx = false;
    EXPECT_FALSE(pair.Compare());
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: return AACompareRuntimeId=0"));
    pair.first.hasAccessibleEx = false;
    pair.second.hasAccessibleEx = true;
    EXPECT_FALSE(pair.Compare());
}

TEST(CompareAAObjects, EmptyRuntimeIdsFallThrough) {
    Pair pair;
    pair.GiveRuntimeIds({}, {});
    EXPECT_TRUE(pair.Compare());
    EXPECT_FALSE(pair.log.Contains("AACompareRuntimeId="));
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: return TRUE"));
}

TEST(CompareAAObjects, StatesCountBeforeTheIdentityString) {
    Pair pair;
    pair.GiveIdentities("same", "same");
    pair.second.state = CComVariant(STATE_SYSTEM_FOCUSED);
    EXPECT_FALSE(pair.Compare());
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: Compare states"));
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: Diferent states, return FALSE"));
    EXPECT_FALSE(pair.log.Contains("CompareAAObjects: Try IAccIdentity identity string"));
}

TEST(CompareAAObjects, TheIdentityStringCountsBeforeTheProperties) {
    Pair pair;
    pair.GiveIdentities("same", "same");
    pair.second.name = L"another";
    EXPECT_TRUE(pair.Compare());
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: return CompareAccIdentities=1"));
    pair.GiveIdentities("same", "sane");
    pair.second.name = L"OK";
    EXPECT_FALSE(pair.Compare());
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: return CompareAccIdentities=0"));
}

TEST(CompareAAObjects, EqualPropertiesWithoutIdentitiesAreTheSame) {
    Pair pair;
    EXPECT_TRUE(pair.Compare());
    EXPECT_NE(pair.LastMessage().find("CompareAAObjects: return TRUE"), std::string::npos) << pair.LastMessage();
    for (const char* step : {"CompareAAObjects: Compare roles", "CompareAAObjects: Compare names", "CompareAAObjects: Compare values",
                             "CompareAAObjects: Compare children counts", "CompareAAObjects: Compare rectangles",
                             "CompareAAObjects: Compare parents"})
        EXPECT_EQ(pair.log.Count(step), 1u) << step;
}

struct Difference {
    const char* message;
    std::function<void(FakeAccessible&)> make;
};

const std::vector<Difference>& Differences() {
    static const std::vector<Difference> differences = {
        {"Diferent states, return FALSE", [](FakeAccessible& object) { object.state = CComVariant(1); }},
        {"Diferent states, return FALSE", [](FakeAccessible& object) { object.stateResult = E_FAIL; }},
        {"Diferent states, return FALSE", [](FakeAccessible& object) { object.stateResult = S_FALSE; }},
        {"Diferent roles, return FALSE", [](FakeAccessible& object) { object.role = CComVariant(L"button"); }},
        {"Diferent roles, return FALSE", [](FakeAccessible& object) { object.roleResult = E_FAIL; }},
        {"Diferent names 'OK' 'ok', return FALSE", [](FakeAccessible& object) { object.name = L"ok"; }},
        {"Diferent names 'OK' '(null)', return FALSE", [](FakeAccessible& object) { object.nameResult = E_FAIL; }},
        {"Diferent values 'v' 'w', return FALSE", [](FakeAccessible& object) { object.value = L"w"; }},
        {"Diferent values 'v' '(null)', return FALSE", [](FakeAccessible& object) { object.valueResult = E_FAIL; }},
        {"Diferent accChildCount values '0' '1', return FALSE", [](FakeAccessible& object) { object.AddSimpleChild(1); }},
        {"Diferent accChildCount values '0' '0', return FALSE", [](FakeAccessible& object) { object.countResult = E_FAIL; }},
        {"Diferent rectangles, return FALSE", [](FakeAccessible& object) { object.left = 1; }},
        {"Diferent rectangles, return FALSE", [](FakeAccessible& object) { object.top = 1; }},
        {"Diferent rectangles, return FALSE", [](FakeAccessible& object) { object.width = 1; }},
        {"Diferent rectangles, return FALSE", [](FakeAccessible& object) { object.height = 1; }},
        {"Diferent rectangles, return FALSE", [](FakeAccessible& object) { object.locationResult = E_FAIL; }},
    };
    return differences;
}

TEST(CompareAAObjects, EachPropertyThatDiffersEndsTheComparisonWithItsMessage) {
    for (const Difference& difference : Differences()) {
        Pair pair;
        difference.make(pair.second);
        EXPECT_FALSE(pair.Compare(TRUE)) << difference.message;
        EXPECT_NE(pair.LastMessage().find(std::string("CompareAAObjects: ") + difference.message), std::string::npos)
            << difference.message << " / " << pair.LastMessage();
    }
}

TEST(CompareAAObjects, TheSameFailureOnBothSidesIsAgreementWhateverWasLeftBehind) {
    Pair pair;
    for (FakeAccessible* object : {&pair.first, &pair.second})
        object->stateResult = object->roleResult = object->nameResult = object->valueResult = object->countResult =
            object->locationResult = DISP_E_MEMBERNOTFOUND;
    // The fakes write these in spite of the failure.
    pair.second.state = CComVariant(7);
    pair.second.role = CComVariant(9);
    pair.second.name = L"left behind";
    pair.second.value = L"left behind";
    pair.second.left = 99;
    pair.second.AddSimpleChild(1);
    EXPECT_TRUE(pair.Compare());
}

TEST(CompareAAObjects, ParentsLeftBehindByTheSameFailureAreNoParents) {
    Pair pair;
    pair.first.parentResult = pair.second.parentResult = E_FAIL;
    pair.first.parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"one");
    pair.second.parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"two");
    EXPECT_TRUE(pair.Compare(TRUE));
    EXPECT_NE(pair.LastMessage().find("CompareAAObjects: NULL objects, return TRUE"), std::string::npos) << pair.LastMessage();
}

TEST(CompareAAObjects, ANullStringAndAnEmptyOneAreEqual) {
    Pair pair;
    pair.first.name.clear();
    pair.second.nullName = true;
    EXPECT_TRUE(pair.Compare());
}

TEST(CompareAAObjects, CountsOfTheContainersAreComparedForSimpleElementsToo) {
    Pair pair;
    pair.second.AddSimpleChild(1);
    EXPECT_FALSE(pair.Compare(FALSE, CComVariant(1)));
    EXPECT_TRUE(pair.log.Contains("Diferent accChildCount"));
}

TEST(CompareAAObjects, AChildIdWithoutANumberAsksForNoRuntimeId) {
    Pair pair;
    pair.GiveRuntimeIds({1}, {2});
    EXPECT_TRUE(pair.Compare(FALSE, CComVariant(L"1")));
    EXPECT_TRUE(pair.log.Contains("Try IAccessibleEx Runtime ID"));
}

TEST(CompareAAObjects, NullParentsOnBothSidesAreTheSame) {
    Pair pair;
    EXPECT_TRUE(pair.Compare(TRUE));
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: returning Compare(parents)"));
    EXPECT_NE(pair.LastMessage().find("CompareAAObjects: NULL objects, return TRUE"), std::string::npos);
}

TEST(CompareAAObjects, DifferentResultsForTheParentsAreDifferent) {
    Pair pair;
    pair.second.parentResult = E_FAIL;
    EXPECT_FALSE(pair.Compare(TRUE));
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: getParent res1=0x0 res2=0x80004005, return FALSE"));
    pair.first.parentResult = E_FAIL;
    EXPECT_TRUE(pair.Compare(TRUE));
    EXPECT_TRUE(pair.Compare(FALSE));
}

TEST(CompareAAObjects, OneParentIsDifferentFromNone) {
    Pair pair;
    pair.second.parent = &pair.objects.Add();
    EXPECT_FALSE(pair.Compare(TRUE));
    EXPECT_TRUE(pair.log.Contains("CompareAAObjects: one NULL object, return FALSE"));
    EXPECT_TRUE(pair.Compare(FALSE));
}

TEST(CompareAAObjects, ParentsThatDifferMakeTheElementsDifferent) {
    Pair pair;
    pair.first.parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"one");
    pair.second.parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"two");
    EXPECT_FALSE(pair.Compare(TRUE));
    EXPECT_TRUE(pair.log.Contains("Diferent names 'one' 'two'"));
}

TEST(CompareAAObjects, TheChainOfParentsStopsAfterOneLevel) {
    Pair pair;
    pair.first.parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"parent");
    pair.second.parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"parent");
    pair.first.parent->parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"one");
    pair.second.parent->parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"two");
    EXPECT_TRUE(pair.Compare(TRUE));
    EXPECT_EQ(pair.first.parent->parent->calls, 0);
    EXPECT_EQ(pair.log.Count("CompareAAObjects starts"), 2u);
}

TEST(CompareAAObjects, AFaultAtAnyCallEndsInADecisionAndLeavesNoReference) {
    for (FakeCalls::Spoil spoil : {FakeCalls::Spoil::Fail, FakeCalls::Spoil::NullWithSuccess, FakeCalls::Spoil::Throw})
        for (int nth = 1;; ++nth) {
            Pair pair;
            pair.GiveRuntimeIds({}, {});
            pair.GiveIdentities("", "");
            pair.first.parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"parent");
            pair.second.parent = &pair.objects.Add(ROLE_SYSTEM_CLIENT, L"parent");
            FakeCalls::Instance().Reset(spoil, nth);
            try {
                CompareAAObjects(CComPtr<IAccessible>(&pair.first), Self, CComPtr<IAccessible>(&pair.second), Self, TRUE);
            } catch (const FakeCalls::Thrown&) {
                EXPECT_EQ(spoil, FakeCalls::Spoil::Throw);
            }
            ASSERT_EQ(pair.objects.OutstandingReferences(), 0) << "call " << nth;
            if (FakeCalls::Instance().total < nth) {
                EXPECT_GT(nth, 40);
                break;
            }
        }
}

// Runtime ids.

HRESULT CompareIds(Pair& pair, BOOL& equal, LONG child = 0) {
    const HRESULT result = AACompareRuntimeId(&pair.first, child, &pair.second, child, equal);
    EXPECT_EQ(pair.objects.OutstandingReferences(), 0);
    return result;
}

TEST(AACompareRuntimeId, NeedsBothPointers) {
    Pair pair;
    BOOL equal = TRUE;
    EXPECT_EQ(AACompareRuntimeId(nullptr, 0, &pair.first, 0, equal), E_INVALIDARG);
    EXPECT_EQ(AACompareRuntimeId(&pair.first, 0, nullptr, 0, equal), E_INVALIDARG);
    EXPECT_FALSE(equal);
}

TEST(AACompareRuntimeId, FailsWhenNeitherHasOne) {
    Pair pair;
    BOOL equal = TRUE;
    EXPECT_EQ(CompareIds(pair, equal), E_FAIL);
    EXPECT_FALSE(equal);
    pair.GiveRuntimeIds({1}, {1});
    pair.first.runtimeIdResult = pair.second.runtimeIdResult = E_NOTIMPL;
    EXPECT_EQ(CompareIds(pair, equal), E_FAIL);
}

TEST(AACompareRuntimeId, ComparesNumberByNumber) {
    const struct {
        std::vector<LONG> id1, id2;
        bool equal;
    } cases[] = {{{1, 2}, {1, 2}, true}, {{1, 2}, {12}, false}, {{1, 2}, {1}, false}, {{-1}, {-1}, true}, {{}, {1}, false}, {{1}, {}, false}};
    for (const auto& one : cases) {
        Pair pair;
        pair.GiveRuntimeIds(one.id1, one.id2);
        BOOL equal = !one.equal;
        EXPECT_EQ(CompareIds(pair, equal), S_OK);
        EXPECT_EQ(equal != FALSE, one.equal);
    }
}

TEST(AACompareRuntimeId, AsksForTheObjectOfASimpleElement) {
    Pair pair;
    pair.GiveRuntimeIds({1}, {1});
    FakeAccessible& child1 = pair.objects.Add();
    FakeAccessible& child2 = pair.objects.Add();
    child1.runtimeId = {1, 5};
    child2.runtimeId = {1, 6};
    std::vector<LONG> asked;
    pair.first.objectForChild = [&](LONG id) { asked.push_back(id); return &child1; };
    pair.second.objectForChild = [&](LONG id) { asked.push_back(id); return &child2; };
    BOOL equal = TRUE;
    EXPECT_EQ(CompareIds(pair, equal, 5), S_OK);
    EXPECT_FALSE(equal);
    EXPECT_EQ(asked, (std::vector<LONG>{5, 5}));
    child2.runtimeId = {1, 5};
    EXPECT_EQ(CompareIds(pair, equal, 5), S_OK);
    EXPECT_TRUE(equal);
    // Without an object for the child there is no id on either side.
    pair.first.objectForChild = pair.second.objectForChild = nullptr;
    EXPECT_EQ(CompareIds(pair, equal, 5), E_FAIL);
}

TEST(AACompareRuntimeId, ArraysOfAnotherKindAreNoIds) {
    const std::vector<std::function<SAFEARRAY*()>> bad = {
        [] { return static_cast<SAFEARRAY*>(nullptr); },
        [] { return ::SafeArrayCreateVector(VT_BSTR, 0, 2); },
        [] { return ::SafeArrayCreateVector(VT_VARIANT, 0, 2); },
        [] { return ::SafeArrayCreateVector(VT_I2, 0, 2); },
        [] { return ::SafeArrayCreateVector(VT_UNKNOWN, 0, 2); },
        [] { return ::SafeArrayCreateVector(VT_I4, 1, 2); },
        [] { return ::SafeArrayCreateVector(VT_I4, 0, 5000); },
        [] {
            SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
            return ::SafeArrayCreate(VT_I4, 2, bounds);
        },
    };
    for (std::size_t at = 0; at < bad.size(); ++at) {
        Pair pair;
        pair.GiveRuntimeIds({1}, {1});
        pair.second.makeRuntimeId = bad[at];
        BOOL equal = TRUE;
        // An element without an id is never one with an id.
        EXPECT_EQ(CompareIds(pair, equal), S_OK) << at;
        EXPECT_FALSE(equal) << at;
        pair.first.makeRuntimeId = bad[at];
        EXPECT_EQ(CompareIds(pair, equal), E_FAIL) << at;
    }
}

// Identity strings.

TEST(CompareAccIdentities, LogsEachInvalidArgument) {
    Pair pair;
    BOOL equal = TRUE;
    const CComVariant text(L"0");
    EXPECT_EQ(CompareAccIdentities(nullptr, Self, &pair.second, Self, equal), E_INVALIDARG);
    EXPECT_FALSE(equal);
    EXPECT_EQ(CompareAccIdentities(&pair.first, Self, nullptr, Self, equal), E_INVALIDARG);
    EXPECT_EQ(CompareAccIdentities(&pair.first, text, &pair.second, Self, equal), E_INVALIDARG);
    EXPECT_EQ(CompareAccIdentities(&pair.first, Self, &pair.second, text, equal), E_INVALIDARG);
    for (const char* line : {"Param Condition not met: acc1 | CompareAccIdentities failed - null parameter acc1",
                             "Param Condition not met: acc2 | CompareAccIdentities failed - null parameter acc2",
                             "Param Condition not met: child1.vt == VT_I4 | CompareAccIdentities failed - child1 is not a VT_I4",
                             "Param Condition not met: child2.vt == VT_I4 | CompareAccIdentities failed - child2 is not a VT_I4"})
        EXPECT_EQ(pair.log.Count(line), 1u) << line << "\n" << pair.log.Text();
    for (const std::string& line : pair.log.Lines()) EXPECT_EQ(line.substr(0, 1), "E");
}

TEST(CompareAccIdentities, LogsAMissingInterface) {
    Pair pair;
    BOOL equal = TRUE;
    EXPECT_EQ(CompareAccIdentities(&pair.first, Self, &pair.second, Self, equal), E_NOINTERFACE);
    EXPECT_TRUE(pair.log.Contains("acc1->QueryInterface(&accIdentity1) | HRESULT 80004002 | CompareAccIdentities: failed to get IAccIdentity for acc1"))
        << pair.log.Text();
    pair.first.hasIdentity = true;
    EXPECT_EQ(CompareAccIdentities(&pair.first, Self, &pair.second, Self, equal), E_NOINTERFACE);
    EXPECT_TRUE(pair.log.Contains("acc2->QueryInterface(&accIdentity2) | HRESULT 80004002 | CompareAccIdentities: failed to get IAccIdentity for acc2"));
    pair.second.nullInterfaces = {IidOf<IAccIdentity>()};
    EXPECT_EQ(CompareAccIdentities(&pair.first, Self, &pair.second, Self, equal), E_FAIL);
    EXPECT_EQ(pair.objects.OutstandingReferences(), 0);
}

TEST(CompareAccIdentities, LogsAFailureOfTheFirstOnly) {
    Pair pair;
    pair.GiveIdentities("a", "a");
    pair.second.identityResult = E_ACCESSDENIED;
    BOOL equal = TRUE;
    EXPECT_EQ(CompareAccIdentities(&pair.first, Self, &pair.second, Self, equal), E_ACCESSDENIED);
    EXPECT_TRUE(pair.log.Lines().empty()) << pair.log.Text();
    pair.first.identityResult = E_UNEXPECTED;
    EXPECT_EQ(CompareAccIdentities(&pair.first, Self, &pair.second, Self, equal), E_UNEXPECTED);
    EXPECT_TRUE(pair.log.Contains("accIdentity1->GetIdentityString(child1.lVal, &idString1, &idString1Len) | HRESULT 8000FFFF | "
                                  "CompareAccIdentities: failed to GetIdentityString for acc1"))
        << pair.log.Text();
    EXPECT_FALSE(equal);
}

TEST(CompareAccIdentities, ComparesTheBytes) {
    const struct {
        std::string id1, id2;
        HRESULT result;
        BOOL equal;
    } cases[] = {{"abc", "abc", S_OK, TRUE}, {"abc", "abd", S_OK, FALSE}, {"abc", "ab", S_OK, FALSE},
                 {"", "", E_FAIL, FALSE},    {"abc", "", E_FAIL, FALSE},  {"", "abc", E_FAIL, FALSE},
                 {std::string("a\0b", 3), std::string("a\0c", 3), S_OK, FALSE}};
    for (const auto& one : cases) {
        Pair pair;
        pair.GiveIdentities(one.id1, one.id2);
        BOOL equal = !one.equal;
        EXPECT_EQ(CompareAccIdentities(&pair.first, Self, &pair.second, Self, equal), one.result) << one.id1 << '/' << one.id2;
        EXPECT_EQ(equal, one.equal) << one.id1 << '/' << one.id2;
    }
}

TEST(CompareAccIdentities, ALengthWithoutBytesIsNoIdentity) {
    Pair pair;
    pair.GiveIdentities("abc", "abc");
    // Two queries, then the first string: its bytes are null.
    FakeCalls::Instance().Reset(FakeCalls::Spoil::NullWithSuccess, 3);
    BOOL equal = TRUE;
    EXPECT_EQ(CompareAccIdentities(&pair.first, Self, &pair.second, Self, equal), E_FAIL);
    EXPECT_FALSE(equal);
}

}  // namespace
}  // namespace Zorvex
