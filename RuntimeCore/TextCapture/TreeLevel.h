// The level of a tree item, which it gives as its value.
#pragma once

#include <string>
#include <string_view>

#include "Platform/Windows.h"

namespace Zorvex {

// Items are indented by their level, up to this many tabs: a level is a number that the target makes up.
inline constexpr LONG MostIndentationTabs = 1024;

// The number that the text begins with, after blanks; 0 if there is none. What doesn't fit is the nearest number that
// does.
inline LONG ParseTreeLevel(std::wstring_view text) {
    std::size_t place = 0;
    while (place < text.size() && (text[place] == L' ' || (text[place] >= L'\t' && text[place] <= L'\r'))) ++place;
    const bool negative = place < text.size() && text[place] == L'-';
    if (place < text.size() && (negative || text[place] == L'+')) ++place;
    constexpr LONGLONG largest = 0x7FFFFFFF;
    LONGLONG number = 0;
    for (; place < text.size() && text[place] >= L'0' && text[place] <= L'9' && number <= largest; ++place)
        number = number * 10 + (text[place] - L'0');
    if (number > largest) number = negative ? largest + 1 : largest;
    return static_cast<LONG>(negative ? -number : number);
}

inline std::wstring TreeIndentation(LONGLONG level) {
    if (level <= 0) return std::wstring();
    return std::wstring(static_cast<std::size_t>(level < MostIndentationTabs ? level : MostIndentationTabs), L'\t');
}

}  // namespace Zorvex
