#include "RuntimeCore/Selectors/Generation/AncestryInfoOptions.h"

#include "Common/include/Log.h"

namespace Zorvex::Generation {

AncestryInfoOptions AncestryInfoOptions::ReadFromArchive(const Zorvex::AncestryInfoOptions& record) {
    AncestryInfoOptions options{record.flags, record.timeoutMilliseconds, nullptr};
    auto [result, policy] = SelectorPolicy::FromString(record.policy);
    if (result == SelectorPolicyParseResult::Success)
        options.policy = std::move(policy);
    else
        LogError("AncestryInfoOptions::ReadFromArchive: failed to deserialize selector policy, error %d", static_cast<int>(result));
    return options;
}

}  // namespace Zorvex::Generation
