// The requests that act on one element: focus, default action, scrolling, writing.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"
#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

// An identifier of a window alone focuses the window, which counts as done only if the platform names the window that
// had the focus before. Elements of web pages are waited for, up to 3,000 ms.
SuccessResponse SetFocusImpl(const SetFocusRequest& request);

// What the element answers; E_FAIL for anything that is no element.
ResultResponse DoDefaultActionImpl(const DoDefaultActionRequest& request);

// E_FAIL for anything that is no element; else see DomAriaUtilities::ScrollIntoView.
ResultResponse ScrollIntoViewImpl(const ScrollIntoViewRequest& request);

// True only where the element answers S_OK, no other success.
SuccessResponse WriteTextImpl(const WriteTextRequest& request);

}  // namespace Zorvex
