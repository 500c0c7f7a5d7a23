// Serves a desktop file through real windows: opens a window of the given class for each one described, and answers
// WM_GETOBJECT with the same COM objects that the simulated desktop hands out.
//
//   served_desktop FILE [SECONDS]
//
// Prints "ready" and the number of windows when all are open, then a line of handle and id for each; ends when the
// first window is closed, or after SECONDS (600 unless given). tests/live/ServedCalls.h tells what it can be asked. Processes and threads of
// the file are not told apart: everything is served by one thread.
#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>

#include "Common/include/CComPtr.h"
#include "Platform/Simulated/AccessibleElement.h"
#include "Platform/Simulated/DesktopFile.h"
#include "Platform/Windows.h"
#include "tests/Support/FakeDocument.h"
#include "tests/live/ServedCalls.h"

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
    if (objectId == OBJID_NATIVEOM && window->nativeObject) {
        CComPtr<IDispatch> object;
        object.Attach(new Simulated::AutomationObject(g_desktop, window->nativeObject));
        answered = true;
        return ::LresultFromObject(IidOf<IDispatch>(), wParam, object);
    }
    const Simulated::ElementPtr root = g_desktop->RootOf(*window, objectId);
    if (!root) return 0;
    CComPtr<IAccessible> object;
    object.Attach(g_desktop->ObjectOf(root));
    answered = true;
    return ::LresultFromObject(IidOf<IAccessible>(), wParam, object);
}

// A window that is asked for its object raises an event, as an application does that wakes up; who asks for the object
// again before that is over does so from an event hook inside this process.
bool g_raisesEvent = false;
std::map<HWND, unsigned> g_askedByHooks;

void TellHooks(HWND hwnd, LPARAM objectId) {
    if (g_raisesEvent) {
        ++g_askedByHooks[hwnd];
        return;
    }
    if (static_cast<LONG>(static_cast<DWORD>(objectId)) != OBJID_WINDOW) return;
    g_raisesEvent = true;
    ::NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, hwnd, OBJID_WINDOW, CHILDID_SELF);
    g_raisesEvent = false;
}

// The text of the atom is an element's id and a call, or a window's id and "hooks".
LRESULT CountOf(ATOM question) {
    wchar_t wide[256] = {};
    const UINT length = ::GlobalGetAtomNameW(question, wide, 256);
    const std::string text(wide, wide + length);  // ids and calls are ASCII
    const std::size_t blank = text.rfind(' ');
    if (blank == std::string::npos) return -1;
    const std::string id = text.substr(0, blank), call = text.substr(blank + 1);
    if (call == "hooks") {
        const WindowPtr window = g_desktop->AnyWindowById(id);
        return window ? static_cast<LRESULT>(g_askedByHooks[window->hwnd]) : -1;
    }
    const Simulated::ElementPtr element = g_desktop->AnyElementById(id);
    Simulated::Call known{};
    return element && Simulated::CallFromName(call, known) ? static_cast<LRESULT>(element->calls.Of(known)) : -1;
}

// An element may have given its edit window another text.
void ShowTitle(HWND hwnd, WNDPROC classProcedure) {
    const WindowPtr window = g_desktop->WindowByHandle(hwnd);
    if (window && window->className == L"Edit")
        ::CallWindowProcW(classProcedure, hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(window->title.c_str()));
}

LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    static const UINT served = ::RegisterWindowMessageW(Zorvex::Testing::ServedCallsMessage);
    if (message == served) return CountOf(static_cast<ATOM>(wParam));
    if (message == WM_GETOBJECT) {
        TellHooks(hwnd, lParam);
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
    if (known != g_classProcedures.end() && (message == WM_GETTEXT || message == WM_GETTEXTLENGTH)) ShowTitle(hwnd, known->second);
    return known != g_classProcedures.end() ? ::CallWindowProcW(known->second, hwnd, message, wParam, lParam)
                                            : ::DefWindowProcW(hwnd, message, wParam, lParam);
}

bool IsSystemClass(const std::wstring& name) {
    WNDCLASSW known{};
    return ::GetClassInfoW(nullptr, name.c_str(), &known) != FALSE;
}

// A class of the served program; of a list box in all but its name where the window has a list box's items.
void RegisterOwnClass(const std::wstring& name, bool listBox) {
    WNDCLASSW known{};
    if (::GetClassInfoW(::GetModuleHandleW(nullptr), name.c_str(), &known)) return;
    if (listBox) {
        ::GetClassInfoW(nullptr, L"ListBox", &known);
        known.hInstance = ::GetModuleHandleW(nullptr);
        known.lpszClassName = name.c_str();
        ::RegisterClassW(&known);
        return;
    }
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

void FillListBox(HWND hwnd, const Simulated::ListBoxData& data) {
    for (const std::wstring& item : data.items) ::SendMessageW(hwnd, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
    for (const LONG index : data.selection) {
        if (data.multiple) ::SendMessageW(hwnd, LB_SETSEL, TRUE, index);
        else ::SendMessageW(hwnd, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
}

void Open(const WindowPtr& window, HWND parent) {
    if (window->made) return;  // a list view makes its own header
    const bool system = IsSystemClass(window->className);
    if (!system) RegisterOwnClass(window->className, window->listBox.has_value());
    // Frames would move the client area away from the described rectangle, so only a class's own style bits are kept.
    DWORD style = (window->style & 0xFFFF) | (parent ? WS_CHILD : WS_POPUP);
    if (window->visible) style |= WS_VISIBLE;
    if (!window->enabled) style |= WS_DISABLED;
    if (window->listBox && window->listBox->multiple) style |= LBS_MULTIPLESEL;
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
    if (system || window->listBox)
        g_classProcedures[hwnd] =
            reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
    if (window->listView) FillListView(hwnd, *window->listView);
    if (window->listBox) FillListBox(hwnd, *window->listBox);
    // The described order is topmost first. Where among its siblings a new child lies isn't the same on every system.
    for (const WindowPtr& child : window->children) {
        Open(child, hwnd);
        if (!child->made) ::SetWindowPos(child->hwnd, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

// The document behind a window of Internet Explorer: what the elements of its client show, as words and fields in a row.
struct ServedDocument {
    explicit ServedDocument(const Simulated::Rectangle& place) : page(objects, place.ToRect()) {}

    Zorvex::Testing::FakeObjects objects;
    Zorvex::Testing::FakeDocument page;
};
std::vector<std::unique_ptr<ServedDocument>> g_documents;

void ServeDocument(Simulated::Window& window) {
    const Simulated::ElementPtr client = g_desktop->RootOf(window, OBJID_CLIENT);
    if (!client || !client->rectangle) return;
    auto& served = *g_documents.emplace_back(std::make_unique<ServedDocument>(window.rectangle));
    std::wstring whole;
    for (const Simulated::ElementPtr& child : client->children) {
        const Simulated::Rectangle from = child->rectangle.value_or(window.rectangle);
        const LONG left = from.left - window.rectangle.left, top = from.top - window.rectangle.top;
        const RECT place{left, top, left + from.width, top + from.height};
        const std::wstring shown = child->value.value_or(child->name.value_or(L""));
        if (child->role == ROLE_SYSTEM_TEXT) served.page.AddInput(L"text", shown.c_str(), place);
        else served.page.AddText(shown, place);
        if (child->role != ROLE_SYSTEM_TEXT) whole += shown;
    }
    served.page.body.values[L"innerText"] = CComVariant(std::wstring_view(whole));
    client->EditDetails().services = served.page.window.Dispatch();
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
    // A new top-level window comes out on top.
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) Open(*window, nullptr);
    auto all = g_desktop->AllWindows();
    for (const WindowPtr& window : all)
        if (window->className == L"Internet Explorer_Server") ServeDocument(*window);
    std::erase_if(all, [](const WindowPtr& window) { return window->made; });
    std::printf("ready %zu\n", all.size());
    for (const WindowPtr& window : all)
        std::printf("0x%x %s\n", static_cast<unsigned>(reinterpret_cast<UINT_PTR>(window->hwnd)), window->id.c_str());
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
