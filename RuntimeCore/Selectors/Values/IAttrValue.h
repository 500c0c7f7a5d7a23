// The wanted value of one attribute, with the settings that say how an element's actual value is compared with it.
#pragma once

#include <cstdint>
#include <memory>

#include "Common/include/CComVariant.h"
#include "Common/include/CString.h"
#include "Common/include/DynamicType.h"

namespace Zorvex {

struct ScoreStatistics;

// Travels as a plain number, which may be anything; hence no enumeration class in the interface of the values.
enum MatchingType : std::uint32_t {
    MatchingTypeNone = 0,  // none was given: the default matcher is used, and the fact logged
    MatchingTypeNormal = 1,  // wildcards * and ?
    MatchingTypeRegex = 2,
    MatchingTypeFuzzy = 3,
    MatchingTypeFuzzyAlternative = 4,  // treated like fuzzy everywhere
};

// Says which AttrValue<T> an IAttrValue is: whoever answers String derives from AttrValue<CString>, and so on.
// 3 is left to the attribute accessors, for one that takes every kind.
enum class AttributeValueKind : std::uint32_t { String = 0, Number = 1, Variant = 2 };

// Not for use by two threads at once: comparing keeps a matcher inside the value.
class IAttrValue : public DynamicType {
public:
    static constexpr std::uint32_t kSerializationId = 10001;

    std::uint32_t GetSerializationId() const override { return kSerializationId; }

    // Equal settings and equal value; false, with a log line, for a value of another kind.
    virtual bool operator==(const IAttrValue& other) const = 0;
    virtual bool operator!=(const IAttrValue& other) const = 0;

    virtual AttributeValueKind GetValueKind() const = 0;
    // A disabled attribute stays in its tag and is ignored by the search.
    virtual bool GetEnabled() const = 0;
    virtual void SetEnabled(bool enabled) = 0;
    // One of MatchingType, or whatever the client sent.
    virtual std::uint32_t GetMatchingType() const = 0;
    // Leaves the matcher alone: the next comparison sees that its kind no longer fits.
    virtual void SetMatchingType(std::uint32_t matchingType) = 0;
    // The lowest score, 0.0 to 1.0, that still counts as a match; for every matcher, not only the fuzzy ones.
    virtual double GetFuzzyLevel() const = 0;
    virtual void SetFuzzyLevel(double fuzzyLevel) = 0;
    // Honoured by the normal and the regular-expression matcher only.
    virtual bool GetCaseSensitive() const = 0;
    virtual void SetCaseSensitive(bool caseSensitive) = 0;

    // Compare this value, as the pattern, with an actual one. `stats` may be null; otherwise it gets the score.
    // A null `other`, or one of an unknown class, is no match and leaves `stats` untouched.
    virtual bool Matches(std::shared_ptr<IAttrValue> other, ScoreStatistics* stats) = 0;
    virtual bool Matches(const CComVariant& target, ScoreStatistics* stats) = 0;
    virtual bool Matches(std::int64_t target, ScoreStatistics* stats) = 0;
    virtual bool Matches(const wchar_t* target, ScoreStatistics* stats) = 0;
    virtual bool Matches(const CString& target, ScoreStatistics* stats) = 0;

    virtual CString ToString() const = 0;
    // A value of the same class with the same settings and value, and no matcher. Throws ComException when a
    // variant can't be copied.
    virtual std::shared_ptr<IAttrValue> Clone() const = 0;
    // Replaces the matcher by the one that the matching type asks for.
    virtual void InitializeMatcher() = 0;
};

}  // namespace Zorvex
