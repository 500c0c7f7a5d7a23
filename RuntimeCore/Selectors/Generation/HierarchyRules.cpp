#include "RuntimeCore/Selectors/Generation/HierarchyRules.h"

#include <string>
#include <utility>

#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Common/include/Log.h"
#include "Common/include/UtfConversion.h"
#include "RuntimeCore/AAUtilitiesOwnerWindow.h"
#include "RuntimeCore/AccChildReaders.h"
#include "RuntimeCore/CompareAAObjects.h"
#include "RuntimeCore/IA2ToolsAttributes.h"
#include "RuntimeCore/RoleTexts.h"

namespace Zorvex::Generation {

namespace {

using NWindows::WindowDebugText;

// The lines of the search carry the name of the public function, whichever step writes them.
constexpr LocatedFormat<char> SearchLine(const char* text, unsigned line = __builtin_LINE()) {
    return {text, __builtin_FILE(), "GetNextParentForAAHierarchy", line};
}

// The value of the attribute that marks the root of a dialog.
constexpr std::wstring_view RootDialogClass = L"rootview";

bool IsDescendant(HWND hWnd, IAccessible* acc, const VARIANT& childId) {
    BOOL isDescendant = FALSE;
    return IsDescendantOfWnd(hWnd, acc, childId, isDescendant) && isDescendant;
}

bool IsHtmlElement(IAccessible& acc) {
    CComPtr<IServiceProvider> services;
    if (FAILED(acc.QueryInterface(IidOf<IServiceProvider>(), reinterpret_cast<void**>(&services))) || !services) return false;
    // That there is one is all that counts, so its own interface isn't needed.
    CComPtr<IUnknown> element;
    const HRESULT result = services->QueryService(IidOf<IHTMLElement>(), IidOf<IHTMLElement>(), reinterpret_cast<void**>(&element));
    return SUCCEEDED(result) && element;
}

// Whether the parent's role ends the way through the accessible tree. A role that can't be read does.
bool EndsAtRole(IAccessible& parent, HWND hParentWnd) {
    CComVariant role;
    const HRESULT result = parent.get_accRole(CComVariant(CHILDID_SELF), &role);
    CString roleText;
    if (SUCCEEDED(result)) {
        if (role.vt != VT_I4) return false;
        if (role.lVal != ROLE_SYSTEM_WINDOW && role.lVal != ROLE_SYSTEM_DIALOG) return false;
        if (role.lVal == ROLE_SYSTEM_DIALOG && NWindows::IsChromeWidgetClass(hParentWnd)) return false;
        roleText = AAUtil::GetRoleAsText(role.lVal);
    }
    LogVerbose(
        SearchLine("GetNextParentForAAHierarchy: 'bUseWnd = TRUE' because 'spParentAcc->get_accRole failed' OR role='%s' is 'window' OR "
                   "'dialog' AND 'NOT a Chrome window'"),
        NarrowText(roleText));
    return true;
}

enum class Search { Done, GoOn };

// The way from one element to its parent, step by step. `hWnd` is the window by which the element goes.
class ParentSearch {
public:
    ParentSearch(HWND hTargetAccWnd, IAccessible& targetAcc, const VARIANT& targetChildId, bool bAAMode, bool bAllowFallback)
        : m_targetAcc(targetAcc), m_targetChildId(targetChildId), m_bAAMode(bAAMode), m_bAllowFallback(bAllowFallback), m_hWnd(hTargetAccWnd) {}

    NextParent Run() {
        LogVerbose(SearchLine("GetNextParentForAAHierarchy: hTargetAccWnd = %s"), WindowDebugText(m_hWnd));
        FindOwnerWindow();
        m_next.hParentWnd = m_hWnd;
        if (!FindParent()) return {};
        if (CompareWindows() == Search::GoOn) LookAtParent();
        m_next.hAAWnd = m_hAAWnd ? m_hAAWnd : m_hWnd;
        return std::move(m_next);
    }

private:
    // Settles which of the two windows the element goes by, where it has two.
    void FindOwnerWindow() {
        if (FAILED(AAUtil::GetIAccOwnerWindow(m_hWnd, &m_targetAcc, m_bAllowFallback, m_hAAWnd))) return;
        LogVerbose(SearchLine("GetNextParentForAAHierarchy: hAAWnd = %s"), WindowDebugText(m_hAAWnd));
        if (m_hAAWnd == m_hWnd || IsDescendant(m_hWnd, &m_targetAcc, m_targetChildId)) return;
        if (IsDescendant(m_hAAWnd, &m_targetAcc, m_targetChildId))
            m_hWnd = m_hAAWnd;
        else
            m_bAAMode = true;  // The windows can't be trusted for this element.
    }

    // False if the element doesn't tell.
    bool FindParent() {
        if (m_targetChildId.lVal != CHILDID_SELF) {
            m_next.spParentAcc = &m_targetAcc;
            return true;
        }
        CComPtr<IDispatch> parent;
        if (FAILED(m_targetAcc.get_accParent(&parent))) {
            LogError(SearchLine("GetNextParentForAAHierarchy: m_accHandle->get_accParent failed in GetNextParentForAAHierarchy"));
            return false;
        }
        if (FAILED(parent.QueryInterface(m_next.spParentAcc))) m_next.spParentAcc.Release();
        return true;
    }

    Search CompareWindows() {
        if (!m_next.spParentAcc) {
            LogVerbose(SearchLine("GetNextParentForAAHierarchy: switching to WND because 'spParentAcc is NULL'"));
            return SwitchToWindows();
        }
        HWND hParentAccWnd = nullptr;
        if (FAILED(AAUtil::GetIAccOwnerWindow(m_hWnd, m_next.spParentAcc, m_bAllowFallback, hParentAccWnd))) {
            LogVerbose(SearchLine("GetNextParentForAAHierarchy: switching to WND because GetIAccOwnerWindow(spParentAcc) failed"));
            m_next.spParentAcc.Release();
            return SwitchToWindows();
        }
        if (hParentAccWnd == m_hWnd) return Search::GoOn;
        LogVerbose(SearchLine("GetNextParentForAAHierarchy: hParentAccWnd = %s"), WindowDebugText(hParentAccWnd));
        if (!NWindows::IsSameThread(m_hWnd, hParentAccWnd)) {
            LogVerbose(SearchLine("GetNextParentForAAHierarchy: switching to WND because hParentAccWnd: %p is from another thread"),
                       static_cast<const void*>(hParentAccWnd));
            m_next.spParentAcc.Release();
            m_next.hParentWnd = hParentAccWnd;
            return SwitchToWindows();
        }
        if (!IsDescendant(hParentAccWnd, m_next.spParentAcc, CComVariant(CHILDID_SELF))) {
            m_bAAMode = true;
        } else if (!m_bAAMode) {
            LogVerbose(
                SearchLine("GetNextParentForAAHierarchy: switching to WND because 'hParentAccWnd != hTargetAccWnd' and 'NOT in AA mode'"));
            SwitchToWindows();
        }
        LogVerbose(SearchLine("GetNextParentForAAHierarchy: hParentWnd: %s -> hParentAccWnd: %s"), WindowDebugText(m_next.hParentWnd),
                   WindowDebugText(hParentAccWnd));
        m_next.hParentWnd = hParentAccWnd;
        return m_next.bUseWnd ? Search::Done : Search::GoOn;
    }

    void LookAtParent() {
        if (NWindows::IsIEServerWindow(m_hWnd) && IsHtmlElement(*m_next.spParentAcc)) {
            SwitchToWindows();
            return;
        }
        if (!EndsAtRole(*m_next.spParentAcc, m_next.hParentWnd)) return;
        if (!m_bAAMode) {
            LogVerbose(SearchLine("GetNextParentForAAHierarchy: switching to WND because 'bUseWnd' and 'NOT in AA mode'"));
            SwitchToWindows();
        } else if (NWindows::IsTopLevelWindow(m_next.hParentWnd)) {
            // The line says the opposite of what it means and lacks a quotation mark: both on purpose.
            LogVerbose(SearchLine("GetNextParentForAAHierarchy: switching to WND because 'bUseWnd' and 'hParentWnd is NOT top level"));
            SwitchToWindows();
        }
    }

    Search SwitchToWindows() {
        m_next.bUseWnd = true;
        return Search::Done;
    }

    IAccessible& m_targetAcc;
    const VARIANT& m_targetChildId;
    bool m_bAAMode;
    const bool m_bAllowFallback;
    HWND m_hWnd;
    HWND m_hAAWnd = nullptr;
    NextParent m_next;
};

}  // namespace

HRESULT IsRootDialogUnderChromiumMainWindow(HWND hWnd, IAccessible* accElem, const VARIANT& childId, bool& isRootDialog) {
    isRootDialog = false;
    if (childId.vt != VT_I4 || childId.lVal != CHILDID_SELF || !NWindows::IsChromeWidgetClass(hWnd)) return S_OK;
    CComVariant vRole;
    HRESULT result = accElem ? accElem->get_accRole(childId, &vRole) : E_POINTER;
    if (FAILED(result))
        return CallFailed("accElem->get_accRole(childId, &vRole)", result,
                          "IsRootDialogUnderChromiumMainWindow - could not get element role.");
    if (vRole.vt != VT_I4 || vRole.lVal != ROLE_SYSTEM_DIALOG) return S_OK;
    CString strClass;
    result = IA2Tools::GetAttribute(accElem, IA2Tools::IA2_ATTRIBUTE_CLASS, strClass);
    if (FAILED(result)) {
        CallFailed("IA2Tools::GetAttribute(accElem, IA2Tools::IA2_ATTRIBUTE_CLASS, strClass)", result,
                   "IsRootDialogUnderChromiumMainWindow - IA2Tools::GetAttribute failed. Returning S_OK because the IA2 check is optional.");
        return S_OK;
    }
    isRootDialog = strClass == RootDialogClass;
    return S_OK;
}

NextParent GetNextParentForAAHierarchy(HWND hTargetAccWnd, IAccessible* pTargetAcc, const VARIANT& vTargetChildId, bool bAAMode,
                                       bool bAllowFallbackToInitialOwner) {
    if (!pTargetAcc) {
        LogError("GetNextParentForAAHierarchy: pTargetAcc is NULL in GetNextParentForAAHierarchy");
        return {};
    }
    if (vTargetChildId.vt != VT_I4) {
        LogError("GetNextParentForAAHierarchy: vTargetChildId.vt != VT_I4 in GetNextParentForAAHierarchy");
        return {};
    }
    bool isRootDialog = false;
    const HRESULT result = IsRootDialogUnderChromiumMainWindow(hTargetAccWnd, pTargetAcc, vTargetChildId, isRootDialog);
    if (FAILED(result)) {
        CallFailed("AAUtil::IsRootDialogUnderChromiumMainWindow(hTargetAccWnd, pTargetAcc, vTargetChildId, isRootDialog)", result,
                   "GetNextParentForAAHierarchy - IsRootDialogUnderChromiumMainWindow test failed.");
        return {};
    }
    if (isRootDialog) {
        LogVerbose(
            "GetNextParentForAAHierarchy called for element with Dialog role and RootView class that reuses the Chrome main window. Its "
            "parent should be the main window. hTargetAccWnd: %p",
            static_cast<const void*>(hTargetAccWnd));
        return {hTargetAccWnd, GetAccParent(pTargetAcc, vTargetChildId), hTargetAccWnd, true};
    }
    return ParentSearch(hTargetAccWnd, *pTargetAcc, vTargetChildId, bAAMode, bAllowFallbackToInitialOwner).Run();
}

bool IsInterestingForAASelector(HWND hAccWnd, IAccessible* spAccObj, HWND hTopLevelWnd, HWND hAAWnd, bool bAaOnly,
                                bool bTargetIsWpfMenuItem) {
    if (!spAccObj) return false;
    if (!bAaOnly && bTargetIsWpfMenuItem) {
        LogVerbose("IsInterestingForAASelector: 'Default' mode, initial target is a WPF menu item, not interesting for selector");
        return false;
    }
    if (!bAaOnly && hAccWnd != hAAWnd) {
        LogVerbose("IsInterestingForAASelector: 'Default' mode, AA window has changed, not interesting for selector");
        return false;
    }
    if (bAaOnly && NWindows::GetTopLevelWindow(hAccWnd) != hTopLevelWnd) {
        LogVerbose("IsInterestingForAASelector: 'AA Only' mode, top level wnd has changed, not interesting for selector");
        return false;
    }
    const CComVariant vChildID(CHILDID_SELF);
    CComVariant vRole;
    HRESULT hRes = spAccObj->get_accRole(vChildID, &vRole);
    if (FAILED(hRes)) {
        LogError("IsInterestingForAASelector: cannot get role of acc element, hRes=0x%X", hRes);
        return false;
    }
    if (vRole.vt == VT_I4) {
        // A row counts without a name too: its own place among the rows tells it apart.
        if (vRole.lVal == ROLE_SYSTEM_ROW) return true;
        if (vRole.lVal == ROLE_SYSTEM_WINDOW || vRole.lVal == ROLE_SYSTEM_CLIENT) {
            LogVerbose("IsInterestingForAASelector: WINDOW/CLIENT role not interesting for selector");
            return false;
        }
        if (vRole.lVal == ROLE_SYSTEM_DIALOG) {
            bool isRootDialog = false;
            hRes = IsRootDialogUnderChromiumMainWindow(hAccWnd, spAccObj, vChildID, isRootDialog);
            if (FAILED(hRes)) {
                CallFailed("IsRootDialogUnderChromiumMainWindow(hAccWnd, spAccObj, vChildID, isRootDialog)", hRes,
                           "IsInterestingForAASelector - IsRootDialogUnderChromiumMainWindow failed. Returning false.");
                return false;
            }
            if (!isRootDialog) {
                LogVerbose("IsInterestingForAASelector: Regular DIALOG role not interesting for selector");
                return false;
            }
        }
    } else if (vRole.vt != VT_BSTR) {
        LogVerbose("IsInterestingForAASelector: role %d not interesting for selector", vRole.vt);
        return false;
    }
    CComBSTR name;
    return SUCCEEDED(spAccObj->get_accName(vChildID, &name)) && !name.View().empty();
}

}  // namespace Zorvex::Generation
