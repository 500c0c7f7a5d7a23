#include "InProc/Vantrel/AncestryRequest.h"

#include <ios>
#include <memory>
#include <utility>

#include "Common/include/Log.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/Selectors/Generation/AaSelectorNodeContextInProcess.h"
#include "RuntimeCore/Selectors/Generation/Ancestry.h"

namespace Zorvex {

namespace {

using Generation::AaSelectorNodeContextInProcess;

// The node's identifier for the client of `identifierBase`; false for a node that is no accessible one.
bool Register(const AAObjectIdentifier& identifierBase, bool strictOwner, const Generation::SelectorNodeContext* node,
              AAObjectIdentifier& identifier) {
    const auto* source = dynamic_cast<const AaSelectorNodeContextInProcess*>(node);
    if (!source) return false;
    identifier = AAContainerCache::Instance().RegisterObject({identifierBase.clientPid, identifierBase.originalWnd},
                                                             source->GetElement(), strictOwner ? 1u : 0u);
    return true;
}

bool AddNodeInfoAA(const AAObjectIdentifier& identifierBase, bool strictOwner, Generation::AncestryElementNodeInfo&& nodeInfo,
                   std::vector<AncestryNode>& records) {
    AncestryNode record;
    if (!Register(identifierBase, strictOwner, nodeInfo.node.get(), record.node)) {
        LogError("srcNodeAa is not AaSelectorNodeContextInProcess");
        return false;
    }
    record.included = nodeInfo.included;
    record.minimalAttributes = std::move(nodeInfo.minimalAttributes);
    record.selectorIndex = nodeInfo.index;
    record.allAttributes = std::move(nodeInfo.allAttributes);
    for (const auto& sibling : nodeInfo.siblings) {
        AAObjectIdentifier identifier;
        if (Register(identifierBase, strictOwner, sibling.get(), identifier)) record.siblings.push_back(identifier);
    }
    record.indexInSiblings = nodeInfo.indexInSiblings;
    records.push_back(std::move(record));
    return true;
}

}  // namespace

HRESULT GetAncestryInfo(const AAObjectIdentifier& targetIdentifier, const AAObjectIdentifier& relativeAncestorIdentifier,
                        Generation::AncestryInfoOptions options, std::vector<AncestryNode>& records, HWND& nextWindow) {
    records.clear();
    nextWindow = nullptr;
    LogVerbose("calling LookupIdentifier(targetAa)");
    AAElement target = AAContainerCache::Instance().LookupIdentifier(targetIdentifier);
    LogVerbose("calling LookupIdentifier(relativeAncestorAaIdentifier)");
    AAElement relativeAncestor = AAContainerCache::Instance().LookupIdentifier(relativeAncestorIdentifier);
    if (!target.IsValid()) {
        LogError("AAInternalImpl::GetAncestryInfo: invalid target AA");
        return E_INVALIDARG;
    }
    nextWindow = target.hWnd;

    std::shared_ptr<Generation::SelectorNodeContext> relativeAncestorNode;
    if (relativeAncestor.IsValid())
        relativeAncestorNode = std::make_shared<AaSelectorNodeContextInProcess>(std::move(relativeAncestor), Generation::LevelInner);
    Generation::ContextData contextData;
    const auto targetNode = std::make_shared<AaSelectorNodeContextInProcess>(std::move(target), Generation::LevelLeaf);
    const bool strictOwner = options.Has(AncestryStrictOwner);
    Generation::AncestryResult result;
    std::shared_ptr<Generation::SelectorNodeContext> nextNode;
    const HRESULT code = Generation::AppendFullAncestry(result, targetNode, relativeAncestorNode, options, contextData, nextNode);
    if (FAILED(code)) {
        if (ShouldLog(Severity::Error)) LogStream(Severity::Error) << "GetDefaultSelectorAncestry failed, hr=" << std::hex << code;
        return code;
    }
    records.reserve(result.nodes.size());
    for (Generation::AncestryElementNodeInfo& node : result.nodes) {
        if (AddNodeInfoAA(targetIdentifier, strictOwner, std::move(node), records)) continue;
        LogError("AddNodeInfoAA failed");
        records.clear();
        return E_FAIL;
    }
    if (nextNode) {
        const auto* nextAncestorNode = dynamic_cast<const AaSelectorNodeContextInProcess*>(nextNode.get());
        if (!nextAncestorNode) {
            LogError("AAInternalImpl::GetAncestryInfo: nextAncestorNode is not AaSelectorNodeContextInProcess");
            records.clear();
            return E_FAIL;
        }
        nextWindow = nextAncestorNode->GetElement().hWnd;
    }
    return S_OK;
}

GetAncestryInfoResponse GetAncestryInfoAAImpl(const GetAncestryInfoRequest& request) {
    GetAncestryInfoResponse response;
    response.result = GetAncestryInfo(request.target, request.relativeAncestor,
                                      Generation::AncestryInfoOptions::ReadFromArchive(request.options), response.nodes, response.nextWindow);
    return response;
}

}  // namespace Zorvex
