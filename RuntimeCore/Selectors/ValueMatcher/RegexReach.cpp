#include "RuntimeCore/Selectors/ValueMatcher/RegexReach.h"

namespace Zorvex {

namespace {

using Kind = RegexInstruction::Kind;

constexpr std::size_t kMaximumPlaces = 4'000'000;
constexpr std::uint64_t kMaximumSteps = 20'000'000;

// One position's row, and the one behind it.
struct Rows {
    const RegexProgram& program;
    std::wstring_view text;
    std::size_t position;
    std::uint8_t* here;
    const std::uint8_t* behind;  // null at the end of the text

    bool Leads(std::uint32_t at) const {
        const RegexInstruction& instruction = program.code[at];
        switch (instruction.kind) {
            case Kind::Accept: return true;
            case Kind::Split: return here[instruction.a] || here[instruction.b];
            case Kind::Jump: return here[instruction.a] != 0;
            case Kind::Begin:
            case Kind::End:
            case Kind::WordBoundary:
            case Kind::NoWordBoundary: return here[at + 1] && RegexProgram::Holds(instruction.kind, text, position);
            case Kind::Look: {
                const RegexLook& look = program.looks[instruction.a];
                return here[instruction.b] && (here[look.begin] != 0) != look.negative;
            }
            case Kind::Save:
            case Kind::ClearSaves:
            case Kind::LoopBegin:
            case Kind::LoopCheck: return here[at + 1] != 0;
            case Kind::BackReference: return false;  // not in the programs that come here
            default: return behind && behind[at + 1] && program.Takes(instruction, program.Folded(text[position]));
        }
    }

    // Until nothing changes: loops jump backwards, so one sweep may not see everything. False when the steps are spent.
    bool Fill(std::uint32_t begin, std::uint32_t end, std::uint64_t& stepsLeft) const {
        for (bool changed = true; changed;) {
            if (stepsLeft < end - begin) return false;
            stepsLeft -= end - begin;
            changed = false;
            for (std::uint32_t at = end; at-- > begin;) {
                if (here[at] || !Leads(at)) continue;
                here[at] = 1;
                changed = true;
            }
        }
        return true;
    }

    // The bodies of look-aheads come first, inner ones before outer ones: what a negative one says must be settled
    // before anybody builds on it.
    bool FillAll(std::uint64_t& stepsLeft) const {
        for (const RegexLook& look : program.looks)
            if (!Fill(look.begin, look.end, stepsLeft)) return false;
        return Fill(0, static_cast<std::uint32_t>(program.code.size()), stepsLeft);
    }
};

}  // namespace

bool RegexReach::Find(const RegexProgram& program, std::wstring_view text) {
    m_size = program.code.size();
    m_leads.clear();
    if (program.hasBackReferences || text.size() >= kMaximumPlaces / m_size) return false;
    m_leads.assign((text.size() + 1) * m_size, 0);
    std::uint64_t stepsLeft = kMaximumSteps;
    for (std::size_t position = text.size() + 1; position-- > 0;) {
        std::uint8_t* here = m_leads.data() + position * m_size;
        if (Rows{program, text, position, here, position < text.size() ? here + m_size : nullptr}.FillAll(stepsLeft)) continue;
        m_leads.clear();
        m_leads.shrink_to_fit();
        return false;
    }
    return true;
}

}  // namespace Zorvex
