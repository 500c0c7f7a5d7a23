// The two decisions that shape a selector over accessible elements: what the next parent of an element is and
// whether the way up goes on in the accessible tree or among the windows, and which elements on the way are worth a
// tag of their own.
//
// Nothing here throws for a failure of the platform.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex::Generation {

// Where the way up goes on. All null says that there is no answer.
struct NextParent {
    HWND hParentWnd = nullptr;          // the window for the parent
    CComPtr<IAccessible> spParentAcc;   // the parent; may be null, and may be set although bUseWnd is
    HWND hAAWnd = nullptr;              // the owner window of the element, or hParentWnd's predecessor where it is unknown
    bool bUseWnd = false;               // leave the accessible tree and go on with windows at hParentWnd
};

// The next parent of an element that was reached through `hTargetAccWnd`. With `bAAMode` the way stays in the
// accessible tree up to a window or dialog on a top-level window; without it any change of window, and any window or
// dialog, hands over to the windows. `bAllowFallbackToInitialOwner` is that of AAUtil::GetIAccOwnerWindow. May search
// the trees of two windows for the element, where the windows disagree about it.
NextParent GetNextParentForAAHierarchy(HWND hTargetAccWnd, IAccessible* pTargetAcc, const VARIANT& vTargetChildId, bool bAAMode,
                                       bool bAllowFallbackToInitialOwner);

// Whether the element is a dialog that Chromium shows in its main window, without a window of its own. Fails, with
// `isRootDialog` false, only when the role of a Chromium window's element can't be read.
HRESULT IsRootDialogUnderChromiumMainWindow(HWND hWnd, IAccessible* accElem, const VARIANT& childId, bool& isRootDialog);

// Whether the element belongs into a selector unless a policy says otherwise. `hTopLevelWnd` is the top-level window of
// the element that the selector is for, `hAAWnd` its owner window, as the first step up gave it.
bool IsInterestingForAASelector(HWND hAccWnd, IAccessible* spAccObj, HWND hTopLevelWnd, HWND hAAWnd, bool bAaOnly,
                                bool bTargetIsWpfMenuItem);

}  // namespace Zorvex::Generation
