// The English names of roles and states, as the platform's resources have them.
#pragma once

#include <string_view>

#include "Platform/Windows.h"

namespace Simulated {

// Empty for an unknown number. 0 has a name as well.
std::wstring_view RoleName(LONG role);
// Of one bit, or of 0 ("normal"). Empty for anything else.
std::wstring_view StateName(LONG bit);
// By name, without regard to case, blanks, hyphens and underscores; also by the names of the published constants
// ("PushButton", "ReadOnly", ...). False when there is none.
bool RoleFromName(std::string_view name, LONG& role);
bool StateFromName(std::string_view name, LONG& bit);

}  // namespace Simulated
