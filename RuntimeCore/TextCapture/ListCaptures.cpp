#include "RuntimeCore/TextCapture/ListCaptures.h"

#include <span>

#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "RuntimeCore/TextCapture/CaptureRoles.h"
#include "RuntimeCore/TextCapture/ElementReads.h"
#include "RuntimeCore/TextCapture/ElementWalk.h"
#include "RuntimeCore/TextCapture/FilterRectangle.h"
#include "RuntimeCore/TextCapture/FormattedText.h"
#include "RuntimeCore/TextCapture/WindowObject.h"

namespace Zorvex {

namespace {

enum class Indentation { ByLevel, UnlessFiltered };

HRESULT CaptureWindow(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification,
                      std::span<const LONG> roles, Indentation indentation) {
    CComPtr<IAccessible> root = GetAccessibleWindowObject(hWnd);
    if (!root) return S_FALSE;
    CComPtr<IAccessible> found;
    CComVariant child;
    if (prcFilter && bUseRectangleForIdentification && GetAAChildWithRectangle(root, prcFilter, found, child)) {
        const RoleRead read = ReadAccRole(*found, child);
        if (FAILED(read.result)) return read.result;
        const HRESULT result = AppendFormatedText(context, found, child, read.role, outText, AA_TYPE_GENERIC, nullptr);
        if (child.lVal != CHILDID_SELF) return result;
        root = std::move(found);
        prcFilter = nullptr;
    }
    if (indentation == Indentation::UnlessFiltered) context.m_bNoIndent = prcFilter != nullptr;
    ParseAccObjectAndGetText(context, root, prcFilter, outText, roles, {}, AA_TYPE_GENERIC);
    return S_OK;
}

}  // namespace

HRESULT CaptureTextAA_ListBox(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification) {
    return CaptureWindow(context, hWnd, prcFilter, outText, bUseRectangleForIdentification, CaptureRoles::ListBox, Indentation::ByLevel);
}

HRESULT CaptureTextAA_ListView(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification) {
    return CaptureWindow(context, hWnd, prcFilter, outText, bUseRectangleForIdentification, CaptureRoles::ListView, Indentation::ByLevel);
}

HRESULT CaptureTextAA_ComboBox(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification) {
    return CaptureWindow(context, hWnd, prcFilter, outText, bUseRectangleForIdentification, CaptureRoles::ComboBox, Indentation::ByLevel);
}

HRESULT CaptureTextAA_TreeView(CaptureContext& context, HWND hWnd, const RECT* prcFilter, CString& outText, bool bUseRectangleForIdentification) {
    return CaptureWindow(context, hWnd, prcFilter, outText, bUseRectangleForIdentification, CaptureRoles::TreeView, Indentation::UnlessFiltered);
}

}  // namespace Zorvex
