// What the form fields of a document show. Their text is no part of the document's own.
#pragma once

#include <string_view>

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex {

// False for an input that shows no text: hidden fields, check boxes, radio buttons, images.
bool ShowsText(IDispatch* input);

// The text that a person sees in an INPUT, TEXTAREA or SELECT (`tag`): its value, else its placeholder; a dot for each
// character of a password; the selected option of a drop-down list, all options of an open one. Empty if the field isn't
// displayed or doesn't tell.
CString GetShownText(IDispatch* field, std::wstring_view tag);

// Whether an element is displayed: it has a size and isn't hidden by its style. One that doesn't tell counts as displayed.
bool IsDisplayed(IDispatch* element);

}  // namespace Zorvex
