// The outcome of one selector's search.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "RuntimeCore/Selectors/Unified/ISearchErrorBase.h"
#include "RuntimeCore/Selectors/Unified/ResultSet.h"

namespace Zorvex::Search {

template <class Result>
struct SelectorResult {
    std::uint32_t limit = kUnboundedResults;
    std::vector<Result> results;              // of the last tag, best score first
    std::unique_ptr<ISearchErrorBase> error;  // null unless some tag found nothing
    std::vector<ResultSet<Result>> intermediate;  // one for each tag but the last, in chain order
    std::int64_t reserved = -1;

    // `reserved` doesn't travel.
    void WriteToArchive(Archive& archive) const;
    void ReadFromArchive(Archive& archive);
};

}  // namespace Zorvex::Search
