// What a regular expression says, as a tree.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/CharacterSet.h"
#include "RuntimeCore/Selectors/ValueMatcher/Regex.h"

namespace Zorvex {

inline constexpr std::uint32_t kNoMaximum = UINT32_MAX;

struct RegexNode {
    enum class Kind : std::uint8_t {
        Unit,           // value: the unit, in lower case where case doesn't count
        AnyUnit,        // any but the ends of lines
        Set,            // value: index in `sets`
        Sequence,       // children
        Alternatives,   // children
        Repetition,     // children[0], from minimum to maximum times
        Group,          // children[0]; value: number of the group, 0 for one that doesn't count
        BackReference,  // value: number of the group
        Begin, End, WordBoundary, NoWordBoundary,
        LookAhead, NegativeLookAhead,  // children[0]
    };

    Kind kind;
    bool greedy = true;
    std::uint32_t value = 0;
    std::uint32_t minimum = 0;
    std::uint32_t maximum = 0;
    // Of a repetition: the groups inside, counted from 0, lastGroup being the first one behind.
    std::uint32_t firstGroup = 0;
    std::uint32_t lastGroup = 0;
    std::vector<std::uint32_t> children;  // indices in `nodes`
};

struct RegexSyntax {
    std::vector<RegexNode> nodes;
    std::vector<CharacterSet> sets;
    std::uint32_t root = 0;
    std::uint32_t groups = 0;
    bool hasBackReferences = false;
};

// Throws RegexError. Patterns longer than 65,536 units and those with groups more than 100 deep are refused.
RegexSyntax ParseRegex(std::wstring_view pattern, bool caseSensitive);

}  // namespace Zorvex
