// The name of an accessible element between two requests.
#pragma once

#include <cstdint>

#include "Platform/Windows.h"

namespace Zorvex {

// A plain value; the element itself lives in the server's cache. A client hands it back field for field. All zero
// names nothing.
struct AAObjectIdentifier {
    static constexpr std::size_t kNumberCount = 6;
    static constexpr std::size_t kMinimumWireSize = 5 * kNumberCount;

    HWND hWnd = nullptr;  // window of the element
    std::uint32_t containerId = 0;  // the cache's number of the container; 0: this names the window itself
    std::int32_t childId = 0;  // inside the container; CHILDID_SELF is the container itself
    std::uint32_t isDomAria = 0;  // not 0: a Chromium or Firefox window, whose elements follow DOM and ARIA rules
    std::uint32_t clientPid = 0;  // process that registered the element; with containerId the key of the cache
    HWND originalWnd = nullptr;  // window that the request which made this named; carried along, read by nobody

    bool operator==(const AAObjectIdentifier&) const = default;

    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("hWnd", self.hWnd);
        visit("containerId", self.containerId);
        visit("childId", self.childId);
        visit("isDomAria", self.isDomAria);
        visit("clientPid", self.clientPid);
        visit("originalWnd", self.originalWnd);
    }
};

}  // namespace Zorvex
