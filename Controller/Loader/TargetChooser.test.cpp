#include "Controller/Loader/TargetChooser.h"

#include <gtest/gtest.h>

using namespace Zorvex;
using namespace Zorvex::Loader;

namespace {

class FakeSystem : public ILoaderSystem {
public:
    std::vector<WindowInfo> windows;
    DWORD windowlessProcess = 0;

    void Add(DWORD process, const wchar_t* title, bool visible = true) {
        WindowInfo info;
        info.window = reinterpret_cast<HWND>(0x1000 + windows.size());
        info.processId = process;
        info.title = title;
        info.visible = visible;
        windows.push_back(info);
    }

    std::vector<WindowInfo> TopLevelWindows(WindowFilter filter) override {
        std::vector<WindowInfo> result;
        for (const WindowInfo& window : windows) {
            if (filter == WindowFilter::All || window.visible) result.push_back(window);
        }
        return result;
    }
    LoadResult<WindowInfo> Describe(HWND) override { return LoadFailure{}; }
    bool ProcessExists(DWORD process) override { return process == windowlessProcess; }
    LoadResult<WindowInfo> Launch(const std::wstring&, std::chrono::milliseconds, std::stop_token) override { return LoadFailure{}; }
    LoadResult<std::unique_ptr<ITarget>> Open(HWND, const LoaderOptions&) override { return LoadFailure{}; }
};

}  // namespace

TEST(TargetChooser, TitleIsMatchedWithWildcardsAndWithoutCase) {
    FakeSystem system;
    system.Add(1, L"Calculator");
    system.Add(2, L"Untitled - Notepad");
    const auto found = FindWindowByTitle(system, L"untitled*note?ad");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->processId, 2u);
}

TEST(TargetChooser, TheFrontmostOfSeveralTitlesIsTaken) {
    FakeSystem system;
    system.Add(1, L"a - Notepad");
    system.Add(2, L"b - Notepad");
    EXPECT_EQ(FindWindowByTitle(system, L"*Notepad")->processId, 1u);
}

TEST(TargetChooser, HiddenWindowsAreNoTargets) {
    FakeSystem system;
    system.Add(1, L"Notepad", false);
    EXPECT_FALSE(FindWindowByTitle(system, L"Notepad"));
    EXPECT_FALSE(FindWindowByProcess(system, 1));
}

TEST(TargetChooser, ATitleThatIsNotThereIsAnsweredWithTheLikeliestOnesFirst) {
    FakeSystem system;
    system.Add(1, L"Calculator");
    system.Add(2, L"Untitled - Notepad");
    const auto found = FindWindowByTitle(system, L"notepad");
    ASSERT_FALSE(found);
    EXPECT_EQ(found.Error().problem, LoadProblem::NoSuchWindow);
    EXPECT_EQ(found.Error().detail,
              "no visible window has a title like \"notepad\"; there are \"Untitled - Notepad\", \"Calculator\"");
}

TEST(TargetChooser, OnlyFiveTitlesAreListedAndTheRestCounted) {
    FakeSystem system;
    for (const wchar_t* title : {L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"g"}) system.Add(1, title);
    EXPECT_EQ(FindWindowByTitle(system, L"x").Error().detail,
              "no visible window has a title like \"x\"; there are \"a\", \"b\", \"c\", \"d\", \"e\" and 2 more");
}

TEST(TargetChooser, WithoutAnyTitleTheMessageSaysSo) {
    FakeSystem system;
    EXPECT_EQ(FindWindowByTitle(system, L"x").Error().detail, "no visible window has a title like \"x\"; none has a title");
}

TEST(TargetChooser, AProcessIsEnteredByItsFrontmostTitledWindow) {
    FakeSystem system;
    system.Add(7, L"");
    system.Add(8, L"other");
    system.Add(7, L"main");
    EXPECT_EQ(FindWindowByProcess(system, 7)->title, L"main");
}

TEST(TargetChooser, AProcessWithoutTitlesIsEnteredByItsFrontmostWindow) {
    FakeSystem system;
    system.Add(7, L"");
    system.Add(7, L"");
    EXPECT_EQ(FindWindowByProcess(system, 7)->window, system.windows[0].window);
}

TEST(TargetChooser, AProcessWithoutWindowsIsToldFromNoProcess) {
    FakeSystem system;
    system.windowlessProcess = 9;
    EXPECT_EQ(FindWindowByProcess(system, 9).Error().detail, "9 has no visible window");
    EXPECT_EQ(FindWindowByProcess(system, 10).Error().detail, "10");
    EXPECT_EQ(FindWindowByProcess(system, 10).Error().problem, LoadProblem::NoSuchProcess);
}
