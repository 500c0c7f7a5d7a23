// Reading IAccessible2 of an element. A null element is E_INVALIDARG with an error line everywhere.
#pragma once

#include <list>

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex::IA2Tools {

// The IAccessible2 interface that stands behind an element. Success with a null pointer is possible.
HRESULT GetIA2FromAccElem(IAccessible* pAccElem, CComPtr<IAccessible2>& out_spIA2);

// Appends the children that are objects of their own; simple elements are left out.
HRESULT GetAccChildList(IAccessible* pAccElem, std::list<CComPtr<IAccessible>>& lstChildren);

// Scrolls the element into view by any means.
HRESULT ScrollTo(IAccessible* pAccElem);
HRESULT GetRole(IAccessible* pAccElem, LONG& out_lRole);
HRESULT GetState(IAccessible* pAccElem, LONG& out_lStates);
HRESULT GetUniqueID(IAccessible* pAccElem, LONG& out_lId);

}  // namespace Zorvex::IA2Tools
