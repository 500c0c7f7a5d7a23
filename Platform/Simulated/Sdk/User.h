// Windows and messages.
#pragma once

#include "Platform/Simulated/Sdk/Types.h"

using WNDENUMPROC = BOOL(CALLBACK*)(HWND, LPARAM);

struct MSG { HWND hwnd; UINT message; WPARAM wParam; LPARAM lParam; DWORD time; POINT pt; };

constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;
constexpr UINT WM_GETOBJECT = 0x003D;
constexpr UINT WM_USER = 0x0400;
constexpr UINT PM_NOREMOVE = 0;
constexpr UINT PM_REMOVE = 1;
constexpr UINT SMTO_NORMAL = 0;
constexpr UINT SMTO_BLOCK = 1;
constexpr UINT SMTO_ABORTIFHUNG = 2;
constexpr UINT GA_PARENT = 1;
constexpr UINT GA_ROOT = 2;
constexpr UINT GA_ROOTOWNER = 3;
constexpr UINT GW_HWNDNEXT = 2;
constexpr UINT GW_HWNDPREV = 3;
constexpr UINT GW_OWNER = 4;
constexpr UINT GW_CHILD = 5;
constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr LONG WS_VISIBLE = 0x10000000;
constexpr LONG WS_DISABLED = 0x08000000;
constexpr LONG WS_CHILD = 0x40000000;
constexpr UINT LB_ERR = static_cast<UINT>(-1);
constexpr UINT LB_SETSEL = 0x0185;
constexpr UINT LB_SETCURSEL = 0x0186;
constexpr UINT LB_GETCURSEL = 0x0188;
constexpr UINT LB_GETTEXT = 0x0189;
constexpr UINT LB_GETTEXTLEN = 0x018A;
constexpr UINT LB_GETCOUNT = 0x018B;
constexpr UINT LB_GETSELCOUNT = 0x0190;
constexpr UINT LB_GETSELITEMS = 0x0191;

BOOL IsWindow(HWND window);
BOOL IsWindowVisible(HWND window);
BOOL IsWindowEnabled(HWND window);
BOOL IsChild(HWND parent, HWND window);
HWND GetParent(HWND window);
HWND GetAncestor(HWND window, UINT flags);
HWND GetWindow(HWND window, UINT command);
HWND GetDesktopWindow();
HWND GetForegroundWindow();
// Answers the window that had the focus before: the one of the focused element, else the frontmost one.
HWND SetFocus(HWND window);
HWND WindowFromPoint(POINT point);
BOOL GetWindowRect(HWND window, RECT* rectangle);
DWORD GetWindowThreadProcessId(HWND window, DWORD* processId);
int GetClassNameW(HWND window, LPWSTR text, int capacity);
UINT RealGetWindowClassW(HWND window, LPWSTR text, UINT capacity);
int GetWindowTextW(HWND window, LPWSTR text, int capacity);
LONG_PTR GetWindowLongPtrW(HWND window, int index);
BOOL EnumWindows(WNDENUMPROC visitor, LPARAM parameter);
BOOL EnumChildWindows(HWND parent, WNDENUMPROC visitor, LPARAM parameter);
HWND FindWindowExW(HWND parent, HWND after, LPCWSTR className, LPCWSTR title);
LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT SendMessageTimeoutW(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags, UINT timeout, DWORD_PTR* result);
BOOL PeekMessageW(MSG* message, HWND window, UINT first, UINT last, UINT remove);
BOOL TranslateMessage(const MSG* message);
LRESULT DispatchMessageW(const MSG* message);
UINT RegisterWindowMessageW(LPCWSTR name);

BOOL SetRect(RECT* rectangle, int left, int top, int right, int bottom);
BOOL IsRectEmpty(const RECT* rectangle);
BOOL EqualRect(const RECT* a, const RECT* b);
BOOL PtInRect(const RECT* rectangle, POINT point);
BOOL IntersectRect(RECT* result, const RECT* a, const RECT* b);
