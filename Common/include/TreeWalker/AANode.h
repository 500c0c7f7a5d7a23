// The node of the accessible tree as the tree walker sees it.
#pragma once

#include <optional>
#include <vector>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Platform/Windows.h"

namespace Zorvex {

// A default node is the empty result of a search: no container, child id VT_I4 0.
struct AANode {
    CComPtr<IAccessible> container;
    CComVariant childId{CHILDID_SELF};

    bool IsValid() const noexcept { return container.p != nullptr && childId.vt == VT_I4; }
};

// State for a child reader that needs none.
struct TWDefaultCustomData {};

// The child reader of the walker: the valid children of `node` in the container's order. A node whose children
// can't be read has none.
void GetChildren(const AANode& node, std::vector<AANode>& out, TWDefaultCustomData& customData);

// The role as the server gives it (VT_I4, or VT_BSTR for a role of its own). Nothing for an invalid node or a
// failing read.
std::optional<CComVariant> ReadRole(const AANode& node);

// Screen rectangle. Nothing for an invalid node or a failing read.
std::optional<RECT> ReadLocation(const AANode& node);

}  // namespace Zorvex
