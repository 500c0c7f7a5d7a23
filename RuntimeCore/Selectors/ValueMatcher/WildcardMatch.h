// Wildcards: * stands for any run of units, the empty one too, ? for exactly one.
#pragma once

#include <string_view>

namespace Zorvex {

// True if `text` as a whole fits `pattern`. There is no escape. Time is linear in the text for each segment between
// two stars. With caseSensitive false both are lower-cased unit by unit first.
//
// A segment in the middle that holds ? after a repeated beginning can be missed although it occurs (the search
// jumps too far); selectors in use rely on the answer as it is.
bool WildcardMatch(std::wstring_view pattern, std::wstring_view text, bool caseSensitive);

}  // namespace Zorvex
