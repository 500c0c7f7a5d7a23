#include "RuntimeCore/Selectors/Generation/SelectorIndex.h"

#include <queue>
#include <utility>
#include <vector>

#include "Common/UTILITY/AAObjectWrapper.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "Common/include/Timer.h"
#include "Common/include/VariantEquals.h"
#include "RuntimeCore/AAUtilitiesFind.h"
#include "RuntimeCore/AttributeRules.h"
#include "RuntimeCore/CompareAAObjects.h"
#include "RuntimeCore/ListViewItems.h"
#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"

namespace Zorvex::Generation {

namespace {

using namespace AttributeRules;

bool MatchesPattern(const CString& pattern, std::wstring_view text) { return WildcardMatch(pattern, text, false); }

bool MatchesName(const CString& wanted, IAccessible* acc, const VARIANT& childId) {
    CString name;
    ReadName(acc, childId, name);
    return MatchesPattern(wanted, name);
}

bool MatchesRole(const CString& wanted, IAccessible* acc, const VARIANT& childId) {
    CString role;
    ReadRole(acc, childId, role);
    return role == wanted || BstrEquals(CComBSTR(role), CComBSTR(wanted));
}

// A text that the element has, empty or not; one that it hasn't fits no pattern.
bool MatchesProperty(HRESULT (*rule)(IAccessible*, const VARIANT&, CString&), const CString& wanted, IAccessible* acc,
                     const VARIANT& childId) {
    CString text;
    return SUCCEEDED(rule(acc, childId, text)) && MatchesPattern(wanted, text);
}

bool MatchesVirtualName(const CString& wanted, IAccessible* acc, const VARIANT& childId) {
    CComVariant value;
    if (!GetListViewItemVirtualName(acc, childId, value) || value.vt != VT_BSTR) return false;
    return MatchesPattern(wanted, {value.bstrVal ? value.bstrVal : L"", ::SysStringLen(value.bstrVal)});
}

// What is in a menu that can't be opened isn't there for a user.
bool IsUnavailableMenuItem(IAccessible& acc) {
    const CComVariant self(CHILDID_SELF);
    CComVariant role;
    if (FAILED(acc.get_accRole(self, &role)) || role.vt != VT_I4 || role.lVal != ROLE_SYSTEM_MENUITEM) return false;
    CComVariant state;
    return SUCCEEDED(acc.get_accState(self, &state)) && state.vt == VT_I4 && (state.lVal & STATE_SYSTEM_UNAVAILABLE) != 0;
}

enum class Visit { Enter, PassBy, Stop };

// Visits the elements below the root level by level, until a visitor says stop. Elements that aren't valid are
// skipped. `enter` is asked before the children of each container are read. False if there are too many elements: the
// tree may have no end, and everything that is queued is a reference held.
template <class EnterContainer, class VisitElement>
bool WalkLevelByLevel(IAccessible* root, EnterContainer enter, VisitElement visit) {
    std::queue<CComPtr<IAccessible>> containers;
    containers.push(root);
    LONG visited = 0;
    std::vector<CComVariant> children;
    while (!containers.empty()) {
        const CComPtr<IAccessible> container = std::move(containers.front());
        containers.pop();
        if (enter() == Visit::Stop) return true;
        if (!container || IsUnavailableMenuItem(*container)) continue;
        if (FAILED(AAObjectWrapper::GetVariantChildren(*container, children))) continue;
        for (CComVariant& raw : children) {
            AAObjectWrapper child = AAObjectWrapper::FromChild(container, std::move(raw));
            if (!child.IsValid()) continue;
            if (++visited > AAUtil::MaximumSearchedElements) return false;
            const Visit answer = visit(child);
            if (answer == Visit::Stop) return true;
            if (answer == Visit::Enter && child.IsFullObject()) containers.push(std::move(child.container));
        }
        children.clear();
    }
    return true;
}

}  // namespace

bool MatchesAttributes(const IdentifyingAttributes& wanted, IAccessible* acc, const VARIANT& childId) {
    return (wanted.name.empty() || MatchesName(wanted.name, acc, childId)) &&
           (wanted.role.empty() || MatchesRole(wanted.role, acc, childId)) &&
           (wanted.automationId.empty() || MatchesProperty(ReadAutomationId, wanted.automationId, acc, childId)) &&
           (wanted.labeledBy.empty() || MatchesProperty(ReadLabeledBy, wanted.labeledBy, acc, childId)) &&
           (wanted.virtualName.empty() || MatchesVirtualName(wanted.virtualName, acc, childId));
}

bool GetAAIndex(IAccessible* rootAcc, IAccessible* acc, const VARIANT& childId, bool checkUnique, int timeoutMs,
                const IdentifyingAttributes& wanted, LONG& index) {
    index = 0;
    Timer timer(timeoutMs);
    LONG count = 0;
    bool targetFound = false;
    bool noTimeForContainer = false, noTimeForChild = false;
    const auto enter = [&] {
        noTimeForContainer = timer.IsOver();
        return noTimeForContainer ? Visit::Stop : Visit::Enter;
    };
    const auto visit = [&](const AAObjectWrapper& child) {
        noTimeForChild = timer.IsOver();
        if (noTimeForChild) return Visit::Stop;
        if (!targetFound && CompareAAObjects(child.container, child.childId, acc, childId, TRUE)) {
            targetFound = true;
            index = ++count;
            // A second match settles that the place matters, wherever it is. What is below the target isn't looked at.
            return checkUnique && count == 1 ? Visit::PassBy : Visit::Stop;
        }
        if (!MatchesAttributes(wanted, child.container, child.childId)) return Visit::Enter;
        ++count;
        return targetFound ? Visit::Stop : Visit::Enter;
    };
    if (!WalkLevelByLevel(rootAcc, enter, visit)) {
        LogError("GetAAIndex: more than %d elements", AAUtil::MaximumSearchedElements);
        return false;
    }
    if (noTimeForContainer) {
        LogError("GetAAIndex: timeout");
        return false;
    }
    if (noTimeForChild) {
        LogError("GetAAIndex: the %d ms timeout has expired", timeoutMs);
        return false;
    }
    if (count == 0) {
        LogError("GetAAIndex: no elements with matching attributes were found");
        index = -1;
        return false;
    }
    if (count == 1) {
        LogVerbose("GetAAIndex: setting unique index");
        index = 0;
    }
    return true;
}

bool GetSelectorIndexWithAttributes(HWND hParentWnd, IAccessible* rootAcc, IAccessible* acc, const VARIANT& childId,
                                    const IdentifyingAttributes& wanted, LONG& index) {
    LogVerbose("GetSelectorIndexWithAttributes: Enter");
    index = -1;
    if (!::IsWindow(hParentWnd) || !acc || childId.vt != VT_I4) {
        LogError("GetSelectorIndexWithAttributes: Invalid input param, return FALSE");
        return false;
    }
    CComPtr<IAccessible> root(rootAcc);
    if (!root) {
        const HRESULT result = ObjectFromWindow(hParentWnd, OBJID_WINDOW, root);
        if (FAILED(result) || !root) {
            LogError("GetSelectorIndexWithAttributes: AccessibleObjectFromWindow failed, return FALSE");
            return false;
        }
    }
    index = 0;
    bool targetFound = false;
    WalkLevelByLevel(
        root, [] { return Visit::Enter; },
        [&](const AAObjectWrapper& child) {
            targetFound = CompareAAObjects(child.container, child.childId, acc, childId, TRUE);
            if (targetFound || MatchesAttributes(wanted, child.container, child.childId)) ++index;
            return targetFound ? Visit::Stop : Visit::Enter;
        });
    LogVerbose("GetSelectorIndexWithAttributes: Index=%d return %d", index, targetFound);
    return targetFound;
}

}  // namespace Zorvex::Generation
