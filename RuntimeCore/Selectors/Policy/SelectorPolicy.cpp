#include "RuntimeCore/Selectors/Policy/SelectorPolicy.h"

#include <array>

#include "RuntimeCore/Selectors/Policy/SelectorPolicyV1.h"

namespace Zorvex::Generation {

std::pair<SelectorPolicyParseResult, std::shared_ptr<SelectorPolicy>> SelectorPolicy::FromString(const CString& text) {
    using Creator = std::shared_ptr<SelectorPolicy> (*)();
    static const std::array<Creator, 1> creators = {
        [] { return std::shared_ptr<SelectorPolicy>(std::make_shared<SelectorPolicyV1>()); },
    };
    SelectorPolicyParseResult result = SelectorPolicyParseResult::InvalidPolicy;
    for (const Creator create : creators) {
        std::shared_ptr<SelectorPolicy> policy = create();
        result = policy->ParseString(text);
        if (result == SelectorPolicyParseResult::Success) return {result, std::move(policy)};
    }
    return {result, nullptr};
}

}  // namespace Zorvex::Generation
