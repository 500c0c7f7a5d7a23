// From the number of a request to the logic that serves it.
#pragma once

#include <optional>

#include "Common/include/Archive.h"

namespace Zorvex {

// Reads the request number and the fields from `archive`, and answers with the response, or nothing where none goes
// back. A missing number throws ArchiveException; malformed fields are logged and give no response.
std::optional<Archive> Dispatch(Archive& archive);

}  // namespace Zorvex
