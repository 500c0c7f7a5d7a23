// The trigger of Adobe Reader's windows: it wakes only while somebody inside its process listens to its events.
#include "Common/UTILITY/ModuleHandle.h"
#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "Common/include/TreeWalker/TreeWalker.h"
#include "RuntimeCore/AAUtilitiesFind.h"
#include "RuntimeCore/Enablement/AAEventHook.h"
#include "RuntimeCore/Enablement/AATrigger.h"
#include "RuntimeCore/Enablement/WindowAccessible.h"

namespace Zorvex::N_AATrigger {

namespace {

constexpr DWORD HookReadyMilliseconds = 5000;
constexpr unsigned StructureDepth = 3;
constexpr wchar_t ViewClass[] = L"AVL_AVView";
constexpr wchar_t PageViewTitle[] = L"AVPageView";

// The page view itself, or one below, or the frame around. Null if there is none.
HWND FindTriggerWindow(HWND hWnd) {
    const bool isView = NWindows::IsAdobeViewWindow(hWnd);
    if (!isView && !NWindows::IsAdobeFrameWindow(hWnd)) return nullptr;
    if (isView && NWindows::GetWindowTitle(hWnd) == PageViewTitle) return hWnd;
    if (const HWND child = NWindows::FindChildWindow(hWnd, ViewClass, PageViewTitle)) return child;
    const HWND root = ::GetAncestor(hWnd, GA_ROOT);
    return NWindows::IsAdobeFrameWindow(root) ? root : nullptr;
}

// The two questions that wake the reader.
void Ask(HWND hTriggerWnd) {
    CComPtr<IAccessible> object;
    const HRESULT hResult = GetWindowAccessible(hTriggerWnd, object);
    if (FAILED(hResult)) {
        LogError(LocatedFormat<char>("N_AATrigger::AdobeTrigger failed to get IAccessible, hResult=0x%x", __builtin_FILE(), "AdobeTrigger"),
                 hResult);
        return;
    }
    CComBSTR name;
    const HRESULT named = object->get_accName(CComVariant(CHILDID_SELF), &name);
    LogVerbose(LocatedFormat<char>("N_AATrigger::AdobeTrigger IAccessible::get_accName() hResult=0x%x", __builtin_FILE(), "AdobeTrigger"),
               named);
    LONG nChildCount = 0;
    const HRESULT counted = object->get_accChildCount(&nChildCount);
    LogVerbose(LocatedFormat<char>("N_AATrigger::AdobeTrigger IAccessible::get_accChildCount() hResult=0x%x nChildCount=%d",
                                   __builtin_FILE(), "AdobeTrigger"),
               counted, nChildCount);
}

}  // namespace

HRESULT AdobeIsEnabled(HWND hWnd, bool& bIsEnabled) {
    bIsEnabled = false;
    CComPtr<IAccessible> object;
    if (const HRESULT hRes = GetWindowAccessible(hWnd, object); FAILED(hRes))
        return CallFailed("hRes", hRes, "N_AATrigger::AdobeIsEnabled failed to get trigger window IAccessible");
    LONG visited = 0;
    const auto visit = [&](const AANode& node, unsigned depth) {
        if (depth == 0) return AATreeWalker::Next::Continue;
        if (++visited > AAUtil::MaximumSearchedElements) return AATreeWalker::Next::Stop;
        CComVariant role;
        const HRESULT hResult = node.container->get_accRole(node.childId, &role);
        if (FAILED(hResult)) {
            LogError(LocatedFormat<char>("N_AATrigger::AdobeIsEnabled failed to get IAccessible child role, hResult=0x%x",
                                         __builtin_FILE(), "AdobeIsEnabled"),
                     hResult);
            return AATreeWalker::Next::Continue;
        }
        if (role.vt != VT_I4 || role.lVal != ROLE_SYSTEM_GROUPING) return AATreeWalker::Next::Continue;
        bIsEnabled = true;
        return AATreeWalker::Next::Stop;
    };
    AATreeWalker walker(AANode{object, CComVariant(CHILDID_SELF)});
    walker.FindFirst(visit, StructureDepth, AATreeWalker::TraversalType::BreadthFirst);
    LogVerbose("N_AATrigger::AdobeIsEnabled end S_OK, bIsEnabled=%d", bIsEnabled);
    return S_OK;
}

bool AdobeTrigger(HWND hWnd, TriggeredWindows& memo) {
    const HWND hTriggerWnd = FindTriggerWindow(hWnd);
    if (!hTriggerWnd) return false;
    LogVerbose("N_AATrigger::AdobeTrigger detected Adobe Reader window, hWnd=0x%p", hWnd);
    if (!AddIfNotTriggered(hTriggerWnd, memo)) {
        LogVerbose("N_AATrigger::AdobeTrigger Accessibility was already triggered for this window. Skip hTriggerWnd=0x%p", hTriggerWnd);
        return true;
    }
    bool bIsEnabled = false;
    if (SUCCEEDED(AdobeIsEnabled(hTriggerWnd, bIsEnabled)) && bIsEnabled) {
        LogVerbose("N_AATrigger::AdobeTrigger Accessibility is already enabled for hTriggerWnd=0x%p, skip trigger", hTriggerWnd);
        return true;
    }
    const auto hook =
        CAAEventHook::CreateInstance(ModuleHandle(), hTriggerWnd, CAAEventHook::EventProcedure::AdobeTrigger, HookReadyMilliseconds);
    if (!hook) {
        LogError("N_AATrigger::AdobeTrigger failed to create event hook");
        return true;
    }
    Ask(hTriggerWnd);
    LogVerbose("N_AATrigger::AdobeTrigger end");
    return true;
}

}  // namespace Zorvex::N_AATrigger
