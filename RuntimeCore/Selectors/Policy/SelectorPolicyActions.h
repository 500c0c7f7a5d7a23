// The four forms of an action. The operator comes first in them, the attribute's name second.
//
//   "exclude_from_hierarchy"               ["include_attribute", "name"]
//   ["set_attribute", "cls", "x"]          ["set_attribute_regex", "name", "[0-9]+", "*"]
#pragma once

#include "Common/include/CString.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyActionBase.h"
#include "RuntimeCore/Selectors/ValueMatcher/RegexReplacer.h"

namespace Zorvex::Generation {

// A top-level node and a leaf are included, whatever the action says.
class SelectorPolicyHierarchyPresenceSetter final : public SelectorPolicyActionBase {
public:
    bool ParseJson(const Value& value) override;
    void Perform(const ContextData& contextData, SelectorPolicyContext& node) const override;
    bool AffectsHierarchy() const override { return m_presence != HierarchyPresence::Undecided; }

private:
    HierarchyPresence m_presence = HierarchyPresence::Undecided;
};

class SelectorPolicyAttributeActionBase : public SelectorPolicyActionBase {
public:
    bool AffectsHierarchy() const override { return false; }

protected:
    CString m_attributeName;
};

// Gives the node the element's own value, unless that is empty; or bars the attribute.
class SelectorPolicyIncludeOrExcludeAttributeAction final : public SelectorPolicyAttributeActionBase {
public:
    bool ParseJson(const Value& value) override;
    void Perform(const ContextData& contextData, SelectorPolicyContext& node) const override;

private:
    bool m_isInclude = false;
};

// Gives the node a value as it stands, an empty one too.
class SelectorPolicyAttributeValueSetter final : public SelectorPolicyAttributeActionBase {
public:
    bool ParseJson(const Value& value) override;
    void Perform(const ContextData& contextData, SelectorPolicyContext& node) const override;

private:
    CString m_value;
};

// Gives the node the element's own value with every match replaced. An empty result leaves the attribute as it was, and
// so does one that can't be reached within the bounds of RegexReplacer, which is an error line.
class SelectorPolicyRegexSetter final : public SelectorPolicyAttributeActionBase {
public:
    bool ParseJson(const Value& value) override;
    void Perform(const ContextData& contextData, SelectorPolicyContext& node) const override;

private:
    RegexReplacer m_replacer;
    CString m_replacement;
};

}  // namespace Zorvex::Generation
