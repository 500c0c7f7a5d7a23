#include "RuntimeCore/Selectors/Policy/SelectorPolicyContext.h"

#include <utility>

namespace Zorvex::Generation {

HierarchyPresence SelectorPolicyContext::ResolveHierarchyPresence(const ContextData& contextData) {
    if (m_hierarchyPresence == HierarchyPresence::Undecided) {
        // The default rule is asked first, for its log lines, also where the level decides alone.
        const bool included = IsIncludedInDefaultHierarchy(contextData) || (m_hierarchyLevel & (LevelTopLevel | LevelLeaf)) != 0;
        m_hierarchyPresence = included ? HierarchyPresence::Included : HierarchyPresence::Excluded;
    }
    return m_hierarchyPresence;
}

const CString& SelectorPolicyContext::GetAttr(const CString& name, const ContextData& contextData) {
    const auto cached = m_attributeCache.find(name);
    if (cached != m_attributeCache.end()) return cached->second;
    return m_attributeCache.emplace(name, GetCurrentAttrValue(name, contextData)).first->second;
}

void SelectorPolicyContext::SetAttr(const CString& name, std::shared_ptr<IAttrValue> value) {
    if (m_excludedAttributes.contains(name)) return;
    m_attributeValues.insert_or_assign(name, std::move(value));
}

void SelectorPolicyContext::ExcludeAttr(const CString& name) {
    m_attributeValues.erase(name);
    m_excludedAttributes.insert(name);
}

}  // namespace Zorvex::Generation
