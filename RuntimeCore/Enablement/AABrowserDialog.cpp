#include "RuntimeCore/Enablement/AABrowserDialog.h"

#include "Common/include/Log.h"
#include "RuntimeCore/AAUtilitiesFind.h"
#include "RuntimeCore/Enablement/RoleWalk.h"
#include "RuntimeCore/Enablement/WindowAccessible.h"
#include "RuntimeCore/IA2ToolsAttributes.h"

namespace Zorvex {

namespace {

constexpr unsigned DialogDepth = 3;
constexpr wchar_t DialogRole[] = L"dialog";
constexpr wchar_t DocumentRole[] = L"document";
constexpr wchar_t TagOfPageContent[] = L"window";

using Next = AATreeWalker::Next;

bool IsFirefoxDialogVisible(const AANode& dialog) {
    CComVariant state;
    const HRESULT hRes = dialog.container->get_accState(dialog.childId, &state);
    if (FAILED(hRes)) {
        LogError("[IsFirefoxDialogVisible] Failed to get the accState of the dialog hRes=0x%x", hRes);
        return false;
    }
    if (state.vt == VT_I4 && (state.lVal & (STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN))) {
        LogVerbose("[IsFirefoxDialogVisible] Offscreen or invisible dialog");
        return false;
    }
    return true;
}

// What the walk does at a dialog.
Next JudgeFirefoxDialog(const AANode& dialog) {
    if (!IsFirefoxDialogVisible(dialog)) return Next::Continue;
    CString tag;
    const HRESULT result = IA2Tools::GetAttribute(dialog.container, IA2Tools::IA2_ATTRIBUTE_TAG, tag);
    if (FAILED(result)) {
        CallFailed("IA2Tools::GetAttribute(node.GetContainer(), IA2Tools::IA2_ATTRIBUTE_TAG, tag)", result,
                   "FindFirefoxBrowserDialog: dialog found, but IA2Tools::GetAttribute failed, so assuming the dialog is not inside the page.");
        return Next::Stop;
    }
    if (tag == TagOfPageContent) {
        LogVerbose("FindFirefoxBrowserDialog: dialog found, but it is inside the page web page. So, we skip it.");
        return Next::SkipChildren;
    }
    LogVerbose("found a dialog");
    return Next::Stop;
}

AANode FindChromiumBrowserChildDialog(HWND hWnd) {
    LogVerbose("FindChromiumBrowserChildDialog for window %p", hWnd);
    return FindElemWithRole(hWnd, DialogRole);
}

}  // namespace

AANode FindElemWithRole(const AANode& root, const wchar_t* role) {
    LogVerbose(L"[FindElemWithRole] role to find: '%s'", role);
    LONG visited = 0;
    bool isFound = false;
    const auto visit = [&](const AANode& node, unsigned depth) {
        // The walk is ended by a node that isn't kept.
        if (++visited > AAUtil::MaximumSearchedElements) return Next::Stop;
        const CString text = RoleTextOf(node);
        LogRole(text, depth);
        isFound = IsRoleText(text, role);
        return isFound ? Next::Stop : Next::Continue;
    };
    AATreeWalker walker(root);
    AANode found = walker.FindFirst(visit, DialogDepth, AATreeWalker::TraversalType::DepthFirstRecursive);
    return isFound ? found : AANode{};
}

AANode FindElemWithRole(HWND hWnd, const wchar_t* role) {
    LogVerbose(L"[FindElemWithRole] under window %p, role to find: '%s'", hWnd, role);
    CComPtr<IAccessible> root;
    if (const HRESULT hRes = GetWindowAccessible(hWnd, root); FAILED(hRes)) {
        LogError("Accessible from window failed, hRes=0x%X", hRes);
        return {};
    }
    return FindElemWithRole(AANode{root, CComVariant(CHILDID_SELF)}, role);
}

AANode FindChromiumBrowserDialog(HWND hWnd) {
    // The line names one browser on purpose; it stands for all of the family.
    LogVerbose("FindChromeBrowserDialog for window %p", hWnd);
    AANode dialog = FindChromiumBrowserChildDialog(hWnd);
    if (dialog.IsValid()) LogVerbose("found dialog in the AA tree");
    return dialog;
}

AANode FindFirefoxBrowserDialog(HWND hWnd) {
    LogVerbose("FindFirefoxBrowserDialog for window %p", hWnd);
    CComPtr<IAccessible> root;
    if (const HRESULT hRes = GetWindowAccessible(hWnd, root); FAILED(hRes)) {
        LogError("Accessible from window failed, hRes=0x%X", hRes);
        return {};
    }
    LONG visited = 0;
    bool isFound = false;
    const auto visit = [&](const AANode& node, unsigned depth) {
        if (++visited > AAUtil::MaximumSearchedElements) return Next::Stop;
        const CString text = RoleTextOf(node);
        LogRole(text, depth);
        if (IsRoleText(text, DocumentRole)) {
            // Pages are large, and their dialogs aren't the browser's.
            LogVerbose(LocatedFormat<char>("FindFirefoxBrowserDialog: document element reached, skip browsing children", __builtin_FILE(),
                                           "FindFirefoxBrowserDialog"));
            return Next::SkipChildren;
        }
        if (!IsRoleText(text, DialogRole)) return Next::Continue;
        const Next next = JudgeFirefoxDialog(node);
        isFound = next == Next::Stop;
        return next;
    };
    AATreeWalker walker(AANode{root, CComVariant(CHILDID_SELF)});
    AANode found = walker.FindFirst(visit, AATreeWalker::NoDepthLimit, AATreeWalker::TraversalType::BreadthFirst);
    return isFound ? found : AANode{};
}

}  // namespace Zorvex
