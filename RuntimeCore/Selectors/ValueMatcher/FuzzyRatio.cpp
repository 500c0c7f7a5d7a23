#include "RuntimeCore/Selectors/ValueMatcher/FuzzyRatio.h"

#include <algorithm>
#include <new>

namespace Zorvex {

namespace {

constexpr double kNormalWeight = 0.999;
constexpr double kSortedWeight = 0.95;
// Texts of so many units together are compared in both forms at once.
constexpr std::size_t kShortTexts = 128;

// The share of `common` units in both texts. A unit that isn't common costs 1 on its side, so the distance of the
// texts is total - 2 * common.
double Share(std::size_t common, std::size_t total) {
    if (total == 0) return 1.0;
    return static_cast<double>(2 * common) / static_cast<double>(total);
}

}  // namespace

void FuzzyPattern::Form::SetText(std::wstring_view newText) {
    assigned = false;
    text = newText;
}

void FuzzyPattern::Form::Assign() {
    if (!assigned) common.Assign(text);
    assigned = true;
}

double FuzzyPattern::Form::Ratio(std::wstring_view other) {
    if (text == other) return 1.0;
    try {
        Assign();
        return Share(common.Length(other), text.size() + other.size());
    } catch (const std::bad_alloc&) {
        // Texts that there is no memory to compare resemble each other in nothing.
        assigned = false;
        return 0.0;
    }
}

void FuzzyPattern::Prepare(std::wstring_view pattern) {
    m_prepared = false;
    m_pattern = pattern;
    m_normal.SetText(m_otherNormal.Make(pattern));
    m_sorted.SetText(m_otherSorted.Make(m_normal.text));
    m_inOrder = m_sorted.text == m_normal.text;
    m_prepared = true;
}

double FuzzyPattern::Ratio(std::wstring_view pattern, std::wstring_view text) {
    if (pattern == text) return 1.0;
    if (!m_prepared || pattern != m_pattern) Prepare(pattern);

    const std::wstring_view other = m_otherNormal.Make(text);
    const std::wstring_view otherSorted = m_otherSorted.Make(other);
    // The same two texts again, with the lower weight: it can't come out higher.
    if (m_inOrder && otherSorted == other) return m_normal.Ratio(other) * kNormalWeight;

    const std::size_t total = m_normal.text.size() + other.size();
    const std::size_t sortedTotal = m_sorted.text.size() + otherSorted.size();
    if (total <= kShortTexts && m_normal.text != other) {
        try {
            m_normal.Assign();
            m_sorted.Assign();
            const auto common = CommonSubsequence::LengthOfEach(m_normal.common, other, m_sorted.common, otherSorted);
            return std::max(Share(common.a, total) * kNormalWeight, Share(common.b, sortedTotal) * kSortedWeight);
        } catch (const std::bad_alloc&) {
            // One after the other, then: a form that there is memory for still counts.
            m_normal.assigned = m_sorted.assigned = false;
        }
    }

    const double normal = m_normal.Ratio(other) * kNormalWeight;
    // What the sorted words can reach at most decides whether they are compared. Division and product are monotone,
    // so the answer is the same to the last bit.
    const double bound = Share(std::min(m_sorted.text.size(), otherSorted.size()), sortedTotal) * kSortedWeight;
    if (bound <= normal) return normal;
    return std::max(normal, m_sorted.Ratio(otherSorted) * kSortedWeight);
}

double FuzzyRatio(std::wstring_view a, std::wstring_view b) {
    if (a == b) return 1.0;
    return FuzzyPattern().Ratio(a, b);
}

}  // namespace Zorvex
