// The place of an element among its siblings.
#pragma once

#include <vector>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

struct SiblingElement {
    HWND window = nullptr;
    CComPtr<IAccessible> container;
    CComVariant child;
};

// The index of the element among all children of `parent`, from 0, or -1 if none is the element. Every other
// child that is an element comes out in `outSiblings`, in order. A parent with fewer than two children gives 0 and no siblings,
// without a comparison. `flags`: AncestryFlags, of which AncestryStrictOwner and AncestryOwnerFallback each let a
// sibling's window fall back to `hWnd`. When `timeoutMs` is used up, what was found so far stands.
LONG GetIndexInSiblings(HWND hWnd, IAccessible* acc, const VARIANT& child, IAccessible* parent, DWORD flags, LONG timeoutMs,
                        std::vector<SiblingElement>& outSiblings);

}  // namespace Zorvex::AAUtil
