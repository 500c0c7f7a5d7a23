#include "RuntimeCore/Selectors/Policy/PolicyRegexBudget.h"

namespace Zorvex::Generation {

namespace {

// For repetitions in braces, which cost more than their length: some tens of milliseconds and 12 MB.
constexpr std::uint64_t c_stepsOfAnyPolicy = 1'000'000;
constexpr std::uint64_t c_stepsOfUnit = 4;

thread_local RegexBudget* t_current = nullptr;

}  // namespace

PolicyRegexBudget::PolicyRegexBudget(std::size_t textLength)
    : m_budget{c_stepsOfAnyPolicy + c_stepsOfUnit * textLength}, m_outer(t_current) {
    t_current = &m_budget;
}

PolicyRegexBudget::~PolicyRegexBudget() { t_current = m_outer; }

RegexBudget* PolicyRegexBudget::Current() { return t_current; }

}  // namespace Zorvex::Generation
