#include "RuntimeCore/TextCapture/ElementCapture.h"

#include "Common/UTILITY/NWindows.h"
#include "Common/include/Log.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/TextCapture/CaptureRoles.h"
#include "RuntimeCore/TextCapture/EditCapture.h"
#include "RuntimeCore/TextCapture/ElementReads.h"
#include "RuntimeCore/TextCapture/ElementWalk.h"
#include "RuntimeCore/TextCapture/FormattedText.h"
#include "RuntimeCore/TextCapture/HtmlText.h"
#include "RuntimeCore/TextCapture/ListViewHeader.h"
#include "RuntimeCore/TextCapture/TreeCapture.h"
#include "RuntimeCore/TextCapture/WindowCapture.h"

namespace Zorvex {

bool AAGetFullTextFromElement(HWND hWnd, IAccessible* acc, const VARIANT& child, DWORD dwFlags, std::vector<HighlightInfo>& outPositions,
                              CString& outText) {
    outPositions.clear();
    outText.clear();
    CaptureContext context(dwFlags);
    const HRESULT result = CaptureFullTextInAA(context, hWnd, acc, child, dwFlags, outText);
    if (context.m_bExtractHighlightInfo) outPositions = std::move(context.highlights);
    return SUCCEEDED(result);
}

HRESULT CaptureFullTextInAA(CaptureContext& context, HWND hWnd, IAccessible* acc, const VARIANT& child, DWORD dwFlags, CString& outText) {
    const enAAType type = GetAASpecialType(hWnd);
    LogVerbose("CaptureFullTextInAA: enAAType=%d", type);
    switch (type) {
        case AA_TYPE_GENERIC:
        case AA_TYPE_CHROME:
        case AA_TYPE_UWP: return CaptureElementText(context, CaptureRoles::Element, hWnd, acc, child, outText, type);
        case AA_TYPE_IE:
        case AA_TYPE_WORD:
        case AA_TYPE_EDIT:
        case AA_TYPE_RICHEDIT:
        case AA_TYPE_EXCEL:
        case AA_TYPE_POWERPOINT:
            // These are read as a whole. There is no rectangle here, whatever the flags say of one.
            return CaptureTextFullTextInWindowAA(context, hWnd, type, RECT{}, dwFlags & ~DWORD{CaptureByExactRectangle | CaptureClipped}, outText);
        case AA_TYPE_LISTBOX: return CaptureElementText(context, CaptureRoles::ListBox, hWnd, acc, child, outText, AA_TYPE_GENERIC);
        case AA_TYPE_LISTVIEW: return CaptureElementText(context, CaptureRoles::ListView, hWnd, acc, child, outText, type);
        case AA_TYPE_COMBOBOX: return CaptureElementText(context, CaptureRoles::ComboBox, hWnd, acc, child, outText, AA_TYPE_GENERIC);
        case AA_TYPE_TREEVIEW: return CaptureTreeElementText(context, hWnd, acc, child, outText);
        case AA_TYPE_CHROME_WIDGET:
            return IA2Tools::GetHtmlTextContent(acc, context.m_bIgnoreHidden, context.m_bIgnoreOffscreen, nullptr, outText);
    }
    return S_FALSE;
}

HRESULT CaptureElementText(CaptureContext& context, std::span<const LONG> roles, HWND hWnd, IAccessible* acc, const VARIANT& child,
                           CString& outText, enAAType type) {
    if (!acc || child.vt != VT_I4) return E_INVALIDARG;
    CaptureParseContext parseContext;
    parseContext.bIsWpf = NWindows::IsWpfWindow(hWnd);
    parseContext.hWnd = hWnd;
    const RoleRead read = ReadAccRole(*acc, child);
    if (FAILED(read.result)) return read.result;
    if (type == AA_TYPE_LISTVIEW && ShowsListViewColumns(hWnd)) {
        parseContext.listViewInfo = GetSysListViewColumnInfo(hWnd);
        if (read.role == ROLE_SYSTEM_LIST) AppendListViewHeader(context, parseContext.listViewInfo.get(), outText);
    }
    if (read.role == ROLE_SYSTEM_OUTLINEITEM) {
        // A failed attempt leaves nothing behind.
        CString treeText;
        const HRESULT result = CaptureTreeElementText(context, hWnd, acc, child, treeText);
        if (SUCCEEDED(result)) {
            if (context.HasRoom(outText, treeText.size())) outText += treeText;
            return result;
        }
    }
    const HRESULT own = AppendFormatedText(context, acc, child, read.role, outText, type, &parseContext);
    LONG count = 0;
    if (child.lVal != CHILDID_SELF || FAILED(acc->get_accChildCount(&count)) || count < 1) return own;
    return ParseAccObjectAndGetText(context, acc, nullptr, outText, roles, std::move(parseContext), type) ? S_OK : S_FALSE;
}

}  // namespace Zorvex
