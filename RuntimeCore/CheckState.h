// The checked state of check boxes and radio buttons.
#pragma once

#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

// The answer for an element that has no checked state. A plain number that clients know.
constexpr HRESULT NotCheckable = static_cast<HRESULT>(0x80040221u);

// Whether the role is check box or radio button; false, with an error line, if it can't be read.
bool IsCheckableElement(IAccessible* spAcc, const VARIANT& varChild);

// E_INVALIDARG for a null element or a child id that isn't VT_I4, NotCheckable for another role, the code of a
// failed read of the state, E_UNEXPECTED for a state that isn't VT_I4. `checked` is false on failure.
HRESULT GetIsChecked(IAccessible* spAcc, const VARIANT& varChild, bool& checked);

// Toggles by the default action where the checked state differs from `wanted`, S_OK without an action where it doesn't,
// and takes for granted that the toggle worked. E_FAIL for a null element, a role or a state that isn't VT_I4, or a role
// that can't be read; NotCheckable for another role, and for a radio button that is to be unchecked, whatever its
// state; the code of a failed read of the state or of a failed action.
HRESULT SetIsChecked(IAccessible* spAcc, const VARIANT& varChild, bool wanted);

}  // namespace Zorvex::AAUtil
