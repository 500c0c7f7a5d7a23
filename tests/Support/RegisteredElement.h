// The identifier of an element of a test, as a client has it.
#pragma once

#include <optional>
#include <string_view>

#include "InProc/Vantrel/AAContainerCache.h"
#include "tests/Support/Call.h"
#include "tests/Support/DesktopFixture.h"

namespace Zorvex::Testing {

// Of any object, in a window of the desktop.
inline AAObjectIdentifier Register(HWND window, CComPtr<IAccessible> object, CComVariant child = CComVariant(CHILDID_SELF),
                                   std::optional<std::uint32_t> isDomAria = std::nullopt) {
    return AAContainerCache::Instance().RegisterObject({kClientPid, window}, AAElement{window, std::move(object), std::move(child)}, isDomAria);
}

// Of an element of the desktop file.
inline AAObjectIdentifier Register(DesktopFixture& desktop, std::string_view window, std::string_view element,
                                   std::optional<std::uint32_t> isDomAria = std::nullopt) {
    return Register(desktop.Window(window), desktop.Element(element), desktop.Child(element), isDomAria);
}

// Of a window alone.
inline AAObjectIdentifier WindowIdentifier(HWND window) {
    AAObjectIdentifier identifier;
    identifier.hWnd = window;
    identifier.clientPid = kClientPid;
    return identifier;
}

}  // namespace Zorvex::Testing
