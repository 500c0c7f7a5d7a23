#include "Common/UTILITY/WindowKinds.h"

#include <string_view>

#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"

namespace Zorvex {

namespace {

enum class ClassTest { Whole, Anywhere };

struct WindowKind {
    enAAType type;
    std::wstring_view className;
    ClassTest test = ClassTest::Whole;
};

// The first row that fits counts.
constexpr WindowKind WindowKinds[] = {
    {AA_TYPE_IE, WindowClassNames::IEServer},
    {AA_TYPE_WORD, L"_WwG"},
    {AA_TYPE_EDIT, L"Edit"},
    {AA_TYPE_RICHEDIT, L"RICHEDIT50W"},
    {AA_TYPE_LISTBOX, WindowClassNames::ListBox},
    {AA_TYPE_LISTVIEW, L"SysListView32", ClassTest::Anywhere},
    {AA_TYPE_COMBOBOX, L"ComboBox"},
    {AA_TYPE_TREEVIEW, L"SysTreeView32"},
    {AA_TYPE_EXCEL, L"EXCEL7"},
    {AA_TYPE_POWERPOINT, L"paneClassDC"},
    {AA_TYPE_CHROME, WindowClassNames::ChromeRenderWidget},
    {AA_TYPE_UWP, WindowClassNames::CoreWindow},
    {AA_TYPE_UWP, WindowClassNames::AppWindow},
};

}  // namespace

enAAType GetAASpecialType(HWND hWnd) {
    LogVerbose("GetAASpecialType: hWnd=0x%p", static_cast<const void*>(hWnd));
    const CString className = NWindows::GetRealWindowClass(hWnd);
    for (const WindowKind& kind : WindowKinds) {
        const bool fits = kind.test == ClassTest::Whole ? className == kind.className : className.find(kind.className) != CString::npos;
        if (fits) return kind.type;
    }
    return NWindows::IsChromiumWidget(hWnd) ? AA_TYPE_CHROME_WIDGET : AA_TYPE_GENERIC;
}

}  // namespace Zorvex
