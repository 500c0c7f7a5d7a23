// The COM object of one element: every interface that a real server offers, over the data of the desktop.
#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "Platform/Simulated/Desktop.h"
#include "Platform/Windows.h"

#ifdef _WIN32
#include <oleidl.h>
#define VANTREL_OLE_WINDOW , public IOleWindow
#else
#define VANTREL_OLE_WINDOW
#endif

namespace Simulated {

// Safe to use after its element has been removed, its window destroyed, or the desktop replaced: it keeps the data
// alive, and answers what the desktop says of removed elements.
class AccessibleElement final : public IAccessible2,
                                public IServiceProvider,
                                public IAccessibleEx,
                                public IRawElementProviderSimple,
                                public IAccIdentity,
                                public IAccessibleText VANTREL_OLE_WINDOW {
public:
    // Born with one reference. Only Desktop::ObjectOf makes these, under the desktop's lock.
    AccessibleElement(std::shared_ptr<Desktop> desktop, ElementPtr element);
    AccessibleElement(const AccessibleElement&) = delete;
    AccessibleElement& operator=(const AccessibleElement&) = delete;

    // The object behind an interface pointer, with a reference for the caller; null for a foreign object. Is not
    // counted as a call.
    static AccessibleElement* From(IUnknown* object);
    const ElementPtr& Data() const { return m_element; }
    Desktop& Owner() const { return *m_desktop; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // IDispatch: late binding isn't offered.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID locale, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override;

    // IAccessible: the tree.
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override;
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override;
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override;
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override;
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override;
    HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) override;
    HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) override;
    // Properties.
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override;
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) override;
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override;
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override;
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) override;
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) override;
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override;
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override;
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override;
    // Actions.
    HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override;
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override;
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT child, BSTR name) override;
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) override;

    // IAccessible2.
    HRESULT STDMETHODCALLTYPE get_nRelations(LONG* count) override;
    HRESULT STDMETHODCALLTYPE get_relation(LONG index, IAccessibleRelation** relation) override;
    HRESULT STDMETHODCALLTYPE get_relations(LONG capacity, IAccessibleRelation** relations, LONG* count) override;
    HRESULT STDMETHODCALLTYPE role(LONG* role) override;
    HRESULT STDMETHODCALLTYPE scrollTo(IA2ScrollType type) override;
    HRESULT STDMETHODCALLTYPE scrollToPoint(IA2CoordinateType type, LONG x, LONG y) override;
    HRESULT STDMETHODCALLTYPE get_groupPosition(LONG* level, LONG* similar, LONG* position) override;
    HRESULT STDMETHODCALLTYPE get_states(AccessibleStates* states) override;
    HRESULT STDMETHODCALLTYPE get_extendedRole(BSTR* role) override;
    HRESULT STDMETHODCALLTYPE get_localizedExtendedRole(BSTR* role) override;
    HRESULT STDMETHODCALLTYPE get_nExtendedStates(LONG* count) override;
    HRESULT STDMETHODCALLTYPE get_extendedStates(LONG capacity, BSTR** states, LONG* count) override;
    HRESULT STDMETHODCALLTYPE get_localizedExtendedStates(LONG capacity, BSTR** states, LONG* count) override;
    HRESULT STDMETHODCALLTYPE get_uniqueID(LONG* id) override;
    HRESULT STDMETHODCALLTYPE get_windowHandle(HWND* window) override;
    HRESULT STDMETHODCALLTYPE get_indexInParent(LONG* index) override;
    HRESULT STDMETHODCALLTYPE get_locale(IA2Locale* locale) override;
    HRESULT STDMETHODCALLTYPE get_attributes(BSTR* attributes) override;

    // IAccessibleText.
    HRESULT STDMETHODCALLTYPE addSelection(LONG start, LONG end) override;
    HRESULT STDMETHODCALLTYPE get_attributes(LONG offset, LONG* start, LONG* end, BSTR* attributes) override;
    HRESULT STDMETHODCALLTYPE get_caretOffset(LONG* offset) override;
    HRESULT STDMETHODCALLTYPE get_characterExtents(LONG offset, IA2CoordinateType type, LONG* x, LONG* y, LONG* width, LONG* height) override;
    HRESULT STDMETHODCALLTYPE get_nSelections(LONG* count) override;
    HRESULT STDMETHODCALLTYPE get_offsetAtPoint(LONG x, LONG y, IA2CoordinateType type, LONG* offset) override;
    HRESULT STDMETHODCALLTYPE get_selection(LONG index, LONG* start, LONG* end) override;
    HRESULT STDMETHODCALLTYPE get_text(LONG start, LONG end, BSTR* text) override;
    HRESULT STDMETHODCALLTYPE get_textBeforeOffset(LONG offset, IA2TextBoundaryType type, LONG* start, LONG* end, BSTR* text) override;
    HRESULT STDMETHODCALLTYPE get_textAfterOffset(LONG offset, IA2TextBoundaryType type, LONG* start, LONG* end, BSTR* text) override;
    HRESULT STDMETHODCALLTYPE get_textAtOffset(LONG offset, IA2TextBoundaryType type, LONG* start, LONG* end, BSTR* text) override;
    HRESULT STDMETHODCALLTYPE removeSelection(LONG index) override;
    HRESULT STDMETHODCALLTYPE setCaretOffset(LONG offset) override;
    HRESULT STDMETHODCALLTYPE setSelection(LONG index, LONG start, LONG end) override;
    HRESULT STDMETHODCALLTYPE get_nCharacters(LONG* count) override;
    HRESULT STDMETHODCALLTYPE scrollSubstringTo(LONG start, LONG end, IA2ScrollType type) override;
    HRESULT STDMETHODCALLTYPE scrollSubstringToPoint(LONG start, LONG end, IA2CoordinateType type, LONG x, LONG y) override;
    HRESULT STDMETHODCALLTYPE get_newText(IA2TextSegment* text) override;
    HRESULT STDMETHODCALLTYPE get_oldText(IA2TextSegment* text) override;

    // IServiceProvider, IAccessibleEx, IRawElementProviderSimple, IAccIdentity.
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID riid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetObjectForChild(LONG child, IAccessibleEx** object) override;
    HRESULT STDMETHODCALLTYPE GetIAccessiblePair(IAccessible** accessible, LONG* child) override;
    HRESULT STDMETHODCALLTYPE GetRuntimeId(SAFEARRAY** id) override;
    HRESULT STDMETHODCALLTYPE ConvertReturnedElement(IRawElementProviderSimple* provider, IAccessibleEx** object) override;
    HRESULT STDMETHODCALLTYPE get_ProviderOptions(ProviderOptions* options) override;
    HRESULT STDMETHODCALLTYPE GetPatternProvider(PATTERNID pattern, IUnknown** provider) override;
    HRESULT STDMETHODCALLTYPE GetPropertyValue(PROPERTYID property, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE get_HostRawElementProvider(IRawElementProviderSimple** provider) override;
    HRESULT STDMETHODCALLTYPE GetIdentityString(DWORD child, BYTE** text, DWORD* length) override;

#ifdef _WIN32
    // The platform asks for it to find an object's window.
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL enter) override;
#endif

private:
    friend class CallScope;
    ~AccessibleElement();

    HRESULT AnswerText(Call call, const VARIANT& child, BSTR* text, std::optional<std::wstring> (*read)(const Element&));
    HRESULT NotOffered(Call call);
    template <class Number, class Read>
    HRESULT AnswerNumber(Call call, Number* number, Read read);
    // Fills the variant with what the element is from this object: a child id, or an object.
    void PutElement(VARIANT* variant, const ElementPtr& element);
    ElementPtr ElementAt(const ElementPtr& container, LONG x, LONG y);
    std::vector<ElementPtr> Selected();
    bool Offers(const IID& iid) const;
    IUnknown* Face(const IID& iid);

    const std::shared_ptr<Desktop> m_desktop;
    const ElementPtr m_element;
    std::atomic<ULONG> m_references{1};
};

// One call on an object while it lasts: holds the desktop's lock, has counted the call and met the plan.
class CallScope {
public:
    // `child` null: the call is about the object itself. Throws ServerFailure if the plan says so.
    CallScope(AccessibleElement& object, Call call, const VARIANT* child = nullptr, std::string_view iid = {});

    // What to answer at once, with empty out values.
    std::optional<HRESULT> early;
    ElementPtr target;
    std::optional<Fault> fault;
    // The plan's result where it has one beside other values, else this one.
    HRESULT Finish(HRESULT result) const { return fault && fault->result ? *fault->result : result; }

private:
    std::unique_lock<std::recursive_mutex> m_lock;
};

// Variants of the answers.
void PutNumber(VARIANT* variant, LONG value);
void PutText(VARIANT* variant, std::wstring_view text);
void PutObject(VARIANT* variant, IDispatch* object);
// A variant of that type with a harmless value: zero, null, or a short text.
void PutWrongType(VARIANT* variant, VARTYPE type);
BSTR NewText(std::wstring_view text);

}  // namespace Simulated
