// Decides whether an element's actual value matches a wanted one, and how well.
#pragma once

#include <cstdint>

#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"

namespace Zorvex {

class IAttrValue;
struct ScoreStatistics;

// A matcher has no settings of its own: `attrValue` holds the pattern, the case flag and the lowest score that
// counts. What a matcher keeps between calls serves speed alone and never changes an answer. No operation throws
// for bad input; failures are a log line and false. `stats` may be null.
//
// The overloads of this class log that the type of value isn't supported, and answer false.
class IValueMatcher {
public:
    virtual ~IValueMatcher() = default;
    // The MatchingType that the matcher serves.
    virtual std::uint32_t GetKind() const = 0;
    virtual bool Matches(const IAttrValue* attrValue, const CComVariant& target, ScoreStatistics* stats);
    virtual bool Matches(const IAttrValue* attrValue, std::int64_t target, ScoreStatistics* stats);
    // A null `target` is an empty text.
    virtual bool Matches(const IAttrValue* attrValue, const wchar_t* target, ScoreStatistics* stats);
    virtual bool Matches(const IAttrValue* attrValue, const CString& target, ScoreStatistics* stats);
};

}  // namespace Zorvex
