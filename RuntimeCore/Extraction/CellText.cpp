#include "RuntimeCore/Extraction/CellText.h"

#include <algorithm>
#include <vector>

#include "RuntimeCore/AAUtilitiesName.h"
#include "RuntimeCore/RowName.h"
#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"
#include "RuntimeCore/TextCapture/ElementCapture.h"

namespace Zorvex {

namespace {

// By Unicode, not by the locale that the host program happens to have: headers of web pages end with no-break spaces.
void TrimWhiteSpace(CString& text) {
    const auto isText = [](wchar_t unit) { return !IsSpace(unit); };
    text.erase(std::find_if(text.rbegin(), text.rend(), isText).base(), text.end());
    text.erase(text.begin(), std::find_if(text.begin(), text.end(), isText));
}

bool ReadNamingCell(HWND hWnd, const AAObjectWrapper& cell, CString& out_text) {
    GetCellText(out_text, hWnd, cell.container, cell.childId, true);
    // A cell without text names its row by nothing.
    return true;
}

// Row names stand below text capture and can't ask for it themselves.
[[maybe_unused]] const CellTextReader previousReader = SetCellTextReader(&ReadNamingCell);

}  // namespace

void GetCellText(CString& out_text, HWND hWnd, IAccessible* acc, const VARIANT& child, bool bFlatten) {
    std::vector<HighlightInfo> positions;
    if (!AAGetFullTextFromElement(hWnd, acc, child, 0, positions, out_text)) out_text.clear();
    const std::size_t length = out_text.size();
    if (length >= 2 && out_text.find(L"\r\n") == length - 2) out_text.resize(length - 2);
    if (!bFlatten) return;
    AAUtil::NormalizeLineBreaks(out_text);
    TrimWhiteSpace(out_text);
}

}  // namespace Zorvex
