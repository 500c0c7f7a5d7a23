// What a policy's rule does to a node.
#pragma once

#include <memory>
#include <vector>

#include "Common/include/JsonSerializer/IJsonSerializer.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyContext.h"

namespace Zorvex::Generation {

// Immutable once it is parsed.
class SelectorPolicyActionBase {
public:
    virtual ~SelectorPolicyActionBase() = default;
    // False if the value isn't an action of this form, which most forms log.
    virtual bool ParseJson(const Value& value) = 0;
    // May read attributes of the element.
    virtual void Perform(const ContextData& contextData, SelectorPolicyContext& node) const = 0;
    // True if it may decide whether the node stays in the hierarchy.
    virtual bool AffectsHierarchy() const = 0;

    // Tries the forms in their order, as the conditions do. Null if none takes the value.
    static std::shared_ptr<SelectorPolicyActionBase> FromJson(const Value& value);
};

using SelectorPolicyActions = std::vector<std::shared_ptr<SelectorPolicyActionBase>>;

}  // namespace Zorvex::Generation

namespace Zorvex {

template <>
class JsonSerializer<std::shared_ptr<Generation::SelectorPolicyActionBase>>
    : public IJsonSerializer<std::shared_ptr<Generation::SelectorPolicyActionBase>> {
public:
    // An action isn't written: false.
    bool Serialize(const std::shared_ptr<Generation::SelectorPolicyActionBase>& object, std::unique_ptr<Value>& out) const override;
    bool Deserialize(const Value* value, std::shared_ptr<Generation::SelectorPolicyActionBase>& object) const override;
};

template <>
class JsonSerializer<Generation::SelectorPolicyActions> : public IJsonSerializer<Generation::SelectorPolicyActions> {
public:
    // An empty list for none; actions aren't written: false.
    bool Serialize(const Generation::SelectorPolicyActions& object, std::unique_ptr<Value>& out) const override;
    // Clears the target first; the first bad element stops, with those before it kept.
    bool Deserialize(const Value* value, Generation::SelectorPolicyActions& object) const override;
};

}  // namespace Zorvex
