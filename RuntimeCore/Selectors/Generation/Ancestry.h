// The walk from an element up to a relative ancestor, or as far as this process and the accessible tree can take it.
#pragma once

#include "RuntimeCore/Selectors/Generation/SelectorNodeContext.h"

namespace Zorvex::Generation {

// Appends the records of the target and of its ancestors to `result`. S_OK for a walk that finished and for one that
// paused, which leaves `nextNode`: the node at which somebody else goes on. Otherwise the code of what failed:
// E_INVALIDARG for a null target, AncestryTimeout, AncestryInvalidNode also when `relativeAncestor` (null: none) wasn't
// met. The options' time-out is raised at the start, then replaced by what is left of it.
HRESULT AppendFullAncestry(AncestryResult& result, const std::shared_ptr<SelectorNodeContext>& targetNode,
                           const std::shared_ptr<SelectorNodeContext>& relativeAncestorNode, AncestryInfoOptions& options,
                           ContextData& contextData, std::shared_ptr<SelectorNodeContext>& nextNode);

}  // namespace Zorvex::Generation
