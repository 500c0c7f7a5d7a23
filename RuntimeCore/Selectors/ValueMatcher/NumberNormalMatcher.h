// Numbers for equality; a 32-bit variant meets the low 32 bits of the wanted number.
#pragma once

#include "RuntimeCore/Selectors/ValueMatcher/IValueMatcher.h"

namespace Zorvex {

class NumberNormalMatcher final : public IValueMatcher {
public:
    using IValueMatcher::Matches;

    std::uint32_t GetKind() const override { return 1; }
    bool Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) override;
    bool Matches(const IAttrValue* attrValue, std::int64_t target, ScoreStatistics* stats) override;
};

}  // namespace Zorvex
