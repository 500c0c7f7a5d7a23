#include "RuntimeCore/Selectors/Generation/Ancestry.h"

#include <iterator>
#include <utility>

#include "Common/include/Log.h"
#include "Common/include/Timer.h"

namespace Zorvex::Generation {

namespace {

// A walk that paused below the relative ancestor has missed it as well.
HRESULT CheckRelativeAncestorReached(const AncestryResult& result, const std::shared_ptr<SelectorNodeContext>& relativeAncestorNode) {
    if (!relativeAncestorNode || result.m_hasReachedRelativeAncestor) return S_OK;
    LogError("SelectorNodeContextAncestry::CheckRelativeAncestorReached: could not reach relative ancestor");
    return AncestryInvalidNode;
}

}  // namespace

HRESULT AppendFullAncestry(AncestryResult& result, const std::shared_ptr<SelectorNodeContext>& targetNode,
                           const std::shared_ptr<SelectorNodeContext>& relativeAncestorNode, AncestryInfoOptions& options,
                           ContextData& contextData, std::shared_ptr<SelectorNodeContext>& nextNode) {
    if (!targetNode) {
        LogError("Zorvex::Generation::GetDefaultSelectorAncestry: the target node is NULL");
        return E_INVALIDARG;
    }
    nextNode.reset();
    const std::uint32_t timeout = targetNode->AdjustTimeout(options);
    Timer timer(static_cast<int>(timeout));
    LogVerbose("Zorvex::Generation::GetDefaultSelectorAncestry: using timeout of %dms", timeout);
    const HRESULT setup = targetNode->InitialSetup(options, contextData);
    if (FAILED(setup)) {
        LogError("Zorvex::Generation::GetDefaultSelectorAncestry: targetLeafNode->InitialSetup failed, hr=0x%X", setup);
        return setup;
    }
    for (std::shared_ptr<SelectorNodeContext> current = targetNode; current;) {
        options.timeoutMilliseconds = static_cast<std::uint32_t>(timer.Remaining());
        AncestryResult partial;
        std::shared_ptr<SelectorNodeContext> next;
        const HRESULT code = current->GetPartialAncestryInfo(relativeAncestorNode, options, contextData, partial, next);
        if (code != S_OK && code != AncestryPaused) {
            LogError("Zorvex::Generation::GetDefaultSelectorAncestry: GetPartialAncestryInfo failed, hr=0x%X", code);
            return code;
        }
        if (result.nodes.size() + partial.nodes.size() > MaximumAncestors) {
            LogError("Zorvex::Generation::GetDefaultSelectorAncestry: no end after %d ancestors", MaximumAncestors);
            return AncestryInvalidNode;
        }
        std::move(partial.nodes.begin(), partial.nodes.end(), std::back_inserter(result.nodes));
        result.m_hasReachedRelativeAncestor = partial.m_hasReachedRelativeAncestor;
        if (!next) {
            LogVerbose("Zorvex::Generation::GetDefaultSelectorAncestry: ancestry finished normally");
            break;
        }
        if (code == AncestryPaused) {
            LogVerbose("Zorvex::Generation::GetDefaultSelectorAncestry: ancestry paused");
            nextNode = std::move(next);
            break;
        }
        if (next->GetType() != current->GetType()) next->InitialSetup(options, contextData);
        current = std::move(next);
    }
    return CheckRelativeAncestorReached(result, relativeAncestorNode);
}

}  // namespace Zorvex::Generation
