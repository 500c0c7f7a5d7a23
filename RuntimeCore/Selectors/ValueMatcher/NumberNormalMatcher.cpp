#include "RuntimeCore/Selectors/ValueMatcher/NumberNormalMatcher.h"

#include "RuntimeCore/Selectors/ValueMatcher/MatcherTools.h"

namespace Zorvex {

using namespace MatcherTools;

bool NumberNormalMatcher::Matches(const IAttrValue* attrValue, std::int64_t target, ScoreStatistics* stats) {
    if (!CheckAttrValue(attrValue)) return false;
    return Decide(WantedNumber(attrValue) == target ? 1.0 : 0.0, attrValue->GetFuzzyLevel(), stats);
}

bool NumberNormalMatcher::Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) {
    if (!CheckAttrValue(attrValue)) return false;
    const std::int64_t wanted = WantedNumber(attrValue);
    // Only the low 32 bits meet a 32-bit variant, on purpose: 4294967296 matches a variant of 0.
    const auto low = static_cast<std::int32_t>(wanted);
    bool equal = false;
    if (target.vt == VT_I4) equal = target.lVal == low;
    else if (target.vt == VT_BSTR) equal = ParseDecimal(BstrView(target)) == low;
    else if (target.vt == VT_BOOL) equal = (target.boolVal == VARIANT_TRUE) == (wanted != 0);
    return Decide(equal ? 1.0 : 0.0, attrValue->GetFuzzyLevel(), stats);
}

}  // namespace Zorvex
