// What all regular expressions of one policy may cost together.
#pragma once

#include <cstddef>

#include "RuntimeCore/Selectors/ValueMatcher/Regex.h"

namespace Zorvex::Generation {

// While it lives, conditions and actions that are parsed on its thread spend from one budget: a policy comes from
// outside, and a few characters of it can ask for a program of a megabyte. Those parsed outside of such a scope are
// bounded each for itself. Scopes nest; the innermost counts.
class PolicyRegexBudget {
public:
    // `textLength`: of the policy, in units. Ordinary expressions take less than four steps a unit.
    explicit PolicyRegexBudget(std::size_t textLength);
    PolicyRegexBudget(const PolicyRegexBudget&) = delete;
    PolicyRegexBudget& operator=(const PolicyRegexBudget&) = delete;
    ~PolicyRegexBudget();

    // That of the innermost scope of this thread; null outside of any.
    static RegexBudget* Current();

private:
    RegexBudget m_budget;
    RegexBudget* m_outer;
};

}  // namespace Zorvex::Generation
