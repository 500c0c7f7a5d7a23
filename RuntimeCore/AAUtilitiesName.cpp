#include "RuntimeCore/AAUtilitiesName.h"

#include <algorithm>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "Common/include/VariantEquals.h"
#include "RuntimeCore/AAUtilitiesLocation.h"
#include "RuntimeCore/AAUtilitiesStates.h"

namespace Zorvex::AAUtil {

namespace {

// A client area counts as an editable field only if it is known not to be read-only.
bool MayRepeatItsValue(IAccessible* acc, LONG role) {
    if (role == ROLE_SYSTEM_TEXT) return true;
    return role == ROLE_SYSTEM_CLIENT && IsReadOnlyContainer(acc) == false;
}

CString WithoutLineBreaks(const CComBSTR& text) {
    CString result = text.ToString();
    NormalizeLineBreaks(result);
    return result;
}

CString NameOfWindow(HWND hWnd, UnreadableName unreadable) {
    CComPtr<IAccessible> acc;
    CComVariant child;
    return GetAALastChildWithSameXLeft(hWnd, acc, child) ? GetAAElementName(acc, child, unreadable) : CString();
}

}  // namespace

void NormalizeLineBreaks(CString& text) {
    std::ranges::replace(text, L'\r', L' ');
    std::ranges::replace(text, L'\n', L' ');
}

CString GetAAElementName(IAccessible* acc, const VARIANT& child, UnreadableName unreadable) {
    if (!acc) return {};
    CComVariant varRole;
    if (FAILED(acc->get_accRole(child, &varRole))) return {};
    const LONG role = varRole.vt == VT_I4 ? varRole.lVal : 0;

    CComBSTR name;
    const bool nameWasRead = SUCCEEDED(acc->get_accName(child, &name));
    if (!nameWasRead && unreadable == UnreadableName::EndsTheRule) return {};
    if (nameWasRead && !name.IsEmpty()) {
        if (MayRepeatItsValue(acc, role)) {
            CComBSTR value;
            if (SUCCEEDED(acc->get_accValue(child, &value)) && BstrEquals(name, value)) return {};
        }
        return WithoutLineBreaks(name);
    }
    if (role == ROLE_SYSTEM_TEXT && IsReadOnlyContainer(acc) == true) {
        CComBSTR value;
        if (SUCCEEDED(acc->get_accValue(child, &value))) return WithoutLineBreaks(value);
    }
    return {};
}

bool GetAALastChildWithSameXLeft(HWND hWnd, CComPtr<IAccessible>& outAcc, CComVariant& outChild) {
    outAcc.Release();
    outChild.Clear();
    CComPtr<IAccessible> spParent;
    if (FAILED(ObjectFromWindow(hWnd, OBJID_WINDOW, spParent)) || !spParent)
        return false;
    std::vector<AAObjectWrapper> children;
    if (!AAObjectWrapper::GetChildren(spParent, children)) {
        // The text names another function and always shows 0, both on purpose.
        LogError("GetAAChildWithSameRectangle: spParent->get_accChildCount failed with hRes=0x%X", 0);
        return false;
    }
    const CComVariant self(CHILDID_SELF);
    if (children.empty()) {
        outAcc = spParent;
        outChild = self;
        return true;
    }
    RECT parentLocation{};
    if (FAILED(GetAALocation(spParent, self, parentLocation))) return false;
    const auto startsAtSameLeft = [&](const AAObjectWrapper& child) {
        RECT location{};
        return child.IsValid() && SUCCEEDED(GetAALocation(child.container, child.childId, location)) &&
               location.left == parentLocation.left;
    };
    // From the end, so that no child before the answer is asked.
    const auto last = std::find_if(children.rbegin(), children.rend(), startsAtSameLeft);
    if (last == children.rend()) return false;
    outAcc = last->container;
    outChild = last->childId;
    return true;
}

CString GetWindowTextFromAA(HWND hWnd) { return NameOfWindow(hWnd, UnreadableName::IsEmpty); }

CString AaNameFromWindow(HWND hWnd) { return NameOfWindow(hWnd, UnreadableName::EndsTheRule); }

}  // namespace Zorvex::AAUtil
