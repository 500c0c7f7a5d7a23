// The window that the search takes an element to belong to.
#pragma once

#include <cstdint>

#include "Platform/Windows.h"

namespace Zorvex::Search {

// A plain value, null when unknown. Children inherit it from their parent with what is known about its class, so that
// a walk through 100,000 elements of one window reads that class once.
class OwnerWindow {
public:
    OwnerWindow() noexcept = default;
    OwnerWindow(HWND window) noexcept : m_window(window) {}
    operator HWND() const noexcept { return m_window; }

    // Asks the element for its own window. Elements of a browser are often in a child or a hidden helper of its
    // window: below a browser's window that window stays the owner. The owner also stays where the element is null,
    // can't tell, or tells a window that doesn't exist.
    void Renew(IAccessible* accessible);

private:
    enum class Kind : std::uint8_t { NotAsked, Browser, Other };

    HWND m_window = nullptr;
    Kind m_kind = Kind::NotAsked;
};

}  // namespace Zorvex::Search
