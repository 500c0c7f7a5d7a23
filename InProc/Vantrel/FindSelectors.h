// The element search as a request: selectors in, identifiers out.
#pragma once

#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

// A selector that finds nothing is no failure of the request: its result carries the error.
FindSelectorsResponse FindSelectorsImpl(const FindSelectorsRequest& request);

}  // namespace Zorvex
