// The standard window object (OBJID_WINDOW) and the parts of its frame.
#include <array>

#include "tests/live/standard_objects/StandardObject.h"

namespace StandardObjects {

namespace {

// One part of a window's frame: system menu, title bar, menu bar, scroll bars, size grip.
class FramePart final : public StandardObject {
public:
    FramePart(HWND window, LONG objectId) : StandardObject(window), m_objectId(objectId) {}

protected:
    CComPtr<IAccessible> Parent() override { return WindowObjectOf(Window()); }

    std::wstring Name(LONG item) override {
        if (item != CHILDID_SELF) return MenuItemText(item);
        switch (m_objectId) {
            case OBJID_SYSMENU: return L"System";
            case OBJID_MENU: return L"Application";
            case OBJID_VSCROLL: return L"Vertical";
            case OBJID_HSCROLL: return L"Horizontal";
            default: return {};
        }
    }

    bool Value(LONG item, std::wstring& value) override {
        if (item != CHILDID_SELF || m_objectId != OBJID_TITLEBAR) return false;
        value = TitleOf(Window());
        return true;
    }

    LONG Role(LONG item) override {
        if (item != CHILDID_SELF) return ROLE_SYSTEM_MENUITEM;
        switch (m_objectId) {
            case OBJID_TITLEBAR: return ROLE_SYSTEM_TITLEBAR;
            case OBJID_VSCROLL: case OBJID_HSCROLL: return ROLE_SYSTEM_SCROLLBAR;
            case OBJID_SIZEGRIP: return ROLE_SYSTEM_GRIP;
            default: return ROLE_SYSTEM_MENUBAR;
        }
    }

    LONG State(LONG item) override {
        const RECT rectangle = Rectangle(item);
        LONG state = ::IsRectEmpty(&rectangle) ? STATE_SYSTEM_INVISIBLE : 0;
        if (item != CHILDID_SELF) state |= STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_HASPOPUP;
        else if (!::IsWindowVisible(Window())) state |= STATE_SYSTEM_INVISIBLE;
        return state;
    }

    LONG ItemCount() override { return m_objectId == OBJID_MENU && Menu() ? ::GetMenuItemCount(Menu()) : 0; }

    std::wstring DefaultAction(LONG item) override { return item != CHILDID_SELF ? L"Open" : L""; }

    RECT Rectangle(LONG item) override {
        const LONG_PTR style = ::GetWindowLongPtrW(Window(), GWL_STYLE);
        if (item != CHILDID_SELF) {
            RECT rectangle{};
            ::GetMenuItemRect(Window(), Menu(), static_cast<UINT>(item - 1), &rectangle);
            return rectangle;
        }
        switch (m_objectId) {
            case OBJID_TITLEBAR: {
                TITLEBARINFO info{};
                info.cbSize = sizeof info;
                if ((style & WS_CAPTION) == WS_CAPTION && ::GetTitleBarInfo(Window(), &info)) return info.rcTitleBar;
                return {};
            }
            case OBJID_SYSMENU:
            case OBJID_MENU: {
                MENUBARINFO info{};
                info.cbSize = sizeof info;
                if (m_objectId == OBJID_MENU && !Menu()) return {};
                if (m_objectId == OBJID_SYSMENU && !(style & WS_SYSMENU)) return {};
                return ::GetMenuBarInfo(Window(), m_objectId, 0, &info) ? info.rcBar : RECT{};
            }
            case OBJID_VSCROLL:
            case OBJID_HSCROLL: {
                SCROLLBARINFO info{};
                info.cbSize = sizeof info;
                if (!(style & (m_objectId == OBJID_VSCROLL ? WS_VSCROLL : WS_HSCROLL))) return {};
                return ::GetScrollBarInfo(Window(), m_objectId, &info) ? info.rcScrollBar : RECT{};
            }
            default: return {};
        }
    }

private:
    // A child window keeps its id where a top-level window keeps its menu.
    HMENU Menu() const { return ::GetWindowLongPtrW(Window(), GWL_STYLE) & WS_CHILD ? nullptr : ::GetMenu(Window()); }

    std::wstring MenuItemText(LONG item) const {
        wchar_t text[256] = {};
        const int length = ::GetMenuStringW(Menu(), static_cast<UINT>(item - 1), text, 256, MF_BYPOSITION);
        std::wstring name(text, static_cast<std::size_t>(length));
        std::erase(name, L'&');
        return name;
    }

    LONG m_objectId;
};

class WindowObject final : public StandardObject {
public:
    using StandardObject::StandardObject;

protected:
    CComPtr<IAccessible> Parent() override {
        const HWND parent = ::GetAncestor(Window(), GA_PARENT);
        return parent && parent != ::GetDesktopWindow() ? ClientObjectOf(parent) : nullptr;
    }

    std::vector<CComPtr<IAccessible>> ObjectChildren() override {
        constexpr std::array<LONG, 7> parts{OBJID_SYSMENU, OBJID_TITLEBAR, OBJID_MENU,    OBJID_CLIENT,
                                            OBJID_VSCROLL, OBJID_HSCROLL,  OBJID_SIZEGRIP};
        std::vector<CComPtr<IAccessible>> children;
        for (const LONG part : parts) {
            if (part == OBJID_CLIENT) {
                children.push_back(ClientObjectOf(Window()));
                continue;
            }
            CComPtr<IAccessible> object;
            object.Attach(new FramePart(Window(), part));
            children.push_back(std::move(object));
        }
        return children;
    }

    LONG Role(LONG) override { return ROLE_SYSTEM_WINDOW; }

    LONG State(LONG item) override {
        const LONG_PTR style = ::GetWindowLongPtrW(Window(), GWL_STYLE);
        LONG state = StandardObject::State(item);
        if (style & WS_THICKFRAME) state |= STATE_SYSTEM_SIZEABLE;
        if ((style & WS_CAPTION) == WS_CAPTION) state |= STATE_SYSTEM_MOVEABLE;
        return state;
    }

    RECT Rectangle(LONG) override {
        RECT rectangle{};
        ::GetWindowRect(Window(), &rectangle);
        return rectangle;
    }
};

}  // namespace

CComPtr<IAccessible> WindowObjectOf(HWND window) {
    CComPtr<IAccessible> object;
    object.Attach(new WindowObject(window));
    return object;
}

}  // namespace StandardObjects
