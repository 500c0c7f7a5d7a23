// Properties of UI Automation that an element of Active Accessibility carries along.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

constexpr PROPERTYID UiaAutomationIdProperty = 30011;
constexpr PROPERTYID UiaLabeledByProperty = 30018;

// The text of a property. A value of another type is E_UNEXPECTED, a label given as an element included; a
// missing interface or a failed call passes its code on. `text` is empty on failure.
HRESULT GetUiaProperty(PROPERTYID propertyId, IAccessible* accessible, LONG childId, CString& text);

}  // namespace Zorvex
