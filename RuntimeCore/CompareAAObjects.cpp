#include "RuntimeCore/CompareAAObjects.h"

#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/CComVariant.h"
#include "Common/include/FailureOrEFail.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "Common/include/VariantEquals.h"
#include "RuntimeCore/AAUtilitiesFind.h"

namespace Zorvex {

namespace {

// A runtime id has a handful of numbers. More than this is garbage.
constexpr LONG LongestRuntimeId = 4096;
// An identity string has some tens of bytes. More than this is garbage.
constexpr DWORD LongestIdentity = 1 << 20;

// One property of one element. A failing read counts as the empty value, whatever the server left behind.
struct VariantRead {
    HRESULT result;
    CComVariant value;

    VariantRead(IAccessible& acc, const VARIANT& child, HRESULT (STDMETHODCALLTYPE IAccessible::*read)(VARIANT, VARIANT*)) {
        result = (acc.*read)(child, &value);
        if (FAILED(result)) value.Clear();
    }
};

struct TextRead {
    HRESULT result;
    CComBSTR value;

    TextRead(IAccessible& acc, const VARIANT& child, HRESULT (STDMETHODCALLTYPE IAccessible::*read)(VARIANT, BSTR*)) {
        result = (acc.*read)(child, &value);
        if (FAILED(result)) value.Empty();
    }
    const wchar_t* Text() const { return value.m_str; }
};

struct CountRead {
    HRESULT result;
    LONG value = 0;

    explicit CountRead(IAccessible& acc) {
        result = acc.get_accChildCount(&value);
        if (FAILED(result)) value = 0;
    }
};

struct LocationRead {
    HRESULT result;
    LONG x = 0, y = 0, width = 0, height = 0;

    LocationRead(IAccessible& acc, const VARIANT& child) {
        result = acc.accLocation(&x, &y, &width, &height, child);
        if (FAILED(result)) x = y = width = height = 0;
    }
    bool operator==(const LocationRead&) const = default;
};

bool AreSameObject(IAccessible& acc1, IAccessible& acc2) {
    CComPtr<IUnknown> unknown1, unknown2;
    const HRESULT result1 = acc1.QueryInterface(IidOf<IUnknown>(), reinterpret_cast<void**>(&unknown1));
    const HRESULT result2 = acc2.QueryInterface(IidOf<IUnknown>(), reinterpret_cast<void**>(&unknown2));
    return SUCCEEDED(result1) && SUCCEEDED(result2) && unknown1.p && unknown1.p == unknown2.p;
}

struct SafeArrayDeleter {
    void operator()(SAFEARRAY* array) const { ::SafeArrayDestroy(array); }
};
using SafeArrayOwner = std::unique_ptr<SAFEARRAY, SafeArrayDeleter>;

// Whether reading one element writes exactly one 32-bit number.
bool HoldsNumbers(const SAFEARRAY& array) {
    constexpr USHORT owning = FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT;
    return array.cDims == 1 && array.cbElements == sizeof(LONG) && (array.fFeatures & owning) == 0;
}

// Two ids are the same if their numbers are, one by one: 1 2 is not 12.
using RuntimeId = std::vector<LONG>;

HRESULT ReadRuntimeId(IAccessible& acc, LONG childId, RuntimeId& id) {
    CComPtr<IServiceProvider> services;
    HRESULT result = acc.QueryInterface(IidOf<IServiceProvider>(), reinterpret_cast<void**>(&services));
    if (FAILED(result)) return result;
    if (!services.p) return E_NOINTERFACE;
    CComPtr<IAccessibleEx> element;
    result = services->QueryService(IidOf<IAccessibleEx>(), IidOf<IAccessibleEx>(), reinterpret_cast<void**>(&element));
    if (FAILED(result)) return result;
    if (!element.p) return E_NOINTERFACE;

    if (childId != CHILDID_SELF) {
        CComPtr<IAccessibleEx> child;
        result = element->GetObjectForChild(childId, &child);
        if (FAILED(result)) return result;
        if (!child.p) return E_NOINTERFACE;
        element = std::move(child);
    }

    SAFEARRAY* raw = nullptr;
    result = element->GetRuntimeId(&raw);
    if (FAILED(result)) return result;
    const SafeArrayOwner array(raw);
    if (!array) return E_UNEXPECTED;
    if (!HoldsNumbers(*array)) return DISP_E_TYPEMISMATCH;
    LONG upperBound = -1;
    result = ::SafeArrayGetUBound(array.get(), 1, &upperBound);
    if (FAILED(result)) return result;
    if (upperBound >= LongestRuntimeId) return E_UNEXPECTED;
    try {
        for (LONG index = 0; index <= upperBound; ++index) {
            LONG number = 0;
            result = ::SafeArrayGetElement(array.get(), &index, &number);
            if (FAILED(result)) return result;
            id.push_back(number);
        }
    } catch (const std::bad_alloc&) {
        throw ComException(E_OUTOFMEMORY);
    }
    return S_OK;
}

// The bytes that identify an element within its server.
struct Identity {
    BYTE* bytes = nullptr;
    DWORD length = 0;

    Identity() = default;
    Identity(const Identity&) = delete;
    Identity& operator=(const Identity&) = delete;
    ~Identity() { ::CoTaskMemFree(bytes); }

    HRESULT Read(IAccIdentity& source, const VARIANT& child) {
        const HRESULT result = source.GetIdentityString(static_cast<DWORD>(child.lVal), &bytes, &length);
        if (FAILED(result)) return result;
        if (length > LongestIdentity) return E_FAIL;
        if (!bytes) length = 0;
        return result;
    }
};

// The last test: the parents, compared without theirs.
BOOL CompareParents(IAccessible& acc1, IAccessible& acc2) {
    CComPtr<IDispatch> parent1, parent2;
    const HRESULT result1 = acc1.get_accParent(&parent1);
    const HRESULT result2 = acc2.get_accParent(&parent2);
    if (result1 != result2) {
        LogVerbose("CompareAAObjects: getParent res1=0x%X res2=0x%X, return FALSE", result1, result2);
        return FALSE;
    }
    LogVerbose("CompareAAObjects: returning Compare(parents)");
    // Here too a failing read counts as the empty value, whatever the server left behind.
    if (FAILED(result1)) parent1.Release();
    if (FAILED(result2)) parent2.Release();
    CComPtr<IAccessible> parentAcc1, parentAcc2;
    parent1.QueryInterface(parentAcc1);
    parent2.QueryInterface(parentAcc2);
    const CComVariant self(CHILDID_SELF);
    return CompareAAObjects(std::move(parentAcc1), self, std::move(parentAcc2), self, FALSE);
}

// The properties, from the cheapest difference to the last. "Diferent" is spelt so on purpose.
bool HaveEqualProperties(IAccessible& acc1, const VARIANT& child1, IAccessible& acc2, const VARIANT& child2) {
    LogVerbose("CompareAAObjects: Compare roles");
    const VariantRead role1(acc1, child1, &IAccessible::get_accRole), role2(acc2, child2, &IAccessible::get_accRole);
    if (role1.result != role2.result || !VariantEquals(role1.value, role2.value)) {
        LogVerbose("CompareAAObjects: Diferent roles, return FALSE");
        return false;
    }
    LogVerbose("CompareAAObjects: Compare names");
    const TextRead name1(acc1, child1, &IAccessible::get_accName), name2(acc2, child2, &IAccessible::get_accName);
    if (name1.result != name2.result || !BstrEquals(name1.value, name2.value)) {
        LogVerbose("CompareAAObjects: Diferent names '%ls' '%ls', return FALSE", name1.Text(), name2.Text());
        return false;
    }
    LogVerbose("CompareAAObjects: Compare values");
    const TextRead value1(acc1, child1, &IAccessible::get_accValue), value2(acc2, child2, &IAccessible::get_accValue);
    if (value1.result != value2.result || !BstrEquals(value1.value, value2.value)) {
        LogVerbose("CompareAAObjects: Diferent values '%ls' '%ls', return FALSE", value1.Text(), value2.Text());
        return false;
    }
    // The containers' counts, also where the elements are simple ones.
    LogVerbose("CompareAAObjects: Compare children counts");
    const CountRead count1(acc1), count2(acc2);
    if (count1.result != count2.result || count1.value != count2.value) {
        LogVerbose("CompareAAObjects: Diferent accChildCount values '%lu' '%lu', return FALSE", count1.value, count2.value);
        return false;
    }
    LogVerbose("CompareAAObjects: Compare rectangles");
    const LocationRead location1(acc1, child1), location2(acc2, child2);
    if (location1 != location2) {
        LogVerbose("CompareAAObjects: Diferent rectangles, return FALSE");
        return false;
    }
    return true;
}

}  // namespace

BOOL CompareAAObjects(CComPtr<IAccessible> acc1, const VARIANT& child1, CComPtr<IAccessible> acc2, const VARIANT& child2,
                      BOOL compareParents) {
    LogVerbose("CompareAAObjects starts");
    if (!acc1.p && !acc2.p) {
        LogVerbose("CompareAAObjects: NULL objects, return TRUE");
        return TRUE;
    }
    if (!acc1.p || !acc2.p) {
        LogVerbose("CompareAAObjects: one NULL object, return FALSE");
        return FALSE;
    }
    LogVerbose("Compare AA child indexes");
    if (!VariantEquals(child1, child2)) {
        LogVerbose("CompareAAObjects: vChild1 != vChild2, return FALSE");
        return FALSE;
    }
    LogVerbose("CompareAAObjects: Compare IUnknown pointers");
    if (AreSameObject(*acc1, *acc2)) {
        LogVerbose("CompareAAObjects: IsEqualObject, return TRUE");
        return TRUE;
    }
    LogVerbose("CompareAAObjects: Try IAccessibleEx Runtime ID");
    BOOL equal = FALSE;
    // A child id of another type has no number to ask for.
    if (child1.vt == VT_I4 && SUCCEEDED(AACompareRuntimeId(acc1, child1.lVal, acc2, child2.lVal, equal))) {
        LogVerbose("CompareAAObjects: return AACompareRuntimeId=%d", equal);
        return equal;
    }
    // Before the identity string and after the runtime id: the order is the design.
    LogVerbose("CompareAAObjects: Compare states");
    {
        const VariantRead state1(*acc1, child1, &IAccessible::get_accState), state2(*acc2, child2, &IAccessible::get_accState);
        if (state1.result != state2.result || !VariantEquals(state1.value, state2.value)) {
            LogVerbose("CompareAAObjects: Diferent states, return FALSE");
            return FALSE;
        }
    }
    LogVerbose("CompareAAObjects: Try IAccIdentity identity string");
    if (SUCCEEDED(CompareAccIdentities(acc1, child1, acc2, child2, equal))) {
        LogVerbose("CompareAAObjects: return CompareAccIdentities=%d", equal);
        return equal;
    }
    if (!HaveEqualProperties(*acc1, child1, *acc2, child2)) return FALSE;
    LogVerbose("CompareAAObjects: Compare parents");
    if (!compareParents) {
        LogVerbose("CompareAAObjects: return TRUE");
        return TRUE;
    }
    return CompareParents(*acc1, *acc2);
}

HRESULT AACompareRuntimeId(IAccessible* acc1, LONG childId1, IAccessible* acc2, LONG childId2, BOOL& equal) {
    equal = FALSE;
    if (!acc1 || !acc2) return E_INVALIDARG;
    RuntimeId id1, id2;
    const HRESULT result1 = ReadRuntimeId(*acc1, childId1, id1);
    const HRESULT result2 = ReadRuntimeId(*acc2, childId2, id2);
    if (FAILED(result1) && FAILED(result2)) return E_FAIL;
    // An element with a runtime id is never the same as one without: an answer, not a fall-through, on purpose.
    if (FAILED(result1) || FAILED(result2)) return S_OK;
    if (id1.empty() && id2.empty()) return E_FAIL;
    equal = id1 == id2;
    return S_OK;
}

HRESULT CompareAccIdentities(IAccessible* acc1, const VARIANT& child1, IAccessible* acc2, const VARIANT& child2, BOOL& equal) {
    equal = FALSE;
    if (!acc1) return ParameterConditionNotMet("acc1", "CompareAccIdentities failed - null parameter acc1");
    if (!acc2) return ParameterConditionNotMet("acc2", "CompareAccIdentities failed - null parameter acc2");
    if (child1.vt != VT_I4) return ParameterConditionNotMet("child1.vt == VT_I4", "CompareAccIdentities failed - child1 is not a VT_I4");
    if (child2.vt != VT_I4) return ParameterConditionNotMet("child2.vt == VT_I4", "CompareAccIdentities failed - child2 is not a VT_I4");

    CComPtr<IAccIdentity> accIdentity1, accIdentity2;
    HRESULT result = acc1->QueryInterface(IidOf<IAccIdentity>(), reinterpret_cast<void**>(&accIdentity1));
    if (FAILED(result) || !accIdentity1.p)
        return FailureOrEFail(CallFailed("acc1->QueryInterface(&accIdentity1)", result, "CompareAccIdentities: failed to get IAccIdentity for acc1"));
    result = acc2->QueryInterface(IidOf<IAccIdentity>(), reinterpret_cast<void**>(&accIdentity2));
    if (FAILED(result) || !accIdentity2.p)
        return FailureOrEFail(CallFailed("acc2->QueryInterface(&accIdentity2)", result, "CompareAccIdentities: failed to get IAccIdentity for acc2"));

    Identity identity1, identity2;
    result = identity1.Read(*accIdentity1, child1);
    if (FAILED(result))
        return CallFailed("accIdentity1->GetIdentityString(child1.lVal, &idString1, &idString1Len)", result,
                          "CompareAccIdentities: failed to GetIdentityString for acc1");
    // The second one fails without a line of its own, on purpose.
    result = identity2.Read(*accIdentity2, child2);
    if (FAILED(result)) return result;

    if (identity1.length == 0 || identity2.length == 0) return E_FAIL;
    equal = identity1.length == identity2.length && std::memcmp(identity1.bytes, identity2.bytes, identity1.length) == 0;
    return S_OK;
}

bool IsDescendantOfWnd(HWND hWnd, IAccessible* acc, const VARIANT& child, BOOL& isDescendant) {
    if (!::IsWindow(hWnd) || !acc || child.vt != VT_I4) {
        LogError("IsDescendantOfWnd: Invalid arguments");
        return false;
    }
    isDescendant = FALSE;
    CComPtr<IAccessible> windowObject;
    const HRESULT result = ObjectFromWindow(hWnd, OBJID_WINDOW, windowObject);
    if (FAILED(result) || !windowObject.p) {
        LogError("IsDescendantOfWnd: AccessibleObjectFromWindow failed");
        return false;
    }
    LONG visitedElements = 0;
    AAObjectWrapper::WalkDescendantsBfs(windowObject, [&](const AAObjectWrapper& visited) {
        if (++visitedElements > AAUtil::MaximumSearchedElements) return AATreeVisitResult::Stop;
        if (!CompareAAObjects(visited.container, visited.childId, acc, child, FALSE)) return AATreeVisitResult::Continue;
        isDescendant = TRUE;
        return AATreeVisitResult::Stop;
    });
    return true;
}

}  // namespace Zorvex
