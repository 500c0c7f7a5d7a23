#include "RuntimeCore/TextCapture/SafeName.h"

#include <gtest/gtest.h>

#include "tests/Support/FaultingAccessible.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeAccessible;
using Testing::FakeCalls;
using Testing::FakeObjects;
using Testing::FaultingAccessible;
using Testing::LogCapture;

const CComVariant Self(CHILDID_SELF);

std::optional<DWORD> OldSystem() { return 5; }
std::optional<DWORD> NewSystem() { return 6; }
std::optional<DWORD> SilentSystem() { return std::nullopt; }

class SafeNameTest : public ::testing::Test {
protected:
    HRESULT Read() { return GetSafeAccName(context, &element, Self, name); }

    LogCapture log;
    FakeObjects objects;
    FakeAccessible& element = objects.Add(ROLE_SYSTEM_PUSHBUTTON, L"name");
    CaptureContext context;
    CComBSTR name{L"before"};
};

TEST_F(SafeNameTest, NameComesOutWithTheResultOfTheRead) {
    EXPECT_EQ(Read(), S_OK);
    EXPECT_EQ(name.View(), L"name");
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Not in IE"));
}

TEST_F(SafeNameTest, NoElementAndNoNumberOfAChildAreInvalidArguments) {
    EXPECT_EQ(GetSafeAccName(context, nullptr, Self, name), E_INVALIDARG);
    EXPECT_EQ(GetSafeAccName(context, &element, CComVariant(), name), E_INVALIDARG);
    EXPECT_EQ(GetSafeAccName(context, &element, CComVariant(L"0"), name), E_INVALIDARG);
    EXPECT_EQ(element.calls, 0);
}

TEST_F(SafeNameTest, FailureAndNullGiveAnEmptyTextAndTheirResult) {
    element.nameResult = DISP_E_MEMBERNOTFOUND;
    EXPECT_EQ(Read(), DISP_E_MEMBERNOTFOUND);
    EXPECT_TRUE(name.IsEmpty()) << "also where the server gave a text beside the failure";
    element.nameResult = S_FALSE;
    element.nullName = true;
    EXPECT_EQ(Read(), S_FALSE);
    EXPECT_TRUE(name.IsEmpty());
}

TEST_F(SafeNameTest, ExceptionOfTheServerIsAnAccessViolation) {
    FakeCalls::Instance().Reset(FakeCalls::Spoil::Throw, 1);
    EXPECT_EQ(Read(), E_FAIL);
    EXPECT_TRUE(name.IsEmpty());
    EXPECT_TRUE(log.Contains("E [")) << log.Text();
    EXPECT_EQ(log.Count("Access violation"), 1u);
    EXPECT_EQ(Read(), S_OK) << "the next read is as any other";
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST_F(SafeNameTest, FaultOfTheServerIsAnAccessViolationAndWhatItLeftBehindIsNotTouched) {
    FaultingAccessible faulting;
    for (int round = 0; round < 5; ++round) {
        log.Clear();
        EXPECT_EQ(GetSafeAccName(context, &faulting, Self, name), E_FAIL);
        EXPECT_TRUE(name.IsEmpty());
        EXPECT_EQ(log.Count("Access violation"), 1u);
    }
    EXPECT_EQ(Read(), S_OK);
}

class CrashFilterTest : public SafeNameTest {
protected:
    CrashFilterTest() {
        context.m_bIsIETopFrame = true;
        element.state = CComVariant(STATE_SYSTEM_INVISIBLE);
    }
    bool FilterOut(std::optional<DWORD> (*system)() = OldSystem) { return FilterOutIE8XPCrashes(context, &element, Self, system); }
};

TEST_F(CrashFilterTest, NoElementIsLeftAlone) {
    EXPECT_TRUE(FilterOutIE8XPCrashes(context, nullptr, Self, OldSystem));
    EXPECT_TRUE(log.Contains("E [FilterOutIE8XPCrashes] pAcc is NULL, filter it out"));
}

TEST_F(CrashFilterTest, OutsideTheBrowserNothingIsAsked) {
    context.m_bIsIETopFrame = false;
    EXPECT_FALSE(FilterOut());
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Not in IE"));
    EXPECT_EQ(element.calls, 0);
}

TEST_F(CrashFilterTest, NewerAndUnknownSystemsKeepTheElement) {
    EXPECT_FALSE(FilterOut(NewSystem));
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Vista or later"));
    EXPECT_FALSE(FilterOut(SilentSystem));
    EXPECT_TRUE(log.Contains("E [FilterOutIE8XPCrashes] Cannot get OS version"));
    EXPECT_EQ(element.calls, 0);
}

TEST_F(CrashFilterTest, EachDoubtKeepsTheElement) {
    EXPECT_FALSE(FilterOutIE8XPCrashes(context, &element, CComVariant(), OldSystem));
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Invalid vIndex, don't filter out the object"));
    EXPECT_FALSE(FilterOut());
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Cannot get hWnd"));
    element.state = CComVariant(0);
    EXPECT_FALSE(FilterOut());
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] State not invisible"));
    element.stateResult = E_FAIL;
    EXPECT_FALSE(FilterOut());
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Cannot get the state"));
    element.role = CComVariant(ROLE_SYSTEM_LINK);
    EXPECT_FALSE(FilterOut());
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Not a push button; don't ignore it"));
    element.roleResult = E_FAIL;
    EXPECT_FALSE(FilterOut());
    EXPECT_TRUE(log.Contains("V [FilterOutIE8XPCrashes] Cannot get the role"));
    EXPECT_EQ(objects.OutstandingReferences(), 0);
}

TEST_F(CrashFilterTest, FaultOnTheWayLeavesTheElementAlone) {
    for (int call = 1; call <= 2; ++call) {
        log.Clear();
        FakeCalls::Instance().Reset(FakeCalls::Spoil::Throw, call);
        EXPECT_TRUE(FilterOut()) << call;
        EXPECT_EQ(log.Count("Access violation"), 1u) << call;
    }
}

// Leaves a variant behind that looks like a string and holds none.
class FaultingOverVariants : public FakeAccessible {
public:
    FaultingOverVariants(bool overTheRole)
        : FakeAccessible(ROLE_SYSTEM_PUSHBUTTON, L"name"), m_overTheRole(overTheRole) {}

    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* out) override {
        return m_overTheRole ? Fault(out) : FakeAccessible::get_accRole(child, out);
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT, VARIANT* out) override { return Fault(out); }

private:
    static HRESULT Fault(VARIANT* out) {
        out->vt = VT_BSTR;
        out->bstrVal = reinterpret_cast<BSTR>(static_cast<std::uintptr_t>(8));
        throw FakeCalls::Thrown{};
    }

    bool m_overTheRole;
};

TEST_F(CrashFilterTest, WhatAFaultLeavesBehindIsNotTouched) {
    for (const bool overTheRole : {true, false}) {
        FaultingOverVariants faulting(overTheRole);
        EXPECT_TRUE(FilterOutIE8XPCrashes(context, &faulting, Self, OldSystem)) << overTheRole;
    }
}

}  // namespace
}  // namespace Zorvex
