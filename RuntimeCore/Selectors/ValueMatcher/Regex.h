// Regular expressions that a stranger may write: matching ends in bounded time, memory and stack.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace Zorvex {

// Why a pattern can't be compiled or a match can't be finished. The numbers follow the order of the standard
// library's own codes, since they are logged.
enum class RegexErrorCode : int {
    Collate = 0, CharacterClass, Escape, BackReference, Bracket, Parenthesis, Brace, BadBrace, Range, Space, BadRepeat,
    Complexity, Stack
};

struct RegexError {
    RegexErrorCode code;
    const char* message;  // a literal
};

// What the expressions of one stranger may cost together, for who compiles many and keeps them: a few characters of
// pattern can ask for a program of a megabyte. A step is an instruction, or a piece of syntax, of about 20 bytes. An
// expression without repetitions in braces takes less than 4 steps a unit.
struct RegexBudget {
    std::uint64_t steps;
    // Throws RegexError when less is left.
    void Spend(std::uint64_t cost);
};

struct RegexProgram;

// One compiled expression in the ECMAScript grammar of std::wregex.
class Regex {
public:
    // Holds no program and matches nothing.
    Regex() noexcept;
    ~Regex();
    Regex(Regex&&) noexcept;
    Regex& operator=(Regex&&) noexcept;

    // Throws RegexError for a bad pattern and for one that is too large: nesting, repetitions and length are bounded.
    // `budget` is borrowed; null: none but the bounds of each expression.
    static Regex Compile(std::wstring_view pattern, bool caseSensitive, RegexBudget* budget = nullptr);

    // True if the expression matches all of `text`, not a part of it. Throws RegexError when the match would take
    // more steps than a hostile pattern is granted.
    bool MatchesWhole(std::wstring_view text) const;

private:
    std::unique_ptr<const RegexProgram> m_program;
};

}  // namespace Zorvex
