// Client objects of the common controls library: list view, tree view, tab, header, status bar.
#include "tests/live/standard_objects/Controls.h"

namespace StandardObjects {

namespace {

constexpr int kTextCapacity = 512;

template <class Object>
CComPtr<IAccessible> Make(HWND window) {
    CComPtr<IAccessible> object;
    object.Attach(new Object(window));
    return object;
}

// An item outside what the window shows of its content.
LONG OffscreenState(HWND window, const RECT& itemOnScreen) {
    RECT own{}, shown{};
    ::GetClientRect(window, &own);
    ::MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&own), 2);
    return ::IntersectRect(&shown, &own, &itemOnScreen) ? 0 : STATE_SYSTEM_OFFSCREEN;
}

class ListViewObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    LONG ItemCount() override { return BoundedItems(Send(LVM_GETITEMCOUNT)); }
    std::wstring Name(LONG item) override {
        if (item == CHILDID_SELF) return OwnName();
        wchar_t text[kTextCapacity] = {};
        LVITEMW request{};
        request.pszText = text;
        request.cchTextMax = kTextCapacity;
        Send(LVM_GETITEMTEXTW, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(&request));
        return request.pszText ? request.pszText : L"";
    }
    LONG Role(LONG item) override {
        if (item == CHILDID_SELF) return ROLE_SYSTEM_LIST;
        return Send(LVM_GETEXTENDEDLISTVIEWSTYLE) & LVS_EX_CHECKBOXES ? ROLE_SYSTEM_CHECKBUTTON : ROLE_SYSTEM_LISTITEM;
    }
    LONG State(LONG item) override {
        LONG state = ClientObject::State(item);
        if (item == CHILDID_SELF) return state;
        state = (state & ~STATE_SYSTEM_FOCUSED) | STATE_SYSTEM_SELECTABLE | OffscreenState(Window(), Rectangle(item));
        if (!(::GetWindowLongPtrW(Window(), GWL_STYLE) & LVS_SINGLESEL)) state |= STATE_SYSTEM_MULTISELECTABLE | STATE_SYSTEM_EXTSELECTABLE;
        const LRESULT bits = Send(LVM_GETITEMSTATE, static_cast<WPARAM>(item - 1), LVIS_SELECTED | LVIS_FOCUSED | LVIS_STATEIMAGEMASK);
        if (bits & LVIS_SELECTED) state |= STATE_SYSTEM_SELECTED;
        if (bits & LVIS_FOCUSED) state |= STATE_SYSTEM_FOCUSED;
        if (Role(item) == ROLE_SYSTEM_CHECKBUTTON && ((bits & LVIS_STATEIMAGEMASK) >> 12) == 2) state |= STATE_SYSTEM_CHECKED;
        return state;
    }
    RECT Rectangle(LONG item) override {
        if (item == CHILDID_SELF) return ClientObject::Rectangle(item);
        RECT rectangle{};
        rectangle.left = LVIR_BOUNDS;
        Send(LVM_GETITEMRECT, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(&rectangle));
        return ToScreen(rectangle);
    }
    std::wstring DefaultAction(LONG item) override { return item == CHILDID_SELF ? L"" : L"Double Click"; }
    std::vector<LONG> SelectedItems() override {
        std::vector<LONG> items;
        for (LRESULT item = -1; (item = Send(LVM_GETNEXTITEM, static_cast<WPARAM>(item), LVNI_SELECTED)) >= 0 && items.size() < 50'000;)
            items.push_back(static_cast<LONG>(item) + 1);
        return items;
    }
    bool Select(LONG item, LONG flags) override {
        if (item == CHILDID_SELF) return false;
        if (flags & SELFLAG_TAKESELECTION) SetSelected(-1, false);
        if (flags & (SELFLAG_TAKESELECTION | SELFLAG_ADDSELECTION)) SetSelected(item - 1, true);
        if (flags & SELFLAG_REMOVESELECTION) SetSelected(item - 1, false);
        return true;
    }

private:
    void SetSelected(LONG index, bool selected) const {
        LVITEMW request{};
        request.stateMask = LVIS_SELECTED;
        request.state = selected ? LVIS_SELECTED : 0;
        Send(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&request));
    }
};

// The items in the order of a walk through the whole tree; the number of an item is its place in that order.
class TreeViewObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    LONG ItemCount() override { return static_cast<LONG>(Items().size()); }
    std::wstring Name(LONG item) override {
        if (item == CHILDID_SELF) return OwnName();
        wchar_t text[kTextCapacity] = {};
        TVITEMW request{};
        request.mask = TVIF_TEXT | TVIF_HANDLE;
        request.hItem = ItemAt(item).handle;
        request.pszText = text;
        request.cchTextMax = kTextCapacity;
        Send(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&request));
        return request.pszText ? request.pszText : L"";
    }
    // The value of a tree item is its level.
    bool Value(LONG item, std::wstring& value) override {
        if (item == CHILDID_SELF) return false;
        value = std::to_wstring(ItemAt(item).level);
        return true;
    }
    LONG Role(LONG item) override { return item == CHILDID_SELF ? ROLE_SYSTEM_OUTLINE : ROLE_SYSTEM_OUTLINEITEM; }
    LONG State(LONG item) override {
        LONG state = ClientObject::State(item);
        if (item == CHILDID_SELF) return state;
        const HTREEITEM handle = ItemAt(item).handle;
        const RECT rectangle = Rectangle(item);
        state = (state & ~STATE_SYSTEM_FOCUSED) | STATE_SYSTEM_SELECTABLE;
        state |= ::IsRectEmpty(&rectangle) ? STATE_SYSTEM_INVISIBLE : OffscreenState(Window(), rectangle);
        const LRESULT bits = Send(TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(handle), TVIS_EXPANDED | TVIS_SELECTED);
        if (bits & TVIS_SELECTED) state |= STATE_SYSTEM_SELECTED;
        if (Send(TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(handle)))
            state |= bits & TVIS_EXPANDED ? STATE_SYSTEM_EXPANDED : STATE_SYSTEM_COLLAPSED;
        return state;
    }
    RECT Rectangle(LONG item) override {
        if (item == CHILDID_SELF) return ClientObject::Rectangle(item);
        RECT rectangle{};
        *reinterpret_cast<HTREEITEM*>(&rectangle) = ItemAt(item).handle;
        return Send(TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&rectangle)) ? ToScreen(rectangle) : RECT{};
    }
    std::wstring DefaultAction(LONG item) override {
        if (item == CHILDID_SELF) return {};
        const LONG state = State(item);
        return state & STATE_SYSTEM_EXPANDED ? L"Collapse" : state & STATE_SYSTEM_COLLAPSED ? L"Expand" : L"";
    }
    bool DoDefaultAction(LONG item) override {
        return item != CHILDID_SELF && Send(TVM_EXPAND, TVE_TOGGLE, reinterpret_cast<LPARAM>(ItemAt(item).handle));
    }
    std::vector<LONG> SelectedItems() override {
        const auto selected = reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_CARET));
        const auto items = Items();
        for (std::size_t i = 0; i < items.size(); ++i)
            if (items[i].handle == selected) return {static_cast<LONG>(i) + 1};
        return {};
    }
    bool Select(LONG item, LONG flags) override {
        return item != CHILDID_SELF && (flags & SELFLAG_TAKESELECTION) &&
               Send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(ItemAt(item).handle));
    }

private:
    struct Item {
        HTREEITEM handle = nullptr;
        int level = 0;
    };

    HTREEITEM Next(WPARAM relation, HTREEITEM handle) const {
        return reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(handle)));
    }
    std::vector<Item> Items() const {
        std::vector<Item> items;
        int level = 0;
        for (HTREEITEM handle = Next(TVGN_ROOT, nullptr); handle && items.size() < 50'000;) {
            items.push_back({handle, level});
            if (const HTREEITEM child = Next(TVGN_CHILD, handle)) {
                handle = child;
                ++level;
                continue;
            }
            HTREEITEM next = Next(TVGN_NEXT, handle);
            while (!next && level > 0) {
                handle = Next(TVGN_PARENT, handle);
                --level;
                next = handle ? Next(TVGN_NEXT, handle) : nullptr;
            }
            handle = next;
        }
        return items;
    }
    Item ItemAt(LONG item) const {
        const auto items = Items();
        return item >= 1 && item <= static_cast<LONG>(items.size()) ? items[static_cast<std::size_t>(item - 1)] : Item{};
    }
};

class TabObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    LONG ItemCount() override { return BoundedItems(Send(TCM_GETITEMCOUNT)); }
    std::wstring Name(LONG item) override {
        if (item == CHILDID_SELF) return OwnName();
        wchar_t text[kTextCapacity] = {};
        TCITEMW request{};
        request.mask = TCIF_TEXT;
        request.pszText = text;
        request.cchTextMax = kTextCapacity;
        Send(TCM_GETITEMW, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(&request));
        return request.pszText ? request.pszText : L"";
    }
    LONG Role(LONG item) override { return item == CHILDID_SELF ? ROLE_SYSTEM_PAGETABLIST : ROLE_SYSTEM_PAGETAB; }
    LONG State(LONG item) override {
        const LONG state = ClientObject::State(item);
        if (item == CHILDID_SELF) return state;
        return (state & ~STATE_SYSTEM_FOCUSED) | STATE_SYSTEM_SELECTABLE |
               (Send(TCM_GETCURSEL) == item - 1 ? STATE_SYSTEM_SELECTED : 0);
    }
    RECT Rectangle(LONG item) override {
        if (item == CHILDID_SELF) return ClientObject::Rectangle(item);
        RECT rectangle{};
        Send(TCM_GETITEMRECT, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(&rectangle));
        return ToScreen(rectangle);
    }
    std::wstring DefaultAction(LONG item) override { return item == CHILDID_SELF ? L"" : L"Switch"; }
    bool DoDefaultAction(LONG item) override {
        if (item == CHILDID_SELF) return false;
        Send(TCM_SETCURFOCUS, static_cast<WPARAM>(item - 1));
        return true;
    }
    std::vector<LONG> SelectedItems() override {
        const LRESULT selected = Send(TCM_GETCURSEL);
        return selected < 0 ? std::vector<LONG>() : std::vector<LONG>{static_cast<LONG>(selected) + 1};
    }
};

class HeaderObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    LONG ItemCount() override { return BoundedItems(Send(HDM_GETITEMCOUNT)); }
    std::wstring Name(LONG item) override {
        if (item == CHILDID_SELF) return OwnName();
        wchar_t text[kTextCapacity] = {};
        HDITEMW request{};
        request.mask = HDI_TEXT;
        request.pszText = text;
        request.cchTextMax = kTextCapacity;
        Send(HDM_GETITEMW, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(&request));
        return request.pszText ? request.pszText : L"";
    }
    LONG Role(LONG item) override { return item == CHILDID_SELF ? ROLE_SYSTEM_LIST : ROLE_SYSTEM_COLUMNHEADER; }
    RECT Rectangle(LONG item) override {
        if (item == CHILDID_SELF) return ClientObject::Rectangle(item);
        RECT rectangle{};
        Send(HDM_GETITEMRECT, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(&rectangle));
        return ToScreen(rectangle);
    }
};

class StatusBarObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    LONG ItemCount() override { return BoundedItems(Send(SB_GETPARTS)); }
    std::wstring Name(LONG item) override {
        if (item == CHILDID_SELF) return OwnName();
        const int length = LOWORD(Send(SB_GETTEXTLENGTHW, static_cast<WPARAM>(item - 1)));
        std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
        Send(SB_GETTEXTW, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(text.data()));
        text.resize(static_cast<std::size_t>(length));
        return text;
    }
    LONG Role(LONG item) override { return item == CHILDID_SELF ? ROLE_SYSTEM_STATUSBAR : ROLE_SYSTEM_STATICTEXT; }
    LONG State(LONG item) override { return (ClientObject::State(item) & ~STATE_SYSTEM_FOCUSABLE) | STATE_SYSTEM_READONLY; }
    RECT Rectangle(LONG item) override {
        if (item == CHILDID_SELF) return ClientObject::Rectangle(item);
        RECT rectangle{};
        Send(SB_GETRECT, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(&rectangle));
        return ToScreen(rectangle);
    }
};

}  // namespace

CComPtr<IAccessible> MakeCommonControl(HWND window, const std::wstring& windowClass) {
    if (windowClass == L"SysListView32") return Make<ListViewObject>(window);
    if (windowClass == L"SysTreeView32") return Make<TreeViewObject>(window);
    if (windowClass == L"SysTabControl32") return Make<TabObject>(window);
    if (windowClass == L"SysHeader32") return Make<HeaderObject>(window);
    if (windowClass == L"msctls_statusbar32") return Make<StatusBarObject>(window);
    return nullptr;
}

}  // namespace StandardObjects
