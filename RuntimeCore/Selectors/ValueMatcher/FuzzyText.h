// The two forms of a text in which resemblance is measured.
#pragma once

#include <string_view>
#include <vector>

namespace Zorvex {

// Each holds its last result in a buffer that is reused; the view is valid until the next call.

// Punctuation turned into blanks, white space cut off at both ends, the rest in lower case.
class NormalizedText {
public:
    std::wstring_view Make(std::wstring_view text);

private:
    std::vector<wchar_t> m_buffer;
};

// The words, split at blanks, in ascending order of their units, with one blank between them.
class SortedWords {
public:
    // The answer may be `text` itself, when it has this form already.
    std::wstring_view Make(std::wstring_view text);

private:
    void SplitShort(std::wstring_view text);
    void SplitLong(std::wstring_view text);

    std::vector<std::wstring_view> m_words;  // the first m_count; more are left over from other texts
    std::size_t m_count = 0;
    std::vector<wchar_t> m_buffer;
};

}  // namespace Zorvex
