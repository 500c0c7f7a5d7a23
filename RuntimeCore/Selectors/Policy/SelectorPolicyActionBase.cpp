#include "RuntimeCore/Selectors/Policy/SelectorPolicyActionBase.h"

#include <array>

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicyActions.h"

namespace Zorvex::Generation {

namespace {

using ActionPtr = std::shared_ptr<SelectorPolicyActionBase>;

template <class T>
ActionPtr Create() {
    return std::make_shared<T>();
}

}  // namespace

ActionPtr SelectorPolicyActionBase::FromJson(const Value& value) {
    static const std::array<ActionPtr (*)(), 4> creators = {
        &Create<SelectorPolicyHierarchyPresenceSetter>,
        &Create<SelectorPolicyIncludeOrExcludeAttributeAction>,
        &Create<SelectorPolicyAttributeValueSetter>,
        &Create<SelectorPolicyRegexSetter>,
    };
    for (const auto create : creators) {
        ActionPtr action = create();
        if (action->ParseJson(value)) return action;
    }
    return nullptr;
}

}  // namespace Zorvex::Generation

namespace Zorvex {

using Generation::SelectorPolicyActionBase;
using Generation::SelectorPolicyActions;

bool JsonSerializer<std::shared_ptr<SelectorPolicyActionBase>>::Serialize(const std::shared_ptr<SelectorPolicyActionBase>&,
                                                                          std::unique_ptr<Value>&) const {
    return false;
}

bool JsonSerializer<std::shared_ptr<SelectorPolicyActionBase>>::Deserialize(const Value* value,
                                                                            std::shared_ptr<SelectorPolicyActionBase>& object) const {
    if (!value || value->IsNone()) {
        LogError("SelectorPolicyActionBase: deserialize failed: NULL JSON");
        return false;
    }
    object = SelectorPolicyActionBase::FromJson(*value);
    if (!object) LogError("SelectorPolicyActionBase: deserialize failed");
    return object != nullptr;
}

bool JsonSerializer<SelectorPolicyActions>::Serialize(const SelectorPolicyActions& object, std::unique_ptr<Value>& out) const {
    if (!object.empty()) return false;
    out = std::make_unique<Value>(Value::Type::List);
    return true;
}

bool JsonSerializer<SelectorPolicyActions>::Deserialize(const Value* value, SelectorPolicyActions& object) const {
    object.clear();
    const Value::ListData* list = value ? value->AsList() : nullptr;
    if (!list) return false;
    const JsonSerializer<std::shared_ptr<SelectorPolicyActionBase>> actionSerializer;
    for (const Value& element : *list) {
        std::shared_ptr<SelectorPolicyActionBase> action;
        if (!actionSerializer.Deserialize(&element, action)) return false;
        object.push_back(std::move(action));
    }
    return true;
}

}  // namespace Zorvex
