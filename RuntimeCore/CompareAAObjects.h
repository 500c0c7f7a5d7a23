// Whether two accessible elements are the same element. Servers hand out a new object for the same element on each
// call, so this is answered in one place, by a chain of ever weaker tests.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Strong identities first, then equality of everything that can be read, and last, with `compareParents` not 0,
// the same chain for the two parents (one level only). Two null pointers are the same whatever their child ids
// are. A read that fails on both sides in the same way counts as agreement. Logs each step at verbose severity.
// The pointers are taken by value: they are held to the end, whatever the server does meanwhile.
BOOL CompareAAObjects(CComPtr<IAccessible> acc1, const VARIANT& child1, CComPtr<IAccessible> acc2, const VARIANT& child2,
                      BOOL compareParents);

// Compares the runtime ids of UI Automation. S_OK: `equal` is the answer, and an element with an id is never the
// same as one without. A failure (E_INVALIDARG for a null pointer, E_FAIL when neither element has an id) says
// nothing; `equal` is then FALSE.
HRESULT AACompareRuntimeId(IAccessible* acc1, LONG childId1, IAccessible* acc2, LONG childId2, BOOL& equal);

// Compares the identity strings of IAccIdentity byte by byte. S_OK: `equal` is the answer. A failure says nothing;
// `equal` is then FALSE. Logs failures at error severity.
HRESULT CompareAccIdentities(IAccessible* acc1, const VARIANT& child1, IAccessible* acc2, const VARIANT& child2, BOOL& equal);

// Looks for the element below the window's accessible object. True says that the walk ran, and `isDescendant` what
// it found. False: an invalid argument (`isDescendant` is left as it was) or a window without an accessible object.
// Walks the whole subtree in the worst case, without a time limit, but no more than AAUtil::MaximumSearchedElements.
bool IsDescendantOfWnd(HWND hWnd, IAccessible* acc, const VARIANT& child, BOOL& isDescendant);

}  // namespace Zorvex
