#include "RuntimeCore/Selectors/ValueMatcher/RegexProgram.h"

namespace Zorvex {

namespace {

using Kind = RegexInstruction::Kind;

// About a tenth of a second. An honest pattern takes a few steps a unit.
constexpr std::uint64_t kMaximumSteps = 20'000'000;

class Machine {
public:
    Machine(const RegexProgram& program, std::wstring_view text) : m_program(program), m_text(text) {}

    bool Run() {
        for (const RegexLook& look : m_program.looks) FindWhereLookHolds(look);
        m_seen.assign(m_program.code.size(), 0);
        std::vector<std::uint32_t> now;
        std::vector<std::uint32_t> next;
        Reach(0, 0, now);
        for (std::size_t position = 0; position < m_text.size(); ++position) {
            if (now.empty()) return false;
            next.clear();
            ++m_generation;
            m_accepted = false;
            const wchar_t unit = m_program.Folded(m_text[position]);
            for (const std::uint32_t at : now) {
                Spend(1);
                if (m_program.Takes(m_program.code[at], unit)) Reach(at + 1, position + 1, next);
            }
            now.swap(next);
        }
        return m_accepted;
    }

private:
    void Spend(std::uint64_t steps) {
        m_steps += steps;
        if (m_steps > kMaximumSteps) throw RegexError{RegexErrorCode::Complexity, "match takes too many steps"};
    }

    bool LookHolds(std::uint32_t look, std::size_t position) const { return m_looks[look][position]; }

    // Adds to `list` the instructions that consume a unit and can be come to from `start` without consuming any.
    void Reach(std::uint32_t start, std::size_t position, std::vector<std::uint32_t>& list) {
        m_pending.assign(1, start);
        while (!m_pending.empty()) {
            const std::uint32_t at = m_pending.back();
            m_pending.pop_back();
            if (m_seen[at] == m_generation) continue;
            m_seen[at] = m_generation;
            Spend(1);
            const RegexInstruction& instruction = m_program.code[at];
            switch (instruction.kind) {
                case Kind::Split:
                    m_pending.push_back(instruction.b);
                    m_pending.push_back(instruction.a);
                    break;
                case Kind::Jump: m_pending.push_back(instruction.a); break;
                case Kind::Begin:
                case Kind::End:
                case Kind::WordBoundary:
                case Kind::NoWordBoundary:
                    if (RegexProgram::Holds(instruction.kind, m_text, position)) m_pending.push_back(at + 1);
                    break;
                case Kind::Look:
                    if (LookHolds(instruction.a, position)) m_pending.push_back(instruction.b);
                    break;
                case Kind::Accept: m_accepted = true; break;
                default: list.push_back(at); break;
            }
        }
    }

    // For every position at once, from the end of the text to its begin: a look-ahead tried anew at each position
    // would make the time quadratic. `from[at]` says whether the body's end can be come to from instruction `at`.
    void FindWhereLookHolds(const RegexLook& look) {
        const std::uint32_t size = look.end - look.begin;
        Spend(m_text.size() + size);
        std::vector<bool> holds(m_text.size() + 1);
        std::vector<std::uint8_t> from(size, 0);
        std::vector<std::uint8_t> before(size, 0);
        for (std::size_t position = m_text.size() + 1; position-- > 0;) {
            before.assign(size, 0);
            const wchar_t unit = position < m_text.size() ? m_program.Folded(m_text[position]) : L'\0';
            // Loops jump backwards, so one sweep may not see everything; each sweep more is one more level of loops.
            for (bool changed = true; changed;) {
                changed = false;
                Spend(size);
                for (std::uint32_t i = size; i-- > 0;) {
                    if (before[i] || !Leads(look, i, position, unit, from, before)) continue;
                    before[i] = 1;
                    changed = true;
                }
            }
            holds[position] = (before[0] != 0) != look.negative;
            from.swap(before);
        }
        m_looks.push_back(std::move(holds));
    }

    bool Leads(const RegexLook& look, std::uint32_t i, std::size_t position, wchar_t unit,
               const std::vector<std::uint8_t>& behind, const std::vector<std::uint8_t>& here) const {
        const RegexInstruction& instruction = m_program.code[look.begin + i];
        switch (instruction.kind) {
            case Kind::Accept: return i + 1 == look.end - look.begin;  // not that of a look-ahead inside
            case Kind::Split: return here[instruction.a - look.begin] || here[instruction.b - look.begin];
            case Kind::Jump: return here[instruction.a - look.begin];
            case Kind::Begin:
            case Kind::End:
            case Kind::WordBoundary:
            case Kind::NoWordBoundary:
                return here[i + 1] && RegexProgram::Holds(instruction.kind, m_text, position);
            case Kind::Look: return here[instruction.b - look.begin] && LookHolds(instruction.a, position);
            default: return position < m_text.size() && behind[i + 1] && m_program.Takes(instruction, unit);
        }
    }

    const RegexProgram& m_program;
    std::wstring_view m_text;
    std::vector<std::vector<bool>> m_looks;
    std::vector<std::uint64_t> m_seen;
    std::vector<std::uint32_t> m_pending;
    std::uint64_t m_generation = 1;
    std::uint64_t m_steps = 0;
    bool m_accepted = false;
};

}  // namespace

bool RunAllWays(const RegexProgram& program, std::wstring_view text) { return Machine(program, text).Run(); }

}  // namespace Zorvex
