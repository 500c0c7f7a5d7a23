// An accessible element whose every answer a test sets by hand, well-behaved or not. It needs no window and no
// desktop, so tests with it run on every platform.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"

namespace Zorvex::Testing {

// A result with an optional text; no text is a null string. An element without a name answers S_FALSE.
struct TextAnswer {
    HRESULT result = S_FALSE;
    std::optional<std::wstring> text;

    TextAnswer() = default;
    TextAnswer(const wchar_t* value) : result(S_OK), text(value) {}
    TextAnswer(HRESULT failure) : result(failure) {}

    HRESULT Give(BSTR* out) const {
        *out = text ? ::SysAllocStringLen(text->data(), static_cast<UINT>(text->size())) : nullptr;
        return result;
    }
};

// A result with a variant.
struct VariantAnswer {
    HRESULT result = S_OK;
    CComVariant value;

    VariantAnswer() = default;
    VariantAnswer(LONG number) : value(number) {}
    VariantAnswer(CComVariant any) : value(std::move(any)) {}
    static VariantAnswer Failure(HRESULT result) {
        VariantAnswer answer;
        answer.result = result;
        return answer;
    }

    // A VT_BSTR that holds null: a copy of such a variant holds an empty string on Windows.
    static VariantAnswer NullText() {
        VariantAnswer answer;
        answer.m_isNullText = true;
        return answer;
    }

    HRESULT Give(VARIANT* out) const {
        CComVariant copy(value);
        copy.DetachTo(*out);
        if (m_isNullText) out->vt = VT_BSTR, out->bstrVal = nullptr;
        return result;
    }

private:
    bool m_isNullText = false;
};

struct NumberAnswer {
    HRESULT result = S_OK;
    LONG number = 0;

    HRESULT Give(LONG* out) const {
        *out = number;
        return result;
    }
};

// Hands out fixed items, then S_FALSE; or, `endless`, the last one for ever.
class FakeEnumerator final : public IEnumVARIANT {
public:
    explicit FakeEnumerator(std::vector<CComVariant> items, bool endless = false) : m_items(std::move(items)), m_endless(endless) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        *object = nullptr;
        if (!IsEqualIID(riid, IidOf<IUnknown>()) && !IsEqualIID(riid, IidOf<IEnumVARIANT>())) return E_NOINTERFACE;
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
    HRESULT STDMETHODCALLTYPE Next(ULONG, VARIANT* items, ULONG* fetched) override {
        if (fetched) *fetched = 0;
        if (m_position >= m_items.size()) return S_FALSE;
        CComVariant copy(m_items[m_position]);
        copy.DetachTo(*items);
        if (!m_endless || m_position + 1 < m_items.size()) ++m_position;
        if (fetched) *fetched = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

private:
    ULONG m_references = 0;
    std::vector<CComVariant> m_items;
    bool m_endless;
    std::size_t m_position = 0;
};

class FakeElement final : public IAccessible2,
                          public IAccessibleText,
                          public IServiceProvider,
                          public IAccessibleEx,
                          public IRawElementProviderSimple {
public:
    // What the element answers.
    VariantAnswer roleAnswer{ROLE_SYSTEM_PUSHBUTTON};
    VariantAnswer stateAnswer{LONG{0}};
    // Differs from stateAnswer for child ids other than CHILDID_SELF when set.
    std::optional<VariantAnswer> childStateAnswer;
    TextAnswer name, value, description, help, shortcut, defaultAction;
    std::map<LONG, std::wstring> childNames;
    VariantAnswer selection;
    NumberAnswer childCount;
    std::vector<CComVariant> children;  // for get_accChild and the enumerator of AccessibleChildren
    RECT location{10, 20, 30, 40};      // left, top, width, height
    HRESULT locationResult = S_OK;
    CComPtr<IAccessible> parent;
    // The answer without a parent. Wine's WindowFromAccessibleObject doesn't survive a chain of parents that ends
    // without a window, so what asks for an element's window is tested on the simulated desktop.
    HRESULT parentResult = E_NOTIMPL;
    HRESULT actionResult = S_OK;
    // Runs before each read of the state, with the number of reads so far.
    std::function<void(int)> onState;
    // Runs inside accSelect, accDoDefaultAction, put_accValue and scrollTo, whose calls are counted.
    std::function<void()> onAction;
    std::optional<LONG> selectedWith;      // the flags of the last accSelect
    std::optional<std::wstring> written;  // the text of the last put_accValue

    // What it offers beside IAccessible.
    bool offersServices = true, offersIA2 = true, offersText = true, offersEx = true, offersProvider = true;
    HRESULT serviceResult = S_OK;  // a failure, or success with a null pointer when the interface isn't offered
    bool isAccessible = true;      // whether it answers for IAccessible at all

    NumberAnswer ia2Role, ia2States, ia2UniqueId;
    TextAnswer ia2Attributes;
    NumberAnswer characterCount;
    TextAnswer ia2Text;
    HRESULT scrollResult = S_OK;
    std::optional<int> scrolledTo;
    VariantAnswer uiaProperty;
    std::optional<PROPERTYID> askedProperty;
    CComPtr<FakeElement> exOfChild;  // what GetObjectForChild gives
    HRESULT exOfChildResult = S_OK;

    std::map<std::string, int> calls;

    static CComPtr<FakeElement> Make() { return CComPtr<FakeElement>(new FakeElement); }
    // Elements that haven't been let go.
    static int Alive() { return s_alive; }

    IDispatch* AsDispatch() { return static_cast<IAccessible2*>(this); }

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        *object = nullptr;
        if (IsEqualIID(riid, IidOf<IUnknown>()) || IsEqualIID(riid, IidOf<IDispatch>()) || (isAccessible && IsEqualIID(riid, IidOf<IAccessible>())))
            *object = static_cast<IAccessible2*>(this);
        else if (offersServices && IsEqualIID(riid, IidOf<IServiceProvider>())) *object = static_cast<IServiceProvider*>(this);
        else if (offersText && IsEqualIID(riid, IidOf<IAccessibleText>())) *object = static_cast<IAccessibleText*>(this);
        else if (offersEx && IsEqualIID(riid, IidOf<IAccessibleEx>())) *object = static_cast<IAccessibleEx*>(this);
        else if (offersProvider && IsEqualIID(riid, IidOf<IRawElementProviderSimple>())) *object = static_cast<IRawElementProviderSimple*>(this);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }
    // IServiceProvider
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID riid, void** object) override {
        *object = nullptr;
        if (FAILED(serviceResult)) return serviceResult;
        if (offersIA2 && IsEqualGUID(service, IidOf<IAccessible>()) && IsEqualIID(riid, IidOf<IAccessible2>())) *object = static_cast<IAccessible2*>(this);
        else if (offersEx && IsEqualGUID(service, IidOf<IAccessibleEx>()) && IsEqualIID(riid, IidOf<IAccessibleEx>())) *object = static_cast<IAccessibleEx*>(this);
        if (*object) AddRef();
        return serviceResult;
    }
    // IDispatch
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
    // IAccessible
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** out) override {
        *out = nullptr;
        if (parent) {
            *out = parent.p;
            parent->AddRef();
            return S_OK;
        }
        return parentResult;
    }
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override { return ++calls["get_accChildCount"], childCount.Give(count); }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
        *object = nullptr;
        const std::size_t index = static_cast<std::size_t>(child.lVal - 1);
        if (child.vt != VT_I4 || child.lVal < 1 || index >= children.size()) return E_INVALIDARG;
        if (children[index].vt != VT_DISPATCH) return S_FALSE;
        *object = children[index].pdispVal;
        if (*object) (*object)->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* out) override {
        ++calls["get_accName"];
        const auto own = child.vt == VT_I4 ? childNames.find(child.lVal) : childNames.end();
        return own == childNames.end() ? name.Give(out) : TextAnswer(own->second.c_str()).Give(out);
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT, BSTR* out) override { return ++calls["get_accValue"], value.Give(out); }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR* out) override { return description.Give(out); }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT, VARIANT* out) override { return ++calls["get_accRole"], roleAnswer.Give(out); }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* out) override {
        const int read = calls["get_accState"]++;
        if (onState) onState(read);
        return (childStateAnswer && child.lVal != CHILDID_SELF ? *childStateAnswer : stateAnswer).Give(out);
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR* out) override { return help.Give(out); }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG* topic) override { return *file = nullptr, *topic = 0, E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR* out) override { return shortcut.Give(out); }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* out) override { return ++calls["get_accSelection"], selection.Give(out); }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT, BSTR* out) override { return defaultAction.Give(out); }
    HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT) override { return selectedWith = flags, Act("accSelect", actionResult); }
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT) override {
        ++calls["accLocation"];
        if (FAILED(locationResult)) return locationResult;
        *left = location.left;
        *top = location.top;
        *width = location.right;
        *height = location.bottom;
        return locationResult;
    }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE accHitTest(LONG, LONG, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) override { return Act("accDoDefaultAction", actionResult); }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR text) override {
        written = text ? std::wstring(text, ::SysStringLen(text)) : std::wstring();
        return Act("put_accValue", actionResult);
    }
    // IAccessible2
    HRESULT STDMETHODCALLTYPE get_nRelations(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_relation(LONG, IAccessibleRelation**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_relations(LONG, IAccessibleRelation**, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE role(LONG* out) override { return ia2Role.Give(out); }
    HRESULT STDMETHODCALLTYPE scrollTo(IA2ScrollType type) override { return scrolledTo = type, Act("scrollTo", scrollResult); }
    HRESULT STDMETHODCALLTYPE scrollToPoint(IA2CoordinateType, LONG, LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_groupPosition(LONG*, LONG*, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_states(AccessibleStates* out) override { return ++calls["get_states"], ia2States.Give(out); }
    HRESULT STDMETHODCALLTYPE get_extendedRole(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_localizedExtendedRole(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_nExtendedStates(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_extendedStates(LONG, BSTR**, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_localizedExtendedStates(LONG, BSTR**, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_uniqueID(LONG* out) override { return ia2UniqueId.Give(out); }
    HRESULT STDMETHODCALLTYPE get_windowHandle(HWND*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_indexInParent(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_locale(IA2Locale*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_attributes(BSTR* out) override { return ia2Attributes.Give(out); }
    // IAccessibleText
    HRESULT STDMETHODCALLTYPE addSelection(LONG, LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_attributes(LONG, LONG*, LONG*, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_caretOffset(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_characterExtents(LONG, IA2CoordinateType, LONG*, LONG*, LONG*, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_nSelections(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_offsetAtPoint(LONG, LONG, IA2CoordinateType, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_selection(LONG, LONG*, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_text(LONG, LONG, BSTR* out) override { return ia2Text.Give(out); }
    HRESULT STDMETHODCALLTYPE get_textBeforeOffset(LONG, IA2TextBoundaryType, LONG*, LONG*, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_textAfterOffset(LONG, IA2TextBoundaryType, LONG*, LONG*, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_textAtOffset(LONG, IA2TextBoundaryType, LONG*, LONG*, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE removeSelection(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE setCaretOffset(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE setSelection(LONG, LONG, LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_nCharacters(LONG* out) override { return characterCount.Give(out); }
    HRESULT STDMETHODCALLTYPE scrollSubstringTo(LONG, LONG, IA2ScrollType) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE scrollSubstringToPoint(LONG, LONG, IA2CoordinateType, LONG, LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_newText(IA2TextSegment*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_oldText(IA2TextSegment*) override { return E_NOTIMPL; }
    // IAccessibleEx
    HRESULT STDMETHODCALLTYPE GetObjectForChild(LONG, IAccessibleEx** object) override {
        *object = exOfChild.p;
        if (exOfChild) exOfChild->AddRef();
        return exOfChildResult;
    }
    HRESULT STDMETHODCALLTYPE GetIAccessiblePair(IAccessible**, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRuntimeId(SAFEARRAY** id) override { return *id = nullptr, E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ConvertReturnedElement(IRawElementProviderSimple*, IAccessibleEx**) override { return E_NOTIMPL; }
    // IRawElementProviderSimple
    HRESULT STDMETHODCALLTYPE get_ProviderOptions(ProviderOptions*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetPatternProvider(PATTERNID, IUnknown**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetPropertyValue(PROPERTYID property, VARIANT* out) override { return askedProperty = property, uiaProperty.Give(out); }
    HRESULT STDMETHODCALLTYPE get_HostRawElementProvider(IRawElementProviderSimple**) override { return E_NOTIMPL; }

private:
    FakeElement() { ++s_alive; }
    ~FakeElement() { --s_alive; }

    HRESULT Act(const char* call, HRESULT result) {
        ++calls[call];
        // A copy: what runs may let go of the element or set another.
        const CComPtr<FakeElement> self(this);
        if (const auto action = onAction) action();
        return result;
    }

    inline static int s_alive = 0;
    ULONG m_references = 0;
};

// The fixture of tests with fake elements: no reference is left when the test has let go of its own.
class FakeElementTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(FakeElement::Alive(), 0); }
};

}  // namespace Zorvex::Testing
