// Which accessible element lies under a point of the screen.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"

namespace Zorvex {

// The response is empty, all zero with an empty role, when nothing was found.
FindElemFromPointResponse FindAAElementFromPointImpl(const FindElemFromPointRequest& request);

}  // namespace Zorvex
