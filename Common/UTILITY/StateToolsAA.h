// The state text that the attribute `aastate` holds: the platform's words, then those of IAccessible2.
#pragma once

#include <map>

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::StateTools {

// The English text of each IAccessible2 state bit, in ascending order of the bit. Built on first use.
const std::map<LONG, const wchar_t*>& IA2StateTexts();

// Replaces `text` by the state text of the element; `ia2States` 0 adds nothing. E_INVALIDARG for a null element
// or a child id that isn't VT_I4; otherwise the code of N_COM::GetAAStateAsText. Failures are logged.
HRESULT GetAAState(CString& text, IAccessible* acc, const VARIANT& child, LONG ia2States);

// Appends the texts of the IAccessible2 bits, joined by ", ", also to what stands in `text` already.
void AppendIA2State(CString& text, LONG ia2States);

}  // namespace Zorvex::StateTools
