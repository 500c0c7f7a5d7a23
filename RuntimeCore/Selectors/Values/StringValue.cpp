#include "RuntimeCore/Selectors/Values/StringValue.h"

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/ValueMatcher/StringFuzzyMatcher.h"
#include "RuntimeCore/Selectors/ValueMatcher/StringNormalMatcher.h"
#include "RuntimeCore/Selectors/ValueMatcher/StringRegexMatcher.h"

namespace Zorvex {

CString StringValue::ToString() const { return m_value; }

std::shared_ptr<IAttrValue> StringValue::Clone() const { return std::make_shared<StringValue>(*this); }

void StringValue::InitializeMatcher() {
    switch (m_matchingType) {
        case MatchingTypeNormal:
            m_matcher = std::make_unique<StringNormalMatcher>();
            break;
        case MatchingTypeRegex:
            m_matcher = std::make_unique<StringRegexMatcher>();
            break;
        case MatchingTypeFuzzy:
        case MatchingTypeFuzzyAlternative:
            m_matcher = std::make_unique<StringFuzzyMatcher>();
            break;
        default:
            LogError("String Value doesn't implement the requested matching type => using default matcher");
            m_matcher = std::make_unique<StringNormalMatcher>();
            break;
    }
}

}  // namespace Zorvex
