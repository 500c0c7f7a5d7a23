#include "Common/UTILITY/WindowKinds.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Support/DesktopFixture.h"
#include "tests/Support/LogCapture.h"

namespace Zorvex {
namespace {

using Testing::DesktopFixture;
using Testing::LogCapture;

enAAType KindOfClass(const std::string& name) {
    DesktopFixture desktop(R"({"windows": [{"id": "w", "class": ")" + name + R"("}]})");
    return GetAASpecialType(desktop.Window("w"));
}

TEST(WindowKinds, TheRealClassPicksTheKind) {
    const struct {
        const char* name;
        enAAType type;
    } cases[] = {
        {"Internet Explorer_Server", AA_TYPE_IE}, {"_WwG", AA_TYPE_WORD}, {"Edit", AA_TYPE_EDIT}, {"RICHEDIT50W", AA_TYPE_RICHEDIT},
        {"ListBox", AA_TYPE_LISTBOX}, {"SysListView32", AA_TYPE_LISTVIEW}, {"ATL:SysListView32x", AA_TYPE_LISTVIEW},
        {"WindowsForms10.SysListView32.app", AA_TYPE_LISTVIEW}, {"ComboBox", AA_TYPE_COMBOBOX}, {"SysTreeView32", AA_TYPE_TREEVIEW},
        {"EXCEL7", AA_TYPE_EXCEL}, {"paneClassDC", AA_TYPE_POWERPOINT}, {"Chrome_RenderWidgetHostHWND", AA_TYPE_CHROME},
        {"Windows.UI.Core.CoreWindow", AA_TYPE_UWP}, {"Windows.UI.Core.AppWindow", AA_TYPE_UWP}, {"Chrome_WidgetWin_1", AA_TYPE_CHROME_WIDGET},
        {"Notepad", AA_TYPE_GENERIC}, {"edit", AA_TYPE_GENERIC}, {"Edit2", AA_TYPE_GENERIC}, {"syslistview32", AA_TYPE_GENERIC},
        {"MySysTreeView32", AA_TYPE_GENERIC}, {"Intermediate D3D Window", AA_TYPE_GENERIC},
    };
    for (const auto& one : cases) EXPECT_EQ(KindOfClass(one.name), one.type) << one.name;
}

TEST(WindowKinds, TheClassBehindTheWindowsOwnCounts) {
    DesktopFixture desktop(R"({"windows": [{"id": "list", "class": "TListView", "realClass": "SysListView32"},
                                           {"id": "fake", "class": "SysListView32", "realClass": "TListView"}]})");
    EXPECT_EQ(GetAASpecialType(desktop.Window("list")), AA_TYPE_LISTVIEW);
    EXPECT_EQ(GetAASpecialType(desktop.Window("fake")), AA_TYPE_GENERIC);
}

TEST(WindowKinds, ARenderWidgetInItsFrameIsStillARenderWidget) {
    DesktopFixture desktop(R"({"windows": [{"id": "frame", "class": "Chrome_WidgetWin_1", "children": [
        {"id": "render", "class": "Chrome_RenderWidgetHostHWND"}, {"id": "drawing", "class": "Intermediate D3D Window"}]}]})");
    EXPECT_EQ(GetAASpecialType(desktop.Window("render")), AA_TYPE_CHROME);
    EXPECT_EQ(GetAASpecialType(desktop.Window("drawing")), AA_TYPE_CHROME_WIDGET);
}

TEST(WindowKinds, AnInvalidWindowIsGenericAndLogged) {
    LogCapture log;
    EXPECT_EQ(GetAASpecialType(nullptr), AA_TYPE_GENERIC);
    EXPECT_EQ(log.Count("GetAASpecialType: hWnd=0x"), 1u);
}

}  // namespace
}  // namespace Zorvex
