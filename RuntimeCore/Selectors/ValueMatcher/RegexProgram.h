// A regular expression as instructions, and the two machines that run them.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/CharacterSet.h"
#include "RuntimeCore/Selectors/ValueMatcher/RegexSyntax.h"

namespace Zorvex {

struct RegexInstruction {
    enum class Kind : std::uint8_t {
        Unit,     // a: the unit
        AnyUnit,
        Set,      // a: index in `sets`
        Split,    // goes on at a, or else at b
        Jump,     // goes on at a
        Begin, End, WordBoundary, NoWordBoundary,
        Look,     // a: index in `looks`; goes on behind the body, at b
        Accept,   // the end of the program or of a look-ahead's body
        // Only in programs that keep groups:
        Save,           // a: slot that gets the position; two slots a group, its begin and its end
        ClearSaves,     // slots from a to before b
        BackReference,  // a: number of the group
        LoopBegin,      // a: register that gets the position
        LoopCheck,      // gives up if nothing was consumed since LoopBegin of register a
    };

    Kind kind;
    std::uint32_t a = 0;
    std::uint32_t b = 0;
};

struct RegexLook {
    std::uint32_t begin;  // of its body, which ends with Accept
    std::uint32_t end;
    bool negative;
};

struct RegexProgram {
    std::vector<RegexInstruction> code;
    std::vector<CharacterSet> sets;
    std::vector<RegexLook> looks;  // an inner one stands before its outer one
    std::uint32_t groups = 0;
    std::uint32_t loops = 0;
    bool hasBackReferences = false;
    bool keepsGroups = false;
    bool caseSensitive = true;

    wchar_t Folded(wchar_t unit) const;
    // Whether an instruction that consumes a unit takes this one, which is folded.
    bool Takes(const RegexInstruction& instruction, wchar_t unit) const;
    // Whether the kind of place that Begin, End and the word boundaries ask for is at `position`.
    static bool Holds(RegexInstruction::Kind kind, std::wstring_view text, std::size_t position);
};

// Whether a program notes where its groups matched. One with references back always does.
enum class RegexGroups { Forgotten, Kept };

// Throws RegexError when the program would have more than 100,000 instructions, or cost more than the budget holds.
RegexProgram CompileRegex(RegexSyntax syntax, bool caseSensitive, RegexGroups groups, RegexBudget* budget);

// The steps that a match may still take.
class RegexSteps {
public:
    explicit RegexSteps(std::uint64_t steps) : m_left(steps) {}
    // Throws RegexError when there are fewer left.
    void Spend(std::uint64_t steps) {
        if (steps > m_left) throw RegexError{RegexErrorCode::Complexity, "match takes too many steps"};
        m_left -= steps;
    }

private:
    std::uint64_t m_left;
};

// Follows all ways at once, unit by unit: time is bounded by text times program. Not for references back.
bool RunAllWays(const RegexProgram& program, std::wstring_view text);

// Follows one way after the other, with a bound on steps and memory; knows references back.
bool RunByBacktracking(const RegexProgram& program, std::wstring_view text);

}  // namespace Zorvex
