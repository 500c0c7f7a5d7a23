// A window that can be told to hang. The argument is its title.
//
// WM_APP: sleeps wParam milliseconds. WM_APP + 1: destroys the window, and the program ends. WM_APP + 2: opens a
// second window on a thread of its own, titled like this one with " 2" behind; answers 1.
#include <string>

#include "Platform/Windows.h"

namespace {

constexpr wchar_t ClassName[] = L"VantrelTestWindow";
std::wstring title;

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

void OpenWindow(const std::wstring& text) {
    CreateWindowExW(0, ClassName, text.c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40, 40, 300, 200, nullptr, nullptr,
                    GetModuleHandleW(nullptr), nullptr);
}

void Pump() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

DWORD WINAPI SecondThread(void*) {
    OpenWindow(title + L" 2");
    Pump();
    return 0;
}

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_APP: Sleep(static_cast<DWORD>(wParam)); return 1;
        case WM_APP + 1: DestroyWindow(window); return 1;
        case WM_APP + 2: CloseHandle(CreateThread(nullptr, 0, &SecondThread, nullptr, 0, nullptr)); return 1;
        case WM_DESTROY: PostQuitMessage(0); return 0;
        default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR arguments, int) {
    title = arguments;
    WNDCLASSW description{};
    description.lpfnWndProc = &WindowProcedure;
    description.hInstance = instance;
    description.lpszClassName = ClassName;
    RegisterClassW(&description);
    OpenWindow(title);
    Pump();
    return 0;
}
