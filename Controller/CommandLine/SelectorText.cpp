#include "Controller/CommandLine/SelectorText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>

#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex::Controller {

namespace {

constexpr std::size_t kMaximumTags = 1000;
constexpr std::uint32_t kNormal = 1, kRegex = 2, kFuzzy = 3;

std::shared_ptr<ISelectorTag> MakeTag(TagKind kind) {
    switch (kind) {
        case TagKind::Wnd: return std::make_shared<WndTag>();
        case TagKind::Aa: return std::make_shared<AaTag>();
        case TagKind::Java: return std::make_shared<JavaTag>();
        case TagKind::Html: return std::make_shared<HtmlTag>();
        case TagKind::WebCtrl: return std::make_shared<WebCtrlTag>();
        case TagKind::UiAuto: return std::make_shared<UiAutoTag>();
        case TagKind::SL: return std::make_shared<SLTag>();
        case TagKind::Navigation: return std::make_shared<NavigationTag>();
        case TagKind::SAP: return std::make_shared<SAPTag>();
        case TagKind::Rdp: return std::make_shared<RdpTag>();
        case TagKind::RdpApp: return std::make_shared<RdpAppTag>();
        case TagKind::Qt: return std::make_shared<QtTag>();
        case TagKind::Wpf: return std::make_shared<WpfTag>();
    }
    return nullptr;
}

bool IsBlank(wchar_t unit) { return unit == L' ' || unit == L'\t' || unit == L'\r' || unit == L'\n'; }
bool IsDigit(wchar_t unit) { return unit >= L'0' && unit <= L'9'; }
bool IsNameUnit(wchar_t unit) {
    return (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z') || IsDigit(unit) || unit == L'_' || unit == L'-';
}
// What a text without quotes may be made of. Everything beyond ASCII may stand bare.
bool IsBareUnit(wchar_t unit) { return IsNameUnit(unit) || unit == L'*' || unit == L'?' || unit == L'.' || unit > 0x7F; }

// Names that come close to a mistyped one, for the message.
std::wstring Suggestion(std::wstring_view wrong, const std::vector<std::wstring>& names) {
    const auto lower = [](std::wstring_view text) {
        std::wstring result(text);
        for (wchar_t& unit : result)
            if (unit >= L'A' && unit <= L'Z') unit = static_cast<wchar_t>(unit - L'A' + L'a');
        return result;
    };
    for (const std::wstring& name : names)
        if (lower(name) == lower(wrong)) return L"; did you mean '" + name + L"'?";
    std::wstring list;
    for (const std::wstring& name : names) list += (list.empty() ? L"" : L", ") + name;
    return names.empty() ? L"" : L"; there are " + list;
}

class Parser {
public:
    explicit Parser(std::wstring_view text) : m_text(text) {}

    bool Parse(Selector& selector, SelectorTextError& error) {
        Selector result;
        if (!ParseChain(result)) {
            error = std::move(m_error);
            return false;
        }
        selector = std::move(result);
        return true;
    }

private:
    bool AtEnd() const { return m_position >= m_text.size(); }
    wchar_t Peek() const { return AtEnd() ? L'\0' : m_text[m_position]; }
    bool Take(wchar_t unit) {
        if (AtEnd() || Peek() != unit) return false;
        ++m_position;
        return true;
    }
    void SkipBlanks() {
        while (!AtEnd() && IsBlank(Peek())) ++m_position;
    }
    bool FailAt(std::size_t position, std::wstring message) {
        m_error.column = position + 1;
        m_error.message = std::move(message);
        return false;
    }
    bool Fail(std::wstring message) { return FailAt(m_position, std::move(message)); }

    bool ParseChain(Selector& selector) {
        if (m_text.size() > kMaximumSelectorLength) return FailAt(kMaximumSelectorLength, L"the selector is too long");
        SkipBlanks();
        const bool leadingChild = Take(L'>');
        std::optional<bool> child;  // what stands between the tags: '>' everywhere or nowhere
        std::size_t firstJoint = 0;
        while (true) {
            SkipBlanks();
            if (AtEnd() && selector.tags.empty()) return Fail(L"a tag is expected, such as ctrl[name=\"OK\"]");
            if (AtEnd()) break;
            std::size_t joint = m_position;
            const bool hasChild = !selector.tags.empty() && Take(L'>');
            if (!selector.tags.empty()) {
                if (child && *child != hasChild)
                    return FailAt(joint, L"'>' stands between all tags or between none: one search has one scope");
                if (!child) firstJoint = joint;
                child = hasChild;
            }
            SkipBlanks();
            if (AtEnd()) return Fail(L"a tag is expected behind '>'");
            if (selector.tags.size() == kMaximumTags) return Fail(L"the selector has too many tags");
            if (!ParseTag(selector)) return false;
        }
        if (child.value_or(false) && !leadingChild)
            return FailAt(firstJoint, L"'>' between tags needs a '>' in front of the first one as well");
        const bool allChildren = leadingChild && child.value_or(true);
        selector.scope = allChildren     ? Search::SearchScope::ChildrenOnly
                         : leadingChild  ? Search::SearchScope::DescendantsOfTopLevel
                                         : Search::SearchScope::Descendants;
        return true;
    }

    std::wstring_view TakeName() {
        const std::size_t start = m_position;
        while (!AtEnd() && IsNameUnit(Peek())) ++m_position;
        return m_text.substr(start, m_position - start);
    }

    bool ParseTag(Selector& selector) {
        const std::size_t start = m_position;
        const std::wstring_view name = TakeName();
        const auto known = std::find_if(std::begin(kTagNames), std::end(kTagNames), [&](const TagNames& names) { return name == names.tag; });
        if (known == std::end(kTagNames)) {
            std::vector<std::wstring> names;
            for (const TagNames& entry : kTagNames) names.emplace_back(entry.tag);
            if (name.empty()) return FailAt(start, L"a tag is expected here, such as ctrl");
            return FailAt(start, L"there is no tag '" + std::wstring(name) + L"'" + Suggestion(name, names));
        }
        const auto tag = MakeTag(static_cast<TagKind>(known - std::begin(kTagNames)));
        // Whoever wants one result means one of the last tag: the elements above it may be many.
        tag->SetLimitsEveryLevel(false);
        while (Take(L'['))
            if (!ParseAttributes(*tag)) return false;
        if (!AtEnd() && !IsBlank(Peek()) && Peek() != L'>') return Fail(L"'[', '>' or a blank is expected behind a tag");
        selector.tags.push_back(tag);
        return true;
    }

    // Behind '[', to the ']' that belongs to it.
    bool ParseAttributes(ISelectorTag& tag) {
        while (true) {
            while (!AtEnd() && (IsBlank(Peek()) || Peek() == L',')) ++m_position;
            if (Take(L']')) return true;
            if (AtEnd()) return Fail(L"']' is missing");
            if (!ParseAttribute(tag)) return false;
        }
    }

    bool ParseAttribute(ISelectorTag& tag) {
        const bool disabled = Take(L'!');
        const std::size_t start = m_position;
        const std::wstring name(TakeName());
        if (name.empty()) return FailAt(start, L"the name of an attribute is expected here");
        const std::uint32_t kind = tag.GetAttributeKind(name);
        const bool isNumber = kind == static_cast<std::uint32_t>(AttributeValueKind::Number);
        if (!isNumber && kind != static_cast<std::uint32_t>(AttributeValueKind::String) && tag.GetTagKind() != TagKind::WebCtrl) {
            std::vector<std::wstring> names;
            for (const auto& entry : tag.GetAttributeFactories()) names.push_back(entry.first);
            return FailAt(start, L"this tag has no attribute '" + name + L"'" + Suggestion(name, names));
        }
        if (tag.IsAttributeSet(name)) return FailAt(start, L"the attribute '" + name + L"' stands twice");

        SkipBlanks();
        const bool fuzzy = Take(L'~');
        if (!fuzzy && !Take(L'=')) return Fail(L"'=' or '~' is expected behind the name of an attribute");
        SkipBlanks();
        std::shared_ptr<IAttrValue> value;
        if (isNumber) {
            if (fuzzy) return FailAt(m_position - 1, L"the attribute '" + name + L"' is a number: it takes '='");
            if (!ParseNumber(value)) return false;
        } else if (!ParseText(fuzzy, value)) {
            return false;
        }
        if (!ParseSuffixes(*value)) return false;
        value->SetEnabled(!disabled);
        tag.SetAttribute(name, value);
        return true;
    }

    bool ParseNumber(std::shared_ptr<IAttrValue>& value) {
        const std::size_t start = m_position;
        std::string digits;
        const bool quoted = Take(L'"');
        while (!AtEnd() && (IsDigit(Peek()) || (digits.empty() && Peek() == L'-'))) digits += static_cast<char>(m_text[m_position++]);
        std::int64_t number = 0;
        const auto end = digits.data() + digits.size();
        const auto [parsed, problem] = std::from_chars(digits.data(), end, number);
        if (digits.empty() || problem != std::errc() || parsed != end || (quoted && !Take(L'"')))
            return FailAt(start, L"a whole number is expected here");
        value = std::make_shared<NumberValue>(number);
        return true;
    }

    bool ParseText(bool fuzzy, std::shared_ptr<IAttrValue>& value) {
        std::wstring text;
        std::uint32_t type = fuzzy ? kFuzzy : kNormal;
        if (Peek() == L'"' || Peek() == L'\'') {
            if (!ParseQuoted(text)) return false;
        } else if (Peek() == L'/') {
            if (fuzzy) return Fail(L"a regular expression takes '=', not '~'");
            if (!ParseRegex(text)) return false;
            type = kRegex;
        } else {
            const std::size_t start = m_position;
            while (!AtEnd() && IsBareUnit(Peek())) ++m_position;
            if (m_position == start) return Fail(L"a value is expected here: \"text\", /regular expression/ or a bare word");
            text = std::wstring(m_text.substr(start, m_position - start));
        }
        value = std::make_shared<StringValue>(std::move(text), type, fuzzy ? kDefaultFuzzyLevel : 1.0);
        return true;
    }

    bool ParseQuoted(std::wstring& text) {
        const std::size_t start = m_position;
        const wchar_t quote = m_text[m_position++];
        while (!AtEnd() && Peek() != quote) {
            if (!Take(L'\\')) {
                text += m_text[m_position++];
                continue;
            }
            if (AtEnd()) break;
            const wchar_t unit = m_text[m_position++];
            switch (unit) {
                case L'n': text += L'\n'; break;
                case L'r': text += L'\r'; break;
                case L't': text += L'\t'; break;
                case L'\\': case L'"': case L'\'': text += unit; break;
                case L'u':
                    if (!ParseHexadecimal(text)) return false;
                    break;
                default: return FailAt(m_position - 2, L"this escape is unknown; there are \\\\ \\\" \\' \\n \\r \\t and \\uXXXX");
            }
        }
        if (!Take(quote)) return FailAt(start, L"the quote that begins here isn't closed");
        return true;
    }

    bool ParseHexadecimal(std::wstring& text) {
        unsigned unit = 0;
        for (int i = 0; i < 4; ++i, ++m_position) {
            const wchar_t digit = Peek();
            if (IsDigit(digit)) unit = unit * 16 + static_cast<unsigned>(digit - L'0');
            else if (digit >= L'a' && digit <= L'f') unit = unit * 16 + static_cast<unsigned>(digit - L'a' + 10);
            else if (digit >= L'A' && digit <= L'F') unit = unit * 16 + static_cast<unsigned>(digit - L'A' + 10);
            else return Fail(L"four hexadecimal digits are expected behind \\u");
        }
        text += static_cast<wchar_t>(unit);
        return true;
    }

    // Everything between the slashes belongs to the expression; "\/" is a slash.
    bool ParseRegex(std::wstring& text) {
        const std::size_t start = m_position++;
        while (!AtEnd() && Peek() != L'/') {
            if (Peek() == L'\\' && m_position + 1 < m_text.size()) {
                if (m_text[m_position + 1] != L'/') text += L'\\';
                ++m_position;
            }
            text += m_text[m_position++];
        }
        if (!Take(L'/')) return FailAt(start, L"the regular expression that begins here isn't closed with '/'");
        return true;
    }

    // i: without regard to case. :LEVEL: the lowest score that still counts.
    bool ParseSuffixes(IAttrValue& value) {
        if (Take(L'i')) value.SetCaseSensitive(false);
        if (Take(L':')) {
            const std::size_t start = m_position;
            std::string digits;
            while (!AtEnd() && digits.size() < 32 && (IsDigit(Peek()) || Peek() == L'.')) digits += static_cast<char>(m_text[m_position++]);
            double level = -1;
            const auto end = digits.data() + digits.size();
            const auto [parsed, problem] = std::from_chars(digits.data(), end, level);
            if (digits.empty() || problem != std::errc() || parsed != end || !(level >= 0 && level <= 1))
                return FailAt(start, L"a level from 0 to 1 is expected behind ':', such as 0.8");
            value.SetFuzzyLevel(level);
        }
        if (!AtEnd() && !IsBlank(Peek()) && Peek() != L']' && Peek() != L',')
            return Fail(L"']', ',' or a blank is expected behind a value");
        return true;
    }

    std::wstring_view m_text;
    std::size_t m_position = 0;
    SelectorTextError m_error;
};

std::wstring Quoted(const std::wstring& text) {
    constexpr wchar_t digits[] = L"0123456789abcdef";
    std::wstring result = L"\"";
    for (const wchar_t unit : text) {
        switch (unit) {
            case L'"': result += L"\\\""; break;
            case L'\\': result += L"\\\\"; break;
            case L'\n': result += L"\\n"; break;
            case L'\r': result += L"\\r"; break;
            case L'\t': result += L"\\t"; break;
            default:
                // Controls and halves of surrogate pairs don't survive every terminal and encoding.
                if (unit < 0x20 || unit == 0x7F || (unit >= 0xD800 && unit <= 0xDFFF)) {
                    result += L"\\u";
                    for (int shift = 12; shift >= 0; shift -= 4) result += digits[(unit >> shift) & 15];
                } else {
                    result += unit;
                }
        }
    }
    return result + L"\"";
}

// An escaped slash and a plain one mean the same, so both are written escaped. A lone backslash at the end, which no
// expression may have, is doubled.
std::wstring Slashed(const std::wstring& expression) {
    std::wstring result = L"/";
    for (std::size_t i = 0; i < expression.size(); ++i) {
        if (expression[i] == L'/' || expression[i] == L'\\') result += L'\\';
        if (expression[i] == L'\\' && i + 1 < expression.size()) ++i;
        result += expression[i];
    }
    return result + L"/";
}

std::wstring Level(double level) {
    std::array<char, 32> digits{};
    const auto [end, problem] = std::to_chars(digits.data(), digits.data() + digits.size(), level, std::chars_format::fixed);
    return problem == std::errc() ? L":" + std::wstring(digits.data(), end) : std::wstring();
}

bool IsFuzzy(const IAttrValue& value) { return value.GetMatchingType() == 3 || value.GetMatchingType() == 4; }

std::wstring WriteValue(const IAttrValue& value) {
    std::wstring text;
    if (value.GetValueKind() == AttributeValueKind::Number) text = L"=" + value.ToString();
    else if (IsFuzzy(value)) text = L"~" + Quoted(value.ToString());
    else if (value.GetMatchingType() == kRegex) text = L"=" + Slashed(value.ToString());
    else text = L"=" + Quoted(value.ToString());
    if (!value.GetCaseSensitive()) text += L"i";
    const double level = value.GetFuzzyLevel();
    const bool isDefault = level == (IsFuzzy(value) && value.GetValueKind() != AttributeValueKind::Number ? kDefaultFuzzyLevel : 1.0);
    if (!isDefault && level >= 0 && level <= 1) text += Level(level);
    return text;
}

}  // namespace

std::wstring SelectorTextError::Show(std::wstring_view text) const {
    // Only the line with the mistake, so that the caret stands below it.
    const std::size_t place = std::min(column ? column - 1 : 0, text.size());
    std::size_t start = place;
    while (start > 0 && text[start - 1] != L'\n') --start;
    std::size_t end = place;
    while (end < text.size() && text[end] != L'\n' && text[end] != L'\r') ++end;
    // A window of the line around the place, for a selector wider than any terminal.
    constexpr std::size_t reach = 60;
    if (place - start > reach) start = place - reach;
    if (end - place > reach) end = place + reach;
    return std::wstring(text.substr(start, end - start)) + L"\n" + std::wstring(place - start, L' ') + L"^\n" + L"column " +
           std::to_wstring(column) + L": " + message;
}

bool ParseSelector(std::wstring_view text, Selector& selector, SelectorTextError& error) {
    return Parser(text).Parse(selector, error);
}

std::wstring WriteTag(const ISelectorTag& tag) {
    std::wstring text = kTagNames[static_cast<std::size_t>(tag.GetTagKind())].tag;
    std::wstring attributes;
    const auto append = [&](const CString& name, const IAttrValue& value) {
        attributes += (attributes.empty() ? L"" : L" ") + std::wstring(value.GetEnabled() ? L"" : L"!") + name + WriteValue(value);
    };
    // The index is a position among matches, so it reads best behind what is matched.
    for (const auto& [name, value] : tag.GetAttributes())
        if (value && name != L"idx") append(name, *value);
    if (const auto index = tag.GetAttribute(L"idx")) append(L"idx", *index);
    return attributes.empty() ? text : text + L"[" + attributes + L"]";
}

std::wstring WriteSelector(const Selector& selector) {
    std::wstring text = selector.scope == Search::SearchScope::Descendants ? L"" : L"> ";
    const wchar_t* joint = selector.scope == Search::SearchScope::ChildrenOnly ? L" > " : L" ";
    bool first = true;
    for (const auto& tag : selector.tags) {
        if (!tag) continue;
        if (!first) text += joint;
        first = false;
        text += WriteTag(*tag);
    }
    return text;
}

}  // namespace Zorvex::Controller
