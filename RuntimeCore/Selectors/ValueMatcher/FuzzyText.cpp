#include "RuntimeCore/Selectors/ValueMatcher/FuzzyText.h"

#include <algorithm>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {

namespace {

// What each ASCII unit becomes. A hyphen, an underscore, brackets, braces, bars and signs of sums stay: they are
// parts of names.
struct AsciiForms {
    wchar_t form[128];
};

consteval AsciiForms MakeAsciiForms() {
    AsciiForms forms{};
    for (wchar_t unit = 0; unit < 128; ++unit) forms.form[unit] = unit >= L'A' && unit <= L'Z' ? unit + 32 : unit;
    for (const wchar_t unit : std::wstring_view(L"~!@#$%^&*()`;':\",./<>?")) forms.form[unit] = L' ';
    return forms;
}

constexpr AsciiForms kAsciiForms = MakeAsciiForms();

wchar_t FormOf(wchar_t unit) {
    return static_cast<std::uint32_t>(unit) < 128 ? kAsciiForms.form[unit] : ToLower(unit);
}

std::wstring_view TrimEnd(std::wstring_view text) {
    while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace

std::wstring_view NormalizedText::Make(std::wstring_view text) {
    while (!text.empty() && IsSpace(FormOf(text.back()))) text.remove_suffix(1);
    while (!text.empty() && IsSpace(FormOf(text.front()))) text.remove_prefix(1);
    if (m_buffer.size() < text.size()) m_buffer.resize(text.size());
    wchar_t* out = m_buffer.data();
    for (std::size_t i = 0; i < text.size(); ++i) out[i] = FormOf(text[i]);
    return {out, text.size()};
}

std::wstring_view SortedWords::Make(std::wstring_view text) {
    m_words.clear();
    bool inForm = true;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == L' ') {
            // One blank behind a word and before another is as it should be.
            inForm = inForm && i > 0 && i + 1 < text.size() && text[i + 1] != L' ';
            ++i;
            continue;
        }
        const std::size_t start = i;
        while (i < text.size() && text[i] != L' ') ++i;
        const std::wstring_view word = text.substr(start, i - start);
        inForm = inForm && (m_words.empty() || !(word < m_words.back()));
        m_words.push_back(word);
    }
    // A word may hold other white space than blanks, and the last one loses it at its end.
    if (inForm) return TrimEnd(text);
    if (m_words.size() <= 16) {
        for (std::size_t i = 1; i < m_words.size(); ++i) {
            const std::wstring_view word = m_words[i];
            std::size_t at = i;
            for (; at > 0 && word < m_words[at - 1]; --at) m_words[at] = m_words[at - 1];
            m_words[at] = word;
        }
    } else {
        std::sort(m_words.begin(), m_words.end());
    }
    if (m_buffer.size() < text.size() + 1) m_buffer.resize(text.size() + 1);
    wchar_t* out = m_buffer.data();
    for (const std::wstring_view word : m_words) {
        // Words are short: a plain loop is faster than a call.
        for (const wchar_t unit : word) *out++ = unit;
        *out++ = L' ';
    }
    return TrimEnd({m_buffer.data(), static_cast<std::size_t>(out - m_buffer.data())});
}

}  // namespace Zorvex
