// Questions about windows: class, title, owner, whether it answers. Every class test of the system goes through
// here, so that the spelling of the classes and the meaning of the tests stand in one place.
//
// An invalid window is no error: it has no class and no title, and no test holds for it.
#pragma once

#include <string>

#include "Common/UTILITY/NListControls.h"
#include "Common/UTILITY/NProcess.h"
#include "Common/UTILITY/WindowClassNames.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::NWindows {

// The class a window was made with, and the class behind it where one control is built on another.
CString GetWindowClass(HWND hWnd);
CString GetRealWindowClass(HWND hWnd);

// Tests of the real class unless they say otherwise. Case counts.
bool IsChromeWidgetClass(HWND hWnd);
bool IsChromiumWindow(HWND hWnd);
// Not the mail program, which has the same class.
bool IsMozillaWindow(HWND hWnd);
bool IsFirefoxWindow(HWND hWnd);
bool IsIEServerWindow(HWND hWnd);
// Either the system's list box or one of Windows Forms, whose class name is compared without regard to case.
bool IsListBoxWindow(HWND hWnd);
// By the class the window was made with.
bool IsWpfWindow(HWND hWnd);
// The window that holds a page embedded in Java. By the class it was made with, without regard to case.
bool IsCefBrowserWindow(HWND hWnd);
// The three classes of Adobe Reader, and any of them.
bool IsAdobeViewWindow(HWND hWnd);
bool IsAdobePageViewWindow(HWND hWnd);
bool IsAdobeFrameWindow(HWND hWnd);
bool IsAdobeWindow(HWND hWnd);

// The frame around a render widget: the window itself, or the parent of one of Chromium's inner windows, if that
// is a Chromium frame; else null.
HWND IsChromiumWidget(HWND hWnd);

// The desktop window counts as top-level.
bool IsTopLevelWindow(HWND hWnd);
// The last window on the way up that is no child of another: the desktop doesn't count as a parent. A window that is
// none comes back as it is.
HWND GetTopLevelWindow(HWND hWnd);
// (style & mask) == value
bool HasStyleBits(HWND hWnd, DWORD mask, DWORD value);
// Both windows belong to one thread of one process; an invalid window belongs to none.
bool IsSameThread(HWND hWnd1, HWND hWnd2);

// True if the window doesn't answer a ping within 5,000 ms.
bool IsWindowHung(HWND hWnd);
// At most 259 units. Empty for a window that is hung, and for a disabled one of this process, which is sent no
// message at all: it may be waiting for the very thread that asks.
CString GetWindowTitle(HWND hWnd);

// The top of the chain of parents and owners; the window itself when it has none.
HWND GetTopLevelOwner(HWND hWnd);
// Whether the top-level owner is no window or isn't shown.
bool HasInvisibleTopLevel(HWND hWnd);

// The first descendant with that class (GetWindowClass) and title (GetWindowTitle). A null text fits any.
HWND FindChildWindow(HWND hWnd, const wchar_t* className, const wchar_t* caption);

// "<null window>", "<invalid window 0x...>" or "0x...", for log lines.
std::string WindowDebugText(HWND hWnd);

}  // namespace Zorvex::NWindows
