// The options of one selector's search.
#pragma once

#include <cstdint>

namespace Zorvex {
class Archive;
}

namespace Zorvex::Search {

// How tags bind to tree levels. A request may carry any other number: it behaves like OpenNonMatching below, with
// the first tag at any depth, any distance between tags, and no descent below an element that doesn't match.
enum class SearchScope : std::uint32_t {
    ChildrenOnly = 0,         // each tag's element is a child of the previous one's; the first a child of the root
    Descendants = 1,          // any depth, any distance
    DescendantsOfTopLevel = 2 // the first tag among the root's children, the others at any distance below
};

// How `idx` and the limit of results are honoured. Every number above 1 ignores `idx`.
enum class ResultPolicy : std::uint32_t {
    FirstMatch = 0,  // with a limit of 1 the first acceptable element wins
    BestMatch = 1,   // with a limit of 1 all candidates compete
    IgnoreIndex = 2
};

// The capacity of a result list that nothing bounds.
constexpr std::uint32_t kUnboundedResults = 50'000'000;

struct SearchParameters {
    SearchScope scope = SearchScope::Descendants;
    ResultPolicy resultPolicy = ResultPolicy::FirstMatch;
    std::uint32_t maxResults = kUnboundedResults;
    // Both govern the last tag alone: whether an element that can't be seen may be a result, and whether it may be
    // one among the root's children under DescendantsOfTopLevel.
    bool acceptHiddenAtFirstLevel = false;
    bool acceptHidden = true;
    bool optionC = true;   // the lettered options belong to other components: they are carried, the search ignores them
    bool optionD = false;
    bool optionE = false;
    std::int32_t optionF = 0;
    std::int32_t optionG = 2;
    bool optionH = false;
    double minimumScore = 0.0;  // exactly 0.0: no minimum, and no score is compared
    bool keepIntermediateAlways = false;   // report the elements of all tags, not only of the last
    bool keepIntermediateOnError = false;  // report them when a tag found nothing
    bool refreshLocation = true;           // read the screen rectangle of the final results
    bool optionI = false;
    bool optionJ = false;
    std::int32_t optionK = 0;
    std::int32_t optionL = 0;
    std::int32_t optionM = 0;

    // The order on the wire is not that of the fields; see the source.
    void WriteToArchive(Archive& archive) const;
    // Throws ArchiveException at the end of the buffer or on a wrong item.
    void ReadFromArchive(Archive& archive);
};

}  // namespace Zorvex::Search
