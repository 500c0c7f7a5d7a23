// Serves a desktop file through real windows: opens a window of the given class for each one described, and answers
// WM_GETOBJECT with the same COM objects that the simulated desktop hands out.
//
//   served_desktop FILE [SECONDS]
//
// Prints "ready" and the number of windows when all are open; ends when the first window is closed, or after SECONDS
// (600 unless given). Processes and threads of the file are not told apart: everything is served by one thread.
#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "Common/include/CComPtr.h"
#include "Platform/Simulated/AccessibleElement.h"
#include "Platform/Simulated/DesktopFile.h"
#include "Platform/Windows.h"

namespace {

using Simulated::WindowPtr;

std::shared_ptr<Simulated::Desktop> g_desktop;
// The procedure of the class behind a window of a system class; none for classes of our own.
std::map<HWND, WNDPROC> g_classProcedures;

LRESULT AnswerObject(HWND hwnd, WPARAM wParam, LPARAM lParam, bool& answered) {
    const LONG objectId = static_cast<LONG>(static_cast<DWORD>(lParam));
    const WindowPtr window = g_desktop->WindowByHandle(hwnd);
    answered = false;
    if (!window) return 0;
    const Simulated::ElementPtr root = g_desktop->RootOf(*window, objectId);
    if (!root) return 0;
    CComPtr<IAccessible> object;
    object.Attach(g_desktop->ObjectOf(root));
    answered = true;
    return ::LresultFromObject(IidOf<IAccessible>(), wParam, object);
}

LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_GETOBJECT) {
        bool answered = false;
        const LRESULT result = AnswerObject(hwnd, wParam, lParam, answered);
        if (answered) return result;
    }
    if (const WindowPtr window = g_desktop->WindowByHandle(hwnd)) {
        const auto told = window->messages.find(message);
        if (told != window->messages.end()) return static_cast<LRESULT>(told->second);
        if (message == WM_DESTROY && !window->parent && window == g_desktop->Model().windows.front()) ::PostQuitMessage(0);
    }
    const auto known = g_classProcedures.find(hwnd);
    return known != g_classProcedures.end() ? ::CallWindowProcW(known->second, hwnd, message, wParam, lParam)
                                            : ::DefWindowProcW(hwnd, message, wParam, lParam);
}

bool IsSystemClass(const std::wstring& name) {
    WNDCLASSW known{};
    return ::GetClassInfoW(nullptr, name.c_str(), &known) != FALSE;
}

void RegisterOwnClass(const std::wstring& name) {
    WNDCLASSW known{};
    if (::GetClassInfoW(::GetModuleHandleW(nullptr), name.c_str(), &known)) return;
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &Procedure;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.lpszClassName = name.c_str();
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    ::RegisterClassW(&windowClass);
}

void FillListView(HWND hwnd, const Simulated::ListViewData& data) {
    for (std::size_t i = 0; i < data.columns.size(); ++i) {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = const_cast<wchar_t*>(data.columns[i].text.c_str());
        column.cx = data.columns[i].width;
        ::SendMessageW(hwnd, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
    for (std::size_t row = 0; row < data.items.size(); ++row)
        for (std::size_t cell = 0; cell < data.items[row].size(); ++cell) {
            LVITEMW item{};
            item.mask = LVIF_TEXT;
            item.iItem = static_cast<int>(row);
            item.iSubItem = static_cast<int>(cell);
            item.pszText = const_cast<wchar_t*>(data.items[row][cell].c_str());
            ::SendMessageW(hwnd, cell ? LVM_SETITEMW : LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        }
}

void Open(const WindowPtr& window, HWND parent) {
    if (window->made) return;  // a list view makes its own header
    const bool system = IsSystemClass(window->className);
    if (!system) RegisterOwnClass(window->className);
    // Frames would move the client area away from the described rectangle, so only a class's own style bits are kept.
    DWORD style = (window->style & 0xFFFF) | (parent ? WS_CHILD : WS_POPUP);
    if (window->visible) style |= WS_VISIBLE;
    if (!window->enabled) style |= WS_DISABLED;
    const Simulated::Rectangle origin = window->parent ? window->parent->rectangle : Simulated::Rectangle{};
    const HWND hwnd = ::CreateWindowExW(0, window->className.c_str(), window->title.c_str(), style,
                                        window->rectangle.left - origin.left, window->rectangle.top - origin.top,
                                        window->rectangle.width, window->rectangle.height, parent, nullptr,
                                        ::GetModuleHandleW(nullptr), nullptr);
    if (!hwnd) {
        std::fprintf(stderr, "a window could not be opened, error %lu\n", ::GetLastError());
        std::exit(1);
    }
    g_desktop->SetHandle(window, hwnd);
    ::SetPropW(hwnd, L"VantrelServed", reinterpret_cast<HANDLE>(1));
    if (system)
        g_classProcedures[hwnd] =
            reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
    if (window->listView) FillListView(hwnd, *window->listView);
    if (window->listBox)
        for (const std::wstring& item : window->listBox->items)
            ::SendMessageW(hwnd, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
    // The described order is topmost first, and a new window comes out on top.
    for (auto child = window->children.rbegin(); child != window->children.rend(); ++child) Open(*child, hwnd);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: served_desktop FILE [SECONDS]\n");
        return 2;
    }
    std::ifstream file(argv[1], std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    INITCOMMONCONTROLSEX controls{sizeof controls, 0xFFFF};
    ::InitCommonControlsEx(&controls);
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    try {
        g_desktop = Simulated::ReadDesktop(text);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "%s: %s\n", argv[1], problem.what());
        return 1;
    }
    const auto& windows = g_desktop->Model().windows;
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) Open(*window, nullptr);
    std::printf("ready %zu\n", g_desktop->AllWindows().size());
    std::fflush(stdout);

    ::SetTimer(nullptr, 0, argc > 2 ? static_cast<UINT>(std::atoi(argv[2])) * 1000 : 600'000, nullptr);
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_TIMER && !message.hwnd) break;
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    return 0;
}
