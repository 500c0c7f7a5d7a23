#include <gtest/gtest.h>

#include "RuntimeCore/AAUtilitiesOwnerWindow.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::AAUtil {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

class OwnerWindow : public ::testing::Test {
protected:
    HWND Owner(const char* initial, const char* element, bool allowFallback) {
        return GetIAccOwnerWindow(desktop.Window(initial), desktop.Element(element), allowFallback);
    }
    HRESULT Result(const char* initial, const char* element, bool allowFallback, HWND& owner) {
        return GetIAccOwnerWindow(desktop.Window(initial), desktop.Element(element), allowFallback, owner);
    }
    void Fail(const char* element, HRESULT result) {
        Simulated::Fault fault;
        fault.call = "WindowFromAccessibleObject";
        fault.result = result;
        desktop.AddFault(element, fault);
    }
    void TearDown() override { EXPECT_EQ(desktop.OutstandingReferences(), 0); }

    LogCapture log;
    DesktopFixture desktop{R"({ "format": "vantrel-desktop/1", "windows": [
      { "id": "main", "class": "Frame", "objects": { "client": { "id": "mainClient", "role": "client", "children": [
          { "id": "ok", "role": "push button" } ] } },
        "children": [ { "id": "inner", "class": "Inner", "objects": { "client": { "id": "innerClient", "role": "client", "children": [
            { "id": "link", "role": "link" } ] } } } ] },
      { "id": "other", "class": "Frame", "objects": { "client": { "id": "otherClient", "role": "client" } } },
      { "id": "helper", "class": "Helper", "visible": false, "objects": { "client": { "id": "helperClient", "role": "client" } } } ] })"};
};

TEST_F(OwnerWindow, IsTheElementsWindow) {
    EXPECT_EQ(Owner("other", "link", false), desktop.Window("inner"));
    EXPECT_EQ(Owner("main", "helperClient", false), desktop.Window("helper"));
    HWND owner = nullptr;
    EXPECT_EQ(Result("other", "ok", false, owner), S_OK);
    EXPECT_EQ(owner, desktop.Window("main"));
}

TEST_F(OwnerWindow, FallsBackFromAChildOfTheInitialOwner) {
    EXPECT_EQ(Owner("main", "link", true), desktop.Window("main"));
    EXPECT_EQ(Owner("main", "link", false), desktop.Window("inner"));
    EXPECT_EQ(Owner("other", "link", true), desktop.Window("inner"));
}

TEST_F(OwnerWindow, FallsBackFromAWindowWithAnInvisibleTopLevel) {
    EXPECT_EQ(Owner("main", "helperClient", true), desktop.Window("main"));
}

TEST_F(OwnerWindow, FallsBackFromNoWindowAtAll) {
    Simulated::Fault fault;
    fault.call = "WindowFromAccessibleObject";
    fault.null = true;
    desktop.AddFault("ok", fault);
    HWND owner = nullptr;
    EXPECT_EQ(Result("other", "ok", true, owner), S_OK);
    EXPECT_EQ(owner, desktop.Window("other"));
    EXPECT_EQ(Result("other", "ok", false, owner), E_FAIL);
    EXPECT_EQ(owner, nullptr);
    EXPECT_EQ(Owner("other", "ok", false), desktop.Window("other"));
}

TEST_F(OwnerWindow, IsTheInitialOneWhenThePlatformFails) {
    Fail("ok", E_ACCESSDENIED);
    HWND owner = nullptr;
    EXPECT_EQ(Result("other", "ok", true, owner), E_ACCESSDENIED);
    EXPECT_EQ(owner, nullptr);
    EXPECT_EQ(Owner("other", "ok", true), desktop.Window("other"));
    EXPECT_EQ(Owner("other", "ok", false), desktop.Window("other"));
}

TEST_F(OwnerWindow, AnswersAnInitialOwnerThatIsGoneOnlyInTheFormThatNeverFails) {
    const HWND gone = desktop.Window("other");
    const CComPtr<IAccessible> element = desktop.Element("ok");
    desktop.DestroyWindow("other");
    Fail("ok", E_FAIL);
    EXPECT_EQ(GetIAccOwnerWindow(gone, element, true), gone);
    HWND owner = nullptr;
    EXPECT_EQ(GetIAccOwnerWindow(gone, element, true, owner), E_FAIL);
}

TEST_F(OwnerWindow, OfNoElementIsTheInitialOneWithoutALine) {
    EXPECT_EQ(GetIAccOwnerWindow(desktop.Window("main"), nullptr, true), desktop.Window("main"));
    HWND owner = desktop.Window("main");
    EXPECT_EQ(GetIAccOwnerWindow(desktop.Window("main"), nullptr, true, owner), E_INVALIDARG);
    EXPECT_EQ(owner, nullptr);
    EXPECT_FALSE(log.Contains("hInitialOwnerWnd"));
}

TEST_F(OwnerWindow, LogsWhatWasAskedAndFound) {
    Owner("main", "link", true);
    EXPECT_EQ(log.Count("hInitialOwnerWnd: "), 1u) << log.Text();
    EXPECT_TRUE(log.Contains(" out_hRes: 0 out_hwndOwner: ")) << log.Text();
    EXPECT_TRUE(log.Contains(" bAllowFallbackToInitialOwner: 1")) << log.Text();
}

}  // namespace
}  // namespace Zorvex::AAUtil
