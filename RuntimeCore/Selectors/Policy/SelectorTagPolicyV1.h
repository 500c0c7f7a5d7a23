// The tag policy of version 1, and how tag policies are read from JSON.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "Common/include/JsonSerializer/IJsonSerializer.h"
#include "RuntimeCore/Selectors/Policy/SelectorTagPolicy.h"

namespace Zorvex::Generation {

// Two lists of rules: those that decide about the hierarchy come first, wherever they stand in the document.
class SelectorTagPolicyV1 final : public SelectorTagPolicy {
public:
    static constexpr int Version = 1;

    bool ParseJson(const Value& value) override;
    CString ToStringWithVersion() const override;
    bool IsEmpty() const override { return m_hierarchyRules.empty() && m_attributeRules.empty(); }
    void AddRule(SelectorPolicyRule&& rule) override;
    void Apply(const ContextData& contextData, SelectorPolicyContext& node) const override;

    // Null on failure, which is logged. The value is borrowed and may be null.
    static std::shared_ptr<SelectorTagPolicyV1> FromJson(const Value* value);

private:
    std::vector<SelectorPolicyRule> m_hierarchyRules;
    std::vector<SelectorPolicyRule> m_attributeRules;
    // The list that was parsed. Rules have no way back to JSON, so it is kept.
    Value m_json;
};

using SelectorTagPolicyMap = std::map<CString, std::shared_ptr<SelectorTagPolicy>>;

}  // namespace Zorvex::Generation

namespace Zorvex {

template <>
class JsonSerializer<std::shared_ptr<Generation::SelectorTagPolicy>> : public IJsonSerializer<std::shared_ptr<Generation::SelectorTagPolicy>> {
public:
    // A tag policy isn't written: false.
    bool Serialize(const std::shared_ptr<Generation::SelectorTagPolicy>& object, std::unique_ptr<Value>& out) const override;
    bool Deserialize(const Value* value, std::shared_ptr<Generation::SelectorTagPolicy>& object) const override;
};

// A dictionary with the names of the tags as its keys.
template <>
class JsonSerializer<Generation::SelectorTagPolicyMap> : public IJsonSerializer<Generation::SelectorTagPolicyMap> {
public:
    bool Serialize(const Generation::SelectorTagPolicyMap& object, std::unique_ptr<Value>& out) const override;
    // Clears the target first; the first bad entry, in the order of the keys, stops, with the entries before it kept.
    bool Deserialize(const Value* value, Generation::SelectorTagPolicyMap& object) const override;
};

}  // namespace Zorvex
