#include "RuntimeCore/Extraction/XmlCharacters.h"

namespace Zorvex {

namespace {

constexpr wchar_t Replacement = 0xFFFD;

bool IsHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool IsControl(wchar_t unit) { return unit < 0x20 && unit != L'\t' && unit != L'\n' && unit != L'\r'; }

}  // namespace

CString TextForXml(std::wstring_view text) {
    CString result(text);
    for (std::size_t i = 0; i < result.size(); ++i) {
        const wchar_t unit = result[i];
        if (IsHighSurrogate(unit) && i + 1 < result.size() && IsLowSurrogate(result[i + 1])) ++i;
        else if (IsControl(unit) || IsHighSurrogate(unit) || IsLowSurrogate(unit) || unit >= 0xFFFE) result[i] = Replacement;
    }
    return result;
}

}  // namespace Zorvex
