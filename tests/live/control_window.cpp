// A window full of the system's own controls, for what no shipped program has side by side: list boxes of single and
// multiple selection, a list box of a foreign class, a combo box, check boxes, a tree, a list view with a hidden column.
// The argument is its title.
#include <string>
#include <vector>

#include "Platform/Windows.h"

namespace {

constexpr wchar_t ClassName[] = L"VantrelControlWindow";
// As a framework names the classes that it derives from the list box.
constexpr wchar_t DerivedListBox[] = L"WindowsForms10.LISTBOX.app.0.2bf8098_r6_ad1";

const std::vector<const wchar_t*> Colours = {L"Red", L"Green", L"Blue", L"Amber", L"Aqua", L"Black", L"White", L"Grey",
                                             L"Pink", L"Brown", L"Olive", L"Teal"};

class Form {
public:
    explicit Form(HWND window) : m_window(window) {}

    HWND Add(const wchar_t* windowClass, const wchar_t* text, DWORD style, const RECT& place) const {
        return ::CreateWindowExW(0, windowClass, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top, place.right - place.left,
                                 place.bottom - place.top, m_window, nullptr, ::GetModuleHandleW(nullptr), nullptr);
    }
    // A control that is named by the text in front of it.
    HWND AddLabelled(const wchar_t* label, const wchar_t* windowClass, DWORD style, const RECT& place) const {
        Add(L"Static", label, 0, {place.left, place.top - 18, place.right, place.top});
        return Add(windowClass, L"", style | WS_TABSTOP, place);
    }

private:
    HWND m_window;
};

void FillList(HWND list, UINT message) {
    for (const wchar_t* colour : Colours) ::SendMessageW(list, message, 0, reinterpret_cast<LPARAM>(colour));
}

HTREEITEM AddBranch(HWND tree, HTREEITEM parent, const wchar_t* text) {
    TVINSERTSTRUCTW branch{};
    branch.hParent = parent;
    branch.hInsertAfter = TVI_LAST;
    branch.item.mask = TVIF_TEXT;
    branch.item.pszText = const_cast<wchar_t*>(text);
    return reinterpret_cast<HTREEITEM>(::SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&branch)));
}

void FillTree(HWND tree) {
    const HTREEITEM world = AddBranch(tree, TVI_ROOT, L"World");
    const HTREEITEM europe = AddBranch(tree, world, L"Europe");
    AddBranch(tree, europe, L"Norway");
    AddBranch(tree, europe, L"Spain");
    AddBranch(tree, world, L"Asia");
    ::SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(world));
}

void FillListView(HWND view) {
    const std::vector<std::pair<const wchar_t*, int>> columns = {{L"City", 90}, {L"Code", 0}, {L"People", 70}};
    const std::vector<std::vector<const wchar_t*>> rows = {{L"Oslo", L"OSL", L"709,037"}, {L"Bergen", L"BGO", L"291,940"},
                                                           {L"Vigo", L"VGO", L"293,652"}};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = const_cast<wchar_t*>(columns[i].first);
        column.cx = columns[i].second;
        ::SendMessageW(view, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t cell = 0; cell < rows[row].size(); ++cell) {
            LVITEMW item{};
            item.mask = LVIF_TEXT;
            item.iItem = static_cast<int>(row);
            item.iSubItem = static_cast<int>(cell);
            item.pszText = const_cast<wchar_t*>(rows[row][cell]);
            ::SendMessageW(view, cell ? LVM_SETITEMW : LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        }
}

void AddControls(HWND window) {
    const Form form(window);
    form.AddLabelled(L"Name:", L"Edit", WS_BORDER | ES_AUTOHSCROLL, {10, 28, 190, 50});
    FillList(form.AddLabelled(L"Colour:", L"ListBox", WS_BORDER | WS_VSCROLL | LBS_NOTIFY, {10, 78, 190, 158}), LB_ADDSTRING);
    FillList(form.AddLabelled(L"Stripes:", L"ListBox", WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_MULTIPLESEL, {10, 188, 190, 268}),
             LB_ADDSTRING);
    FillList(form.AddLabelled(L"Dots:", DerivedListBox, WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_MULTIPLESEL, {10, 298, 190, 378}),
             LB_ADDSTRING);
    const HWND size = form.AddLabelled(L"Size:", L"ComboBox", CBS_DROPDOWNLIST | WS_VSCROLL, {200, 28, 380, 228});
    for (const wchar_t* text : {L"Small", L"Medium", L"Large"}) ::SendMessageW(size, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    ::SendMessageW(size, CB_SETCURSEL, 1, 0);
    form.Add(L"Button", L"&Gift wrap", BS_AUTOCHECKBOX | WS_TABSTOP, {200, 60, 380, 80});
    form.Add(L"Button", L"&Insured", BS_AUTO3STATE | WS_TABSTOP, {200, 84, 380, 104});
    form.Add(L"Button", L"By &post", BS_AUTORADIOBUTTON | WS_TABSTOP | WS_GROUP, {200, 108, 290, 128});
    form.Add(L"Button", L"By &hand", BS_AUTORADIOBUTTON, {290, 108, 380, 128});
    FillTree(form.AddLabelled(L"Places:", WC_TREEVIEWW, WS_BORDER | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT, {200, 158, 380, 258}));
    FillListView(form.AddLabelled(L"Cities:", WC_LISTVIEWW, WS_BORDER | LVS_REPORT, {200, 288, 380, 378}));
}

// The list box under another name; the handle of a combo box's list and the like stay what they are.
void DeriveListBox(HINSTANCE instance) {
    WNDCLASSW description{};
    ::GetClassInfoW(nullptr, L"ListBox", &description);
    description.hInstance = instance;
    description.lpszClassName = DerivedListBox;
    ::RegisterClassW(&description);
}

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) ::PostQuitMessage(0);
    return ::DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR arguments, int) {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES};
    ::InitCommonControlsEx(&controls);
    DeriveListBox(instance);
    WNDCLASSW description{};
    description.lpfnWndProc = &WindowProcedure;
    description.hInstance = instance;
    description.lpszClassName = ClassName;
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    ::RegisterClassW(&description);
    const HWND window = ::CreateWindowExW(0, ClassName, arguments, WS_OVERLAPPEDWINDOW, 60, 60, 420, 440, nullptr, nullptr, instance, nullptr);
    AddControls(window);
    ::ShowWindow(window, SW_SHOWNORMAL);
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    return 0;
}
