#include "RuntimeCore/Selectors/Values/VariantValue.h"

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/ValueMatcher/VariantNormalMatcher.h"

namespace Zorvex {

CString VariantValue::ToString() const { return L"unexpected"; }

std::shared_ptr<IAttrValue> VariantValue::Clone() const { return std::make_shared<VariantValue>(*this); }

void VariantValue::InitializeMatcher() {
    // There is only one way to compare variants; 1 to 4 are the types that clients may ask for.
    if (m_matchingType < MatchingTypeNormal || m_matchingType > MatchingTypeFuzzyAlternative)
        LogError("Variant Value doesn't implement the requested matching type => using default matcher");
    m_matcher = std::make_unique<VariantNormalMatcher>();
}

}  // namespace Zorvex
