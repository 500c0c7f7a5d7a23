#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"

#include <cwchar>
#include <vector>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {

namespace {

constexpr auto kNotFound = std::wstring_view::npos;

struct ExactCase {
    static bool Same(wchar_t a, wchar_t b) { return a == b; }
    static std::size_t Find(std::wstring_view text, std::size_t from, wchar_t unit) {
        const wchar_t* found = std::wmemchr(text.data() + from, unit, text.size() - from);
        return found ? static_cast<std::size_t>(found - text.data()) : kNotFound;
    }
};

struct AnyCase {
    static bool Same(wchar_t a, wchar_t b) { return a == b || ToLower(a) == ToLower(b); }
    static std::size_t Find(std::wstring_view text, std::size_t from, wchar_t unit) {
        const wchar_t lower = ToLower(unit);
        for (; from < text.size(); ++from)
            if (ToLower(text[from]) == lower) return from;
        return kNotFound;
    }
};

template <class Case>
bool Fits(wchar_t patternUnit, wchar_t textUnit) {
    return patternUnit == L'?' || Case::Same(patternUnit, textUnit);
}

// Where the search for `segment` goes on after a mismatch at each of its units: Knuth, Morris and Pratt's table,
// except that ? on either side counts as equal. That lets the search jump over some occurrences of segments which
// hold ?; it is on purpose, see the header.
template <class Case>
void FillFailureTable(std::wstring_view segment, std::int32_t* table) {
    table[0] = -1;
    std::int32_t prefix = -1;
    for (std::size_t i = 0; i + 1 < segment.size();) {
        if (prefix == -1 || segment[i] == L'?' || Fits<Case>(segment[static_cast<std::size_t>(prefix)], segment[i])) {
            table[++i] = ++prefix;
        } else {
            prefix = table[prefix];
        }
    }
}

// The end of the leftmost occurrence of `segment` that the search sees, or kNotFound.
template <class Case>
std::size_t EndOfSegment(std::wstring_view segment, std::wstring_view text) {
    constexpr std::size_t kShort = 64;
    std::int32_t shortTable[kShort];
    std::vector<std::int32_t> longTable;
    std::int32_t* table = shortTable;
    if (segment.size() > kShort) {
        longTable.resize(segment.size());
        table = longTable.data();
    }
    bool tableFilled = false;
    std::size_t i = 0;
    std::size_t matched = 0;
    while (i < text.size()) {
        if (matched == 0 && segment[0] != L'?') {
            i = Case::Find(text, i, segment[0]);
            if (i == kNotFound) return kNotFound;
            ++i;
            matched = 1;
        } else if (Fits<Case>(segment[matched], text[i])) {
            ++i;
            ++matched;
        } else {
            // Many segments are found, or their first unit isn't, before the table is needed.
            if (!tableFilled) FillFailureTable<Case>(segment, table);
            tableFilled = true;
            const std::int32_t next = table[matched];
            if (next < 0) ++i;
            matched = next < 0 ? 0 : static_cast<std::size_t>(next);
        }
        if (matched == segment.size()) return i;
    }
    return kNotFound;
}

template <class Case>
bool Match(std::wstring_view pattern, std::wstring_view text) {
    while (!pattern.empty() && pattern.front() != L'*' && !text.empty()) {
        if (!Fits<Case>(pattern.front(), text.front())) return false;
        pattern.remove_prefix(1);
        text.remove_prefix(1);
    }
    while (!pattern.empty() && pattern.back() != L'*' && !text.empty()) {
        if (!Fits<Case>(pattern.back(), text.back())) return false;
        pattern.remove_suffix(1);
        text.remove_suffix(1);
    }
    if (pattern.empty()) return text.empty();
    if (pattern.front() != L'*' || pattern.back() != L'*') return false;
    for (;;) {
        const std::size_t start = pattern.find_first_not_of(L'*');
        if (start == kNotFound) return true;
        pattern.remove_prefix(start);
        const std::size_t length = pattern.find(L'*');  // there is one: the last unit
        const std::size_t end = EndOfSegment<Case>(pattern.substr(0, length), text);
        if (end == kNotFound) return false;
        pattern.remove_prefix(length);
        text.remove_prefix(end);
    }
}

}  // namespace

bool WildcardMatch(std::wstring_view pattern, std::wstring_view text, bool caseSensitive) {
    if (pattern.empty()) return text.empty();
    if (pattern.find_first_not_of(L'*') == kNotFound) return true;
    if (text.empty()) return false;
    return caseSensitive ? Match<ExactCase>(pattern, text) : Match<AnyCase>(pattern, text);
}

}  // namespace Zorvex
