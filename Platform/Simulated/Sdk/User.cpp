// Windows and messages, answered from the current desktop. Without one there are no windows.
#include <algorithm>
#include <map>
#include <mutex>

#include "Platform/Simulated/InstalledDesktop.h"
#include "Platform/Simulated/Sdk/SystemState.h"
#include "Platform/Simulated/System.h"
#include "Platform/Simulated/WindowMessages.h"

using namespace Simulated;

namespace {

HWND const Root = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x10010));
constexpr std::wstring_view RootClass = L"#32769";
constexpr Rectangle Screen = {0, 0, 1920, 1080};
// A window that never answers holds its sender up for this long, so that the test at least ends.
constexpr unsigned ForeverMilliseconds = 3'600'000;

// The window behind a handle while the desktop is locked.
struct Found {
    explicit Found(HWND handle) : desktop(CurrentDesktop()) {
        if (!desktop) return;
        lock = std::unique_lock(desktop->Lock());
        desktop->BringAboutDueChanges();
        window = desktop->WindowByHandle(handle);
    }
    // Also leaves the error of a call on a handle that isn't one.
    bool Fails() const {
        if (window) return false;
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return true;
    }
    // Counts the call; true when the plan lets it fail.
    bool Planned(Call call) {
        fault = desktop->Count(nullptr, window.get(), call);
        if (fault && fault->raise) throw ServerFailure();
        // The plan may just have destroyed it.
        if (window->destroyed) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        if (fault && (fault->result || fault->null)) SetLastError(ERROR_ACCESS_DENIED);
        return window->destroyed || (fault && (fault->result || fault->null));
    }

    std::shared_ptr<Desktop> desktop;
    std::unique_lock<std::recursive_mutex> lock;
    WindowPtr window;
    std::optional<Fault> fault;
};

int CopyText(std::wstring_view text, LPWSTR target, int capacity) {
    if (!target || capacity <= 0) return 0;
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(capacity) - 1);
    std::copy_n(text.data(), length, target);
    target[length] = 0;
    return static_cast<int>(length);
}

const std::vector<WindowPtr>* ChildrenOf(Desktop& desktop, HWND parent) {
    if (!parent || parent == Root) return &desktop.Model().windows;
    const WindowPtr window = desktop.WindowByHandle(parent);
    return window ? &window->children : nullptr;
}

void Collect(const std::vector<WindowPtr>& windows, std::vector<HWND>& handles) {
    for (const WindowPtr& window : windows) {
        handles.push_back(window->hwnd);
        Collect(window->children, handles);
    }
}

BOOL Visit(const std::vector<HWND>& handles, WNDENUMPROC visitor, LPARAM parameter) {
    for (HWND handle : handles) {
        // As published, a window that was destroyed meanwhile is left out.
        if (!IsWindow(handle)) continue;
        if (!visitor(handle, parameter)) return FALSE;
    }
    return TRUE;
}

LRESULT Send(Found& found, UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT answer = 0;
    if (found.Planned(Call::WindowMessage)) return found.fault && found.fault->count ? *found.fault->count : 0;
    if (found.fault && found.fault->count) return *found.fault->count;
    AnswerMessage(*found.desktop, *found.window, message, wParam, lParam, answer);
    return answer;
}

bool SameText(std::wstring_view a, std::wstring_view b) {
    const auto lower = [](wchar_t unit) { return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](wchar_t x, wchar_t y) { return lower(x) == lower(y); });
}

HWND OwnerOf(Desktop& desktop, const Window& window) {
    const WindowPtr owner = window.owner.empty() ? nullptr : desktop.WindowById(window.owner);
    return owner ? owner->hwnd : nullptr;
}

}  // namespace

BOOL IsWindow(HWND handle) {
    if (handle == Root) return CurrentDesktop() != nullptr;
    Found found(handle);
    if (!found.window) return FALSE;
    return !found.Planned(Call::IsWindow);
}

BOOL IsWindowVisible(HWND handle) {
    if (handle == Root) return TRUE;
    Found found(handle);
    if (found.Fails()) return FALSE;
    for (const Window* window = found.window.get(); window; window = window->parent)
        if (!window->visible) return FALSE;
    return TRUE;
}

BOOL IsWindowEnabled(HWND handle) {
    if (handle == Root) return TRUE;
    Found found(handle);
    return !found.Fails() && found.window->enabled;
}

BOOL IsChild(HWND parent, HWND handle) {
    Found found(handle);
    if (!found.window || !parent) return FALSE;
    for (const Window* window = found.window->parent; window; window = window->parent)
        if (window->hwnd == parent) return TRUE;
    return FALSE;
}

HWND GetParent(HWND handle) {
    if (handle == Root) return nullptr;
    Found found(handle);
    if (found.Fails()) return nullptr;
    // As published: the parent of a child window, the owner of another.
    return found.window->parent ? found.window->parent->hwnd : OwnerOf(*found.desktop, *found.window);
}

HWND GetAncestor(HWND handle, UINT flags) {
    if (handle == Root) return nullptr;
    Found found(handle);
    if (found.Fails()) return nullptr;
    const Window* window = found.window.get();
    if (flags == GA_PARENT) return window->parent ? window->parent->hwnd : Root;
    if (flags != GA_ROOT && flags != GA_ROOTOWNER) return nullptr;
    // Owners may form a ring in a file: the number of windows bounds the way.
    for (std::size_t steps = found.desktop->AllWindows().size(); steps > 0; --steps) {
        while (window->parent) window = window->parent;
        const WindowPtr owner = flags == GA_ROOTOWNER && !window->owner.empty() ? found.desktop->WindowById(window->owner) : nullptr;
        if (!owner) break;
        window = owner.get();
    }
    return window->hwnd;
}

HWND GetWindow(HWND handle, UINT command) {
    if (command == GW_CHILD && handle == Root) {
        const auto desktop = CurrentDesktop();
        return desktop && !desktop->Model().windows.empty() ? desktop->Model().windows.front()->hwnd : nullptr;
    }
    Found found(handle);
    if (found.Fails()) return nullptr;
    const Window& window = *found.window;
    if (command == GW_CHILD) return window.children.empty() ? nullptr : window.children.front()->hwnd;
    if (command == GW_OWNER) return window.parent ? nullptr : OwnerOf(*found.desktop, window);
    if (command != GW_HWNDNEXT && command != GW_HWNDPREV) return nullptr;
    const std::vector<WindowPtr>& siblings = window.parent ? window.parent->children : found.desktop->Model().windows;
    const auto at = std::find(siblings.begin(), siblings.end(), found.window);
    if (at == siblings.end()) return nullptr;
    if (command == GW_HWNDNEXT) return at + 1 == siblings.end() ? nullptr : (*(at + 1))->hwnd;
    return at == siblings.begin() ? nullptr : (*(at - 1))->hwnd;
}

HWND GetDesktopWindow() { return Root; }

HWND GetForegroundWindow() {
    const auto desktop = CurrentDesktop();
    if (!desktop) return nullptr;
    const std::lock_guard guard(desktop->Lock());
    for (const WindowPtr& window : desktop->Model().windows)
        if (window->visible) return window->hwnd;
    return nullptr;
}

HWND SetFocus(HWND handle) {
    Found found(handle);
    if (found.Fails() || found.Planned(Call::SetFocus)) return nullptr;
    found.desktop->Record("SetFocus " + found.window->id);
    const ElementPtr focused = found.desktop->Focused();
    const WindowPtr before = focused ? found.desktop->WindowOf(*focused) : nullptr;
    // An element of the window that has the focus already keeps it; else the window's client gets it.
    if (before != found.window) found.desktop->Focus(found.desktop->RootOf(*found.window, OBJID_CLIENT));
    return before ? before->hwnd : GetForegroundWindow();
}

HWND WindowFromPoint(POINT point) {
    const auto desktop = CurrentDesktop();
    if (!desktop) return nullptr;
    const std::lock_guard guard(desktop->Lock());
    const std::vector<WindowPtr>* level = &desktop->Model().windows;
    HWND hit = Root;
    for (bool deeper = true; deeper;) {
        deeper = false;
        for (const WindowPtr& window : *level) {
            // As published: hidden windows are seen through, disabled child windows as well.
            if (!window->visible || (window->parent && !window->enabled) || !window->rectangle.Holds(point.x, point.y)) continue;
            hit = window->hwnd;
            level = &window->children;
            deeper = true;
            break;
        }
    }
    return hit;
}

BOOL GetWindowRect(HWND handle, RECT* rectangle) {
    if (handle == Root) {
        *rectangle = Screen.ToRect();
        return TRUE;
    }
    Found found(handle);
    if (found.Fails() || found.Planned(Call::WindowRectangle)) return FALSE;
    *rectangle = found.window->rectangle.ToRect();
    return TRUE;
}

DWORD GetWindowThreadProcessId(HWND handle, DWORD* processId) {
    Found found(handle);
    if (found.Fails() || found.Planned(Call::WindowThreadProcessId)) return 0;
    if (processId) *processId = found.window->process;
    return found.window->thread;
}

int GetClassNameW(HWND handle, LPWSTR text, int capacity) {
    if (handle == Root) return CopyText(RootClass, text, capacity);
    Found found(handle);
    if (found.Fails() || found.Planned(Call::WindowClass)) return 0;
    return CopyText(found.window->className, text, capacity);
}

UINT RealGetWindowClassW(HWND handle, LPWSTR text, UINT capacity) {
    if (handle == Root) return static_cast<UINT>(CopyText(RootClass, text, static_cast<int>(capacity)));
    Found found(handle);
    if (found.Fails() || found.Planned(Call::RealWindowClass)) return 0;
    return static_cast<UINT>(CopyText(found.window->realClass, text, static_cast<int>(std::min(capacity, 0x7FFFFFFFu))));
}

int GetWindowTextW(HWND handle, LPWSTR text, int capacity) {
    Found found(handle);
    if (found.Fails() || found.Planned(Call::WindowText)) return 0;
    return CopyText(found.window->title, text, capacity);
}

LONG_PTR GetWindowLongPtrW(HWND handle, int index) {
    Found found(handle);
    if (found.Fails()) return 0;
    const Window& window = *found.window;
    if (index == GWL_EXSTYLE) return static_cast<LONG>(window.extendedStyle);
    if (index != GWL_STYLE) return 0;
    return static_cast<LONG>(window.style | (window.visible ? WS_VISIBLE : 0u) | (window.enabled ? 0u : WS_DISABLED) |
                             (window.parent ? WS_CHILD : 0u));
}

BOOL EnumWindows(WNDENUMPROC visitor, LPARAM parameter) {
    const auto desktop = CurrentDesktop();
    if (!desktop) return TRUE;
    std::vector<HWND> handles;
    {
        const std::lock_guard guard(desktop->Lock());
        for (const WindowPtr& window : desktop->Model().windows) handles.push_back(window->hwnd);
    }
    return Visit(handles, visitor, parameter);
}

BOOL EnumChildWindows(HWND parent, WNDENUMPROC visitor, LPARAM parameter) {
    // As published: null or the root stand for the top-level windows, whose descendants follow as well.
    std::vector<HWND> handles;
    {
        const auto desktop = CurrentDesktop();
        if (!desktop) return FALSE;
        const std::lock_guard guard(desktop->Lock());
        const std::vector<WindowPtr>* const children = ChildrenOf(*desktop, parent);
        if (!children) {
            SetLastError(ERROR_INVALID_WINDOW_HANDLE);
            return FALSE;
        }
        if (const WindowPtr window = desktop->WindowByHandle(parent)) {
            const auto fault = desktop->Count(nullptr, window.get(), Call::EnumChildWindows);
            if (fault && (fault->result || fault->null)) return FALSE;
        }
        Collect(*children, handles);
    }
    return Visit(handles, visitor, parameter);
}

HWND FindWindowExW(HWND parent, HWND after, LPCWSTR className, LPCWSTR title) {
    const auto desktop = CurrentDesktop();
    if (!desktop) return nullptr;
    const std::lock_guard guard(desktop->Lock());
    const std::vector<WindowPtr>* const children = ChildrenOf(*desktop, parent);
    if (!children) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return nullptr;
    }
    bool begun = after == nullptr;
    for (const WindowPtr& window : *children) {
        if (!begun) {
            begun = window->hwnd == after;
            continue;
        }
        if (className && !SameText(window->className, className)) continue;
        if (title && !SameText(window->title, title)) continue;
        return window->hwnd;
    }
    return nullptr;
}

LRESULT SendMessageW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    Found found(handle);
    if (found.Fails()) return 0;
    if (found.window->hung) found.desktop->Wait(ForeverMilliseconds);
    return Send(found, message, wParam, lParam);
}

LRESULT SendMessageTimeoutW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam, UINT, UINT timeout, DWORD_PTR* result) {
    if (result) *result = 0;
    Found found(handle);
    if (found.Fails()) return 0;
    if (found.window->hung) {
        found.window->calls.Add(Call::WindowMessage);
        found.desktop->Wait(timeout);
        SetLastError(ERROR_TIMEOUT);
        return 0;
    }
    const LRESULT answer = Send(found, message, wParam, lParam);
    if (found.window->destroyed) return 0;
    if (found.fault && found.fault->result) return 0;
    if (result) *result = static_cast<DWORD_PTR>(answer);
    return 1;
}

BOOL PeekMessageW(MSG* message, HWND handle, UINT first, UINT last, UINT remove) {
    const auto desktop = CurrentDesktop();
    MSG next;
    bool isOwnQueue = false;
    if (TakeThreadMessage(next, (remove & PM_REMOVE) != 0, isOwnQueue)) {
        *message = next;
        return TRUE;
    }
    if (isOwnQueue || !desktop || !desktop->NextMessage(handle, false, next)) return FALSE;
    const bool wanted = (first == 0 && last == 0) || (next.message >= first && next.message <= last);
    if (!wanted) return FALSE;
    if (remove & PM_REMOVE) desktop->NextMessage(handle, true, next);
    *message = next;
    return TRUE;
}

BOOL TranslateMessage(const MSG*) { return FALSE; }

LRESULT DispatchMessageW(const MSG* message) {
    if (const auto desktop = CurrentDesktop()) desktop->DispatchPosted(*message);
    return 0;
}

UINT RegisterWindowMessageW(LPCWSTR name) {
    static std::mutex lock;
    static std::map<std::wstring, UINT> messages;
    const std::lock_guard guard(lock);
    // The published range of registered messages.
    return messages.emplace(name, 0xC000 + static_cast<UINT>(messages.size())).first->second;
}
