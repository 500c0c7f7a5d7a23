// The four forms of a condition. The attribute's name comes first in them, the operator second.
//
//   ["name", "isEmpty"]   "isLeafNode"   ["role", "matches_regex", "pane|group"]   [CONDITION, "and", CONDITION]
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Common/include/CString.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyConditionBase.h"
#include "RuntimeCore/Selectors/ValueMatcher/Regex.h"

namespace Zorvex::Generation {

class SelectorPolicyAttributeEmptyCondition final : public SelectorPolicyConditionBase {
public:
    bool ParseJson(const Value& value) override;
    bool Evaluate(const ContextData& contextData, SelectorPolicyContext& node) const override;

private:
    CString m_attributeName;
    bool m_isEmpty = true;
};

class SelectorPolicyHierarchyLevelCondition final : public SelectorPolicyConditionBase {
public:
    bool ParseJson(const Value& value) override;
    bool Evaluate(const ContextData& contextData, SelectorPolicyContext& node) const override;

private:
    std::uint32_t m_requiredLevel = 0;  // HierarchyLevel bits
};

// Holds where the expression matches all of the value up to its first NUL, with case. A match that takes too many
// steps counts as none, and is an error line.
class SelectorPolicyRegexMatcher final : public SelectorPolicyConditionBase {
public:
    bool ParseJson(const Value& value) override;
    bool Evaluate(const ContextData& contextData, SelectorPolicyContext& node) const override;

private:
    CString m_attributeName;
    Regex m_regex;
};

// Holds where all of its conditions do; asks them in their order, up to the first that doesn't.
class SelectorPolicyMatchAllCondition final : public SelectorPolicyConditionBase {
public:
    bool ParseJson(const Value& value) override;
    bool Evaluate(const ContextData& contextData, SelectorPolicyContext& node) const override;

private:
    std::vector<std::shared_ptr<SelectorPolicyConditionBase>> m_conditions;
};

}  // namespace Zorvex::Generation
