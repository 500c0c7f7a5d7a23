// An accessible object that answers what a test tells it, counts its calls and its references, and can misbehave at
// any call. Portable: it needs no simulated desktop, and on Windows the platform itself reads it.
#pragma once

#include <deque>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"

namespace Zorvex::Testing {

// Counts every call of every fake, and spoils one of them: the one that brings the count to `at`.
struct FakeCalls {
    enum class Spoil { Nothing, Fail, NullWithSuccess, Throw };

    // Thrown by a spoilt call.
    struct Thrown {};

    int total = 0;
    int at = 0;
    Spoil spoil = Spoil::Nothing;
    int references = 0;

    static FakeCalls& Instance() {
        static FakeCalls calls;
        return calls;
    }
    void Reset(Spoil kind = Spoil::Nothing, int nth = 0) {
        total = 0;
        spoil = kind;
        at = nth;
    }
    // What the call that is being made has to do besides its work.
    Spoil Count() {
        const bool now = ++total == at;
        if (now && spoil == Spoil::Throw) throw Thrown{};
        return now ? spoil : Spoil::Nothing;
    }
};

// Owned by the test, not by its references: what is outstanding stays visible.
class FakeAccessible : public IAccessible, public IEnumVARIANT, public IServiceProvider, public IAccessibleEx, public IAccIdentity {
public:
    explicit FakeAccessible(LONG role = 0, const wchar_t* name = nullptr) : role(role), name(name ? name : L"") {}
    FakeAccessible(const FakeAccessible&) = delete;
    FakeAccessible& operator=(const FakeAccessible&) = delete;
    virtual ~FakeAccessible() = default;

    // Answers. A result that isn't S_OK goes back together with the value, a failure too.
    CComVariant role;
    HRESULT roleResult = S_OK;
    CComVariant state{0};
    HRESULT stateResult = S_OK;
    std::wstring name;
    HRESULT nameResult = S_OK;
    bool nullName = false;
    std::wstring value;
    HRESULT valueResult = S_OK;
    LONG left = 0, top = 0, width = 0, height = 0;
    HRESULT locationResult = S_OK;
    FakeAccessible* parent = nullptr;
    HRESULT parentResult = S_OK;

    // Children as AccessibleChildren hands them out. The count and the number obtained follow the list unless set.
    std::vector<CComVariant> children;
    bool hasCount = false;
    LONG count = 0;
    HRESULT countResult = S_OK;
    bool hasObtained = false;
    LONG obtained = 0;
    HRESULT childrenResult = S_OK;

    // Identities. The object whose IUnknown stands for this one, when it isn't this one.
    FakeAccessible* unknown = nullptr;
    bool hasAccessibleEx = false;
    std::vector<LONG> runtimeId;
    HRESULT runtimeIdResult = S_OK;
    std::function<SAFEARRAY*()> makeRuntimeId;
    std::function<FakeAccessible*(LONG)> objectForChild;
    bool hasIdentity = false;
    std::string identity;
    HRESULT identityResult = S_OK;
    // Interfaces that answer success with null.
    std::vector<IID> nullInterfaces;
    bool isAccessible = true;

    // Calls of this object, and references to it that are held.
    int calls = 0, countCalls = 0, childrenCalls = 0, roleCalls = 0, locationCalls = 0;
    int references = 0;

    void AddChild(FakeAccessible& child) {
        children.emplace_back(static_cast<IDispatch*>(static_cast<IAccessible*>(&child)));
        // The list's own reference is no reference of the code under test.
        --child.references;
        --FakeCalls::Instance().references;
        m_borrowed.push_back(&child);
    }
    void AddSimpleChild(LONG childId) { children.emplace_back(childId); }
    void AddOddChild(CComVariant child) { children.push_back(std::move(child)); }
    // Before the children go: the list's references are counted again.
    void ReturnChildren() {
        for (FakeAccessible* child : m_borrowed) {
            ++child->references;
            ++FakeCalls::Instance().references;
        }
        m_borrowed.clear();
        children.clear();
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        *object = nullptr;
        // The platform's own question on the way to the children: it isn't ready for a bad answer.
        if (IsEqualIID(riid, IidOf<IEnumVARIANT>())) {
            *object = static_cast<IEnumVARIANT*>(this);
            AddRef();
            return S_OK;
        }
        ++calls;
        switch (FakeCalls::Instance().Count()) {
            case FakeCalls::Spoil::Fail: return E_NOINTERFACE;
            case FakeCalls::Spoil::NullWithSuccess: return S_OK;
            default: break;
        }
        for (const IID& id : nullInterfaces)
            if (IsEqualIID(id, riid)) return S_OK;
        if (IsEqualIID(riid, IidOf<IUnknown>())) {
            FakeAccessible* object1 = unknown ? unknown : this;
            *object = static_cast<IAccessible*>(object1);
            object1->AddRef();
            return S_OK;
        }
        if (IsEqualIID(riid, IidOf<IAccessible>()) && isAccessible) *object = static_cast<IAccessible*>(this);
        else if (IsEqualIID(riid, IidOf<IDispatch>())) *object = static_cast<IDispatch*>(static_cast<IAccessible*>(this));
        else if (IsEqualIID(riid, IidOf<IServiceProvider>()) && hasAccessibleEx) *object = static_cast<IServiceProvider*>(this);
        else if (IsEqualIID(riid, IidOf<IAccIdentity>()) && hasIdentity) *object = static_cast<IAccIdentity*>(this);
        else return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        ++FakeCalls::Instance().references;
        return static_cast<ULONG>(++references);
    }
    ULONG STDMETHODCALLTYPE Release() override {
        --FakeCalls::Instance().references;
        return static_cast<ULONG>(--references);
    }

    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** out) override {
        *out = nullptr;
        if (const HRESULT result = Enter(parentResult); result != parentResult) return result;
        if (parent && !m_null) {
            *out = static_cast<IDispatch*>(static_cast<IAccessible*>(parent));
            parent->AddRef();
        }
        return parentResult;
    }
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* out) override {
        ++countCalls;
        *out = hasCount ? count : static_cast<LONG>(children.size());
        return Enter(countResult);
    }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT, IDispatch** out) override {
        *out = nullptr;
        return E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT, BSTR* out) override {
        const HRESULT result = Text(nameResult, name, out);
        if (nullName) {
            ::SysFreeString(*out);
            *out = nullptr;
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT, BSTR* out) override { return Text(valueResult, value, out); }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT, VARIANT* out) override {
        ++roleCalls;
        return Variant(roleResult, role, out);
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT, VARIANT* out) override { return Variant(stateResult, state, out); }
    HRESULT STDMETHODCALLTYPE accLocation(LONG* x, LONG* y, LONG* w, LONG* h, VARIANT) override {
        ++locationCalls;
        *x = left;
        *y = top;
        *w = width;
        *h = height;
        return Enter(locationResult);
    }

    // IEnumVARIANT: what AccessibleChildren asks.
    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* out, ULONG* fetched) override {
        ++childrenCalls;
        if (fetched) *fetched = 0;
        const HRESULT result = Enter(childrenResult);
        if (m_null) return S_OK;
        ULONG given = 0;
        for (; given < wanted && m_position < children.size(); ++given, ++m_position) ::VariantCopy(out + given, &Child(m_position));
        if (fetched) *fetched = hasObtained ? static_cast<ULONG>(obtained) : given;
        if (FAILED(result) || result != S_OK) return result;
        return given == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG skipped) override {
        m_position += skipped;
        return m_position <= children.size() ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        m_position = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
        *copy = nullptr;
        return E_NOTIMPL;
    }

    // Identities.
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID, REFIID riid, void** object) override {
        *object = nullptr;
        if (const HRESULT result = Enter(S_OK); FAILED(result)) return result;
        if (m_null) return S_OK;
        for (const IID& id : nullInterfaces)
            if (IsEqualIID(id, riid)) return S_OK;
        if (!hasAccessibleEx || !IsEqualIID(riid, IidOf<IAccessibleEx>())) return E_NOINTERFACE;
        *object = static_cast<IAccessibleEx*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetObjectForChild(LONG child, IAccessibleEx** object) override {
        *object = nullptr;
        if (const HRESULT result = Enter(S_OK); FAILED(result)) return result;
        if (FakeAccessible* found = objectForChild && !m_null ? objectForChild(child) : nullptr) {
            *object = found;
            found->AddRef();
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIAccessiblePair(IAccessible**, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRuntimeId(SAFEARRAY** id) override {
        *id = nullptr;
        if (const HRESULT result = Enter(runtimeIdResult); FAILED(result)) return result;
        if (m_null) return S_OK;
        if (makeRuntimeId) {
            *id = makeRuntimeId();
            return S_OK;
        }
        *id = ::SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(runtimeId.size()));
        for (LONG index = 0; index < static_cast<LONG>(runtimeId.size()); ++index)
            ::SafeArrayPutElement(*id, &index, &runtimeId[static_cast<std::size_t>(index)]);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ConvertReturnedElement(IRawElementProviderSimple*, IAccessibleEx**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIdentityString(DWORD, BYTE** text, DWORD* length) override {
        *text = nullptr;
        *length = 0;
        if (const HRESULT result = Enter(identityResult); FAILED(result)) return result;
        *length = static_cast<DWORD>(identity.size());
        if (m_null) return S_OK;
        *text = static_cast<BYTE*>(::CoTaskMemAlloc(identity.size() + 1));
        for (std::size_t index = 0; index < identity.size(); ++index) (*text)[index] = static_cast<BYTE>(identity[index]);
        return S_OK;
    }

    // What no test asks.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR*, VARIANT, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE accSelect(LONG, VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE accHitTest(LONG, LONG, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }

private:
    // Counts the call. E_FAIL for a spoilt one, else `result`; m_null for one that has to answer null.
    HRESULT Enter(HRESULT result) {
        ++calls;
        m_null = false;
        const FakeCalls::Spoil spoil = FakeCalls::Instance().Count();
        m_null = spoil == FakeCalls::Spoil::NullWithSuccess;
        return spoil == FakeCalls::Spoil::Fail ? E_FAIL : result;
    }
    HRESULT Text(HRESULT result, const std::wstring& text, BSTR* out) {
        *out = nullptr;
        const HRESULT entered = Enter(result);
        if (entered == result && !m_null) *out = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        return entered;
    }
    HRESULT Variant(HRESULT result, CComVariant& answer, VARIANT* out) {
        const HRESULT entered = Enter(result);
        if (entered == result && !m_null) ::VariantCopy(out, &Plain(answer));
        return entered;
    }
    VARIANT& Child(std::size_t index) { return Plain(children[index]); }
    // CComVariant's own address operator empties it.
    static VARIANT& Plain(CComVariant& variant) { return variant; }

    std::vector<FakeAccessible*> m_borrowed;
    std::size_t m_position = 0;
    bool m_null = false;
};

// The fakes of a test. When it goes, so do the references that their child lists hold.
class FakeObjects {
public:
    FakeObjects() {
        FakeCalls::Instance().Reset();
        FakeCalls::Instance().references = 0;
    }
    ~FakeObjects() {
        FakeCalls::Instance().Reset();
        for (FakeAccessible& object : m_objects) object.ReturnChildren();
    }

    FakeAccessible& Add(LONG role = 0, const wchar_t* name = nullptr) { return m_objects.emplace_back(role, name); }
    // References that the code under test holds now.
    int OutstandingReferences() const { return FakeCalls::Instance().references; }

private:
    std::deque<FakeAccessible> m_objects;
};

}  // namespace Zorvex::Testing
