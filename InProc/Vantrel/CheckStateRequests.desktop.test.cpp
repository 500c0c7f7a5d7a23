#include "InProc/Vantrel/CheckStateRequests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RuntimeCore/CheckState.h"
#include "tests/Support/LogCapture.h"
#include "tests/Support/RegisteredElement.h"

namespace Zorvex::Testing {
namespace {

// Elements in a page, a native check box, a window whose object is no frame, and a frame without a client.
constexpr char kDesktop[] = R"({"windows": [
  {"id": "dialog", "class": "Dialog", "objects": {"client": {"children": [
    {"id": "box", "role": "check box", "state": ["checked"], "action": [{"toggle": ["checked"]}]},
    {"id": "radio", "role": "radio button", "action": [{"add": ["checked"]}]},
    {"id": "button", "role": "push button", "defaultAction": "press"},
    {"id": "options", "role": "check box", "defaultAction": "press", "children": [
      {"id": "option", "role": "check box", "simple": true, "state": ["checked"], "action": [{"toggle": ["checked"]}]}]},
    {"id": "frame", "role": "window", "children": [{"role": "check box", "state": ["checked"]}]}]}}},
  {"id": "native", "class": "Button", "objects": {"client": {
    "id": "client", "role": "check box", "action": [{"toggle": ["checked"]}]}}},
  {"id": "plain", "class": "Button", "objects": {"window": {"id": "plainObject", "role": "check box", "state": ["checked"]}}},
  {"id": "hollow", "class": "Button", "objects": {"window": {"id": "hollowObject", "role": "window", "children": [
    {"role": "check box", "simple": true}]}}}]})";

class CheckStateRequests : public ::testing::Test {
protected:
    GetIsCheckedResponse Get(const AAObjectIdentifier& element) { return Call(GetIsCheckedRequest{{element}}); }
    HRESULT Set(const AAObjectIdentifier& element, bool wanted) { return Call(SetIsCheckedRequest{element, wanted}).result; }
    AAObjectIdentifier Of(const char* element) { return Register(desktop, "dialog", element); }
    AAObjectIdentifier Alone(const char* window) { return WindowIdentifier(desktop.Window(window)); }
    void TearDown() override {
        CacheCleaner::Release();
        EXPECT_EQ(desktop.OutstandingReferences(), 0);
    }

    DesktopFixture desktop{kDesktop};
    LogCapture log;
};

TEST_F(CheckStateRequests, CheckBoxIsReadAndSet) {
    auto answer = Get(Of("box"));
    EXPECT_TRUE(answer.success);
    EXPECT_TRUE(answer.isChecked);
    EXPECT_EQ(Set(Of("box"), true), S_OK);
    EXPECT_THAT(desktop.Done(), testing::IsEmpty());
    EXPECT_EQ(Set(Of("box"), false), S_OK);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction box"));
    answer = Get(Of("box"));
    EXPECT_TRUE(answer.success);
    EXPECT_FALSE(answer.isChecked);
    EXPECT_TRUE(log.Contains("V [GetIsCheckedImpl] calling LookupIdentifier"));
    EXPECT_TRUE(log.Contains("V [SetIsCheckedImpl] calling LookupIdentifier"));
}

TEST_F(CheckStateRequests, RadioButtonIsSetButNeverTakenAway) {
    EXPECT_EQ(Set(Of("radio"), false), AAUtil::NotCheckable);
    EXPECT_EQ(Set(Of("radio"), true), S_OK);
    EXPECT_EQ(Set(Of("radio"), true), S_OK);
    EXPECT_EQ(Set(Of("radio"), false), AAUtil::NotCheckable);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction radio"));
}

TEST_F(CheckStateRequests, ButtonThatIsNoCheckBoxIsNeither) {
    const auto answer = Get(Of("button"));
    EXPECT_FALSE(answer.success);
    EXPECT_FALSE(answer.isChecked);
    EXPECT_EQ(Set(Of("button"), true), static_cast<HRESULT>(0x80040221u));
    EXPECT_THAT(desktop.Done(), testing::IsEmpty());
}

TEST_F(CheckStateRequests, SimpleElementIsAskedUnderItsChildId) {
    EXPECT_TRUE(Get(Of("option")).isChecked);
    EXPECT_EQ(Set(Of("option"), true), S_OK);
    EXPECT_EQ(Set(Of("option"), false), S_OK);
    EXPECT_FALSE(Get(Of("option")).isChecked);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction option"));
}

TEST_F(CheckStateRequests, WindowOfANativeCheckBoxWorksThroughItsClient) {
    EXPECT_TRUE(Get(Alone("native")).success);
    EXPECT_FALSE(Get(Alone("native")).isChecked);
    EXPECT_EQ(Set(Alone("native"), true), S_OK);
    EXPECT_TRUE(Get(Alone("native")).isChecked);
    EXPECT_THAT(desktop.Done(), testing::ElementsAre("accDoDefaultAction client"));
}

TEST_F(CheckStateRequests, WindowWhoseObjectIsTheControlIsTakenAsItIs) {
    const auto answer = Get(Alone("plain"));
    EXPECT_TRUE(answer.success);
    EXPECT_TRUE(answer.isChecked);
    EXPECT_EQ(desktop.Calls("plainObject", "accNavigate"), 0);
}

TEST_F(CheckStateRequests, FrameWithoutAClientObjectIsNotCheckable) {
    EXPECT_FALSE(Get(Alone("hollow")).success);
    EXPECT_EQ(Set(Alone("hollow"), true), AAUtil::NotCheckable);
    for (const VARTYPE type : {VT_DISPATCH, VT_EMPTY, VT_BSTR}) {
        desktop.ClearFaults();
        desktop.AddFault("hollowObject", {.call = "accNavigate", .type = type});
        EXPECT_FALSE(Get(Alone("hollow")).success);
    }
    desktop.AddFault("client", {.call = "QueryInterface", .iid = "IAccessible", .result = E_NOINTERFACE});
    EXPECT_FALSE(Get(Alone("native")).success);
}

TEST_F(CheckStateRequests, FrameThatIsNamedByAnElementIsNotEntered) {
    EXPECT_FALSE(Get(Of("frame")).success);
    EXPECT_EQ(Set(Of("frame"), false), AAUtil::NotCheckable);
    EXPECT_EQ(desktop.Calls("frame", "accNavigate"), 0);
}

TEST_F(CheckStateRequests, WindowWithoutAnObjectIsAnError) {
    for (const bool isNull : {false, true}) {
        desktop.ClearFaults();
        log.Clear();
        if (isNull) desktop.AddFault("native", {.call = "AccessibleObjectFromWindow", .null = true});
        else desktop.AddFault("native", {.call = "AccessibleObjectFromWindow", .result = E_ACCESSDENIED});
        const auto answer = Get(Alone("native"));
        EXPECT_FALSE(answer.success);
        EXPECT_FALSE(answer.isChecked);
        EXPECT_TRUE(log.Contains("] AccessibleObjectFromWindow failed")) << log.Text();
        EXPECT_FALSE(log.Contains("Invalid arguments")) << log.Text();
        log.Clear();
        EXPECT_EQ(Set(Alone("native"), true), E_FAIL);
        EXPECT_TRUE(log.Contains("] AccessibleObjectFromWindow failed")) << log.Text();
        EXPECT_TRUE(log.Contains("E [SetIsChecked] spAcc is NULL")) << log.Text();
    }
}

TEST_F(CheckStateRequests, IdentifierThatNamesNothingIsAnError) {
    EXPECT_FALSE(Get({}).success);
    EXPECT_TRUE(log.Contains("AAUtil::GetIsChecked: Invalid arguments in CWin32BaseElement::GetIsCheckedUsingAA"));
    EXPECT_EQ(Set({}, true), E_FAIL);
    EXPECT_TRUE(log.Contains("spAcc is NULL"));
    EXPECT_FALSE(log.Contains("AccessibleObjectFromWindow failed"));
}

TEST_F(CheckStateRequests, StateThatCannotBeReadIsNotChecked) {
    desktop.AddFault("box", {.call = "get_accState", .result = E_FAIL});
    const auto answer = Get(Of("box"));
    EXPECT_FALSE(answer.success);
    EXPECT_FALSE(answer.isChecked);
    EXPECT_EQ(Set(Of("box"), false), E_FAIL);
    EXPECT_TRUE(log.Contains("E [SetIsChecked] spAcc->get_accState"));
}

}  // namespace
}  // namespace Zorvex::Testing
