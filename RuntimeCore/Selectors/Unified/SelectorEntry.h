// One selector to search for.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "RuntimeCore/Selectors/Unified/SearchParameters.h"
#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"

namespace Zorvex {
class ISelectorTag;
}

namespace Zorvex::Search {

struct SelectorEntry {
    static constexpr std::size_t kMinimumWireSize = 106;

    // The chain, top first. A null tag can arrive on the wire; it matches nothing.
    std::vector<std::shared_ptr<ISelectorTag>> tags;
    SearchParameters options;
    // The score earned by the part of the selector that was found above this one, in another process.
    ScoreStatistics inheritedScore;
    // Attributes of the part of the selector that will be searched after this one.
    std::uint32_t pendingAttributeCount = 0;

    void WriteToArchive(Archive& archive) const;
    // Throws ArchiveException; the entry is then partly read.
    void ReadFromArchive(Archive& archive);
};

}  // namespace Zorvex::Search
