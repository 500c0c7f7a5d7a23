#include "tests/live/standard_objects/StandardObject.h"

#include <string>

namespace StandardObjects {

namespace {

CComPtr<IDispatch> Dispatch(IAccessible* object) { return CComPtr<IDispatch>(object); }

void PutObject(VARIANT* variant, IAccessible* object) {
    variant->vt = VT_DISPATCH;
    variant->pdispVal = Dispatch(object).Detach();
}

void PutNumber(VARIANT* variant, LONG number) {
    variant->vt = VT_I4;
    variant->lVal = number;
}

RECT RectangleOf(IAccessible* object) {
    VARIANT self{};
    PutNumber(&self, CHILDID_SELF);
    LONG left = 0, top = 0, width = 0, height = 0;
    if (FAILED(object->accLocation(&left, &top, &width, &height, self))) return {};
    return {left, top, left + width, top + height};
}

bool IsInvisible(IAccessible* object) {
    VARIANT self{}, state{};
    PutNumber(&self, CHILDID_SELF);
    return FAILED(object->get_accState(self, &state)) || (state.vt == VT_I4 && (state.lVal & STATE_SYSTEM_INVISIBLE));
}

// The selection of several items.
class ItemList final : public IEnumVARIANT {
public:
    explicit ItemList(std::vector<LONG> items) : m_items(std::move(items)) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (!IsEqualIID(riid, IidOf<IUnknown>()) && !IsEqualIID(riid, IidOf<IEnumVARIANT>())) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IEnumVARIANT*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override {
        ULONG taken = 0;
        for (; taken < count && m_position < m_items.size(); ++taken) PutNumber(&items[taken], m_items[m_position++]);
        if (fetched) *fetched = taken;
        return taken == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        m_position += count;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        m_position = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

private:
    ULONG m_references = 1;
    std::vector<LONG> m_items;
    std::size_t m_position = 0;
};

}  // namespace

std::wstring ClassOf(HWND window) {
    wchar_t text[256] = {};
    return std::wstring(text, static_cast<std::size_t>(::RealGetWindowClassW(window, text, 256)));
}

std::wstring TitleOf(HWND window) {
    const int length = ::GetWindowTextLengthW(window);
    if (length <= 0 || length > 1'000'000) return {};
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    text.resize(static_cast<std::size_t>(::GetWindowTextW(window, text.data(), length + 1)));
    return text;
}

std::vector<HWND> ChildWindows(HWND window) {
    std::vector<HWND> children;
    for (HWND child = ::GetWindow(window, GW_CHILD); child && children.size() < 10'000; child = ::GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

StandardObject::StandardObject(HWND window) : m_window(window) {}

HRESULT StandardObject::QueryInterface(REFIID riid, void** object) {
    if (IsEqualIID(riid, IidOf<IUnknown>()) || IsEqualIID(riid, IidOf<IDispatch>()) || IsEqualIID(riid, IidOf<IAccessible>()))
        *object = static_cast<IAccessible*>(this);
    else if (IsEqualIID(riid, __uuidof(IOleWindow)))
        *object = static_cast<IOleWindow*>(this);
    else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG StandardObject::AddRef() { return ++m_references; }

ULONG StandardObject::Release() {
    const ULONG left = --m_references;
    if (left == 0) delete this;
    return left;
}

HRESULT StandardObject::GetWindow(HWND* window) {
    *window = m_window;
    return IsAlive() ? S_OK : E_FAIL;
}

HRESULT StandardObject::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

bool StandardObject::ItemOf(const VARIANT& child, LONG& item) {
    if (child.vt != VT_I4 || !IsAlive()) return false;
    item = child.lVal;
    return item == CHILDID_SELF || (item > 0 && item <= ItemCount());
}

HRESULT StandardObject::Nothing(const VARIANT& child, BSTR* text) {
    LONG item = 0;
    *text = nullptr;
    return ItemOf(child, item) ? S_FALSE : E_INVALIDARG;
}

HRESULT StandardObject::get_accParent(IDispatch** parent) {
    *parent = nullptr;
    if (!IsAlive()) return E_FAIL;
    *parent = Dispatch(Parent()).Detach();
    return *parent ? S_OK : S_FALSE;
}

HRESULT StandardObject::get_accChildCount(LONG* count) {
    *count = 0;
    if (!IsAlive()) return E_FAIL;
    *count = ItemCount() + static_cast<LONG>(ObjectChildren().size());
    return S_OK;
}

HRESULT StandardObject::get_accChild(VARIANT child, IDispatch** object) {
    *object = nullptr;
    if (child.vt != VT_I4 || !IsAlive()) return E_INVALIDARG;
    const LONG items = ItemCount();
    if (child.lVal >= 1 && child.lVal <= items) return S_FALSE;  // a simple child
    const auto objects = ObjectChildren();
    const LONG place = child.lVal - items - 1;
    if (place < 0 || place >= static_cast<LONG>(objects.size())) return E_INVALIDARG;
    *object = Dispatch(objects[static_cast<std::size_t>(place)]).Detach();
    return S_OK;
}

HRESULT StandardObject::get_accName(VARIANT child, BSTR* name) {
    LONG item = 0;
    *name = nullptr;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    const std::wstring text = Name(item);
    if (text.empty()) return S_FALSE;
    *name = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return S_OK;
}

HRESULT StandardObject::get_accValue(VARIANT child, BSTR* value) {
    LONG item = 0;
    *value = nullptr;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    std::wstring text;
    if (!Value(item, text)) return DISP_E_MEMBERNOTFOUND;
    *value = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return S_OK;
}

HRESULT StandardObject::get_accRole(VARIANT child, VARIANT* role) {
    LONG item = 0;
    role->vt = VT_EMPTY;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    PutNumber(role, Role(item));
    return S_OK;
}

HRESULT StandardObject::get_accState(VARIANT child, VARIANT* state) {
    LONG item = 0;
    state->vt = VT_EMPTY;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    PutNumber(state, State(item));
    return S_OK;
}

HRESULT StandardObject::get_accFocus(VARIANT* focus) {
    focus->vt = VT_EMPTY;
    const HWND focused = ::GetFocus();
    if (!focused) return S_FALSE;
    if (focused == m_window) {
        const auto selected = SelectedItems();
        PutNumber(focus, selected.size() == 1 ? selected[0] : CHILDID_SELF);
        return S_OK;
    }
    if (!::IsChild(m_window, focused)) return S_FALSE;
    PutObject(focus, ClientObjectOf(focused));
    return S_OK;
}

HRESULT StandardObject::get_accSelection(VARIANT* selection) {
    selection->vt = VT_EMPTY;
    const auto selected = SelectedItems();
    if (selected.size() == 1) PutNumber(selection, selected[0]);
    if (selected.size() > 1) {
        selection->vt = VT_UNKNOWN;
        selection->punkVal = new ItemList(selected);
    }
    return S_OK;
}

HRESULT StandardObject::get_accDefaultAction(VARIANT child, BSTR* action) {
    LONG item = 0;
    *action = nullptr;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    const std::wstring text = DefaultAction(item);
    if (text.empty()) return DISP_E_MEMBERNOTFOUND;
    *action = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return S_OK;
}

HRESULT StandardObject::accSelect(LONG flags, VARIANT child) {
    LONG item = 0;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    if (item == CHILDID_SELF && flags == SELFLAG_TAKEFOCUS) {
        ::SetFocus(m_window);
        return S_OK;
    }
    return Select(item, flags) ? S_OK : E_NOTIMPL;
}

HRESULT StandardObject::accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) {
    LONG item = 0;
    *left = *top = *width = *height = 0;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    const RECT rectangle = Rectangle(item);
    *left = rectangle.left;
    *top = rectangle.top;
    *width = rectangle.right - rectangle.left;
    *height = rectangle.bottom - rectangle.top;
    return S_OK;
}

HRESULT StandardObject::accNavigate(LONG direction, VARIANT start, VARIANT* end) {
    end->vt = VT_EMPTY;
    LONG item = 0;
    if (!ItemOf(start, item)) return E_INVALIDARG;
    const LONG items = ItemCount();
    const auto objects = ObjectChildren();
    const LONG count = items + static_cast<LONG>(objects.size());
    LONG place = 0;
    if (direction == NAVDIR_FIRSTCHILD && item == CHILDID_SELF) place = 1;
    else if (direction == NAVDIR_LASTCHILD && item == CHILDID_SELF) place = count;
    else if (direction == NAVDIR_NEXT && item != CHILDID_SELF) place = item + 1;
    else if (direction == NAVDIR_PREVIOUS && item != CHILDID_SELF) place = item - 1;
    else return E_NOTIMPL;
    if (place < 1 || place > count) return S_FALSE;
    if (place <= items) PutNumber(end, place);
    else PutObject(end, objects[static_cast<std::size_t>(place - items - 1)]);
    return S_OK;
}

HRESULT StandardObject::accHitTest(LONG x, LONG y, VARIANT* child) {
    child->vt = VT_EMPTY;
    if (!IsAlive()) return E_FAIL;
    const POINT point{x, y};
    const RECT own = Rectangle(CHILDID_SELF);
    if (!::PtInRect(&own, point)) return S_FALSE;
    for (const auto& object : ObjectChildren()) {
        const RECT rectangle = RectangleOf(object);
        if (IsInvisible(object) || !::PtInRect(&rectangle, point)) continue;
        PutObject(child, object);
        return S_OK;
    }
    const LONG items = ItemCount();
    for (LONG item = 1; item <= items; ++item) {
        const RECT rectangle = Rectangle(item);
        if ((State(item) & STATE_SYSTEM_INVISIBLE) || !::PtInRect(&rectangle, point)) continue;
        PutNumber(child, item);
        return S_OK;
    }
    PutNumber(child, CHILDID_SELF);
    return S_OK;
}

HRESULT StandardObject::accDoDefaultAction(VARIANT child) {
    LONG item = 0;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    return DoDefaultAction(item) ? S_OK : DISP_E_MEMBERNOTFOUND;
}

HRESULT StandardObject::put_accValue(VARIANT child, BSTR value) {
    LONG item = 0;
    if (!ItemOf(child, item)) return E_INVALIDARG;
    return SetValue(item, std::wstring(value ? value : L"", ::SysStringLen(value))) ? S_OK : DISP_E_MEMBERNOTFOUND;
}

std::wstring StandardObject::Name(LONG) { return TitleOf(m_window); }

bool StandardObject::Value(LONG, std::wstring&) { return false; }

LONG StandardObject::State(LONG) {
    LONG state = 0;
    const LONG_PTR style = ::GetWindowLongPtrW(m_window, GWL_STYLE);
    if (!(style & WS_VISIBLE)) state |= STATE_SYSTEM_INVISIBLE;
    if (style & WS_DISABLED) state |= STATE_SYSTEM_UNAVAILABLE;
    else state |= STATE_SYSTEM_FOCUSABLE;
    if (::GetFocus() == m_window) state |= STATE_SYSTEM_FOCUSED;
    return state;
}

RECT StandardObject::Rectangle(LONG) {
    RECT rectangle{};
    ::GetClientRect(m_window, &rectangle);
    ::MapWindowPoints(m_window, nullptr, reinterpret_cast<POINT*>(&rectangle), 2);
    return rectangle;
}

}  // namespace StandardObjects
