#include "RuntimeCore/Selectors/Generation/AaSelectorNodeContextInProcess.h"

#include <utility>
#include <vector>

#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComBSTR.h"
#include "Common/include/Log.h"
#include "Common/include/Timer.h"
#include "RuntimeCore/AAUtilitiesSiblings.h"
#include "RuntimeCore/AaAttrHandler.h"
#include "RuntimeCore/AccChildReaders.h"
#include "RuntimeCore/CompareAAObjects.h"
#include "RuntimeCore/Selectors/Generation/AaContextData.h"
#include "RuntimeCore/Selectors/Generation/HierarchyRules.h"
#include "RuntimeCore/Selectors/Generation/SelectorAttributes.h"

namespace Zorvex::Generation {

namespace {

AaContextData* ContextDataOf(const ContextData& contextData) {
    return GetSpecificContextData<AaContextData>(contextData, AaSelectorNodeContextInProcess::kType);
}

bool IsWpfMenuItem(const AAElement& element) {
    if (!element.spAcc || !NWindows::IsWpfWindow(element.hWnd)) return false;
    CComVariant role;
    return SUCCEEDED(element.spAcc->get_accRole(CComVariant(CHILDID_SELF), &role)) && role.vt == VT_I4 &&
           role.lVal == ROLE_SYSTEM_MENUITEM;
}

std::shared_ptr<SelectorNodeContext> WindowNode(HWND hWnd) {
    // A leaf's level, so that it counts as included and the walk stops at it.
    return std::make_shared<AaSelectorNodeContextInProcess>(AAElement{hWnd, nullptr, CComVariant(CHILDID_SELF)}, LevelLeaf);
}

}  // namespace

bool AaSelectorNodeContextInProcess::IsIncludedInDefaultHierarchy(const ContextData& contextData) {
    if (!IsValid()) {
        LogError("AaSelectorNodeContextInProcess::IsIncludedInDefaultHierarchy: NULL element");
        return false;
    }
    const AaContextData* data = ContextDataOf(contextData);
    if (!data) {
        LogError("AaSelectorNodeContextInProcess::IsIncludedInDefaultHierarchy: invalid AA context data");
        return false;
    }
    return IsInterestingForAASelector(m_element.hWnd, m_element.spAcc, data->topLevelWindow, data->aaWindow, data->aaOnlyMode,
                                      data->targetIsWpfMenuItem);
}

HRESULT AaSelectorNodeContextInProcess::InitialSetup(const AncestryInfoOptions& options, ContextData& contextData) {
    std::unique_ptr<GenericDataContainer>& slot = contextData[kType];
    if (slot) return S_OK;
    AaContextData data;
    data.strictOwner = options.Has(AncestryStrictOwner);
    data.aaOnlyMode = options.Has(AncestryAaOnlyMode);
    data.topLevelWindow = NWindows::GetTopLevelWindow(m_element.hWnd);
    data.targetIsWpfMenuItem = !data.aaOnlyMode && IsWpfMenuItem(m_element);
    slot = std::make_unique<GenericDataContainerImpl<AaContextData>>(data);
    return S_OK;
}

std::unique_ptr<GenericDataContainer> AaSelectorNodeContextInProcess::GetNativeData() const {
    if (!IsValid()) return nullptr;
    return std::make_unique<GenericDataContainerImpl<AANativeWrapper>>(AANativeWrapper{m_element.hWnd, m_element.spAcc, m_element.child});
}

bool AaSelectorNodeContextInProcess::IsSameNode(const SelectorNodeContext& other) const {
    const AAElement& element = static_cast<const AaSelectorNodeContextInProcess&>(other).m_element;
    return CompareAAObjects(m_element.spAcc, m_element.child, element.spAcc, element.child, TRUE) == TRUE;
}

HRESULT AaSelectorNodeContextInProcess::GetParent(const AncestryInfoOptions& options, ContextData& contextData,
                                                  std::shared_ptr<SelectorNodeContext>& parent) {
    parent.reset();
    if (!IsValid()) {
        LogError("AaSelectorNodeContextInProcess::GetParent: NULL element");
        return AncestryInvalidNode;
    }
    const bool allowFallback = options.Has(AncestryStrictOwner) || options.Has(AncestryOwnerFallback);
    NextParent next = GetNextParentForAAHierarchy(m_element.hWnd, m_element.spAcc, m_element.child,
                                                  options.Has(AncestryAaOnlyMode), allowFallback);
    HRESULT result = AncestryPaused;
    if (next.hParentWnd && next.spParentAcc && !next.bUseWnd) {
        parent = std::make_shared<AaSelectorNodeContextInProcess>(
            AAElement{next.hParentWnd, std::move(next.spParentAcc), CComVariant(CHILDID_SELF)}, LevelInner);
        result = S_OK;
    } else {
        parent = WindowNode(next.hParentWnd && next.spParentAcc ? next.hParentWnd : m_element.hWnd);
    }
    UpdatePolicyContext(next.hAAWnd, contextData);
    return result;
}

void AaSelectorNodeContextInProcess::UpdatePolicyContext(HWND hAAWnd, const ContextData& contextData) {
    AaContextData* data = ContextDataOf(contextData);
    if (!data)
        LogError("AaSelectorNodeContextInProcess::UpdatePolicyContext: invalid AA context data");
    else if (!data->aaWindow)
        data->aaWindow = hAAWnd;
}

HRESULT AaSelectorNodeContextInProcess::GetAncestryElementNodeInfo(const std::shared_ptr<SelectorNodeContext>& scopeAncestor,
                                                                   const std::shared_ptr<SelectorNodeContext>&,
                                                                   const AncestryInfoOptions& options, ContextData& contextData,
                                                                   AncestryElementNodeInfo& info) {
    if (!IsValid()) {
        // The text of GetParent, on purpose.
        LogError("AaSelectorNodeContextInProcess::GetParent: NULL element");
        return AncestryInvalidNode;
    }
    AAElement scope;
    if (const auto* ancestor = dynamic_cast<const AaSelectorNodeContextInProcess*>(scopeAncestor.get())) scope = ancestor->m_element;
    Timer timer(static_cast<int>(options.timeoutMilliseconds));
    info.node = shared_from_this();
    info.included = ResolveHierarchyPresence(contextData) == HierarchyPresence::Included;
    info.index = -1;
    AttributeTexts minimalAttributes;
    LONG index = -1;
    if (GetMinimalSelectorAttributes(scope.hWnd, scope.spAcc, m_element.spAcc, m_element.child,
                                     info.included && options.Has(AncestryComputeIndex), options.Has(AncestryCheckUniqueIndex),
                                     timer.Remaining(), minimalAttributes, index)) {
        info.minimalAttributes = std::move(minimalAttributes);
        if (info.included) info.index = index;
        if (options.Has(AncestryAllAttributes))
            GetAllSelectorAttributes(m_element, options.Has(AncestryStrictOwner), info.minimalAttributes, info.allAttributes);
    } else {
        LogError("AaSelectorNodeContextInProcess::GetAncestryElementNodeInfo: GetMinimalSelectorAttributes failed");
    }
    if (options.Has(AncestrySiblings)) AddSiblings(options, timer.Remaining(), info);
    return S_OK;
}

// The lines carry the name of the caller, of which this is a step.
void AaSelectorNodeContextInProcess::AddSiblings(const AncestryInfoOptions& options, int timeoutMilliseconds,
                                                 AncestryElementNodeInfo& info) const {
    info.siblings.clear();
    const CComPtr<IAccessible> parent = GetAccParent(m_element.spAcc, m_element.child);
    if (!parent) {
        LogWarning(LocatedFormat<char>("AaSelectorNodeContextInProcess::GetAncestryElementNodeInfo: invalid IAcc parent for getting siblings",
                                       __builtin_FILE(), "GetAncestryElementNodeInfo"));
        return;
    }
    std::vector<AAUtil::SiblingElement> siblings;
    const LONG index = AAUtil::GetIndexInSiblings(m_element.hWnd, m_element.spAcc, m_element.child, parent, options.flags,
                                                  timeoutMilliseconds, siblings);
    if (index == -1) {
        LogWarning(LocatedFormat<char>("AaSelectorNodeContextInProcess::GetAncestryElementNodeInfo: current selector node not found among siblings",
                                       __builtin_FILE(), "GetAncestryElementNodeInfo"));
        return;
    }
    info.indexInSiblings = index;
    info.siblings.reserve(siblings.size());
    for (AAUtil::SiblingElement& sibling : siblings) {
        info.siblings.push_back(std::make_shared<AaSelectorNodeContextInProcess>(
            AAElement{sibling.window, std::move(sibling.container), std::move(sibling.child)}, LevelInner));
    }
}

CString AaSelectorNodeContextInProcess::GetCurrentAttrValue(const CString& name, const ContextData& contextData) {
    if (!IsValid()) return {};
    const AaContextData* data = ContextDataOf(contextData);
    if (!data) {
        LogError("AaSelectorNodeContextInProcess::GetCurrentAttrValue: invalid AA context data");
        return {};
    }
    const AaAttrHandler::Handler* handler = AaAttrHandler::Instance().Find(name);
    CComBSTR text;
    if (!handler || FAILED((*handler)(m_element.hWnd, *m_element.spAcc.p, m_element.child, data->strictOwner, text))) return {};
    return text.ToString();
}

}  // namespace Zorvex::Generation
