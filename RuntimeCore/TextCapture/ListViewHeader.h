// The header line of a list view that shows its columns.
#pragma once

#include <memory>

#include "Common/include/CString.h"
#include "Platform/Windows.h"
#include "RuntimeCore/ListViewItems.h"
#include "RuntimeCore/TextCapture/CaptureContext.h"

namespace Zorvex {

// Whether the list view is in report view or has a visible header.
bool ShowsListViewColumns(HWND hWnd);

// Appends the header's texts, joined by tabs, as one line. Without `info` there is no line.
void AppendListViewHeader(CaptureContext& context, const SysListViewColumnInfo* info, CString& outText);

}  // namespace Zorvex
