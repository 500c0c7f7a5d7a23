// Requests about windows and their accessible names.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"
#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

// All windows below the parent whose accessible name matches, and whose class does where one is asked for.
GetWndsByAaNameResponse GetWndsByAaNameImpl(const GetWndsByAaNameRequest& request);

// False for an edit field: its title is its changing content, which doesn't belong into a selector.
AnswerResponse ShouldAddTitleToWndSelectorImpl(const ShouldAddTitleToWndSelectorRequest& request);

}  // namespace Zorvex
