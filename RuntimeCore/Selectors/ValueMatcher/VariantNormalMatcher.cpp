#include "RuntimeCore/Selectors/ValueMatcher/VariantNormalMatcher.h"

#include "Common/include/VariantEquals.h"
#include "RuntimeCore/Selectors/ValueMatcher/MatcherTools.h"

namespace Zorvex {

bool VariantNormalMatcher::Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) {
    if (!MatcherTools::CheckAttrValue(attrValue)) return false;
    if (attrValue->GetValueKind() != AttributeValueKind::Variant) return false;
    const bool equal = VariantEquals(static_cast<const AttrValue<CComVariant>*>(attrValue)->GetValue(), target);
    if (stats) stats->Add(equal ? 1.0 : 0.0);
    // The lowest score isn't asked, on purpose: a variant matches or it doesn't.
    return equal;
}

}  // namespace Zorvex
