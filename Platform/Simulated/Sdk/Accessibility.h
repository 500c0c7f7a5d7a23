// Active Accessibility, and the few interfaces of UI Automation that the product asks for.
#pragma once

#include "Platform/Simulated/Sdk/Automation.h"
#include "Platform/Simulated/Sdk/User.h"

struct IAccessible : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) = 0;
    virtual HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) = 0;
    virtual HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) = 0;
    virtual HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) = 0;
    virtual HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) = 0;
    virtual HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_accName(VARIANT child, BSTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) = 0;
};

struct IAccIdentity : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetIdentityString(DWORD child, BYTE** text, DWORD* length) = 0;
};

struct IRawElementProviderSimple;

struct IAccessibleEx : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetObjectForChild(LONG child, IAccessibleEx** object) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIAccessiblePair(IAccessible** accessible, LONG* child) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRuntimeId(SAFEARRAY** id) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertReturnedElement(IRawElementProviderSimple* provider, IAccessibleEx** object) = 0;
};

using PATTERNID = int;
using PROPERTYID = int;
enum ProviderOptions : int { ProviderOptions_ServerSideProvider = 2 };

struct IRawElementProviderSimple : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE get_ProviderOptions(ProviderOptions* options) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPatternProvider(PATTERNID pattern, IUnknown** provider) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPropertyValue(PROPERTYID property, VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_HostRawElementProvider(IRawElementProviderSimple** provider) = 0;
};

HRESULT AccessibleObjectFromWindow(HWND window, DWORD objectId, REFIID riid, void** object);
HRESULT AccessibleObjectFromEvent(HWND window, DWORD objectId, DWORD childId, IAccessible** object, VARIANT* child);
HRESULT WindowFromAccessibleObject(IAccessible* object, HWND* window);
HRESULT AccessibleChildren(IAccessible* container, LONG start, LONG count, VARIANT* children, LONG* obtained);
UINT GetRoleTextW(DWORD role, LPWSTR text, UINT capacity);
UINT GetStateTextW(DWORD stateBit, LPWSTR text, UINT capacity);
