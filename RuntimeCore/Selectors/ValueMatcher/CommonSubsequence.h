// Length of the longest common subsequence of one text with many others.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Zorvex {

// Keeps for each unit of the text the bit set of its positions, so that a unit of the other text is dealt with for 64
// positions at once (H. Hyyro's bit-parallel method). Keeps its buffers between calls. Both operations throw
// std::bad_alloc; a text is to be assigned again after that.
class CommonSubsequence {
public:
    CommonSubsequence() { Assign({}); }

    void Assign(std::wstring_view text);
    std::size_t Length(std::wstring_view other);

    // a.Length(otherA) and b.Length(otherB), in less time than one after the other.
    struct TwoLengths {
        std::size_t a;
        std::size_t b;
    };
    static TwoLengths LengthOfEach(CommonSubsequence& a, std::wstring_view otherA, CommonSubsequence& b,
                                   std::wstring_view otherB);

private:
    static constexpr std::size_t kWordBits = 64;
    static constexpr std::size_t kDirectUnits = 256;
    // Words of the bit vector that are worked on together, in registers.
    static constexpr std::size_t kGroupWords = 4;
    // Bit sets are kept for so many units; a longer text goes through in parts, whose bit sets are made anew for each
    // comparison. That bounds their memory to 2 MiB, since a part may hold as many different units as positions.
    static constexpr std::size_t kPartUnits = 4096;

    struct Slot {
        std::uint32_t unit;
        std::uint32_t row;  // 0: free
    };

    // Number of the unit's row of words in m_masks; row 0 is empty and stands for all units that don't occur.
    std::uint32_t RowOf(wchar_t unit) const;
    std::uint32_t AddRow(wchar_t unit);
    void MakeMasks(std::wstring_view part);
    bool FitsOneWord() const { return m_text.size() <= kWordBits; }
    // The positions of `unit` in a text that fits one word.
    std::uint64_t MaskOf(wchar_t unit) const {
        const auto code = static_cast<std::uint32_t>(unit);
        return code < kDirectUnits ? m_directMasks[code] : m_masks[RowOf(unit)];
    }
    // Of the part in m_masks. Takes and leaves in m_carries what each unit of `other` carries over between parts.
    std::size_t LengthOfPart(std::wstring_view other);

    std::wstring m_text;
    std::size_t m_words = 0;  // of one row, rounded up to whole groups when there are several
    std::uint32_t m_rows = 1;
    std::uint32_t m_directRows[kDirectUnits] = {};
    std::uint64_t m_directMasks[kDirectUnits] = {};  // what m_masks says, without the way over the rows; one word only
    std::vector<Slot> m_slots;  // open addressing, a power of two, never full; empty without units from 256 on
    std::vector<std::uint64_t> m_masks;
    std::vector<std::uint32_t> m_otherRows;
    std::vector<std::uint8_t> m_carries;
};

}  // namespace Zorvex
