// The English text of a role, the same on every system language.
#pragma once

#include "Common/include/CString.h"
#include "Platform/Windows.h"

namespace Zorvex::AAUtil {

// The highest role of the English table; its rows begin with role 1.
constexpr LONG LastRoleWithText = 64;

// The English text of roles 1 to 64. Role 0 is logged and gives an empty text; any other role is logged and
// gives the platform's localised text.
CString GetRoleAsText(LONG role);

}  // namespace Zorvex::AAUtil
