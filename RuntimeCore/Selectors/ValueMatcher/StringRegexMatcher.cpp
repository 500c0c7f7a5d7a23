#include "RuntimeCore/Selectors/ValueMatcher/StringRegexMatcher.h"

#include "RuntimeCore/Selectors/ValueMatcher/MatcherTools.h"

namespace Zorvex {

using namespace MatcherTools;

void StringRegexMatcher::SetPattern(const CString& pattern, bool caseSensitive) {
    // The empty pattern with the flag off is what a fresh matcher claims to hold already, although nothing was
    // compiled: it matches nothing, on purpose.
    if (pattern == m_pattern && caseSensitive == m_caseSensitive) return;
    m_pattern = pattern;
    m_caseSensitive = caseSensitive;
    m_regex = Regex();
    try {
        m_regex = Regex::Compile(pattern, caseSensitive);
        LogVerbose("StringRegexMatcher::StringRegexMatcher Successfully compiled regex pattern \"%s\", caseSensitive=%d",
                   pattern, caseSensitive);
    } catch (const RegexError& error) {
        LogError("StringRegexMatcher::StringRegexMatcher Cannot compile regex pattern \"%s\", error_code=%d, error_msg=\"%s\"",
                 pattern, error.code, error.message);
    }
}

bool StringRegexMatcher::Matches(const IAttrValue* attrValue, const CString& target, ScoreStatistics* stats) {
    if (!CheckAttrValue(attrValue)) return false;
    const CString* pattern = WantedText(attrValue);
    SetPattern(pattern ? *pattern : CString(), attrValue->GetCaseSensitive());
    bool matches = false;
    try {
        matches = m_regex.MatchesWhole(target);
    } catch (const RegexError& error) {
        LogError("StringRegexMatcher::Matches Error while testing regex match on target \"%ls\", error_code=%d, error_msg=\"%s\"",
                 target, error.code, error.message);
    }
    LogVerbose("StringRegexMatcher::Matches RegEx match result for target \"%s\" = %s", target, matches ? "true" : "false");
    return Decide(matches ? 1.0 : 0.0, attrValue->GetFuzzyLevel(), stats);
}

bool StringRegexMatcher::Matches(const IAttrValue* attrValue, const wchar_t* target, ScoreStatistics* stats) {
    return Matches(attrValue, target ? CString(target) : CString(), stats);
}

bool StringRegexMatcher::Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats) {
    if (target.vt != VT_BSTR) return false;
    return Matches(attrValue, target.bstrVal, stats);
}

}  // namespace Zorvex
