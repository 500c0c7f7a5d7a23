// The rule by which an element's name is read, and the same rule on a window.
#pragma once

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

// What a failed read of the name means. As an attribute of an element it is an empty name, for which a
// read-only text still offers its value; in the name of a window it is no name at all.
enum class UnreadableName { IsEmpty, EndsTheRule };

// The name of an element: empty where an editable field only repeats its content, the value for a read-only text
// without a name, with blanks in the place of line ends. Empty on every failure and for a null element.
CString GetAAElementName(IAccessible* acc, const VARIANT& child, UnreadableName unreadable = UnreadableName::IsEmpty);

// The last child of the window's object whose location begins at the same left edge as the object's own; the
// object itself, as CHILDID_SELF, if it has no children. False if there is none.
bool GetAALastChildWithSameXLeft(HWND hWnd, CComPtr<IAccessible>& outAcc, CComVariant& outChild);

// The name rule on that child. An unreadable name counts as an empty one.
CString GetWindowTextFromAA(HWND hWnd);
// The same, except that an unreadable name ends the rule.
CString AaNameFromWindow(HWND hWnd);

// Every carriage return and then every line feed becomes a blank of its own.
void NormalizeLineBreaks(CString& text);

}  // namespace Zorvex::AAUtil
