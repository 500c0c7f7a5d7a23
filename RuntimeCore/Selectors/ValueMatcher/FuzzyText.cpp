#include "RuntimeCore/Selectors/ValueMatcher/FuzzyText.h"

#include <algorithm>
#include <bit>
#include <cstring>

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

bool IsAscii(std::uint32_t units) { return units < 128; }

wchar_t FormOf(wchar_t unit) {
    const auto code = static_cast<std::uint32_t>(unit);
    return IsAscii(code) ? kAsciiForms.form[code] : ToLower(unit);
}

std::wstring_view TrimEnd(std::wstring_view text) {
    while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
    return text;
}

// Its blanks fit one word of bits; it has at most half as many words.
constexpr std::size_t kShortText = 64;
// So many are sorted by insertion.
constexpr std::size_t kFewWords = 16;

// Most words differ in their first unit.
bool Less(std::wstring_view a, std::wstring_view b) { return a[0] != b[0] ? a[0] < b[0] : a < b; }

}  // namespace

std::wstring_view NormalizedText::Make(std::wstring_view text) {
    while (!text.empty() && IsSpace(FormOf(text.back()))) text.remove_suffix(1);
    while (!text.empty() && IsSpace(FormOf(text.front()))) text.remove_prefix(1);
    if (m_buffer.size() < text.size()) m_buffer.resize(text.size());
    const wchar_t* const in = text.data();
    wchar_t* const out = m_buffer.data();
    const std::size_t size = text.size();
    std::size_t i = 0;
    // One question for four units, which are ASCII nearly always.
    for (; i + 4 <= size; i += 4) {
        const auto a = static_cast<std::uint32_t>(in[i]), b = static_cast<std::uint32_t>(in[i + 1]),
                   c = static_cast<std::uint32_t>(in[i + 2]), d = static_cast<std::uint32_t>(in[i + 3]);
        if (IsAscii(a | b | c | d)) {
            out[i] = kAsciiForms.form[a];
            out[i + 1] = kAsciiForms.form[b];
            out[i + 2] = kAsciiForms.form[c];
            out[i + 3] = kAsciiForms.form[d];
        } else {
            for (std::size_t j = i; j < i + 4; ++j) out[j] = FormOf(in[j]);
        }
    }
    for (; i < size; ++i) out[i] = FormOf(in[i]);
    return {out, size};
}

// Of short texts the blanks are collected as bits first: the ends of words, which no processor can foresee, are then
// found by counting instead of by branching.
void SortedWords::SplitShort(std::wstring_view text) {
    if (m_words.size() < kShortText / 2) m_words.resize(kShortText / 2);
    std::uint64_t units = 0;
    for (std::size_t i = 0; i < text.size(); ++i) units |= std::uint64_t{text[i] != L' '} << i;
    m_count = 0;
    while (units != 0) {
        const auto start = static_cast<std::size_t>(std::countr_zero(units));
        // Adding the lowest bit carries through the word and leaves what stands behind it.
        const std::uint64_t behind = units + (units & -units);
        const auto length = static_cast<std::size_t>(std::countr_zero(behind)) - start;
        m_words[m_count++] = {text.data() + start, length};
        units &= behind;
    }
}

void SortedWords::SplitLong(std::wstring_view text) {
    m_words.clear();
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t start = i;
        while (i < text.size() && text[i] != L' ') ++i;
        if (i > start) m_words.push_back(text.substr(start, i - start));
        ++i;
    }
    m_count = m_words.size();
}

std::wstring_view SortedWords::Make(std::wstring_view text) {
    if (text.size() <= kShortText) SplitShort(text);
    else SplitLong(text);
    std::wstring_view* const words = m_words.data();
    bool inOrder = true;
    std::size_t length = m_count;  // one blank behind each word
    if (m_count <= kFewWords) {
        for (std::size_t i = 0; i < m_count; ++i) {
            const std::wstring_view word = words[i];
            length += word.size();
            std::size_t at = i;
            for (; at > 0 && Less(word, words[at - 1]); --at) words[at] = words[at - 1];
            inOrder = inOrder && at == i;
            words[at] = word;
        }
    } else {
        for (std::size_t i = 0; i < m_count; ++i) length += words[i].size();
        inOrder = std::is_sorted(words, words + m_count, Less);
        if (!inOrder) std::sort(words, words + m_count, Less);
    }
    // One blank between words, none at the ends. A word may hold other white space, which the last one loses.
    if (inOrder && length == text.size() + 1) return TrimEnd(text);
    if (m_buffer.size() < length) m_buffer.resize(length);
    wchar_t* out = m_buffer.data();
    for (std::size_t i = 0; i < m_count; ++i) {
        std::memcpy(out, words[i].data(), words[i].size() * sizeof(wchar_t));
        out += words[i].size();
        *out++ = L' ';
    }
    return TrimEnd({m_buffer.data(), length});
}

}  // namespace Zorvex
