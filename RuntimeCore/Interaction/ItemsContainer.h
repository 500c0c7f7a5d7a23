// The elements that hold items: lists, combo boxes, trees, tables and tab lists.
#pragma once

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

// What the item requests have to know of a container beyond its pointer. A role that can't be read is no role.
class ItemsContainer {
public:
    // Reads the role once. Neither needs to be valid.
    ItemsContainer(HWND window, IAccessible* accessible);

    HWND Window() const { return m_window; }
    // Null in a container that isn't there.
    IAccessible* Accessible() const { return m_accessible; }
    bool HasRole(LONG role) const { return m_role == role; }
    // A list of a browser of Chromium's make: its items aren't selected but pressed.
    bool IsChromiumList() const;
    // STATE_SYSTEM_MULTISELECTABLE on the container itself.
    bool IsMultiSelectable() const;

private:
    HWND m_window = nullptr;
    CComPtr<IAccessible> m_accessible;
    LONG m_role = 0;
};

// Whether STATE_SYSTEM_MULTISELECTABLE is set; false if the state can't be read.
bool IsMultiSelectable(IAccessible* accessible, const VARIANT& child);

// Prepares the element that the item requests work on. Without a container the window's own object is taken, and for
// a window object the client behind it; then `window` becomes the one that the container belongs to. False, with an
// error in the log, when there is nothing to work on.
bool GetSelectableAccElementFromWindow(HWND& window, CComPtr<IAccessible>& container);

// Whether the first child or the container itself is multi-selectable. An empty container isn't, whatever it says.
bool HasMultipleSelectionSupport(const ItemsContainer& container);

}  // namespace Zorvex
