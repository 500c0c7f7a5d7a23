#include "RuntimeCore/TextCapture/ListViewHeader.h"

#include "Common/UTILITY/NWindows.h"

namespace Zorvex {

bool ShowsListViewColumns(HWND hWnd) {
    return NWindows::HasStyleBits(hWnd, LVS_TYPEMASK, LVS_REPORT) || NWindows::HasVisibleListViewHeader(hWnd);
}

void AppendListViewHeader(CaptureContext& context, const SysListViewColumnInfo* info, CString& outText) {
    if (!info || !context.HasRoom(outText, info->headerText.size() + 2)) return;
    outText += info->headerText;
    outText += L"\r\n";
}

}  // namespace Zorvex
