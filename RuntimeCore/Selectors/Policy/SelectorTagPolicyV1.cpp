#include "RuntimeCore/Selectors/Policy/SelectorTagPolicyV1.h"

#include <utility>

#include "Common/include/JsonSerializer/JsonSerializer.h"
#include "Common/include/JsonSerializer/JsonText.h"
#include "Common/include/Log.h"

namespace Zorvex::Generation {

std::shared_ptr<SelectorTagPolicyV1> SelectorTagPolicyV1::FromJson(const Value* value) {
    auto policy = std::make_shared<SelectorTagPolicyV1>();
    if (value && policy->ParseJson(*value)) return policy;
    LogError("SelectorTagPolicyV1::FromJson: ParseJson failed for version %d", Version);
    return nullptr;
}

bool SelectorTagPolicyV1::ParseJson(const Value& value) {
    std::vector<SelectorPolicyRule> rules;
    if (!JsonSerializer<std::vector<SelectorPolicyRule>>().Deserialize(&value, rules)) {
        LogError("SelectorTagPolicyV1::ParseJson: failed to interpret JSON policy");
        return false;
    }
    for (SelectorPolicyRule& rule : rules) AddRule(std::move(rule));
    m_json = std::move(*value.DeepCopy());
    return true;
}

// The rules stand under "tag_rules" as a list here, where a policy document has a dictionary of tags: no parser takes
// it back, on purpose.
CString SelectorTagPolicyV1::ToStringWithVersion() const {
    Value document(Value::Type::Dictionary);
    document.Set("version", Value(std::int32_t{Version}));
    document.Set("tag_rules", std::move(*m_json.DeepCopy()));
    CString text;
    if (!ConvertJsonToString(document, text)) {
        LogError("SelectorTagPolicyV1::ToStringWithVersion: failed to convert JSON to string");
        return {};
    }
    return text;
}

void SelectorTagPolicyV1::AddRule(SelectorPolicyRule&& rule) {
    (rule.AffectsHierarchy() ? m_hierarchyRules : m_attributeRules).push_back(std::move(rule));
}

void SelectorTagPolicyV1::Apply(const ContextData& contextData, SelectorPolicyContext& node) const {
    for (const SelectorPolicyRule& rule : m_hierarchyRules) {
        rule.Apply(contextData, node);
        if (node.ResolveHierarchyPresence(contextData) == HierarchyPresence::Excluded) return;
    }
    for (const SelectorPolicyRule& rule : m_attributeRules) rule.Apply(contextData, node);
}

}  // namespace Zorvex::Generation

namespace Zorvex {

using Generation::SelectorTagPolicy;
using Generation::SelectorTagPolicyMap;
using Generation::SelectorTagPolicyV1;

bool JsonSerializer<std::shared_ptr<SelectorTagPolicy>>::Serialize(const std::shared_ptr<SelectorTagPolicy>&, std::unique_ptr<Value>&) const {
    return false;
}

bool JsonSerializer<std::shared_ptr<SelectorTagPolicy>>::Deserialize(const Value* value, std::shared_ptr<SelectorTagPolicy>& object) const {
    if (!value || value->IsNone()) {
        LogError("SelectorTagPolicyV1: deserialize failed: NULL JSON");
        return false;
    }
    object = SelectorTagPolicyV1::FromJson(value);
    if (!object) LogError("SelectorTagPolicyV1: deserialize failed");
    return object != nullptr;
}

bool JsonSerializer<SelectorTagPolicyMap>::Serialize(const SelectorTagPolicyMap& object, std::unique_ptr<Value>& out) const {
    auto dictionary = std::make_unique<Value>(Value::Type::Dictionary);
    const JsonSerializer<std::shared_ptr<SelectorTagPolicy>> policySerializer;
    for (const auto& [name, policy] : object) {
        std::unique_ptr<Value> value;
        std::string key;
        if (!policySerializer.Serialize(policy, value) || !value || !Utf16ToUtf8(name, key)) return false;
        dictionary->Set(key, std::move(*value));
    }
    out = std::move(dictionary);
    return true;
}

bool JsonSerializer<SelectorTagPolicyMap>::Deserialize(const Value* value, SelectorTagPolicyMap& object) const {
    object.clear();
    const Value::DictionaryData* dictionary = value ? value->AsDictionary() : nullptr;
    if (!dictionary) return false;
    const JsonSerializer<std::shared_ptr<SelectorTagPolicy>> policySerializer;
    for (const auto& [key, element] : *dictionary) {
        std::shared_ptr<SelectorTagPolicy> policy;
        CString name;
        if (!policySerializer.Deserialize(&element, policy) || !Utf8ToUtf16(key, name)) return false;
        object.insert_or_assign(std::move(name), std::move(policy));
    }
    return true;
}

}  // namespace Zorvex
