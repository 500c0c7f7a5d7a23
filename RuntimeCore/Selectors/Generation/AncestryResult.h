// What the walk from an element upward brings home.
#pragma once

#include <memory>
#include <vector>

#include "RuntimeCore/Requests/Records.h"

namespace Zorvex::Generation {

class SelectorNodeContext;

// One node as a selector needs it.
struct AncestryElementNodeInfo {
    std::shared_ptr<SelectorNodeContext> node;
    bool included = false;
    AttributeTexts minimalAttributes;
    std::int32_t index = -1;  // 0: unique; n: the n-th of its likes; -1: not included, or not computed
    AttributeTexts allAttributes;  // under AncestryAllAttributes
    std::vector<std::shared_ptr<SelectorNodeContext>> siblings;  // under AncestrySiblings
    std::int32_t indexInSiblings = 0;  // from 0
};

struct AncestryResult {
    bool m_hasReachedRelativeAncestor = false;
    std::vector<AncestryElementNodeInfo> nodes;  // the target first, the outermost last
};

}  // namespace Zorvex::Generation
