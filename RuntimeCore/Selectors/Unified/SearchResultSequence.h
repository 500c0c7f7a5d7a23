// The process-wide sequence that search results take their ids from.
//
// A controller that continues a search in another process hands the last value on, so that ids stay unique over all
// of them. The sequence is plain: requests run one at a time.
#pragma once

#include <cstdint>

namespace Zorvex::Search {

// The next result gets this id.
std::int64_t GetSearchResultSequence();
void SetSearchResultSequence(std::int64_t next);
// The id for a new result; raises the sequence by one. It wraps around at the largest number.
std::int64_t TakeSearchResultId();

}  // namespace Zorvex::Search
