// The requests that read and change the checked state of check boxes and radio buttons.
#pragma once

#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

// Both take an identifier of a window alone for the control that the window is.

// Not checked where it can't be read.
GetIsCheckedResponse GetIsCheckedImpl(const GetIsCheckedRequest& request);

// See AAUtil::SetIsChecked for the codes.
ResultResponse SetIsCheckedImpl(const SetIsCheckedRequest& request);

}  // namespace Zorvex
