#include "Common/UTILITY/NWindows.h"

#include <algorithm>
#include <exception>
#include <string_view>

#include "Common/UTILITY/ProcessNames.h"
#include "Common/include/Log.h"

namespace Zorvex::NWindows {

namespace {

constexpr int TextBuffer = 260;
constexpr UINT PingMilliseconds = 5000;

// A window class on the stack: class tests run for every element of a walk.
class ClassName {
public:
    static ClassName Of(HWND hWnd) {
        ClassName name;
        name.SetLength(::GetClassNameW(hWnd, name.m_text, TextBuffer));
        return name;
    }
    static ClassName RealOf(HWND hWnd) {
        ClassName name;
        name.SetLength(static_cast<int>(::RealGetWindowClassW(hWnd, name.m_text, TextBuffer)));
        return name;
    }
    std::wstring_view View() const { return {m_text, m_length}; }

private:
    void SetLength(int length) { m_length = static_cast<std::size_t>(std::clamp(length, 0, TextBuffer - 1)); }

    wchar_t m_text[TextBuffer];
    std::size_t m_length = 0;
};

bool HasRealClass(HWND hWnd, std::wstring_view name) { return ClassName::RealOf(hWnd).View() == name; }

bool IsInnerChromiumClass(std::wstring_view name) {
    return name == WindowClassNames::ChromeRenderWidget || name == WindowClassNames::IntermediateSoftwareWindow ||
           name == WindowClassNames::IntermediateD3DWindow;
}

wchar_t LowerAscii(wchar_t unit) { return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit; }

// A pattern whose only wildcard is '*', without regard to the case of ASCII letters.
bool MatchesStars(std::wstring_view text, std::wstring_view pattern) {
    std::size_t textAt = 0, patternAt = 0, retryText = 0, star = std::wstring_view::npos;
    while (textAt < text.size()) {
        if (patternAt < pattern.size() && pattern[patternAt] == L'*') {
            star = patternAt++;
            retryText = textAt;
        } else if (patternAt < pattern.size() && LowerAscii(pattern[patternAt]) == LowerAscii(text[textAt])) {
            ++patternAt;
            ++textAt;
        } else if (star != std::wstring_view::npos) {
            patternAt = star + 1;
            textAt = ++retryText;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(patternAt), pattern.end(), [](wchar_t unit) { return unit == L'*'; });
}

// What a search for a child window looks for and finds.
struct ChildSearch {
    const wchar_t* className;
    const wchar_t* caption;
    HWND found = nullptr;
    std::exception_ptr failure;

    bool Fits(HWND hWnd) const {
        return (!className || ClassName::Of(hWnd).View() == className) && (!caption || GetWindowTitle(hWnd) == caption);
    }
};

// The platform calls back through its own frames, which an exception must not cross.
BOOL CALLBACK VisitChildWindow(HWND hWnd, LPARAM parameter) {
    ChildSearch& search = *reinterpret_cast<ChildSearch*>(parameter);
    try {
        if (!search.Fits(hWnd)) return TRUE;
        search.found = hWnd;
    } catch (...) {
        search.failure = std::current_exception();
    }
    return FALSE;
}

}  // namespace

CString GetWindowClass(HWND hWnd) { return CString(ClassName::Of(hWnd).View()); }
CString GetRealWindowClass(HWND hWnd) { return CString(ClassName::RealOf(hWnd).View()); }

bool IsChromeWidgetClass(HWND hWnd) { return ClassName::RealOf(hWnd).View().starts_with(WindowClassNames::ChromeWidgetPrefix); }

bool IsChromiumWindow(HWND hWnd) {
    const ClassName name = ClassName::RealOf(hWnd);
    return name.View().starts_with(WindowClassNames::ChromeWidgetPrefix) || IsInnerChromiumClass(name.View());
}

bool IsMozillaWindow(HWND hWnd) {
    return HasRealClass(hWnd, WindowClassNames::MozillaWindow) && NProcess::GetWindowProcessName(hWnd) != ProcessNames::Thunderbird;
}

bool IsFirefoxWindow(HWND hWnd) { return HasRealClass(hWnd, WindowClassNames::MozillaCompositor) || IsMozillaWindow(hWnd); }

bool IsIEServerWindow(HWND hWnd) { return HasRealClass(hWnd, WindowClassNames::IEServer); }

bool IsListBoxWindow(HWND hWnd) {
    const ClassName name = ClassName::RealOf(hWnd);
    return name.View() == WindowClassNames::ListBox || MatchesStars(name.View(), WindowClassNames::WindowsFormsListBoxPattern);
}

bool IsCefBrowserWindow(HWND hWnd) { return MatchesStars(ClassName::Of(hWnd).View(), WindowClassNames::CefBrowser); }

bool IsWpfWindow(HWND hWnd) { return ClassName::Of(hWnd).View().starts_with(WindowClassNames::WpfPrefix); }

bool IsAdobeViewWindow(HWND hWnd) { return HasRealClass(hWnd, WindowClassNames::AdobeView); }
bool IsAdobePageViewWindow(HWND hWnd) { return HasRealClass(hWnd, WindowClassNames::AdobePageView); }
bool IsAdobeFrameWindow(HWND hWnd) { return HasRealClass(hWnd, WindowClassNames::AdobeFrame); }

bool IsAdobeWindow(HWND hWnd) {
    const ClassName name = ClassName::RealOf(hWnd);
    return name.View() == WindowClassNames::AdobeView || name.View() == WindowClassNames::AdobePageView ||
           name.View() == WindowClassNames::AdobeFrame;
}

HWND IsChromiumWidget(HWND hWnd) {
    // The test wants the frame around a render widget.
    const HWND frame = IsInnerChromiumClass(ClassName::Of(hWnd).View()) ? ::GetParent(hWnd) : hWnd;
    return ClassName::Of(frame).View().starts_with(WindowClassNames::ChromeWidgetPrefix) ? frame : nullptr;
}

bool IsTopLevelWindow(HWND hWnd) {
    if (!::IsWindow(hWnd)) return false;
    const HWND desktop = ::GetDesktopWindow();
    if (hWnd == desktop) return true;
    const HWND parent = ::GetAncestor(hWnd, GA_PARENT);
    return !parent || parent == desktop;
}

HWND GetTopLevelWindow(HWND hWnd) {
    const HWND desktop = ::GetDesktopWindow();
    while (::IsWindow(hWnd)) {
        const HWND parent = ::GetAncestor(hWnd, GA_PARENT);
        if (!parent || parent == desktop) break;
        hWnd = parent;
    }
    return hWnd;
}

bool HasStyleBits(HWND hWnd, DWORD mask, DWORD value) {
    return (static_cast<DWORD>(::GetWindowLongPtrW(hWnd, GWL_STYLE)) & mask) == value;
}

bool IsSameThread(HWND hWnd1, HWND hWnd2) {
    DWORD process1 = 0, process2 = 0;
    const DWORD thread = ::GetWindowThreadProcessId(hWnd1, &process1);
    return thread != 0 && thread == ::GetWindowThreadProcessId(hWnd2, &process2) && process1 == process2;
}

bool IsWindowHung(HWND hWnd) {
    if (::SendMessageTimeoutW(hWnd, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, PingMilliseconds, nullptr) != 0) return false;
    LogWarning("[IsWindowHung] Hung hWnd: 0x%p, errCode: %d", static_cast<const void*>(hWnd), ::GetLastError());
    return true;
}

CString GetWindowTitle(HWND hWnd) {
    if (!::IsWindow(hWnd)) return CString();
    if (!::IsWindowEnabled(hWnd)) {
        DWORD pid = 0;
        ::GetWindowThreadProcessId(hWnd, &pid);
        if (pid == ::GetCurrentProcessId()) {
            LogWarning("[GetWindowTitle] skipping disabled window from current process wnd: %p", static_cast<const void*>(hWnd));
            return CString();
        }
    }
    if (IsWindowHung(hWnd)) {
        LogWarning("[GetWindowTitle] skipping hung window: 0x%p", static_cast<const void*>(hWnd));
        return CString();
    }
    wchar_t text[TextBuffer] = {};
    const int length = ::GetWindowTextW(hWnd, text, TextBuffer);
    return CString(text, static_cast<std::size_t>(std::clamp(length, 0, TextBuffer - 1)));
}

HWND GetTopLevelOwner(HWND hWnd) {
    const HWND owner = ::GetAncestor(hWnd, GA_ROOTOWNER);
    return owner ? owner : hWnd;
}

bool HasInvisibleTopLevel(HWND hWnd) {
    const HWND topOwner = GetTopLevelOwner(hWnd);
    LogVerbose("topOwner: %p", static_cast<const void*>(topOwner));
    if (::IsWindow(topOwner) && HasStyleBits(topOwner, WS_VISIBLE, WS_VISIBLE)) return false;
    LogVerbose("topOwner is invisible!");
    return true;
}

HWND FindChildWindow(HWND hWnd, const wchar_t* className, const wchar_t* caption) {
    // Without a window the system would list every window there is.
    if (!::IsWindow(hWnd)) return nullptr;
    ChildSearch search{className, caption, nullptr, nullptr};
    ::EnumChildWindows(hWnd, VisitChildWindow, reinterpret_cast<LPARAM>(&search));
    if (search.failure) std::rethrow_exception(search.failure);
    return search.found;
}

std::string WindowDebugText(HWND hWnd) {
    if (!hWnd) return "<null window>";
    const void* address = hWnd;
    return ::IsWindow(hWnd) ? FormatText("0x%p", address) : FormatText("<invalid window 0x%p>", address);
}

}  // namespace Zorvex::NWindows
