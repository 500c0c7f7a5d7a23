// The common half of every standard object: one window, an IAccessible over it, and simple children by number.
//
// Wine's own window objects answer almost nothing, so the live tests bring these. They answer what the published
// standard objects answer, as far as the tests need it; on Windows nobody needs them.
#pragma once

#include <string>
#include <vector>

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace StandardObjects {

class StandardObject : public IAccessible, public IOleWindow {
public:
    explicit StandardObject(HWND window);

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    // IOleWindow: what WindowFromAccessibleObject asks for.
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    // IDispatch
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
    // IAccessible
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override;
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override;
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override;
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override;
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) override { return Nothing(child, text); }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override;
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override;
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* text) override { return Nothing(child, text); }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR*, VARIANT, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* text) override { return Nothing(child, text); }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override;
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* selection) override;
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override;
    HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override;
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override;
    HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) override;
    HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) override;
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override;
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) override;

protected:
    virtual ~StandardObject() = default;

    HWND Window() const { return m_window; }

    // What a kind of object says of itself (item 0) and of its simple children (from 1). The base says what holds for
    // any window.
    virtual CComPtr<IAccessible> Parent() = 0;
    // Objects among the children, behind the simple ones.
    virtual std::vector<CComPtr<IAccessible>> ObjectChildren() { return {}; }
    virtual LONG ItemCount() { return 0; }
    virtual std::wstring Name(LONG item);
    // False: there is no value.
    virtual bool Value(LONG item, std::wstring& value);
    virtual LONG Role(LONG item) = 0;
    virtual LONG State(LONG item);
    virtual RECT Rectangle(LONG item);
    virtual std::wstring DefaultAction(LONG) { return {}; }
    virtual bool DoDefaultAction(LONG) { return false; }
    virtual bool Select(LONG, LONG) { return false; }
    virtual std::vector<LONG> SelectedItems() { return {}; }
    virtual bool SetValue(LONG, const std::wstring&) { return false; }

private:
    bool IsAlive() const { return ::IsWindow(m_window) != FALSE; }
    // True, with the item's number, if the child id names the object itself or one of its simple children.
    bool ItemOf(const VARIANT& child, LONG& item);
    HRESULT Nothing(const VARIANT& child, BSTR* text);

    ULONG m_references = 1;
    HWND m_window;
};

// The objects of a window; never null for a window that exists.
CComPtr<IAccessible> WindowObjectOf(HWND window);
CComPtr<IAccessible> ClientObjectOf(HWND window);
// Whether a client object of ours stands for windows of this class.
bool KnowsClientOf(HWND window);

std::wstring ClassOf(HWND window);
std::wstring TitleOf(HWND window);
// The children of a window in the order of a walk from top to bottom, at most 10,000.
std::vector<HWND> ChildWindows(HWND window);

}  // namespace StandardObjects
