// Runs an expression's program by following one way after the other, which tells what each group matched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/RegexProgram.h"

namespace Zorvex {

class RegexReach;

// Finds what the grammar says is found: the first way that leads to the end, in the order of the alternatives. Bounded
// in steps and memory; the stack grows with the nesting of look-aheads alone, which the pattern bounds.
class RegexBacktracker {
public:
    // What is asked of the end of a match.
    enum class Ending { AtEndOfText, Anywhere, BehindItsBegin };

    // Everything is borrowed. `reach` spares it the ways that lead nowhere; null where that isn't known.
    RegexBacktracker(const RegexProgram& program, std::wstring_view text, RegexSteps& steps, const RegexReach* reach = nullptr);

    // Matches from `position`, which is not beyond the end of the text. Throws RegexError at the bounds.
    bool MatchAt(std::size_t position, Ending ending);

    // Of the last match that was found: where it ends, and the text of a group from 1 on, empty for one that took no part.
    std::size_t GetEnd() const { return m_end; }
    std::wstring_view GetGroup(std::uint32_t number) const;

private:
    // Either another way to go on with, or what a slot held before it was changed.
    struct Trail {
        std::uint32_t place;  // the instruction, or the slot
        bool isWay;
        std::size_t position;
    };

    bool Leads(std::uint32_t at, std::size_t position) const;
    void Push(Trail trail);
    void SetSlot(std::uint32_t slot, std::size_t position);
    bool TakeOtherWay(std::size_t bottom, std::uint32_t& at, std::size_t& position);
    void DropWays(std::size_t bottom);
    bool BackReferenceHolds(std::uint32_t group, std::size_t& position);
    bool LookHolds(const RegexLook& look, std::size_t position);
    bool Follow(std::uint32_t at, std::size_t position, bool isLook);
    bool IsEndingFine(std::size_t position) const;

    const RegexProgram& m_program;
    std::wstring_view m_text;
    RegexSteps& m_steps;
    const RegexReach* m_reach;
    std::vector<std::size_t> m_slots;
    std::vector<Trail> m_trail;
    Ending m_ending = Ending::AtEndOfText;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_slotsAreSet = false;
};

}  // namespace Zorvex
