#include "RuntimeCore/Selectors/ValueMatcher/RegexBacktracker.h"

#include <algorithm>

#include "RuntimeCore/Selectors/ValueMatcher/RegexReach.h"

namespace Zorvex {

namespace {

using Kind = RegexInstruction::Kind;

// A few tens of milliseconds, and 24 MB at most. Whether a text repeats a part of itself is, for some patterns, as
// hard as any search: no bound on the work would let every honest pattern end.
constexpr std::uint64_t kMaximumSteps = 5'000'000;
constexpr std::size_t kMaximumTrail = 1'000'000;

constexpr std::size_t kUnset = static_cast<std::size_t>(-1);

}  // namespace

RegexBacktracker::RegexBacktracker(const RegexProgram& program, std::wstring_view text, RegexSteps& steps, const RegexReach* reach)
    : m_program(program), m_text(text), m_steps(steps), m_reach(reach), m_slots(2 * program.groups + program.loops, kUnset) {}

bool RegexBacktracker::MatchAt(std::size_t position, Ending ending) {
    if (m_slotsAreSet) {
        m_steps.Spend(m_slots.size());
        std::fill(m_slots.begin(), m_slots.end(), kUnset);
        m_slotsAreSet = false;
    }
    m_begin = position;
    m_ending = ending;
    const bool found = Follow(0, position, false);
    m_slotsAreSet = found;
    m_trail.clear();
    return found;
}

std::wstring_view RegexBacktracker::GetGroup(std::uint32_t number) const {
    if (number == 0 || number > m_program.groups) return {};
    const std::size_t begin = m_slots[2 * (number - 1)];
    const std::size_t end = m_slots[2 * (number - 1) + 1];
    if (begin == kUnset || end == kUnset || end < begin) return {};
    return m_text.substr(begin, end - begin);
}

bool RegexBacktracker::Leads(std::uint32_t at, std::size_t position) const { return !m_reach || m_reach->Leads(at, position); }

void RegexBacktracker::Push(Trail trail) {
    if (m_trail.size() >= kMaximumTrail) throw RegexError{RegexErrorCode::Stack, "match takes too much memory"};
    m_trail.push_back(trail);
}

void RegexBacktracker::SetSlot(std::uint32_t slot, std::size_t position) {
    if (m_slots[slot] == position) return;
    Push({slot, false, m_slots[slot]});
    m_slots[slot] = position;
}

// Undoes slots down to the last way that is left above `bottom`. False if there is none.
bool RegexBacktracker::TakeOtherWay(std::size_t bottom, std::uint32_t& at, std::size_t& position) {
    while (m_trail.size() > bottom) {
        const Trail trail = m_trail.back();
        m_trail.pop_back();
        if (trail.isWay) {
            at = trail.place;
            position = trail.position;
            return true;
        }
        m_slots[trail.place] = trail.position;
    }
    return false;
}

// A look-ahead is settled once it was passed: its other ways go, the undoing of its groups stays.
void RegexBacktracker::DropWays(std::size_t bottom) {
    m_steps.Spend(m_trail.size() - bottom);
    const auto first = m_trail.begin() + static_cast<std::ptrdiff_t>(bottom);
    m_trail.erase(std::remove_if(first, m_trail.end(), [](const Trail& trail) { return trail.isWay; }), m_trail.end());
}

bool RegexBacktracker::BackReferenceHolds(std::uint32_t group, std::size_t& position) {
    const std::size_t begin = m_slots[2 * (group - 1)];
    const std::size_t end = m_slots[2 * (group - 1) + 1];
    if (begin == kUnset || end == kUnset || end < begin) return true;  // a group that took no part is empty
    const std::size_t length = end - begin;
    if (length > m_text.size() - position) return false;
    m_steps.Spend(length);
    for (std::size_t i = 0; i < length; ++i)
        if (m_program.Folded(m_text[begin + i]) != m_program.Folded(m_text[position + i])) return false;
    position += length;
    return true;
}

bool RegexBacktracker::LookHolds(const RegexLook& look, std::size_t position) {
    const std::size_t bottom = m_trail.size();
    const bool found = Follow(look.begin, position, true);
    if (!found) return look.negative;
    if (!look.negative) {
        DropWays(bottom);
        return true;
    }
    std::uint32_t ignoredPlace = 0;
    std::size_t ignoredPosition = 0;
    while (TakeOtherWay(bottom, ignoredPlace, ignoredPosition)) {
    }
    return false;
}

bool RegexBacktracker::IsEndingFine(std::size_t position) const {
    switch (m_ending) {
        case Ending::AtEndOfText: return position == m_text.size();
        case Ending::BehindItsBegin: return position != m_begin;
        case Ending::Anywhere: break;
    }
    return true;
}

// True at the first Accept, for the whole expression only where its end is fine. Calls itself for look-aheads alone.
bool RegexBacktracker::Follow(std::uint32_t at, std::size_t position, bool isLook) {
    const std::size_t bottom = m_trail.size();
    for (;;) {
        m_steps.Spend(1);
        const RegexInstruction& instruction = m_program.code[at];
        bool goesOn = Leads(at, position);
        if (goesOn) {
            switch (instruction.kind) {
                case Kind::Split:
                    if (Leads(instruction.b, position)) Push({instruction.b, true, position});
                    at = instruction.a;
                    continue;
                case Kind::Jump: at = instruction.a; continue;
                case Kind::Look:
                    if ((goesOn = LookHolds(m_program.looks[instruction.a], position))) {
                        at = instruction.b;
                        continue;
                    }
                    break;
                case Kind::Begin:
                case Kind::End:
                case Kind::WordBoundary:
                case Kind::NoWordBoundary: goesOn = RegexProgram::Holds(instruction.kind, m_text, position); break;
                case Kind::Accept:
                    if (isLook) return true;
                    if (IsEndingFine(position)) {
                        m_end = position;
                        return true;
                    }
                    goesOn = false;
                    break;
                case Kind::Save: SetSlot(instruction.a, position); break;
                case Kind::ClearSaves:
                    m_steps.Spend(instruction.b - instruction.a);
                    for (std::uint32_t slot = instruction.a; slot < instruction.b; ++slot) SetSlot(slot, kUnset);
                    break;
                case Kind::LoopBegin: SetSlot(2 * m_program.groups + instruction.a, position); break;
                case Kind::LoopCheck: goesOn = m_slots[2 * m_program.groups + instruction.a] != position; break;
                case Kind::BackReference: goesOn = BackReferenceHolds(instruction.a, position); break;
                default:
                    goesOn = position < m_text.size() && m_program.Takes(instruction, m_program.Folded(m_text[position]));
                    ++position;
                    break;
            }
        }
        if (goesOn) ++at;
        else if (!TakeOtherWay(bottom, at, position)) return false;
    }
}

bool RunByBacktracking(const RegexProgram& program, std::wstring_view text) {
    RegexSteps steps(kMaximumSteps);
    return RegexBacktracker(program, text, steps).MatchAt(0, RegexBacktracker::Ending::AtEndOfText);
}

}  // namespace Zorvex
