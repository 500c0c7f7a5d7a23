// One rule of a policy: under a condition, actions.
#pragma once

#include <memory>
#include <vector>

#include "RuntimeCore/Selectors/Policy/SelectorPolicyActionBase.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyConditionBase.h"

namespace Zorvex::Generation {

// Immutable once it is parsed.
class SelectorPolicyRule {
public:
    SelectorPolicyRule() = default;
    SelectorPolicyRule(SelectorPolicyRule&&) noexcept = default;
    SelectorPolicyRule& operator=(SelectorPolicyRule&&) noexcept = default;

    // False, with a log line, if the value is no rule. A rule needs an action; without a condition it always applies.
    bool ParseJson(const Value& value);
    // True if one of the actions may decide whether a node stays in the hierarchy.
    bool AffectsHierarchy() const;
    // Where the condition holds, carries the actions out, until one of them takes the node out of the hierarchy.
    // After the first action the node's presence is decided.
    void Apply(const ContextData& contextData, SelectorPolicyContext& node) const;

private:
    std::shared_ptr<SelectorPolicyConditionBase> m_condition;  // null: always
    SelectorPolicyActions m_actions;
};

}  // namespace Zorvex::Generation

namespace Zorvex {

template <>
class JsonSerializer<Generation::SelectorPolicyRule> : public IJsonSerializer<Generation::SelectorPolicyRule> {
public:
    // A rule isn't written: false.
    bool Serialize(const Generation::SelectorPolicyRule& object, std::unique_ptr<Value>& out) const override;
    bool Deserialize(const Value* value, Generation::SelectorPolicyRule& object) const override;
};

template <>
class JsonSerializer<std::vector<Generation::SelectorPolicyRule>> : public IJsonSerializer<std::vector<Generation::SelectorPolicyRule>> {
public:
    // An empty list for none; rules aren't written: false.
    bool Serialize(const std::vector<Generation::SelectorPolicyRule>& object, std::unique_ptr<Value>& out) const override;
    // Clears the target first; the first bad element stops, with those before it kept.
    bool Deserialize(const Value* value, std::vector<Generation::SelectorPolicyRule>& object) const override;
};

}  // namespace Zorvex
