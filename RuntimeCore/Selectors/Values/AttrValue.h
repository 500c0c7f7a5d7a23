// What the three kinds of attribute value have in common.
#pragma once

#include <memory>
#include <utility>

#include "RuntimeCore/Selectors/ValueMatcher/IValueMatcher.h"
#include "RuntimeCore/Selectors/Values/IAttrValue.h"

namespace Zorvex {

// T is CString, std::int64_t or CComVariant; these three are instantiated in AttrValue.cpp.
template <class T>
class AttrValue : public IAttrValue {
public:
    AttrValue() = default;
    explicit AttrValue(T value) : m_value(std::move(value)) {}
    AttrValue(T value, std::uint32_t matchingType, double fuzzyLevel = 1.0, bool enabled = true, bool caseSensitive = true)
        : m_value(std::move(value)),
          m_matchingType(matchingType),
          m_fuzzyLevel(fuzzyLevel),
          m_enabled(enabled),
          m_caseSensitive(caseSensitive) {}

    void WriteToArchive(Archive& archive) const override;
    void ReadFromArchive(Archive& archive) override;

    bool operator==(const IAttrValue& other) const override;
    bool operator!=(const IAttrValue& other) const override { return !operator==(other); }

    bool GetEnabled() const override { return m_enabled; }
    void SetEnabled(bool enabled) override { m_enabled = enabled; }
    std::uint32_t GetMatchingType() const override { return m_matchingType; }
    void SetMatchingType(std::uint32_t matchingType) override { m_matchingType = matchingType; }
    double GetFuzzyLevel() const override { return m_fuzzyLevel; }
    void SetFuzzyLevel(double fuzzyLevel) override { m_fuzzyLevel = fuzzyLevel; }
    bool GetCaseSensitive() const override { return m_caseSensitive; }
    void SetCaseSensitive(bool caseSensitive) override { m_caseSensitive = caseSensitive; }

    bool Matches(std::shared_ptr<IAttrValue> other, ScoreStatistics* stats) override;
    bool Matches(const CComVariant& target, ScoreStatistics* stats) override;
    bool Matches(std::int64_t target, ScoreStatistics* stats) override;
    bool Matches(const wchar_t* target, ScoreStatistics* stats) override;
    bool Matches(const CString& target, ScoreStatistics* stats) override;

    const T& GetValue() const { return m_value; }
    void SetValue(T value) { m_value = std::move(value); }
    // Null until the first comparison.
    const IValueMatcher* GetMatcher() const { return m_matcher.get(); }

protected:
    // A value never shares its matcher; the copy makes its own when it needs one.
    AttrValue(const AttrValue& other)
        : m_value(other.m_value),
          m_matchingType(other.m_matchingType),
          m_fuzzyLevel(other.m_fuzzyLevel),
          m_enabled(other.m_enabled),
          m_caseSensitive(other.m_caseSensitive) {}
    AttrValue& operator=(const AttrValue&) = delete;

    T m_value{};
    std::uint32_t m_matchingType = MatchingTypeNormal;
    double m_fuzzyLevel = 1.0;
    bool m_enabled = true;
    bool m_caseSensitive = true;
    std::unique_ptr<IValueMatcher> m_matcher;

private:
    IValueMatcher& MatcherForType();
};

extern template class AttrValue<CString>;
extern template class AttrValue<std::int64_t>;
extern template class AttrValue<CComVariant>;

}  // namespace Zorvex
