#include "RuntimeCore/Selectors/ValueMatcher/RegexSyntax.h"

#include <map>
#include <string>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {

namespace {

constexpr std::size_t kMaximumPattern = 65536;
constexpr std::uint32_t kMaximumNesting = 100;
constexpr std::uint32_t kMaximumRepetition = 100000;

[[noreturn]] void Fail(RegexErrorCode code, const char* message) { throw RegexError{code, message}; }

// What \d and its kin stand for, 0 for other letters.
std::uint32_t ClassOfEscape(wchar_t letter) {
    switch (letter) {
        case L'd': case L'D': return ClassDigit;
        case L's': case L'S': return ClassSpace;
        case L'w': case L'W': return ClassWord;
        default: return 0;
    }
}

// Each unit that has a lower case, under that. Made once: a pattern may ask thousands of times.
const std::multimap<wchar_t, wchar_t>& UnitsInUpperCase() {
    static const auto units = [] {
        std::multimap<wchar_t, wchar_t> found;
        for (std::uint32_t code = 0; code <= 0xFFFF; code = IsCaselessPage(code >> 8) ? (code | 0xFF) + 1 : code + 1) {
            const auto unit = static_cast<wchar_t>(code);
            if (ToLower(unit) != unit) found.emplace(ToLower(unit), unit);
        }
        return found;
    }();
    return units;
}

bool IsAsciiLetter(wchar_t unit) { return unit < 0x80 && IsLetter(unit); }

class Parser {
public:
    Parser(std::wstring_view pattern, bool caseSensitive) : m_rest(pattern), m_caseSensitive(caseSensitive) {}

    // Open groups are kept in a list of their own: the pattern's nesting costs no stack here.
    RegexSyntax Parse() {
        m_open.emplace_back();
        while (!m_rest.empty()) {
            if (Take(L"|")) CloseAlternative();
            else if (Take(L")")) CloseGroup();
            else if (Take(L"(?=")) OpenGroup(Kind::LookAhead, 0);
            else if (Take(L"(?!")) OpenGroup(Kind::NegativeLookAhead, 0);
            else if (Take(L"(?:")) OpenGroup(Kind::Group, 0);
            else if (Take(L"(?")) Fail(RegexErrorCode::Parenthesis, "unknown kind of group");
            else if (Take(L"(")) OpenGroup(Kind::Group, AddGroupNumber());
            else m_open.back().terms.push_back(ParseTerm());
        }
        if (m_open.size() > 1) Fail(RegexErrorCode::Parenthesis, "opening parenthesis without a closing one");
        m_syntax.root = CloseAlternatives();
        return std::move(m_syntax);
    }

private:
    using Kind = RegexNode::Kind;

    bool At(wchar_t unit) const { return !m_rest.empty() && m_rest.front() == unit; }
    bool Take(std::wstring_view text) {
        if (!m_rest.starts_with(text)) return false;
        m_rest.remove_prefix(text.size());
        return true;
    }
    wchar_t TakeUnit(RegexErrorCode code, const char* message) {
        if (m_rest.empty()) Fail(code, message);
        const wchar_t unit = m_rest.front();
        m_rest.remove_prefix(1);
        return unit;
    }

    std::uint32_t Add(Kind kind, std::uint32_t value = 0) {
        RegexNode& node = m_syntax.nodes.emplace_back();
        node.kind = kind;
        node.value = value;
        return static_cast<std::uint32_t>(m_syntax.nodes.size() - 1);
    }
    std::uint32_t AddParent(Kind kind, std::vector<std::uint32_t> children, std::uint32_t value = 0) {
        const std::uint32_t index = Add(kind, value);
        m_syntax.nodes[index].children = std::move(children);
        return index;
    }
    std::uint32_t AddUnit(wchar_t unit) {
        return Add(Kind::Unit, static_cast<std::uint32_t>(m_caseSensitive ? unit : ToLower(unit)));
    }
    std::uint32_t AddSet(CharacterSet set) {
        set.Close(m_caseSensitive);
        m_syntax.sets.push_back(std::move(set));
        return Add(Kind::Set, static_cast<std::uint32_t>(m_syntax.sets.size() - 1));
    }

    struct OpenPart {
        Kind kind = Kind::Group;
        std::uint32_t number = 0;
        std::uint32_t groupsBefore = 0;
        std::vector<std::uint32_t> alternatives;  // the complete ones
        std::vector<std::uint32_t> terms;         // of the one that is being read
    };

    std::uint32_t AddGroupNumber() {
        m_closedGroups.push_back(false);
        return ++m_syntax.groups;
    }

    void OpenGroup(Kind kind, std::uint32_t number) {
        if (m_open.size() > kMaximumNesting) Fail(RegexErrorCode::Stack, "groups are nested too deep");
        OpenPart& part = m_open.emplace_back();
        part.kind = kind;
        part.number = number;
        part.groupsBefore = number != 0 ? number - 1 : m_syntax.groups;
    }

    void CloseAlternative() {
        OpenPart& part = m_open.back();
        std::vector<std::uint32_t> terms;
        terms.swap(part.terms);
        part.alternatives.push_back(terms.size() == 1 ? terms[0] : AddParent(Kind::Sequence, std::move(terms)));
    }

    std::uint32_t CloseAlternatives() {
        CloseAlternative();
        std::vector<std::uint32_t> alternatives;
        alternatives.swap(m_open.back().alternatives);
        return alternatives.size() == 1 ? alternatives[0] : AddParent(Kind::Alternatives, std::move(alternatives));
    }

    void CloseGroup() {
        if (m_open.size() == 1) Fail(RegexErrorCode::Parenthesis, "closing parenthesis without an opening one");
        const Kind kind = m_open.back().kind;
        const std::uint32_t number = m_open.back().number;
        const std::uint32_t groupsBefore = m_open.back().groupsBefore;
        std::uint32_t index = AddParent(kind, {CloseAlternatives()}, number);
        m_open.pop_back();
        if (number != 0) m_closedGroups[number - 1] = true;
        if (kind == Kind::Group) index = ParseQuantifier(index, groupsBefore);
        m_open.back().terms.push_back(index);
    }

    // Anything but a group, with what repeats it.
    std::uint32_t ParseTerm() {
        if (Take(L"^")) return Add(Kind::Begin);
        if (Take(L"$")) return Add(Kind::End);
        if (Take(L"\\b")) return Add(Kind::WordBoundary);
        if (Take(L"\\B")) return Add(Kind::NoWordBoundary);
        return ParseQuantifier(ParseAtom(), m_syntax.groups);
    }

    std::uint32_t ParseAtom() {
        if (Take(L"[")) return ParseBracket();
        if (Take(L"\\")) return ParseEscape();
        if (Take(L".")) return Add(Kind::AnyUnit);
        if (At(L'*') || At(L'+') || At(L'?') || At(L'{')) Fail(RegexErrorCode::BadRepeat, "nothing to repeat");
        const wchar_t unit = m_rest.front();
        m_rest.remove_prefix(1);
        return AddUnit(unit);
    }

    // `groupsBefore` is the number of groups that began before the atom.
    std::uint32_t ParseQuantifier(std::uint32_t atom, std::uint32_t groupsBefore) {
        std::uint32_t minimum = 0;
        std::uint32_t maximum = kNoMaximum;
        if (Take(L"*")) {
        } else if (Take(L"+")) {
            minimum = 1;
        } else if (Take(L"?")) {
            maximum = 1;
        } else if (Take(L"{")) {
            minimum = ParseCount();
            maximum = minimum;
            if (Take(L",")) maximum = At(L'}') ? kNoMaximum : ParseCount();
            if (!Take(L"}")) Fail(m_rest.empty() ? RegexErrorCode::Brace : RegexErrorCode::BadBrace, "brace isn't closed");
            if (minimum > maximum) Fail(RegexErrorCode::BadBrace, "repetition from more to fewer");
        } else {
            return atom;
        }
        const bool greedy = !Take(L"?");
        if (At(L'*') || At(L'+') || At(L'?') || At(L'{')) Fail(RegexErrorCode::BadRepeat, "repetition of a repetition");
        const std::uint32_t index = AddParent(Kind::Repetition, {atom});
        RegexNode& node = m_syntax.nodes[index];
        node.minimum = minimum;
        node.maximum = maximum;
        node.greedy = greedy;
        node.firstGroup = groupsBefore;
        node.lastGroup = m_syntax.groups;
        return index;
    }

    std::uint32_t ParseCount() {
        if (m_rest.empty()) Fail(RegexErrorCode::Brace, "brace isn't closed");
        if (!IsDigit(m_rest.front())) Fail(RegexErrorCode::BadBrace, "number expected in braces");
        std::uint32_t count = 0;
        while (!m_rest.empty() && IsDigit(m_rest.front())) {
            count = count * 10 + static_cast<std::uint32_t>(m_rest.front() - L'0');
            if (count > kMaximumRepetition) Fail(RegexErrorCode::Complexity, "too many repetitions");
            m_rest.remove_prefix(1);
        }
        return count;
    }

    std::uint32_t ParseEscape() {
        if (m_rest.empty()) Fail(RegexErrorCode::Escape, "nothing behind the backslash");
        const wchar_t unit = m_rest.front();
        if (unit >= L'1' && unit <= L'9') return ParseBackReference();
        if (const std::uint32_t classes = ClassOfEscape(unit)) {
            m_rest.remove_prefix(1);
            CharacterSet set;
            set.AddClass(classes);
            if (IsUpperCase(unit)) set.Negate();
            return AddSet(std::move(set));
        }
        return AddUnit(ParseUnitEscape());
    }

    std::uint32_t ParseBackReference() {
        std::uint32_t number = 0;
        while (!m_rest.empty() && IsDigit(m_rest.front()) && number <= kMaximumPattern) {
            number = number * 10 + static_cast<std::uint32_t>(m_rest.front() - L'0');
            m_rest.remove_prefix(1);
        }
        if (number > m_syntax.groups || !m_closedGroups[number - 1])
            Fail(RegexErrorCode::BackReference, "reference to a group that isn't complete before it");
        m_syntax.hasBackReferences = true;
        return Add(Kind::BackReference, number);
    }

    // Behind the backslash: an escape that stands for one unit.
    wchar_t ParseUnitEscape() {
        const wchar_t unit = TakeUnit(RegexErrorCode::Escape, "nothing behind the backslash");
        switch (unit) {
            case L'f': return L'\f';
            case L'n': return L'\n';
            case L'r': return L'\r';
            case L't': return L'\t';
            case L'v': return L'\v';
            case L'0':
                if (!m_rest.empty() && IsDigit(m_rest.front())) Fail(RegexErrorCode::Escape, "octal number");
                return L'\0';
            case L'c': {
                const wchar_t letter = TakeUnit(RegexErrorCode::Escape, "letter expected behind \\c");
                if (!IsAsciiLetter(letter)) Fail(RegexErrorCode::Escape, "letter expected behind \\c");
                return static_cast<wchar_t>(letter % 32);
            }
            case L'x': return ParseHexadecimal(2);
            case L'u': return ParseHexadecimal(4);
            default: break;
        }
        // Letters are kept for meanings to come; anything else stands for itself.
        if (IsAsciiLetter(unit) || IsDigit(unit) || unit == L'_') Fail(RegexErrorCode::Escape, "unknown escape");
        return unit;
    }

    wchar_t ParseHexadecimal(int digits) {
        std::uint32_t code = 0;
        for (int i = 0; i < digits; ++i) {
            const wchar_t digit = TakeUnit(RegexErrorCode::Escape, "hexadecimal digit expected");
            if (!IsInClass(digit, ClassHexDigit)) Fail(RegexErrorCode::Escape, "hexadecimal digit expected");
            code = code * 16 + static_cast<std::uint32_t>(IsDigit(digit) ? digit - L'0' : (digit | 0x20) - L'a' + 10);
        }
        return static_cast<wchar_t>(code);
    }

    // Behind the opening bracket.
    std::uint32_t ParseBracket() {
        CharacterSet set;
        if (Take(L"^")) set.Negate();
        while (!Take(L"]")) {
            wchar_t first = 0;
            if (!ParseBracketItem(set, first)) continue;
            if (m_rest.size() < 2 || m_rest[0] != L'-' || m_rest[1] == L']') {
                set.AddRange(first, first);
                continue;
            }
            m_rest.remove_prefix(1);
            wchar_t last = 0;
            if (ParseBracketItem(set, last)) {
                if (last < first) Fail(RegexErrorCode::Range, "range from a later to an earlier unit");
                set.AddRange(first, last);
            } else {
                // A class is no end of a range: the hyphen stands for itself.
                set.AddRange(first, first);
                set.AddRange(L'-', L'-');
            }
        }
        return AddSet(std::move(set));
    }

    // True with the unit if the item is one that may begin or end a range; a class goes into `set`.
    bool ParseBracketItem(CharacterSet& set, wchar_t& unit) {
        constexpr auto kOpen = "bracket isn't closed";
        if (Take(L"[:")) {
            const std::uint32_t classes = FindCharacterClass(TakeName(L":]"), m_caseSensitive);
            if (!classes) Fail(RegexErrorCode::CharacterClass, "unknown character class");
            set.AddClass(classes);
            return false;
        }
        if (Take(L"[=")) {
            // Units of one sort: the same letter in either case.
            const wchar_t lower = ToLower(TakeCollatingElement(L"=]"));
            const auto [first, last] = UnitsInUpperCase().equal_range(lower);
            for (auto entry = first; entry != last; ++entry) set.AddRange(entry->second, entry->second);
            set.AddRange(lower, lower);
            return false;
        }
        if (Take(L"[.")) {
            unit = TakeCollatingElement(L".]");
            return true;
        }
        if (!Take(L"\\")) {
            unit = TakeUnit(RegexErrorCode::Bracket, kOpen);
            return true;
        }
        if (m_rest.empty()) Fail(RegexErrorCode::Bracket, kOpen);
        if (const std::uint32_t classes = ClassOfEscape(m_rest.front())) {
            if (IsUpperCase(m_rest.front())) set.AddClassComplement(classes);
            else set.AddClass(classes);
            m_rest.remove_prefix(1);
            return false;
        }
        unit = Take(L"b") ? L'\b' : ParseUnitEscape();
        return true;
    }

    std::wstring_view TakeName(std::wstring_view end) {
        const std::size_t length = m_rest.find(end);
        if (length == std::wstring_view::npos) Fail(RegexErrorCode::Bracket, "name in a bracket isn't closed");
        const std::wstring_view name = m_rest.substr(0, length);
        m_rest.remove_prefix(length + end.size());
        return name;
    }

    wchar_t TakeCollatingElement(std::wstring_view end) {
        const std::int32_t unit = FindCollatingElement(TakeName(end));
        if (unit < 0) Fail(RegexErrorCode::Collate, "unknown name of a character");
        return static_cast<wchar_t>(unit);
    }

    std::wstring_view m_rest;
    bool m_caseSensitive;
    RegexSyntax m_syntax;
    std::vector<OpenPart> m_open;
    std::vector<bool> m_closedGroups;
};

}  // namespace

RegexSyntax ParseRegex(std::wstring_view pattern, bool caseSensitive) {
    if (pattern.size() > kMaximumPattern) Fail(RegexErrorCode::Complexity, "pattern is too long");
    return Parser(pattern, caseSensitive).Parse();
}

}  // namespace Zorvex
