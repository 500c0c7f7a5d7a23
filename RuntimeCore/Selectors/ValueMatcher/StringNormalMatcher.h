// Texts by the wildcards * and ?; the score is 1.0 or 0.0.
#pragma once

#include "RuntimeCore/Selectors/ValueMatcher/IValueMatcher.h"

namespace Zorvex {

class StringNormalMatcher final : public IValueMatcher {
public:
    using IValueMatcher::Matches;

    std::uint32_t GetKind() const override { return 1; }
    bool Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) override;
    bool Matches(const IAttrValue* attrValue, const wchar_t* target, ScoreStatistics* stats) override;
    bool Matches(const IAttrValue* attrValue, const CString& target, ScoreStatistics* stats) override;
};

}  // namespace Zorvex
