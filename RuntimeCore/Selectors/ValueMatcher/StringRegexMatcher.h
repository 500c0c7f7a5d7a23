// Whole texts by a regular expression in the ECMAScript grammar; the score is 1.0 or 0.0.
#pragma once

#include "RuntimeCore/Selectors/ValueMatcher/IValueMatcher.h"
#include "RuntimeCore/Selectors/ValueMatcher/Regex.h"

namespace Zorvex {

class StringRegexMatcher final : public IValueMatcher {
public:
    using IValueMatcher::Matches;

    std::uint32_t GetKind() const override { return 2; }
    bool Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) override;
    bool Matches(const IAttrValue* attrValue, const wchar_t* target, ScoreStatistics* stats) override;
    bool Matches(const IAttrValue* attrValue, const CString& target, ScoreStatistics* stats) override;

    // Compiles, unless pattern and case flag are those of the last call. A bad pattern is logged once and then
    // matches nothing, until another one comes.
    void SetPattern(const CString& pattern, bool caseSensitive);

private:
    Regex m_regex;
    CString m_pattern;
    bool m_caseSensitive = false;
};

}  // namespace Zorvex
