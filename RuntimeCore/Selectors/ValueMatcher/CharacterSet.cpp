#include "RuntimeCore/Selectors/ValueMatcher/CharacterSet.h"

#include <algorithm>
#include <iterator>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {

namespace {

struct NamedClass {
    std::wstring_view name;
    std::uint32_t classes;
};

constexpr NamedClass kClasses[] = {
    {L"alnum", ClassAlnum}, {L"alpha", ClassAlpha}, {L"blank", ClassBlank}, {L"cntrl", ClassControl},
    {L"d", ClassDigit}, {L"digit", ClassDigit}, {L"graph", ClassGraph}, {L"lower", ClassLower},
    {L"print", ClassPrint}, {L"punct", ClassPunct}, {L"s", ClassSpace}, {L"space", ClassSpace},
    {L"upper", ClassUpper}, {L"w", ClassWord}, {L"xdigit", ClassHexDigit},
};

// The portable names of the units from NUL to the commercial at, in their order, and of those behind that aren't letters.
constexpr std::wstring_view kNames[] = {
    L"NUL", L"SOH", L"STX", L"ETX", L"EOT", L"ENQ", L"ACK", L"alert", L"backspace", L"tab", L"newline",
    L"vertical-tab", L"form-feed", L"carriage-return", L"SO", L"SI", L"DLE", L"DC1", L"DC2", L"DC3", L"DC4", L"NAK",
    L"SYN", L"ETB", L"CAN", L"EM", L"SUB", L"ESC", L"IS4", L"IS3", L"IS2", L"IS1", L"space", L"exclamation-mark",
    L"quotation-mark", L"number-sign", L"dollar-sign", L"percent-sign", L"ampersand", L"apostrophe",
    L"left-parenthesis", L"right-parenthesis", L"asterisk", L"plus-sign", L"comma", L"hyphen", L"period", L"slash",
    L"zero", L"one", L"two", L"three", L"four", L"five", L"six", L"seven", L"eight", L"nine", L"colon", L"semicolon",
    L"less-than-sign", L"equals-sign", L"greater-than-sign", L"question-mark", L"commercial-at",
};

struct NamedUnit {
    std::wstring_view name;
    wchar_t unit;
};

constexpr NamedUnit kLaterNames[] = {
    {L"left-square-bracket", L'\x5b'}, {L"backslash", L'\x5c'}, {L"right-square-bracket", L'\x5d'},
    {L"circumflex", L'\x5e'}, {L"underscore", L'\x5f'}, {L"grave-accent", L'\x60'}, {L"left-curly-bracket", L'\x7b'},
    {L"vertical-line", L'\x7c'}, {L"right-curly-bracket", L'\x7d'}, {L"tilde", L'\x7e'}, {L"DEL", L'\x7f'},
};

bool IsControl(std::uint32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

}  // namespace

bool IsInClass(wchar_t unit, std::uint32_t classes) {
    const auto code = static_cast<std::uint32_t>(unit);
    const auto has = [classes](CharacterClass wanted) { return (classes & wanted) != 0; };
    if (has(ClassDigit) && IsDigit(unit)) return true;
    if (has(ClassUnderscore) && unit == L'_') return true;
    if (has(ClassAlpha) && IsLetter(unit)) return true;
    if (has(ClassUpper) && IsUpperCase(unit)) return true;
    if (has(ClassLower) && IsLowerCase(unit)) return true;
    if (has(ClassSpace) && IsSpace(unit)) return true;
    if (has(ClassBlank) && (unit == L' ' || unit == L'\t')) return true;
    if (has(ClassControl) && IsControl(code)) return true;
    if (has(ClassPrint) && !IsControl(code)) return true;
    const bool isGraphic = !IsControl(code) && !IsSpace(unit);
    if (has(ClassGraph) && isGraphic) return true;
    if (has(ClassPunct) && isGraphic && !IsLetter(unit) && !IsDigit(unit)) return true;
    if (has(ClassHexDigit) && (IsDigit(unit) || (code | 0x20) - 'a' < 6)) return true;
    return false;
}

std::uint32_t FindCharacterClass(std::wstring_view name, bool caseSensitive) {
    for (const NamedClass& entry : kClasses) {
        if (entry.name != name) continue;
        if (!caseSensitive && (entry.classes & (ClassUpper | ClassLower))) return ClassAlpha;
        return entry.classes;
    }
    return 0;
}

std::int32_t FindCollatingElement(std::wstring_view name) {
    if (name.size() == 1) return static_cast<std::int32_t>(name[0]);
    if (name.empty()) return -1;
    const auto* found = std::find(std::begin(kNames), std::end(kNames), name);
    if (found != std::end(kNames)) return static_cast<std::int32_t>(found - std::begin(kNames));
    for (const NamedUnit& entry : kLaterNames)
        if (entry.name == name) return entry.unit;
    return -1;
}

void CharacterSet::MergeRanges() {
    std::sort(m_ranges.begin(), m_ranges.end(), [](Range a, Range b) { return a.first < b.first; });
    std::vector<Range> merged;
    for (const Range& range : m_ranges) {
        if (!merged.empty() && range.first <= merged.back().last + 1) merged.back().last = std::max(merged.back().last, range.last);
        else merged.push_back(range);
    }
    m_ranges = std::move(merged);
}

void CharacterSet::Close(bool caseSensitive) {
    // Merged ranges hold each unit once, so that many wide ones cost no more than one.
    MergeRanges();
    if (!caseSensitive) {
        const std::size_t count = m_ranges.size();
        for (std::size_t i = 0; i < count; ++i) {
            const Range range = m_ranges[i];
            for (std::uint32_t code = range.first; code <= range.last && code <= 0xFFFF;) {
                if (IsCaselessPage(code >> 8)) {
                    code = (code | 0xFF) + 1;
                    continue;
                }
                const auto lower = static_cast<std::uint32_t>(ToLower(static_cast<wchar_t>(code)));
                if (lower < range.first || lower > range.last) m_ranges.push_back({lower, lower});
                ++code;
            }
        }
        MergeRanges();
    }
    std::sort(m_complements.begin(), m_complements.end());
    m_complements.erase(std::unique(m_complements.begin(), m_complements.end()), m_complements.end());
    for (std::size_t code = 0; code < m_direct.size(); ++code) m_direct[code] = ContainsSlowly(static_cast<wchar_t>(code));
}

bool CharacterSet::ContainsSlowly(wchar_t unit) const {
    const std::uint32_t code = Code(unit);
    const auto range = std::lower_bound(m_ranges.begin(), m_ranges.end(), code,
                                        [](Range r, std::uint32_t c) { return r.last < c; });
    bool found = range != m_ranges.end() && range->first <= code;
    found = found || (m_classes != 0 && IsInClass(unit, m_classes));
    for (const std::uint32_t classes : m_complements) found = found || !IsInClass(unit, classes);
    return found != m_negated;
}

}  // namespace Zorvex
