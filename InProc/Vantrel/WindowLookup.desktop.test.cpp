#include "InProc/Vantrel/WindowLookup.h"

#include <gtest/gtest.h>

#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex::Testing {
namespace {

constexpr char kDesktop[] = R"({"windows": [{"id": "main", "class": "Main", "children": [
    {"id": "save", "class": "Button", "objects": {"window": {"id": "saveRoot", "role": "push button", "name": "Save", "children": []}}},
    {"id": "saveLabel", "class": "Static", "objects": {"window": {"role": "text", "name": "Save as", "children": []}}, "children": [
      {"id": "deep", "class": "Button", "objects": {"window": {"role": "push button", "name": "Save all", "children": []}}}]},
    {"id": "nameless", "class": "Button", "objects": {"window": {"role": "push button", "children": []}}}]},
  {"id": "edit", "class": "Edit", "objects": {"window": {"id": "editRoot", "role": "editable text"}}},
  {"id": "framedEdit", "class": "Edit", "objects": {"window": {"id": "frame", "role": "window", "children": [
      {"id": "framed", "role": "editable text"}]}}},
  {"id": "simpleEdit", "class": "Edit", "objects": {"window": {"role": "window", "children": [
      {"role": "editable text", "simple": true}]}}},
  {"id": "dialog", "class": "#32770", "objects": {"window": {"id": "dialogRoot", "role": "window", "children": [
      {"role": "push button"}]}}}]})";

class WindowLookupTest : public testing::Test {
protected:
    std::vector<HWND> Windows(const wchar_t* name, std::shared_ptr<StringValue> windowClass) {
        GetWndsByAaNameRequest request;
        request.parent = desktop.Window("main");
        request.accessibleName = std::make_shared<StringValue>(name);
        request.windowClass = std::move(windowClass);
        const auto response = Call(request);
        EXPECT_TRUE(response.found);
        return response.windows;
    }
    bool ShouldAddTitle(HWND window, std::int32_t ignored = 0) {
        ShouldAddTitleToWndSelectorRequest request;
        request.reserved = ignored;
        request.window = window;
        return Call(request).answer;
    }
    std::vector<HWND> Named(std::initializer_list<const char*> ids) {
        std::vector<HWND> windows;
        for (const char* id : ids) windows.push_back(desktop.Window(id));
        return windows;
    }

    LogCapture log;
    DesktopFixture desktop{kDesktop};
};

TEST_F(WindowLookupTest, AllDescendantsWithAMatchingNameComeInOrder) {
    EXPECT_EQ(Windows(L"Save*", nullptr), Named({"save", "saveLabel", "deep"}));
}

TEST_F(WindowLookupTest, ClassNarrowsTheSearch) {
    EXPECT_EQ(Windows(L"Save*", std::make_shared<StringValue>(L"Butt*")), Named({"save", "deep"}));
}

TEST_F(WindowLookupTest, EmptyDisabledOrAbsentClassFiltersNothing) {
    EXPECT_EQ(Windows(L"Save*", std::make_shared<StringValue>(L"")).size(), 3u);
    auto disabled = std::make_shared<StringValue>(L"Button");
    disabled->SetEnabled(false);
    EXPECT_EQ(Windows(L"Save*", disabled).size(), 3u);
    EXPECT_EQ(Windows(L"Save*", nullptr).size(), 3u);
}

TEST_F(WindowLookupTest, NamelessWindowIsNeverFound) { EXPECT_EQ(Windows(L"*", nullptr).size(), 3u); }

TEST_F(WindowLookupTest, AbsentNameGivesNoWindowAndNoCrash) {
    GetWndsByAaNameRequest request;
    request.parent = desktop.Window("main");
    EXPECT_TRUE(Call(request).windows.empty());
}

TEST_F(WindowLookupTest, TitleOfAnEditIsLeftOut) {
    EXPECT_FALSE(ShouldAddTitle(desktop.Window("edit")));
    EXPECT_TRUE(log.Contains("ROLE_SYSTEM_TEXT encountered, return false - should NOT add the WND TITLE"));
}

TEST_F(WindowLookupTest, TitleOfAFrameAroundAnEditIsLeftOut) {
    EXPECT_FALSE(ShouldAddTitle(desktop.Window("framedEdit")));
    EXPECT_TRUE(log.Contains("ROLE_SYSTEM_TEXT encountered on the first AA child, return false - should NOT add the WND TITLE"));
}

TEST_F(WindowLookupTest, TitleOfAFrameAroundASimpleEditIsLeftOutToo) {
    EXPECT_FALSE(ShouldAddTitle(desktop.Window("simpleEdit")));
}

TEST_F(WindowLookupTest, TitleOfAFrameWithoutAFirstChildIsAdded) {
    desktop.AddFault("frame", {.call = "accNavigate", .times = 1, .result = E_NOTIMPL});
    EXPECT_TRUE(ShouldAddTitle(desktop.Window("framedEdit")));
    desktop.AddFault("frame", {.call = "accNavigate", .type = VT_DISPATCH});
    EXPECT_TRUE(ShouldAddTitle(desktop.Window("framedEdit"))) << "an object that is null";
}

TEST_F(WindowLookupTest, TitleIsAddedWhenTheObjectIsNullDespiteSuccess) {
    desktop.AddFault("edit", {.call = "AccessibleObjectFromWindow", .null = true});
    EXPECT_TRUE(ShouldAddTitle(desktop.Window("edit")));
    EXPECT_TRUE(log.Contains("AccessibleObjectFromWindow succeeded, but the returned AA object is NULL, should add the WND TITLE"));
}

TEST_F(WindowLookupTest, ClassThatCannotBeReadDoesNotLeaveTheWindowOut) {
    desktop.AddFault("saveLabel", {.call = "GetClassName", .result = E_FAIL});
    EXPECT_EQ(Windows(L"Save*", std::make_shared<StringValue>(L"Button")), Named({"save", "saveLabel", "deep"}));
}

TEST_F(WindowLookupTest, ExceptionOfAServerDoesNotCrossTheEnumeration) {
    desktop.AddFault("saveRoot", {.call = "get_accName", .raise = true});
    EXPECT_THROW(Windows(L"Save*", nullptr), Simulated::ServerFailure);
}

TEST_F(WindowLookupTest, TitleOfAnyOtherWindowIsAdded) {
    EXPECT_TRUE(ShouldAddTitle(desktop.Window("dialog")));
    EXPECT_TRUE(ShouldAddTitle(desktop.Window("save")));
}

TEST_F(WindowLookupTest, FirstFieldIsIgnored) {
    for (const std::int32_t ignored : {0, 1, -1}) {
        EXPECT_TRUE(ShouldAddTitle(desktop.Window("dialog"), ignored));
        EXPECT_FALSE(ShouldAddTitle(desktop.Window("edit"), ignored));
    }
}

TEST_F(WindowLookupTest, TitleOfAWindowWithoutAnObjectIsAdded) {
    EXPECT_TRUE(ShouldAddTitle(reinterpret_cast<HWND>(0x99)));
    EXPECT_TRUE(log.Contains("AccessibleObjectFromWindow failed, hRes="));
    EXPECT_TRUE(log.Contains(", should add the WND TITLE"));
}

TEST_F(WindowLookupTest, TitleIsAddedWhenTheRoleCannotBeRead) {
    desktop.AddFault("editRoot", {.call = "get_accRole", .result = E_FAIL});
    EXPECT_TRUE(ShouldAddTitle(desktop.Window("edit")));
}

}  // namespace
}  // namespace Zorvex::Testing
