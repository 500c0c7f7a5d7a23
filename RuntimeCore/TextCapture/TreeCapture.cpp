#include "RuntimeCore/TextCapture/TreeCapture.h"

#include <optional>

#include "Common/include/CComBSTR.h"
#include "Common/include/CComPtr.h"
#include "Common/include/CComVariant.h"
#include "RuntimeCore/TextCapture/CaptureRoles.h"
#include "RuntimeCore/TextCapture/ElementReads.h"
#include "RuntimeCore/TextCapture/ElementWalk.h"
#include "RuntimeCore/TextCapture/SafeName.h"
#include "RuntimeCore/TextCapture/TreeLevel.h"
#include "RuntimeCore/TextCapture/WindowObject.h"

namespace Zorvex {

namespace {

// The value of a tree item. Nothing if it can't be read or is empty.
std::optional<LONG> ReadLevel(IAccessible& acc, const VARIANT& child) {
    CComBSTR value;
    if (FAILED(acc.get_accValue(child, &value)) || value.IsEmpty()) return std::nullopt;
    return ParseTreeLevel(value.View());
}

HRESULT CaptureItem(CaptureContext& context, IAccessible& acc, const VARIANT& child, CString& out_text) {
    CComBSTR name;
    if (FAILED(GetSafeAccName(context, &acc, child, name)) || name.IsEmpty()) return E_FAIL;
    if (!context.HasRoom(out_text, name.Length())) return S_FALSE;
    out_text = name.ToString();
    const std::optional<LONG> start = ReadLevel(acc, child);
    if (!start) return E_FAIL;

    CComVariant item(child);
    // The chain of items may be a ring.
    for (std::size_t items = 0; items < MostCapturedElements; ++items) {
        CComVariant next;
        if (FAILED(acc.accNavigate(NAVDIR_NEXT, item, &next)) || next.vt != VT_I4) break;
        const std::optional<LONG> level = ReadLevel(acc, next);
        if (!level || *level <= *start) break;
        GetSafeAccName(context, &acc, next, name);
        if (!name.IsEmpty()) {
            const CString indentation = TreeIndentation(static_cast<LONGLONG>(*level) - *start);
            if (!context.HasRoom(out_text, indentation.size() + name.Length() + 2)) return S_FALSE;
            out_text += L"\r\n";
            out_text += indentation;
            out_text += name.View();
        }
        item = std::move(next);
    }
    return S_OK;
}

}  // namespace

HRESULT CaptureTreeElementText(CaptureContext& context, HWND hWnd, IAccessible* acc, const VARIANT& child, CString& out_text) {
    out_text.clear();
    if (!acc || child.vt != VT_I4) return E_INVALIDARG;
    const RoleRead read = ReadAccRole(*acc, child);
    if (FAILED(read.result)) return read.result;
    if (read.role == ROLE_SYSTEM_OUTLINEITEM) {
        const HRESULT result = CaptureItem(context, *acc, child, out_text);
        if (FAILED(result)) out_text.clear();
        return result;
    }
    if (read.role != ROLE_SYSTEM_OUTLINE) return S_FALSE;
    const CComPtr<IAccessible> root = GetAccessibleWindowObject(hWnd);
    if (!root) return S_FALSE;
    context.m_bNoIndent = false;
    ParseAccObjectAndGetText(context, root, nullptr, out_text, CaptureRoles::TreeView, {}, AA_TYPE_GENERIC);
    return S_OK;
}

}  // namespace Zorvex
