// Lists of state names, as they are written in a selector and as elements report them.
#pragma once

#include <set>
#include <string_view>

#include "Common/include/CString.h"

namespace Zorvex::Search {

// "focusable, Selected" gives "focusable" and "selected": parts between commas, without the white space around them,
// in lower case. Empty parts don't count.
std::set<CString> ParseStates(std::wstring_view text);

}  // namespace Zorvex::Search
