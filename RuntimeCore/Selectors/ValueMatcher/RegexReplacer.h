// Replaces what a regular expression finds. Like matching, it ends in bounded time, memory and stack.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "RuntimeCore/Selectors/ValueMatcher/Regex.h"

namespace Zorvex {

// One compiled expression in the ECMAScript grammar of std::wregex, as Regex.
class RegexReplacer {
public:
    // Holds no program and finds nothing.
    RegexReplacer() noexcept;
    ~RegexReplacer();
    RegexReplacer(RegexReplacer&&) noexcept;
    RegexReplacer& operator=(RegexReplacer&&) noexcept;

    // As Regex::Compile.
    static RegexReplacer Compile(std::wstring_view pattern, bool caseSensitive, RegexBudget* budget = nullptr);

    // The text with each match replaced, by the rules of std::regex_replace: in `format`, $& is the match, $1 to $99
    // are its groups, $` and $' what stands between the matches before and behind it, and $$ is a dollar sign. Throws
    // RegexError when finding the matches would take more steps than a hostile pattern is granted, or when the result
    // would exceed the text by more than 4,194,304 units.
    std::wstring Replace(std::wstring_view text, std::wstring_view format) const;

private:
    std::unique_ptr<const RegexProgram> m_program;
};

}  // namespace Zorvex
