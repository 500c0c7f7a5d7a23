// How much two texts resemble each other, 0.0 to 1.0; higher is closer.
#pragma once

#include <string>
#include <string_view>

#include "RuntimeCore/Selectors/ValueMatcher/CommonSubsequence.h"
#include "RuntimeCore/Selectors/ValueMatcher/FuzzyText.h"

namespace Zorvex {

// 1.0 only for equal texts. Otherwise the greater of two ratios of twice the common subsequence to both lengths:
// that of the normalised texts times 0.999, and that of their sorted words times 0.95.
double FuzzyRatio(std::wstring_view a, std::wstring_view b);

// The same for one text that is compared with many: what can be known of it alone is worked out once.
class FuzzyPattern {
public:
    // The same double as FuzzyRatio(pattern, text).
    double Ratio(std::wstring_view pattern, std::wstring_view text);

private:
    struct Form {
        std::wstring text;
        CommonSubsequence common;
        bool assigned = false;

        void SetText(std::wstring_view newText);
        // Makes `common` what `text` is; throws std::bad_alloc.
        void Assign();
        double Ratio(std::wstring_view other);
    };

    void Prepare(std::wstring_view pattern);

    std::wstring m_pattern;
    bool m_prepared = false;
    Form m_normal;
    Form m_sorted;
    bool m_inOrder = false;  // both forms are the same text
    // Of the other text.
    NormalizedText m_otherNormal;
    SortedWords m_otherSorted;
};

}  // namespace Zorvex
