#include "Common/UTILITY/StateToolsAA.h"

#include <gtest/gtest.h>

#include "Common/UTILITY/NCOM.h"
#include "tests/Support/FakeElement.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::FakeElement;
using Testing::LogCapture;
using Testing::VariantAnswer;

const CComVariant Self(CHILDID_SELF);

using StateMasks = Testing::FakeElementTest;
using StateText = Testing::FakeElementTest;
using IA2StateTexts = Testing::FakeElementTest;
using AppendIA2State = Testing::FakeElementTest;
using GetAAState = Testing::FakeElementTest;

// The platform's own word for a bit, in whatever language the system speaks.
CString Word(LONG bit) {
    wchar_t text[64] = {};
    ::GetStateTextW(static_cast<DWORD>(bit), text, 63);
    return text;
}

CString StateTextOf(LONG state) {
    auto element = FakeElement::Make();
    element->stateAnswer = state;
    CString text = L"left over";
    EXPECT_EQ(N_COM::GetAAStateAsText(element, Self, text), S_OK);
    return text;
}

TEST_F(StateMasks, AreThirtyTwoWithTheMixedBitTwiceAndTheHighestBitMissing) {
    const auto masks = N_COM::AAStateMasks();
    ASSERT_EQ(masks.size(), 32u);
    const LONG first[] = {0x1, 0x2, 0x4, 0x8, 0x10, 0x20, 0x20, 0x40, 0x80};
    for (std::size_t i = 0; i < std::size(first); ++i) EXPECT_EQ(masks[i], first[i]);
    for (std::size_t i = 8; i < masks.size(); ++i) EXPECT_EQ(masks[i], masks[i - 1] << 1);
    EXPECT_EQ(masks.back(), 0x40000000);
}

TEST_F(StateText, NamesTheMixedBitTwice) { EXPECT_EQ(StateTextOf(0x20), Word(0x20) + L", " + Word(0x20)); }

TEST_F(StateText, JoinsTheBitsInOrderWithCommas) {
    EXPECT_EQ(StateTextOf(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_UNAVAILABLE | STATE_SYSTEM_FOCUSED),
              Word(STATE_SYSTEM_UNAVAILABLE) + L", " + Word(STATE_SYSTEM_FOCUSED) + L", " + Word(STATE_SYSTEM_FOCUSABLE));
}

TEST_F(StateText, IsEmptyForNoBitAndForTheHighestBit) {
    EXPECT_EQ(StateTextOf(0), L"");
    EXPECT_EQ(StateTextOf(static_cast<LONG>(0x80000000u)), L"");
}

TEST_F(StateText, NeedsAnElementAndALongChildId) {
    auto element = FakeElement::Make();
    CString text;
    EXPECT_EQ(N_COM::GetAAStateAsText(nullptr, Self, text), E_INVALIDARG);
    EXPECT_EQ(N_COM::GetAAStateAsText(element, CComVariant(), text), E_INVALIDARG);
    EXPECT_EQ(element->calls["get_accState"], 0);
}

TEST_F(StateText, PassesTheCodeOfAFailedReadOnAndRefusesAnotherType) {
    auto element = FakeElement::Make();
    CString text;
    element->stateAnswer = VariantAnswer::Failure(E_ACCESSDENIED);
    EXPECT_EQ(N_COM::GetAAStateAsText(element, Self, text), E_ACCESSDENIED);
    element->stateAnswer = CComVariant(L"checked");
    EXPECT_EQ(N_COM::GetAAStateAsText(element, Self, text), E_FAIL);
    element->stateAnswer = CComVariant();
    EXPECT_EQ(N_COM::GetAAStateAsText(element, Self, text), E_FAIL);
}

TEST_F(IA2StateTexts, AreTwentyBitsInAscendingOrder) {
    const wchar_t* const expected[] = {
        L"active", L"armed", L"defunct", L"editable", L"horizontal", L"iconified", L"invalid entry",
        L"manages descendants", L"modal", L"multiline", L"opaque", L"required", L"selectable text",
        L"singleline", L"stale", L"autocomplete", L"transient", L"vertical", L"chekable", L"pinned"};
    ASSERT_EQ(StateTools::IA2StateTexts().size(), std::size(expected));
    LONG bit = 1;
    const wchar_t* const* next = expected;
    for (const auto& [mask, text] : StateTools::IA2StateTexts()) {
        EXPECT_EQ(mask, bit);
        EXPECT_STREQ(text, *next++);
        bit <<= 1;
    }
}

TEST_F(AppendIA2State, SpellsChekableAsClientsExpectIt) {
    CString text;
    StateTools::AppendIA2State(text, 0x40001);
    EXPECT_EQ(text, L"active, chekable");
}

TEST_F(AppendIA2State, PutsACommaBehindWhatIsThere) {
    CString text = L"focused";
    StateTools::AppendIA2State(text, 0x8);
    EXPECT_EQ(text, L"focused, editable");
}

TEST_F(AppendIA2State, LeavesTheTextAloneWithoutANamedBit) {
    LogCapture log;
    CString text = L"focused";
    StateTools::AppendIA2State(text, 0);
    StateTools::AppendIA2State(text, 0x100000);
    StateTools::AppendIA2State(text, static_cast<LONG>(0x80000000u));
    EXPECT_EQ(text, L"focused");
    EXPECT_FALSE(log.Contains("AppendIA2State"));
}

TEST_F(AppendIA2State, LogsTheValueItAppended) {
    LogCapture log;
    CString text;
    StateTools::AppendIA2State(text, 0x40001);
    EXPECT_TRUE(log.Contains("StateTools::AppendIA2State Successfully appended IAccessible2 states, value=0x40001")) << log.Text();
}

TEST_F(GetAAState, ReplacesTheTextByThePlatformsWordsAndThenThoseOfIAccessible2) {
    auto element = FakeElement::Make();
    element->stateAnswer = STATE_SYSTEM_FOCUSED;
    CString text = L"left over";
    EXPECT_EQ(StateTools::GetAAState(text, element, Self, 0x1), S_OK);
    EXPECT_EQ(text, Word(STATE_SYSTEM_FOCUSED) + L", active");
}

TEST_F(GetAAState, RefusesInvalidArgumentsWithALine) {
    LogCapture log;
    auto element = FakeElement::Make();
    CString text;
    EXPECT_EQ(StateTools::GetAAState(text, nullptr, Self, 0), E_INVALIDARG);
    EXPECT_EQ(StateTools::GetAAState(text, element, CComVariant(L"1"), 0), E_INVALIDARG);
    EXPECT_EQ(log.Count("Invalid argument(s) in CAAElement::GetAAState"), 2u) << log.Text();
}

TEST_F(GetAAState, LogsAFailedReadAndAppendsNothing) {
    LogCapture log;
    auto element = FakeElement::Make();
    element->stateAnswer = VariantAnswer::Failure(E_FAIL);
    CString text = L"left over";
    EXPECT_EQ(StateTools::GetAAState(text, element, Self, 0x1), E_FAIL);
    EXPECT_EQ(text, L"");
    EXPECT_TRUE(log.Contains("N_COM::GetAAStateAsText (spAcc, vChildID, pResult) | HRESULT 80004005 | "
                             "CAAElement::GetAAState: N_COM::GetAAStateAsText failed")) << log.Text();
}

}  // namespace
}  // namespace Zorvex
