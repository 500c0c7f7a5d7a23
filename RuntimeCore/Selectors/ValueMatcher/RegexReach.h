// From where in a text, and where in a program, the program's end can be come to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/RegexProgram.h"

namespace Zorvex {

// One sweep over the text, from its end to its begin, finds it for all places at once. Who follows a way through the
// program and asks at each fork doesn't stray into ways that end nowhere, whose number may be exponential.
class RegexReach {
public:
    // False, with nothing known, for a program with references back and where text times program is too much: 4 MB
    // and some tens of milliseconds are the limit.
    bool Find(const RegexProgram& program, std::wstring_view text);

    // Whether the end of the program, or of the look-ahead's body that the instruction belongs to, can be come to from
    // the instruction at the position. A round of a loop that consumes nothing counts, though it is no match.
    bool Leads(std::uint32_t instruction, std::size_t position) const { return m_leads[position * m_size + instruction] != 0; }

private:
    std::size_t m_size = 0;
    std::vector<std::uint8_t> m_leads;  // a row of instructions a position
};

}  // namespace Zorvex
