#include "RuntimeCore/Selectors/ValueMatcher/StringNormalMatcher.h"

#include "RuntimeCore/Selectors/ValueMatcher/MatcherTools.h"
#include "RuntimeCore/Selectors/ValueMatcher/WildcardMatch.h"

namespace Zorvex {

using namespace MatcherTools;

namespace {

bool MatchText(const IAttrValue& attrValue, std::wstring_view target, ScoreStatistics* stats) {
    const CString* pattern = WantedText(&attrValue);
    const bool matches = pattern && WildcardMatch(*pattern, target, attrValue.GetCaseSensitive());
    return Decide(matches ? 1.0 : 0.0, attrValue.GetFuzzyLevel(), stats);
}

}  // namespace

bool StringNormalMatcher::Matches(const IAttrValue* attrValue, const wchar_t* target, ScoreStatistics* stats) {
    if (!CheckAttrValue(attrValue)) return false;
    return MatchText(*attrValue, target ? std::wstring_view(target) : std::wstring_view(), stats);
}

// Goes to the form for C strings, so what stands behind an embedded NUL isn't looked at.
bool StringNormalMatcher::Matches(const IAttrValue* attrValue, const CString& target, ScoreStatistics* stats) {
    return Matches(attrValue, target.c_str(), stats);
}

bool StringNormalMatcher::Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) {
    if (target.vt == VT_BSTR) return Matches(attrValue, target.bstrVal, stats);
    if (!CheckAttrValue(attrValue)) return false;
    return Decide(0.0, attrValue->GetFuzzyLevel(), stats);
}

}  // namespace Zorvex
