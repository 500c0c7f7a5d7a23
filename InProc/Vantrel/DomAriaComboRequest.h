// The request that opens or closes a combo box of a web page.
#pragma once

#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

// S_OK also for anything that isn't such a combo box: there is then nothing to open or close.
ResultResponse ExpandDomAriaComboImpl(const ExpandDomAriaComboRequest& request);

}  // namespace Zorvex
