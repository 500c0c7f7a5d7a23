#include "RuntimeCore/Selectors/ValueMatcher/CommonSubsequence.h"

#include <algorithm>
#include <bit>

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace Zorvex {

namespace {

using Word = std::uint64_t;

// What a unit at the positions of `mask` does to `rest`. A cleared bit is a position by which the common subsequence
// of what was seen so far grows. The sum clears, in each run of set bits, the lowest one whose unit matches, and sets
// those that it replaces.
Word Advance(Word rest, Word mask) { return (rest + (rest & mask)) | (rest & ~mask); }

// The same for one of several words, with what the word below carries over; answers the carry for the word above.
unsigned char Advance(Word& rest, Word mask, unsigned char carry) {
    const Word before = rest;
    const Word matching = before & mask;
#ifdef __x86_64__
    unsigned long long sum = 0;
    carry = _addcarry_u64(carry, before, matching, &sum);
#else
    Word sum = 0;
    const bool first = __builtin_add_overflow(before, matching, &sum);
    const bool second = __builtin_add_overflow(sum, Word{carry}, &sum);
    carry = static_cast<unsigned char>(first || second);
#endif
    rest = sum | (before - matching);
    return carry;
}

std::size_t CountCleared(Word rest) { return static_cast<std::size_t>(std::popcount(~rest)); }

std::size_t FirstSlot(std::uint32_t unit, std::size_t slots) { return (unit * 0x9E3779B1u >> 7) & (slots - 1); }

}  // namespace

std::uint32_t CommonSubsequence::RowOf(wchar_t unit) const {
    const auto code = static_cast<std::uint32_t>(unit);
    if (code < kDirectUnits) return m_directRows[code];
    if (m_slots.empty()) return 0;
    for (std::size_t i = FirstSlot(code, m_slots.size());; i = (i + 1) & (m_slots.size() - 1)) {
        if (m_slots[i].row == 0 || m_slots[i].unit == code) return m_slots[i].row;
    }
}

std::uint32_t CommonSubsequence::AddRow(wchar_t unit) {
    const auto code = static_cast<std::uint32_t>(unit);
    if (code < kDirectUnits) {
        if (m_directRows[code] == 0) m_directRows[code] = m_rows++;
        return m_directRows[code];
    }
    std::size_t i = FirstSlot(code, m_slots.size());
    while (m_slots[i].row != 0 && m_slots[i].unit != code) i = (i + 1) & (m_slots.size() - 1);
    if (m_slots[i].row == 0) m_slots[i] = {code, m_rows++};
    return m_slots[i].row;
}

void CommonSubsequence::Assign(std::wstring_view text) {
    m_text = text;
    if (m_text.size() <= kPartUnits) MakeMasks(m_text);
}

void CommonSubsequence::MakeMasks(std::wstring_view part) {
    // A short last part of a long text takes a whole group as well.
    constexpr std::size_t kGroupBits = kGroupWords * kWordBits;
    m_words = FitsOneWord() ? 1 : (part.size() + kGroupBits - 1) / kGroupBits * kGroupWords;
    m_rows = 1;
    std::fill(std::begin(m_directRows), std::end(m_directRows), 0u);
    const auto wide = static_cast<std::size_t>(std::count_if(
        part.begin(), part.end(), [](wchar_t unit) { return static_cast<std::uint32_t>(unit) >= kDirectUnits; }));
    m_slots.assign(wide ? std::bit_ceil(2 * wide) : 0, Slot{});
    m_masks.assign(m_words, 0);
    for (std::size_t i = 0; i < part.size(); ++i) {
        const std::uint32_t row = AddRow(part[i]);
        if (m_masks.size() < m_rows * m_words) m_masks.resize(m_rows * m_words);
        m_masks[row * m_words + i / kWordBits] |= Word{1} << (i % kWordBits);
    }
    if (m_words > 1) return;
    for (std::size_t code = 0; code < kDirectUnits; ++code) m_directMasks[code] = m_masks[m_directRows[code]];
}

std::size_t CommonSubsequence::Length(std::wstring_view other) {
    if (m_text.empty() || other.empty()) return 0;
    if (FitsOneWord()) {
        Word rest = ~Word{0};
        for (const wchar_t unit : other) rest = Advance(rest, MaskOf(unit));
        return CountCleared(rest);
    }
    m_carries.assign(other.size(), 0);
    if (m_text.size() <= kPartUnits) return LengthOfPart(other);
    std::size_t length = 0;
    for (std::size_t start = 0; start < m_text.size(); start += kPartUnits) {
        MakeMasks(std::wstring_view(m_text).substr(start, kPartUnits));
        length += LengthOfPart(other);
    }
    return length;
}

CommonSubsequence::TwoLengths CommonSubsequence::LengthOfEach(CommonSubsequence& a, std::wstring_view otherA,
                                                              CommonSubsequence& b, std::wstring_view otherB) {
    if (!a.FitsOneWord() || !b.FitsOneWord()) return {a.Length(otherA), b.Length(otherB)};
    // Each step waits for the one before it; two texts at once fill the waiting.
    Word restA = ~Word{0};
    Word restB = ~Word{0};
    const std::size_t both = std::min(otherA.size(), otherB.size());
    for (std::size_t i = 0; i < both; ++i) {
        restA = Advance(restA, a.MaskOf(otherA[i]));
        restB = Advance(restB, b.MaskOf(otherB[i]));
    }
    for (const wchar_t unit : otherA.substr(both)) restA = Advance(restA, a.MaskOf(unit));
    for (const wchar_t unit : otherB.substr(both)) restB = Advance(restB, b.MaskOf(unit));
    return {CountCleared(restA), CountCleared(restB)};
}

// Groups of words outside, units inside: the group stays in registers, and what it carries over at each unit is
// kept for the next group.
std::size_t CommonSubsequence::LengthOfPart(std::wstring_view other) {
    m_otherRows.resize(other.size());
    for (std::size_t i = 0; i < other.size(); ++i) m_otherRows[i] = RowOf(other[i]);
    // In locals, or the compiler would read the vectors' pointers again after each carry, which is a byte.
    const std::uint32_t* const rows = m_otherRows.data();
    unsigned char* const carries = m_carries.data();
    const std::size_t units = other.size();
    const std::size_t words = m_words;
    std::size_t length = 0;
    for (std::size_t group = 0; group < words; group += kGroupWords) {
        const Word* const groupMasks = m_masks.data() + group;
        // Four variables stay in registers where an array wouldn't.
        static_assert(kGroupWords == 4);
        Word rest0 = ~Word{0};
        Word rest1 = ~Word{0};
        Word rest2 = ~Word{0};
        Word rest3 = ~Word{0};
        for (std::size_t i = 0; i < units; ++i) {
            const Word* const masks = groupMasks + rows[i] * words;
            unsigned char carry = Advance(rest0, masks[0], carries[i]);
            carry = Advance(rest1, masks[1], carry);
            carry = Advance(rest2, masks[2], carry);
            carries[i] = Advance(rest3, masks[3], carry);
        }
        length += CountCleared(rest0) + CountCleared(rest1) + CountCleared(rest2) + CountCleared(rest3);
    }
    return length;
}

}  // namespace Zorvex
