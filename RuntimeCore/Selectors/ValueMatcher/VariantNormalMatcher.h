// Variants as a whole. The lowest score of the value plays no part.
#pragma once

#include "RuntimeCore/Selectors/ValueMatcher/IValueMatcher.h"

namespace Zorvex {

class VariantNormalMatcher final : public IValueMatcher {
public:
    using IValueMatcher::Matches;

    std::uint32_t GetKind() const override { return 1; }
    bool Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) override;
};

}  // namespace Zorvex
