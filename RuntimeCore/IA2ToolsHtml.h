// Telling which accessible elements stand for an HTML element.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex::IA2Tools {

// Every element but a static text without a "tag" attribute counts as HTML.
HRESULT IsAccElemHtml(IAccessible* pAccElem, bool& out_bIsHtml);

// The HTML element at or right above an element. S_OK with a null `out_spAccHtml` means the element itself; its
// parent comes out otherwise. E_FAIL if the parent is no HTML element either.
HRESULT GetAccElemHtml(IAccessible* pAccElem, CComPtr<IAccessible>& out_spAccHtml);

}  // namespace Zorvex::IA2Tools
