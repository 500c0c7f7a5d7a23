// The state that a policy's rules read and change: one node on the way from an element up to its window.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>

#include "Common/include/CString.h"
#include "RuntimeCore/Selectors/Policy/ContextData.h"
#include "RuntimeCore/Selectors/Values/IAttrValue.h"

namespace Zorvex::Generation {

// Bits of a node's place in the hierarchy. A node with either of them can't be excluded.
enum HierarchyLevel : std::uint32_t { LevelInner = 0, LevelTopLevel = 1, LevelLeaf = 2 };

enum class HierarchyPresence : std::uint32_t { Undecided = 0, Included = 1, Excluded = 2 };

// Not for use by two threads at once.
class SelectorPolicyContext {
public:
    using AttributeValues = std::map<CString, std::shared_ptr<IAttrValue>>;

    // `hierarchyLevel`: HierarchyLevel bits, fixed for the node's life.
    explicit SelectorPolicyContext(std::uint32_t hierarchyLevel) : m_hierarchyLevel(hierarchyLevel) {}
    virtual ~SelectorPolicyContext() = default;

    // What is true of the node while no rule has spoken. Reads the element.
    virtual bool IsIncludedInDefaultHierarchy(const ContextData& contextData) = 0;

    std::uint32_t GetHierarchyLevel() const { return m_hierarchyLevel; }
    HierarchyPresence GetHierarchyPresence() const { return m_hierarchyPresence; }
    void SetHierarchyPresence(HierarchyPresence presence) { m_hierarchyPresence = presence; }
    // An undecided presence becomes what the default rule says; a top-level node and a leaf are always included. A
    // decided one stays. Answers the presence, which is then never undecided.
    HierarchyPresence ResolveHierarchyPresence(const ContextData& contextData);

    // The attributes that the node's selector tag is to carry; no value is null.
    const AttributeValues& GetAttributeValues() const { return m_attributeValues; }
    const std::set<CString>& GetExcludedAttributes() const { return m_excludedAttributes; }

    // The element's own value, empty where it has none. Read once: rules that ask again get the first answer.
    const CString& GetAttr(const CString& name, const ContextData& contextData);
    // Replaces an earlier value. Without effect on a name that was excluded, at whatever time.
    void SetAttr(const CString& name, std::shared_ptr<IAttrValue> value);
    // Drops the value and bars the name for good.
    void ExcludeAttr(const CString& name);

protected:
    // Reads the element; empty on every failure.
    virtual CString GetCurrentAttrValue(const CString& name, const ContextData& contextData) = 0;

private:
    const std::uint32_t m_hierarchyLevel;
    HierarchyPresence m_hierarchyPresence = HierarchyPresence::Undecided;
    AttributeValues m_attributeValues;
    std::set<CString> m_excludedAttributes;
    std::map<CString, CString> m_attributeCache;
};

}  // namespace Zorvex::Generation
