// The text of an element through IAccessibleText.
#pragma once

#include "Common/include/CComBSTR.h"
#include "Platform/Windows.h"

namespace Zorvex::IA2Tools {

// The text of the element, without the placeholders of embedded objects; empty where nothing but blanks remains
// beside them. An element without IAccessible2 or IAccessibleText has an empty text and S_OK. E_INVALIDARG for a
// null element, otherwise the code of the failed read.
HRESULT GetText(IAccessible* pAccElem, CComBSTR& out_text);

}  // namespace Zorvex::IA2Tools
