#include "RuntimeCore/Selectors/Unified/SearchResultSequence.h"

namespace Zorvex::Search {

namespace {
// Unsigned, so that a sequence that a client set to the largest number may still be raised.
std::uint64_t g_nextId = 0;
}  // namespace

std::int64_t GetSearchResultSequence() { return static_cast<std::int64_t>(g_nextId); }
void SetSearchResultSequence(std::int64_t next) { g_nextId = static_cast<std::uint64_t>(next); }
std::int64_t TakeSearchResultId() { return static_cast<std::int64_t>(g_nextId++); }

}  // namespace Zorvex::Search
