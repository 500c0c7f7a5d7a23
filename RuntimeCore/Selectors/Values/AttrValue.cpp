#include "RuntimeCore/Selectors/Values/AttrValue.h"

#include <type_traits>

#include "Common/include/Archive.h"
#include "Common/include/Log.h"
#include "Common/include/VariantEquals.h"
#include "RuntimeCore/Selectors/Values/CompareDoubles.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "RuntimeCore/Selectors/Values/VariantValue.h"

namespace Zorvex {

template <class T>
void AttrValue<T>::WriteToArchive(Archive& archive) const {
    archive.write(m_enabled).write(m_caseSensitive).write(m_matchingType).write(m_fuzzyLevel).write(m_value);
}

template <class T>
void AttrValue<T>::ReadFromArchive(Archive& archive) {
    archive.read(m_enabled).read(m_caseSensitive).read(m_matchingType).read(m_fuzzyLevel).read(m_value);
}

template <class T>
bool AttrValue<T>::operator==(const IAttrValue& other) const {
    const auto* rhs = dynamic_cast<const AttrValue<T>*>(&other);
    if (!rhs) {
        LogError("Unexpected rhs parameter in AttrValue operator==");
        return false;
    }
    if (m_matchingType != rhs->m_matchingType) return false;
    if (!AlmostEqual(m_fuzzyLevel, rhs->m_fuzzyLevel)) return false;
    if (m_enabled != rhs->m_enabled) return false;
    if (m_caseSensitive != rhs->m_caseSensitive) return false;
    if constexpr (std::is_same_v<T, CComVariant>) return VariantEquals(m_value, rhs->m_value);
    else return m_value == rhs->m_value;
}

template <class T>
IValueMatcher& AttrValue<T>::MatcherForType() {
    // A type that this class has no matcher for builds a new one on every call, on purpose: its kind never agrees.
    if (!m_matcher || m_matcher->GetKind() != GetMatchingType()) InitializeMatcher();
    return *m_matcher;
}

template <class T>
bool AttrValue<T>::Matches(std::shared_ptr<IAttrValue> other, ScoreStatistics* stats) {
    if (const auto* text = dynamic_cast<const StringValue*>(other.get())) return Matches(text->GetValue(), stats);
    if (const auto* number = dynamic_cast<const NumberValue*>(other.get())) return Matches(number->GetValue(), stats);
    if (const auto* variant = dynamic_cast<const VariantValue*>(other.get())) return Matches(variant->GetValue(), stats);
    return false;
}

template <class T>
bool AttrValue<T>::Matches(const CComVariant& target, ScoreStatistics* stats) {
    return MatcherForType().Matches(this, target, stats);
}

template <class T>
bool AttrValue<T>::Matches(std::int64_t target, ScoreStatistics* stats) {
    return MatcherForType().Matches(this, target, stats);
}

template <class T>
bool AttrValue<T>::Matches(const wchar_t* target, ScoreStatistics* stats) {
    return MatcherForType().Matches(this, target, stats);
}

template <class T>
bool AttrValue<T>::Matches(const CString& target, ScoreStatistics* stats) {
    return MatcherForType().Matches(this, target, stats);
}

template class AttrValue<CString>;
template class AttrValue<std::int64_t>;
template class AttrValue<CComVariant>;

}  // namespace Zorvex
