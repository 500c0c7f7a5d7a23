#include "RuntimeCore/Selectors/ValueMatcher/IValueMatcher.h"

#include "Common/include/Log.h"

namespace Zorvex {

bool IValueMatcher::Matches(const IAttrValue*, const CComVariant&, ScoreStatistics*) {
    LogError("Value Matcher not implemented for CComVariant values");
    return false;
}

bool IValueMatcher::Matches(const IAttrValue*, std::int64_t, ScoreStatistics*) {
    LogError("Value Matcher not implemented for int64_t values");
    return false;
}

bool IValueMatcher::Matches(const IAttrValue*, const wchar_t*, ScoreStatistics*) {
    LogError("Value Matcher not implemented for TCHAR* values");
    return false;
}

bool IValueMatcher::Matches(const IAttrValue*, const CString&, ScoreStatistics*) {
    LogError("Value Matcher not implemented for CString values");
    return false;
}

}  // namespace Zorvex
