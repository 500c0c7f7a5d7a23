#include "RuntimeCore/Selectors/Search/OwnerWindow.h"

#include "Common/UTILITY/NWindows.h"
#include "RuntimeCore/AAUtilitiesOwnerWindow.h"

namespace Zorvex::Search {

HWND RenewOwnerWindow(HWND current, IAccessible* accessible) {
    if (!accessible) return current;
    const bool allowFallback = NWindows::IsChromeWidgetClass(current) || NWindows::IsFirefoxWindow(current);
    return AAUtil::GetIAccOwnerWindow(current, accessible, allowFallback);
}

}  // namespace Zorvex::Search
