// The library that the loader puts beside the server: answers WM_GETOBJECT for every window of the thread that loads
// it, and for each new one, until it is told to stop.
#include <windows.h>

#include <commctrl.h>

#include "tests/live/standard_objects/StandardObject.h"

namespace {

constexpr UINT_PTR kSubclassId = 0x5354414E;
HHOOK g_hook = nullptr;

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    if (message == WM_NCDESTROY) ::RemoveWindowSubclass(window, &Answer, kSubclassId);
    if (message == WM_GETOBJECT) {
        // Only the low 32 bits hold the object id.
        const LONG objectId = static_cast<LONG>(static_cast<DWORD>(lParam));
        CComPtr<IAccessible> object;
        if (objectId == OBJID_WINDOW) object = StandardObjects::WindowObjectOf(window);
        else if (objectId == OBJID_CLIENT && StandardObjects::KnowsClientOf(window)) object = StandardObjects::ClientObjectOf(window);
        if (object) return ::LresultFromObject(IidOf<IAccessible>(), wParam, object);
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

// Windows that answer for themselves are left alone: the served program's, which has objects of its own.
bool AnswersForItself(HWND window) { return ::GetPropW(window, L"VantrelServed") != nullptr; }

BOOL CALLBACK Begin(HWND window, LPARAM) {
    if (::GetWindowThreadProcessId(window, nullptr) == ::GetCurrentThreadId() && !AnswersForItself(window))
        ::SetWindowSubclass(window, &Answer, kSubclassId, 0);
    return TRUE;
}

BOOL CALLBACK End(HWND window, LPARAM) {
    ::RemoveWindowSubclass(window, &Answer, kSubclassId);
    return TRUE;
}

BOOL CALLBACK BeginWithChildren(HWND window, LPARAM parameter) {
    Begin(window, parameter);
    ::EnumChildWindows(window, &Begin, parameter);
    return TRUE;
}

BOOL CALLBACK EndWithChildren(HWND window, LPARAM parameter) {
    End(window, parameter);
    ::EnumChildWindows(window, &End, parameter);
    return TRUE;
}

LRESULT CALLBACK OnNewWindow(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND) Begin(reinterpret_cast<HWND>(wParam), 0);
    return ::CallNextHookEx(g_hook, code, wParam, lParam);
}

}  // namespace

// Called by the loader on the thread that owns the target's window.
extern "C" __declspec(dllexport) void StartBeside() {
    if (g_hook) return;
    ::EnumThreadWindows(::GetCurrentThreadId(), &BeginWithChildren, 0);
    g_hook = ::SetWindowsHookExW(WH_CBT, &OnNewWindow, nullptr, ::GetCurrentThreadId());
}

extern "C" __declspec(dllexport) void StopBeside() {
    if (g_hook) ::UnhookWindowsHookEx(g_hook);
    g_hook = nullptr;
    ::EnumThreadWindows(::GetCurrentThreadId(), &EndWithChildren, 0);
}
