// How an ancestry is gathered.
#pragma once

#include <cstdint>
#include <memory>

#include "RuntimeCore/Requests/Records.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/Selectors/Policy/SelectorPolicy.h"

namespace Zorvex::Generation {

// The options of a request, with its policy parsed. The time-out changes while the walk goes on: it is what is left.
struct AncestryInfoOptions {
    std::uint32_t flags = 0;  // AncestryFlags
    std::uint32_t timeoutMilliseconds = 0;
    std::shared_ptr<SelectorPolicy> policy;  // null for a text that is none

    // A bad policy is an error line and no policy, never a failure.
    static AncestryInfoOptions ReadFromArchive(const Zorvex::AncestryInfoOptions& record);

    bool Has(AncestryFlags flag) const { return (flags & flag) != 0; }
};

}  // namespace Zorvex::Generation
