#include "RuntimeCore/Selectors/ValueMatcher/NumberFuzzyMatcher.h"

#include "RuntimeCore/Selectors/ValueMatcher/MatcherTools.h"

namespace Zorvex {

using namespace MatcherTools;

// Without a value the wanted number is taken as 0.
bool NumberFuzzyMatcher::Matches(const IAttrValue* attrValue, std::int64_t target, ScoreStatistics* stats) {
    return Decide(WantedNumber(attrValue) == target ? 1.0 : 0.0, FuzzyLevel(attrValue), stats);
}

bool NumberFuzzyMatcher::Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) {
    const double level = FuzzyLevel(attrValue);
    const std::int64_t wanted = WantedNumber(attrValue);
    bool equal = false;
    // The 32-bit value is widened first, unlike in the normal matcher.
    if (target.vt == VT_I4) equal = std::int64_t{target.lVal} == wanted;
    else if (target.vt == VT_BSTR) equal = std::int64_t{ParseDecimal(BstrView(target))} == wanted;
    else if (target.vt == VT_BOOL) equal = (target.boolVal == VARIANT_TRUE) == (wanted != 0);
    else return false;
    return Decide(equal ? 1.0 : 0.0, level, stats);
}

}  // namespace Zorvex
