#include "RuntimeCore/Selectors/Policy/SelectorPolicyRule.h"

#include <algorithm>

#include "Common/include/JsonSerializer/UnpackJson.h"
#include "Common/include/Log.h"

namespace Zorvex::Generation {

bool SelectorPolicyRule::ParseJson(const Value& value) {
    // A condition may be missing, which leaves it null. JSON's null is no condition, though, and fails.
    UnpackJsonPtrByCallback condition([this](const Value* found) {
        return !found || JsonSerializer<std::shared_ptr<SelectorPolicyConditionBase>>().Deserialize(found, m_condition);
    });
    const JsonSerializer<UnpackJsonPtrByCallback> conditionSerializer;
    const JsonSerializer<SelectorPolicyActions> actionSerializer;
    if (!UnpackJson().Add("condition", conditionSerializer, condition).Add("actions", actionSerializer, m_actions).Deserialize(&value)) {
        LogError("SelectorPolicyRule::ParseJson: failed to interpret JSON policy");
        return false;
    }
    if (m_actions.empty()) {
        LogError("SelectorPolicyRule::ParseJson: no 'actions' in JSON policy");
        return false;
    }
    return true;
}

bool SelectorPolicyRule::AffectsHierarchy() const {
    return std::any_of(m_actions.begin(), m_actions.end(), [](const auto& action) { return action->AffectsHierarchy(); });
}

void SelectorPolicyRule::Apply(const ContextData& contextData, SelectorPolicyContext& node) const {
    if (m_condition && !m_condition->Evaluate(contextData, node)) return;
    for (const auto& action : m_actions) {
        action->Perform(contextData, node);
        if (node.ResolveHierarchyPresence(contextData) == HierarchyPresence::Excluded) return;
    }
}

}  // namespace Zorvex::Generation

namespace Zorvex {

using Generation::SelectorPolicyRule;

bool JsonSerializer<SelectorPolicyRule>::Serialize(const SelectorPolicyRule&, std::unique_ptr<Value>&) const { return false; }

bool JsonSerializer<SelectorPolicyRule>::Deserialize(const Value* value, SelectorPolicyRule& object) const {
    if (!value || value->IsNone()) {
        LogError("SelectorPolicyRule: deserialize failed: NULL JSON");
        return false;
    }
    if (object.ParseJson(*value)) return true;
    LogError("SelectorPolicyRule: deserialize failed");
    return false;
}

bool JsonSerializer<std::vector<SelectorPolicyRule>>::Serialize(const std::vector<SelectorPolicyRule>& object,
                                                                std::unique_ptr<Value>& out) const {
    if (!object.empty()) return false;
    out = std::make_unique<Value>(Value::Type::List);
    return true;
}

bool JsonSerializer<std::vector<SelectorPolicyRule>>::Deserialize(const Value* value, std::vector<SelectorPolicyRule>& object) const {
    object.clear();
    const Value::ListData* list = value ? value->AsList() : nullptr;
    if (!list) return false;
    const JsonSerializer<SelectorPolicyRule> ruleSerializer;
    for (const Value& element : *list) {
        SelectorPolicyRule rule;
        if (!ruleSerializer.Deserialize(&element, rule)) return false;
        object.push_back(std::move(rule));
    }
    return true;
}

}  // namespace Zorvex
