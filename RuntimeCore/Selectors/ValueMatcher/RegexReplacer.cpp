#include "RuntimeCore/Selectors/ValueMatcher/RegexReplacer.h"

#include <algorithm>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"
#include "RuntimeCore/Selectors/ValueMatcher/RegexBacktracker.h"
#include "RuntimeCore/Selectors/ValueMatcher/RegexProgram.h"
#include "RuntimeCore/Selectors/ValueMatcher/RegexReach.h"

namespace Zorvex {

namespace {

using Ending = RegexBacktracker::Ending;

// About a tenth of a second for all matches of one text together.
constexpr std::uint64_t kMaximumSteps = 20'000'000;
constexpr std::size_t kMaximumGrowth = 4'194'304;

// The matches in one text.
class Finder {
public:
    Finder(const RegexProgram& program, std::wstring_view text, RegexSteps& steps)
        : m_text(text), m_steps(steps), m_knowsReach(m_reach.Find(program, text)),
          m_matcher(program, text, steps, m_knowsReach ? &m_reach : nullptr) {}
    Finder(const Finder&) = delete;
    Finder& operator=(const Finder&) = delete;

    // The first match from `position` on; false if there is none.
    bool Find(std::size_t position) {
        for (; position <= m_text.size(); ++position) {
            m_steps.Spend(1);
            if (MatchAt(position, Ending::Anywhere)) return true;
        }
        return false;
    }
    bool MatchAt(std::size_t position, Ending ending) {
        m_begin = position;
        return (!m_knowsReach || m_reach.Leads(0, position)) && m_matcher.MatchAt(position, ending);
    }

    std::size_t GetBegin() const { return m_begin; }
    std::size_t GetEnd() const { return m_matcher.GetEnd(); }
    std::wstring_view GetGroup(std::uint32_t number) const {
        return number == 0 ? m_text.substr(GetBegin(), GetEnd() - GetBegin()) : m_matcher.GetGroup(number);
    }

private:
    std::wstring_view m_text;
    RegexSteps& m_steps;
    RegexReach m_reach;
    bool m_knowsReach;
    RegexBacktracker m_matcher;
    std::size_t m_begin = 0;
};

class Replacement {
public:
    Replacement(const RegexProgram& program, std::wstring_view text, std::wstring_view format)
        : m_program(program), m_text(text), m_format(format), m_steps(kMaximumSteps), m_finder(program, text, m_steps) {}

    std::wstring Run() {
        bool isFirst = true;
        for (bool found = m_finder.Find(0); found;) {
            Put(m_finder, 0);
            std::size_t start = m_done;
            if (m_finder.GetBegin() == m_finder.GetEnd()) {
                if (start == m_text.size()) break;
                // Where an empty match stands, one that isn't may begin.
                if (!isFirst || start == 0) {
                    if (m_finder.MatchAt(start, Ending::BehindItsBegin)) continue;
                    ++start;
                } else if (!PutAsBeginOfText(start)) {
                    ++start;
                } else {
                    start = m_done;
                }
            }
            isFirst = false;
            found = m_finder.Find(start);
        }
        Append(m_text.substr(m_done));
        return std::move(m_result);
    }

private:
    // Behind an empty match that is the first of all, the standard library forgets that text stands before, so that
    // "^" matches there; the same here, on purpose.
    bool PutAsBeginOfText(std::size_t start) {
        Finder finder(m_program, m_text.substr(start), m_steps);
        if (!finder.MatchAt(0, Ending::BehindItsBegin)) return false;
        Put(finder, start);
        return true;
    }

    void Append(std::wstring_view text) {
        if (text.size() > m_text.size() + kMaximumGrowth - m_result.size()) throw RegexError{RegexErrorCode::Space, "result is too long"};
        m_result += text;
    }

    // The text up to the match, and what takes the match's place. `offset`: where the finder's text begins.
    void Put(const Finder& finder, std::size_t offset) {
        const std::wstring_view before = m_text.substr(m_done, offset + finder.GetBegin() - m_done);
        m_done = offset + finder.GetEnd();
        Append(before);
        m_steps.Spend(m_format.size());
        std::size_t at = 0;
        while (at < m_format.size()) {
            const std::size_t dollar = std::min(m_format.find(L'$', at), m_format.size());
            Append(m_format.substr(at, dollar - at));
            at = dollar + 1;
            if (dollar < m_format.size()) PutPlaceholder(finder, before, at);
        }
    }

    // `at` is behind the dollar sign, and then behind the placeholder. A dollar sign that begins none stands for itself.
    void PutPlaceholder(const Finder& finder, std::wstring_view before, std::size_t& at) {
        const wchar_t kind = at < m_format.size() ? m_format[at] : L'\0';
        if (IsDigit(kind)) {
            std::uint32_t number = static_cast<std::uint32_t>(kind - L'0');
            if (++at < m_format.size() && IsDigit(m_format[at])) number = number * 10 + static_cast<std::uint32_t>(m_format[at++] - L'0');
            Append(finder.GetGroup(number));  // nothing for a group that the expression doesn't have
            return;
        }
        switch (kind) {
            case L'$': Append(L"$"); break;
            case L'&': Append(finder.GetGroup(0)); break;
            case L'`': Append(before); break;
            case L'\'': Append(m_text.substr(m_done)); break;
            default: Append(L"$"); return;
        }
        ++at;
    }

    const RegexProgram& m_program;
    std::wstring_view m_text;
    std::wstring_view m_format;
    RegexSteps m_steps;
    Finder m_finder;
    std::wstring m_result;
    std::size_t m_done = 0;  // the text before it is in the result
};

}  // namespace

RegexReplacer::RegexReplacer() noexcept = default;
RegexReplacer::~RegexReplacer() = default;
RegexReplacer::RegexReplacer(RegexReplacer&&) noexcept = default;
RegexReplacer& RegexReplacer::operator=(RegexReplacer&&) noexcept = default;

RegexReplacer RegexReplacer::Compile(std::wstring_view pattern, bool caseSensitive, RegexBudget* budget) {
    RegexReplacer replacer;
    replacer.m_program = std::make_unique<const RegexProgram>(
        CompileRegex(ParseRegex(pattern, caseSensitive), caseSensitive, RegexGroups::Kept, budget));
    return replacer;
}

std::wstring RegexReplacer::Replace(std::wstring_view text, std::wstring_view format) const {
    if (!m_program) return std::wstring(text);
    return Replacement(*m_program, text, format).Run();
}

}  // namespace Zorvex
