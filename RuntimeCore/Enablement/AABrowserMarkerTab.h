// The id that a browser extension puts into the title of a marker tab, so that a browser window is known by it.
#pragma once

#include <cstdint>

#include "Common/include/TreeWalker/AANode.h"
#include "Platform/Windows.h"

namespace Zorvex {

inline constexpr std::int32_t NoWindowId = -1;

// The id in the name of the first marked element with that role text, level by level; pages aren't searched.
// NoWindowId if there is none.
std::int32_t FindBrowserMarkerTab(HWND browserWnd, const wchar_t* markerRole);

// NoWindowId unless the name begins with a marker and a decimal number of 31 bits follows.
std::int32_t ExtractWindowIdFromName(const AANode& node);

}  // namespace Zorvex
