// The desktop that the native build's windows and accessibility functions answer from. Native builds only.
#pragma once

#include <memory>

namespace Simulated {

class Desktop;

// Makes the desktop the current one, together with its processes, environment and system version, until the
// object ends; then the one before is current again.
class InstalledDesktop {
public:
    explicit InstalledDesktop(std::shared_ptr<Desktop> desktop);
    InstalledDesktop(const InstalledDesktop&) = delete;
    InstalledDesktop& operator=(const InstalledDesktop&) = delete;
    ~InstalledDesktop();

private:
    std::shared_ptr<Desktop> m_desktop;
    std::shared_ptr<Desktop> m_before;
};

}  // namespace Simulated
