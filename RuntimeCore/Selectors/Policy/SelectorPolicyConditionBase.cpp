#include "RuntimeCore/Selectors/Policy/SelectorPolicyConditionBase.h"

#include <array>

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyConditions.h"

namespace Zorvex::Generation {

namespace {

using ConditionPtr = std::shared_ptr<SelectorPolicyConditionBase>;

template <class T>
ConditionPtr Create() {
    return std::make_shared<T>();
}

}  // namespace

ConditionPtr SelectorPolicyConditionBase::FromJson(const Value& value) {
    // A conjunction alone looks at its elements' forms, so that a nested one is tried once a level.
    static const std::array<ConditionPtr (*)(), 4> creators = {
        &Create<SelectorPolicyAttributeEmptyCondition>,
        &Create<SelectorPolicyHierarchyLevelCondition>,
        &Create<SelectorPolicyRegexMatcher>,
        &Create<SelectorPolicyMatchAllCondition>,
    };
    for (const auto create : creators) {
        ConditionPtr condition = create();
        if (condition->ParseJson(value)) return condition;
    }
    return nullptr;
}

}  // namespace Zorvex::Generation

namespace Zorvex {

using Generation::SelectorPolicyConditionBase;

bool JsonSerializer<std::shared_ptr<SelectorPolicyConditionBase>>::Serialize(const std::shared_ptr<SelectorPolicyConditionBase>&,
                                                                             std::unique_ptr<Value>&) const {
    return false;
}

bool JsonSerializer<std::shared_ptr<SelectorPolicyConditionBase>>::Deserialize(
    const Value* value, std::shared_ptr<SelectorPolicyConditionBase>& object) const {
    object = value ? SelectorPolicyConditionBase::FromJson(*value) : nullptr;
    if (!object) LogError("SelectorPolicyConditionBase: deserialize failed");
    return object != nullptr;
}

}  // namespace Zorvex
