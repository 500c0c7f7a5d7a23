// Client objects of the plain controls: button, edit, static, list box, combo box.
#include "tests/live/standard_objects/Controls.h"

namespace StandardObjects {

namespace {

template <class Object>
CComPtr<IAccessible> Make(HWND window) {
    CComPtr<IAccessible> object;
    object.Attach(new Object(window));
    return object;
}

class ButtonObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    std::wstring Name(LONG item) override {
        std::wstring name = ClientObject::Name(item);
        std::erase(name, L'&');
        return name;
    }
    LONG Role(LONG) override {
        switch (::GetWindowLongPtrW(Window(), GWL_STYLE) & BS_TYPEMASK) {
            case BS_CHECKBOX: case BS_AUTOCHECKBOX: case BS_3STATE: case BS_AUTO3STATE: return ROLE_SYSTEM_CHECKBUTTON;
            case BS_RADIOBUTTON: case BS_AUTORADIOBUTTON: return ROLE_SYSTEM_RADIOBUTTON;
            case BS_GROUPBOX: return ROLE_SYSTEM_GROUPING;
            default: return ROLE_SYSTEM_PUSHBUTTON;
        }
    }
    LONG State(LONG item) override {
        LONG state = ClientObject::State(item);
        const LRESULT check = Send(BM_GETCHECK);
        if (check == BST_CHECKED) state |= STATE_SYSTEM_CHECKED;
        if (check == BST_INDETERMINATE) state |= STATE_SYSTEM_MIXED;
        if (Send(WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON) state |= STATE_SYSTEM_DEFAULT;
        return state;
    }
    std::wstring DefaultAction(LONG item) override {
        switch (Role(item)) {
            case ROLE_SYSTEM_CHECKBUTTON: return State(item) & STATE_SYSTEM_CHECKED ? L"Uncheck" : L"Check";
            case ROLE_SYSTEM_RADIOBUTTON: return L"Check";
            case ROLE_SYSTEM_GROUPING: return {};
            default: return L"Press";
        }
    }
    // Posted: a button that opens a dialog would keep the caller waiting for its end.
    bool DoDefaultAction(LONG item) override {
        return !DefaultAction(item).empty() && ::PostMessageW(Window(), BM_CLICK, 0, 0);
    }
};

class EditObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    std::wstring Name(LONG) override { return Label(); }
    bool Value(LONG, std::wstring& value) override {
        if (::GetWindowLongPtrW(Window(), GWL_STYLE) & ES_PASSWORD) return false;
        value = TitleOf(Window());
        return true;
    }
    LONG Role(LONG) override { return ROLE_SYSTEM_TEXT; }
    LONG State(LONG item) override {
        const LONG_PTR style = ::GetWindowLongPtrW(Window(), GWL_STYLE);
        return ClientObject::State(item) | (style & ES_READONLY ? STATE_SYSTEM_READONLY : 0) |
               (style & ES_PASSWORD ? STATE_SYSTEM_PROTECTED : 0);
    }
    bool SetValue(LONG, const std::wstring& value) override { return ::SetWindowTextW(Window(), value.c_str()) != FALSE; }
};

class StaticObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    std::wstring Name(LONG item) override {
        std::wstring name = ClientObject::Name(item);
        std::erase(name, L'&');
        return name;
    }
    LONG Role(LONG) override {
        const LONG_PTR type = ::GetWindowLongPtrW(Window(), GWL_STYLE) & SS_TYPEMASK;
        return type == SS_ICON || type == SS_BITMAP ? ROLE_SYSTEM_GRAPHIC : ROLE_SYSTEM_STATICTEXT;
    }
    LONG State(LONG item) override { return (ClientObject::State(item) & ~STATE_SYSTEM_FOCUSABLE) | STATE_SYSTEM_READONLY; }
};

class ListBoxObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    LONG ItemCount() override { return BoundedItems(Send(LB_GETCOUNT)); }
    std::wstring Name(LONG item) override {
        if (item == CHILDID_SELF) return Label();
        const LRESULT length = Send(LB_GETTEXTLEN, static_cast<WPARAM>(item - 1));
        if (length <= 0 || length > 100'000) return {};
        std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
        text.resize(static_cast<std::size_t>(std::max<LRESULT>(0, Send(LB_GETTEXT, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(text.data())))));
        return text;
    }
    LONG Role(LONG item) override { return item == CHILDID_SELF ? ROLE_SYSTEM_LIST : ROLE_SYSTEM_LISTITEM; }
    LONG State(LONG item) override {
        LONG state = ClientObject::State(item);
        if (item == CHILDID_SELF) return state;
        state = (state & ~STATE_SYSTEM_FOCUSED) | STATE_SYSTEM_SELECTABLE;
        if (Send(LB_GETSEL, static_cast<WPARAM>(item - 1)) > 0) state |= STATE_SYSTEM_SELECTED;
        if (SelectsMany()) state |= STATE_SYSTEM_MULTISELECTABLE;
        RECT own{}, rectangle = ItemRectangle(item), shown{};
        ::GetClientRect(Window(), &own);
        if (!::IntersectRect(&shown, &own, &rectangle)) state |= STATE_SYSTEM_OFFSCREEN;
        return state;
    }
    RECT Rectangle(LONG item) override { return item == CHILDID_SELF ? ClientObject::Rectangle(item) : ToScreen(ItemRectangle(item)); }
    std::wstring DefaultAction(LONG item) override { return item == CHILDID_SELF ? L"" : L"Double Click"; }
    std::vector<LONG> SelectedItems() override {
        std::vector<LONG> items;
        for (LONG item = 1; item <= ItemCount(); ++item)
            if (Send(LB_GETSEL, static_cast<WPARAM>(item - 1)) > 0) items.push_back(item);
        return items;
    }
    bool Select(LONG item, LONG flags) override {
        if (item == CHILDID_SELF) return false;
        if (!SelectsMany()) return Send(LB_SETCURSEL, static_cast<WPARAM>(item - 1)) != LB_ERR;
        if (flags & SELFLAG_TAKESELECTION) Send(LB_SETSEL, FALSE, -1);
        return Send(LB_SETSEL, (flags & SELFLAG_REMOVESELECTION) ? FALSE : TRUE, item - 1) != LB_ERR;
    }

private:
    bool SelectsMany() const { return ::GetWindowLongPtrW(Window(), GWL_STYLE) & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL); }
    RECT ItemRectangle(LONG item) const {
        RECT rectangle{};
        Send(LB_GETITEMRECT, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(&rectangle));
        return rectangle;
    }
};

// The items are simple children, whether the list is open or not: its window is of no relation to the combo box's.
class ComboBoxObject final : public ClientObject {
public:
    using ClientObject::ClientObject;

protected:
    LONG ItemCount() override { return BoundedItems(Send(CB_GETCOUNT)); }
    std::wstring Name(LONG item) override { return item == CHILDID_SELF ? Label() : ItemText(item); }
    bool Value(LONG item, std::wstring& value) override {
        if (item != CHILDID_SELF) return false;
        value = TitleOf(Window());
        return true;
    }
    LONG Role(LONG item) override { return item == CHILDID_SELF ? ROLE_SYSTEM_COMBOBOX : ROLE_SYSTEM_LISTITEM; }
    LONG State(LONG item) override {
        const LONG state = ClientObject::State(item);
        const bool open = Send(CB_GETDROPPEDSTATE) != 0;
        if (item == CHILDID_SELF) return state | (open ? STATE_SYSTEM_EXPANDED : STATE_SYSTEM_COLLAPSED) | STATE_SYSTEM_HASPOPUP;
        return (state & ~STATE_SYSTEM_FOCUSED) | STATE_SYSTEM_SELECTABLE | (open ? 0 : STATE_SYSTEM_INVISIBLE) |
               (Send(CB_GETCURSEL) == item - 1 ? STATE_SYSTEM_SELECTED : 0);
    }
    std::wstring DefaultAction(LONG item) override {
        return item != CHILDID_SELF ? L"Double Click" : Send(CB_GETDROPPEDSTATE) ? L"Close" : L"Open";
    }
    bool DoDefaultAction(LONG item) override {
        if (item != CHILDID_SELF) return Select(item, SELFLAG_TAKESELECTION);
        Send(CB_SHOWDROPDOWN, Send(CB_GETDROPPEDSTATE) ? FALSE : TRUE);
        return true;
    }
    std::vector<LONG> SelectedItems() override {
        const LRESULT selected = Send(CB_GETCURSEL);
        return selected < 0 ? std::vector<LONG>() : std::vector<LONG>{static_cast<LONG>(selected) + 1};
    }
    bool Select(LONG item, LONG flags) override {
        return item != CHILDID_SELF && (flags & SELFLAG_TAKESELECTION) && Send(CB_SETCURSEL, static_cast<WPARAM>(item - 1)) != CB_ERR;
    }

private:
    std::wstring ItemText(LONG item) const {
        const LRESULT length = Send(CB_GETLBTEXTLEN, static_cast<WPARAM>(item - 1));
        if (length <= 0 || length > 100'000) return {};
        std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
        text.resize(static_cast<std::size_t>(
            std::max<LRESULT>(0, Send(CB_GETLBTEXT, static_cast<WPARAM>(item - 1), reinterpret_cast<LPARAM>(text.data())))));
        return text;
    }
};

class PlainClient final : public ClientObject {
public:
    using ClientObject::ClientObject;
};

}  // namespace

LONG BoundedItems(LRESULT count) { return count < 0 ? 0 : count > 50'000 ? 50'000 : static_cast<LONG>(count); }

CComPtr<IAccessible> MakeControl(HWND window, const std::wstring& windowClass) {
    if (windowClass == L"Button") return Make<ButtonObject>(window);
    if (windowClass == L"Edit" || windowClass.find(L"RICHEDIT") == 0 || windowClass.find(L"RichEdit") == 0)
        return Make<EditObject>(window);
    if (windowClass == L"Static") return Make<StaticObject>(window);
    if (windowClass == L"ListBox" || windowClass == L"ComboLBox" || windowClass.find(L".LISTBOX.") != std::wstring::npos)
        return Make<ListBoxObject>(window);
    if (windowClass == L"ComboBox") return Make<ComboBoxObject>(window);
    return MakeCommonControl(window, windowClass);
}

bool KnowsClientOf(HWND window) { return MakeControl(window, ClassOf(window)).p != nullptr; }

CComPtr<IAccessible> ClientObjectOf(HWND window) {
    if (CComPtr<IAccessible> control = MakeControl(window, ClassOf(window))) return control;
    return Make<PlainClient>(window);
}

}  // namespace StandardObjects
