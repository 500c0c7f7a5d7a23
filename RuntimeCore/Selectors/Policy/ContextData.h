// What all nodes of one kind share for the length of a request.
#pragma once

#include <array>
#include <memory>

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Policy/GenericDataContainer.h"

namespace Zorvex::Generation {

// One slot a kind of node, indexed by the kind's number; empty until the first node of the kind has set it up.
constexpr std::size_t ContextDataSlots = 12;
using ContextData = std::array<std::unique_ptr<GenericDataContainer>, ContextDataSlots>;

// Of a kind of node: its slot, and what the log calls its data.
//
//   template <> struct ContextDataName<AaContextData> { static constexpr const char* value = "AaContextData"; };
template <class T>
struct ContextDataName;

// The container of a slot. Null if the slot is empty, which is an error line with what the log calls its data.
inline GenericDataContainer* GetSpecificContextData(const ContextData& contextData, std::size_t index, const char* name) {
    GenericDataContainer* container = contextData[index].get();
    if (!container)
        LogError(
            "SelectorPolicyContext::GetSpecificContextData(%s): the context data is NULL, SelectorNodeContext::InitialSetup has not been "
            "called",
            name);
    return container;
}

// The data of a slot, owned by it. Null if the slot holds another type, or nothing, which is an error line. `index`
// is below ContextDataSlots.
template <class T>
T* GetSpecificContextData(const ContextData& contextData, std::size_t index) {
    // The line isn't written here: compilers differ in what a template is called.
    GenericDataContainer* container = GetSpecificContextData(contextData, index, ContextDataName<T>::value);
    return container && container->GetTypeId() == typeid(T) ? static_cast<T*>(container->Get()) : nullptr;
}

}  // namespace Zorvex::Generation
