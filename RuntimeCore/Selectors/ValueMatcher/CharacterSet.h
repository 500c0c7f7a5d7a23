// The units that one place of a regular expression accepts.
#pragma once

#include <bitset>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Zorvex {

// Kinds of units that have a name in a pattern. Bits, since a set may hold several.
enum CharacterClass : std::uint32_t {
    ClassAlpha = 1, ClassDigit = 2, ClassUpper = 4, ClassLower = 8, ClassSpace = 16, ClassBlank = 32, ClassPunct = 64,
    ClassPrint = 128, ClassGraph = 256, ClassControl = 512, ClassHexDigit = 1024, ClassUnderscore = 2048,
    ClassAlnum = ClassAlpha | ClassDigit,
    ClassWord = ClassAlnum | ClassUnderscore,
};

bool IsInClass(wchar_t unit, std::uint32_t classes);

// The class of a name as in [:name:], 0 for none. Without case, upper and lower mean any letter.
std::uint32_t FindCharacterClass(std::wstring_view name, bool caseSensitive);

// The unit that a name as in [.name.] stands for, -1 for none. A single unit is its own name.
std::int32_t FindCollatingElement(std::wstring_view name);

// Filled first, closed once, asked then.
class CharacterSet {
public:
    void AddRange(wchar_t first, wchar_t last) { m_ranges.push_back({Code(first), Code(last)}); }
    void AddClass(std::uint32_t classes) { m_classes |= classes; }
    void AddClassComplement(std::uint32_t classes) { m_complements.push_back(classes); }
    void Negate() { m_negated = true; }
    // Without case the set is closed over lower case: it must then be asked with units in lower case.
    void Close(bool caseSensitive);

    bool Contains(wchar_t unit) const {
        const std::uint32_t code = Code(unit);
        return code < m_direct.size() ? m_direct[code] : ContainsSlowly(unit);
    }

private:
    struct Range {
        std::uint32_t first;
        std::uint32_t last;
    };

    static std::uint32_t Code(wchar_t unit) { return static_cast<std::uint32_t>(unit); }
    bool ContainsSlowly(wchar_t unit) const;
    // Into disjoint ranges in ascending order.
    void MergeRanges();

    std::vector<Range> m_ranges;
    std::uint32_t m_classes = 0;
    std::vector<std::uint32_t> m_complements;
    bool m_negated = false;
    std::bitset<256> m_direct;
};

}  // namespace Zorvex
