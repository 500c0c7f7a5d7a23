#include "RuntimeCore/Selectors/ValueMatcher/MatcherTools.h"

#include <limits>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex::MatcherTools {

std::int32_t ParseDecimal(std::wstring_view text) {
    std::size_t i = 0;
    while (i < text.size() && IsSpace(text[i])) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == L'-' || text[i] == L'+')) negative = text[i++] == L'-';
    constexpr std::int64_t kBound = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
    std::int64_t value = 0;
    for (; i < text.size() && text[i] >= L'0' && text[i] <= L'9'; ++i) {
        value = value * 10 + (text[i] - L'0');
        if (value > kBound) value = kBound;
    }
    if (negative) value = -value;
    return static_cast<std::int32_t>(std::min<std::int64_t>(value, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace Zorvex::MatcherTools
