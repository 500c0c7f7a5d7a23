// The accessibility tree as the search frame sees it.
#pragma once

#include "RuntimeCore/Selectors/Search/AaAttributeAccessPolicy.h"
#include "RuntimeCore/Selectors/Search/AaChildIterationPolicy.h"
#include "RuntimeCore/Selectors/Search/AaSearchResult.h"
#include "RuntimeCore/Selectors/Search/AaTagMatchingPolicy.h"

namespace Zorvex::Search {

struct AaSearchTraits {
    using SearchResult = AaSearchResult;
    using Container = AaContainer;
    using ChildIterationPolicy = AaChildIterationPolicy;
    using AttributeAccessPolicy = AaAttributeAccessPolicy;
    using TagMatchingPolicy = AaTagMatchingPolicy;
};

}  // namespace Zorvex::Search
