#include "Controller/CommandLine/WindowTags.h"

#include <gtest/gtest.h>

#include "Controller/CommandLine/CommandFailure.h"
#include "Controller/CommandLine/SystemChoice.h"
#include "Controller/Loader/WindowTree.h"
#include "Platform/Simulated/Desktop.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Controller {
namespace {

// Two windows of one kind, one of them with panes and an edit window below one of them, and a hidden one in front.
constexpr char kDesktop[] = R"({"format": "vantrel-desktop/1",
  "processes": [{"id": 1000, "path": "C:\\Windows\\editor.exe", "current": true}, {"id": 2000, "path": "C:\\other.exe"}],
  "windows": [
    {"id": "hidden", "class": "Editor", "title": "First", "process": 1000, "visible": false},
    {"id": "first", "class": "Editor", "title": "First", "process": 1000, "children": [
      {"id": "left", "class": "Pane", "children": [{"id": "text", "class": "Edit", "title": "content"}]},
      {"id": "right", "class": "Pane"}]},
    {"id": "second", "class": "Editor", "title": "Second", "process": 1000},
    {"id": "other", "class": "Other", "title": "", "process": 2000}]})";

class WindowTagsTest : public testing::Test {
protected:
    WindowTagsTest() {
        const std::string file = testing::TempDir() + "window_tags.json";
        WriteWholeFile(std::wstring(file.begin(), file.end()), kDesktop);
        m_system = OpenDesktopFile(std::wstring(file.begin(), file.end()));
        for (const auto& window : m_system->TopLevelWindows(Loader::WindowFilter::All)) tops.push_back(window.window);
    }
    SplitSelector Read(const std::wstring& text) {
        Selector selector;
        SelectorTextError error;
        EXPECT_TRUE(ParseSelector(text, selector, error)) << testing::PrintToString(error.message);
        return Split(selector);
    }
    std::vector<HWND> Find(const std::wstring& text, const std::vector<HWND>& top = {}) {
        const SplitSelector split = Read(text);
        found = FindWindows(*m_system, split.windows, split.scope, top);
        return found.windows;
    }
    std::string Refusal(const std::wstring& text) {
        try {
            Read(text);
        } catch (const CommandFailure& failure) {
            EXPECT_EQ(failure.Code(), ExitCode::WrongArguments);
            return failure.what();
        }
        return "";
    }

    std::unique_ptr<Loader::ILoaderSystem> m_system;
    std::vector<HWND> tops;  // hidden, first, second, other
    FoundWindows found;
};

TEST_F(WindowTagsTest, WindowsAreFoundByClassTitleProgramAndNumbers) {
    EXPECT_EQ(Find(L"wnd[cls=Other]"), std::vector<HWND>{tops[3]});
    EXPECT_EQ(Find(L"wnd[title=\"Sec*\"]"), std::vector<HWND>{tops[2]});
    EXPECT_EQ(Find(L"wnd[app=\"other.exe\"]"), std::vector<HWND>{tops[3]});
    EXPECT_EQ(Find(L"wnd[pid=2000]"), std::vector<HWND>{tops[3]});
    EXPECT_EQ(Find(L"wnd[title=/S.c.n./]"), std::vector<HWND>{tops[2]});
    EXPECT_EQ(Find(L"wnd[title~\"Secnd\":0.8]"), std::vector<HWND>{tops[2]});
    EXPECT_EQ(Find(L"wnd[cls=Editor !title=Nobody]").size(), 3u);
}

TEST_F(WindowTagsTest, VisibleWindowsComeBeforeHiddenOnes) {
    EXPECT_EQ(Find(L"wnd[title=First]"), (std::vector<HWND>{tops[1], tops[0]}));
    EXPECT_EQ(Find(L"wnd[title=First idx=2]"), std::vector<HWND>{tops[0]});
}

TEST_F(WindowTagsTest, IndexCountsWindowsThatFitFromOne) {
    EXPECT_EQ(Find(L"wnd[cls=Editor idx=2]"), std::vector<HWND>{tops[2]});
    EXPECT_TRUE(Find(L"wnd[cls=Editor idx=4]").empty());
    EXPECT_TRUE(Find(L"wnd[cls=Editor idx=-1]").empty());
}

TEST_F(WindowTagsTest, FurtherTagsNameWindowsAnywhereBelow) {
    const auto panes = Loader::ChildWindows(tops[1]);
    ASSERT_EQ(panes.size(), 2u);
    EXPECT_EQ(Find(L"wnd[cls=Editor] wnd[cls=Pane]"), panes);
    EXPECT_EQ(Find(L"wnd[cls=Editor] wnd[cls=Edit]"), Loader::ChildWindows(panes[0]));
    EXPECT_EQ(Find(L"> wnd[cls=Editor] > wnd[cls=Edit]"), std::vector<HWND>{});
    EXPECT_EQ(Find(L"> wnd[cls=Editor] > wnd[cls=Pane]"), panes);
}

TEST_F(WindowTagsTest, TreeOfWindowsIsListedLevelByLevel) {
    const auto below = Loader::WindowsBelow(tops[1]);
    ASSERT_EQ(below.size(), 3u);
    EXPECT_EQ(Loader::ParentWindow(below[2]), below[0]);
    EXPECT_EQ(Loader::ParentWindow(below[0]), tops[1]);
    EXPECT_EQ(Loader::ParentWindow(tops[1]), nullptr);
    EXPECT_EQ(Loader::ParentWindow(nullptr), nullptr);
    EXPECT_TRUE(Loader::WindowsBelow(nullptr).empty());
}

TEST_F(WindowTagsTest, ChosenWindowIsTheOnlyOneTheFirstTagMayBe) {
    EXPECT_EQ(Find(L"wnd[cls=Editor]", {tops[2]}), std::vector<HWND>{tops[2]});
    EXPECT_TRUE(Find(L"wnd[cls=Editor]", {tops[3]}).empty());
}

TEST_F(WindowTagsTest, FailureSaysWhichTagAndWhatThereIs) {
    EXPECT_TRUE(Find(L"wnd[cls=Editor] wnd[cls=Nobody]").empty());
    EXPECT_EQ(NoWindowText(found, Read(L"wnd[cls=Editor] wnd[cls=Nobody]").windows),
              "no window fits tag 2 of 2, wnd[cls=\"Nobody\"]; there are\n"
              "  wnd[app=\"editor.exe\" cls=\"Pane\"]\n  wnd[app=\"editor.exe\" cls=\"Pane\"]\n"
              "  wnd[app=\"editor.exe\" cls=\"Edit\" title=\"content\"]");
    EXPECT_TRUE(Find(L"wnd[cls=Other] wnd[cls=Nobody]").empty());
    EXPECT_EQ(NoWindowText(found, Read(L"wnd[cls=Other] wnd[cls=Nobody]").windows),
              "no window fits tag 2 of 2, wnd[cls=\"Nobody\"]; there is none to try it on");
}

TEST_F(WindowTagsTest, SelectorThatCantBeTakenApartIsRefused) {
    EXPECT_EQ(Refusal(L"ctrl wnd"), "windows stand before elements: wnd can't be below a ctrl tag");
    EXPECT_EQ(Refusal(L"java"), "the search knows wnd and ctrl tags alone, not java");
    EXPECT_EQ(Refusal(L"wnd[aaname=x]"),
              "a window can't be found by aaname, as wnd[aaname=\"x\"] asks; there are app, cls, title, pid, tid and idx");
    EXPECT_EQ(Refusal(L"wnd[!aaname=x] ctrl"), "");
}

TEST_F(WindowTagsTest, ScopeThatBindsTheFirstTagBindsTheFirstWindow) {
    EXPECT_EQ(Read(L"> wnd ctrl").ElementSelector().scope, Search::SearchScope::Descendants);
    EXPECT_EQ(Read(L"> wnd > ctrl").ElementSelector().scope, Search::SearchScope::ChildrenOnly);
    EXPECT_EQ(Read(L"> ctrl ctrl").ElementSelector().scope, Search::SearchScope::DescendantsOfTopLevel);
}

TEST_F(WindowTagsTest, DescriptionHoldsWhatThereIs) {
    const auto window = m_system->Describe(tops[1]);
    ASSERT_TRUE(window);
    EXPECT_EQ(WriteTag(*DescribeWindow(*window, WindowTitle::Include)), L"wnd[app=\"editor.exe\" cls=\"Editor\" title=\"First\"]");
    EXPECT_EQ(WriteTag(*DescribeWindow(*window, WindowTitle::LeaveOut)), L"wnd[app=\"editor.exe\" cls=\"Editor\"]");
}

}  // namespace
}  // namespace Zorvex::Controller
