// Texts by resemblance; the score is FuzzyRatio. The case flag of the value plays no part.
#pragma once

#include "RuntimeCore/Selectors/ValueMatcher/FuzzyRatio.h"
#include "RuntimeCore/Selectors/ValueMatcher/IValueMatcher.h"

namespace Zorvex {

class StringFuzzyMatcher final : public IValueMatcher {
public:
    using IValueMatcher::Matches;

    std::uint32_t GetKind() const override { return 3; }
    bool Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) override;
    bool Matches(const IAttrValue* attrValue, const wchar_t* target, ScoreStatistics* stats) override;
    bool Matches(const IAttrValue* attrValue, const CString& target, ScoreStatistics* stats) override;

private:
    bool MatchText(const IAttrValue* attrValue, std::wstring_view target, ScoreStatistics* stats);

    // One pattern meets the names of many elements: what can be known of it beforehand is kept.
    FuzzyPattern m_pattern;
};

}  // namespace Zorvex
