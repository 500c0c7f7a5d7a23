// How the value of each attribute of an accessible element is read. Search and selector generation both read by
// these rules; each text is replaced, and empty where nothing can be read.
//
// A rule answers AttributeProduced, AttributeEmpty, or the failing code that kept it from a text. Only exhausted
// memory throws.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::AttributeRules {

constexpr HRESULT AttributeProduced = 0;
constexpr HRESULT AttributeEmpty = 1;

// Whether a rule looks at IAccessible2. Search looks for states always, and for text by the owner window's class.
enum class IA2Use { Ignore, Read };
// Whether a failed read of the state is logged as a warning as well, as search does.
enum class StateFailure { Silent, Warn };

HRESULT ReadName(IAccessible* accessible, const VARIANT& child, CString& text);
// A read-only text reports the role text of static text. A role that the server gives as a string stands as it is.
HRESULT ReadRole(IAccessible* accessible, const VARIANT& child, CString& text);
HRESULT ReadAutomationId(IAccessible* accessible, const VARIANT& child, CString& text);
HRESULT ReadLabeledBy(IAccessible* accessible, const VARIANT& child, CString& text);
// The texts of all columns of a list-view item; only such items have one.
HRESULT ReadVirtualName(IAccessible* accessible, const VARIANT& child, CString& text);
HRESULT ReadText(HWND window, IAccessible* accessible, const VARIANT& child, IA2Use ia2, CString& text);
HRESULT ReadHelpText(IAccessible* accessible, const VARIANT& child, CString& text);
HRESULT ReadAaState(IAccessible* accessible, const VARIANT& child, IA2Use ia2, StateFailure onFailure, CString& text);
// The text of a table row's first header or cell; only rows have one.
HRESULT ReadRowName(HWND window, IAccessible* accessible, const VARIANT& child, CString& text);

}  // namespace Zorvex::AttributeRules
