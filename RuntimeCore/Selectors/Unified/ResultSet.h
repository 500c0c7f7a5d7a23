// The elements that one tag of a selector found.
#pragma once

#include <cstdint>
#include <vector>

#include "Common/include/ArchiveExtension.h"
#include "RuntimeCore/Selectors/Unified/SearchParameters.h"

namespace Zorvex::Search {

template <class Result>
struct ResultSet {
    static constexpr std::size_t kMinimumWireSize = 10;

    std::uint32_t limit = kUnboundedResults;
    std::vector<Result> results;  // best score first

    void WriteToArchive(Archive& archive) const {
        archive.write(limit);
        writeVector(archive, results);
    }
    void ReadFromArchive(Archive& archive) {
        archive.read(limit);
        readVector(archive, results);
    }
};

}  // namespace Zorvex::Search
