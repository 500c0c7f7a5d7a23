// A window of a simulated desktop with trees built in code, and the bare walk that its figures are measured against.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Common/include/CComPtr.h"
#include "Platform/Simulated/Desktop.h"
#include "Platform/Simulated/InstalledDesktop.h"

namespace Zorvex::Bench {

class BenchWindow {
public:
    // The objects of the window by object id; Root() is the first of them.
    BenchWindow(std::wstring className, std::vector<std::pair<LONG, Simulated::ElementPtr>> objects);

    HWND Window() const { return m_window; }
    IAccessible* Root() const { return m_root.p; }
    // Calls of all elements so far.
    unsigned Calls() const { return m_desktop->TotalCalls(); }

private:
    std::shared_ptr<Simulated::Desktop> m_desktop;
    std::unique_ptr<Simulated::InstalledDesktop> m_installed;
    HWND m_window = nullptr;
    CComPtr<IAccessible> m_root;
};

Simulated::ElementPtr NewElement(LONG role, std::wstring name = {});
// Appends an element to the parent.
Simulated::ElementPtr AddElement(Simulated::Element& parent, LONG role, std::wstring name);

// Lists every element below the root and reads its role and name; answers how many there are.
std::size_t BareWalk(IAccessible* root);

}  // namespace Zorvex::Bench
