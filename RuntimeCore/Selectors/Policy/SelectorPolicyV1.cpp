#include "RuntimeCore/Selectors/Policy/SelectorPolicyV1.h"

#include "Common/include/JsonSerializer/JsonText.h"
#include "Common/include/JsonSerializer/UnpackJson.h"
#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Policy/PolicyRegexBudget.h"

namespace Zorvex::Generation {

SelectorPolicyParseResult SelectorPolicyV1::ParseString(const CString& text) {
    if (text.empty()) return SelectorPolicyParseResult::Success;
    const std::unique_ptr<Value> value = ParseJsonFromString(text);
    if (!value) {
        LogError("SelectorPolicy::FromJson: JSON syntax error");
        return SelectorPolicyParseResult::SyntaxError;
    }
    const PolicyRegexBudget budget(text.size());
    UnpackJsonPtrByCallback version([this](const Value* found) { return !found || IsOfThisVersion(*found); });
    UnpackJsonPtrByCallback tagRules([this](const Value* found) {
        if (!found) return true;
        const JsonSerializer<SelectorTagPolicyMap> serializer;
        return UnpackAnyJson().Add(serializer, m_tagPolicies).Deserialize(found);
    });
    const JsonSerializer<UnpackJsonPtrByCallback> serializer;
    if (!UnpackJson().Add("version", serializer, version).Add("tag_rules", serializer, tagRules).Deserialize(value.get())) {
        LogError("SelectorPolicy::FromJson: JSON describes an invalid policy");
        return SelectorPolicyParseResult::InvalidPolicy;
    }
    m_text = text;
    return SelectorPolicyParseResult::Success;
}

bool SelectorPolicyV1::IsOfThisVersion(const Value& version) const {
    const std::int32_t* number = version.AsInteger();
    return number && *number == GetVersion();
}

const SelectorTagPolicy& SelectorPolicyV1::GetTagPolicy(const CString& tagName) const {
    static const SelectorTagPolicyV1 emptyPolicy;
    const auto found = m_tagPolicies.find(tagName);
    if (found == m_tagPolicies.end() || !found->second) return emptyPolicy;
    return *found->second;
}

std::shared_ptr<SelectorTagPolicy> SelectorPolicyV1::GetOrAddTagPolicy(const CString& tagName) {
    std::shared_ptr<SelectorTagPolicy>& policy = m_tagPolicies[tagName];
    if (!policy) policy = std::make_shared<SelectorTagPolicyV1>();
    return policy;
}

}  // namespace Zorvex::Generation
