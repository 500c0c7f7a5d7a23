// When a policy's rule applies.
#pragma once

#include <memory>

#include "Common/include/JsonSerializer/IJsonSerializer.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyContext.h"

namespace Zorvex::Generation {

// Immutable once it is parsed.
class SelectorPolicyConditionBase {
public:
    virtual ~SelectorPolicyConditionBase() = default;
    // False if the value isn't a condition of this form, which is logged.
    virtual bool ParseJson(const Value& value) = 0;
    // May read attributes of the element.
    virtual bool Evaluate(const ContextData& contextData, SelectorPolicyContext& node) const = 0;

    // Tries the forms in their order. Each form that doesn't recognise the value leaves a log line, so a good
    // condition has lines of the forms before its own. Null if none takes it.
    static std::shared_ptr<SelectorPolicyConditionBase> FromJson(const Value& value);
};

}  // namespace Zorvex::Generation

namespace Zorvex {

template <>
class JsonSerializer<std::shared_ptr<Generation::SelectorPolicyConditionBase>>
    : public IJsonSerializer<std::shared_ptr<Generation::SelectorPolicyConditionBase>> {
public:
    // A condition isn't written: false.
    bool Serialize(const std::shared_ptr<Generation::SelectorPolicyConditionBase>& object, std::unique_ptr<Value>& out) const override;
    bool Deserialize(const Value* value, std::shared_ptr<Generation::SelectorPolicyConditionBase>& object) const override;
};

}  // namespace Zorvex
