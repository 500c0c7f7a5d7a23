// Input: a pattern, a NUL, a text, each byte one unit; a byte from 0xF0 on makes a unit beyond ASCII of the next one.
// Whatever it is, compiling, matching and replacing end soon, and what matches the whole text is replaced.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "RuntimeCore/Selectors/ValueMatcher/Regex.h"
#include "RuntimeCore/Selectors/ValueMatcher/RegexReplacer.h"

namespace {

void Try(const std::wstring& pattern, const std::wstring& text, bool caseSensitive) {
    try {
        const bool matches = Zorvex::Regex::Compile(pattern, caseSensitive).MatchesWhole(text);
        const Zorvex::RegexReplacer replacer = Zorvex::RegexReplacer::Compile(pattern, caseSensitive);
        if (replacer.Replace(text, L"$&") != text) std::abort();
        if (matches && replacer.Replace(text, L"<$1$`$'$2>").find(L'<') == std::wstring::npos) std::abort();
    } catch (const Zorvex::RegexError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::wstring parts[2];
    std::size_t part = 0;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0 && part == 0) {
            part = 1;
        } else if (data[i] >= 0xF0 && i + 1 < size) {
            parts[part] += static_cast<wchar_t>((data[i] & 0xF) << 8 | data[i + 1]);
            ++i;
        } else {
            parts[part] += static_cast<wchar_t>(data[i]);
        }
    }
    Try(parts[0], parts[1], true);
    Try(parts[0], parts[1], false);
    return 0;
}
