// One node on the way from an element up to its window: it knows its parent, reads its own attributes, and carries the
// state that a policy works on. The walk sees these classes alone, so other kinds of node can join.
#pragma once

#include <memory>

#include "Platform/Windows.h"
#include "RuntimeCore/Selectors/Generation/AncestryCodes.h"
#include "RuntimeCore/Selectors/Generation/AncestryInfoOptions.h"
#include "RuntimeCore/Selectors/Generation/AncestryResult.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyContext.h"

namespace Zorvex::Generation {

class SelectorNodeContext;

class SelectorNodeContextRequirements {
public:
    virtual ~SelectorNodeContextRequirements() = default;

    // Walks one stretch upward from this node. S_OK, or AncestryPaused when `nextNode` lies outside this walk's reach;
    // any other code is a failure. `nextNode` is the next node that belongs into the selector; null at the end of the
    // way. `relativeAncestor` may be null: the way then goes as far as it can.
    virtual HRESULT GetPartialAncestryInfo(const std::shared_ptr<SelectorNodeContext>& relativeAncestor, AncestryInfoOptions& options,
                                           ContextData& contextData, AncestryResult& partialResult,
                                           std::shared_ptr<SelectorNodeContext>& nextNode) = 0;
    // Raises the options' time-out by what this kind of node needs beyond it, and answers the sum, in milliseconds.
    virtual std::uint32_t AdjustTimeout(AncestryInfoOptions& options) = 0;
    // Fills the slot of this kind of node, once a request.
    virtual HRESULT InitialSetup(const AncestryInfoOptions& options, ContextData& contextData) = 0;
    // The number of the kind: its slot in the context data.
    virtual int GetType() const = 0;
    // Whether there is an element to read; the paused end of a walk has none.
    virtual bool IsValid() const = 0;
    // A copy of what the node stands for; null for an invalid node.
    virtual std::unique_ptr<GenericDataContainer> GetNativeData() const = 0;
    // `other` is of the same kind.
    virtual bool IsSameNode(const SelectorNodeContext& other) const = 0;
};

// Always held by a shared_ptr.
class SelectorNodeContext : public SelectorNodeContextRequirements,
                            public SelectorPolicyContext,
                            public std::enable_shared_from_this<SelectorNodeContext> {
public:
    using SelectorPolicyContext::SelectorPolicyContext;

    // Saturates: a time-out that can't be counted in an int is as good as the longest that can.
    std::uint32_t AdjustTimeout(AncestryInfoOptions& options) override;
};

class SelectorNodeContextInProcessRequirements {
public:
    virtual ~SelectorNodeContextInProcessRequirements() = default;

    // S_OK, or AncestryPaused with a node of a window alone; any other code is a failure, without a parent.
    virtual HRESULT GetParent(const AncestryInfoOptions& options, ContextData& contextData,
                              std::shared_ptr<SelectorNodeContext>& parent) = 0;
    // The record of this node. `scopeAncestor` is the node below which it is to be told from all others; `pathParent`
    // the next node of the way. Both may be null.
    virtual HRESULT GetAncestryElementNodeInfo(const std::shared_ptr<SelectorNodeContext>& scopeAncestor,
                                               const std::shared_ptr<SelectorNodeContext>& pathParent,
                                               const AncestryInfoOptions& options, ContextData& contextData,
                                               AncestryElementNodeInfo& info) = 0;
};

// A node whose element lives in this process.
class SelectorNodeContextInProcess : public SelectorNodeContext, public SelectorNodeContextInProcessRequirements {
public:
    using SelectorNodeContext::SelectorNodeContext;

    HRESULT GetPartialAncestryInfo(const std::shared_ptr<SelectorNodeContext>& relativeAncestor, AncestryInfoOptions& options,
                                   ContextData& contextData, AncestryResult& partialResult,
                                   std::shared_ptr<SelectorNodeContext>& nextNode) override;
};

}  // namespace Zorvex::Generation
