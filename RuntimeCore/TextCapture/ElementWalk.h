// The walk that gathers the lines of all elements below one.
#pragma once

#include <span>

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"
#include "Common/UTILITY/WindowKinds.h"

namespace Zorvex {

// Appends the lines of the elements below `acc` with one of the roles, in the order of the tree, depth first. `acc`
// itself gives none. `prcFilter` may be null. False if `acc` is null or has no readable children, and when the walk
// ended at a limit (elements, levels or text) with what it had gathered by then.
bool ParseAccObjectAndGetText(CaptureContext& context, IAccessible* acc, const RECT* prcFilter, CString& outText, std::span<const LONG> roles,
                              CaptureParseContext parseContext, enAAType type);

}  // namespace Zorvex
