#include "Common/include/TreeWalker/AANode.h"

#include <cstdint>

#include "Common/UTILITY/AAObjectWrapper.h"

namespace Zorvex {

namespace {

// A server may answer any two numbers; their sum wraps as the platform's own arithmetic does.
LONG WrappingSum(LONG a, LONG b) { return static_cast<LONG>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b)); }

}  // namespace

void GetChildren(const AANode& node, std::vector<AANode>& out, TWDefaultCustomData&) {
    out.clear();
    if (!node.IsValid() || node.childId.lVal != CHILDID_SELF) return;
    std::vector<AAObjectWrapper> elements;
    if (!AAObjectWrapper::GetChildren(node.container.p, elements)) return;
    out.reserve(elements.size());
    for (AAObjectWrapper& element : elements)
        if (element.IsValid()) out.push_back({std::move(element.container), std::move(element.childId)});
}

std::optional<CComVariant> ReadRole(const AANode& node) {
    if (!node.IsValid()) return std::nullopt;
    CComVariant role;
    if (FAILED(node.container->get_accRole(node.childId, &role))) return std::nullopt;
    return role;
}

std::optional<RECT> ReadLocation(const AANode& node) {
    if (!node.IsValid()) return std::nullopt;
    LONG left = 0, top = 0, width = 0, height = 0;
    if (FAILED(node.container->accLocation(&left, &top, &width, &height, node.childId))) return std::nullopt;
    return RECT{left, top, WrappingSum(left, width), WrappingSum(top, height)};
}

}  // namespace Zorvex
