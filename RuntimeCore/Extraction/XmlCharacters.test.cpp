#include "RuntimeCore/Extraction/XmlCharacters.h"

#include <gtest/gtest.h>

namespace Zorvex {
namespace {

using namespace std::string_view_literals;

TEST(TextForXml, OrdinaryTextStaysAsItIs) {
    EXPECT_EQ(TextForXml(L""), L"");
    EXPECT_EQ(TextForXml(L"a <b> & \"c\"\t\r\n"), L"a <b> & \"c\"\t\r\n");
    EXPECT_EQ(TextForXml(L"\x7F\x85\xFFFD"), L"\x7F\x85\xFFFD");
}

TEST(TextForXml, AnEmbeddedNulAndOtherControlCharactersAreReplaced) {
    EXPECT_EQ(TextForXml(L"a\0b"sv), L"a\xFFFD" L"b");
    EXPECT_EQ(TextForXml(L"\x01\x08\x0B\x0C\x0E\x1F"), L"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD");
    EXPECT_EQ(TextForXml(L"\xFFFE\xFFFF"), L"\xFFFD\xFFFD");
}

TEST(TextForXml, APairOfSurrogatesStaysAndAHalfIsReplaced) {
    const std::wstring pair = {wchar_t(0xD83D), wchar_t(0xDE00)};
    EXPECT_EQ(TextForXml(pair), pair);
    EXPECT_EQ(TextForXml(pair.substr(0, 1)), L"\xFFFD");
    EXPECT_EQ(TextForXml(pair.substr(1)), L"\xFFFD");
    EXPECT_EQ(TextForXml(pair.substr(1) + pair.substr(0, 1)), L"\xFFFD\xFFFD");
    EXPECT_EQ(TextForXml(pair.substr(0, 1) + pair), L"\xFFFD" + pair);
}

// Unit by unit, with nothing clever.
std::wstring Slow(const std::wstring& text) {
    std::wstring result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned unit = static_cast<unsigned>(text[i]);
        const bool high = unit >> 10 == 0x36, low = unit >> 10 == 0x37;
        const bool paired = (high && i + 1 < text.size() && static_cast<unsigned>(text[i + 1]) >> 10 == 0x37) ||
                            (low && i > 0 && static_cast<unsigned>(text[i - 1]) >> 10 == 0x36);
        const bool fits = unit == 9 || unit == 10 || unit == 13 || (unit >= 0x20 && !high && !low && unit < 0xFFFE) || paired;
        result += fits ? text[i] : wchar_t(0xFFFD);
    }
    return result;
}

TEST(TextForXml, AgreesWithThePlainRuleOnEveryTextOfThreeOddUnits) {
    const wchar_t units[] = {0, 9, 0x1F, L'a', 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFD, 0xFFFE};
    for (const wchar_t a : units)
        for (const wchar_t b : units)
            for (const wchar_t c : units) {
                const std::wstring text = {a, b, c};
                EXPECT_EQ(TextForXml(text), Slow(text)) << int(a) << ' ' << int(b) << ' ' << int(c);
            }
}

}  // namespace
}  // namespace Zorvex
