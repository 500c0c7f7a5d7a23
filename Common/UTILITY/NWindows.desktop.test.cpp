#include "Common/UTILITY/NWindows.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Common/include/FormatText.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

const HWND NoWindow = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x7777));

// One top-level window of a class.
std::string WindowOfClass(const std::string& name) { return R"({"windows": [{"id": "w", "class": ")" + name + R"("}]})"; }

// Not "Test": that is another thing inside a test.
using ClassTest = std::function<bool(HWND)>;

void ExpectForClasses(const ClassTest& test, const std::vector<std::string>& yes, const std::vector<std::string>& no) {
    for (const std::string& name : yes) {
        DesktopFixture desktop(WindowOfClass(name));
        EXPECT_TRUE(test(desktop.Window("w"))) << name;
    }
    for (const std::string& name : no) {
        DesktopFixture desktop(WindowOfClass(name));
        EXPECT_FALSE(test(desktop.Window("w"))) << name;
        EXPECT_FALSE(test(NoWindow));
        EXPECT_FALSE(test(nullptr));
    }
}

TEST(NWindows, ClassTestsCompareWithCase) {
    ExpectForClasses(NWindows::IsChromeWidgetClass, {"Chrome_WidgetWin_", "Chrome_WidgetWin_1"},
                     {"chrome_WidgetWin_1", "Chrome_WidgetWin", "Chrome_RenderWidgetHostHWND"});
    ExpectForClasses(NWindows::IsChromiumWindow,
                     {"Chrome_WidgetWin_0", "Chrome_RenderWidgetHostHWND", "Intermediate Software Window", "Intermediate D3D Window"},
                     {"Chrome_RenderWidgetHostHWND2", "Intermediate d3d Window", "Notepad"});
    ExpectForClasses(NWindows::IsMozillaWindow, {"MozillaWindowClass"}, {"MozillaCompositorWindowClass", "mozillawindowclass"});
    ExpectForClasses(NWindows::IsFirefoxWindow, {"MozillaWindowClass", "MozillaCompositorWindowClass"}, {"MozillaDialogClass"});
    ExpectForClasses(NWindows::IsIEServerWindow, {"Internet Explorer_Server"}, {"Internet Explorer_server"});
    ExpectForClasses(NWindows::IsWpfWindow, {"HwndWrapper[app.exe;;guid]", "HwndWrapper["}, {"hwndWrapper[app]", "HwndWrapper"});
    ExpectForClasses(NWindows::IsCefBrowserWindow, {"CefBrowserWindow", "cefbrowserwindow", "CEFBROWSERWINDOW"}, {"CefBrowserWindow2", "CefBrowser"});
    ExpectForClasses(NWindows::IsAdobeViewWindow, {"AVL_AVView"}, {"AVPageView", "AcrobatSDIWindow"});
    ExpectForClasses(NWindows::IsAdobePageViewWindow, {"AVPageView"}, {"AVL_AVView"});
    ExpectForClasses(NWindows::IsAdobeFrameWindow, {"AcrobatSDIWindow"}, {"AVL_AVView"});
    ExpectForClasses(NWindows::IsAdobeWindow, {"AVL_AVView", "AVPageView", "AcrobatSDIWindow"}, {"AcrobatSDIWindow2"});
}

TEST(NWindows, AWindowsFormsListBoxIsAListBoxInAnyCase) {
    ExpectForClasses(NWindows::IsListBoxWindow,
                     {"ListBox", "WindowsForms10.LISTBOX.app.0.378734a", "windowsforms10.listbox.app.0.378734a", "WINDOWSFORMS.LISTBOX",
                      "WindowsForms.LIST.LISTBOXES"},
                     {"listbox", "ListBoxEx", "WindowsForms10LISTBOX", "MyWindowsForms10.LISTBOX", "WindowsForms10.LISTVIEW", "WindowsForm.LISTBOX"});
}

TEST(NWindows, ClassTestsLookAtTheRealClass) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "TListBox", "realClass": "ListBox"},
                                           {"id": "x", "class": "HwndWrapper[a]", "realClass": "Other"}]})");
    EXPECT_TRUE(NWindows::IsListBoxWindow(desktop.Window("w")));
    EXPECT_EQ(NWindows::GetWindowClass(desktop.Window("w")), L"TListBox");
    EXPECT_EQ(NWindows::GetRealWindowClass(desktop.Window("w")), L"ListBox");
    EXPECT_TRUE(NWindows::IsWpfWindow(desktop.Window("x")));
    EXPECT_EQ(NWindows::GetWindowClass(NoWindow), L"");
    EXPECT_EQ(NWindows::GetRealWindowClass(nullptr), L"");
}

// A window made with one class on the base of another.
std::string WindowOfClasses(const std::string& name, const std::string& realName) {
    return R"({"windows": [{"id": "w", "class": ")" + name + R"(", "realClass": ")" + realName + R"("}]})";
}

TEST(NWindows, EachClassTestLooksAtItsOwnOneOfTheTwoClasses) {
    const struct {
        ClassTest test;
        const char* name;
    } ofTheRealClass[] = {{NWindows::IsChromeWidgetClass, "Chrome_WidgetWin_1"},   {NWindows::IsChromiumWindow, "Chrome_RenderWidgetHostHWND"},
                          {NWindows::IsMozillaWindow, "MozillaWindowClass"},       {NWindows::IsFirefoxWindow, "MozillaCompositorWindowClass"},
                          {NWindows::IsIEServerWindow, "Internet Explorer_Server"}, {NWindows::IsListBoxWindow, "WindowsForms10.LISTBOX.app"}};
    for (const auto& one : ofTheRealClass) {
        DesktopFixture real(WindowOfClasses("Other", one.name));
        EXPECT_TRUE(one.test(real.Window("w"))) << one.name;
        DesktopFixture made(WindowOfClasses(one.name, "Other"));
        EXPECT_FALSE(one.test(made.Window("w"))) << one.name;
    }
    const std::pair<ClassTest, const char*> ofTheClassItWasMadeWith[] = {{NWindows::IsWpfWindow, "HwndWrapper[a]"},
                                                                    {NWindows::IsCefBrowserWindow, "CefBrowserWindow"},
                                                                    {NWindows::IsChromiumWidget, "Chrome_WidgetWin_1"}};
    for (const auto& [test, name] : ofTheClassItWasMadeWith) {
        DesktopFixture real(WindowOfClasses("Other", name));
        EXPECT_FALSE(test(real.Window("w"))) << name;
        DesktopFixture made(WindowOfClasses(name, "Other"));
        EXPECT_TRUE(test(made.Window("w"))) << name;
    }
}

TEST(NWindows, TheMailProgramIsNoMozillaWindow) {
    DesktopFixture desktop(R"({"processes": [{"id": 1000, "path": "C:\\Mozilla\\Firefox.exe", "current": true},
                                             {"id": 2000, "path": "C:\\Mail\\Thunderbird.EXE"}],
                               "windows": [{"id": "browser", "class": "MozillaWindowClass", "process": 1000},
                                           {"id": "mail", "class": "MozillaWindowClass", "process": 2000}]})");
    EXPECT_TRUE(NWindows::IsMozillaWindow(desktop.Window("browser")));
    EXPECT_FALSE(NWindows::IsMozillaWindow(desktop.Window("mail")));
    EXPECT_FALSE(NWindows::IsFirefoxWindow(desktop.Window("mail")));
}

TEST(NWindows, TheChromiumWidgetIsTheFrameAroundTheRenderWidget) {
    for (const char* inner : {"Chrome_RenderWidgetHostHWND", "Intermediate D3D Window", "Intermediate Software Window"}) {
        DesktopFixture desktop(std::string(R"({"windows": [{"id": "frame", "class": "Chrome_WidgetWin_1", "children": [
            {"id": "inner", "class": ")") + inner + R"("}, {"id": "other", "class": "Button"}]},
            {"id": "orphan", "class": ")" + inner + R"("}, {"id": "host", "class": "Other", "children": [{"id": "lost", "class": ")" + inner + R"("}]}]})");
        const HWND frame = desktop.Window("frame");
        EXPECT_EQ(NWindows::IsChromiumWidget(frame), frame);
        EXPECT_EQ(NWindows::IsChromiumWidget(desktop.Window("inner")), frame);
        EXPECT_EQ(NWindows::IsChromiumWidget(desktop.Window("other")), nullptr);
        EXPECT_EQ(NWindows::IsChromiumWidget(desktop.Window("orphan")), nullptr);
        EXPECT_EQ(NWindows::IsChromiumWidget(desktop.Window("lost")), nullptr);
        EXPECT_EQ(NWindows::IsChromiumWidget(NoWindow), nullptr);
    }
}

constexpr const char* Family = R"({"windows": [
    {"id": "main", "class": "Frame", "title": "Main", "thread": 1, "children": [
        {"id": "pane", "class": "Pane", "children": [{"id": "leaf", "class": "Button", "title": "OK"}]},
        {"id": "view", "class": "AVL_AVView", "title": "AVPageView"}]},
    {"id": "dialog", "class": "#32770", "title": "Dialog", "owner": "main", "thread": 2},
    {"id": "hidden", "class": "Frame", "visible": false},
    {"id": "orphan", "class": "Frame", "owner": "hidden"}]})";

TEST(NWindows, TopLevelWindowsAreTheDesktopAndItsChildren) {
    DesktopFixture desktop(Family);
    EXPECT_TRUE(NWindows::IsTopLevelWindow(desktop.Window("main")));
    EXPECT_TRUE(NWindows::IsTopLevelWindow(desktop.Window("dialog")));
    EXPECT_TRUE(NWindows::IsTopLevelWindow(::GetDesktopWindow()));
    EXPECT_FALSE(NWindows::IsTopLevelWindow(desktop.Window("pane")));
    EXPECT_FALSE(NWindows::IsTopLevelWindow(desktop.Window("leaf")));
    EXPECT_FALSE(NWindows::IsTopLevelWindow(NoWindow));
    EXPECT_FALSE(NWindows::IsTopLevelWindow(nullptr));
}

TEST(NWindows, TopLevelWindowIsTheLastBelowTheDesktopAndAnOwnerIsNoParent) {
    DesktopFixture desktop(Family);
    for (const char* id : {"main", "pane", "leaf"})
        EXPECT_EQ(NWindows::GetTopLevelWindow(desktop.Window(id)), desktop.Window("main")) << id;
    EXPECT_EQ(NWindows::GetTopLevelWindow(desktop.Window("dialog")), desktop.Window("dialog"));
    EXPECT_EQ(NWindows::GetTopLevelWindow(::GetDesktopWindow()), ::GetDesktopWindow());
    EXPECT_EQ(NWindows::GetTopLevelWindow(NoWindow), NoWindow);
    EXPECT_EQ(NWindows::GetTopLevelWindow(nullptr), nullptr);
}

TEST(NWindows, TheTopLevelOwnerIsTheTopOfTheChain) {
    DesktopFixture desktop(Family);
    const HWND main = desktop.Window("main");
    for (const char* id : {"main", "pane", "leaf", "dialog"}) EXPECT_EQ(NWindows::GetTopLevelOwner(desktop.Window(id)), main) << id;
}

TEST(NWindows, AnInvisibleTopLevelOwnerIsLogged) {
    DesktopFixture desktop(Family);
    LogCapture log;
    EXPECT_FALSE(NWindows::HasInvisibleTopLevel(desktop.Window("leaf")));
    EXPECT_EQ(log.Count("topOwner: "), 1u);
    EXPECT_FALSE(log.Contains("topOwner is invisible!"));
    EXPECT_TRUE(NWindows::HasInvisibleTopLevel(desktop.Window("orphan")));
    EXPECT_TRUE(NWindows::HasInvisibleTopLevel(desktop.Window("hidden")));
    EXPECT_TRUE(NWindows::HasInvisibleTopLevel(NoWindow));
    EXPECT_TRUE(NWindows::HasInvisibleTopLevel(nullptr));
    EXPECT_EQ(log.Count("topOwner is invisible!"), 4u);
    for (const std::string& line : log.Lines()) EXPECT_EQ(line.substr(0, 1), "V");
}

TEST(NWindows, StyleBitsAreComparedUnderTheMask) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "SysListView32", "style": 1}, {"id": "high", "class": "x", "style": 2147483649}]})");
    const HWND window = desktop.Window("w");
    EXPECT_TRUE(NWindows::HasStyleBits(window, 3, 1));
    EXPECT_FALSE(NWindows::HasStyleBits(window, 3, 3));
    EXPECT_FALSE(NWindows::HasStyleBits(window, 3, 0));
    EXPECT_TRUE(NWindows::HasStyleBits(desktop.Window("high"), 0x80000003, 0x80000001));
}

TEST(NWindows, ThreadsAreCompared) {
    DesktopFixture desktop(Family);
    EXPECT_TRUE(NWindows::IsSameThread(desktop.Window("main"), desktop.Window("hidden")));
    EXPECT_FALSE(NWindows::IsSameThread(desktop.Window("main"), desktop.Window("dialog")));
    EXPECT_FALSE(NWindows::IsSameThread(desktop.Window("main"), NoWindow));
    EXPECT_FALSE(NWindows::IsSameThread(NoWindow, NoWindow));
    EXPECT_FALSE(NWindows::IsSameThread(nullptr, nullptr));
}

TEST(NWindows, ThreadsOfTwoProcessesAreNotTheSame) {
    DesktopFixture desktop(R"({"processes": [{"id": 1, "path": "C:\\a.exe"}, {"id": 2, "path": "C:\\b.exe"}], "windows": [
        {"id": "a", "class": "x", "process": 1, "thread": 7}, {"id": "b", "class": "x", "process": 2, "thread": 7},
        {"id": "c", "class": "x", "process": 1, "thread": 7}]})");
    EXPECT_FALSE(NWindows::IsSameThread(desktop.Window("a"), desktop.Window("b")));
    EXPECT_TRUE(NWindows::IsSameThread(desktop.Window("a"), desktop.Window("c")));
}

TEST(NWindows, TheFirstDescendantWithClassAndTitleIsFound) {
    DesktopFixture desktop(Family);
    const HWND main = desktop.Window("main");
    EXPECT_EQ(NWindows::FindChildWindow(main, L"AVL_AVView", L"AVPageView"), desktop.Window("view"));
    EXPECT_EQ(NWindows::FindChildWindow(main, L"Button", nullptr), desktop.Window("leaf"));
    EXPECT_EQ(NWindows::FindChildWindow(main, nullptr, L"OK"), desktop.Window("leaf"));
    EXPECT_EQ(NWindows::FindChildWindow(main, nullptr, nullptr), desktop.Window("pane"));
    EXPECT_EQ(NWindows::FindChildWindow(main, L"AVL_AVView", L"other"), nullptr);
    EXPECT_EQ(NWindows::FindChildWindow(main, L"Frame", nullptr), nullptr);
    EXPECT_EQ(NWindows::FindChildWindow(nullptr, L"Frame", nullptr), nullptr);
}

TEST(NWindows, ATitleIsRead) {
    DesktopFixture desktop(Family);
    LogCapture log;
    EXPECT_EQ(NWindows::GetWindowTitle(desktop.Window("main")), L"Main");
    EXPECT_EQ(NWindows::GetWindowTitle(NoWindow), L"");
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(NWindows, ALongTitleIsCutAt259Units) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "x", "title": ")" + std::string(400, 'a') + R"("}]})");
    EXPECT_EQ(NWindows::GetWindowTitle(desktop.Window("w")), std::wstring(259, L'a'));
}

TEST(NWindows, AWindowThatDoesntAnswerHasNoTitleAfterAtMostFiveSeconds) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "x", "title": "Busy", "hung": true}]})");
    LogCapture log;
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_EQ(NWindows::GetWindowTitle(desktop.Window("w")), L"");
    EXPECT_LE(::GetTickCount64() - start, 5000u);
    EXPECT_EQ(log.Count("[IsWindowHung] Hung hWnd: 0x"), 1u) << log.Text();
    EXPECT_EQ(log.Count("[GetWindowTitle] skipping hung window: 0x"), 1u);
    for (const std::string& line : log.Lines()) EXPECT_EQ(line.substr(0, 1), "W");
    EXPECT_EQ(desktop.Calls("w", "GetWindowText"), 0);
    EXPECT_EQ(log.Count("errCode: " + std::to_string(ERROR_TIMEOUT)), 1u) << log.Text();
}

TEST(NWindows, AWindowHasFiveSecondsToAnswerThePing) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "x", "hung": true}, {"id": "fine", "class": "x"}]})");
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_TRUE(NWindows::IsWindowHung(desktop.Window("w")));
    EXPECT_EQ(::GetTickCount64() - start, 5000u);
    EXPECT_FALSE(NWindows::IsWindowHung(desktop.Window("fine")));
}

TEST(NWindows, ADisabledWindowOfThisProcessHasNoTitleAndGetsNoMessage) {
    DesktopFixture desktop(R"({"processes": [{"id": 1000, "path": "C:\\a.exe", "current": true}, {"id": 2000, "path": "C:\\b.exe"}],
                               "windows": [{"id": "own", "class": "x", "title": "Own", "enabled": false, "process": 1000},
                                           {"id": "foreign", "class": "x", "title": "Foreign", "enabled": false, "process": 2000}]})");
    LogCapture log;
    EXPECT_EQ(NWindows::GetWindowTitle(desktop.Window("own")), L"");
    EXPECT_EQ(desktop.Calls("own", "SendMessage"), 0);
    EXPECT_EQ(desktop.Calls("own", "GetWindowText"), 0);
    EXPECT_EQ(log.Count("[GetWindowTitle] skipping disabled window from current process wnd: "), 1u);
    EXPECT_EQ(NWindows::GetWindowTitle(desktop.Window("foreign")), L"Foreign");
    EXPECT_EQ(log.Lines().size(), 1u) << log.Text();
}

TEST(NWindows, DebugTextTellsValidFromInvalid) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": "x"}]})");
    EXPECT_EQ(NWindows::WindowDebugText(nullptr), "<null window>");
    EXPECT_EQ(NWindows::WindowDebugText(desktop.Window("w")), FormatText("0x%p", static_cast<const void*>(desktop.Window("w"))));
    EXPECT_EQ(NWindows::WindowDebugText(NoWindow), FormatText("<invalid window 0x%p>", static_cast<const void*>(NoWindow)));
}

}  // namespace
}  // namespace Zorvex
