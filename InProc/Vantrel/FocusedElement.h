// Which element of a window has the keyboard focus.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"

namespace Zorvex {

// All zero when the focus can't be found.
IdentifierResponse GetFocusedElementImpl(const GetFocusedElemRequest& request);

}  // namespace Zorvex
