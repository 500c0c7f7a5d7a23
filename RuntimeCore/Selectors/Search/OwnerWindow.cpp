#include "RuntimeCore/Selectors/Search/OwnerWindow.h"

#include "Common/UTILITY/NWindows.h"
#include "RuntimeCore/AAUtilitiesOwnerWindow.h"

namespace Zorvex::Search {

void OwnerWindow::Renew(IAccessible* accessible) {
    if (!accessible) return;
    if (m_kind == Kind::NotAsked)
        m_kind = NWindows::IsChromeWidgetClass(m_window) || NWindows::IsFirefoxWindow(m_window) ? Kind::Browser : Kind::Other;
    const HWND renewed = AAUtil::GetIAccOwnerWindow(m_window, accessible, m_kind == Kind::Browser);
    if (renewed != m_window) *this = OwnerWindow(renewed);
}

}  // namespace Zorvex::Search
