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
    static constexpr std::size_t kMinimumWireSize = 16;

    std::uint32_t limit = kUnboundedResults;
    std::vector<Result> results;              // of the last tag, best score first
    std::unique_ptr<ISearchErrorBase> error;  // null unless some tag found nothing
    std::vector<ResultSet<Result>> intermediate;  // one for each tag but the last, in chain order
    std::int64_t reserved = -1;

    // `reserved` doesn't travel.
    void WriteToArchive(Archive& archive) const {
        archive.write(limit);
        writeVector(archive, results);
        WriteSearchError(archive, error.get());
        writeVector(archive, intermediate);
    }
    void ReadFromArchive(Archive& archive) {
        archive.read(limit);
        readVector(archive, results);
        error = ReadSearchError(archive);
        readVector(archive, intermediate);
    }
};

}  // namespace Zorvex::Search
