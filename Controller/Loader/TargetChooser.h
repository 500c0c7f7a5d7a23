// Choosing a target among the windows that are there.
#pragma once

#include <string_view>

#include "Controller/Loader/ILoaderSystem.h"

namespace Zorvex::Loader {

// The frontmost visible window whose title fits `pattern`: * for any run of units, ? for one, upper and lower case
// alike. NoSuchWindow names the titles that come nearest to being meant.
LoadResult<WindowInfo> FindWindowByTitle(ILoaderSystem& system, std::wstring_view pattern);

// The frontmost visible window of the process, one with a title before one without. NoSuchProcess when there is no
// such process or it has no visible window; the text tells which.
LoadResult<WindowInfo> FindWindowByProcess(ILoaderSystem& system, DWORD processId);

}  // namespace Zorvex::Loader
