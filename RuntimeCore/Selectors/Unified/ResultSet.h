// The elements that one tag of a selector found.
#pragma once

#include <cstdint>
#include <vector>

#include "RuntimeCore/Selectors/Unified/SearchParameters.h"

namespace Zorvex::Search {

template <class Result>
struct ResultSet {
    std::uint32_t limit = kUnboundedResults;
    std::vector<Result> results;  // best score first

    void WriteToArchive(Archive& archive) const;
    void ReadFromArchive(Archive& archive);
};

}  // namespace Zorvex::Search
