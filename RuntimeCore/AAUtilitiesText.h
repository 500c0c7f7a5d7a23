// Texts of one element, and the way to its parent.
#pragma once

#include "Common/include/CComPtr.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

// The parent of the container, or null with an error line.
CComPtr<IAccessible> GetParent(IAccessible* spAcc);

// The help text, empty on failure with an error line.
CString GetAAHelpText(IAccessible* spAcc, const VARIANT& vChild);

// What the element shows: the checked state of a check box or radio button, the value, the first selected item of
// a combo box or list, else the name. Empty for a null element or one whose role can't be read.
CString GetAccessibleText(HWND hWnd, IAccessible* acc, const VARIANT& child);

// The IAccessible2 text if asked for and not empty, else GetAccessibleText.
CString GetAAOrIA2Text(bool useIA2, HWND hWnd, IAccessible* acc, const VARIANT& child);

}  // namespace Zorvex::AAUtil
