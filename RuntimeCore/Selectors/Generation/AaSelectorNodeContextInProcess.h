// The node of an accessible element of this process.
#pragma once

#include "Common/include/AAElement.h"
#include "RuntimeCore/Selectors/Generation/SelectorNodeContext.h"

namespace Zorvex {

// What such a node stands for.
struct AANativeWrapper {
    HWND hWnd = nullptr;
    CComPtr<IAccessible> spAcc;
    CComVariant child;
};

namespace Generation {

// Owns its reference. A node without an accessible object is the end of a paused walk: it names the window at which
// somebody else goes on, and isn't valid.
class AaSelectorNodeContextInProcess final : public SelectorNodeContextInProcess {
public:
    static constexpr int kType = 1;

    AaSelectorNodeContextInProcess(AAElement element, std::uint32_t hierarchyLevel)
        : SelectorNodeContextInProcess(hierarchyLevel), m_element(std::move(element)) {}

    const AAElement& GetElement() const { return m_element; }

    bool IsIncludedInDefaultHierarchy(const ContextData& contextData) override;
    HRESULT InitialSetup(const AncestryInfoOptions& options, ContextData& contextData) override;
    int GetType() const override { return kType; }
    bool IsValid() const override { return m_element.IsValid(); }
    std::unique_ptr<GenericDataContainer> GetNativeData() const override;
    bool IsSameNode(const SelectorNodeContext& other) const override;
    HRESULT GetParent(const AncestryInfoOptions& options, ContextData& contextData, std::shared_ptr<SelectorNodeContext>& parent) override;
    HRESULT GetAncestryElementNodeInfo(const std::shared_ptr<SelectorNodeContext>& scopeAncestor,
                                       const std::shared_ptr<SelectorNodeContext>& pathParent, const AncestryInfoOptions& options,
                                       ContextData& contextData, AncestryElementNodeInfo& info) override;

protected:
    CString GetCurrentAttrValue(const CString& name, const ContextData& contextData) override;

private:
    // The first owner window that a climb learns stays.
    static void UpdatePolicyContext(HWND hAAWnd, const ContextData& contextData);
    void AddSiblings(const AncestryInfoOptions& options, int timeoutMilliseconds, AncestryElementNodeInfo& info) const;

    const AAElement m_element;
};

}  // namespace Generation
}  // namespace Zorvex
