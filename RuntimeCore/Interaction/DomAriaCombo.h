// A combo box of a web page: its options are in the accessible tree only while it is open.
#pragma once

#include <optional>

#include "Common/include/CComPtr.h"
#include "Platform/Windows.h"

namespace Zorvex {

// Owns a reference to the element; the window is the one it was found in. Operations speak of the element itself
// (CHILDID_SELF) and call into the server of the page, so that anything may have changed when they come back.
class DomAriaComboBox {
public:
    // Nothing unless `isDomAria` is set, the role is combo box and the default action is "open", which is what the
    // browser says of a closed one. A null element gives nothing too, with an error line.
    static std::optional<DomAriaComboBox> CreateFromAccessible(HWND window, IAccessible* accessible, bool isDomAria);

    HWND Window() const noexcept { return m_window; }

    // Makes the options readable: expands unless a non-empty list of options is there already. The code of what
    // failed; E_FAIL if the box didn't open within 3,000 ms.
    HRESULT TriggerOptionsListLoad();

    // Scrolls into view, opens and waits, up to 3,000 ms, for the box to be open. S_OK at once if it isn't collapsed.
    HRESULT ExpandItems();

    // Closes the box if it is expanded and doesn't wait for it.
    HRESULT CollapseItems();

    // Whether the first child list has children. A list whose children can't be counted gives that failure.
    HRESULT HasOptionsList(bool& hasOptionsList);

private:
    DomAriaComboBox(HWND window, IAccessible* accessible);

    HWND m_window;
    CComPtr<IAccessible> m_combobox;
};

}  // namespace Zorvex
