// What the matchers share: reaching the wanted value, and the rule by which a score becomes an answer.
#pragma once

#include <string_view>

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Values/AttrValue.h"
#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"

namespace Zorvex::MatcherTools {

// The wanted text. Null for a value that isn't a text, and for none.
inline const CString* WantedText(const IAttrValue* attrValue) {
    if (!attrValue || attrValue->GetValueKind() != AttributeValueKind::String) return nullptr;
    return &static_cast<const AttrValue<CString>*>(attrValue)->GetValue();
}

// The wanted number; 0 for a value that isn't a number, and for none.
inline std::int64_t WantedNumber(const IAttrValue* attrValue) {
    if (!attrValue || attrValue->GetValueKind() != AttributeValueKind::Number) return 0;
    return static_cast<const AttrValue<std::int64_t>*>(attrValue)->GetValue();
}

// False, with the log line, when there is no value to compare with.
inline bool CheckAttrValue(const IAttrValue* attrValue) {
    if (attrValue) return true;
    ExpectationNotMet("attrValue != nullptr", "attrValue parameter is null");
    return false;
}

// The lowest score that counts. Without a value it is 1.0, and that is logged.
inline double FuzzyLevel(const IAttrValue* attrValue) {
    if (attrValue) return attrValue->GetFuzzyLevel();
    LogError("AttrVal parameter is null. Failed to retrieve minimum fuzzy level, default to %f", 1.0);
    return 1.0;
}

// By plain comparison: with a lowest score of 0.0 a mismatch counts as well, on purpose.
inline bool Decide(double score, double level, ScoreStatistics* stats) {
    if (stats) stats->Add(score);
    return score >= level;
}

// A null BSTR is an empty text.
inline std::wstring_view BstrView(const CComVariant& variant) {
    return {variant.bstrVal ? variant.bstrVal : L"", ::SysStringLen(variant.bstrVal)};
}

// As the C library reads a decimal integer: white space, a sign, digits, until something else comes; 0 without
// digits. Too large a number is cut to the nearest one of 32 bits.
std::int32_t ParseDecimal(std::wstring_view text);

}  // namespace Zorvex::MatcherTools
