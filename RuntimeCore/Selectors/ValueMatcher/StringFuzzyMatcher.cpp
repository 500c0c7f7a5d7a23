#include "RuntimeCore/Selectors/ValueMatcher/StringFuzzyMatcher.h"

#include "RuntimeCore/Selectors/ValueMatcher/MatcherTools.h"

namespace Zorvex {

using namespace MatcherTools;

bool StringFuzzyMatcher::MatchText(const IAttrValue* attrValue, std::wstring_view target, ScoreStatistics* stats) {
    const double level = FuzzyLevel(attrValue);
    const CString* wanted = WantedText(attrValue);
    const std::wstring_view pattern = wanted ? std::wstring_view(*wanted) : std::wstring_view();
    return Decide(m_pattern.Ratio(pattern, target), level, stats);
}

bool StringFuzzyMatcher::Matches(const IAttrValue* attrValue, const CString& target, ScoreStatistics* stats) {
    return MatchText(attrValue, target, stats);
}

bool StringFuzzyMatcher::Matches(const IAttrValue* attrValue, const wchar_t* target, ScoreStatistics* stats) {
    return MatchText(attrValue, target ? std::wstring_view(target) : std::wstring_view(), stats);
}

bool StringFuzzyMatcher::Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) {
    if (target.vt == VT_BSTR) return Matches(attrValue, target.bstrVal, stats);
    LogError("Parameter ComVariant is not BSTR");
    if (stats) stats->Add(0.0);
    return false;
}

}  // namespace Zorvex
