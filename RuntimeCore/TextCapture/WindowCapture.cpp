#include "RuntimeCore/TextCapture/WindowCapture.h"

#include "Common/UTILITY/NWindows.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "Common/include/Log.h"
#include "Common/include/ObjectFromWindow.h"
#include "RuntimeCore/Requests/RequestFlags.h"
#include "RuntimeCore/TextCapture/CaptureRoles.h"
#include "RuntimeCore/TextCapture/EditCapture.h"
#include "RuntimeCore/TextCapture/ElementReads.h"
#include "RuntimeCore/TextCapture/ElementWalk.h"
#include "RuntimeCore/TextCapture/FilterRectangle.h"
#include "RuntimeCore/TextCapture/FormattedText.h"
#include "RuntimeCore/TextCapture/HtmlText.h"
#include "RuntimeCore/TextCapture/InternetExplorer.h"
#include "RuntimeCore/TextCapture/ListCaptures.h"
#include "RuntimeCore/TextCapture/OfficeCapture.h"
#include "RuntimeCore/TextCapture/SafeName.h"

namespace Zorvex {

namespace {

constexpr DWORD VistaMajorVersion = 6;

// Whether the window belongs to the frame of an old browser on an old system, whose tool bars crash. Holds for the
// length of one capture.
class IETopFrameMark {
public:
    IETopFrameMark(CaptureContext& context, HWND hWnd) : m_context(context) {
        m_context.m_bIsIETopFrame = false;
        if (GetOsMajorVersion().value_or(0) >= VistaMajorVersion) return;
        m_context.m_bIsIETopFrame = NWindows::GetRealWindowClass(::GetAncestor(hWnd, GA_ROOT)) == L"IEFrame";
    }
    IETopFrameMark(const IETopFrameMark&) = delete;
    IETopFrameMark& operator=(const IETopFrameMark&) = delete;
    ~IETopFrameMark() { m_context.m_bIsIETopFrame = false; }

private:
    CaptureContext& m_context;
};

HRESULT CaptureIE(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText) {
    const HRESULT result = CaptureDocumentTextIE(context, hWnd, prcFilter, outText);
    if (SUCCEEDED(result)) return result;
    outText.clear();
    return CaptureTextAA_IE(hWnd, outText);
}

}  // namespace

bool DoCaptureAA(HWND hWnd, enAAType type, const RECT& rcFilter, DWORD dwFlags, std::vector<HighlightInfo>& outPositions, CString& outText) {
    outPositions.clear();
    outText.clear();
    CaptureContext context(dwFlags);
    const HRESULT result = CaptureTextFullTextInWindowAA(context, hWnd, type, rcFilter, dwFlags, outText);
    if (context.m_bExtractHighlightInfo) outPositions = std::move(context.highlights);
    return result == S_OK;
}

HRESULT CaptureTextFullTextInWindowAA(CaptureContext& context, HWND hWnd, enAAType type, const RECT& rcFilter, DWORD dwFlags, CString& outText) {
    LogVerbose("CaptureTextFullTextInWindowAA: enAAType=%d, dwFlags=%x, rcFilter=(%d, %d, %d, %d)", type, dwFlags, rcFilter.left, rcFilter.top,
               rcFilter.right, rcFilter.bottom);
    const bool bUseRectangleForIdentification = dwFlags & CaptureByExactRectangle;
    const RECT* const prcFilter = dwFlags & (CaptureByExactRectangle | CaptureClipped) ? &rcFilter : nullptr;
    LogVerbose("bUseRectangleForIdentification=%d, prcFilter=%p", bUseRectangleForIdentification, static_cast<const void*>(prcFilter));
    switch (type) {
        case AA_TYPE_GENERIC: return CaptureTextAA_Generic(context, hWnd, prcFilter, outText, bUseRectangleForIdentification);
        case AA_TYPE_IE: return CaptureIE(context, hWnd, prcFilter, outText);
        case AA_TYPE_WORD: return CaptureTextAA_Word(hWnd, outText);
        case AA_TYPE_EDIT:
        case AA_TYPE_RICHEDIT: return CaptureTextAA_Edit(hWnd, outText);
        case AA_TYPE_LISTBOX: return CaptureTextAA_ListBox(context, hWnd, prcFilter, outText, bUseRectangleForIdentification);
        case AA_TYPE_LISTVIEW: return CaptureTextAA_ListView(context, hWnd, prcFilter, outText, bUseRectangleForIdentification);
        case AA_TYPE_COMBOBOX: return CaptureTextAA_ComboBox(context, hWnd, prcFilter, outText, bUseRectangleForIdentification);
        case AA_TYPE_TREEVIEW: return CaptureTextAA_TreeView(context, hWnd, prcFilter, outText, bUseRectangleForIdentification);
        case AA_TYPE_EXCEL: return CaptureTextAA_Excel(hWnd, outText);
        case AA_TYPE_POWERPOINT: return CaptureTextAA_PowerPoint(hWnd, outText);
        case AA_TYPE_CHROME_WIDGET: return CaptureTextAA_IA2Html(context, hWnd, prcFilter, outText, bUseRectangleForIdentification);
        // Their elements can be captured, their windows can't; on purpose.
        case AA_TYPE_CHROME:
        case AA_TYPE_UWP: break;
    }
    return S_FALSE;
}

HRESULT CaptureTextAA_Generic(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification) {
    LogVerbose("CaptureTextAA_Generic start");
    const IETopFrameMark mark(context, hWnd);
    LogVerbose("CaptureTextAA_Generic m_bIsIETopFrame=%d", context.m_bIsIETopFrame);

    CComPtr<IAccessible> root;
    HRESULT result = ObjectFromWindow(hWnd, OBJID_WINDOW, root);
    if (FAILED(result) || !root) {
        LogError("AccessibleObjectFromWindow failed, hResult=%x", result);
        return S_FALSE;
    }
    if (prcFilter && bUseRectangleForIdentification) {
        LogVerbose("prcFilter && bUseRectangleForIdentification branch");
        CComPtr<IAccessible> found;
        CComVariant child;
        if (GetAAChildWithRectangle(root, prcFilter, found, child)) {
            LogVerbose("GetAAChildWithRectangle succeeded branch");
            const RoleRead read = ReadAccRole(*found, child);
            if (FAILED(read.result)) {
                LogError("spChild->get_accRole failed, hResult=%x", read.result);
                return read.result;
            }
            LogVerbose("Calling AppendFormatedText");
            result = AppendFormatedText(context, found, child, read.role, outText, AA_TYPE_GENERIC, nullptr);
            if (child.lVal != CHILDID_SELF) {
                LogError("found object has no children, exit");
                return result;
            }
            root = std::move(found);
        }
        // Also without a hit: the whole window is captured then, not clipped; on purpose.
        prcFilter = nullptr;
    }

    LogVerbose("Before starting recursive ParseAccObjectAndGetText");
    const bool parsed = ParseAccObjectAndGetText(context, root, prcFilter, outText, CaptureRoles::Window, {}, AA_TYPE_GENERIC);
    LogVerbose("ParseAccObjectAndGetText returned %d", parsed);
    if (outText.empty()) {
        LogVerbose("ParseAccObjectAndGetText no result; get pParent text");
        CComVariant role;
        const CComVariant self(CHILDID_SELF);
        if (SUCCEEDED(root->get_accRole(self, &role)) && role.vt == VT_I4) {
            LogVerbose("AppendFormatedText(pParent)");
            result = AppendFormatedText(context, root, self, role.lVal, outText, AA_TYPE_GENERIC, nullptr);
            LogVerbose("AppendFormatedText(pParent) end, hr=%x", result);
            return result;
        }
    }
    LogVerbose("CaptureTextAA_Generic end");
    return S_OK;
}

}  // namespace Zorvex
