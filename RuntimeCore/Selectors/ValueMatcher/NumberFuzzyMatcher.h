// Numbers for equality in 64 bits. There are no degrees: the score is 1.0 or 0.0.
#pragma once

#include "RuntimeCore/Selectors/ValueMatcher/IValueMatcher.h"

namespace Zorvex {

class NumberFuzzyMatcher final : public IValueMatcher {
public:
    using IValueMatcher::Matches;

    std::uint32_t GetKind() const override { return 3; }
    bool Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) override;
    bool Matches(const IAttrValue* attrValue, std::int64_t target, ScoreStatistics* stats) override;
};

}  // namespace Zorvex
