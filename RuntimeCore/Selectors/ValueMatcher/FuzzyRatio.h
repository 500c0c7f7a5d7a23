// How much two texts resemble each other, 0.0 to 1.0; higher is closer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Zorvex {

// One of the two texts, kept so that comparing it with many others costs little: its normalised form, the form with
// its words in order, and for each the positions of every unit. Works in buffers that it reuses.
class FuzzyPattern {
public:
    // The ratio of `pattern` and `text`; the same double as FuzzyRatio(pattern, text) gives.
    double Ratio(std::wstring_view pattern, std::wstring_view text);

private:
    // For each unit of a text, the bit set of the positions at which it stands.
    class PositionMasks {
    public:
        void Assign(std::wstring_view text);
        // Bits of the 64 positions of `block` that hold `unit`.
        std::uint64_t Get(std::size_t block, wchar_t unit) const;
        // Length of the longest common subsequence with `other`.
        std::size_t CommonLength(std::wstring_view other, std::vector<std::uint64_t>& rows) const;

    private:
        std::size_t m_length = 0;
        std::size_t m_blocks = 0;
    };
};

double FuzzyRatio(std::wstring_view a, std::wstring_view b);

}  // namespace Zorvex
