#include "RuntimeCore/Selectors/Generation/SelectorNodeContext.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "Common/include/Log.h"
#include "Common/include/Timer.h"

namespace Zorvex::Generation {

namespace {

constexpr std::uint32_t AdditionalTimeoutMilliseconds = 30'000;

bool IsSame(const std::shared_ptr<SelectorNodeContext>& left, const std::shared_ptr<SelectorNodeContext>& right) {
    if (!left || !right) return !left && !right;
    return left->GetType() == right->GetType() && left->IsSameNode(*right);
}

// The nodes of one stretch, and where it ends.
struct Stretch {
    std::vector<std::shared_ptr<SelectorNodeContextInProcess>> path;
    std::shared_ptr<SelectorNodeContext> nextNode;
    bool hasReachedRelativeAncestor = false;
};

// The lines of the climb carry the name of its caller.
constexpr LocatedFormat<char> ClimbLine(const char* text, unsigned line = __builtin_LINE()) {
    return {text, __builtin_FILE(), "GetPartialAncestryInfo", line};
}

// Climbs from `start` to the next node that belongs into the selector.
HRESULT Climb(std::shared_ptr<SelectorNodeContextInProcess> start, const std::shared_ptr<SelectorNodeContext>& relativeAncestor,
              const AncestryInfoOptions& options, ContextData& contextData, Timer& timer, Stretch& stretch) {
    const bool keepAllNodes = options.Has(AncestryKeepAllNodes);
    std::shared_ptr<SelectorNodeContextInProcess> current = std::move(start);
    for (int climbed = 0;; ++climbed) {
        if (climbed == MaximumAncestors) {
            LogError(ClimbLine("SelectorNodeContextInProcess::GetPartialAncestryInfo: no end after %d ancestors"), climbed);
            return AncestryInvalidNode;
        }
        if (!current->IsValid()) {
            LogError(ClimbLine("SelectorNodeContextInProcess::GetPartialAncestryInfo: invalid element"));
            return AncestryInvalidNode;
        }
        if (timer.IsOver()) {
            LogError(ClimbLine("SelectorNodeContextInProcess::GetPartialAncestryInfo: the timeout of %dms has expired"), options.timeoutMilliseconds);
            return AncestryTimeout;
        }
        std::shared_ptr<SelectorNodeContext> parent;
        const HRESULT result = current->GetParent(options, contextData, parent);
        if (result != S_OK && result != AncestryPaused) {
            // The line names the wrong operation on purpose: it is known by this text.
            LogError(ClimbLine("SelectorNodeContextInProcessBase::GetPartialAncestryInfo: GetAncestryElementNodeInfo failed, hr=0x%X"), result);
            return result;
        }
        if (keepAllNodes || stretch.path.size() < 2) stretch.path.push_back(current);
        if (!parent) return result;
        if (IsSame(parent, relativeAncestor)) {
            stretch.hasReachedRelativeAncestor = true;
            LogVerbose(ClimbLine("SelectorNodeContextInProcessBase::GetPartialAncestryInfo: m_hasReachedRelativeAncestor = true"));
            return result;
        }
        current = std::dynamic_pointer_cast<SelectorNodeContextInProcess>(parent);
        // A node that can't be climbed from here is where somebody else goes on.
        if (parent->ResolveHierarchyPresence(contextData) == HierarchyPresence::Included || result == AncestryPaused || !current) {
            stretch.nextNode = std::move(parent);
            return result;
        }
    }
}

}  // namespace

std::uint32_t SelectorNodeContext::AdjustTimeout(AncestryInfoOptions& options) {
    constexpr std::uint32_t longest = std::numeric_limits<int>::max();
    options.timeoutMilliseconds = std::min(options.timeoutMilliseconds, longest - AdditionalTimeoutMilliseconds) + AdditionalTimeoutMilliseconds;
    return options.timeoutMilliseconds;
}

HRESULT SelectorNodeContextInProcess::GetPartialAncestryInfo(const std::shared_ptr<SelectorNodeContext>& relativeAncestor,
                                                             AncestryInfoOptions& options, ContextData& contextData,
                                                             AncestryResult& partialResult,
                                                             std::shared_ptr<SelectorNodeContext>& nextNode) {
    partialResult = {};
    nextNode.reset();
    if (!IsValid()) return AncestryInvalidNode;
    const auto self = std::static_pointer_cast<SelectorNodeContextInProcess>(shared_from_this());
    if (IsSame(self, relativeAncestor)) {
        partialResult.m_hasReachedRelativeAncestor = true;
        LogVerbose("SelectorNodeContextInProcessBase::GetPartialAncestryInfo: m_hasReachedRelativeAncestor = true for the target node");
        return S_OK;
    }
    LogVerbose("SelectorNodeContextInProcess::GetPartialAncestryInfo: using timeout of %dms", options.timeoutMilliseconds);
    Timer timer(static_cast<int>(options.timeoutMilliseconds));

    Stretch stretch;
    const HRESULT result = Climb(self, relativeAncestor, options, contextData, timer, stretch);
    if (result != S_OK && result != AncestryPaused) return result;
    partialResult.m_hasReachedRelativeAncestor = stretch.hasReachedRelativeAncestor;
    nextNode = stretch.nextNode;

    const bool keepAllNodes = options.Has(AncestryKeepAllNodes);
    const std::shared_ptr<SelectorNodeContext> scopeAncestor = nextNode ? nextNode : relativeAncestor;
    for (std::size_t i = 0; i < stretch.path.size(); ++i) {
        SelectorNodeContextInProcess& node = *stretch.path[i];
        if (!keepAllNodes && node.ResolveHierarchyPresence(contextData) != HierarchyPresence::Included) break;
        const std::shared_ptr<SelectorNodeContext> pathParent =
            i + 1 < stretch.path.size() ? std::shared_ptr<SelectorNodeContext>(stretch.path[i + 1]) : scopeAncestor;
        options.timeoutMilliseconds = static_cast<std::uint32_t>(timer.Remaining());
        AncestryElementNodeInfo info;
        const HRESULT infoResult = node.GetAncestryElementNodeInfo(scopeAncestor, pathParent, options, contextData, info);
        if (FAILED(infoResult)) {
            LogError("SelectorNodeContextInProcessBase::GetPartialAncestryInfo: GetAncestryElementNodeInfo failed, hr=0x%X", infoResult);
            return infoResult;
        }
        partialResult.nodes.push_back(std::move(info));
    }
    return result;
}

}  // namespace Zorvex::Generation
