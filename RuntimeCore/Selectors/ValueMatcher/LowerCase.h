// Letters as the matchers see them.
//
// The C library's towlower, iswspace and iswalpha answer by the process's locale: in the "C" locale, which a server
// inside somebody else's process has to live with, some know only ASCII, others differ from system to system, and
// the host program may change it at any time. Names on a screen are in every language, and a selector must mean
// the same everywhere; so these answer by Unicode, one UTF-16 unit at a time, from tables of their own.
#pragma once

#include <cstdint>

namespace Zorvex {

// What to add to a unit, modulo 65,536, to get its lower case: for each high byte a page of 256. Page 0 maps every
// unit to itself and serves all scripts without case.
struct CaseTables {
    std::uint8_t pageOf[256] = {};
    std::uint16_t pages[18][256] = {};
};
extern const CaseTables g_caseTables;

// The lower case of one unit where that is one unit as well; any other unit is answered as it is.
inline wchar_t ToLower(wchar_t unit) {
    const auto code = static_cast<std::uint32_t>(unit);
    if (code < 0x80) return code - 'A' < 26 ? static_cast<wchar_t>(code + 32) : unit;
    if (code > 0xFFFF) return unit;
    return static_cast<wchar_t>(
        static_cast<std::uint16_t>(code + g_caseTables.pages[g_caseTables.pageOf[code >> 8]][code & 0xFF]));
}

// White space, the no-break space and the wide space of East Asian text included.
inline bool IsSpace(wchar_t unit) {
    const auto code = static_cast<std::uint32_t>(unit);
    if (code < 0x80) return code == ' ' || code - 9 < 5;
    return code == 0x85 || code == 0xA0 || code == 0x1680 || (code >= 0x2000 && code <= 0x200A) || code == 0x2028 ||
           code == 0x2029 || code == 0x202F || code == 0x205F || code == 0x3000;
}

bool IsLetter(wchar_t unit);
bool IsDigit(wchar_t unit);  // 0 to 9 alone: that is what a pattern means by a digit
bool IsUpperCase(wchar_t unit);
bool IsLowerCase(wchar_t unit);

// True if the page of 256 units holds none whose lower case is another.
inline bool IsCaselessPage(std::uint32_t highByte) { return g_caseTables.pageOf[highByte] == 0; }

}  // namespace Zorvex
