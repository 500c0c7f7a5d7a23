#include "RuntimeCore/Selectors/Values/NumberValue.h"

#include "Common/include/FormatText.h"
#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/ValueMatcher/NumberFuzzyMatcher.h"
#include "RuntimeCore/Selectors/ValueMatcher/NumberNormalMatcher.h"

namespace Zorvex {

CString NumberValue::ToString() const { return FormatText(L"%I64d", m_value); }

std::shared_ptr<IAttrValue> NumberValue::Clone() const { return std::make_shared<NumberValue>(*this); }

void NumberValue::InitializeMatcher() {
    switch (m_matchingType) {
        case MatchingTypeNormal:
        case MatchingTypeRegex:  // a number has no expression to match: it is compared
            m_matcher = std::make_unique<NumberNormalMatcher>();
            break;
        case MatchingTypeFuzzy:
        case MatchingTypeFuzzyAlternative:
            m_matcher = std::make_unique<NumberFuzzyMatcher>();
            break;
        default:
            LogError("Number Value doesn't implement the requested matching type => using default matcher");
            m_matcher = std::make_unique<NumberNormalMatcher>();
            break;
    }
}

}  // namespace Zorvex
